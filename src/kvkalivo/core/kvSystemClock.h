#pragma once

#include "kvClock.h"

/*!
    \file kvSystemClock.h
    \brief kvSystemClock, the clock service's real implementation.
*/

//! The real clock: the local date and time as the wall clock shows them, to the second.
class KVKALIVO_TESTS_EXPORT kvSystemClock : public kvClock
{
public:
    kvDate Now() const override;
};
