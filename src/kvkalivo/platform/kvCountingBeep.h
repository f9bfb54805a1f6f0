#pragma once

#include "kvBeep.h"

//! A beep for tests: silent, it only counts.
class KVKALIVO_EXPORT kvCountingBeep : public kvBeep
{
public:
    void Beep() override;

    int Count() const { return m_count; }
    void Reset() { m_count = 0; }

private:
    int m_count = 0;
};
