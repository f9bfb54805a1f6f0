#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvRecordset.h"
#include "kvTestSupport.h"

#include <QSignalSpy>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

class tst_kvAppointmentTable : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    QStringList fieldNames(kvConnection &connection, const QString &table)
    {
        kvRecordset recordset;
        recordset.Open(table, &connection, kvRecordset::adOpenForwardOnly, kvRecordset::adLockReadOnly,
                       kvRecordset::adCmdTable);
        return recordset.Fields().Names();
    }

private slots:
    void statementTexts_data()
    {
        QTest::addColumn<QString>("engine");
        QTest::addColumn<bool>("optional");
        QTest::addColumn<QStringList>("statements");
        const QStringList indexes{QStringLiteral("CREATE INDEX IX_Termine_DateBegin ON Termine (DateBegin)"),
                                  QStringLiteral("CREATE INDEX IX_Termine_DateEnd ON Termine (DateEnd)")};
        QTest::newRow("SQLite") << QStringLiteral("SQLite") << true
                                << QStringList{QStringLiteral(
                                       "CREATE TABLE Termine (DateID INTEGER PRIMARY KEY AUTOINCREMENT, "
                                       "DateBegin DATETIME NOT NULL, DateEnd DATETIME NOT NULL, Name TEXT NOT NULL, "
                                       "Remark TEXT, Document TEXT, ImageID SMALLINT)")} + indexes;
        QTest::newRow("SQLite without optional") << QStringLiteral("sqlite") << false
                                                 << QStringList{QStringLiteral(
                                                        "CREATE TABLE Termine (DateID INTEGER PRIMARY KEY AUTOINCREMENT, "
                                                        "DateBegin DATETIME NOT NULL, DateEnd DATETIME NOT NULL, "
                                                        "Name TEXT NOT NULL)")} + indexes;
        QTest::newRow("MariaDB") << QStringLiteral("MariaDB") << true
                                 << QStringList{QStringLiteral(
                                        "CREATE TABLE Termine (DateID INT NOT NULL AUTO_INCREMENT PRIMARY KEY, "
                                        "DateBegin DATETIME NOT NULL, DateEnd DATETIME NOT NULL, Name VARCHAR(255) NOT NULL, "
                                        "Remark TEXT NULL, Document TEXT NULL, ImageID SMALLINT NULL) "
                                        "ENGINE=InnoDB DEFAULT CHARSET=utf8mb4")} + indexes;
        QTest::newRow("MySQL without optional") << QStringLiteral("MYSQL") << false
                                                << QStringList{QStringLiteral(
                                                       "CREATE TABLE Termine (DateID INT NOT NULL AUTO_INCREMENT PRIMARY KEY, "
                                                       "DateBegin DATETIME NOT NULL, DateEnd DATETIME NOT NULL, "
                                                       "Name VARCHAR(255) NOT NULL) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4")} + indexes;
        QTest::newRow("SQL Server") << QStringLiteral("SQLServer") << true
                                    << QStringList{QStringLiteral(
                                           "CREATE TABLE Termine (DateID INT IDENTITY(1,1) NOT NULL PRIMARY KEY, "
                                           "DateBegin DATETIME NOT NULL, DateEnd DATETIME NOT NULL, Name NVARCHAR(255) NOT NULL, "
                                           "Remark NVARCHAR(MAX) NULL, Document NVARCHAR(MAX) NULL, ImageID SMALLINT NULL)")} + indexes;
        QTest::newRow("Access") << QStringLiteral("Access") << true
                                << QStringList{QStringLiteral(
                                       "CREATE TABLE Termine (DateID COUNTER PRIMARY KEY, DateBegin DATETIME NOT NULL, "
                                       "DateEnd DATETIME NOT NULL, Name TEXT(255) NOT NULL, Remark MEMO, Document MEMO, "
                                       "ImageID SHORT)")} + indexes;
    }

    void statementTexts()
    {
        QFETCH(QString, engine);
        QFETCH(bool, optional);
        QTEST(kvAppointmentTable::CreateTableSql(engine, QStringLiteral("Termine"), optional), "statements");
    }

    void indexNamesStayIdentifiers()
    {
        const QStringList statements = kvAppointmentTable::CreateTableSql(QStringLiteral("SQLServer"), QStringLiteral("dbo.Termine"));
        QCOMPARE(statements.at(1), QStringLiteral("CREATE INDEX IX_dbo_Termine_DateBegin ON dbo.Termine (DateBegin)"));
    }

    void unknownEngine()
    {
        QString description;
        QCOMPARE(errorNumber([&] { kvAppointmentTable::CreateTableSql(QStringLiteral("Oracle"), QStringLiteral("T")); },
                             &description),
                 3001);
        QVERIFY2(description.contains(QStringLiteral("'Oracle'")), qPrintable(description));
    }

    void createsOnSQLite_data()
    {
        QTest::addColumn<bool>("optional");
        QTest::addColumn<QStringList>("columns");
        QTest::newRow("with optional columns") << true
                                               << QStringList{QStringLiteral("DateID"), QStringLiteral("DateBegin"),
                                                              QStringLiteral("DateEnd"), QStringLiteral("Name"),
                                                              QStringLiteral("Remark"), QStringLiteral("Document"),
                                                              QStringLiteral("ImageID")};
        QTest::newRow("without") << false
                                 << QStringList{QStringLiteral("DateID"), QStringLiteral("DateBegin"),
                                                QStringLiteral("DateEnd"), QStringLiteral("Name")};
    }

    void createsOnSQLite()
    {
        QFETCH(bool, optional);
        kvConnection connection;
        connection.Open(QStringLiteral("Driver=SQLite3;Database=") + m_folder.filePath(QString::fromLatin1(QTest::currentDataTag()) + QStringLiteral(".db")));
        QSignalSpy trace(&connection, &kvConnection::StatementExecuted);
        kvAppointmentTable::Create(connection, QStringLiteral("Termine"), optional);
        QStringList traced;
        for (const QList<QVariant> &signal : trace)
            traced << signal.at(0).toString();
        QCOMPARE(traced, kvAppointmentTable::CreateTableSql(QStringLiteral("SQLite"), QStringLiteral("Termine"), optional));
        QTEST(fieldNames(connection, QStringLiteral("Termine")), "columns");

        QSqlQuery indexes(connection.Database());
        QVERIFY(indexes.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'index' AND tbl_name = 'Termine' ORDER BY name")));
        QStringList names;
        while (indexes.next())
            names << indexes.value(0).toString();
        QCOMPARE(names, (QStringList{QStringLiteral("IX_Termine_DateBegin"), QStringLiteral("IX_Termine_DateEnd")}));
        indexes = QSqlQuery();

        // The key is filled by the database.
        connection.Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES ('2026-01-01 00:00', '2026-01-01 00:00', 'a')"));
        connection.Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES ('2026-01-02 00:00', '2026-01-02 00:00', 'b')"));
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT DateID FROM Termine ORDER BY DateID"), &connection);
        QCOMPARE(recordset.Fields().Item(0).Value().toInt(), 1);
        recordset.MoveNext();
        QCOMPARE(recordset.Fields().Item(0).Value().toInt(), 2);
    }

    void creatingTwiceFailsWithTheEnginesMessage()
    {
        kvConnection connection;
        connection.Open(QStringLiteral("Driver=SQLite3;Database=") + m_folder.filePath(QStringLiteral("twice.db")));
        kvAppointmentTable::Create(connection, QStringLiteral("Termine"));
        QString description;
        QVERIFY(errorNumber([&] { kvAppointmentTable::Create(connection, QStringLiteral("Termine")); }, &description) != 0);
        QCOMPARE(description, QStringLiteral("table Termine already exists"));
    }

    void closedConnection()
    {
        kvConnection connection;
        QCOMPARE(errorNumber([&] { kvAppointmentTable::Create(connection, QStringLiteral("Termine")); }), 3709);
    }
};

QTEST_GUILESS_MAIN(tst_kvAppointmentTable)
#include "tst_kvAppointmentTable.moc"
