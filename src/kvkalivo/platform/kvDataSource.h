#pragma once

#include "kvkalivo_export.h"

#include <QString>

class QSqlDatabase;
class kvConnectionString;

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
    Provider() is the Provider element as written; for Driver= strings it is "MSDASQL", as ADO
    reports for ODBC, except "SQLite3" for the embedded engine.
    A malformed string throws kvRuntimeError 3001, an unknown Provider 3706.
*/
class KVKALIVO_EXPORT kvDataSource
{
public:
    enum Engine { SQLite, MySql, SqlServer, Access, Odbc };

    static kvDataSource FromConnectionString(const QString &connectionString);
    //! Provider and ConnectionString as read back from a host's own QSqlDatabase (no password).
    static kvDataSource FromDatabase(const QSqlDatabase &database);

    //! "SQLite", "MariaDB", "SQLServer", "Access", "ODBC".
    static QString EngineName(Engine engine);

    Engine engine() const { return m_engine; }
    QString provider() const { return m_provider; }
    QString connectionString() const { return m_connectionString; }
    QString qtDriver() const { return m_qtDriver; }
    QString databaseName() const { return m_databaseName; }
    QString hostName() const { return m_hostName; }
    int port() const { return m_port; }
    QString userName() const { return m_userName; }
    QString password() const { return m_password; }
    QString connectOptions() const { return m_connectOptions; }
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
    static int ConnectTimeout(const kvConnectionString &parts);

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
    bool m_readOnly = false;
};
