// Recordsets, commands, fields and the appointment table on SQLite.
#include "kvAdoError.h"
#include "kvAppointmentTable.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvIsoDateText.h"
#include "kvRecordset.h"
#include "kvTestSupport.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

QDateTime wallClock(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}

//! The ISO texts kvIsoDateText::Read takes, as a regular expression with the same date checks.
QDateTime isoReference(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral(
        "^(\\d{4})-(\\d{1,2})-(\\d{1,2})(?:[ T](\\d{1,2}):(\\d{2})(?::(\\d{2})(?:\\.\\d+)?)?)?"
        "(?:Z|[+-]\\d{2}(?::?\\d{2})?)?$"));
    const QRegularExpressionMatch match = pattern.match(text);
    const QDate date(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    const QTime time(match.captured(4).toInt(), match.captured(5).toInt(), match.captured(6).toInt());
    if (!match.hasMatch() || !date.isValid() || !time.isValid())
        return QDateTime();
    return QDateTime(date, time, Qt::UTC);
}

//! The texts kvIsoDateText::IsDbDateTime accepts, as a regular expression.
bool dbTextReference(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}(?::\\d{2})?$"));
    return pattern.match(text).hasMatch();
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

    //! Every way an ISO text can be right or wrong, read alike by the reader and its regular expression.
    void isoDateText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("expected");   // invalid: refused
        const QDateTime refused;
        QTest::newRow("date") << "2026-03-29" << wallClock(2026, 3, 29);
        QTest::newRow("one-digit month and day") << "2026-3-9" << wallClock(2026, 3, 9);
        QTest::newRow("minutes") << "2026-03-29 02:30" << wallClock(2026, 3, 29, 2, 30);
        QTest::newRow("T, one-digit hour") << "2026-03-29T2:30" << wallClock(2026, 3, 29, 2, 30);
        QTest::newRow("seconds") << "2026-03-29 02:30:45" << wallClock(2026, 3, 29, 2, 30, 45);
        QTest::newRow("fraction ignored") << "2026-03-29 23:59:59.999" << wallClock(2026, 3, 29, 23, 59, 59);
        QTest::newRow("fraction and Z") << "2026-03-29T02:30:45.123456Z" << wallClock(2026, 3, 29, 2, 30, 45);
        QTest::newRow("Z after minutes") << "2026-03-29 02:30Z" << wallClock(2026, 3, 29, 2, 30);
        QTest::newRow("zone hours after the date") << "2026-03-29+02" << wallClock(2026, 3, 29);
        QTest::newRow("zone hhmm") << "2026-03-29 02:30+0200" << wallClock(2026, 3, 29, 2, 30);
        QTest::newRow("zone -hh:mm") << "2026-3-2-05:30" << wallClock(2026, 3, 2);
        QTest::newRow("29 February, leap year") << "2024-02-29 23:59" << wallClock(2024, 2, 29, 23, 59);
        QTest::newRow("first and last days") << "0001-01-01" << wallClock(1, 1, 1);
        QTest::newRow("last second") << "9999-12-31 23:59:59" << wallClock(9999, 12, 31, 23, 59, 59);
        QTest::newRow("one final line break") << "2026-03-29 02:30\n" << wallClock(2026, 3, 29, 2, 30);

        QTest::newRow("empty") << "" << refused;
        QTest::newRow("year and month") << "2026-03" << refused;
        QTest::newRow("two-digit year") << "26-03-29" << refused;
        QTest::newRow("five-digit year") << "20260-03-29" << refused;
        QTest::newRow("three-digit month") << "2026-003-29" << refused;
        QTest::newRow("three-digit day") << "2026-03-029" << refused;
        QTest::newRow("no day") << "2026-03-" << refused;
        QTest::newRow("slashes") << "2026/03/29" << refused;
        QTest::newRow("letters") << "2026-0a-29" << refused;
        QTest::newRow("non-ASCII digits") << QStringLiteral("\uFF12\uFF10\uFF12\uFF16-03-29") << refused;
        QTest::newRow("Arabic-Indic digits") << QStringLiteral("2026-03-\u0662\u0669") << refused;
        QTest::newRow("month 13") << "2026-13-01" << refused;
        QTest::newRow("month 0") << "2026-0-10" << refused;
        QTest::newRow("31 April") << "2026-04-31" << refused;
        QTest::newRow("29 February, no leap year") << "2026-02-29" << refused;
        QTest::newRow("29 February 1900") << "1900-02-29" << refused;
        QTest::newRow("year 0") << "0000-01-01" << refused;
        QTest::newRow("hour 24") << "2026-03-29 24:00" << refused;
        QTest::newRow("minute 60") << "2026-03-29 10:60" << refused;
        QTest::newRow("second 60") << "2026-03-29 10:00:60" << refused;
        QTest::newRow("one-digit minutes") << "2026-03-29 2:3" << refused;
        QTest::newRow("one-digit seconds") << "2026-03-29 02:30:4" << refused;
        QTest::newRow("three-digit hour") << "2026-03-29 123:00" << refused;
        QTest::newRow("three-digit minutes") << "2026-03-29 02:300" << refused;
        QTest::newRow("T alone") << "2026-03-29T" << refused;
        QTest::newRow("two blanks") << "2026-03-29  02:30" << refused;
        QTest::newRow("lower-case t") << "2026-03-29t02:30" << refused;
        QTest::newRow("fraction without digits") << "2026-03-29 02:30:45." << refused;
        QTest::newRow("fraction without seconds") << "2026-03-29 02:30.5" << refused;
        QTest::newRow("lower-case z") << "2026-03-29 02:30z" << refused;
        QTest::newRow("one-digit zone") << "2026-03-29 02:30+2" << refused;
        QTest::newRow("zone +hh:m") << "2026-03-29 02:30+02:0" << refused;
        QTest::newRow("zone +hhm") << "2026-03-29 02:30+020" << refused;
        QTest::newRow("zone with seconds") << "2026-03-29 02:30+02:00:00" << refused;
        QTest::newRow("trailing blank") << "2026-03-29 02:30 " << refused;
        QTest::newRow("leading blank") << " 2026-03-29" << refused;
        QTest::newRow("trailing text") << "2026-03-29 02:30 Uhr" << refused;
        QTest::newRow("two line breaks") << "2026-03-29\n\n" << refused;
        QTest::newRow("CR LF") << "2026-03-29\r\n" << refused;
        QTest::newRow("db text out of range") << "2026-99-99 99:99" << refused;
    }
    void isoDateText()
    {
        QFETCH(QString, text);
        QFETCH(QDateTime, expected);
        QCOMPARE(isoReference(text), expected);
        const std::optional<kvDate> read = kvIsoDateText::Read(text);
        QCOMPARE(read ? kvField::ToDateTime(*read) : QDateTime(), expected);
        QCOMPARE(kvIsoDateText::IsDbDateTime(text), dbTextReference(text));
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
