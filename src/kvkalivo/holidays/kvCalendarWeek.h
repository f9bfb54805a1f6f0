#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QDate>

/*!
    \file kvCalendarWeek.h
    \brief kv::GetCalendarWeek(): the calendar week of the status bar, the week column and the printout.
*/

namespace kv {

/*!
    \brief The ISO 8601 calendar week of \a date: weeks start on Monday, and week 1
    holds the year's first Thursday.

    The one function behind the status bar's "N. KW", the grid's week column and the
    printout. The time of day is ignored. Returns 1 to 53, or 0 for an invalid date.
*/
KVKALIVO_TESTS_EXPORT int GetCalendarWeek(const kvDate &date);
/*!
    \overload
    The calendar week of \a date; 0 for an invalid QDate.
*/
KVKALIVO_TESTS_EXPORT int GetCalendarWeek(QDate date);

} // namespace kv
