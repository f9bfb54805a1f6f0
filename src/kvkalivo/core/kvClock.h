#pragma once

#include "kvDate.h"

/*!
    \file kvClock.h
    \brief kvClock, the clock service ("today" and "now").
*/

/*!
    \brief The clock service: the naive local wall-clock time (no time zone).

    The real one is kvSystemClock; tests use kvFixedClock.
*/
class KVKALIVO_TESTS_EXPORT kvClock
{
public:
    virtual ~kvClock();

    //! The current local date and time, as the wall clock shows it.
    virtual kvDate Now() const = 0;
    //! Today's date without a time of day.
    kvDate Today() const;
};
