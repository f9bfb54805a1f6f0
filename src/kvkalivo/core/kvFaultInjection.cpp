#include "kvFaultInjection.h"

#include "kvRuntimeError.h"

namespace {

struct ArmedFault
{
    QString site;
    int stage = -1;
    QString description;
};

ArmedFault &armedFault()
{
    thread_local ArmedFault fault;
    return fault;
}

} // namespace

void kvFaultInjection::Arm(const QString &site, int stage, const QString &description)
{
    armedFault() = ArmedFault{site, stage, description};
}

void kvFaultInjection::Disarm()
{
    armedFault() = ArmedFault{};
}

void kvFaultInjection::Visit(const char *site, int stage)
{
    ArmedFault &fault = armedFault();
    if (fault.site.isEmpty() || fault.stage != stage || fault.site != QLatin1String(site))
        return;
    const QString description = fault.description;
    Disarm();
    throw kvRuntimeError(5, description);
}
