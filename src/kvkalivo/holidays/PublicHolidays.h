#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QDate>
#include <QString>

/*!
    \file PublicHolidays.h
    \brief The holiday calendar: German public and commemorative days.
*/

namespace kv {

/*!
    \brief Easter Sunday of \a year by a Gauss-type computation.

    Years 1582 to 2399 use a table of century constants; any other year is
    evaluated with A = B = C = 0 and gives a deterministic but meaningless date, never an
    error. The result is built with kvDate::DateSerial(), so a day of 0 or less rolls back
    into February and a 31 April rolls on to 1 May.

    \a year is an astronomical year: 0 is 1 BC and -5 is 6 BC. QDate has no year 0 and
    counts BC years from -1, so for years <= 0 the returned date's year() is \a year - 1.
*/
KVKALIVO_TESTS_EXPORT kvDate GetEasterSunday(qint16 year);

/*!
    \brief The trimmed name of the public or commemorative day \a date falls on, or empty text.

    The time of day is ignored. The rows of the holiday table are tested in order and the
    first match wins ("Tag der Arbeit" before "Christi Himmelfahrt", "4. Advent" before
    "Hl. Abend"). A date whose year does not fit a 16-bit integer carries no name relative
    to Easter, as GetEasterSunday cannot be asked for that year.
*/
KVKALIVO_TESTS_EXPORT QString GetPublicHolidayName(const kvDate &date);
/*!
    \overload
    An invalid \a date has no name.
*/
KVKALIVO_TESTS_EXPORT QString GetPublicHolidayName(QDate date);

} // namespace kv
