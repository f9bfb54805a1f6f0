#include "kvConnection.h"

#include "kvAdoError.h"
#include "kvField.h"
#include "kvStderrCapture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>

#include <atomic>
#include <optional>

namespace {

QString newConnectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("kvConnection-%1").arg(++counter);
}

bool isDate(const QVariant &value)
{
    const int type = value.userType();
    return type == qMetaTypeId<kvDate>() || type == QMetaType::QDateTime || type == QMetaType::QDate;
}

} // namespace

kvConnection::kvConnection(QObject *parent) : QObject(parent)
{
}

kvConnection::~kvConnection()
{
    Close();
    ReleaseDatabase();
}

kvConnection *kvConnection::Wrap(const QSqlDatabase &database, QObject *parent)
{
    auto *connection = new kvConnection(parent);
    connection->m_wrapped = true;
    connection->m_database = database;
    connection->m_source = kvDataSource::FromDatabase(database);
    connection->m_connectionString = connection->m_source.connectionString();
    connection->m_open = database.isOpen();
    return connection;
}

QString kvConnection::Provider() const
{
    return m_source.provider().isEmpty() ? QStringLiteral("MSDASQL") : m_source.provider();
}

void kvConnection::setConnectionString(const QString &connectionString)
{
    if (State() == adStateOpen)
        throw kvAdoError::objectOpen();
    ReleaseDatabase();
    if (m_wrapped)
        m_database = QSqlDatabase();
    m_wrapped = false;
    m_connectionString = connectionString;
    try {
        m_source = kvDataSource::FromConnectionString(connectionString);
    } catch (const kvRuntimeError &) {
        m_source = kvDataSource();   // Open() reports what is wrong with it
    }
}

int kvConnection::State() const
{
    // A connection whose server went away stays open: the next statement reopens it.
    return m_open && (m_database.isOpen() || m_reopenNeeded) ? adStateOpen : adStateClosed;
}

void kvConnection::Open(const QString &connectionString)
{
    if (State() == adStateOpen)
        throw kvAdoError::objectOpen();
    if (!connectionString.isEmpty())
        setConnectionString(connectionString);
    if (m_wrapped) {
        OpenWrapped();
        return;
    }
    const kvDataSource source = kvDataSource::FromConnectionString(m_connectionString);
    if (!QSqlDatabase::isDriverAvailable(source.qtDriver()))
        throw kvAdoError::providerNotFound(
            QStringLiteral("Qt-SQL-Treiber %1 ist nicht installiert").arg(source.qtDriver()));
    OpenOwn(source);
}

void kvConnection::OpenWrapped()
{
    if (!m_database.isOpen() && !m_database.open())
        throw kvAdoError::openFailed(QString(), kvAdoError::engineMessage(m_database.lastError()));
    m_open = true;
}

void kvConnection::OpenOwn(const kvDataSource &source)
{
    ReleaseDatabase();
    m_connectionName = newConnectionName();
    m_database = QSqlDatabase::addDatabase(source.qtDriver(), m_connectionName);
    m_database.setDatabaseName(source.databaseName());
    m_database.setHostName(source.hostName());
    if (source.port() > 0)
        m_database.setPort(source.port());
    m_database.setUserName(source.userName());
    m_database.setPassword(source.password());
    m_database.setConnectOptions(source.connectOptions());
    bool opened = false;
    QString driverOutput;
    if (source.qtDriver() == QLatin1String("QODBC")) {
        kvStderrCapture capture;
        opened = m_database.open();
        driverOutput = capture.Finish().simplified();
    } else {
        opened = m_database.open();
    }
    if (!opened) {
        const QSqlError error = m_database.lastError();
        const QString message = error.databaseText().trimmed().isEmpty() && !driverOutput.isEmpty()
                                    ? driverOutput + QStringLiteral(" (") + error.driverText() + QLatin1Char(')')
                                    : kvAdoError::engineMessage(error);
        ReleaseDatabase();
        throw kvAdoError::openFailed(OpenFailureContext(source), message);
    }
    m_source = source;
    m_open = true;
}

QString kvConnection::OpenFailureContext(const kvDataSource &source) const
{
    switch (source.engine()) {
    case kvDataSource::SQLite: {
        const QFileInfo file(source.databaseName());
        if (source.databaseName() != QLatin1String(":memory:") && !file.absoluteDir().exists())
            return QStringLiteral("SQLite-Datenbank '%1' kann nicht geöffnet werden, der Ordner '%2' existiert nicht")
                .arg(source.databaseName(), file.absolutePath());
        return QStringLiteral("SQLite-Datenbank '%1' kann nicht geöffnet werden").arg(source.databaseName());
    }
    case kvDataSource::MySql:
        return QStringLiteral("Keine Verbindung zum MySQL/MariaDB-Server");
    case kvDataSource::SqlServer:
        return QStringLiteral("Keine Verbindung zum SQL Server (ODBC-Treiber FreeTDS)");
    case kvDataSource::Access:
        return QStringLiteral("Access-Datenbank kann nicht geöffnet werden (ODBC-Treiber MDBTools)");
    case kvDataSource::Odbc:
        break;
    }
    return QStringLiteral("Keine ODBC-Verbindung");
}

void kvConnection::Close()
{
    if (!m_open)
        return;
    emit Closing();
    m_open = false;
    m_reopenNeeded = false;
    if (!m_wrapped)
        ReleaseDatabase();
}

void kvConnection::ReleaseDatabase()
{
    if (m_connectionName.isEmpty())
        return;
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
    m_connectionName.clear();
}

int kvConnection::Execute(const QString &sql)
{
    return RecordsAffected(Run(sql, {}));
}

void kvConnection::Execute(const QString &sql, const QVariantList &boundValues)
{
    Run(sql, boundValues);
}

QSqlQuery kvConnection::Run(const QString &sql, const QVariantList &boundValues)
{
    RequireOpen();
    if (m_reopenNeeded)
        Reopen();
    try {
        return RunOnce(sql, boundValues);
    } catch (const kvDatabaseError &failure) {
        // A read runs once more on a new connection; a write may have been done: never twice.
        if (failure.condition() != kvDatabaseError::ServerGone || !m_reopenNeeded || !IsRead(sql))
            throw;
    }
    Reopen();
    return RunOnce(sql, boundValues);
}

QSqlQuery kvConnection::RunOnce(const QString &sql, const QVariantList &boundValues)
{
    emit StatementExecuted(sql);
    QElapsedTimer waited;
    waited.start();
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    bool ok = false;
    if (boundValues.isEmpty()) {
        ok = query.exec(sql);
    } else if ((ok = query.prepare(sql))) {
        for (const QVariant &value : boundValues)
            query.addBindValue(DriverValue(value));
        ok = query.exec();
    }
    if (ok)
        return query;
    const kvDatabaseError failure = StatementFailure(query.lastError(), waited.elapsed());
    m_reopenNeeded = m_reopenNeeded || (IsServer() && failure.isUnavailable()
                                        && failure.condition() != kvDatabaseError::Busy);
    throw failure;
}

kvDatabaseError kvConnection::StatementFailure(const QSqlError &error, qint64 waitedMilliseconds) const
{
    const kvDatabaseError failure = kvAdoError::statementFailed(error, engine());
    // MariaDB's client reports a read that waited the whole Command Timeout as the server
    // gone: a failure after at least that long is the timeout.
    const qint64 timeout = qint64(m_source.commandTimeout()) * 1000;
    if (failure.condition() != kvDatabaseError::ServerGone || timeout <= 0 || waitedMilliseconds < timeout)
        return failure;
    return kvDatabaseError(failure.number(),
                           QStringLiteral("%1 (keine Antwort innerhalb von %2 s, Command Timeout)")
                               .arg(failure.description())
                               .arg(m_source.commandTimeout()),
                           kvDatabaseError::TimedOut);
}

void kvConnection::Reopen()
{
    emit Closing();   // recordsets let go of queries on the lost connection
    m_database.close();
    if (!m_database.open())
        throw kvAdoError::openFailed(OpenFailureContext(m_source), kvAdoError::engineMessage(m_database.lastError()));
    m_reopenNeeded = false;
}

bool kvConnection::IsServer() const
{
    const kvDataSource::Engine engine = m_source.engine();
    return engine == kvDataSource::MySql || engine == kvDataSource::SqlServer || engine == kvDataSource::Odbc;
}

bool kvConnection::IsRead(const QString &sql)
{
    static const QRegularExpression select(QStringLiteral("^[\\s(]*SELECT\\b"),
                                           QRegularExpression::CaseInsensitiveOption);
    return select.match(sql).hasMatch();
}

int kvConnection::RecordsAffected(const QSqlQuery &query)
{
    return query.isSelect() ? -1 : query.numRowsAffected();
}

void kvConnection::RequireOpen() const
{
    if (State() != adStateOpen)
        throw kvAdoError::connectionUnusable();
}

QVariant kvConnection::DriverValue(const QVariant &value) const
{
    if (!value.isValid() || value.isNull() || !isDate(value))
        return value;
    const std::optional<kvDate> date = kvField::TryDate(value);
    if (!date)
        return QVariant();   // a null QDateTime or QDate is SQL Null
    if (m_database.driverName() == QLatin1String("QODBC"))
        return kvField::ToDateTime(*date);
    return kvField::ToDbText(*date);
}
