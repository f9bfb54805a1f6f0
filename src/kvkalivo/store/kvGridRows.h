#pragma once

#include "kvAppointmentValues.h"
#include "kvDate.h"

#include <QList>
#include <QVariant>

#include <optional>

/*!
    \brief The rows of one grid query, handed out day by day as the per-day query would return them.

    Each row keeps DateBegin and DateEnd as the engine returned them, so that a day's rows are
    chosen by the comparisons the engine makes with the bound day boundaries: text with text
    (SQLite, and MariaDB/MySQL text columns), a number before any text (SQLite), date-time
    values as date-times; NULL compares as nothing. The rows stay in the query's DateBegin order.
*/
class kvGridRows
{
public:
    struct Row
    {
        kvAppointmentValues appointment;
        QVariant begin;
        QVariant end;
    };

    kvGridRows() = default;
    kvGridRows(const kvDate &first, int dayCount) : m_first(first), m_dayCount(dayCount) {}

    void Append(Row row) { m_rows.append(std::move(row)); }
    //! Whether \a day is one of the grid's days.
    bool Covers(const kvDate &day) const;
    //! The rows the per-day query for \a day selects, bound with \a dayStart and \a nextDay.
    QList<const Row *> RowsOf(const QVariant &dayStart, const QVariant &nextDay) const;

private:
    static std::optional<int> Compare(const QVariant &stored, const QVariant &bound);

    kvDate m_first;
    int m_dayCount = 0;
    QList<Row> m_rows;
};
