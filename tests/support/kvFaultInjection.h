#pragma once

#include <QString>

/*!
    \file kvFaultInjection.h
    \brief kvFaultInjection: deliberate failures at named stages, for testing error reporting.
*/

/*!
    \brief Makes a named stage of a routine fail on purpose, so that tests can reach the
    error paths (step codes) that real engines and widgets rarely take.

    The library marks its stages with KV_FAULT_SITE (kvFaultSite.h). A test arms one site and
    stage on its thread; the next visit of that stage throws a kvRuntimeError with the given
    description and disarms.
*/
class kvFaultInjection
{
public:
    /*!
        The next visit of \a site at \a stage on this thread throws kvRuntimeError 5 with
        \a description. The sites are "ArrangeGrid" and "FillGrid" (stage = the step in the
        routine's step code), "ctlDay.AddDate" and "ctlDay.Terminate" (stage 0). Replaces an
        armed fault.
    */
    static void Arm(const QString &site, int stage, const QString &description);
    //! Removes the armed fault of this thread, if any.
    static void Disarm();
};
