#include "kvSqlTexts.h"

#include "kvFormat.h"

namespace {

QString format(const kvDate &date, const char *pattern)
{
    return kv::Format(date, QString::fromLatin1(pattern));
}

} // namespace

qint16 kvSqlTexts::DatabaseDialect(int dbDateFormat, const QString &provider,
                                   const QString &connectionString)
{
    if (dbDateFormat == MicrosoftAccess)
        return MicrosoftAccess;
    if (dbDateFormat == MicrosoftSql || dbDateFormat == MySql)
        return qint16(dbDateFormat);
    if (IsJetProvider(provider))
        return MicrosoftAccess;
    return DialectFromConnectionString(connectionString);
}

bool kvSqlTexts::IsJetProvider(const QString &provider)
{
    return provider.contains(QStringLiteral("Microsoft.Jet.OLEDB"), Qt::CaseSensitive);
}

qint16 kvSqlTexts::DialectFromConnectionString(const QString &connectionString)
{
    const QString upper = connectionString.toUpper();
    if (upper.contains(QStringLiteral("SQL SERVER")) || upper.contains(QStringLiteral("SQLOLEDB")))
        return MicrosoftSql;
    return MySql;
}

QString kvSqlTexts::FormatDbDate(const kvDate &date, int dialect)
{
    if (dialect == MicrosoftAccess)
        return u'#' + format(date, "mm-dd-yyyy hh:nn") + u'#';
    if (dialect == MicrosoftSql)
        return QStringLiteral("CONVERT(DATETIME,'") + format(date, "yyyy-mm-dd hh:nn:ss")
               + QStringLiteral("',102)");
    return u'\'' + format(date, "yyyy-mm-dd hh:nn") + u'\'';
}

QString kvSqlTexts::DayQuery(const QString &table, const kvDate &day, int dialect)
{
    const QString &t = table;
    const QString d1 = FormatDbDate(day, dialect);
    const QString d2 = FormatDbDate(day.addDays(1), dialect);
    return QStringLiteral("SELECT ") + t + QStringLiteral(".* ") + QStringLiteral("From ") + t
           + u' ' + QStringLiteral("Where ((") + t + QStringLiteral(".DateBegin <= ") + d1
           + QStringLiteral(") And (") + t + QStringLiteral(".DateEnd >= ") + d1
           + QStringLiteral(")) Or ((") + t + QStringLiteral(".DateBegin >= ") + d1
           + QStringLiteral(") And (") + t + QStringLiteral(".DateBegin < ") + d2
           + QStringLiteral("))") + QStringLiteral("ORDER BY ") + t + QStringLiteral(".DateBegin");
}

QString kvSqlTexts::NextQuery(const QString &table, const kvDate &lastDisplayedDay, int dialect)
{
    const QString &t = table;
    const QString s = FormatDbDate(lastDisplayedDay.addDays(1), dialect);
    return QStringLiteral("SELECT ") + t + QStringLiteral(".DateBegin AS NextDate From ") + t + u' '
           + QStringLiteral("Where (((") + t + QStringLiteral(".DateBegin) >= ") + s
           + QStringLiteral(")) ") + QStringLiteral("ORDER BY ") + t
           + QStringLiteral(".DateBegin ASC");
}

QString kvSqlTexts::PreviousQuery(const QString &table, const kvDate &firstDisplayedDay, int dialect)
{
    const QString &t = table;
    const QString s = FormatDbDate(firstDisplayedDay, dialect);
    return QStringLiteral("SELECT ") + t + QStringLiteral(".DateBegin AS NextDate From ") + t + u' '
           + QStringLiteral("Where (((") + t + QStringLiteral(".DateBegin) < ") + s
           + QStringLiteral(")) ") + QStringLiteral("ORDER BY ") + t
           + QStringLiteral(".DateBegin DESC");
}

QString kvSqlTexts::UpdateStatement(const QString &table, int dialect,
                                    const kvAppointmentValues &values,
                                    const kvOptionalColumns &columns)
{
    const QString &t = table;
    QString sql = QStringLiteral("UPDATE ") + t + QStringLiteral(" SET ")
                  + SetColumn(t, QStringLiteral("DateBegin"), FormatDbDate(values.DateBegin, dialect))
                  + SetColumn(t, QStringLiteral("DateEnd"), FormatDbDate(values.DateEnd, dialect))
                  + SetColumn(t, QStringLiteral("Name"), Quoted(values.Name));
    if (columns.Remark)
        sql += SetColumn(t, QStringLiteral("Remark"), Quoted(values.Remark));
    if (columns.Document)
        sql += SetColumn(t, QStringLiteral("Document"), Quoted(values.Document));
    if (columns.ImageID)
        sql += SetColumn(t, QStringLiteral("ImageID"), Quoted(QString::number(values.ImageID)));
    if (sql.endsWith(u','))
        sql.chop(1);
    return sql + QStringLiteral(" WHERE (((") + t + QStringLiteral(".DateID)=")
           + QString::number(values.DateID) + QStringLiteral("))");
}

QString kvSqlTexts::DeleteStatement(const QString &table, qint32 dateId)
{
    const QString &t = table;
    return QStringLiteral("DELETE ") + t + QStringLiteral(".* FROM ") + t + QStringLiteral(" WHERE (")
           + t + QStringLiteral(".DateID = ") + QString::number(dateId) + u')';
}

QString kvSqlTexts::DeleteQuestion(const kvDate &dateBegin, const QString &name)
{
    const QString time = format(dateBegin, "hh:nn");
    if (time == QStringLiteral("00:00"))
        return QStringLiteral("Termin < ") + name + QStringLiteral("> löschen?");
    return QStringLiteral("Termin <") + time + u' ' + name + QStringLiteral("> löschen?");
}

QString kvSqlTexts::SetColumn(const QString &table, const QString &column, const QString &value)
{
    return table + QStringLiteral(".[") + column + QStringLiteral("] = ") + value + u',';
}

QString kvSqlTexts::Quoted(const QString &text)
{
    return u'\'' + text + u'\'';
}
