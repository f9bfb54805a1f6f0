#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAppointmentStore.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvDayLoading.h"
#include "kvFields.h"
#include "kvRecordset.h"
#include "kvSqlTexts.h"
#include "kvTestSupport.h"

#include <QFile>
#include <QHash>
#include <QtTest>

#include <memory>
#include <optional>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

// Tables of their own, so that the data layer's MariaDB tests and these do not meet.
const QString table = QStringLiteral("StoreTermine");
const QString bareTable = QStringLiteral("StoreSchlicht");

struct Report
{
    int code = 0;
    QString description;
};

} // namespace

/*!
    Parts 2.1, 2.2 and the writers of 2.3 against the throwaway MariaDB server of the CTest
    fixture "MariaDB" (found through $KV_MARIADB_INFO): the server's general log must hold the
    spec's exact texts in legacy mode; the legacy UPDATE fails there with MariaDB's own message,
    reported as 600; with ParameterizedSql every write works.
*/
class tst_kvAppointmentStoreMariaDb : public QObject
{
    Q_OBJECT

private:
    QHash<QString, QString> m_info;
    std::unique_ptr<kvConnection> m_connection;
    std::unique_ptr<kvAppointmentStore> m_store;
    QList<Report> m_reports;

    QString info(const char *key) const { return m_info.value(QString::fromLatin1(key)); }

    QString generalLog() const
    {
        QFile file(info("general_log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    //! The store on table \a name, freshly created, in the given mode.
    void setUp(bool parameterized, const QString &name = table, bool optionalColumns = true)
    {
        m_connection->Execute(QStringLiteral("DROP TABLE IF EXISTS ") + name);
        kvAppointmentTable::Create(*m_connection, name, optionalColumns);
        m_store->setParameterizedSql(parameterized);
        m_store->setRecordSource(name);
        QCOMPARE(m_store->SetConnection(m_connection.get()), std::optional<int>(1));
    }

    qint32 insertRow(const kvDate &begin, const kvDate &end, const QString &name, const QVariant &imageId = QVariant())
    {
        m_connection->Execute(QStringLiteral("INSERT INTO ") + table
                                  + QStringLiteral(" (DateBegin, DateEnd, Name, ImageID) VALUES (?, ?, ?, ?)"),
                              {QVariant::fromValue(begin), QVariant::fromValue(end), name, imageId});
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT MAX(DateID) FROM ") + table, m_connection.get());
        return recordset.Fields().Item(0).Value().toInt();
    }

    QList<QVariantMap> rows(const QString &name = table)
    {
        QList<QVariantMap> result;
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT * FROM ") + name + QStringLiteral(" ORDER BY DateID"), m_connection.get());
        while (!recordset.EOF()) {
            const kvFields fields = recordset.Fields();
            QVariantMap row;
            for (int i = 0; i < fields.Count(); ++i)
                row.insert(fields.Item(i).Name(), fields.Item(i).Value());
            result.append(row);
            recordset.MoveNext();
        }
        return result;
    }

    std::unique_ptr<ctlDay> load(const kvDate &day) { return loadDay(*m_store, day, 0xFFFFFFu); }

    static void modes()
    {
        QTest::addColumn<bool>("parameterized");
        QTest::newRow("legacy") << false;
        QTest::newRow("ParameterizedSql") << true;
    }

private slots:
    void initTestCase()
    {
        QString problem;
        m_info = readMariaDbInfo(&problem);
        QVERIFY2(!m_info.isEmpty(), qPrintable(problem));
        for (const char *key : {"general_log", "connection_string"})
            QVERIFY2(!info(key).isEmpty(), key);
        QVERIFY2(useBerlinTime(), "Europe/Berlin must have its 2026 spring-forward gap for the date tests");
    }

    void init()
    {
        m_connection = std::make_unique<kvConnection>();
        m_connection->Open(info("connection_string"));
        m_store = std::make_unique<kvAppointmentStore>();
        m_reports.clear();
        m_store->SetReporter([this](int code, const QString &description) { m_reports.append({code, description}); });
    }

    void cleanup()
    {
        m_store.reset();
        m_connection.reset();
    }

    void mariaDbSpeaksTheMySqlDialect()
    {
        setUp(false);
        QCOMPARE(m_store->DatabaseDialect(), qint16(3));
        QVERIFY(m_store->HasImageIdColumn() && m_store->HasDocumentColumn() && m_store->HasRemarkColumn());
        QCOMPARE(m_store->FormatDbDate(at(2004, 3, 17, 14, 5)), QStringLiteral("'2004-03-17 14:05'"));
    }

    void legacyModeSendsTheSpecsTexts()
    {
        setUp(false);
        const qint32 id = insertRow(at(2004, 3, 16, 10), at(2004, 3, 18), QStringLiteral("Messe"));
        QCOMPARE(load(at(2004, 3, 17))->EntriesCount(), 1);
        QCOMPARE(m_store->FindNextAppointment(at(2004, 3, 14)), std::optional<kvDate>(at(2004, 3, 16)));
        QCOMPARE(m_store->FindPreviousAppointment(at(2004, 3, 22)), std::optional<kvDate>(at(2004, 3, 16)));

        const QString log = generalLog();
        const QString day = QStringLiteral(
            "SELECT StoreTermine.* From StoreTermine Where ((StoreTermine.DateBegin <= '2004-03-17 00:00') And "
            "(StoreTermine.DateEnd >= '2004-03-17 00:00')) Or ((StoreTermine.DateBegin >= '2004-03-17 00:00') And "
            "(StoreTermine.DateBegin < '2004-03-18 00:00'))ORDER BY StoreTermine.DateBegin");
        QCOMPARE(kvSqlTexts::DayQuery(table, at(2004, 3, 17), 3), day);
        QVERIFY2(log.contains(day), "the per-day query is not in the general log as the spec gives it");
        QVERIFY(log.contains(QStringLiteral("SELECT StoreTermine.DateBegin AS NextDate From StoreTermine Where "
                                            "(((StoreTermine.DateBegin) >= '2004-03-15 00:00')) ORDER BY "
                                            "StoreTermine.DateBegin ASC")));
        QVERIFY(log.contains(QStringLiteral("SELECT StoreTermine.DateBegin AS NextDate From StoreTermine Where "
                                            "(((StoreTermine.DateBegin) < '2004-03-22 00:00')) ORDER BY "
                                            "StoreTermine.DateBegin DESC")));

        m_store->DeleteAppointment(id);
        QVERIFY(generalLog().contains(
            QStringLiteral("DELETE StoreTermine.* FROM StoreTermine WHERE (StoreTermine.DateID = %1)").arg(id)));
        // MariaDB knows the multi-table form "DELETE T.* FROM T": the legacy delete works here.
        QVERIFY(m_reports.isEmpty());
        QVERIFY(rows().isEmpty());
    }

    void legacyUpdateFailsWithMariaDbsOwnMessage()
    {
        setUp(false);
        const qint32 id = insertRow(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("alt"));
        m_store->UpdateAppointment(id, at(2004, 3, 17, 14, 5), at(2004, 3, 17, 15), QStringLiteral("neu"),
                                   QStringLiteral("r"), QStringLiteral("d"), 12);
        const QString update = QStringLiteral(
            "UPDATE StoreTermine SET StoreTermine.[DateBegin] = '2004-03-17 14:05',StoreTermine.[DateEnd] = "
            "'2004-03-17 15:00',StoreTermine.[Name] = 'neu',StoreTermine.[Remark] = 'r',StoreTermine.[Document] = "
            "'d',StoreTermine.[ImageID] = '12' WHERE (((StoreTermine.DateID)=%1))").arg(id);
        QVERIFY2(generalLog().contains(update), "the UPDATE is not in the general log as the spec gives it");
        QCOMPARE(m_reports.size(), 1);
        QCOMPARE(m_reports[0].code, 600);
        QVERIFY2(m_reports[0].description.startsWith(QStringLiteral("You have an error in your SQL syntax")),
                 qPrintable(m_reports[0].description));
        QVERIFY2(m_reports[0].description.contains(QStringLiteral("near '[DateBegin]")),
                 qPrintable(m_reports[0].description));
        QCOMPARE(rows().at(0).value(QStringLiteral("Name")).toString(), QStringLiteral("alt"));
    }

    void multiDayAppointmentAndIcons_data() { modes(); }
    void multiDayAppointmentAndIcons()
    {
        QFETCH(bool, parameterized);
        setUp(parameterized);
        insertRow(at(2004, 3, 16, 10), at(2004, 3, 18), QStringLiteral("Messe"), 5);
        insertRow(at(2004, 3, 17), at(2004, 3, 17), QStringLiteral("Urlaub"), 12);
        QCOMPARE(load(at(2004, 3, 15))->EntriesCount(), 0);
        const auto first = load(at(2004, 3, 16));
        QCOMPARE(first->EntriesCount(), 1);
        QVERIFY(!first->Entries(1)->IsContinuedDate());
        QCOMPARE(first->Entries(1)->ImgId(), qint16(0));
        const auto second = load(at(2004, 3, 17));
        QCOMPARE(second->EntriesCount(), 2);
        QVERIFY(second->Entries(1)->IsContinuedDate());
        QCOMPARE(second->Entries(2)->Text(), QStringLiteral("Urlaub"));
        QVERIFY(!second->Entries(2)->IsContinuedDate());
        QCOMPARE(second->Entries(2)->ImgId(), qint16(12));
        QVERIFY(second->Entries(2)->Remark().isEmpty());
        const auto third = load(at(2004, 3, 18));
        QCOMPARE(third->EntriesCount(), 1);
        QVERIFY(third->Entries(1)->IsContinuedDate());
        QCOMPARE(load(at(2004, 3, 19))->EntriesCount(), 0);
    }

    void nextAndPrevious_data() { modes(); }
    void nextAndPrevious()
    {
        QFETCH(bool, parameterized);
        setUp(parameterized);
        insertRow(at(2004, 3, 21, 23, 30), at(2004, 3, 22, 1), QStringLiteral("spät"));
        insertRow(at(2004, 3, 22), at(2004, 3, 22), QStringLiteral("Mitternacht"));
        insertRow(at(2004, 3, 15), at(2004, 3, 15, 1), QStringLiteral("Mitternacht"));
        insertRow(at(2004, 3, 14, 18, 30), at(2004, 3, 14, 19), QStringLiteral("Vorabend"));
        QCOMPARE(m_store->FindNextAppointment(at(2004, 3, 21)), std::optional<kvDate>(at(2004, 3, 22)));
        QCOMPARE(m_store->FindPreviousAppointment(at(2004, 3, 15)), std::optional<kvDate>(at(2004, 3, 14)));
        QCOMPARE(m_store->FindNextAppointment(at(2004, 3, 22)), std::nullopt);
    }

    void wallClockTimesSurviveTheSpringForwardGap_data() { modes(); }
    void wallClockTimesSurviveTheSpringForwardGap()
    {
        QFETCH(bool, parameterized);
        setUp(parameterized);
        m_store->InsertAppointment(at(2026, 3, 29, 2, 30), at(2026, 3, 29, 3), QStringLiteral("Zeitumstellung"),
                                   {}, {}, 0);
        QVERIFY(m_reports.isEmpty());
        const auto cell = load(at(2026, 3, 29));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->datDateBegin(), at(2026, 3, 29, 2, 30));
    }

    // The floor of BeginDayLoads on MariaDB: its query runs, and the days show the same rows.
    void dayLoadFloorFindsTheSameRows()
    {
        setUp(true);
        insertRow(at(2026, 6, 1, 9), at(2027, 2, 1, 17), QStringLiteral("Elternzeit"));
        insertRow(at(2026, 10, 25, 23, 59), at(2026, 10, 26, 0, 1), QStringLiteral("über Mitternacht"));
        insertRow(at(2026, 10, 26), at(2026, 10, 26), QStringLiteral("ganztägig"));
        insertRow(at(2026, 11, 22, 15), at(2026, 11, 22, 16), QStringLiteral("Kaffee"));
        const kvDate first = at(2026, 10, 26);
        const QStringList unbounded = dayRows(*m_store, first, 42);
        QCOMPARE(unbounded.constFirst(), QStringLiteral("Elternzeit <--, über Mitternacht <--, ganztägig "));
        m_store->BeginDayLoads(first);
        QCOMPARE(dayRows(*m_store, first, 42), unbounded);
        m_store->EndDayLoads();
        QVERIFY(generalLog().contains(QStringLiteral("SELECT MIN(StoreTermine.DateBegin) AS EarliestBegin From StoreTermine")));
        QVERIFY(generalLog().contains(QStringLiteral("Where (StoreTermine.DateBegin >= '2026-06-01 09:00') And")));
        QVERIFY(m_reports.isEmpty());
    }

    void parameterizedWritesWork()
    {
        setUp(true);
        const QString injection = QStringLiteral("x'); DROP TABLE StoreTermine; --");
        m_store->InsertAppointment(at(2004, 3, 17, 14, 30), at(2004, 3, 17, 15), QStringLiteral("Peter's Zahnarzt"),
                                   injection, QStringLiteral("C:\\Briefe\\a.doc"), 12);
        QVERIFY(m_reports.isEmpty());
        QList<QVariantMap> all = rows();
        QCOMPARE(all.size(), 1);
        const qint32 id = all[0].value(QStringLiteral("DateID")).toInt();
        QCOMPARE(all[0].value(QStringLiteral("Name")).toString(), QStringLiteral("Peter's Zahnarzt"));
        QCOMPARE(all[0].value(QStringLiteral("Remark")).toString(), injection);
        QCOMPARE(all[0].value(QStringLiteral("Document")).toString(), QStringLiteral("C:\\Briefe\\a.doc"));

        m_store->UpdateAppointment(id, at(2004, 3, 18, 9), at(2004, 3, 18, 10), injection,
                                   QStringLiteral("O'Neill"), QString(), 12);
        QVERIFY(m_reports.isEmpty());
        all = rows();
        QCOMPARE(all.size(), 1);
        QCOMPARE(kvField::ToDate(all[0].value(QStringLiteral("DateBegin"))), at(2004, 3, 18, 9));
        QCOMPARE(kvField::ToDate(all[0].value(QStringLiteral("DateEnd"))), at(2004, 3, 18, 10));
        QCOMPARE(all[0].value(QStringLiteral("Name")).toString(), injection);
        QCOMPARE(all[0].value(QStringLiteral("Remark")).toString(), QStringLiteral("O'Neill"));
        QCOMPARE(all[0].value(QStringLiteral("ImageID")).toInt(), 12);
        QCOMPARE(load(at(2004, 3, 18))->Entries(1)->Text(), injection);
        QVERIFY(generalLog().contains(QStringLiteral("Prepare\tUPDATE StoreTermine SET DateBegin = ?, DateEnd = ?, "
                                                     "Name = ?, Remark = ?, Document = ?, ImageID = ? WHERE DateID = ?")));

        m_store->DeleteAppointment(id);
        QVERIFY(m_reports.isEmpty());
        QVERIFY(rows().isEmpty()); // the table is still there, and empty
        QVERIFY(generalLog().contains(QStringLiteral("Prepare\tDELETE FROM StoreTermine WHERE DateID = ?")));
    }

    void parameterizedWritesWithoutOptionalColumns()
    {
        setUp(true, bareTable, false);
        QVERIFY(!m_store->HasRemarkColumn());
        m_store->InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("a'b"), {}, {}, 12);
        const qint32 id = rows(bareTable).at(0).value(QStringLiteral("DateID")).toInt();
        m_store->UpdateAppointment(id, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 12);
        QVERIFY(m_reports.isEmpty());
        QCOMPARE(rows(bareTable).at(0).value(QStringLiteral("Name")).toString(), QStringLiteral("x"));
    }

    void parameterizedQuotesABracketedNameWithBackticks()
    {
        setUp(true, QStringLiteral("`Meine Termine`"));
        m_store->setRecordSource(QStringLiteral("[Meine Termine]"));
        QCOMPARE(m_store->SetConnection(m_connection.get()), std::optional<int>(1));
        m_store->InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("a"),
                                   QStringLiteral("Kontrolle"), {}, 12);
        const auto cell = load(at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 1);
        m_store->UpdateAppointment(cell->Entries(1)->DateID(), at(2004, 3, 17, 9), at(2004, 3, 17, 10),
                                   QStringLiteral("b"), {}, {}, 12);
        QVERIFY2(m_reports.isEmpty(), qPrintable(m_reports.value(0).description));
        QCOMPARE(load(at(2004, 3, 17))->Entries(1)->Text(), QStringLiteral("b"));
        QVERIFY(generalLog().contains(QStringLiteral("Prepare\tUPDATE `Meine Termine` SET")));
    }
};

QTEST_MAIN(tst_kvAppointmentStoreMariaDb)
#include "tst_kvAppointmentStoreMariaDb.moc"
