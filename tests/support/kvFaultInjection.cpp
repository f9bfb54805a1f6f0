#include "kvFaultInjection.h"

#include "kvFaultSite.h"
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

void failWhenArmed(const char *site, int stage)
{
    ArmedFault &fault = armedFault();
    if (fault.site.isEmpty() || fault.stage != stage || fault.site != QLatin1String(site))
        return;
    const QString description = fault.description;
    fault = ArmedFault{};
    throw kvRuntimeError(5, description);
}

} // namespace

void kvFaultInjection::Arm(const QString &site, int stage, const QString &description)
{
    kv::setFaultHook(failWhenArmed);
    armedFault() = ArmedFault{site, stage, description};
}

void kvFaultInjection::Disarm()
{
    armedFault() = ArmedFault{};
}
