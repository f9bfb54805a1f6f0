#pragma once

#include "kvkalivo_export.h"

#include <QString>
#include <QStringList>

class QSqlDatabase;
class kvConnection;
class kvConnectionString;

/*!
    \file kvDataSource.h
    \brief kvDataSource: which engine and Qt SQL driver an ADO connection string names.
*/

/*!
    \brief What an ADO connection string means for Qt SQL: engine, Qt driver and its settings.

    FromConnectionString() understands
    - `Driver=SQLite3;Database=FILE` (QSQLITE; Provider "SQLite3"),
    - `Provider=Microsoft.Jet.OLEDB.4.0;Data Source=FILE.mdb` and
      `Driver={Microsoft Access Driver (*.mdb)};DBQ=FILE` (QODBC with the MDBTools driver, read-only),
    - `Provider=SQLOLEDB;Data Source=HOST[,PORT];Initial Catalog=DB;User ID=..;Password=..` and
      `Driver={SQL Server};Server=HOST;Database=DB;Uid=..;Pwd=..` (QODBC with FreeTDS),
    - `Driver={MySQL ODBC 8.0 Driver};Server=HOST;Port=..;Database=..;Uid=..;Pwd=..[;Socket=..]`
      and `Provider=MySQLProv;Location=HOST;Data Source=DB;User ID=..;Password=..` (QMYSQL),
    - `DSN=NAME;…` and any other `Driver=…` (handed to unixODBC as written).
    Each may carry `Connect Timeout=S` and `Command Timeout=S` (see commandTimeout()); an
    SQLite string `Mode=Read` opens the file read-only.
    Provider() is the Provider element as written; for Driver= strings it is "MSDASQL", as ADO
    reports for ODBC, except "SQLite3" for the embedded engine.
    A malformed string throws kvRuntimeError 3001, an unknown Provider 3706.
*/
class KVKALIVO_TESTS_EXPORT kvDataSource
{
public:
    //! The database engine behind a connection; it chooses the dialect of ParameterizedSql.
    enum Engine {
        SQLite,    //!< the embedded engine (QSQLITE)
        MySql,     //!< MySQL or MariaDB (QMYSQL)
        SqlServer, //!< Microsoft SQL Server through FreeTDS (QODBC)
        Access,    //!< an Access .mdb file through MDBTools (QODBC), read-only
        Odbc       //!< any other ODBC data source (QODBC), passed on as written
    };

    //! What \a connectionString names; throws 3001 when malformed, 3706 for an unknown Provider.
    static kvDataSource FromConnectionString(const QString &connectionString);
    //! Provider and ConnectionString as read back from a host's own QSqlDatabase (no password).
    static kvDataSource FromDatabase(const QSqlDatabase &database);
    //! What \a connection was opened with: its connection string's or its wrapped driver's.
    static const kvDataSource &Of(const kvConnection &connection);

    //! "SQLite", "MariaDB", "SQLServer", "Access", "ODBC".
    static QString EngineName(Engine engine);

    //! The engine the string names.
    Engine engine() const { return m_engine; }
    //! The Provider as ADO reports it (see the class description).
    QString provider() const { return m_provider; }
    //! The connection string as the host gave it (from FromDatabase(): as derived, without password).
    QString connectionString() const { return m_connectionString; }
    //! The Qt SQL driver: "QSQLITE", "QMYSQL" or "QODBC".
    QString qtDriver() const { return m_qtDriver; }
    //! QSqlDatabase::databaseName(): the file for SQLite, the database, or the ODBC connection string.
    QString databaseName() const { return m_databaseName; }
    //! The server's host name; empty for files and ODBC strings.
    QString hostName() const { return m_hostName; }
    //! The server's port; -1 for the driver's default.
    int port() const { return m_port; }
    //! The user name; empty when none is given.
    QString userName() const { return m_userName; }
    //! The password; empty when none is given.
    QString password() const { return m_password; }
    /*!
        QSqlDatabase::connectOptions(): the timeouts (see commandTimeout()), Access's read-only
        mode, SQLite's read-only mode for "Mode=Read".
    */
    QString connectOptions() const { return m_connectOptions; }
    /*!
        "Command Timeout" in seconds, 0 for no limit: how long a statement may wait for the
        server (MySQL/MariaDB: each read and write, ODBC: each request) or for a locked SQLite
        file. Defaults: 30 s, for SQLite 5 s. "Connect Timeout" (default 15 s) limits opening
        a connection to a server. Other values than 0 to 86400 throw 3001.
    */
    int commandTimeout() const { return m_commandTimeout; }
    //! True for Access files, which MDBTools can only read.
    bool readOnly() const { return m_readOnly; }

private:
    static kvDataSource FromProvider(const kvConnectionString &parts, const QString &provider);
    static kvDataSource FromDriver(const kvConnectionString &parts, const QString &driver);
    static kvDataSource ForSQLite(const kvConnectionString &parts);
    //! \a oleDb: MySQLProv names the server Location and the database Data Source.
    static kvDataSource ForMySql(const kvConnectionString &parts, bool oleDb = false);
    static kvDataSource ForSqlServer(const kvConnectionString &parts);
    static kvDataSource ForAccess(const kvConnectionString &parts);
    static kvDataSource ForOdbc(const kvConnectionString &parts);
    static kvDataSource FromOdbcDatabase(const QSqlDatabase &database);
    //! The engine an ODBC driver name stands for; Odbc when it is none of the known ones.
    static Engine EngineOfDriver(const QString &driver);
    static int ParsePort(const QString &text);
    //! The value of the first of \a keys present, in seconds; \a defaultSeconds when none is.
    static int Timeout(const kvConnectionString &parts, const QStringList &keys, int defaultSeconds);
    void SetOdbcTimeouts(const kvConnectionString &parts);
    static int CommandTimeoutOption(const QString &connectOptions);

    static constexpr int DefaultConnectTimeout = 15;        // ADO's ConnectionTimeout
    static constexpr int DefaultCommandTimeout = 30;        // ADO's CommandTimeout
    static constexpr int SQLiteDefaultCommandTimeout = 5;   // a lock held longer is no short write
    static constexpr int MaximumTimeout = 86400;

    Engine m_engine = Odbc;
    QString m_provider;
    QString m_connectionString;
    QString m_qtDriver;
    QString m_databaseName;
    QString m_hostName;
    int m_port = -1;
    QString m_userName;
    QString m_password;
    QString m_connectOptions;
    int m_commandTimeout = 0;
    bool m_readOnly = false;
};
