#include "kvFixedClock.h"

kvDate kvFixedClock::Now() const
{
    return m_now;
}
