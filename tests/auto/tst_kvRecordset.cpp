// Recordsets, commands, fields and the appointment table on SQLite.
#include "kvAdoError.h"
#include "kvAppointmentTable.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvRecordset.h"
#include "kvTestSupport.h"

#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

} // namespace

class tst_kvRecordset : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<kvConnection> m_connection;
    QStringList m_trace;   // the statements sent
    int m_databaseNumber = 0;

    //! One appointment through AddNew/Update, as the store inserts one.
    void insert(const QVariant &begin, const QString &name, const QVariant &remark = QVariant(), const QVariant &imageId = QVariant())
    {
        kvRecordset recordset;
        recordset.Open("Termine", m_connection.get(), kvRecordset::adOpenKeyset, kvRecordset::adLockPessimistic, kvRecordset::adCmdTable);
        recordset.AddNew();
        recordset.setValue("DateBegin", begin);
        recordset.setValue("dateend", begin);
        recordset.setValue("Name", name);
        if (remark.isValid())
            recordset.setValue("Remark", remark);
        if (imageId.isValid())
            recordset.setValue("ImageID", imageId);
        recordset.Update();
    }

    QString stored(const QString &sql) const
    {
        QSqlQuery query(m_connection->Database());
        return query.exec(sql) && query.next() ? query.value(0).toString() : QStringLiteral("<missing>");
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(useBerlinTime(), "Europe/Berlin must have its 2026 spring-forward gap for the date tests");
    }

    void init()
    {
        m_connection = std::make_unique<kvConnection>();
        m_connection->Open("Driver=SQLite3;Database=" + m_folder.filePath(QStringLiteral("t%1.db").arg(++m_databaseNumber)));
        kvAppointmentTable::Create(*m_connection, "Termine");
        m_trace.clear();
        connect(m_connection.get(), &kvConnection::StatementExecuted, this, [this](const QString &sql) { m_trace << sql; });
    }

    //! The DDL for the engines not run here; SQLite and MariaDB create their tables in tst_kvAppointmentStore.
    void createTableTexts_data()
    {
        QTest::addColumn<QString>("engine");
        QTest::addColumn<QString>("table");
        QTest::newRow("SQL Server") << "SQLServer"
            << "CREATE TABLE Termine (DateID INT IDENTITY(1,1) NOT NULL PRIMARY KEY, DateBegin DATETIME NOT NULL, DateEnd "
               "DATETIME NOT NULL, Name NVARCHAR(255) NOT NULL, Remark NVARCHAR(MAX) NULL, Document NVARCHAR(MAX) NULL, "
               "ImageID SMALLINT NULL)";
        QTest::newRow("Access") << "Access"
            << "CREATE TABLE Termine (DateID COUNTER PRIMARY KEY, DateBegin DATETIME NOT NULL, DateEnd DATETIME NOT NULL, "
               "Name TEXT(255) NOT NULL, Remark MEMO, Document MEMO, ImageID SHORT)";
    }
    void createTableTexts()
    {
        QFETCH(QString, engine);
        QFETCH(QString, table);
        QCOMPARE(kvAppointmentTable::CreateTableSql(engine, "Termine"),
                 (QStringList{table, "CREATE INDEX IX_Termine_DateBegin ON Termine (DateBegin)",
                              "CREATE INDEX IX_Termine_DateEnd ON Termine (DateEnd)"}));
    }

    void createTableIndexNamesAndFailures()
    {
        QCOMPARE(kvAppointmentTable::CreateTableSql("sqlite", "dbo.Termine").at(1),   // engine names ignore case
                 QStringLiteral("CREATE INDEX IX_dbo_Termine_DateBegin ON dbo.Termine (DateBegin)"));
        QString description;
        QCOMPARE(errorNumber([&] { kvAppointmentTable::CreateTableSql("Oracle", "T"); }, &description), 3001);
        QVERIFY2(description.contains("'Oracle'"), qPrintable(description));
        QVERIFY(errorNumber([&] { kvAppointmentTable::Create(*m_connection, "Termine"); }, &description) != 0);
        QCOMPARE(description, QStringLiteral("table Termine already exists"));
        kvConnection closed;
        QCOMPARE(errorNumber([&] { kvAppointmentTable::Create(closed, "Termine"); }), 3709);
    }

    void emptyTableHasItsFieldsAtEOF()
    {
        kvRecordset recordset;
        recordset.Open("Termine", m_connection.get(), kvRecordset::adOpenForwardOnly, kvRecordset::adLockReadOnly, kvRecordset::adCmdTable);
        QCOMPARE(m_trace, QStringList{"SELECT * FROM Termine"});
        QVERIFY(recordset.EOF());
        const kvFields fields = recordset.Fields();
        QCOMPARE(fields.Names(), (QStringList{"DateID", "DateBegin", "DateEnd", "Name", "Remark", "Document", "ImageID"}));
        QCOMPARE(fields["REMARK"].Name(), QStringLiteral("Remark"));
        QCOMPARE(errorNumber([&] { fields["Name"].Value(); }), 3021);
        QCOMPARE(errorNumber([&] { recordset.MoveNext(); }), 3021);
        QString description;
        QCOMPARE(errorNumber([&] { fields.Item(7); }, &description), 3265);
        QCOMPARE(description, QStringLiteral("Das Element wurde in der Auflistung, die dem angeforderten Namen oder "
                                             "Ordinalwert entspricht, nicht gefunden."));
        QCOMPARE(errorNumber([&] { recordset.AddNew(); }), 3251);   // read-only
    }

    void addNewInsertsWithBoundValuesAndReadsTheKeyBack()
    {
        kvRecordset recordset;
        recordset.Open("Termine", m_connection.get(), kvRecordset::adOpenKeyset, kvRecordset::adLockPessimistic, kvRecordset::adCmdTable);
        recordset.AddNew();
        QVERIFY(recordset.Fields()["Name"].IsNull());
        recordset.setValue("DateBegin", QVariant::fromValue(at(2004, 3, 17, 14, 5)));
        recordset.setValue("dateend", QVariant::fromValue(at(2004, 3, 17, 15, 0)));
        recordset.setValue("Name", "Zahnarzt 'Dr. Müller'");
        QCOMPARE(errorNumber([&] { recordset.setValue("Fehlt", 1); }), 3265);
        recordset.Update();
        QCOMPARE(m_trace.last(), QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"));
        QCOMPARE(recordset.Fields()["DateID"].Value().toInt(), 1);
        QCOMPARE(stored("SELECT DateBegin || '|' || Name FROM Termine"), QStringLiteral("2004-03-17 14:05:00|Zahnarzt 'Dr. Müller'"));
    }

    void commandWalksRowsInOrderWithNulls()
    {
        insert(QVariant::fromValue(at(2004, 3, 16, 10)), "Messe", "Halle 3", 12);
        insert(QVariant::fromValue(at(2004, 3, 17)), "2026-01-01 10:00");   // date-like text stays text
        kvCommand command;
        command.setActiveConnection(m_connection.get());
        command.setCommandType(kvCommand::adCmdText);
        command.setCommandText("SELECT Termine.* From Termine Where DateBegin < ? ORDER BY Termine.DateBegin");
        command.Parameters() << QDateTime(QDate(2004, 3, 18), QTime(0, 0), Qt::UTC);
        kvRecordset recordset;
        recordset.Open(command, kvRecordset::adOpenForwardOnly, kvRecordset::adLockUnspecified, kvRecordset::adCmdUnspecified);
        kvFields fields = recordset.Fields();
        QCOMPARE(fields["Remark"].Value().toString(), QStringLiteral("Halle 3"));
        QCOMPARE(fields["ImageID"].Value().toInt(), 12);
        QCOMPARE(fields["DateBegin"].DateValue(), at(2004, 3, 16, 10));
        recordset.MoveNext();
        fields = recordset.Fields();
        QCOMPARE(fields["Name"].Value(), QVariant(QStringLiteral("2026-01-01 10:00")));
        QVERIFY(fields["Remark"].IsNull() && fields["ImageID"].IsNull() && fields["Document"].IsNull());
        recordset.MoveNext();
        QVERIFY(recordset.EOF());

        command.setCommandText("UPDATE Termine SET Name = ? WHERE Name = ?");
        command.Parameters() = {"Morgen", "2026-01-01 10:00"};
        QCOMPARE(command.Execute(), 1);
    }

    void datesRoundTripWithoutZoneShift_data()
    {
        QTest::addColumn<QVariant>("written");
        QTest::addColumn<QDateTime>("wallClock");
        const QDateTime gap(QDate(2026, 3, 29), QTime(2, 30), Qt::UTC);
        QTest::newRow("kvDate in the spring gap") << QVariant::fromValue(at(2026, 3, 29, 2, 30)) << gap;
        QTest::newRow("UTC carrier in the gap") << QVariant(gap) << gap;
        QTest::newRow("local time in the gap") << QVariant(QDateTime(QDate(2026, 3, 29), QTime(2, 30))) << gap;
        QTest::newRow("local time, autumn twice") << QVariant(QDateTime(QDate(2026, 10, 25), QTime(2, 30)))
                                                  << QDateTime(QDate(2026, 10, 25), QTime(2, 30), Qt::UTC);
    }
    void datesRoundTripWithoutZoneShift()
    {
        QFETCH(QVariant, written);
        QFETCH(QDateTime, wallClock);
        insert(written, "Datum");
        QCOMPARE(stored("SELECT DateBegin FROM Termine"), wallClock.toString("yyyy-MM-dd HH:mm:ss"));
        kvRecordset recordset;
        // A minute literal finds the stored time, and an alias of a date column is a date too.
        recordset.Open(QStringLiteral("SELECT DateBegin AS NextDate FROM Termine WHERE DateBegin >= '%1'")
                           .arg(wallClock.toString("yyyy-MM-dd HH:mm")), m_connection.get());
        QVERIFY(!recordset.EOF());
        const QVariant value = recordset.Fields()["NextDate"].Value();
        QCOMPARE(value.typeId(), int(QMetaType::QDateTime));
        QCOMPARE(value.toDateTime(), wallClock);
        QCOMPARE(value.toDateTime().timeSpec(), Qt::UTC);
    }

    void statesAndTheirErrorNumbers()
    {
        kvRecordset recordset;
        QCOMPARE(errorNumber([&] { recordset.EOF(); }), 3704);
        QCOMPARE(errorNumber([&] { recordset.Open("Termine", nullptr); }), 3709);
        kvCommand noConnection;
        noConnection.setCommandText("SELECT 1");
        QCOMPARE(errorNumber([&] { recordset.Open(noConnection); }), 3709);
        QCOMPARE(errorNumber([&] { recordset.Open("Termine", m_connection.get(), 0, -1, 4); }), 3001);
        QString description;
        QCOMPARE(errorNumber([&] { recordset.Open("Fehlt", m_connection.get(), 0, 1, 2); }, &description),
                 int(kvAdoError::StatementFailed));
        QCOMPARE(description, QStringLiteral("no such table: Fehlt"));
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
        recordset.Open("Termine", m_connection.get(), 0, 1, 2);
        QCOMPARE(errorNumber([&] { recordset.Open("Termine", m_connection.get(), 0, 1, 2); }), 3705);
        m_connection->Close();   // closes its recordsets
        QCOMPARE(errorNumber([&] { recordset.MoveNext(); }), 3704);
        m_connection->Open();
        recordset.Open("DELETE FROM Termine", m_connection.get());   // no rows: stays closed
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
        recordset.Open("Termine", m_connection.get(), 0, 1, 2);
        m_connection.reset();
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
    }

    void toDate_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("error");
        QTest::addColumn<QDateTime>("expected");   // wall clock, in UTC as carrier
        const auto wall = [](int y, int m, int d, int h, int n, int s = 0) { return QDateTime(QDate(y, m, d), QTime(h, n, s), Qt::UTC); };
        QTest::newRow("iso seconds") << QVariant("2026-03-29 02:30:45") << 0 << wall(2026, 3, 29, 2, 30, 45);
        QTest::newRow("iso T zone") << QVariant("2026-03-29T02:30:00.000Z") << 0 << wall(2026, 3, 29, 2, 30);
        QTest::newRow("german text") << QVariant("17.03.2004 14:05") << 0 << wall(2004, 3, 17, 14, 5);
        QTest::newRow("ole days") << QVariant(38063.5) << 0 << wall(2004, 3, 17, 12, 0);
        QTest::newRow("null") << QVariant() << 94 << QDateTime();
        QTest::newRow("text") << QVariant("kein Datum") << 13 << QDateTime();
        QTest::newRow("impossible") << QVariant("2026-02-30 10:00") << 13 << QDateTime();
    }
    void toDate()
    {
        QFETCH(QVariant, value);
        QFETCH(QDateTime, expected);
        kvDate date;
        QTEST(errorNumber([&] { date = kvField::ToDate(value); }), "error");
        if (expected.isValid())
            QCOMPARE(kvField::ToDateTime(date), expected);
    }
};

QTEST_GUILESS_MAIN(tst_kvRecordset)
#include "tst_kvRecordset.moc"
