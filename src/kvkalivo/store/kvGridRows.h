#pragma once

#include "kvAppointmentValues.h"
#include "kvDate.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/*!
    \brief The rows of one grid query, handed out day by day as the per-day query would return them.

    Each row keeps DateBegin and DateEnd as the engine returned them, so that a day's rows are
    chosen by the comparisons the engine makes with the bound day boundaries: text with text
    (SQLite, and MariaDB/MySQL text columns), a number before any text (SQLite), date-time
    values by their wall-clock time; NULL compares as nothing. The rows stay in the query's
    DateBegin order.
*/
class kvGridRows
{
public:
    //! A stored or bound date, prepared once for comparing.
    class Value
    {
    public:
        Value() = default;
        explicit Value(const QVariant &value);
        //! As the engine compares a stored value (this) with a bound one; nothing for NULL.
        std::optional<int> CompareTo(const Value &bound) const;

    private:
        enum class Kind { Null, Text, Number, DateTime };
        Kind m_kind = Kind::Null;
        QString m_text;
        std::optional<qint64> m_clock;   // wall-clock milliseconds, when it reads as a date-time
    };

    kvGridRows() = default;
    kvGridRows(const kvDate &first, int dayCount) : m_first(first), m_dayCount(dayCount) {}

    void Append(const kvAppointmentValues &appointment, const QVariant &begin, const QVariant &end);
    //! Whether \a day is one of the grid's days.
    bool Covers(const kvDate &day) const;
    //! The rows the per-day query bound with \a dayStart and \a nextDay selects.
    QList<const kvAppointmentValues *> RowsOf(const QVariant &dayStart, const QVariant &nextDay) const;

private:
    struct Row
    {
        kvAppointmentValues appointment;
        Value begin;
        Value end;
    };

    kvDate m_first;
    int m_dayCount = 0;
    QList<Row> m_rows;
};
