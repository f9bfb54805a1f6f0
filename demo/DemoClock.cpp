#include "DemoClock.h"

kvDate DemoClock::Now() const
{
    return m_now;
}
