#pragma once

#include "kvkalivo_export.h"

/*!
    \file kvFaultSite.h
    \brief KV_FAULT_SITE: named stages of a routine at which a test can make it fail on purpose.

    Routines mark each stage with KV_FAULT_SITE("ArrangeGrid", step). Only builds with the test
    suite or the fuzz targets define KVKALIVO_FAULT_SITES and compile the sites in; in every other
    build the macro expands to nothing. The test support's kvFaultInjection installs the hook that
    decides whether a visited stage fails.
*/

#ifdef KVKALIVO_FAULT_SITES

namespace kv {

//! Called at each visited stage; throws to make the stage fail.
using FaultHook = void (*)(const char *site, int stage);

//! Installs \a hook for all threads (nullptr removes it).
KVKALIVO_TESTS_EXPORT void setFaultHook(FaultHook hook);

//! Runs the installed hook, if any, for \a site at \a stage.
KVKALIVO_TESTS_EXPORT void visitFaultSite(const char *site, int stage);

} // namespace kv

#define KV_FAULT_SITE(site, stage) kv::visitFaultSite(site, stage)

#else

#define KV_FAULT_SITE(site, stage) static_cast<void>(0)

#endif
