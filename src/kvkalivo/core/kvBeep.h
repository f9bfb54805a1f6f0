#pragma once

#include "kvkalivo_export.h"

/*!
    \file kvBeep.h
    \brief kvBeep, the beep service (the editor beeps at an invalid time).
*/

//! The beep service. The real one is kvSystemBeep; tests use kvCountingBeep.
class KVKALIVO_TESTS_EXPORT kvBeep
{
public:
    virtual ~kvBeep();

    //! Sounds the beep.
    virtual void Beep() = 0;
};
