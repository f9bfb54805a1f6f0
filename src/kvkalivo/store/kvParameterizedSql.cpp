#include "kvParameterizedSql.h"

#include "kvFormat.h"
#include "kvSQLiteDuration.h"
#include "kvSqlTexts.h"

#include <QStringList>

kvParameterizedSql::Engine kvParameterizedSql::EngineOf(const QString &driverName)
{
    if (driverName == QStringLiteral("QSQLITE"))
        return Engine::SQLite;
    if (driverName == QStringLiteral("QMYSQL") || driverName == QStringLiteral("QMARIADB"))
        return Engine::MySql;
    return Engine::Other;
}

QVariant kvParameterizedSql::BoundDate(const kvDate &date, int dialect, Engine engine)
{
    if (engine == Engine::Other)
        return AtPrecision(date, dialect).toDateTime();
    return kv::Format(date, dialect == kvSqlTexts::MicrosoftSql ? QStringLiteral("yyyy-mm-dd hh:nn:ss")
                                                            : QStringLiteral("yyyy-mm-dd hh:nn"));
}

QVariant kvParameterizedSql::WrittenDate(const kvDate &date, int dialect)
{
    return QVariant::fromValue(AtPrecision(date, dialect));
}

kvDate kvParameterizedSql::AtPrecision(const kvDate &date, int dialect)
{
    // Only the SQL Server literal carries seconds.
    return dialect == kvSqlTexts::MicrosoftSql ? date : date.addSeconds(-date.second());
}

kvSqlStatement kvParameterizedSql::DayQuery(const kvTableName &table, const kvDate &day, int dialect,
                                            Engine engine)
{
    const QString t = table.Table();
    const QVariant d1 = BoundDate(day, dialect, engine);
    const QVariant d2 = BoundDate(day.addDays(1), dialect, engine);
    const QString text = QStringLiteral("SELECT ") + t + QStringLiteral(".* From ") + table.Qualified()
                         + QStringLiteral(" Where ((") + t + QStringLiteral(".DateBegin <= ?) And (")
                         + t + QStringLiteral(".DateEnd >= ?)) Or ((") + t
                         + QStringLiteral(".DateBegin >= ?) And (") + t
                         + QStringLiteral(".DateBegin < ?))ORDER BY ") + t + QStringLiteral(".DateBegin");
    return {text, {d1, d1, d1, d2}};
}

kvSqlStatement kvParameterizedSql::EarliestOverlapQuery(const kvTableName &table, const kvDate &from,
                                                        int dialect, Engine engine)
{
    const QVariant boundary = BoundDate(from, dialect, engine);
    const QString text = QStringLiteral("SELECT MIN(%1.DateBegin) AS EarliestBegin From %2 Where ((%1.DateEnd >= ?) And (%1.DateBegin < ?))")
                             .arg(table.Table(), table.Qualified());
    return {text, {boundary, boundary}};
}

kvSqlStatement kvParameterizedSql::GridQuery(const kvTableName &table, const kvDate &first, const kvDate &end,
                                             const kvDate &beginFloor, int dialect, Engine engine)
{
    // A day query's row begins before the next day, and either ends on the day or later, or
    // begins on it: before the grid's end, and from its first day on, or ending then or later.
    const QVariant start = BoundDate(first, dialect, engine);
    const QString text = QStringLiteral("SELECT %1.* From %2 Where (%1.DateBegin >= ?) And (%1.DateBegin < ?) "
                                        "And ((%1.DateBegin >= ?) Or (%1.DateEnd >= ?)) ORDER BY %1.DateBegin")
                             .arg(table.Table(), table.Qualified());
    return {text, {BoundDate(beginFloor, dialect, engine), BoundDate(end, dialect, engine), start, start}};
}

kvSqlStatement kvParameterizedSql::LongestDurationQuery(const kvTableName &table)
{
    // One MAX over the duration expression alone, so that SQLite reads it from the end of its index.
    return {QStringLiteral("SELECT CASE WHEN Longest < %1 THEN Longest END AS Longest, Longest >= %1 AS Unreadable "
                           "From (SELECT MAX(%2) AS Longest From %3)")
                .arg(QLatin1String(kvSQLiteDuration::Infinite),
                     kvSQLiteDuration::Expression(table.Table() + QLatin1Char('.')), table.Qualified()),
            {}};
}

kvSqlStatement kvParameterizedSql::ChangeMarkerQuery()
{
    return {QStringLiteral("SELECT total_changes() AS Changes, (SELECT data_version FROM pragma_data_version) AS Version"), {}};
}

kvSqlStatement kvParameterizedSql::NextQuery(const kvTableName &table, const kvDate &lastDisplayedDay,
                                             int dialect, Engine engine)
{
    return SearchQuery(table, ">=", "ASC", BoundDate(lastDisplayedDay.addDays(1), dialect, engine));
}

kvSqlStatement kvParameterizedSql::PreviousQuery(const kvTableName &table,
                                                 const kvDate &firstDisplayedDay, int dialect,
                                                 Engine engine)
{
    return SearchQuery(table, "<", "DESC", BoundDate(firstDisplayedDay, dialect, engine));
}

kvSqlStatement kvParameterizedSql::UpdateStatement(const kvTableName &table, int dialect,
                                                   const kvAppointmentValues &values,
                                                   const kvOptionalColumns &columns)
{
    QStringList assignments{QStringLiteral("DateBegin = ?"), QStringLiteral("DateEnd = ?"),
                            QStringLiteral("Name = ?")};
    QVariantList bound{WrittenDate(values.DateBegin, dialect), WrittenDate(values.DateEnd, dialect),
                       values.Name};
    if (columns.Remark) {
        assignments << QStringLiteral("Remark = ?");
        bound << values.Remark;
    }
    if (columns.Document) {
        assignments << QStringLiteral("Document = ?");
        bound << values.Document;
    }
    if (columns.ImageID) {
        assignments << QStringLiteral("ImageID = ?");
        bound << int(values.ImageID);
    }
    bound << values.DateID;
    return {QStringLiteral("UPDATE ") + table.Qualified() + QStringLiteral(" SET ")
                + assignments.join(QStringLiteral(", ")) + QStringLiteral(" WHERE DateID = ?"),
            bound};
}

kvSqlStatement kvParameterizedSql::DeleteStatement(const kvTableName &table, qint32 dateId)
{
    return {QStringLiteral("DELETE FROM ") + table.Qualified() + QStringLiteral(" WHERE DateID = ?"), {dateId}};
}

kvSqlStatement kvParameterizedSql::SearchQuery(const kvTableName &table, const char *comparison,
                                               const char *order, const QVariant &boundary)
{
    const QString t = table.Table();
    const QString text = QStringLiteral("SELECT ") + t + QStringLiteral(".DateBegin AS NextDate From ")
                         + table.Qualified() + QStringLiteral(" Where (((") + t + QStringLiteral(".DateBegin) ")
                         + QString::fromLatin1(comparison) + QStringLiteral(" ?)) ORDER BY ") + t
                         + QStringLiteral(".DateBegin ") + QString::fromLatin1(order);
    return {text, {boundary}};
}
