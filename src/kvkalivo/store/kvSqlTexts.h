#pragma once

#include "kvAppointmentValues.h"
#include "kvDate.h"
#include "kvOptionalColumns.h"
#include "kvkalivo_export.h"

#include <QString>
#include <QtGlobal>

/*!
    \brief The SQL texts the control sends by default, built by plain concatenation: dialect
    choice, date literals, the per-day, next and previous queries, UPDATE and
    DELETE, and the delete question.

    Pure functions: no database is touched. The table name is inserted verbatim and text
    values are not escaped, deliberately: with ParameterizedSql false, hosts get exactly these
    texts. kvParameterizedSql is the safe counterpart.
*/
class KVKALIVO_TESTS_EXPORT kvSqlTexts
{
public:
    //! enDbDateFormat's values; DatabaseDialect is one of 1, 2, 3.
    enum Dialect : qint16 { Auto = 0, MicrosoftSql = 1, MicrosoftAccess = 2, MySql = 3 };

    /*!
        The dialect: an explicit \a dbDateFormat 1, 2 or 3 wins; otherwise Access when
        \a provider contains "Microsoft.Jet.OLEDB" (case-sensitive), SQL Server when the
        upper-cased \a connectionString contains "SQL SERVER" or "SQLOLEDB", else MySQL.
    */
    static qint16 DatabaseDialect(int dbDateFormat, const QString &provider,
                                  const QString &connectionString);
    //! The detection alone (kvAuto): needs the connection string only when not Jet.
    static bool IsJetProvider(const QString &provider);
    static qint16 DialectFromConnectionString(const QString &connectionString);

    //! #mm-dd-yyyy hh:nn# (2), CONVERT(DATETIME,'yyyy-mm-dd hh:nn:ss',102) (1), else 'yyyy-mm-dd hh:nn'.
    static QString FormatDbDate(const kvDate &date, int dialect);

    //! The per-day query for \a day (no blank before "ORDER BY").
    static QString DayQuery(const QString &table, const kvDate &day, int dialect);
    //! The search after the last displayed day (from its next day's 00:00).
    static QString NextQuery(const QString &table, const kvDate &lastDisplayedDay, int dialect);
    //! The search before the first displayed day's 00:00.
    static QString PreviousQuery(const QString &table, const kvDate &firstDisplayedDay, int dialect);

    //! The UPDATE, naming only the optional columns that exist.
    static QString UpdateStatement(const QString &table, int dialect,
                                   const kvAppointmentValues &values,
                                   const kvOptionalColumns &columns);
    //! "DELETE T.* FROM T WHERE (T.DateID = n)".
    static QString DeleteStatement(const QString &table, qint32 dateId);

    /*!
        "Termin < Name> löschen?" for an all-day appointment, else "Termin <hh:nn Name> löschen?".
        The blank after "<" in the first form only is deliberate: hosts compare these texts.
    */
    static QString DeleteQuestion(const kvDate &dateBegin, const QString &name);

private:
    static QString SetColumn(const QString &table, const QString &column, const QString &value);
    static QString Quoted(const QString &text);
};
