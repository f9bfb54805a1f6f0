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

class kvErrorPrivate
{
public:
    QString description;
    qint16 number = 0;
};

kvError::kvError(QObject *parent)
    : QObject(parent), d(std::make_unique<kvErrorPrivate>())
{
    setObjectName(QStringLiteral("kvError"));
}

kvError::~kvError() = default;

QString kvError::Description() const
{
    return d->description;
}

void kvError::setDescription(const QString &description)
{
    d->description = description;
}

qint16 kvError::Number() const
{
    return d->number;
}

void kvError::setNumber(qint16 number)
{
    d->number = number;
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
