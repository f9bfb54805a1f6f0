#include "DemoDatabase.h"

#include "DemoData.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvRuntimeError.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QStandardPaths>

#include <algorithm>

DemoDatabase::DemoDatabase() = default;
DemoDatabase::~DemoDatabase() = default;

QString DemoDatabase::DefaultPath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return QDir(folder).filePath(QStringLiteral("termine.sqlite"));
}

QString DemoDatabase::SqliteConnectionString(const QString &path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QDir().mkpath(QFileInfo(absolute).absolutePath());
    return QStringLiteral("Driver=SQLite3;Database=") + absolute;
}

bool DemoDatabase::Open(const QString &connectionString, QString *error)
{
    m_connection = std::make_unique<kvConnection>();
    try {
        m_connection->Open(connectionString);
    } catch (const kvRuntimeError &failure) {
        *error = failure.description();
        return false;
    }
    return CreateTableIfMissing(error);
}

QString DemoDatabase::ConnectionString() const
{
    return m_connection->ConnectionString();
}

QString DemoDatabase::DisplayName() const
{
    const QSqlDatabase database = m_connection->Database();
    if (database.driverName() == QLatin1String("QSQLITE"))
        return QFileInfo(database.databaseName()).fileName();
    // Another engine: the connection string as given, without its password.
    static const QRegularExpression password(QStringLiteral("((?:Pwd|Password)\\s*=)[^;]*"),
                                             QRegularExpression::CaseInsensitiveOption);
    return QString(m_connection->ConnectionString()).replace(password, QStringLiteral("\\1***"));
}

QString DemoDatabase::DocumentFolder() const
{
    const QSqlDatabase database = m_connection->Database();
    const QString folder = database.driverName() == QLatin1String("QSQLITE")
        ? QFileInfo(database.databaseName()).absolutePath()
        : QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return QDir(folder).filePath(QStringLiteral("Dokumente"));
}

bool DemoDatabase::FillIfEmpty(QDate anchor, DemoData::Summary *summary, QString *error)
{
    *summary = {};
    try {
        if (DemoData::IsEmpty(*m_connection, QLatin1String(TableName)))
            *summary = DemoData::Fill(*m_connection, QLatin1String(TableName), anchor, DocumentFolder());
        return true;
    } catch (const kvRuntimeError &failure) {
        *error = failure.description();
        return false;
    }
}

bool DemoDatabase::Refill(QDate anchor, DemoData::Summary *summary, QString *error)
{
    *summary = {};
    try {
        *summary = DemoData::Fill(*m_connection, QLatin1String(TableName), anchor, DocumentFolder(), true);
        return true;
    } catch (const kvRuntimeError &failure) {
        *error = failure.description();
        return false;
    }
}

bool DemoDatabase::CreateTableIfMissing(QString *error)
{
    const QStringList tables = m_connection->Database().tables();
    const bool exists = std::any_of(tables.cbegin(), tables.cend(), [](const QString &table) {
        return table.compare(QLatin1String(TableName), Qt::CaseInsensitive) == 0;
    });
    if (exists)
        return true;
    try {
        kvAppointmentTable::Create(*m_connection, QLatin1String(TableName));
    } catch (const kvRuntimeError &failure) {
        *error = failure.description();
        return false;
    }
    return true;
}
