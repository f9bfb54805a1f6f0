#include "kvError.h"

#include <memory>
#include <vector>

namespace {

struct ThreadErrorSlot
{
    std::vector<std::unique_ptr<kvError>> instances; // the last one is current
};

ThreadErrorSlot &threadSlot()
{
    thread_local ThreadErrorSlot slot;
    return slot;
}

} // namespace

kvError::kvError(QObject *parent)
    : QObject(parent)
{
    setObjectName(QStringLiteral("kvError"));
}

kvError &kvError::ThreadInstance()
{
    ThreadErrorSlot &slot = threadSlot();
    if (slot.instances.empty())
        return ReplaceThreadInstance();
    return *slot.instances.back();
}

kvError &kvError::ReplaceThreadInstance()
{
    ThreadErrorSlot &slot = threadSlot();
    slot.instances.push_back(std::make_unique<kvError>());
    return *slot.instances.back();
}
