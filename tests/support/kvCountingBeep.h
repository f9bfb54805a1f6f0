#pragma once

#include "kvBeep.h"

//! A beep for tests: silent, it only counts.
class kvCountingBeep : public kvBeep
{
public:
    void Beep() override { ++m_count; }
    //! The beeps since construction.
    int Count() const { return m_count; }

private:
    int m_count = 0;
};
