#pragma once

#include "kvkalivo_export.h"

#include <QDate>
#include <QDateTime>
#include <QMetaType>
#include <QTime>

#include <compare>

/*!
    \file kvDate.h
    \brief kvDate, the control's naive wall-clock Date (days since 1899-12-30).
*/

/*!
    \brief The control's Date: a naive wall-clock value, days since 30 December 1899.

    The whole part is the day, the fraction the time of day, exactly as an OLE Automation
    date. There is no time zone and no daylight-saving shift: 02:30 on the night the clocks
    go forward stays 02:30. Arithmetic is done on whole seconds, so adding minutes is exact.
    Dates before the epoch follow the OLE convention: -1.25 is 29 December 1899, 06:00.
    A default-constructed kvDate is day 0, 30 December 1899 00:00. Comparisons are exact to
    the second.

    kvDate is passed by value and stored in QVariant, so its layout is part of the binary
    interface and is frozen: one double, the OLE day number, and nothing else. It gets no
    d-pointer; a new member would need a new type.
*/
class KVKALIVO_EXPORT kvDate
{
public:
    //! Day 0: 30 December 1899, 00:00.
    constexpr kvDate() = default;

    //! The whole day of the first Date, 1 January 100.
    static constexpr double MinimumDay = -657434.0;
    //! The day after the last Date, 31 December 9999: every Date is before it.
    static constexpr double EndDay = 2958466.0;
    //! Whether \a oleDays is a Date: finite and from 100-01-01 00:00 to 9999-12-31 23:59:59.
    static bool isInRange(double oleDays);

    //! The OLE Automation value (days since 1899-12-30); NaN, infinities and values outside the Date range give day 0.
    static kvDate fromDays(double oleDays);
    //! \a date at \a time (an invalid time counts as 00:00); an invalid \a date gives day 0.
    static kvDate fromDate(QDate date, QTime time = QTime(0, 0));
    //! Takes the wall-clock date and time of \a dateTime as they read; its zone is ignored.
    static kvDate fromDateTime(const QDateTime &dateTime);
    //! A date from its parts; months and days outside their range roll over (day 0 is the
    //! last of the previous month).
    static kvDate DateSerial(int year, int month, int day);

    //! The OLE Automation value: days since 1899-12-30, the fraction the time of day.
    double days() const { return m_days; }
    //! False only when the day lies outside QDate's range.
    bool isValid() const;

    //! The day, without the time of day.
    QDate date() const;
    //! The time of day, to the second.
    QTime time() const;
    //! The wall-clock value carried in a QDateTime in UTC (never local time).
    QDateTime toDateTime() const;

    //! The day without its time of day (the whole part).
    kvDate dateOnly() const;
    long long dayNumber() const;   //!< whole days since 1899-12-30
    int secondsOfDay() const;      //!< 0 to 86399

    int year() const { return date().year(); }     //!< the year, as QDate counts it
    int month() const { return date().month(); }   //!< 1 to 12
    int day() const { return date().day(); }       //!< day of the month, 1 to 31
    int hour() const { return secondsOfDay() / 3600; }      //!< 0 to 23
    int minute() const { return secondsOfDay() / 60 % 60; } //!< 0 to 59
    int second() const { return secondsOfDay() % 60; }      //!< 0 to 59
    //! Monday = 1 .. Sunday = 7, the numbering the control's rules use.
    int weekdayFromMonday() const;
    //! Sunday = 1 .. Saturday = 7, as Format's "w" pattern numbers the weekdays.
    int weekdayFromSunday() const;

    //! \a days later (earlier when negative), same time of day.
    kvDate addDays(long long days) const;
    //! Keeps the day of the month, clamped to the last day of the target month.
    kvDate addMonths(int months) const;
    //! Exact minute arithmetic: no daylight-saving shift, the day rolls over at midnight.
    kvDate addMinutes(long long minutes) const;
    //! Exact second arithmetic, as addMinutes().
    kvDate addSeconds(long long seconds) const;

    //! Whole days from \a other to this date, ignoring times of day.
    long long daysSince(const kvDate &other) const { return dayNumber() - other.dayNumber(); }

    //! Equal to the second.
    friend bool operator==(const kvDate &a, const kvDate &b)
    {
        return a.serialSeconds() == b.serialSeconds();
    }
    //! Ordered by date and time of day, to the second.
    friend std::strong_ordering operator<=>(const kvDate &a, const kvDate &b)
    {
        return a.serialSeconds() <=> b.serialSeconds();
    }

private:
    static kvDate fromParts(long long dayNumber, long long secondsOfDay);
    long long serialSeconds() const { return dayNumber() * 86400 + secondsOfDay(); }

    double m_days = 0.0;   // frozen: see the class description
};

static_assert(sizeof(kvDate) == sizeof(double), "kvDate's layout is part of the binary interface");

Q_DECLARE_METATYPE(kvDate)
