#pragma once

#include "kvClock.h"

//! A clock for tests: it shows whatever time it was set to.
class kvFixedClock : public kvClock
{
public:
    //! A clock that shows \a now (default: day 0, 30 December 1899).
    explicit kvFixedClock(kvDate now = kvDate()) : m_now(now) {}
    kvDate Now() const override { return m_now; }

private:
    kvDate m_now;
};
