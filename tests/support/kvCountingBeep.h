#pragma once

#include "kvBeep.h"

/*!
    \file kvCountingBeep.h
    \brief kvCountingBeep, a silent beep for tests.
*/

//! A beep for tests: silent, it only counts.
class kvCountingBeep : public kvBeep
{
public:
    //! Counts instead of sounding.
    void Beep() override;

    //! The beeps since construction or the last Reset().
    int Count() const { return m_count; }
    //! Sets Count() back to 0.
    void Reset() { m_count = 0; }

private:
    int m_count = 0;
};
