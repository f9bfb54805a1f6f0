#include "kvConnection.h"
#include "kvConnection_p.h"

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

kvConnection::kvConnection(QObject *parent) : QObject(parent), d(std::make_unique<kvConnectionPrivate>(this))
{
}

kvConnection::~kvConnection()
{
    Close();
    d->ReleaseDatabase();
}

kvConnection *kvConnection::Wrap(const QSqlDatabase &database, QObject *parent)
{
    auto *connection = new kvConnection(parent);
    kvConnectionPrivate *d = connection->d.get();
    d->wrapped = true;
    d->database = database;
    d->source = kvDataSource::FromDatabase(database);
    d->connectionString = d->source.connectionString();
    d->open = database.isOpen();
    return connection;
}

QString kvConnection::Provider() const
{
    return d->source.provider().isEmpty() ? QStringLiteral("MSDASQL") : d->source.provider();
}

QString kvConnection::ConnectionString() const
{
    return d->connectionString;
}

QSqlDatabase kvConnection::Database() const
{
    return d->database;
}

const kvDataSource &kvDataSource::Of(const kvConnection &connection)
{
    return connection.d->source;
}

bool kvConnection::isWrapped() const
{
    return d->wrapped;
}

void kvConnection::setConnectionString(const QString &connectionString)
{
    if (State() == adStateOpen)
        throw kvAdoError::objectOpen();
    d->ReleaseDatabase();
    if (d->wrapped)
        d->database = QSqlDatabase();
    d->wrapped = false;
    d->connectionString = connectionString;
    try {
        d->source = kvDataSource::FromConnectionString(connectionString);
    } catch (const kvRuntimeError &) {
        d->source = kvDataSource();   // Open() reports what is wrong with it
    }
}

int kvConnection::State() const
{
    return d->IsOpen() ? adStateOpen : adStateClosed;
}

bool kvConnectionPrivate::IsOpen() const
{
    // A connection whose server went away stays open: the next statement reopens it.
    return open && (database.isOpen() || reopenNeeded);
}

void kvConnection::Open(const QString &connectionString)
{
    if (State() == adStateOpen)
        throw kvAdoError::objectOpen();
    if (!connectionString.isEmpty())
        setConnectionString(connectionString);
    if (d->wrapped) {
        d->OpenWrapped();
        return;
    }
    const kvDataSource source = kvDataSource::FromConnectionString(d->connectionString);
    if (!QSqlDatabase::isDriverAvailable(source.qtDriver()))
        throw kvAdoError::providerNotFound(
            QStringLiteral("Qt-SQL-Treiber %1 ist nicht installiert").arg(source.qtDriver()));
    d->OpenOwn(source);
}

void kvConnectionPrivate::OpenWrapped()
{
    if (!database.isOpen() && !database.open())
        throw kvAdoError::openFailed(QString(), kvAdoError::engineMessage(database.lastError()));
    open = true;
}

void kvConnectionPrivate::OpenOwn(const kvDataSource &target)
{
    ReleaseDatabase();
    connectionName = newConnectionName();
    database = QSqlDatabase::addDatabase(target.qtDriver(), connectionName);
    database.setDatabaseName(target.databaseName());
    database.setHostName(target.hostName());
    if (target.port() > 0)
        database.setPort(target.port());
    database.setUserName(target.userName());
    database.setPassword(target.password());
    database.setConnectOptions(target.connectOptions());
    bool opened = false;
    QString driverOutput;
    if (target.qtDriver() == QLatin1String("QODBC")) {
        kvStderrCapture capture;
        opened = database.open();
        driverOutput = capture.Finish().simplified();
    } else {
        opened = database.open();
    }
    if (!opened) {
        const QSqlError error = database.lastError();
        const QString message = error.databaseText().trimmed().isEmpty() && !driverOutput.isEmpty()
                                    ? driverOutput + QStringLiteral(" (") + error.driverText() + QLatin1Char(')')
                                    : kvAdoError::engineMessage(error);
        ReleaseDatabase();
        throw kvAdoError::openFailed(OpenFailureContext(target), message);
    }
    source = target;
    open = true;
}

QString kvConnectionPrivate::OpenFailureContext(const kvDataSource &source)
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
    if (!d->open)
        return;
    emit Closing();
    d->open = false;
    d->reopenNeeded = false;
    if (!d->wrapped)
        d->ReleaseDatabase();
}

void kvConnectionPrivate::ReleaseDatabase()
{
    if (connectionName.isEmpty())
        return;
    database.close();
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName);
    connectionName.clear();
}

int kvConnection::Execute(const QString &sql)
{
    return kvConnectionPrivate::RecordsAffected(d->Run(sql, {}));
}

void kvConnection::Execute(const QString &sql, const QVariantList &boundValues)
{
    d->Run(sql, boundValues);
}

QSqlQuery kvConnectionPrivate::Run(const QString &sql, const QVariantList &boundValues)
{
    RequireOpen();
    if (reopenNeeded)
        Reopen();
    try {
        return RunOnce(sql, boundValues);
    } catch (const kvDatabaseError &failure) {
        // A read runs once more on a new connection; a write may have been done: never twice.
        if (failure.condition() != kvDatabaseError::ServerGone || !reopenNeeded || !IsRead(sql))
            throw;
    }
    Reopen();
    return RunOnce(sql, boundValues);
}

QSqlQuery kvConnectionPrivate::RunOnce(const QString &sql, const QVariantList &boundValues)
{
    emit q->StatementExecuted(sql);
    QElapsedTimer waited;
    waited.start();
    QSqlQuery query(database);
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
    reopenNeeded = reopenNeeded || (IsServer() && failure.isUnavailable()
                                        && failure.condition() != kvDatabaseError::Busy);
    throw failure;
}

kvDatabaseError kvConnectionPrivate::StatementFailure(const QSqlError &error, qint64 waitedMilliseconds) const
{
    const kvDatabaseError failure = kvAdoError::statementFailed(error, source.engine());
    // MariaDB's client reports a read that waited the whole Command Timeout as the server
    // gone: a failure after at least that long is the timeout.
    const qint64 timeout = qint64(source.commandTimeout()) * 1000;
    if (failure.condition() != kvDatabaseError::ServerGone || timeout <= 0 || waitedMilliseconds < timeout)
        return failure;
    return kvDatabaseError(failure.number(),
                           QStringLiteral("%1 (keine Antwort innerhalb von %2 s, Command Timeout)")
                               .arg(failure.description())
                               .arg(source.commandTimeout()),
                           kvDatabaseError::TimedOut);
}

void kvConnectionPrivate::Reopen()
{
    emit q->Closing();   // recordsets let go of queries on the lost connection
    database.close();
    if (!database.open())
        throw kvAdoError::openFailed(OpenFailureContext(source), kvAdoError::engineMessage(database.lastError()));
    reopenNeeded = false;
}

bool kvConnectionPrivate::IsServer() const
{
    const kvDataSource::Engine engine = source.engine();
    return engine == kvDataSource::MySql || engine == kvDataSource::SqlServer || engine == kvDataSource::Odbc;
}

bool kvConnectionPrivate::IsRead(const QString &sql)
{
    static const QRegularExpression select(QStringLiteral("^[\\s(]*SELECT\\b"),
                                           QRegularExpression::CaseInsensitiveOption);
    return select.match(sql).hasMatch();
}

int kvConnectionPrivate::RecordsAffected(const QSqlQuery &query)
{
    return query.isSelect() ? -1 : query.numRowsAffected();
}

void kvConnectionPrivate::RequireOpen() const
{
    if (!IsOpen())
        throw kvAdoError::connectionUnusable();
}

QVariant kvConnectionPrivate::DriverValue(const QVariant &value) const
{
    if (!value.isValid() || value.isNull() || !isDate(value))
        return value;
    const std::optional<kvDate> date = kvField::TryDate(value);
    if (!date)
        return QVariant();   // a null QDateTime or QDate is SQL Null
    if (database.driverName() == QLatin1String("QODBC"))
        return kvField::ToDateTime(*date);
    return kvField::ToDbText(*date);
}
