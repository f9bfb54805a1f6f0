#pragma once

#include "kvClock.h"

//! The real clock: the local date and time as the wall clock shows them, to the second.
class KVKALIVO_EXPORT kvSystemClock : public kvClock
{
public:
    kvDate Now() const override;
};
