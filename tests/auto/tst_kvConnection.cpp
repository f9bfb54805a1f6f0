#include "kvAdoError.h"
#include "kvConnection.h"
#include "kvConnectionString.h"
#include "kvDataSource.h"
#include "kvDataTestSupport.h"
#include "kvRuntimeError.h"
#include "kvTestSupport.h"

#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

// The dialect detection of Part 2.1 with DbDateFormat = kvAuto, as the store does it.
int detectedDialect(const kvConnection &connection)
{
    if (connection.Provider().contains(QStringLiteral("Microsoft.Jet.OLEDB")))
        return 2;
    const QString upper = connection.ConnectionString().toUpper();
    if (upper.contains(QStringLiteral("SQL SERVER")) || upper.contains(QStringLiteral("SQLOLEDB")))
        return 1;
    return 3;
}

} // namespace

class tst_kvConnection : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QString databaseFile(const QString &name) const { return m_folder.filePath(name); }

    QString sqliteString(const QString &name) const
    {
        return QStringLiteral("Driver=SQLite3;Database=") + databaseFile(name);
    }

private slots:
    // --- connection-string parsing ---

    void parsesKeysCaseInsensitively()
    {
        const kvConnectionString parts = kvConnectionString::Parse(QStringLiteral("DRIVER=SQLite3; database = termine.db ;"));
        QCOMPARE(parts.Count(), 2);
        QCOMPARE(parts.Value(QStringLiteral("Driver")), QStringLiteral("SQLite3"));
        QCOMPARE(parts.Value(QStringLiteral("DATABASE")), QStringLiteral("termine.db"));
        QCOMPARE(parts.Keys(), (QStringList{QStringLiteral("DRIVER"), QStringLiteral("database")}));
        QVERIFY(!parts.Contains(QStringLiteral("Server")));
        QCOMPARE(parts.Value(QStringLiteral("Server")), QString());
    }

    void parsesBracesQuotesAndBlanks()
    {
        const kvConnectionString parts = kvConnectionString::Parse(QStringLiteral(
            "Driver={MySQL ODBC 8.0 Driver};Pwd={a;b}}c=d} ;User ID=\"x;\"\"y\";Data   Source= 'srv' ;;"));
        QCOMPARE(parts.Value(QStringLiteral("driver")), QStringLiteral("MySQL ODBC 8.0 Driver"));
        QCOMPARE(parts.Value(QStringLiteral("PWD")), QStringLiteral("a;b}c=d"));
        QCOMPARE(parts.Value(QStringLiteral("user id")), QStringLiteral("x;\"y"));
        QCOMPARE(parts.Value(QStringLiteral("Data Source")), QStringLiteral("srv"));
        QCOMPARE(parts.Count(), 4);
    }

    void lastRepeatedKeyWins()
    {
        const kvConnectionString parts = kvConnectionString::Parse(QStringLiteral("Server=a;SERVER=b"));
        QCOMPARE(parts.Count(), 1);
        QCOMPARE(parts.Value(QStringLiteral("Server")), QStringLiteral("b"));
    }

    void synonymsTakeTheFirstPresent()
    {
        const kvConnectionString parts = kvConnectionString::Parse(QStringLiteral("Initial Catalog=Termine;Uid=sa"));
        QCOMPARE(parts.Value(QStringList{QStringLiteral("Database"), QStringLiteral("Initial Catalog")}),
                 QStringLiteral("Termine"));
        QVERIFY(parts.ContainsAny({QStringLiteral("User ID"), QStringLiteral("uid")}));
    }

    void quoteAndJoinRoundTrip()
    {
        QCOMPARE(kvConnectionString::Quote(QStringLiteral("plain")), QStringLiteral("plain"));
        QCOMPARE(kvConnectionString::Quote(QStringLiteral("a;b}")), QStringLiteral("{a;b}}}"));
        const QString joined = kvConnectionString::Join({{QStringLiteral("PWD"), QStringLiteral("x;}y")},
                                                         {QStringLiteral("Server"), QStringLiteral("h")}});
        QCOMPARE(joined, QStringLiteral("PWD={x;}}y};Server=h"));
    }

    void parseReadsBackWhatJoinWrites_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::newRow("apostrophes") << QStringLiteral("Dr") << QStringLiteral("''''''''''''");
        QTest::newRow("leading apostrophe") << QStringLiteral("Pwd") << QStringLiteral("'geheim");
        QTest::newRow("leading double quote") << QStringLiteral("Pwd") << QStringLiteral("\"a\"b");
        QTest::newRow("leading brace") << QStringLiteral("Pwd") << QStringLiteral("{x");
        QTest::newRow("outer blanks") << QStringLiteral("Pwd") << QStringLiteral(" a ");
        QTest::newRow("line break") << QStringLiteral("Pwd") << QStringLiteral("a\nb");
        QTest::newRow("control characters") << QStringLiteral("Pwd") << QStringLiteral("\x01a\x1f;\x7f");
    }

    void parseReadsBackWhatJoinWrites()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        const QList<std::pair<QString, QString>> pairs{{QStringLiteral("Driver"), QStringLiteral("SQLite3")},
                                                       {key, value},
                                                       {QStringLiteral("Last"), QStringLiteral("x")}};
        const QString joined = kvConnectionString::Join(pairs);
        kvConnectionString parsed;
        QCOMPARE(errorNumber([&] { parsed = kvConnectionString::Parse(joined); }), 0);
        QCOMPARE(parsed.Keys(), (QStringList{QStringLiteral("Driver"), key, QStringLiteral("Last")}));
        QCOMPARE(parsed.Value(key), value);
        QCOMPARE(parsed.Value(QStringLiteral("Last")), QStringLiteral("x"));
    }

    void joinRefusesKeysItCannotWrite_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("empty") << QString();
        QTest::newRow("equals sign") << QStringLiteral("a=b");
        QTest::newRow("repeated") << QStringLiteral("DRIVER");
    }

    void joinRefusesKeysItCannotWrite()
    {
        QFETCH(QString, key);
        QString description;
        QCOMPARE(errorNumber([&] {
                     kvConnectionString::Join({{QStringLiteral("Driver"), QStringLiteral("SQLite3")}, {key, QStringLiteral("v")}});
                 }, &description), 3001);
        QVERIFY2(!description.contains(QStringLiteral("SQLite3")), qPrintable(description));
    }

    void malformedStrings_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("blank") << QStringLiteral("   ");
        QTest::newRow("no equals") << QStringLiteral("Driver=SQLite3;Database");
        QTest::newRow("no key") << QStringLiteral("Driver=SQLite3;=termine.db");
        QTest::newRow("open brace") << QStringLiteral("Driver={SQLite3;Database=geheim");
        QTest::newRow("open quote") << QStringLiteral("Driver=SQLite3;Pwd=\"geheim");
        QTest::newRow("after brace") << QStringLiteral("Driver={SQLite3}geheim;Database=x");
    }

    void malformedStrings()
    {
        QFETCH(QString, text);
        QString description;
        QCOMPARE(errorNumber([&] { kvConnectionString::Parse(text); }, &description), 3001);
        QVERIFY2(description.startsWith(QStringLiteral("Die Argumente sind vom falschen Typ")), qPrintable(description));
        QVERIFY2(!description.contains(QStringLiteral("geheim")), qPrintable(description));
    }

    // --- what each form means for Qt SQL ---

    void dataSources_data()
    {
        const QString mySqlOptions = QStringLiteral("CLIENT_FOUND_ROWS=1;MYSQL_OPT_CONNECT_TIMEOUT=15;"
                                                    "MYSQL_OPT_READ_TIMEOUT=30;MYSQL_OPT_WRITE_TIMEOUT=30");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("engine");
        QTest::addColumn<QString>("qtDriver");
        QTest::addColumn<QString>("provider");
        QTest::addColumn<QString>("databaseName");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("options");

        QTest::newRow("sqlite") << QStringLiteral("Driver=SQLite3;Database=/data/termine.db") << int(kvDataSource::SQLite)
                                << QStringLiteral("QSQLITE") << QStringLiteral("SQLite3") << QStringLiteral("/data/termine.db")
                                << QString() << -1 << QString() << QString() << QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000");
        QTest::newRow("sqlite braces") << QStringLiteral("driver={SQLite3};DATABASE={/data/a;b.db}") << int(kvDataSource::SQLite)
                                       << QStringLiteral("QSQLITE") << QStringLiteral("SQLite3") << QStringLiteral("/data/a;b.db")
                                       << QString() << -1 << QString() << QString()
                                       << QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000");
        QTest::newRow("jet") << QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/data/termine.mdb")
                             << int(kvDataSource::Access) << QStringLiteral("QODBC") << QStringLiteral("Microsoft.Jet.OLEDB.4.0")
                             << QStringLiteral("Driver=MDBTools;DBQ=/data/termine.mdb") << QString() << -1 << QString()
                             << QString() << QStringLiteral("SQL_ATTR_ACCESS_MODE=SQL_MODE_READ_ONLY");
        QTest::newRow("access driver") << QStringLiteral("Driver={Microsoft Access Driver (*.mdb)};DBQ=/data/t.mdb")
                                       << int(kvDataSource::Access) << QStringLiteral("QODBC") << QStringLiteral("MSDASQL")
                                       << QStringLiteral("Driver=MDBTools;DBQ=/data/t.mdb") << QString() << -1 << QString()
                                       << QString() << QStringLiteral("SQL_ATTR_ACCESS_MODE=SQL_MODE_READ_ONLY");
        QTest::newRow("sqloledb") << QStringLiteral("Provider=SQLOLEDB;Data Source=srv,1500;Initial Catalog=Termine;User ID=sa;Password={ge;heim}")
                                  << int(kvDataSource::SqlServer) << QStringLiteral("QODBC") << QStringLiteral("SQLOLEDB")
                                  << QStringLiteral("Driver=FreeTDS;Server=srv;Port=1500;Database=Termine;UID=sa;PWD={ge;heim};TDS_Version=7.4")
                                  << QString() << -1 << QString() << QString() << QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=15;SQL_ATTR_CONNECTION_TIMEOUT=30");
        QTest::newRow("sql server driver") << QStringLiteral("Driver={SQL Server};Server=srv;Database=Termine;Uid=sa;Pwd={p;w}")
                                           << int(kvDataSource::SqlServer) << QStringLiteral("QODBC") << QStringLiteral("MSDASQL")
                                           << QStringLiteral("Driver=FreeTDS;Server=srv;Port=1433;Database=Termine;UID=sa;PWD={p;w};TDS_Version=7.4")
                                           << QString() << -1 << QString() << QString() << QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=15;SQL_ATTR_CONNECTION_TIMEOUT=30");
        QTest::newRow("sql server instance") << QStringLiteral("Provider=sqloledb;Data Source=srv\\SQLEXPRESS;Connect Timeout=5")
                                             << int(kvDataSource::SqlServer) << QStringLiteral("QODBC") << QStringLiteral("sqloledb")
                                             << QStringLiteral("Driver=FreeTDS;Server=srv\\SQLEXPRESS;TDS_Version=7.4")
                                             << QString() << -1 << QString() << QString() << QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=5;SQL_ATTR_CONNECTION_TIMEOUT=30");
        QTest::newRow("mysql driver") << QStringLiteral("Driver={MySQL ODBC 8.0 Driver};Server=db.local;Port=3307;Database=termine;Uid=u;Pwd=p")
                                      << int(kvDataSource::MySql) << QStringLiteral("QMYSQL") << QStringLiteral("MSDASQL")
                                      << QStringLiteral("termine") << QStringLiteral("db.local") << 3307 << QStringLiteral("u")
                                      << QStringLiteral("p") << mySqlOptions;
        QTest::newRow("mysql socket") << QStringLiteral("DRIVER={MySQL ODBC 3.51 Driver};SOCKET=/run/my.sock;DATABASE=t;UID=u")
                                      << int(kvDataSource::MySql) << QStringLiteral("QMYSQL") << QStringLiteral("MSDASQL")
                                      << QStringLiteral("t") << QString() << -1 << QStringLiteral("u") << QString()
                                      << mySqlOptions + QStringLiteral(";UNIX_SOCKET=/run/my.sock");
        QTest::newRow("mysqlprov") << QStringLiteral("Provider=MySQLProv;Location=db.local;Data Source=termine;User Id=u;Password=p")
                                   << int(kvDataSource::MySql) << QStringLiteral("QMYSQL") << QStringLiteral("MySQLProv")
                                   << QStringLiteral("termine") << QStringLiteral("db.local") << -1 << QStringLiteral("u")
                                   << QStringLiteral("p") << mySqlOptions;
        QTest::newRow("dsn") << QStringLiteral("Provider=MSDASQL;DSN=Termine;Uid=u") << int(kvDataSource::Odbc)
                             << QStringLiteral("QODBC") << QStringLiteral("MSDASQL") << QStringLiteral("DSN=Termine;Uid=u")
                             << QString() << -1 << QString() << QString() << QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=15;SQL_ATTR_CONNECTION_TIMEOUT=30");
        QTest::newRow("other odbc driver") << QStringLiteral("Driver={PostgreSQL Unicode};Server=h") << int(kvDataSource::Odbc)
                                           << QStringLiteral("QODBC") << QStringLiteral("MSDASQL")
                                           << QStringLiteral("Driver=PostgreSQL Unicode;Server=h") << QString() << -1
                                           << QString() << QString() << QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=15;SQL_ATTR_CONNECTION_TIMEOUT=30");
    }

    void dataSources()
    {
        QFETCH(QString, text);
        const kvDataSource source = kvDataSource::FromConnectionString(text);
        QTEST(int(source.engine()), "engine");
        QTEST(source.qtDriver(), "qtDriver");
        QTEST(source.provider(), "provider");
        QTEST(source.databaseName(), "databaseName");
        QTEST(source.hostName(), "host");
        QTEST(source.port(), "port");
        QTEST(source.userName(), "user");
        QTEST(source.password(), "password");
        QTEST(source.connectOptions(), "options");
        QCOMPARE(source.connectionString(), text);
        QCOMPARE(source.readOnly(), source.engine() == kvDataSource::Access);
    }

    void timeoutsOfTheConnectionString_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("commandTimeout");
        QTest::addColumn<QString>("options");
        QTest::newRow("sqlite") << QStringLiteral("Driver=SQLite3;Database=t.db;Command Timeout=2") << 2
                                << QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000");
        QTest::newRow("sqlite without limit") << QStringLiteral("Driver=SQLite3;Database=t.db;CommandTimeout=0") << 0
                                              << QStringLiteral("QSQLITE_BUSY_TIMEOUT=2147483647");
        QTest::newRow("sqlite read-only") << QStringLiteral("Driver=SQLite3;Database=t.db;Mode=read") << 5
                                          << QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000;QSQLITE_OPEN_READONLY");
        QTest::newRow("mariadb") << QStringLiteral("Driver={MySQL};Server=h;Connect Timeout=3;Command Timeout=7") << 7
                                 << QStringLiteral("CLIENT_FOUND_ROWS=1;MYSQL_OPT_CONNECT_TIMEOUT=3;"
                                                   "MYSQL_OPT_READ_TIMEOUT=7;MYSQL_OPT_WRITE_TIMEOUT=7");
        QTest::newRow("mariadb without limits") << QStringLiteral("Driver={MySQL};Server=h;Connect Timeout=0;Command Timeout=0")
                                                << 0 << QStringLiteral("CLIENT_FOUND_ROWS=1");
        QTest::newRow("sql server") << QStringLiteral("Provider=SQLOLEDB;Data Source=h;Connect Timeout=4;Command Timeout=9")
                                    << 9 << QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=4;SQL_ATTR_CONNECTION_TIMEOUT=9");
    }
    void timeoutsOfTheConnectionString()
    {
        QFETCH(QString, text);
        const kvDataSource source = kvDataSource::FromConnectionString(text);
        QTEST(source.commandTimeout(), "commandTimeout");
        QTEST(source.connectOptions(), "options");
    }

    void invalidTimeoutsAreRefused_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("text") << QStringLiteral("Driver=SQLite3;Database=t.db;Command Timeout=lang");
        QTest::newRow("negative") << QStringLiteral("Driver={MySQL};Server=h;Connect Timeout=-1");
        QTest::newRow("more than a day") << QStringLiteral("Provider=SQLOLEDB;Data Source=h;Command Timeout=86401");
    }
    void invalidTimeoutsAreRefused()
    {
        QFETCH(QString, text);
        QString description;
        QCOMPARE(errorNumber([&] { kvDataSource::FromConnectionString(text); }, &description), 3001);
        QVERIFY2(description.contains(QStringLiteral("Timeout' ist keine Zahl von Sekunden")), qPrintable(description));
    }

    void unknownProviderOrNoDriver_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("mention");
        QTest::newRow("oracle provider") << QStringLiteral("Provider=OraOLEDB.Oracle;Data Source=x") << 3706
                                         << QStringLiteral("OraOLEDB.Oracle");
        QTest::newRow("no driver") << QStringLiteral("Server=x;Database=y") << 3706 << QStringLiteral("Driver");
        QTest::newRow("bad port") << QStringLiteral("Driver={MySQL};Server=x;Port=abc") << 3001 << QStringLiteral("abc");
        QTest::newRow("sqlite without file") << QStringLiteral("Driver=SQLite3") << 3001 << QStringLiteral("Database");
    }

    void unknownProviderOrNoDriver()
    {
        QFETCH(QString, text);
        QString description;
        const int number = errorNumber([&] { kvDataSource::FromConnectionString(text); }, &description);
        QTEST(number, "number");
        QFETCH(QString, mention);
        QVERIFY2(description.contains(mention), qPrintable(description));
    }

    // --- Provider and ConnectionString as dialect detection reads them ---

    void readBackForDialectDetection_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("provider");
        QTest::addColumn<int>("dialect");
        QTest::newRow("sqlite") << QStringLiteral("Driver=SQLite3;Database=termine.db") << QStringLiteral("SQLite3") << 3;
        QTest::newRow("jet") << QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\termine.mdb")
                             << QStringLiteral("Microsoft.Jet.OLEDB.4.0") << 2;
        // Part 2.1: the Provider test is case-sensitive, so lower-case Jet falls through to MySQL.
        QTest::newRow("jet lower case") << QStringLiteral("Provider=microsoft.jet.oledb.4.0;Data Source=x.mdb")
                                        << QStringLiteral("microsoft.jet.oledb.4.0") << 3;
        QTest::newRow("sqloledb lower case") << QStringLiteral("Provider=sqloledb;Data Source=srv;Initial Catalog=T")
                                             << QStringLiteral("sqloledb") << 1;
        QTest::newRow("sql server driver") << QStringLiteral("Driver={SQL Server};Server=srv;Database=T")
                                           << QStringLiteral("MSDASQL") << 1;
        QTest::newRow("mysql") << QStringLiteral("Driver={MySQL ODBC 8.0 Driver};Server=h;Database=T")
                               << QStringLiteral("MSDASQL") << 3;
        QTest::newRow("malformed") << QStringLiteral("Driver={oops") << QStringLiteral("MSDASQL") << 3;
    }

    void readBackForDialectDetection()
    {
        QFETCH(QString, text);
        kvConnection connection;
        QCOMPARE(connection.Provider(), QStringLiteral("MSDASQL"));
        QCOMPARE(connection.ConnectionString(), QString());
        connection.setConnectionString(text);
        QCOMPARE(connection.ConnectionString(), text);
        QTEST(connection.Provider(), "provider");
        QTEST(detectedDialect(connection), "dialect");
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    // --- SQLite, the embedded default ---

    void sqliteOpenExecuteTraceClose()
    {
        kvConnection connection;
        QSignalSpy trace(&connection, &kvConnection::StatementExecuted);
        const QString text = sqliteString(QStringLiteral("open.db"));
        connection.Open(text);
        QCOMPARE(connection.State(), int(kvConnection::adStateOpen));
        QCOMPARE(connection.ConnectionString(), text);
        QCOMPARE(connection.Provider(), QStringLiteral("SQLite3"));
        QCOMPARE(connection.engine(), kvDataSource::SQLite);
        QVERIFY(QFileInfo::exists(databaseFile(QStringLiteral("open.db"))));

        const QStringList statements{QStringLiteral("CREATE TABLE T (ID INTEGER PRIMARY KEY, Name TEXT)"),
                                     QStringLiteral("INSERT INTO T (Name) VALUES ('a')"),
                                     QStringLiteral("INSERT INTO T (Name) VALUES ('b')"),
                                     QStringLiteral("UPDATE T SET Name = 'c'"),
                                     QStringLiteral("DELETE FROM T WHERE ID = 1"),
                                     QStringLiteral("SELECT * FROM T")};
        QCOMPARE(connection.Execute(statements.at(0)), 0);
        QCOMPARE(connection.Execute(statements.at(1)), 1);
        QCOMPARE(connection.Execute(statements.at(2)), 1);
        QCOMPARE(connection.Execute(statements.at(3)), 2);
        QCOMPARE(connection.Execute(statements.at(4)), 1);
        QCOMPARE(connection.Execute(statements.at(5)), -1);
        connection.Execute(QStringLiteral("UPDATE T SET Name = ? WHERE ID = ?"), {QStringLiteral("O'Brien"), 2});

        QStringList traced;
        for (const QList<QVariant> &signal : trace)
            traced << signal.at(0).toString();
        QCOMPARE(traced, statements + QStringList{QStringLiteral("UPDATE T SET Name = ? WHERE ID = ?")});

        QSqlQuery check(connection.Database());
        QVERIFY(check.exec(QStringLiteral("SELECT Name FROM T WHERE ID = 2")) && check.next());
        QCOMPARE(check.value(0).toString(), QStringLiteral("O'Brien"));
        check = QSqlQuery();

        connection.Close();
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
        connection.Close();   // closing twice is harmless
        QCOMPARE(errorNumber([&] { connection.Execute(statements.at(5)); }), 3709);

        connection.Open();    // again, with the ConnectionString it has
        QCOMPARE(connection.State(), int(kvConnection::adStateOpen));
        QCOMPARE(connection.Execute(QStringLiteral("DELETE FROM T")), 1);
    }

    void openWhileOpenAndStringWhileOpen()
    {
        kvConnection connection;
        connection.Open(sqliteString(QStringLiteral("twice.db")));
        QCOMPARE(errorNumber([&] { connection.Open(); }), 3705);
        QCOMPARE(errorNumber([&] { connection.setConnectionString(sqliteString(QStringLiteral("other.db"))); }), 3705);
        QCOMPARE(connection.State(), int(kvConnection::adStateOpen));
    }

    void statementFailureCarriesTheEnginesMessage()
    {
        kvConnection connection;
        QSignalSpy trace(&connection, &kvConnection::StatementExecuted);
        connection.Open(sqliteString(QStringLiteral("failure.db")));
        QString description;
        QCOMPARE(errorNumber([&] { connection.Execute(QStringLiteral("SELECT * FROM Fehlt")); }, &description),
                 int(kvAdoError::StatementFailed));
        QCOMPARE(description, QStringLiteral("no such table: Fehlt"));
        QCOMPARE(trace.count(), 1);
        QCOMPARE(trace.at(0).at(0).toString(), QStringLiteral("SELECT * FROM Fehlt"));
        // Part 2.3: an apostrophe in a name ends the literal and the statement fails.
        connection.Execute(QStringLiteral("CREATE TABLE T (Name TEXT)"));
        QCOMPARE(errorNumber([&] { connection.Execute(QStringLiteral("UPDATE T SET Name = 'O'Brien'")); }, &description),
                 int(kvAdoError::StatementFailed));
        QVERIFY2(description.contains(QStringLiteral("syntax error")), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateOpen));
    }

    void malformedStringDoesNotOpen()
    {
        kvConnection connection;
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(QStringLiteral("Driver=SQLite3;Database")); }, &description), 3001);
        QVERIFY2(description.contains(QStringLiteral("ohne '='")), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
        QCOMPARE(errorNumber([&] { connection.Open(QStringLiteral("Provider=OraOLEDB.Oracle;Data Source=x")); }, &description),
                 3706);
        QVERIFY2(description.contains(QStringLiteral("Der Provider wurde nicht gefunden")), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    void unknownOdbcDriverFailsWithTheDriverManagersMessage()
    {
        kvConnection connection;
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(QStringLiteral("Driver={Kein Solcher Treiber};Server=127.0.0.1")); },
                             &description),
                 int(kvAdoError::ProviderFailed));
        QVERIFY2(description.contains(QStringLiteral("[unixODBC][Driver Manager]")), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    void missingFolderIsAClearError()
    {
        kvConnection connection;
        const QString folder = databaseFile(QStringLiteral("fehlt/auch"));
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(QStringLiteral("Driver=SQLite3;Database=") + folder + QStringLiteral("/t.db")); },
                             &description),
                 int(kvAdoError::ProviderFailed));
        QVERIFY2(description.contains(QStringLiteral("der Ordner '%1' existiert nicht").arg(folder)), qPrintable(description));
        QVERIFY2(description.endsWith(QStringLiteral(": unable to open database file")), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
        QVERIFY(!QFileInfo::exists(folder));
    }

    void sqlServerStringReachesFreeTds_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("sqloledb") << QStringLiteral("Provider=SQLOLEDB;Data Source=127.0.0.1,%1;Initial Catalog=Termine;User ID=sa;Password=x");
        QTest::newRow("sql server driver") << QStringLiteral("Driver={SQL Server};Server=127.0.0.1;Port=%1;Database=Termine;Uid=sa;Pwd=x");
    }

    void sqlServerStringReachesFreeTds()
    {
        QFETCH(QString, pattern);
        const int port = closedLocalPort();
        QVERIFY(port > 0);
        kvConnection connection;
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(pattern.arg(port)); }, &description), int(kvAdoError::ProviderFailed));
        QVERIFY2(description.startsWith(QStringLiteral("Keine Verbindung zum SQL Server (ODBC-Treiber FreeTDS): ")),
                 qPrintable(description));
        QVERIFY2(description.contains(QStringLiteral("[FreeTDS][SQL Server]Unable to connect")), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    void jetStringReachesMdbTools()
    {
        const QString file = databaseFile(QStringLiteral("fehlt.mdb"));
        kvConnection connection;
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=") + file); },
                             &description),
                 int(kvAdoError::ProviderFailed));
        QVERIFY2(description.startsWith(QStringLiteral("Access-Datenbank kann nicht geöffnet werden (ODBC-Treiber MDBTools): ")),
                 qPrintable(description));
        // MDBTools says so only on stderr; the connection passes its words on.
        QVERIFY2(description.contains(QStringLiteral("Unable to locate database ") + file), qPrintable(description));
        QCOMPARE(connection.Provider(), QStringLiteral("Microsoft.Jet.OLEDB.4.0"));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    // --- connection names ---

    void eachConnectionHasItsOwnNameAndRemovesIt()
    {
        auto first = std::make_unique<kvConnection>();
        auto second = std::make_unique<kvConnection>();
        first->Open(sqliteString(QStringLiteral("shared.db")));
        second->Open(sqliteString(QStringLiteral("shared.db")));
        const QString firstName = first->Database().connectionName();
        const QString secondName = second->Database().connectionName();
        QVERIFY(!firstName.isEmpty());
        QVERIFY(firstName != secondName);
        QVERIFY(QSqlDatabase::contains(firstName));
        first->Close();
        QVERIFY(!QSqlDatabase::contains(firstName));
        second.reset();
        QVERIFY(!QSqlDatabase::contains(secondName));
    }

    // --- a host's own QSqlDatabase ---

    void wrapsAHostsOpenSQLiteDatabase()
    {
        const QString file = databaseFile(QStringLiteral("host.db"));
        {
            QSqlDatabase host = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("host"));
            host.setDatabaseName(file);
            QVERIFY(host.open());
            std::unique_ptr<kvConnection> connection(kvConnection::Wrap(host));
            QVERIFY(connection->isWrapped());
            QCOMPARE(connection->State(), int(kvConnection::adStateOpen));
            QCOMPARE(connection->Provider(), QStringLiteral("SQLite3"));
            QCOMPARE(connection->ConnectionString(), QStringLiteral("Driver=SQLite3;Database=") + file);
            QCOMPARE(detectedDialect(*connection), 3);
            QCOMPARE(connection->Database().connectionName(), QStringLiteral("host"));

            QSignalSpy trace(connection.get(), &kvConnection::StatementExecuted);
            connection->Execute(QStringLiteral("CREATE TABLE T (Name TEXT)"));
            QCOMPARE(connection->Execute(QStringLiteral("INSERT INTO T VALUES ('x')")), 1);
            QCOMPARE(trace.count(), 2);
            QSqlQuery check(host);
            QVERIFY(check.exec(QStringLiteral("SELECT COUNT(*) FROM T")) && check.next());
            QCOMPARE(check.value(0).toInt(), 1);
            check = QSqlQuery();

            connection->Close();   // lets go; the host owns the database
            QCOMPARE(connection->State(), int(kvConnection::adStateClosed));
            QVERIFY(host.isOpen());
            connection->Open();
            QCOMPARE(connection->State(), int(kvConnection::adStateOpen));
            connection.reset();
            QVERIFY(host.isOpen());
            QVERIFY(QSqlDatabase::contains(QStringLiteral("host")));
            host.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("host"));
    }

    void wrapReadsBackOtherDrivers_data()
    {
        QTest::addColumn<QString>("driver");
        QTest::addColumn<QString>("databaseName");
        QTest::addColumn<QString>("provider");
        QTest::addColumn<QString>("connectionString");
        QTest::addColumn<int>("dialect");
        QTest::newRow("mysql") << QStringLiteral("QMYSQL") << QStringLiteral("termine") << QStringLiteral("MSDASQL")
                               << QStringLiteral("Driver={MySQL ODBC 8.0 Driver};Server=db.local;Port=3307;Database=termine;Uid=kv")
                               << 3;
        QTest::newRow("odbc freetds") << QStringLiteral("QODBC")
                                      << QStringLiteral("Driver=FreeTDS;Server=srv;Port=1433;Database=Termine;UID=sa;PWD=geheim")
                                      << QStringLiteral("SQLOLEDB")
                                      << QStringLiteral("Provider=SQLOLEDB;Data Source=srv,1433;Initial Catalog=Termine;User ID=sa")
                                      << 1;
        QTest::newRow("odbc mdbtools") << QStringLiteral("QODBC") << QStringLiteral("Driver=MDBTools;DBQ=/data/t.mdb")
                                       << QStringLiteral("Microsoft.Jet.OLEDB.4.0")
                                       << QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/data/t.mdb") << 2;
        QTest::newRow("odbc dsn") << QStringLiteral("QODBC") << QStringLiteral("Termine") << QStringLiteral("MSDASQL")
                                  << QStringLiteral("DSN=Termine") << 3;
    }

    void wrapReadsBackOtherDrivers()
    {
        QFETCH(QString, driver);
        QFETCH(QString, databaseName);
        const QString name = QStringLiteral("host-") + QString::fromLatin1(QTest::currentDataTag());
        {
            QSqlDatabase host = QSqlDatabase::addDatabase(driver, name);
            host.setDatabaseName(databaseName);
            host.setHostName(QStringLiteral("db.local"));
            host.setPort(3307);
            host.setUserName(QStringLiteral("kv"));
            host.setPassword(QStringLiteral("geheim"));
            std::unique_ptr<kvConnection> connection(kvConnection::Wrap(host));
            QCOMPARE(connection->State(), int(kvConnection::adStateClosed));
            QTEST(connection->Provider(), "provider");
            QTEST(connection->ConnectionString(), "connectionString");
            QTEST(detectedDialect(*connection), "dialect");
            QVERIFY(!connection->ConnectionString().contains(QStringLiteral("geheim")));
        }
        QSqlDatabase::removeDatabase(name);
    }

    void settingAStringLetsGoOfTheWrappedDatabase()
    {
        {
            QSqlDatabase host = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("host2"));
            host.setDatabaseName(QStringLiteral(":memory:"));
            QVERIFY(host.open());
            std::unique_ptr<kvConnection> connection(kvConnection::Wrap(host));
            connection->Close();
            const QString text = sqliteString(QStringLiteral("own.db"));
            connection->Open(text);
            QVERIFY(!connection->isWrapped());
            QCOMPARE(connection->ConnectionString(), text);
            QVERIFY(connection->Database().connectionName() != QStringLiteral("host2"));
            QVERIFY(host.isOpen());
        }
        QSqlDatabase::removeDatabase(QStringLiteral("host2"));
    }
};

QTEST_GUILESS_MAIN(tst_kvConnection)
#include "tst_kvConnection.moc"
