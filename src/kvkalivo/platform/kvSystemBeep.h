#pragma once

#include "kvBeep.h"

//! The real beep: QApplication::beep().
class KVKALIVO_EXPORT kvSystemBeep : public kvBeep
{
public:
    void Beep() override;
};
