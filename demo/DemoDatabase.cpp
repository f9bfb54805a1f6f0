#include "DemoDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>

QString DemoDatabase::DefaultPath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return QDir(folder).filePath(QStringLiteral("termine.sqlite"));
}

bool DemoDatabase::Open(const QString &path, QString *error)
{
    m_path = QFileInfo(path).absoluteFilePath();
    if (!QDir().mkpath(QFileInfo(m_path).absolutePath())) {
        *error = QStringLiteral("Der Ordner für %1 kann nicht angelegt werden.").arg(m_path);
        return false;
    }
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    database.setDatabaseName(m_path);
    if (!database.open()) {
        *error = database.lastError().text();
        return false;
    }
    return CreateTableIfMissing(error);
}

QSqlDatabase DemoDatabase::Connection() const
{
    return QSqlDatabase::database(m_connectionName, false);
}

bool DemoDatabase::CreateTableIfMissing(QString *error)
{
    QSqlQuery query(Connection());
    const bool created = query.exec(QStringLiteral(
        "CREATE TABLE IF NOT EXISTS %1 ("
        "DateID INTEGER PRIMARY KEY AUTOINCREMENT, "
        "DateBegin DATETIME NOT NULL, "
        "DateEnd DATETIME NOT NULL, "
        "Name TEXT NOT NULL, "
        "Remark TEXT, "
        "Document TEXT, "
        "ImageID INTEGER)").arg(QLatin1String(TableName)));
    if (!created)
        *error = query.lastError().text();
    return created;
}
