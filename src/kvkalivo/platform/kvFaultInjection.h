#pragma once

#include "kvkalivo_export.h"

#include <QString>

/*!
    \brief Makes a named stage of a routine fail on purpose, so that tests can reach the
    error paths (step codes, Part 1.3) that real engines and widgets rarely take.

    Routines call Visit(site, stage) at each stage; it costs one comparison while nothing is
    armed. A test arms one site and stage on its thread; the next visit throws a
    kvRuntimeError with the given description and disarms.
*/
class KVKALIVO_EXPORT kvFaultInjection
{
public:
    static void Arm(const QString &site, int stage, const QString &description);
    static void Disarm();
    static void Visit(const char *site, int stage);
};
