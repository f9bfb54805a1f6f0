#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QLocale>
#include <QString>

#include <optional>

/*!
    \file kvFormat.h
    \brief The control's date formatting and parsing: kv::Format(), kv::CDate(), kv::MonthName(), kv::WeekdayName().

    The patterns are the control's own ("dd-mm-yyyy", "hh:nn", "MMMM", "d mmm yyyy",
    "Short Date", …; "n" is the minute); the names come from a QLocale, German unless the
    host sets another on the control.
*/

namespace kv {

//! The control's locale unless the host sets another: German, Germany.
KVKALIVO_TESTS_EXPORT QLocale DefaultLocale();

/*!
    Formats a date. Named formats ("General Date", "Long Date", "Short Date",
    "Long Time", "Short Time") and the tokens d dd ddd dddd ddddd dddddd, m mm mmm mmmm
    (M is m; minutes directly after an hour token), y yy yyyy, h hh, n nn, s ss, w ww, q, c,
    ttttt and AM/PM, am/pm, A/P, a/p, AMPM. "/" is the locale's date separator, ":" always
    ":"; quoted text, backslash-escaped and all other characters are copied. Names come from
    \a locale; abbreviations carry no trailing dot ("Dez", "Sa").
*/
KVKALIVO_TESTS_EXPORT QString Format(const kvDate &value, const QString &pattern,
                               const QLocale &locale = DefaultLocale());

/*!
    Reads a date: what kv::Format() writes, and more. A date of day, month and year (numbers in the
    locale's order, or ISO year first; month names full or abbreviated, with or without a
    dot), a month and year (the 1st of that month), and a time "h:nn[:ss]" with an optional
    AM/PM, in any combination; a time alone is a time on day 0. A weekday name is ignored.
    Impossible dates and times and anything else give std::nullopt.
*/
KVKALIVO_TESTS_EXPORT std::optional<kvDate> CDate(const QString &text,
                                            const QLocale &locale = DefaultLocale());
//! Whether kv::CDate() can read \a text.
KVKALIVO_TESTS_EXPORT bool IsDate(const QString &text, const QLocale &locale = DefaultLocale());

//! The name of \a month 1 .. 12, as Format's "mmmm" or, abbreviated, "mmm".
KVKALIVO_TESTS_EXPORT QString MonthName(int month, bool abbreviate = false,
                                  const QLocale &locale = DefaultLocale());
//! The name of \a dayOfWeek counted from Monday = 1, as Format's "dddd" or, abbreviated, "ddd".
KVKALIVO_TESTS_EXPORT QString WeekdayName(int dayOfWeek, bool abbreviate = false,
                                    const QLocale &locale = DefaultLocale());

} // namespace kv
