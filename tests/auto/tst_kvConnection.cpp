#include "kvAdoError.h"
#include "kvConnection.h"
#include "kvConnectionString.h"
#include "kvDataSource.h"
#include "kvDataTestSupport.h"
#include "kvTestSupport.h"

#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class tst_kvConnection : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QString sqliteString(const QString &name) const
    {
        return QStringLiteral("Driver=SQLite3;Database=") + m_folder.filePath(name);
    }

private slots:
    void parses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<int>("count");
        QTest::newRow("keys ignore case") << "DRIVER=SQLite3; database = termine.db ;" << "Database" << "termine.db" << 2;
        QTest::newRow("missing key") << "Driver=SQLite3" << "Server" << "" << 1;
        QTest::newRow("braces") << "Driver={MySQL ODBC 8.0 Driver};Pwd={a;b}}c=d} ;;" << "PWD" << "a;b}c=d" << 2;
        QTest::newRow("double quotes") << "User ID=\"x;\"\"y\";Data   Source= 'srv'" << "user id" << "x;\"y" << 2;
        QTest::newRow("last repeated key wins") << "Server=a;SERVER=b" << "Server" << "b" << 1;
    }
    void parses()
    {
        QFETCH(QString, text);
        QFETCH(QString, key);
        const kvConnectionString parts = kvConnectionString::Parse(text);
        QTEST(parts.Value(key), "value");
        QTEST(int(parts.Count()), "count");
    }

    void parseReadsBackWhatJoinWrites_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("leading double quote") << "\"a\"b";
        QTest::newRow("braces and semicolons") << "{x;}y";
        QTest::newRow("outer blanks") << " a ";
        QTest::newRow("control characters") << "\x01a\n\x1f;\x7f";
    }
    void parseReadsBackWhatJoinWrites()
    {
        QFETCH(QString, value);
        const QString joined = kvConnectionString::Join({{"Driver", "SQLite3"}, {"Pwd", value}, {"Last", "x"}});
        kvConnectionString parsed;
        QCOMPARE(errorNumber([&] { parsed = kvConnectionString::Parse(joined); }), 0);
        QCOMPARE(parsed.Keys(), (QStringList{"Driver", "Pwd", "Last"}));
        QCOMPARE(parsed.Value("Pwd"), value);
        QCOMPARE(kvConnectionString::Join({{"PWD", "x;}y"}, {"Server", "h"}}), QStringLiteral("PWD={x;}}y};Server=h"));
    }

    void dataSources_data()
    {
        const QString mySql = "CLIENT_FOUND_ROWS=1;MYSQL_OPT_CONNECT_TIMEOUT=15;MYSQL_OPT_READ_TIMEOUT=30;MYSQL_OPT_WRITE_TIMEOUT=30";
        const QString odbc = "SQL_ATTR_LOGIN_TIMEOUT=15;SQL_ATTR_CONNECTION_TIMEOUT=30";
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("engine");
        QTest::addColumn<QString>("qtDriver");
        QTest::addColumn<QString>("provider");
        QTest::addColumn<QString>("databaseName");
        QTest::addColumn<QString>("details");   // host:port user/password
        QTest::addColumn<QString>("options");
        const auto row = [](const char *name, const QString &text, kvDataSource::Engine engine, const char *qtDriver,
                            const char *provider, const QString &database, const char *details, const QString &options) {
            QTest::newRow(name) << text << int(engine) << qtDriver << provider << database << details << options;
        };
        row("sqlite braces", "driver={SQLite3};DATABASE={/data/a;b.db}", kvDataSource::SQLite, "QSQLITE", "SQLite3",
            "/data/a;b.db", ":-1 /", "QSQLITE_BUSY_TIMEOUT=5000");
        row("sqlite timeouts", "Driver=SQLite3;Database=t.db;CommandTimeout=0;Mode=read", kvDataSource::SQLite, "QSQLITE",
            "SQLite3", "t.db", ":-1 /", "QSQLITE_BUSY_TIMEOUT=2147483647;QSQLITE_OPEN_READONLY");
        row("jet", "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/data/t.mdb", kvDataSource::Access, "QODBC",
            "Microsoft.Jet.OLEDB.4.0", "Driver=MDBTools;DBQ=/data/t.mdb", ":-1 /", "SQL_ATTR_ACCESS_MODE=SQL_MODE_READ_ONLY");
        row("sqloledb", "Provider=SQLOLEDB;Data Source=srv,1500;Initial Catalog=Termine;User ID=sa;Password={ge;heim}",
            kvDataSource::SqlServer, "QODBC", "SQLOLEDB",
            "Driver=FreeTDS;Server=srv;Port=1500;Database=Termine;UID=sa;PWD={ge;heim};TDS_Version=7.4", ":-1 /", odbc);
        row("sql server instance", "Provider=sqloledb;Data Source=srv\\SQLEXPRESS;Connect Timeout=5;Command Timeout=9",
            kvDataSource::SqlServer, "QODBC", "sqloledb", "Driver=FreeTDS;Server=srv\\SQLEXPRESS;TDS_Version=7.4", ":-1 /",
            "SQL_ATTR_LOGIN_TIMEOUT=5;SQL_ATTR_CONNECTION_TIMEOUT=9");
        row("mysql driver", "Driver={MySQL ODBC 8.0 Driver};Server=db.local;Port=3307;Database=termine;Uid=u;Pwd=p",
            kvDataSource::MySql, "QMYSQL", "MSDASQL", "termine", "db.local:3307 u/p", mySql);
        row("mysql socket", "DRIVER={MySQL ODBC 3.51 Driver};SOCKET=/run/my.sock;DATABASE=t;UID=u", kvDataSource::MySql,
            "QMYSQL", "MSDASQL", "t", ":-1 u/", mySql + ";UNIX_SOCKET=/run/my.sock");
        row("mariadb without limits", "Driver={MySQL};Server=h;Connect Timeout=0;Command Timeout=0", kvDataSource::MySql,
            "QMYSQL", "MSDASQL", "", "h:-1 /", "CLIENT_FOUND_ROWS=1");
        row("dsn", "Provider=MSDASQL;DSN=Termine;Uid=u", kvDataSource::Odbc, "QODBC", "MSDASQL", "DSN=Termine;Uid=u", ":-1 /", odbc);
    }
    void dataSources()
    {
        QFETCH(QString, text);
        const kvDataSource source = kvDataSource::FromConnectionString(text);
        QTEST(int(source.engine()), "engine");
        QTEST(source.qtDriver(), "qtDriver");
        QTEST(source.provider(), "provider");
        QTEST(source.databaseName(), "databaseName");
        QTEST(QStringLiteral("%1:%2 %3/%4").arg(source.hostName()).arg(source.port()).arg(source.userName(), source.password()),
              "details");
        QTEST(source.connectOptions(), "options");
        QCOMPARE(source.readOnly(), source.engine() == kvDataSource::Access);
    }

    //! Refused before any driver is asked (3001 a malformed string, 3706 no provider), without the secret.
    void refused_data()
    {
        QTest::addColumn<QString>("text");   // null: Join with the key "a=b"
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("mention");
        const QString wrongType = QStringLiteral("Die Argumente sind vom falschen Typ");
        QTest::newRow("join: key with equals sign") << QString() << 3001 << wrongType;
        QTest::newRow("blank") << "   " << 3001 << wrongType;
        QTest::newRow("no equals") << "Driver=SQLite3;geheim" << 3001 << wrongType;
        QTest::newRow("no key") << "Driver=SQLite3;=geheim" << 3001 << wrongType;
        QTest::newRow("open brace") << "Driver={SQLite3;Database=geheim" << 3001 << wrongType;
        QTest::newRow("open quote") << "Driver=SQLite3;Pwd=\"geheim" << 3001 << wrongType;
        QTest::newRow("text after brace") << "Driver={SQLite3}geheim;Database=x" << 3001 << wrongType;
        QTest::newRow("timeout text") << "Driver=SQLite3;Database=t.db;Command Timeout=lang" << 3001 << "Timeout' ist keine Zahl von Sekunden";
        QTest::newRow("negative timeout") << "Driver={MySQL};Server=h;Connect Timeout=-1" << 3001 << "Timeout' ist keine Zahl von Sekunden";
        QTest::newRow("oracle provider") << "Provider=OraOLEDB.Oracle;Data Source=x" << 3706 << "Der Provider wurde nicht gefunden";
        QTest::newRow("no driver") << "Server=x;Database=y" << 3706 << "Driver";
        QTest::newRow("bad port") << "Driver={MySQL};Server=x;Port=abc" << 3001 << "abc";
        QTest::newRow("sqlite without file") << "Driver=SQLite3" << 3001 << "Database";
    }
    void refused()
    {
        QFETCH(QString, text);
        QFETCH(QString, mention);
        QString description;
        QTEST(errorNumber([&] {
                  if (text.isNull())
                      kvConnectionString::Join({{"Driver", "geheim"}, {"a=b", "v"}});
                  else
                      kvDataSource::FromConnectionString(text);
              }, &description), "number");
        QVERIFY2(description.contains(mention) && !description.contains(QStringLiteral("geheim")), qPrintable(description));
        kvConnection connection;
        if (!text.isNull())
            QTEST(errorNumber([&] { connection.Open(text); }), "number");
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
    }

    void sqliteExecutesTracesAndCloses()
    {
        kvConnection connection;
        QSignalSpy trace(&connection, &kvConnection::StatementExecuted);
        connection.Open(sqliteString("open.db"));
        QCOMPARE(connection.State(), int(kvConnection::adStateOpen));
        QCOMPARE(connection.Provider(), QStringLiteral("SQLite3"));
        QCOMPARE(connection.Execute("CREATE TABLE T (ID INTEGER PRIMARY KEY, Name TEXT)"), 0);
        QCOMPARE(connection.Execute("INSERT INTO T (Name) VALUES ('a'), ('b')"), 2);
        connection.Execute("UPDATE T SET Name = ? WHERE ID = ?", {"O'Brien", 2});
        QCOMPARE(connection.Execute("SELECT * FROM T"), -1);
        QCOMPARE(trace.count(), 4);
        QCOMPARE(trace.at(2).at(0).toString(), QStringLiteral("UPDATE T SET Name = ? WHERE ID = ?"));
        QCOMPARE(errorNumber([&] { connection.Open(); }), 3705);
        QCOMPARE(errorNumber([&] { connection.setConnectionString(sqliteString("other.db")); }), 3705);

        QString description;
        QCOMPARE(errorNumber([&] { connection.Execute("SELECT * FROM Fehlt"); }, &description), int(kvAdoError::StatementFailed));
        QCOMPARE(description, QStringLiteral("no such table: Fehlt"));
        // An apostrophe in a literal ends it: the engine's message reaches the caller.
        QCOMPARE(errorNumber([&] { connection.Execute("UPDATE T SET Name = 'O'Brien'"); }, &description),
                 int(kvAdoError::StatementFailed));
        QVERIFY2(description.contains(QStringLiteral("syntax error")), qPrintable(description));

        const QString name = connection.Database().connectionName();
        connection.Close();
        connection.Close();
        QVERIFY(!QSqlDatabase::contains(name));
        QCOMPARE(errorNumber([&] { connection.Execute("SELECT * FROM T"); }), 3709);
        connection.Open();
        QCOMPARE(connection.Execute("DELETE FROM T WHERE Name = 'O''Brien'"), 1);   // the bound value was written
    }

    //! The drivers' own words reach the user, behind a German first line.
    void openFailures_data()
    {
        QTest::addColumn<QString>("text");   // with a closed {port} and the test {folder}
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("mention");
        QTest::newRow("unknown odbc driver") << "Driver={Kein Solcher Treiber};Server=127.0.0.1" << "" << "[unixODBC][Driver Manager]";
        QTest::newRow("missing folder") << "Driver=SQLite3;Database={folder}/fehlt/t.db" << ""
                                        << "der Ordner '{folder}/fehlt' existiert nicht: unable to open database file";
        QTest::newRow("sqloledb") << "Provider=SQLOLEDB;Data Source=127.0.0.1,{port};Initial Catalog=T;User ID=sa;Password=x"
                                  << "Keine Verbindung zum SQL Server (ODBC-Treiber FreeTDS): " << "[FreeTDS][SQL Server]Unable to connect";
        QTest::newRow("sql server driver") << "Driver={SQL Server};Server=127.0.0.1;Port={port};Database=T;Uid=sa;Pwd=x"
                                           << "Keine Verbindung zum SQL Server (ODBC-Treiber FreeTDS): " << "[FreeTDS][SQL Server]Unable to connect";
        // MDBTools says so only on stderr; the connection passes its words on.
        QTest::newRow("jet") << "Provider=Microsoft.Jet.OLEDB.4.0;Data Source={folder}/fehlt.mdb"
                             << "Access-Datenbank kann nicht geöffnet werden (ODBC-Treiber MDBTools): " << "Unable to locate database {folder}/fehlt.mdb";
    }
    void openFailures()
    {
        QFETCH(QString, start);
        QFETCH(QString, mention);
        const int port = closedLocalPort();
        QVERIFY(port > 0);
        QFETCH(QString, text);
        text.replace("{port}", QString::number(port)).replace("{folder}", m_folder.path());
        mention.replace("{folder}", m_folder.path());
        kvConnection connection;
        QString description;
        QCOMPARE(errorNumber([&] { connection.Open(text); }, &description), int(kvAdoError::ProviderFailed));
        QVERIFY2(description.startsWith(start) && description.contains(mention), qPrintable(description));
        QCOMPARE(connection.State(), int(kvConnection::adStateClosed));
        QVERIFY(!QFileInfo::exists(m_folder.filePath("fehlt")));
    }

    void wrapsAHostsOpenDatabaseAndLetsGoOfIt()
    {
        {
            QSqlDatabase host = QSqlDatabase::addDatabase("QSQLITE", "host");
            host.setDatabaseName(m_folder.filePath("host.db"));
            QVERIFY(host.open());
            std::unique_ptr<kvConnection> connection(kvConnection::Wrap(host));
            QCOMPARE(connection->State(), int(kvConnection::adStateOpen));
            QCOMPARE(connection->ConnectionString(), sqliteString("host.db"));
            QCOMPARE(connection->Execute("CREATE TABLE T (Name TEXT)"), 0);
            QCOMPARE(connection->Execute("INSERT INTO T VALUES ('x')"), 1);
            QSqlQuery check(host);
            QVERIFY(check.exec("SELECT COUNT(*) FROM T") && check.next());
            QCOMPARE(check.value(0).toInt(), 1);
            connection->Close();   // the host owns the database
            QVERIFY(host.isOpen());
            connection->Open(sqliteString("own.db"));
            QVERIFY(!connection->isWrapped());
            QVERIFY(connection->Database().connectionName() != QStringLiteral("host"));
            connection.reset();
            QVERIFY(host.isOpen());
        }
        QSqlDatabase::removeDatabase("host");
    }

    void wrapReadsBackOtherDrivers_data()
    {
        QTest::addColumn<QString>("driver");
        QTest::addColumn<QString>("databaseName");
        QTest::addColumn<QString>("connectionString");
        QTest::newRow("mysql") << "QMYSQL" << "termine"
                               << "Driver={MySQL ODBC 8.0 Driver};Server=db.local;Port=3307;Database=termine;Uid=kv";
        QTest::newRow("odbc freetds") << "QODBC" << "Driver=FreeTDS;Server=srv;Port=1433;Database=Termine;UID=sa;PWD=geheim"
                                      << "Provider=SQLOLEDB;Data Source=srv,1433;Initial Catalog=Termine;User ID=sa";
    }
    void wrapReadsBackOtherDrivers()
    {
        QFETCH(QString, driver);
        QFETCH(QString, databaseName);
        const QString name = QStringLiteral("host-") + QString::fromLatin1(QTest::currentDataTag());
        {
            QSqlDatabase host = QSqlDatabase::addDatabase(driver, name);
            host.setDatabaseName(databaseName);
            host.setHostName("db.local");
            host.setPort(3307);
            host.setUserName("kv");
            host.setPassword("geheim");
            std::unique_ptr<kvConnection> connection(kvConnection::Wrap(host));
            QTEST(connection->ConnectionString(), "connectionString");
        }
        QSqlDatabase::removeDatabase(name);
    }
};

QTEST_GUILESS_MAIN(tst_kvConnection)
#include "tst_kvConnection.moc"
