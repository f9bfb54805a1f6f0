#pragma once

#include "kvkalivo_export.h"

//! The beep service. The real one is kvSystemBeep; tests use kvCountingBeep.
class KVKALIVO_EXPORT kvBeep
{
public:
    virtual ~kvBeep();

    virtual void Beep() = 0;
};
