#include "kvAdoError.h"
#include "kvAppointmentTable.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvRecordset.h"
#include "kvTestSupport.h"

#include <QSignalSpy>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

QString itemNotFoundText()
{
    return QStringLiteral("Das Element wurde in der Auflistung, die dem angeforderten Namen oder Ordinalwert "
                          "entspricht, nicht gefunden.");
}

} // namespace

class tst_kvRecordset : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<kvConnection> m_connection;
    std::unique_ptr<QSignalSpy> m_trace;
    int m_databaseNumber = 0;

    QStringList traced() const
    {
        QStringList texts;
        for (const QList<QVariant> &signal : *m_trace)
            texts << signal.at(0).toString();
        return texts;
    }

    // Adds one appointment through AddNew/Update, as InsertAppointment (Part 2.3) does.
    void insert(const QVariant &begin, const QVariant &end, const QString &name, const QVariant &remark = QVariant(),
                const QVariant &imageId = QVariant())
    {
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), kvRecordset::adOpenKeyset,
                       kvRecordset::adLockPessimistic, kvRecordset::adCmdTable);
        recordset.AddNew();
        recordset.setValue(QStringLiteral("DateBegin"), begin);
        recordset.setValue(QStringLiteral("DateEnd"), end);
        recordset.setValue(QStringLiteral("Name"), name);
        if (remark.isValid())
            recordset.setValue(QStringLiteral("Remark"), remark);
        if (imageId.isValid())
            recordset.setValue(QStringLiteral("ImageID"), imageId);
        recordset.Update();
        recordset.Close();
    }

    QString storedText(const QString &column, int dateId) const
    {
        QSqlQuery query(m_connection->Database());
        if (!query.exec(QStringLiteral("SELECT %1 FROM Termine WHERE DateID = %2").arg(column).arg(dateId)) || !query.next())
            return QStringLiteral("<missing>");
        return query.value(0).toString();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(useBerlinTime(), "Europe/Berlin must have its 2026 spring-forward gap for the date tests");
        QVERIFY(m_folder.isValid());
    }

    void init()
    {
        m_connection = std::make_unique<kvConnection>();
        m_connection->Open(QStringLiteral("Driver=SQLite3;Database=") + m_folder.filePath(QStringLiteral("t%1.db").arg(++m_databaseNumber)));
        kvAppointmentTable::Create(*m_connection, QStringLiteral("Termine"));
        m_trace = std::make_unique<QSignalSpy>(m_connection.get(), &kvConnection::StatementExecuted);
    }

    void cleanup()
    {
        m_trace.reset();
        m_connection.reset();
    }

    void tableOnAnEmptyTableHasFieldNamesAtEOF()
    {
        kvRecordset recordset;
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), kvRecordset::adOpenForwardOnly,
                       kvRecordset::adLockReadOnly, kvRecordset::adCmdTable);
        QCOMPARE(traced(), QStringList{QStringLiteral("SELECT * FROM Termine")});
        QCOMPARE(recordset.Source(), QStringLiteral("SELECT * FROM Termine"));
        QCOMPARE(recordset.State(), int(kvRecordset::adStateOpen));
        QVERIFY(recordset.EOF());
        const kvFields fields = recordset.Fields();
        QCOMPARE(fields.Count(), 7);
        QCOMPARE(fields.Names(), (QStringList{QStringLiteral("DateID"), QStringLiteral("DateBegin"), QStringLiteral("DateEnd"),
                                              QStringLiteral("Name"), QStringLiteral("Remark"), QStringLiteral("Document"),
                                              QStringLiteral("ImageID")}));
        QCOMPARE(fields.Item(6).Name(), QStringLiteral("ImageID"));
        QCOMPARE(fields[QStringLiteral("REMARK")].Name(), QStringLiteral("Remark"));
        QCOMPARE(errorNumber([&] { fields[QStringLiteral("Name")].Value(); }), 3021);
        QCOMPARE(errorNumber([&] { recordset.MoveNext(); }), 3021);
        QString description;
        QCOMPARE(errorNumber([&] { fields[QStringLiteral("Bemerkung")]; }, &description), 3265);
        QCOMPARE(description, itemNotFoundText());
        QCOMPARE(errorNumber([&] { fields.Item(7); }), 3265);
        recordset.Close();
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
    }

    void addNewUpdateInsertsWithBoundValues()
    {
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), kvRecordset::adOpenKeyset,
                       kvRecordset::adLockPessimistic, kvRecordset::adCmdTable);
        recordset.AddNew();
        QVERIFY(!recordset.EOF());
        QVERIFY(recordset.Fields()[QStringLiteral("Name")].IsNull());
        recordset.setValue(QStringLiteral("DateBegin"), QVariant::fromValue(at(2004, 3, 17, 14, 5)));
        recordset.setValue(QStringLiteral("dateend"), QVariant::fromValue(at(2004, 3, 17, 15, 0)));
        recordset.setValue(QStringLiteral("Name"), QStringLiteral("Zahnarzt 'Dr. Müller'"));
        recordset.setValue(QStringLiteral("ImageID"), 12);
        QCOMPARE(errorNumber([&] { recordset.setValue(QStringLiteral("Fehlt"), 1); }), 3265);
        recordset.Update();
        QCOMPARE(traced(), (QStringList{QStringLiteral("SELECT * FROM Termine"),
                                        QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name, ImageID) VALUES (?, ?, ?, ?)")}));
        const kvFields fields = recordset.Fields();
        QCOMPARE(fields[QStringLiteral("DateID")].Value().toInt(), 1);   // left to the database, read back
        QCOMPARE(fields[QStringLiteral("Name")].Value().toString(), QStringLiteral("Zahnarzt 'Dr. Müller'"));
        QCOMPARE(fields[QStringLiteral("DateBegin")].DateValue(), at(2004, 3, 17, 14, 5));
        recordset.MoveNext();
        QVERIFY(recordset.EOF());
        recordset.Close();

        QCOMPARE(storedText(QStringLiteral("DateBegin"), 1), QStringLiteral("2004-03-17 14:05:00"));
        QCOMPARE(storedText(QStringLiteral("Name"), 1), QStringLiteral("Zahnarzt 'Dr. Müller'"));
        QCOMPARE(storedText(QStringLiteral("ImageID"), 1), QStringLiteral("12"));
        insert(QVariant::fromValue(at(2004, 3, 18)), QVariant::fromValue(at(2004, 3, 18)), QStringLiteral("Urlaub"));
        QCOMPARE(storedText(QStringLiteral("Name"), 2), QStringLiteral("Urlaub"));
    }

    void readOnlyRecordsetRefusesAddNew()
    {
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), kvRecordset::adOpenForwardOnly,
                       kvRecordset::adLockReadOnly, kvRecordset::adCmdTable);
        QCOMPARE(errorNumber([&] { recordset.AddNew(); }), 3251);
        kvRecordset unspecified;
        unspecified.Open(QStringLiteral("SELECT * FROM Termine"), m_connection.get());
        QCOMPARE(errorNumber([&] { unspecified.AddNew(); }), 3251);
    }

    void commandSourceWalksRowsInOrderWithNulls()
    {
        insert(QVariant::fromValue(at(2004, 3, 16, 10)), QVariant::fromValue(at(2004, 3, 18)), QStringLiteral("Messe"),
               QStringLiteral("Halle 3"), 12);
        insert(QVariant::fromValue(at(2004, 3, 17)), QVariant::fromValue(at(2004, 3, 17)), QStringLiteral("Urlaub"));
        m_trace->clear();

        // The per-day query of Part 2.2 for 17 March 2004, MySQL dialect, run as a Command.
        const QString sql = QStringLiteral(
            "SELECT Termine.* From Termine Where ((Termine.DateBegin <= '2004-03-17 00:00') And (Termine.DateEnd >= "
            "'2004-03-17 00:00')) Or ((Termine.DateBegin >= '2004-03-17 00:00') And (Termine.DateBegin < "
            "'2004-03-18 00:00'))ORDER BY Termine.DateBegin");
        kvCommand command;
        command.setActiveConnection(m_connection.get());
        command.setCommandType(kvCommand::adCmdText);
        command.setCommandText(sql);
        kvRecordset recordset;
        recordset.Open(command, kvRecordset::adOpenForwardOnly, kvRecordset::adLockUnspecified, kvRecordset::adCmdUnspecified);
        QCOMPARE(traced(), QStringList{sql});

        QVERIFY(!recordset.EOF());
        kvFields fields = recordset.Fields();
        QCOMPARE(fields[QStringLiteral("Name")].Value().toString(), QStringLiteral("Messe"));
        QCOMPARE(fields[QStringLiteral("Remark")].Value().toString(), QStringLiteral("Halle 3"));
        QCOMPARE(fields[QStringLiteral("ImageID")].Value().toInt(), 12);
        QCOMPARE(fields[QStringLiteral("DateBegin")].DateValue(), at(2004, 3, 16, 10));
        QVERIFY(fields[QStringLiteral("Document")].IsNull());
        recordset.MoveNext();
        fields = recordset.Fields();
        QCOMPARE(fields[QStringLiteral("Name")].Value().toString(), QStringLiteral("Urlaub"));
        QVERIFY(fields[QStringLiteral("Remark")].IsNull());
        QCOMPARE(fields[QStringLiteral("Remark")].Value(), QVariant());
        QVERIFY(fields[QStringLiteral("ImageID")].IsNull());
        QCOMPARE(QString() + fields[QStringLiteral("Document")].Value().toString(), QString());
        recordset.MoveNext();
        QVERIFY(recordset.EOF());
        QCOMPARE(errorNumber([&] { recordset.MoveNext(); }), 3021);
        recordset.Close();
    }

    void commandParametersAreBound()
    {
        insert(QVariant::fromValue(at(2026, 3, 29, 2, 30)), QVariant::fromValue(at(2026, 3, 29, 3, 30)), QStringLiteral("Nacht"));
        insert(QVariant::fromValue(at(2026, 3, 30, 9)), QVariant::fromValue(at(2026, 3, 30, 10)), QStringLiteral("Tag"));
        kvCommand command;
        command.setActiveConnection(m_connection.get());
        command.setCommandType(kvCommand::adCmdText);
        command.setCommandText(QStringLiteral("SELECT Name FROM Termine WHERE DateBegin >= ? AND DateBegin < ?"));
        command.Parameters() << QVariant::fromValue(at(2026, 3, 29)) << QDateTime(QDate(2026, 3, 30), QTime(0, 0), Qt::UTC);
        kvRecordset recordset;
        recordset.Open(command);
        QCOMPARE(recordset.Fields()[QStringLiteral("Name")].Value().toString(), QStringLiteral("Nacht"));
        recordset.MoveNext();
        QVERIFY(recordset.EOF());

        command.setCommandText(QStringLiteral("UPDATE Termine SET Name = ? WHERE Name = ?"));
        command.Parameters() = {QStringLiteral("Morgen"), QStringLiteral("Tag")};
        QCOMPARE(command.Execute(), 1);
        QCOMPARE(storedText(QStringLiteral("Name"), 2), QStringLiteral("Morgen"));
    }

    void datesRoundTripWithoutZoneShift_data()
    {
        QTest::addColumn<QVariant>("written");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QTime>("time");
        QTest::newRow("kvDate in the spring gap") << QVariant::fromValue(at(2026, 3, 29, 2, 30)) << QDate(2026, 3, 29) << QTime(2, 30);
        QTest::newRow("UTC carrier in the gap") << QVariant(QDateTime(QDate(2026, 3, 29), QTime(2, 30), Qt::UTC))
                                                << QDate(2026, 3, 29) << QTime(2, 30);
        QTest::newRow("local time in the gap") << QVariant(QDateTime(QDate(2026, 3, 29), QTime(2, 30)))
                                               << QDate(2026, 3, 29) << QTime(2, 30);
        QTest::newRow("local time, autumn twice") << QVariant(QDateTime(QDate(2026, 10, 25), QTime(2, 30)))
                                                  << QDate(2026, 10, 25) << QTime(2, 30);
        QTest::newRow("QDate") << QVariant(QDate(2026, 12, 31)) << QDate(2026, 12, 31) << QTime(0, 0);
        QTest::newRow("minute before midnight") << QVariant::fromValue(at(2026, 12, 31, 23, 59)) << QDate(2026, 12, 31)
                                                << QTime(23, 59);
    }

    void datesRoundTripWithoutZoneShift()
    {
        QFETCH(QVariant, written);
        QFETCH(QDate, date);
        QFETCH(QTime, time);
        insert(written, written, QStringLiteral("Datum"));
        QCOMPARE(storedText(QStringLiteral("DateBegin"), 1), date.toString(QStringLiteral("yyyy-MM-dd ")) + time.toString(QStringLiteral("HH:mm:ss")));

        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), kvRecordset::adOpenForwardOnly,
                       kvRecordset::adLockReadOnly, kvRecordset::adCmdTable);
        const QVariant value = recordset.Fields()[QStringLiteral("DateBegin")].Value();
        QCOMPARE(value.typeId(), int(QMetaType::QDateTime));
        QCOMPARE(value.toDateTime().timeSpec(), Qt::UTC);
        QCOMPARE(value.toDateTime().date(), date);
        QCOMPARE(value.toDateTime().time(), time);
        QCOMPARE(kvField::ToDate(value), kvDate::fromDate(date, time));
        QCOMPARE(recordset.Fields()[QStringLiteral("DateEnd")].DateValue(), kvDate::fromDate(date, time));
    }

    void minuteLiteralsFindTheStoredTimes()
    {
        insert(QVariant::fromValue(at(2026, 3, 29, 2, 30)), QVariant::fromValue(at(2026, 3, 29, 2, 31)), QStringLiteral("Nacht"));
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where (((Termine.DateBegin) >= "
                                      "'2026-03-29 02:30')) ORDER BY Termine.DateBegin ASC"),
                       m_connection.get(), kvRecordset::adOpenForwardOnly, kvRecordset::adLockUnspecified,
                       kvRecordset::adCmdText);
        QVERIFY(!recordset.EOF());
        const QVariant next = recordset.Fields()[QStringLiteral("NextDate")].Value();
        QCOMPARE(next.typeId(), int(QMetaType::QDateTime));   // an alias of a date column is a date too
        QCOMPARE(kvField::ToDate(next), at(2026, 3, 29, 2, 30));
        recordset.Close();

        recordset.Open(QStringLiteral("SELECT * FROM Termine WHERE DateBegin < '2026-03-29 02:30'"), m_connection.get());
        QVERIFY(recordset.EOF());
    }

    void dateLikeTextInATextColumnStaysText()
    {
        insert(QVariant::fromValue(at(2026, 1, 1)), QVariant::fromValue(at(2026, 1, 1)), QStringLiteral("2026-01-01 10:00"));
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT Name, Name AS Titel FROM Termine"), m_connection.get());
        QCOMPARE(recordset.Fields()[QStringLiteral("Name")].Value(), QVariant(QStringLiteral("2026-01-01 10:00")));
        QCOMPARE(recordset.Fields()[QStringLiteral("Name")].Value().typeId(), int(QMetaType::QString));
    }

    void openFailuresAndStates()
    {
        kvRecordset recordset;
        QCOMPARE(errorNumber([&] { recordset.EOF(); }), 3704);
        QCOMPARE(errorNumber([&] { recordset.Fields(); }), 3704);
        QCOMPARE(errorNumber([&] { recordset.Open(QStringLiteral("Termine"), nullptr); }), 3709);
        kvCommand noConnection;
        noConnection.setCommandText(QStringLiteral("SELECT 1"));
        QCOMPARE(errorNumber([&] { recordset.Open(noConnection); }), 3709);
        QCOMPARE(errorNumber([&] { recordset.Open(QStringLiteral("Termine"), m_connection.get(), 0, -1, 4); }), 3001);

        QString description;
        QCOMPARE(errorNumber([&] { recordset.Open(QStringLiteral("Fehlt"), m_connection.get(), 0, 1, 2); }, &description),
                 int(kvAdoError::StatementFailed));
        QCOMPARE(description, QStringLiteral("no such table: Fehlt"));
        QCOMPARE(traced().last(), QStringLiteral("SELECT * FROM Fehlt"));
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));

        recordset.Open(QStringLiteral("Termine"), m_connection.get(), 0, 1, 2);
        QCOMPARE(errorNumber([&] { recordset.Open(QStringLiteral("Termine"), m_connection.get(), 0, 1, 2); }), 3705);
        recordset.Close();
        recordset.Close();   // closing twice is harmless
        QCOMPARE(errorNumber([&] { recordset.MoveNext(); }), 3704);

        // A statement that returns no rows leaves the recordset closed, as in ADO.
        recordset.Open(QStringLiteral("DELETE FROM Termine"), m_connection.get());
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
    }

    void closingTheConnectionClosesItsRecordsets()
    {
        insert(QVariant::fromValue(at(2026, 5, 1)), QVariant::fromValue(at(2026, 5, 1)), QStringLiteral("Feiertag"));
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), 0, 1, 2);
        QVERIFY(!recordset.EOF());
        const QString name = m_connection->Database().connectionName();
        m_connection->Close();
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
        QVERIFY(!QSqlDatabase::contains(name));
        QCOMPARE(errorNumber([&] { recordset.EOF(); }), 3704);
        m_connection->Open();
        recordset.Open(QStringLiteral("Termine"), m_connection.get(), 0, 1, 2);
        m_connection.reset();   // destroyed under an open recordset
        QCOMPARE(recordset.State(), int(kvRecordset::adStateClosed));
    }

    void toDate_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("error");
        QTest::addColumn<QDateTime>("expected");   // wall clock, in UTC as carrier
        const auto wall = [](int y, int m, int d, int h, int n, int s = 0) {
            return QDateTime(QDate(y, m, d), QTime(h, n, s), Qt::UTC);
        };
        QTest::newRow("kvDate") << QVariant::fromValue(at(2004, 3, 17, 14, 5)) << 0 << wall(2004, 3, 17, 14, 5);
        QTest::newRow("local gap") << QVariant(QDateTime(QDate(2026, 3, 29), QTime(2, 30))) << 0 << wall(2026, 3, 29, 2, 30);
        QTest::newRow("offset") << QVariant(QDateTime(QDate(2026, 7, 1), QTime(9, 0), Qt::OffsetFromUTC, 7200)) << 0
                                << wall(2026, 7, 1, 9, 0);
        QTest::newRow("QDate") << QVariant(QDate(2026, 3, 29)) << 0 << wall(2026, 3, 29, 0, 0);
        QTest::newRow("iso blank") << QVariant(QStringLiteral("2026-03-29 02:30")) << 0 << wall(2026, 3, 29, 2, 30);
        QTest::newRow("iso seconds") << QVariant(QStringLiteral("2026-03-29 02:30:45")) << 0 << wall(2026, 3, 29, 2, 30, 45);
        QTest::newRow("iso T zone") << QVariant(QStringLiteral("2026-03-29T02:30:00.000Z")) << 0 << wall(2026, 3, 29, 2, 30);
        QTest::newRow("iso date") << QVariant(QStringLiteral("2026-03-29")) << 0 << wall(2026, 3, 29, 0, 0);
        QTest::newRow("german text") << QVariant(QStringLiteral("17.03.2004 14:05")) << 0 << wall(2004, 3, 17, 14, 5);
        QTest::newRow("ole days") << QVariant(38063.5) << 0 << wall(2004, 3, 17, 12, 0);
        QTest::newRow("null") << QVariant() << 94 << QDateTime();
        QTest::newRow("typed null") << QVariant(QMetaType::fromType<QDateTime>()) << 94 << QDateTime();
        QTest::newRow("text") << QVariant(QStringLiteral("kein Datum")) << 13 << QDateTime();
        QTest::newRow("impossible") << QVariant(QStringLiteral("2026-02-30 10:00")) << 13 << QDateTime();
    }

    void toDate()
    {
        QFETCH(QVariant, value);
        QFETCH(int, error);
        QFETCH(QDateTime, expected);
        kvDate date;
        QCOMPARE(errorNumber([&] { date = kvField::ToDate(value); }), error);
        if (error == 0) {
            QCOMPARE(kvField::ToDateTime(date), expected);
            QCOMPARE(date, kvDate::fromDateTime(expected));
        }
    }
};

QTEST_GUILESS_MAIN(tst_kvRecordset)
#include "tst_kvRecordset.moc"
