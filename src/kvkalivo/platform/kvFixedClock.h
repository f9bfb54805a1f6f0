#pragma once

#include "kvClock.h"

//! A clock for tests: it shows whatever time it was set to.
class KVKALIVO_EXPORT kvFixedClock : public kvClock
{
public:
    explicit kvFixedClock(kvDate now = kvDate()) : m_now(now) {}

    kvDate Now() const override;
    void SetNow(kvDate now) { m_now = now; }

private:
    kvDate m_now;
};
