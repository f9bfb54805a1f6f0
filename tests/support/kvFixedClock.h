#pragma once

#include "kvClock.h"

/*!
    \file kvFixedClock.h
    \brief kvFixedClock, a clock for tests that stands still.
*/

//! A clock for tests: it shows whatever time it was set to.
class kvFixedClock : public kvClock
{
public:
    //! A clock that shows \a now (default: day 0, 30 December 1899).
    explicit kvFixedClock(kvDate now = kvDate()) : m_now(now) {}

    //! The time it was set to.
    kvDate Now() const override;
    //! Sets the clock to \a now.
    void SetNow(kvDate now) { m_now = now; }

private:
    kvDate m_now;
};
