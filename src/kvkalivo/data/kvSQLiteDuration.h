#pragma once

#include <QString>

/*!
    \brief An appointment's duration as SQLite computes it, in the index kvAppointmentTable makes
    and in the query for the longest duration, which that index answers without reading the table.

    DateEnd less DateBegin in days; NULL when a date is NULL; Infinite when DateBegin is no
    text or either date is text that does not read as a date: such a row orders by its storage
    class rather than its time, so no duration bounds it.
*/
class kvSQLiteDuration
{
public:
    //! What the expression gives for a row whose dates no duration bounds: SQLite reads 9e999 as infinity.
    static constexpr const char *Infinite = "9e999";

    //! The expression, each column name preceded by \a qualifier ("T." or nothing).
    static QString Expression(const QString &qualifier);
};
