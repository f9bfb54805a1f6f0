#pragma once

#include "kvClock.h"

/*!
    The clock of a screenshot taken with --date: it stands at noon of that day, so that the
    control's "today" mark and a fresh control's date do not depend on when the picture is made.
*/
class DemoClock : public kvClock
{
public:
    explicit DemoClock(kvDate now) : m_now(now) {}

    kvDate Now() const override;

private:
    kvDate m_now;
};
