#include "kvDataSource.h"

#include "kvAdoError.h"
#include "kvConnectionString.h"

#include <QSqlDatabase>

#include <limits>

namespace {

const QStringList &serverKeys()
{
    static const QStringList keys{QStringLiteral("Server"), QStringLiteral("Data Source"),
                                  QStringLiteral("Host"), QStringLiteral("Address"), QStringLiteral("Addr"),
                                  QStringLiteral("Network Address")};
    return keys;
}

const QStringList &databaseKeys()
{
    static const QStringList keys{QStringLiteral("Database"), QStringLiteral("Initial Catalog"),
                                  QStringLiteral("DB")};
    return keys;
}

const QStringList &userKeys()
{
    static const QStringList keys{QStringLiteral("Uid"), QStringLiteral("User ID"), QStringLiteral("User"),
                                  QStringLiteral("UserName")};
    return keys;
}

const QStringList &passwordKeys()
{
    static const QStringList keys{QStringLiteral("Pwd"), QStringLiteral("Password")};
    return keys;
}

const QStringList &connectTimeoutKeys()
{
    static const QStringList keys{QStringLiteral("Connect Timeout"), QStringLiteral("Connection Timeout"),
                                  QStringLiteral("ConnectTimeout")};
    return keys;
}

const QStringList &commandTimeoutKeys()
{
    static const QStringList keys{QStringLiteral("Command Timeout"), QStringLiteral("CommandTimeout"),
                                  QStringLiteral("Default Command Timeout")};
    return keys;
}

QString required(const kvConnectionString &parts, const QStringList &keys)
{
    const QString value = parts.Value(keys);
    if (value.isEmpty())
        throw kvAdoError::invalidArgument(QStringLiteral("Verbindungszeichenfolge: '%1' fehlt").arg(keys.first()));
    return value;
}

bool startsWith(const QString &text, const char *prefix)
{
    return text.startsWith(QLatin1String(prefix), Qt::CaseInsensitive);
}

bool contains(const QString &text, const char *part)
{
    return text.contains(QLatin1String(part), Qt::CaseInsensitive);
}

// The string without its Provider element: what unixODBC gets for DSN= and unknown drivers.
QString withoutKeys(const kvConnectionString &parts, const QStringList &dropped)
{
    QList<std::pair<QString, QString>> kept;
    for (const QString &key : parts.Keys()) {
        if (!dropped.contains(key, Qt::CaseInsensitive))
            kept.append({key, parts.Value(key)});
    }
    return kvConnectionString::Join(kept);
}

} // namespace

kvDataSource kvDataSource::FromConnectionString(const QString &connectionString)
{
    const kvConnectionString parts = kvConnectionString::Parse(connectionString);
    const QString provider = parts.Value(QStringLiteral("Provider"));
    const QString driver = parts.Value(QStringLiteral("Driver"));
    kvDataSource source;
    if (!provider.isEmpty() && !startsWith(provider, "MSDASQL"))
        source = FromProvider(parts, provider);
    else if (!driver.isEmpty())
        source = FromDriver(parts, driver);
    else if (parts.Contains(QStringLiteral("DSN")))
        source = ForOdbc(parts);
    else
        throw kvAdoError::providerNotFound(QStringLiteral("weder Provider noch Driver angegeben"));
    if (!provider.isEmpty())
        source.m_provider = provider;
    source.m_connectionString = connectionString;
    return source;
}

kvDataSource kvDataSource::FromProvider(const kvConnectionString &parts, const QString &provider)
{
    kvDataSource source;
    if (startsWith(provider, "Microsoft.Jet.OLEDB") || startsWith(provider, "Microsoft.ACE.OLEDB"))
        source = ForAccess(parts);
    else if (startsWith(provider, "SQLOLEDB") || startsWith(provider, "SQLNCLI") || startsWith(provider, "MSOLEDBSQL"))
        source = ForSqlServer(parts);
    else if (contains(provider, "MySQL") || contains(provider, "MariaDB"))
        source = ForMySql(parts, true);
    else if (startsWith(provider, "SQLite"))
        source = ForSQLite(parts);
    else
        throw kvAdoError::providerNotFound(QStringLiteral("Provider '%1'").arg(provider));
    source.m_provider = provider;
    return source;
}

kvDataSource kvDataSource::FromDriver(const kvConnectionString &parts, const QString &driver)
{
    switch (EngineOfDriver(driver)) {
    case SQLite:
        return ForSQLite(parts);
    case MySql:
        return ForMySql(parts);
    case SqlServer:
        return ForSqlServer(parts);
    case Access:
        return ForAccess(parts);
    case Odbc:
        break;
    }
    return ForOdbc(parts);
}

kvDataSource::Engine kvDataSource::EngineOfDriver(const QString &driver)
{
    if (contains(driver, "SQLite"))
        return SQLite;
    if (contains(driver, "MySQL") || contains(driver, "MariaDB"))
        return MySql;
    if (contains(driver, "SQL Server") || contains(driver, "SQL Native Client") || contains(driver, "FreeTDS")
        || startsWith(driver, "SQLSRV32"))
        return SqlServer;
    if (contains(driver, "Access Driver") || contains(driver, "MDBTools") || contains(driver, "*.mdb"))
        return Access;
    return Odbc;
}

kvDataSource kvDataSource::ForSQLite(const kvConnectionString &parts)
{
    kvDataSource source;
    source.m_engine = SQLite;
    source.m_provider = QStringLiteral("SQLite3");
    source.m_qtDriver = QStringLiteral("QSQLITE");
    source.m_databaseName = required(parts, {QStringLiteral("Database"), QStringLiteral("Data Source"),
                                             QStringLiteral("DBQ")});
    // A locked file is waited for Command Timeout, by default only a few seconds (see the README).
    source.m_commandTimeout = Timeout(parts, commandTimeoutKeys(), SQLiteDefaultCommandTimeout);
    const int milliseconds = source.m_commandTimeout == 0 ? std::numeric_limits<int>::max()
                                                          : source.m_commandTimeout * 1000;
    QStringList options{QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(milliseconds)};
    if (parts.Value(QStringLiteral("Mode")).compare(QLatin1String("Read"), Qt::CaseInsensitive) == 0)
        options << QStringLiteral("QSQLITE_OPEN_READONLY");
    source.m_connectOptions = options.join(QLatin1Char(';'));
    return source;
}

kvDataSource kvDataSource::ForMySql(const kvConnectionString &parts, bool oleDb)
{
    kvDataSource source;
    source.m_engine = MySql;
    source.m_provider = QStringLiteral("MSDASQL");
    source.m_qtDriver = QStringLiteral("QMYSQL");
    if (oleDb) {
        source.m_hostName = parts.Value({QStringLiteral("Location"), QStringLiteral("Server"), QStringLiteral("Host")});
        source.m_databaseName = parts.Value(QStringList{QStringLiteral("Data Source")} + databaseKeys());
    } else {
        source.m_hostName = parts.Value(serverKeys());
        source.m_databaseName = parts.Value(databaseKeys());
    }
    source.m_port = ParsePort(parts.Value(QStringLiteral("Port")));
    source.m_userName = parts.Value(userKeys());
    source.m_password = parts.Value(passwordKeys());
    // CLIENT_FOUND_ROWS: an UPDATE reports the rows it matched, as the other engines do.
    QStringList options{QStringLiteral("CLIENT_FOUND_ROWS=1")};
    // The client library waits for each read and write of a statement at most this long (it
    // does not retry a read); 0 leaves the library's default, no limit.
    const int connectTimeout = Timeout(parts, connectTimeoutKeys(), DefaultConnectTimeout);
    source.m_commandTimeout = Timeout(parts, commandTimeoutKeys(), DefaultCommandTimeout);
    if (connectTimeout > 0)
        options << QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=%1").arg(connectTimeout);
    if (source.m_commandTimeout > 0)
        options << QStringLiteral("MYSQL_OPT_READ_TIMEOUT=%1").arg(source.m_commandTimeout)
                << QStringLiteral("MYSQL_OPT_WRITE_TIMEOUT=%1").arg(source.m_commandTimeout);
    const QString socket = parts.Value(QStringLiteral("Socket"));
    if (!socket.isEmpty())
        options << QStringLiteral("UNIX_SOCKET=") + socket;
    source.m_connectOptions = options.join(QLatin1Char(';'));
    return source;
}

kvDataSource kvDataSource::ForSqlServer(const kvConnectionString &parts)
{
    kvDataSource source;
    source.m_engine = SqlServer;
    source.m_provider = QStringLiteral("MSDASQL");
    source.m_qtDriver = QStringLiteral("QODBC");
    QString server = required(parts, serverKeys());
    if (startsWith(server, "tcp:"))
        server = server.mid(4);
    QString port = parts.Value(QStringLiteral("Port"));
    const qsizetype comma = server.indexOf(QLatin1Char(','));
    if (comma >= 0) {
        port = server.mid(comma + 1).trimmed();
        server = server.left(comma).trimmed();
    }
    if (server == QLatin1String(".") || server.compare(QLatin1String("(local)"), Qt::CaseInsensitive) == 0)
        server = QStringLiteral("localhost");
    // A named instance ("HOST\INSTANCE") is found by FreeTDS through the browser service, without a port.
    if (port.isEmpty() && !server.contains(QLatin1Char('\\')))
        port = QStringLiteral("1433");
    QList<std::pair<QString, QString>> odbc{{QStringLiteral("Driver"), QStringLiteral("FreeTDS")},
                                            {QStringLiteral("Server"), server}};
    if (!port.isEmpty())
        odbc.append({QStringLiteral("Port"), QString::number(ParsePort(port))});
    const auto appendIfGiven = [&](const char *key, const QString &value) {
        if (!value.isEmpty())
            odbc.append({QString::fromLatin1(key), value});
    };
    appendIfGiven("Database", parts.Value(databaseKeys()));
    appendIfGiven("UID", parts.Value(userKeys()));
    appendIfGiven("PWD", parts.Value(passwordKeys()));
    odbc.append({QStringLiteral("TDS_Version"), QStringLiteral("7.4")});
    source.m_databaseName = kvConnectionString::Join(odbc);
    source.SetOdbcTimeouts(parts);
    return source;
}

kvDataSource kvDataSource::ForAccess(const kvConnectionString &parts)
{
    kvDataSource source;
    source.m_engine = Access;
    source.m_provider = QStringLiteral("MSDASQL");
    source.m_qtDriver = QStringLiteral("QODBC");
    const QString file = required(parts, {QStringLiteral("Data Source"), QStringLiteral("DBQ")});
    source.m_databaseName = kvConnectionString::Join({{QStringLiteral("Driver"), QStringLiteral("MDBTools")},
                                                      {QStringLiteral("DBQ"), file}});
    source.m_connectOptions = QStringLiteral("SQL_ATTR_ACCESS_MODE=SQL_MODE_READ_ONLY");
    source.m_readOnly = true;
    return source;
}

kvDataSource kvDataSource::ForOdbc(const kvConnectionString &parts)
{
    kvDataSource source;
    source.m_engine = Odbc;
    source.m_provider = QStringLiteral("MSDASQL");
    source.m_qtDriver = QStringLiteral("QODBC");
    source.m_databaseName = withoutKeys(parts, {QStringLiteral("Provider")});
    source.SetOdbcTimeouts(parts);
    return source;
}

int kvDataSource::ParsePort(const QString &text)
{
    if (text.isEmpty())
        return -1;
    bool ok = false;
    const int port = text.toInt(&ok);
    if (!ok || port <= 0 || port > 65535)
        throw kvAdoError::invalidArgument(QStringLiteral("Verbindungszeichenfolge: Port '%1' ist ungültig").arg(text));
    return port;
}

int kvDataSource::Timeout(const kvConnectionString &parts, const QStringList &keys, int defaultSeconds)
{
    if (!parts.ContainsAny(keys))
        return defaultSeconds;
    const QString text = parts.Value(keys);
    bool ok = false;
    const int seconds = text.toInt(&ok);
    if (!ok || seconds < 0 || seconds > MaximumTimeout)
        throw kvAdoError::invalidArgument(
            QStringLiteral("Verbindungszeichenfolge: '%1' ist keine Zahl von Sekunden von 0 bis %2")
                .arg(keys.first())
                .arg(MaximumTimeout));
    return seconds;
}

// ODBC's login timeout and its timeout for every request on the connection.
void kvDataSource::SetOdbcTimeouts(const kvConnectionString &parts)
{
    m_commandTimeout = Timeout(parts, commandTimeoutKeys(), DefaultCommandTimeout);
    m_connectOptions = QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=%1;SQL_ATTR_CONNECTION_TIMEOUT=%2")
                           .arg(Timeout(parts, connectTimeoutKeys(), DefaultConnectTimeout))
                           .arg(m_commandTimeout);
}

kvDataSource kvDataSource::FromDatabase(const QSqlDatabase &database)
{
    const QString driver = database.driverName();
    kvDataSource source;
    source.m_qtDriver = driver;
    if (driver == QLatin1String("QSQLITE")) {
        source.m_engine = SQLite;
        source.m_provider = QStringLiteral("SQLite3");
        source.m_connectionString = kvConnectionString::Join(
            {{QStringLiteral("Driver"), QStringLiteral("SQLite3")},
             {QStringLiteral("Database"), database.databaseName()}});
    } else if (driver == QLatin1String("QMYSQL") || driver == QLatin1String("QMARIADB")) {
        source.m_engine = MySql;
        source.m_provider = QStringLiteral("MSDASQL");
        QList<std::pair<QString, QString>> pairs{{QStringLiteral("Server"), database.hostName()}};
        if (database.port() > 0)
            pairs.append({QStringLiteral("Port"), QString::number(database.port())});
        pairs.append({QStringLiteral("Database"), database.databaseName()});
        pairs.append({QStringLiteral("Uid"), database.userName()});
        source.m_connectionString = QStringLiteral("Driver={MySQL ODBC 8.0 Driver};") + kvConnectionString::Join(pairs);
    } else if (driver == QLatin1String("QODBC")) {
        source = FromOdbcDatabase(database);
    } else {
        source.m_provider = QStringLiteral("MSDASQL");
        source.m_connectionString = kvConnectionString::Join(
            {{QStringLiteral("Driver"), driver}, {QStringLiteral("Database"), database.databaseName()}});
    }
    source.m_databaseName = database.databaseName();
    source.m_hostName = database.hostName();
    source.m_port = database.port();
    source.m_userName = database.userName();
    source.m_commandTimeout = CommandTimeoutOption(database.connectOptions());
    return source;
}

// The host's own read timeout, so that a read that waited for it counts as timed out.
int kvDataSource::CommandTimeoutOption(const QString &connectOptions)
{
    const QString prefix = QStringLiteral("MYSQL_OPT_READ_TIMEOUT=");
    for (const QString &option : connectOptions.split(QLatin1Char(';'))) {
        if (option.trimmed().startsWith(prefix))
            return std::max(0, option.trimmed().mid(prefix.size()).toInt());
    }
    return 0;
}

// Reads a QODBC connection back in the ADO form that kvKalivo's dialect detection understands.
kvDataSource kvDataSource::FromOdbcDatabase(const QSqlDatabase &database)
{
    kvDataSource source;
    source.m_qtDriver = database.driverName();
    source.m_provider = QStringLiteral("MSDASQL");
    const QString name = database.databaseName();
    kvConnectionString parts;
    try {
        parts = kvConnectionString::Parse(name.contains(QLatin1Char('=')) ? name : QStringLiteral("DSN=") + name);
    } catch (const kvRuntimeError &) {
        source.m_connectionString = name;
        return source;
    }
    source.m_engine = EngineOfDriver(parts.Value(QStringLiteral("Driver")));
    if (source.m_engine == SqlServer) {
        QString server = parts.Value(serverKeys());
        const QString user = parts.Value(userKeys());
        if (!parts.Value(QStringLiteral("Port")).isEmpty())
            server += QLatin1Char(',') + parts.Value(QStringLiteral("Port"));
        source.m_provider = QStringLiteral("SQLOLEDB");
        source.m_connectionString = kvConnectionString::Join(
            {{QStringLiteral("Provider"), source.m_provider}, {QStringLiteral("Data Source"), server},
             {QStringLiteral("Initial Catalog"), parts.Value(databaseKeys())},
             {QStringLiteral("User ID"), user.isEmpty() ? database.userName() : user}});
    } else if (source.m_engine == Access) {
        source.m_provider = QStringLiteral("Microsoft.Jet.OLEDB.4.0");
        source.m_connectionString = kvConnectionString::Join(
            {{QStringLiteral("Provider"), source.m_provider},
             {QStringLiteral("Data Source"), parts.Value({QStringLiteral("DBQ"), QStringLiteral("Data Source")})}});
    } else {
        source.m_connectionString = withoutKeys(parts, passwordKeys());
    }
    return source;
}

QString kvDataSource::EngineName(Engine engine)
{
    switch (engine) {
    case SQLite:
        return QStringLiteral("SQLite");
    case MySql:
        return QStringLiteral("MariaDB");
    case SqlServer:
        return QStringLiteral("SQLServer");
    case Access:
        return QStringLiteral("Access");
    case Odbc:
        break;
    }
    return QStringLiteral("ODBC");
}
