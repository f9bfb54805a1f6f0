#include "kvSystemClock.h"

kvDate kvSystemClock::Now() const
{
    return kvDate::fromDateTime(QDateTime::currentDateTime());
}
