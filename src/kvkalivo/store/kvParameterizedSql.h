#pragma once

#include "kvAppointmentValues.h"
#include "kvDate.h"
#include "kvOptionalColumns.h"
#include "kvSqlStatement.h"
#include "kvTableName.h"
#include "kvkalivo_export.h"

#include <QString>
#include <QVariant>

/*!
    \brief The ParameterizedSql counterparts of kvSqlTexts: every value is bound to a "?"
    marker, and the SQL is the common subset SQLite, MariaDB/MySQL, SQL Server and Access
    accept (no [brackets], no table-qualified SET columns, plain DELETE FROM).

    The statements select and change the same rows as kvSqlTexts: the per-day, next
    and previous conditions are the same, with the date literals replaced by markers. Dates
    are bound at the precision of the dialect's literal (seconds only for SQL Server). In
    queries they are bound as the text the literal holds on SQLite and MariaDB/MySQL, so that
    the comparisons are the literal's whatever text form the rows hold, and as a date-time
    value elsewhere; UPDATE binds them as dates, which the data layer stores as the
    recordset's insert does. The table name cannot be bound: it is one name (kvTableName),
    written as the engine quotes it.
*/
class KVKALIVO_TESTS_EXPORT kvParameterizedSql
{
public:
    //! How the engine behind a connection wants a date value bound.
    enum class Engine { SQLite, MySql, Other };

    //! From a Qt SQL driver name: QSQLITE, QMYSQL/QMARIADB, anything else (QODBC...).
    static Engine EngineOf(const QString &driverName);

    //! A date compared in a query: what the dialect's literal says (see the class comment).
    static QVariant BoundDate(const kvDate &date, int dialect, Engine engine);
    //! A date written by UPDATE: the date at the literal's precision, stored by the data layer
    //! the way InsertAppointment's recordset stores it.
    static QVariant WrittenDate(const kvDate &date, int dialect);

    // The table is a kvTableName: its columns are qualified by its own name, quoted as it needs.
    static kvSqlStatement DayQuery(const kvTableName &table, const kvDate &day, int dialect, Engine engine);
    /*!
        The earliest DateBegin ("EarliestBegin", NULL for none) of the appointments that began
        before \a from and last until \a from or later: for every day from \a from on, an
        appointment that touches it begins on that day, after \a from, or not before this.
    */
    static kvSqlStatement EarliestOverlapQuery(const kvTableName &table, const kvDate &from, int dialect,
                                               Engine engine);
    /*!
        Every row that a DayQuery of a day from \a first to before \a end returns, in DateBegin
        order, found through the DateBegin index from \a beginFloor on: no appointment that
        began before \a first and lasts until \a first or later begins before \a beginFloor.
    */
    static kvSqlStatement GridQuery(const kvTableName &table, const kvDate &first, const kvDate &end,
                                    const kvDate &beginFloor, int dialect, Engine engine);
    /*!
        SQLite: the longest DateEnd - DateBegin in days ("Longest", NULL for none), and whether
        any row holds a date that is no date text ("Unreadable" 1, "Longest" then NULL): such a
        row compares by its storage class, not its time, and no duration bounds it. A table made
        by kvAppointmentTable answers from its duration index; others are read row by row.
    */
    static kvSqlStatement LongestDurationQuery(const kvTableName &table);
    /*!
        SQLite: "Changes" and "Version" change whenever anything is written to the database,
        through this connection (total_changes) or another one (data_version).
    */
    static kvSqlStatement ChangeMarkerQuery();
    static kvSqlStatement NextQuery(const kvTableName &table, const kvDate &lastDisplayedDay,
                                    int dialect, Engine engine);
    static kvSqlStatement PreviousQuery(const kvTableName &table, const kvDate &firstDisplayedDay,
                                        int dialect, Engine engine);
    static kvSqlStatement UpdateStatement(const kvTableName &table, int dialect,
                                          const kvAppointmentValues &values,
                                          const kvOptionalColumns &columns);
    static kvSqlStatement DeleteStatement(const kvTableName &table, qint32 dateId);

private:
    static kvDate AtPrecision(const kvDate &date, int dialect);
    static kvSqlStatement SearchQuery(const kvTableName &table, const char *comparison,
                                      const char *order, const QVariant &boundary);
};
