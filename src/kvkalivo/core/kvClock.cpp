#include "kvClock.h"

kvClock::~kvClock() = default;

kvDate kvClock::Today() const
{
    return Now().dateOnly();
}
