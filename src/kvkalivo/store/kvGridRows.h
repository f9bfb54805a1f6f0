#pragma once

#include "kvAppointmentValues.h"
#include "kvDate.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

/*!
    \brief The rows of one grid query, handed out day by day as the per-day query would return them.

    Each row keeps how the engine returned DateBegin and DateEnd, so that a day's rows are
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
        //! A bound day boundary.
        explicit Value(const QVariant &bound);
        //! A stored date: \a stored as the engine returned it, \a date what it reads as.
        Value(const QVariant &stored, const kvDate &date);

        //! As the engine orders a stored value (this) against a bound one.
        enum class Order { Before, Same, After, None };
        Order CompareTo(const Value &bound) const
        {
            if (m_kind == Kind::Null)
                return Order::None;
            if (m_kind == Kind::Text && bound.m_kind == Kind::Text)
                return OrderOf(QString::compare(m_text, bound.m_text, Qt::CaseSensitive), 0);
            if (m_kind == Kind::Number && bound.m_kind == Kind::Text)
                return Order::Before;
            if (!m_hasClock || !bound.m_hasClock)
                return Order::None;
            return OrderOf(m_clock, bound.m_clock);
        }

    private:
        enum class Kind { Null, Text, Number, DateTime };
        void SetClock(const std::optional<kvDate> &date);
        template <typename T>
        static Order OrderOf(const T &a, const T &b)
        {
            return a < b ? Order::Before : (b < a ? Order::After : Order::Same);
        }

        Kind m_kind = Kind::Null;
        QString m_text;
        bool m_hasClock = false;
        qint64 m_clock = 0;   // the wall-clock time in seconds, when it reads as a date-time
    };

    kvGridRows() = default;
    kvGridRows(const kvDate &first, int dayCount) : m_first(first), m_dayCount(dayCount) {}

    //! \a appointment's row, its dates as the engine returned them: \a begin and \a end.
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
