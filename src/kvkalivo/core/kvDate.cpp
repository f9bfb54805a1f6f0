#include "kvDate.h"

#include <cmath>

namespace {

constexpr long long secondsPerDay = 86400;

QDate epoch()
{
    return QDate(1899, 12, 30);
}

long long floorDiv(long long value, long long divisor)
{
    long long quotient = value / divisor;
    if ((value % divisor != 0) && ((value < 0) != (divisor < 0)))
        --quotient;
    return quotient;
}

} // namespace

kvDate kvDate::fromParts(long long dayNumber, long long secondsOfDay)
{
    dayNumber += floorDiv(secondsOfDay, secondsPerDay);
    secondsOfDay -= floorDiv(secondsOfDay, secondsPerDay) * secondsPerDay;
    const double fraction = double(secondsOfDay) / double(secondsPerDay);
    kvDate result;
    // OLE dates before the epoch keep a negative whole part and a positive time fraction.
    result.m_days = dayNumber >= 0 ? double(dayNumber) + fraction : double(dayNumber) - fraction;
    return result;
}

bool kvDate::isInRange(double oleDays)
{
    // Before the epoch the whole part counts the day and the fraction runs forward from it.
    return std::isfinite(oleDays) && std::trunc(oleDays) >= MinimumDay && oleDays < EndDay;
}

kvDate kvDate::fromDays(double oleDays)
{
    kvDate result;
    result.m_days = isInRange(oleDays) ? oleDays : 0.0;
    return result;
}

kvDate kvDate::fromDate(QDate date, QTime time)
{
    if (!date.isValid())
        return {};
    const QTime clock = time.isValid() ? time : QTime(0, 0);
    return fromParts(epoch().daysTo(date), clock.msecsSinceStartOfDay() / 1000);
}

kvDate kvDate::fromDateTime(const QDateTime &dateTime)
{
    return fromDate(dateTime.date(), dateTime.time());
}

kvDate kvDate::DateSerial(int year, int month, int day)
{
    const int monthIndex = month - 1;
    const int normalisedYear = year + int(floorDiv(monthIndex, 12));
    const int normalisedMonth = int(monthIndex - floorDiv(monthIndex, 12) * 12) + 1;
    const QDate first(normalisedYear, normalisedMonth, 1);
    return fromDate(first.addDays(qint64(day) - 1));
}

bool kvDate::isValid() const
{
    return date().isValid();
}

long long kvDate::dayNumber() const
{
    return static_cast<long long>(std::trunc(m_days));
}

int kvDate::secondsOfDay() const
{
    const double fraction = std::fabs(m_days - std::trunc(m_days));
    const long long seconds = std::llround(fraction * secondsPerDay);
    return int(std::min(seconds, secondsPerDay - 1));
}

QDate kvDate::date() const
{
    return epoch().addDays(dayNumber());
}

QTime kvDate::time() const
{
    return QTime::fromMSecsSinceStartOfDay(secondsOfDay() * 1000);
}

QDateTime kvDate::toDateTime() const
{
    return QDateTime(date(), time(), Qt::UTC);
}

kvDate kvDate::dateOnly() const
{
    return fromParts(dayNumber(), 0);
}

int kvDate::weekdayFromMonday() const
{
    return date().dayOfWeek();
}

int kvDate::weekdayFromSunday() const
{
    return date().dayOfWeek() % 7 + 1;
}

kvDate kvDate::addDays(long long days) const
{
    return fromParts(dayNumber() + days, secondsOfDay());
}

kvDate kvDate::addMonths(int months) const
{
    // QDate::addMonths clamps to the target month's last day: 31 January + 1 is 28/29 February.
    return fromDate(date().addMonths(months), time());
}

kvDate kvDate::addMinutes(long long minutes) const
{
    return addSeconds(minutes * 60);
}

kvDate kvDate::addSeconds(long long seconds) const
{
    return fromParts(dayNumber(), secondsOfDay() + seconds);
}
