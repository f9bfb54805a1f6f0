#include "kvFaultSite.h"

#ifdef KVKALIVO_FAULT_SITES

#include <atomic>

namespace {

std::atomic<kv::FaultHook> installedHook{nullptr};

} // namespace

void kv::setFaultHook(FaultHook hook)
{
    installedHook.store(hook);
}

void kv::visitFaultSite(const char *site, int stage)
{
    if (const FaultHook hook = installedHook.load())
        hook(site, stage);
}

#endif
