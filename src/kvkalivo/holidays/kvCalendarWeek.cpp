#include "kvCalendarWeek.h"

namespace {

long long floorDiv(long long value, long long divisor)
{
    return value / divisor - ((value % divisor != 0) && ((value < 0) != (divisor < 0)) ? 1 : 0);
}

} // namespace

int kv::GetCalendarWeek(const kvDate &date)
{
    if (!date.isValid())
        return 0;
    const QDate day = date.date();
    const kvDate firstOfYear = kvDate::fromDate(QDate(day.year(), 1, 1));
    const int w = firstOfYear.weekdayFromSunday();
    const long long week = floorDiv((w + 1) % 7 + date.daysSince(firstOfYear) - 3, 7) + 1;
    if (week == 0)
        return kv::GetCalendarWeek(firstOfYear.addDays(-1)); // 31 December of the previous year
    const kvDate lastOfYear = kvDate::fromDate(QDate(day.year(), 12, 31));
    if (week == 53 && (lastOfYear.weekdayFromSunday() - 1) % 7 <= 3)
        return 1;
    return int(week);
}

int kv::GetCalendarWeek(QDate date)
{
    if (!date.isValid())
        return 0;
    return kv::GetCalendarWeek(kvDate::fromDate(date));
}
