#include "kvAppointmentTable.h"

#include "kvAdoError.h"
#include "kvConnection.h"
#include "kvDataSource.h"
#include "kvSQLiteDuration.h"

#include <QRegularExpression>

namespace {

struct ColumnTypes
{
    const char *key;
    const char *dateTime;
    const char *name;
    const char *remark;
    const char *document;
    const char *imageId;
    const char *tableOptions;
};

ColumnTypes typesFor(const QString &engine)
{
    const QString name = engine.toLower();
    if (name == QLatin1String("sqlite"))
        return {"INTEGER PRIMARY KEY AUTOINCREMENT", "DATETIME NOT NULL", "TEXT NOT NULL", "TEXT", "TEXT",
                "SMALLINT", ""};
    if (name == QLatin1String("mariadb") || name == QLatin1String("mysql"))
        return {"INT NOT NULL AUTO_INCREMENT PRIMARY KEY", "DATETIME NOT NULL", "VARCHAR(255) NOT NULL", "TEXT NULL",
                "TEXT NULL", "SMALLINT NULL", " ENGINE=InnoDB DEFAULT CHARSET=utf8mb4"};
    if (name == QLatin1String("sqlserver"))
        return {"INT IDENTITY(1,1) NOT NULL PRIMARY KEY", "DATETIME NOT NULL", "NVARCHAR(255) NOT NULL",
                "NVARCHAR(MAX) NULL", "NVARCHAR(MAX) NULL", "SMALLINT NULL", ""};
    if (name == QLatin1String("access"))
        return {"COUNTER PRIMARY KEY", "DATETIME NOT NULL", "TEXT(255) NOT NULL", "MEMO", "MEMO", "SHORT", ""};
    throw kvAdoError::invalidArgument(QStringLiteral("Datenbank '%1' wird nicht unterstützt").arg(engine));
}

// "IX_" table "_" column, with anything but letters, digits and "_" in the table name as "_".
QString indexName(const QString &tableName, const QString &column)
{
    static const QRegularExpression other(QStringLiteral("[^A-Za-z0-9_]"));
    QString table = tableName;
    table.replace(other, QStringLiteral("_"));
    return QStringLiteral("IX_") + table + QLatin1Char('_') + column;
}

} // namespace

void kvAppointmentTable::Create(kvConnection &connection, const QString &tableName, bool withOptionalColumns)
{
    if (connection.State() != kvConnection::adStateOpen)
        throw kvAdoError::connectionUnusable();
    const QString engine = kvDataSource::EngineName(kvDataSource::Of(connection).engine());
    for (const QString &statement : CreateTableSql(engine, tableName, withOptionalColumns))
        connection.Execute(statement);
}

QStringList kvAppointmentTable::CreateTableSql(const QString &engine, const QString &tableName,
                                               bool withOptionalColumns)
{
    const ColumnTypes types = typesFor(engine);
    const auto column = [](const char *name, const char *type) {
        return QString::fromLatin1(name) + QLatin1Char(' ') + QString::fromLatin1(type);
    };
    QStringList columns{column("DateID", types.key), column("DateBegin", types.dateTime),
                        column("DateEnd", types.dateTime), column("Name", types.name)};
    if (withOptionalColumns)
        columns << column("Remark", types.remark) << column("Document", types.document)
                << column("ImageID", types.imageId);
    QStringList statements{QStringLiteral("CREATE TABLE %1 (%2)%3")
                               .arg(tableName, columns.join(QStringLiteral(", ")),
                                    QString::fromLatin1(types.tableOptions))};
    for (const QString &indexed : {QStringLiteral("DateBegin"), QStringLiteral("DateEnd")})
        statements << QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
                          .arg(indexName(tableName, indexed), tableName, indexed);
    if (engine.compare(QLatin1String("sqlite"), Qt::CaseInsensitive) == 0)
        statements << QStringLiteral("CREATE INDEX %1 ON %2 ((%3))")
                          .arg(indexName(tableName, QStringLiteral("Duration")), tableName,
                               kvSQLiteDuration::Expression(QString()));
    return statements;
}

