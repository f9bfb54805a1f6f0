#pragma once

#include "kvBeep.h"

/*!
    \file kvSystemBeep.h
    \brief kvSystemBeep, the beep service's real implementation.
*/

//! The real beep: QApplication::beep().
class KVKALIVO_TESTS_EXPORT kvSystemBeep : public kvBeep
{
public:
    void Beep() override;
};
