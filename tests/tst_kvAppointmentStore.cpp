#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAdoError.h"
#include "kvAppointmentStore.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvFieldConversion.h"
#include "kvDayLoading.h"
#include "kvFields.h"
#include "kvMessageBox.h"
#include "kvRecordset.h"
#include "kvRuntimeError.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"
#include "kvSqlTexts.h"
#include "kvTestSupport.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <optional>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

const QString termine = QStringLiteral("Termine");
constexpr uint CellBackColor = 0xC0FFEEu;

//! One report the store handed to its reporter.
struct Report
{
    int code = 0;
    QString description;
};

//! An open SQLite file with the appointment table, a store on it, its trace and its reports.
struct Fixture
{
    QStringList trace;
    QList<Report> reports;
    std::unique_ptr<kvConnection> connection;
    kvAppointmentStore store;

    int statementsLike(const QString &start) const
    {
        int count = 0;
        for (const QString &sql : trace)
            count += sql.startsWith(start) ? 1 : 0;
        return count;
    }
};

QString textOf(const QVariant &value)
{
    return value.isNull() ? QStringLiteral("<Null>") : value.toString();
}

} // namespace

/*!
    Parts 2.1, 2.2 and the writers of 2.3 on real SQLite files, in both modes: the spec's texts
    (ParameterizedSql false) and bound statements (true). The texts themselves are checked in
    tst_kvSqlTexts; MariaDB in tst_kvAppointmentStoreMariaDb.
*/
class tst_kvAppointmentStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    int m_files = 0;

    QString newDatabaseString()
    {
        return QStringLiteral("Driver=SQLite3;Database=")
               + m_folder.filePath(QStringLiteral("termine%1.db").arg(++m_files));
    }

    //! A connection on a fresh file (open unless \a open is false), traced into \a f.
    void openConnection(Fixture &f, bool open = true)
    {
        f.connection = std::make_unique<kvConnection>();
        QObject::connect(f.connection.get(), &kvConnection::StatementExecuted,
                         [&f](const QString &sql) { f.trace.append(sql); });
        if (open)
            f.connection->Open(newDatabaseString());
        else
            f.connection->setConnectionString(newDatabaseString());
    }

    //! The whole set-up: table Termine (with or without the optional columns), store connected.
    void setUp(Fixture &f, bool parameterized, bool optionalColumns = true)
    {
        openConnection(f);
        kvAppointmentTable::Create(*f.connection, termine, optionalColumns);
        f.store.setParameterizedSql(parameterized);
        f.store.setRecordSource(termine);
        f.store.SetReporter([&f](int code, const QString &description) { f.reports.append({code, description}); });
        QCOMPARE(f.store.SetConnection(f.connection.get()), std::optional<int>(1));
        f.trace.clear();
    }

    static qint32 insertRow(kvConnection &connection, const kvDate &begin, const kvDate &end,
                            const QString &name, const QVariant &remark = QVariant(),
                            const QVariant &document = QVariant(), const QVariant &imageId = QVariant(),
                            const QString &table = termine)
    {
        connection.Execute(QStringLiteral("INSERT INTO ") + table
                               + QStringLiteral(" (DateBegin, DateEnd, Name, Remark, Document, ImageID) "
                                                "VALUES (?, ?, ?, ?, ?, ?)"),
                           {QVariant::fromValue(begin), QVariant::fromValue(end), name, remark, document, imageId});
        return lastId(connection, table);
    }

    static qint32 insertBareRow(kvConnection &connection, const kvDate &begin, const kvDate &end,
                                const QString &name)
    {
        connection.Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"),
                           {QVariant::fromValue(begin), QVariant::fromValue(end), name});
        return lastId(connection, termine);
    }

    static qint32 lastId(kvConnection &connection, const QString &table)
    {
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT MAX(DateID) AS Id FROM ") + table, &connection);
        return recordset.Fields()[QStringLiteral("Id")].Value().toInt();
    }

    //! Every row of \a table in DateID order, each as column name → value.
    static QList<QVariantMap> rows(kvConnection &connection, const QString &table = termine)
    {
        QList<QVariantMap> result;
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT * FROM ") + table + QStringLiteral(" ORDER BY DateID"), &connection);
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

    static kvDate dateOf(const QVariant &value) { return kvField::ToDate(value); }

    //! Loads \a day into a fresh cell; returns the cell.
    static std::unique_ptr<ctlDay> load(Fixture &f, const kvDate &day, QString *result = nullptr)
    {
        return loadDay(f.store, day, CellBackColor, result);
    }

    static void modes()
    {
        QTest::addColumn<bool>("parameterized");
        QTest::newRow("legacy") << false;
        QTest::newRow("ParameterizedSql") << true;
    }

private slots:
    // --- VB's conversions of field values into AddDate's arguments ---------------------------

    void fieldConversions()
    {
        QVERIFY(kvFieldConversion::IsNumeric(12));
        QVERIFY(kvFieldConversion::IsNumeric(QStringLiteral(" 12 ")));
        QVERIFY(!kvFieldConversion::IsNumeric(QVariant()));
        QVERIFY(!kvFieldConversion::IsNumeric(QStringLiteral("zwölf")));
        QCOMPARE(kvFieldConversion::ToInteger(QStringLiteral("12")), qint16(12));
        QCOMPARE(kvFieldConversion::ToInteger(2.5), qint16(2));   // CInt: halves to even
        QCOMPARE(kvFieldConversion::ToLong(3.5), 4);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToInteger(40000); }), 6);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToLong(QVariant()); }), 94);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToLong(QStringLiteral("x")); }), 13);
        QVERIFY(!kvFieldConversion::IsNumeric(QStringLiteral("nan")));
        QVERIFY(!kvFieldConversion::IsNumeric(QStringLiteral("-inf")));
        QCOMPARE(errorNumber([] { kvFieldConversion::ToLong(QStringLiteral("inf")); }), 13);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToLong(std::nan("")); }), 6);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToLong(-1e300); }), 6);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToText(QVariant()); }), 94);
        QCOMPARE(kvFieldConversion::AppendedToEmpty(QVariant()), QString());
        QCOMPARE(kvFieldConversion::AppendedToEmpty(QStringLiteral("a")), QStringLiteral("a"));
    }

    // --- Part 2.1: dialect, State, column probe ---------------------------------------------

    void sqliteConnectionSpeaksTheMySqlDialect()
    {
        Fixture f;
        setUp(f, false);
        QCOMPARE(f.connection->Provider(), QStringLiteral("SQLite3"));
        QCOMPARE(f.store.DatabaseDialect(), qint16(3));
        QCOMPARE(f.store.FormatDbDate(at(2004, 3, 17, 14, 5)), QStringLiteral("'2004-03-17 14:05'"));
    }

    void dialectFromConnectionStrings_data()
    {
        QTest::addColumn<int>("dbDateFormat");
        QTest::addColumn<QString>("connectionString");
        QTest::addColumn<int>("dialect");
        QTest::addColumn<QString>("literal");
        const QString sqlServer = QStringLiteral("Provider=SQLOLEDB;Data Source=127.0.0.1,1;Initial Catalog=kal");
        QTest::newRow("DbDateFormat 2 with a SQL Server connection gives #...#")
            << 2 << sqlServer << 2 << QStringLiteral("#03-17-2004 14:05#");
        QTest::newRow("kvAuto with the same connection")
            << 0 << sqlServer << 1 << QStringLiteral("CONVERT(DATETIME,'2004-03-17 14:05:00',102)");
        QTest::newRow("Provider=sqloledb; is recognised")
            << 0 << QStringLiteral("Provider=sqloledb;Data Source=srv") << 1
            << QStringLiteral("CONVERT(DATETIME,'2004-03-17 14:05:00',102)");
        QTest::newRow("Driver={SQL Server}")
            << 0 << QStringLiteral("Driver={SQL Server};Server=srv;Database=kal") << 1
            << QStringLiteral("CONVERT(DATETIME,'2004-03-17 14:05:00',102)");
        QTest::newRow("Jet provider")
            << 0 << QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/tmp/t.mdb") << 2
            << QStringLiteral("#03-17-2004 14:05#");
        QTest::newRow("lower-case Jet provider is not Jet")
            << 0 << QStringLiteral("Provider=microsoft.jet.oledb.4.0;Data Source=/tmp/t.mdb") << 3
            << QStringLiteral("'2004-03-17 14:05'");
        QTest::newRow("DbDateFormat 3 with Jet") << 3
            << QStringLiteral("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=/tmp/t.mdb") << 3
            << QStringLiteral("'2004-03-17 14:05'");
    }
    void dialectFromConnectionStrings()
    {
        QFETCH(int, dbDateFormat);
        QFETCH(QString, connectionString);
        QFETCH(int, dialect);
        QFETCH(QString, literal);
        // Not opened: no server is needed to detect the dialect. The probe then fails on the
        // closed connection, as ADO's would, after the dialect is chosen.
        kvConnection connection;
        connection.setConnectionString(connectionString);
        kvAppointmentStore store;
        store.setRecordSource(termine);
        store.setDbDateFormat(qint16(dbDateFormat));
        QVERIFY(errorNumber([&] { store.SetConnection(&connection); }) != 0);
        QCOMPARE(int(store.DatabaseDialect()), dialect);
        QCOMPARE(store.FormatDbDate(at(2004, 3, 17, 14, 5)), literal);
    }

    void closedConnectionDisablesAndOpenEnablesNavigation()
    {
        kvConnection connection;
        connection.setConnectionString(newDatabaseString());
        kvAppointmentStore store;
        store.setRecordSource(termine);
        QSignalSpy states(&store, &kvAppointmentStore::ConnectionStateRead);

        QString description;
        QVERIFY(errorNumber([&] { store.SetConnection(&connection); }, &description) != 0);
        QVERIFY(!description.isEmpty());
        QCOMPARE(states.size(), 1);
        QCOMPARE(states.at(0).at(0).toInt(), 0);
        QCOMPARE(store.Connection(), &connection);

        connection.Open();
        kvAppointmentTable::Create(connection, termine, true);
        QCOMPARE(store.SetConnection(&connection), std::optional<int>(1));
        QCOMPARE(states.size(), 2);
        QCOMPARE(states.at(1).at(0).toInt(), 1);
    }

    void nothingStopsAfterTheDialect()
    {
        Fixture f;
        setUp(f, false);
        QVERIFY(f.store.HasRemarkColumn());
        QSignalSpy states(&f.store, &kvAppointmentStore::ConnectionStateRead);
        f.store.setDbDateFormat(2);
        QCOMPARE(f.store.SetConnection(nullptr), std::nullopt);
        QCOMPARE(f.store.Connection(), nullptr);
        QCOMPARE(f.store.DatabaseDialect(), qint16(2));
        QVERIFY(f.store.HasRemarkColumn() && f.store.HasDocumentColumn() && f.store.HasImageIdColumn());
        QCOMPARE(states.size(), 0);
        QVERIFY(f.trace.isEmpty());
    }

    void nothingWithKvAutoFailsReadingTheProvider()
    {
        kvAppointmentStore store;
        QString description;
        QCOMPARE(errorNumber([&] { store.SetConnection(nullptr); }, &description), 91);
        QCOMPARE(description, QStringLiteral("Objektvariable oder With-Blockvariable nicht festgelegt"));
    }

    void probeFindsTheOptionalColumns()
    {
        Fixture f;
        openConnection(f);
        kvAppointmentTable::Create(*f.connection, termine, true);
        f.store.setRecordSource(termine);
        f.store.SetConnection(f.connection.get());
        QVERIFY(f.store.HasImageIdColumn());
        QVERIFY(f.store.HasDocumentColumn());
        QVERIFY(f.store.HasRemarkColumn());
        QVERIFY(f.trace.contains(QStringLiteral("SELECT * FROM Termine")));
    }

    void probeOfATableWithoutOptionalColumns()
    {
        Fixture f;
        setUp(f, false, false);
        QVERIFY(!f.store.HasImageIdColumn());
        QVERIFY(!f.store.HasDocumentColumn());
        QVERIFY(!f.store.HasRemarkColumn());
    }

    void lowerCaseRemarkColumnSetsHasRemarkColumn()
    {
        Fixture f;
        openConnection(f);
        f.connection->Execute(QStringLiteral("CREATE TABLE Klein (DateID INTEGER PRIMARY KEY, DateBegin DATETIME, "
                                             "DateEnd DATETIME, Name TEXT, remark TEXT, IMAGEID SMALLINT)"));
        f.store.setRecordSource(QStringLiteral("Klein"));
        f.store.SetConnection(f.connection.get());
        QVERIFY(f.store.HasRemarkColumn());
        QVERIFY(f.store.HasImageIdColumn());
        QVERIFY(!f.store.HasDocumentColumn());
    }

    void columnFlagsCarryOverToALaterConnection()
    {
        Fixture full;
        setUp(full, false, true);
        Fixture bare;
        openConnection(bare);
        kvAppointmentTable::Create(*bare.connection, termine, false);
        full.store.SetConnection(bare.connection.get());
        QVERIFY(full.store.HasImageIdColumn());
        QVERIFY(full.store.HasDocumentColumn());
        QVERIFY(full.store.HasRemarkColumn());

        // The carried-over flag makes the load read a column that is not there: step 5.
        insertBareRow(*bare.connection, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("a"));
        QString result;
        const auto cell = load(full, at(2004, 3, 17), &result);
        QVERIFY2(result.startsWith(QStringLiteral("12-5\r\n")), qPrintable(result));
        QCOMPARE(cell->EntriesCount(), 0);
    }

    void aConnectionDeletedByTheHostIsNothing()
    {
        Fixture f;
        setUp(f, false);
        f.connection.reset();
        QCOMPARE(f.store.Connection(), nullptr);
        QString result;
        const auto cell = load(f, at(2004, 3, 17), &result);
        QVERIFY(result.isEmpty());
        QCOMPARE(cell->EntriesCount(), 0);
    }

    void parameterizedRefusesATableNameThatIsNoIdentifier()
    {
        Fixture f;
        setUp(f, true);
        f.store.setRecordSource(QStringLiteral("Termine; DROP TABLE Termine"));
        QString description;
        QCOMPARE(errorNumber([&] { f.store.SetConnection(f.connection.get()); }, &description), 5);
        QVERIFY2(description.contains(QStringLiteral("kein einfacher Tabellenname")), qPrintable(description));
        QVERIFY(f.trace.isEmpty());
    }

    void parameterizedWorksOnAQuotedTableName_data()
    {
        QTest::addColumn<QString>("recordSource");
        QTest::newRow("brackets") << QStringLiteral("[Meine Termine]");
        QTest::newRow("double quotes") << QStringLiteral("\"Meine Termine\"");
        QTest::newRow("backticks") << QStringLiteral("`Meine Termine`");
        QTest::newRow("with schema") << QStringLiteral("main.[Meine Termine]");
    }
    void parameterizedWorksOnAQuotedTableName()
    {
        QFETCH(QString, recordSource);
        Fixture f;
        openConnection(f);
        kvAppointmentTable::Create(*f.connection, QStringLiteral("\"Meine Termine\""), true);
        f.store.setParameterizedSql(true);
        f.store.setRecordSource(recordSource);
        f.store.SetReporter([&f](int code, const QString &description) { f.reports.append({code, description}); });
        QCOMPARE(errorNumber([&] { f.store.SetConnection(f.connection.get()); }), 0);
        QVERIFY(f.store.HasRemarkColumn());
        f.store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("Zahnarzt"),
                                  QStringLiteral("Kontrolle"), {}, 12);
        auto cell = load(f, at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->Remark(), QStringLiteral("Kontrolle"));
        f.store.UpdateAppointment(cell->Entries(1)->DateID(), at(2004, 3, 17, 11), at(2004, 3, 17, 12),
                                  QStringLiteral("Zahnarzt Weber"), {}, {}, 12);
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 16)), std::optional(at(2004, 3, 17)));
        cell = load(f, at(2004, 3, 17));
        QCOMPARE(cell->Entries(1)->Text(), QStringLiteral("Zahnarzt Weber"));
        kvScriptedMessageBox box;
        kvScopedService installed(box);
        box.EnqueueAnswer(kvMessageBox::vbYes);
        bool bCancel = false;
        f.store.DeleteAppointment(cell->Entries(1)->DateID(), at(2004, 3, 17, 11), at(2004, 3, 17, 12),
                                  QStringLiteral("Zahnarzt Weber"), {}, {}, bCancel);
        QCOMPARE(load(f, at(2004, 3, 17))->EntriesCount(), 0);
        QVERIFY2(f.reports.isEmpty(), qPrintable(f.reports.value(0).description));
    }

    void severalStatementsInTheTableNameAreRefusedByName()
    {
        Fixture f;
        setUp(f, false);
        const QString injected = QStringLiteral("Termine; DROP TABLE Termine; --");
        f.store.setRecordSource(injected);
        QString description;
        QCOMPARE(errorNumber([&] { f.store.SetConnection(f.connection.get()); }, &description),
                 int(kvAdoError::StatementFailed));
        QVERIFY2(description.contains(QStringLiteral("multiple statements")), qPrintable(description));
        QString result;
        load(f, at(2004, 3, 17), &result);
        // The probe failed, so the load probes again first.
        QCOMPARE(result, QStringLiteral("12-1\r\nUnable to execute multiple statements at a time"));
        f.store.setRecordSource(termine);
        QCOMPARE(errorNumber([&] { f.store.SetConnection(f.connection.get()); }), 0);
    }

    // --- Part 2.2: the per-day load ----------------------------------------------------------

    void multiDayAppointmentShowsInEveryDayWithMarker_data() { modes(); }
    void multiDayAppointmentShowsInEveryDayWithMarker()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        const qint32 id = insertRow(*f.connection, at(2004, 3, 16, 10), at(2004, 3, 18), QStringLiteral("Messe"));

        QCOMPARE(load(f, at(2004, 3, 15))->EntriesCount(), 0);
        for (int day = 16; day <= 18; ++day) {
            const auto cell = load(f, at(2004, 3, day));
            QCOMPARE(cell->EntriesCount(), 1);
            const ctlEntry *entry = cell->Entries(1);
            QCOMPARE(entry->DateID(), id);
            QCOMPARE(entry->Text(), QStringLiteral("Messe"));
            QCOMPARE(entry->IsContinuedDate(), day > 16);
            QCOMPARE(entry->Time(), day > 16 ? QStringLiteral("<--") : QStringLiteral("10:00"));
        }
        QCOMPARE(load(f, at(2004, 3, 19))->EntriesCount(), 0);
        QCOMPARE(f.statementsLike(QStringLiteral("SELECT Termine.* From Termine Where")), 5);
    }

    void rowsWrittenAsMinuteTextAreFoundAlikeInBothModes_data() { modes(); }
    void rowsWrittenAsMinuteTextAreFoundAlikeInBothModes()
    {
        // A host's own rows may hold SQLite text without seconds, as the spec's literals do.
        // Both modes compare with the literal's text, so that the same rows come back.
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        f.connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"),
                              {QStringLiteral("2004-03-16 10:00"), QStringLiteral("2004-03-18 00:00"),
                               QStringLiteral("Messe")});
        f.connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"),
                              {QStringLiteral("2004-03-19 00:00"), QStringLiteral("2004-03-19 00:00"),
                               QStringLiteral("Urlaub")});
        QList<int> counts;
        for (int day = 15; day <= 20; ++day)
            counts << load(f, at(2004, 3, day))->EntriesCount();
        QCOMPARE(counts, (QList<int>{0, 1, 1, 1, 1, 0}));
        QVERIFY(load(f, at(2004, 3, 18))->Entries(1)->IsContinuedDate());
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 18)), std::optional<kvDate>(at(2004, 3, 19)));
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 19)), std::optional<kvDate>(at(2004, 3, 16)));
    }

    void appointmentBeginningAtMidnightIsNotContinued_data() { modes(); }
    void appointmentBeginningAtMidnightIsNotContinued()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 17), at(2004, 3, 17), QStringLiteral("Urlaub"));
        insertRow(*f.connection, at(2004, 3, 17), at(2004, 3, 19), QStringLiteral("Reise"));
        const auto cell = load(f, at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 2);
        QVERIFY(!cell->Entries(1)->IsContinuedDate());
        QVERIFY(!cell->Entries(2)->IsContinuedDate());
        QCOMPARE(load(f, at(2004, 3, 16))->EntriesCount(), 0);
        QVERIFY(load(f, at(2004, 3, 19))->Entries(1)->IsContinuedDate());
    }

    void rowsArriveInDateBeginOrderWithTheirValues_data() { modes(); }
    void rowsArriveInDateBeginOrderWithTheirValues()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        const qint32 late = insertRow(*f.connection, at(2004, 3, 17, 14, 30), at(2004, 3, 17, 15),
                                      QStringLiteral("Zahnarzt"), QStringLiteral("Kontrolle"),
                                      QStringLiteral("/home/a/brief.odt"), 12);
        const qint32 early = insertRow(*f.connection, at(2004, 3, 17, 8, 15), at(2004, 3, 17, 9),
                                       QStringLiteral("Frühstück"), QStringLiteral("r"), QStringLiteral("d"), 21);
        insertRow(*f.connection, at(2004, 3, 18), at(2004, 3, 18, 1), QStringLiteral("morgen"));
        const auto cell = load(f, at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 2);
        const ctlEntry *first = cell->Entries(1);
        QCOMPARE(first->DateID(), early);
        QCOMPARE(first->Text(), QStringLiteral("Frühstück"));
        const ctlEntry *second = cell->Entries(2);
        QCOMPARE(second->DateID(), late);
        QCOMPARE(second->datDateBegin(), at(2004, 3, 17, 14, 30));
        QCOMPARE(second->datDateEnd(), at(2004, 3, 17, 15));
        QCOMPARE(second->Text(), QStringLiteral("Zahnarzt"));
        QCOMPARE(second->Remark(), QStringLiteral("Kontrolle"));
        QCOMPARE(second->Document(), QStringLiteral("/home/a/brief.odt"));
        QCOMPARE(second->ImgId(), qint16(12));
        QCOMPARE(second->BackColor(), CellBackColor);
        QCOMPARE(second->lblText().ForeColor, 0u);
    }

    void imageIdsBelowTenAndNullReadAsNoIcon_data() { modes(); }
    void imageIdsBelowTenAndNullReadAsNoIcon()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("fünf"), {}, {}, 5);
        insertRow(*f.connection, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("zwölf"), {}, {}, 12);
        insertRow(*f.connection, at(2004, 3, 17, 10), at(2004, 3, 17, 11), QStringLiteral("null"), {}, {}, QVariant());
        insertRow(*f.connection, at(2004, 3, 17, 11), at(2004, 3, 17, 12), QStringLiteral("zehn"), {}, {}, 10);
        const auto cell = load(f, at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 4);
        QCOMPARE(cell->Entries(1)->ImgId(), qint16(0));
        QCOMPARE(cell->Entries(2)->ImgId(), qint16(12));
        QCOMPARE(cell->Entries(3)->ImgId(), qint16(0));
        QCOMPARE(cell->Entries(4)->ImgId(), qint16(10));
    }

    void nullRemarkAndDocumentReadAsEmptyText_data() { modes(); }
    void nullRemarkAndDocumentReadAsEmptyText()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("ohne"), QVariant(), QVariant());
        const auto cell = load(f, at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 1);
        QVERIFY(cell->Entries(1)->Remark().isEmpty());
        QVERIFY(cell->Entries(1)->Document().isEmpty());
        QCOMPARE(textOf(rows(*f.connection).at(0).value(QStringLiteral("Remark"))), QStringLiteral("<Null>"));
    }

    void tableWithoutOptionalColumnsIsReadWithoutThem_data() { modes(); }
    void tableWithoutOptionalColumnsIsReadWithoutThem()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized, false);
        insertBareRow(*f.connection, at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("schlicht"));
        const auto cell = load(f, at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->ImgId(), qint16(0));
        QVERIFY(cell->Entries(1)->Remark().isEmpty());
    }

    void theTraceHoldsTheQueryAsSent_data() { modes(); }
    void theTraceHoldsTheQueryAsSent()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        load(f, at(2004, 3, 17));
        QCOMPARE(f.trace.size(), 1);
        const QString expected = parameterized
            ? QStringLiteral("SELECT Termine.* From Termine Where ((Termine.DateBegin <= ?) And (Termine.DateEnd >= ?)) "
                             "Or ((Termine.DateBegin >= ?) And (Termine.DateBegin < ?))ORDER BY Termine.DateBegin")
            : QStringLiteral("SELECT Termine.* From Termine Where ((Termine.DateBegin <= '2004-03-17 00:00') And "
                             "(Termine.DateEnd >= '2004-03-17 00:00')) Or ((Termine.DateBegin >= '2004-03-17 00:00') "
                             "And (Termine.DateBegin < '2004-03-18 00:00'))ORDER BY Termine.DateBegin");
        QCOMPARE(f.trace.at(0), expected);
    }

    // BeginDayLoads bounds DateBegin from below: the days from its first day on show exactly
    // the rows they show without it, whatever reaches into them from before.
    void dayLoadFloorFindsTheSameRows()
    {
        Fixture f;
        setUp(f, true);
        const kvDate first = at(2026, 10, 26); // the month grid of November 2026
        insertRow(*f.connection, at(2026, 6, 1, 9), at(2027, 2, 1, 17), QStringLiteral("Elternzeit")); // from far back
        insertRow(*f.connection, at(2026, 10, 20), at(2026, 10, 26), QStringLiteral("ends at the first midnight"));
        insertRow(*f.connection, at(2026, 10, 25, 23, 59), at(2026, 10, 26, 0, 1), QStringLiteral("across midnight"));
        insertRow(*f.connection, at(2026, 10, 25, 8), at(2026, 10, 25, 9), QStringLiteral("the day before"));
        insertRow(*f.connection, at(2026, 10, 26), at(2026, 10, 26), QStringLiteral("all day on the first"));
        insertRow(*f.connection, at(2026, 11, 22, 15), at(2026, 11, 22, 16), QStringLiteral("Kaffee"));
        insertRow(*f.connection, at(2026, 12, 6, 23, 30), at(2026, 12, 8), QStringLiteral("into the next grid"));
        insertRow(*f.connection, at(2026, 12, 7), at(2026, 12, 7), QStringLiteral("after the grid"));
        const QStringList unbounded = dayRows(f.store, first, 43);
        QCOMPARE(unbounded.constFirst(), QStringLiteral("Elternzeit <--, ends at the first midnight <--, "
                                                        "across midnight <--, all day on the first "));

        f.trace.clear();
        f.store.BeginDayLoads(first);
        QCOMPARE(dayRows(f.store, first, 43), unbounded);
        QCOMPARE(f.trace.size(), 44);
        QCOMPARE(f.trace.constFirst(),
                 QStringLiteral("SELECT MIN(Termine.DateBegin) AS EarliestBegin From Termine Where "
                                "((Termine.DateEnd >= ?) And (Termine.DateBegin < ?))"));
        QCOMPARE(f.trace.at(1),
                 QStringLiteral("SELECT Termine.* From Termine Where (Termine.DateBegin >= ?) And "
                                "(Termine.DateBegin < ?) And (((Termine.DateBegin <= ?) And (Termine.DateEnd >= ?)) "
                                "Or ((Termine.DateBegin >= ?) And (Termine.DateBegin < ?)))ORDER BY Termine.DateBegin"));
        // A day before the floor's first day does not use it.
        f.trace.clear();
        QCOMPARE(load(f, at(2026, 10, 25))->EntriesCount(), 4);
        QVERIFY(!f.trace.constFirst().contains(QStringLiteral("Where (Termine.DateBegin >= ?) And")));
        // EndDayLoads: the plain query again.
        f.store.EndDayLoads();
        f.trace.clear();
        QCOMPARE(dayRows(f.store, first, 1), unbounded.mid(0, 1));
        QVERIFY(!f.trace.constFirst().contains(QStringLiteral("Where (Termine.DateBegin >= ?) And")));
    }

    //! Without an appointment reaching into the first day, the floor is that day itself.
    void dayLoadFloorOnATableWithoutEarlierRows()
    {
        Fixture f;
        setUp(f, true);
        insertRow(*f.connection, at(2026, 11, 2, 9), at(2026, 11, 2, 10), QStringLiteral("Montag"));
        f.store.BeginDayLoads(at(2026, 10, 26));
        QCOMPARE(dayRows(f.store, at(2026, 10, 26), 8).at(7), QStringLiteral("Montag 09:00"));
        QCOMPARE(f.reports.size(), 0);
    }

    //! The legacy texts stay exactly the spec's: BeginDayLoads sends nothing and changes nothing.
    void dayLoadFloorLeavesTheLegacyTextsAlone()
    {
        Fixture f;
        setUp(f, false);
        f.store.BeginDayLoads(at(2004, 3, 17));
        QVERIFY(f.trace.isEmpty());
        load(f, at(2004, 3, 17));
        QCOMPARE(f.trace.size(), 1);
        QVERIFY(f.trace.constFirst().startsWith(QStringLiteral("SELECT Termine.* From Termine Where ((Termine.DateBegin <= '2004-03-17 00:00')")));
    }

    void noQueryWithoutRecordSource()
    {
        Fixture f;
        setUp(f, false);
        insertRow(*f.connection, at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("a"));
        f.trace.clear();
        f.store.setRecordSource(QString());
        QString result = QStringLiteral("unchanged");
        const auto cell = load(f, at(2004, 3, 17), &result);
        QVERIFY(result.isEmpty());
        QCOMPARE(cell->EntriesCount(), 0);
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 1)), std::nullopt);
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 31)), std::nullopt);
        QVERIFY2(f.trace.isEmpty(), qPrintable(f.trace.join(u'\n')));
    }

    void noQueryWithoutConnectionString()
    {
        Fixture f;
        f.connection = std::make_unique<kvConnection>();
        QObject::connect(f.connection.get(), &kvConnection::StatementExecuted,
                         [&f](const QString &sql) { f.trace.append(sql); });
        f.store.setRecordSource(termine);
        f.store.setDbDateFormat(3);
        errorNumber([&] { f.store.SetConnection(f.connection.get()); }); // closed: the probe fails
        QCOMPARE(f.store.Connection(), f.connection.get());
        QString result = QStringLiteral("unchanged");
        const auto cell = load(f, at(2004, 3, 17), &result);
        QVERIFY(result.isEmpty());
        QCOMPARE(cell->EntriesCount(), 0);
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 1)), std::nullopt);
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 31)), std::nullopt);
        QVERIFY(f.trace.isEmpty());
    }

    void noQueryWithoutConnection()
    {
        kvAppointmentStore store;
        store.setRecordSource(termine);
        ctlDay cell;
        QVERIFY(store.LoadDayAppointments(at(2004, 3, 17), kvDayCellFiller(cell, 0)).isEmpty());
        QCOMPARE(cell.EntriesCount(), 0);
        QCOMPARE(store.FindNextAppointment(at(2004, 3, 1)), std::nullopt);
    }

    // --- Part 2.2: step texts ----------------------------------------------------------------

    void missingTableFailsWhenTheRecordsetOpens_data() { modes(); }
    void missingTableFailsWhenTheRecordsetOpens()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        f.store.setRecordSource(QStringLiteral("Fehlt"));
        QString result;
        load(f, at(2004, 3, 17), &result);
        // Step 4 is "after the command is prepared": opening the recordset is what fails.
        QCOMPARE(result, QStringLiteral("12-4\r\nno such table: Fehlt"));
    }

    void overflowingImageIdFailsAtStepFive_data() { modes(); }
    void overflowingImageIdFailsAtStepFive()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("groß"), {}, {}, 40000);
        QString result;
        const auto cell = load(f, at(2004, 3, 17), &result);
        QCOMPARE(result, QStringLiteral("12-5\r\nÜberlauf"));
        QCOMPARE(cell->EntriesCount(), 0);
    }

    void rowsAddedBeforeAFailureStay_data() { modes(); }
    void rowsAddedBeforeAFailureStay()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("gut"), {}, {}, 12);
        insertRow(*f.connection, at(2004, 3, 17, 10), at(2004, 3, 17, 11), QStringLiteral("groß"), {}, {}, 40000);
        QString result;
        const auto cell = load(f, at(2004, 3, 17), &result);
        // The counter is not reset per row: the second row fails while it still reads 9.
        QCOMPARE(result, QStringLiteral("12-9\r\nÜberlauf"));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->Text(), QStringLiteral("gut"));
    }

    void nullNameFailsAtStepEight_data() { modes(); }
    void nullNameFailsAtStepEight()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        openConnection(f);
        f.connection->Execute(QStringLiteral("CREATE TABLE Lose (DateID INTEGER PRIMARY KEY AUTOINCREMENT, "
                                             "DateBegin DATETIME, DateEnd DATETIME, Name TEXT, Remark TEXT, "
                                             "Document TEXT, ImageID SMALLINT)"));
        f.store.setParameterizedSql(parameterized);
        f.store.setRecordSource(QStringLiteral("Lose"));
        f.store.SetConnection(f.connection.get());
        f.connection->Execute(QStringLiteral("INSERT INTO Lose (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"),
                              {QVariant::fromValue(at(2004, 3, 17, 8)), QVariant::fromValue(at(2004, 3, 17, 9)),
                               QVariant()});
        QString result;
        const auto cell = load(f, at(2004, 3, 17), &result);
        QCOMPARE(result, QStringLiteral("12-8\r\nUnzulässige Verwendung von Null"));
        QCOMPARE(cell->EntriesCount(), 0);
    }

    void storedDatesOutsideTheDateRangeAreATypeMismatch_data()
    {
        QTest::addColumn<QString>("dateBegin");   // SQL literals as another program may have stored them
        QTest::addColumn<QString>("dateEnd");
        QTest::newRow("-1e300") << "-1e300" << "'2004-03-17 10:00'";
        QTest::newRow("1e18") << "'2004-03-17 09:00'" << "1e18";
        QTest::newRow("infinity") << "-9e999" << "'2004-03-17 10:00'";
        QTest::newRow("day before 100-01-01") << "-657435.5" << "'2004-03-17 10:00'";
        QTest::newRow("day after 9999-12-31") << "'2004-03-17 09:00'" << "2958466.0";
        QTest::newRow("year 99 as text") << "'0099-12-31 10:00'" << "'2004-03-17 10:00'";
    }
    void storedDatesOutsideTheDateRangeAreATypeMismatch()
    {
        QFETCH(QString, dateBegin);
        QFETCH(QString, dateEnd);
        Fixture f;
        setUp(f, false);
        f.connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (%1, %2, 'x')")
                                  .arg(dateBegin, dateEnd));
        QString result;
        const auto cell = load(f, at(2004, 3, 17), &result);
        QCOMPARE(result, QStringLiteral("12-8\r\nTypen unverträglich"));
        QCOMPARE(cell->EntriesCount(), 0);
    }

    void theDateRangeItselfIsRead()
    {
        Fixture f;
        setUp(f, false);
        f.connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES "
                                             "(-657434.0, '2004-03-17 10:00', 'a'), "
                                             "('2004-03-17 09:00', 2958465.999988426, 'b')"));
        QString result;
        const auto cell = load(f, at(2004, 3, 17), &result);
        QCOMPARE(result, QString());
        QCOMPARE(cell->EntriesCount(), 2);
        QCOMPARE(cell->Entries(1)->datDateBegin().date(), QDate(100, 1, 1));
        QCOMPARE(cell->Entries(2)->datDateEnd().toDateTime(), QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59), Qt::UTC));
    }

    void parameterizedLoadRefusesAnOddTableNameAtStepTwo()
    {
        Fixture f;
        setUp(f, true);
        f.store.setRecordSource(QStringLiteral("Termine WHERE 1=1 --"));
        QString result;
        load(f, at(2004, 3, 17), &result);
        QVERIFY2(result.startsWith(QStringLiteral("12-2\r\nRecordSource \"Termine WHERE 1=1 --\" ist kein "
                                                  "einfacher Tabellenname")),
                 qPrintable(result));
        QVERIFY(f.trace.isEmpty());
    }

    // --- Part 2.2: next and previous ---------------------------------------------------------

    void nextFindsTheFirstAppointmentAfterTheLastDisplayedDay_data() { modes(); }
    void nextFindsTheFirstAppointmentAfterTheLastDisplayedDay()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 21, 23, 30), at(2004, 3, 22, 1), QStringLiteral("spät"));
        insertRow(*f.connection, at(2004, 3, 25, 9), at(2004, 3, 25, 10), QStringLiteral("später"));
        f.trace.clear();
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 21)), std::optional<kvDate>(at(2004, 3, 25)));
        insertRow(*f.connection, at(2004, 3, 22), at(2004, 3, 22), QStringLiteral("Mitternacht"));
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 21)), std::optional<kvDate>(at(2004, 3, 22)));
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 25)), std::nullopt);
        QCOMPARE(f.statementsLike(QStringLiteral("SELECT Termine.DateBegin AS NextDate")), 3);
        QVERIFY(f.trace.at(0).endsWith(QStringLiteral(" ORDER BY Termine.DateBegin ASC")));
        if (!parameterized)
            QCOMPARE(f.trace.at(0), QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                                   "(((Termine.DateBegin) >= '2004-03-22 00:00')) ORDER BY "
                                                   "Termine.DateBegin ASC"));
    }

    void nextDropsTheTimeOfDay_data() { modes(); }
    void nextDropsTheTimeOfDay()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 22, 9, 15), at(2004, 3, 22, 10), QStringLiteral("a"));
        const std::optional<kvDate> next = f.store.FindNextAppointment(at(2004, 3, 21));
        QVERIFY(next);
        QCOMPARE(*next, at(2004, 3, 22));
        QCOMPARE(next->secondsOfDay(), 0);
    }

    void previousFindsTheLastAppointmentBeforeTheFirstDisplayedDay_data() { modes(); }
    void previousFindsTheLastAppointmentBeforeTheFirstDisplayedDay()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        insertRow(*f.connection, at(2004, 3, 15), at(2004, 3, 15, 1), QStringLiteral("Mitternacht"));
        f.trace.clear();
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 15)), std::nullopt);
        insertRow(*f.connection, at(2004, 3, 1, 8), at(2004, 3, 1, 9), QStringLiteral("früh"));
        insertRow(*f.connection, at(2004, 3, 14, 18, 30), at(2004, 3, 15, 2), QStringLiteral("Vorabend"));
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 15)), std::optional<kvDate>(at(2004, 3, 14)));
        QVERIFY(f.trace.at(0).endsWith(QStringLiteral(" ORDER BY Termine.DateBegin DESC")));
        if (!parameterized)
            QCOMPARE(f.trace.at(0), QStringLiteral("SELECT Termine.DateBegin AS NextDate From Termine Where "
                                                   "(((Termine.DateBegin) < '2004-03-15 00:00')) ORDER BY "
                                                   "Termine.DateBegin DESC"));
    }

    void searchesStopSilentlyOnFailure_data() { modes(); }
    void searchesStopSilentlyOnFailure()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        f.store.setRecordSource(QStringLiteral("Fehlt"));
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 21)), std::nullopt);
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 15)), std::nullopt);
        QVERIFY(f.reports.isEmpty());
    }

    // --- Part 2.3: InsertAppointment ---------------------------------------------------------

    void insertWritesEveryColumn_data() { modes(); }
    void insertWritesEveryColumn()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        f.store.InsertAppointment(at(2004, 3, 16, 10), at(2004, 3, 18), QStringLiteral("Messe"),
                                  QStringLiteral("Halle 3"), QStringLiteral("/home/a/plan.pdf"), 12);
        QVERIFY(f.reports.isEmpty());
        QCOMPARE(f.trace, QStringList({QStringLiteral("SELECT * FROM Termine"),
                                       QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name, Remark, "
                                                      "Document, ImageID) VALUES (?, ?, ?, ?, ?, ?)")}));
        const QList<QVariantMap> all = rows(*f.connection);
        QCOMPARE(all.size(), 1);
        QCOMPARE(dateOf(all[0].value(QStringLiteral("DateBegin"))), at(2004, 3, 16, 10));
        QCOMPARE(dateOf(all[0].value(QStringLiteral("DateEnd"))), at(2004, 3, 18));
        QCOMPARE(all[0].value(QStringLiteral("Name")).toString(), QStringLiteral("Messe"));
        QCOMPARE(all[0].value(QStringLiteral("Remark")).toString(), QStringLiteral("Halle 3"));
        QCOMPARE(all[0].value(QStringLiteral("Document")).toString(), QStringLiteral("/home/a/plan.pdf"));
        QCOMPARE(all[0].value(QStringLiteral("ImageID")).toInt(), 12);
        QVERIFY(all[0].value(QStringLiteral("DateID")).toInt() > 0);
        // What was written is what the per-day load reads.
        QCOMPARE(load(f, at(2004, 3, 17))->Entries(1)->Text(), QStringLiteral("Messe"));
    }

    void insertLeavesAbsentColumnsAlone_data() { modes(); }
    void insertLeavesAbsentColumnsAlone()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized, false);
        f.store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"),
                                  QStringLiteral("r"), QStringLiteral("d"), 12);
        QVERIFY(f.reports.isEmpty());
        QCOMPARE(f.trace.last(), QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"));
        QCOMPARE(rows(*f.connection).size(), 1);
    }

    void insertStoresQuotesAndInjectionAsTyped_data() { modes(); }
    void insertStoresQuotesAndInjectionAsTyped()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        const QString injection = QStringLiteral("x'); DROP TABLE Termine; --");
        f.store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("Peter's Feier"),
                                  injection, QString(), 0);
        QVERIFY(f.reports.isEmpty());
        const QList<QVariantMap> all = rows(*f.connection);
        QCOMPARE(all.size(), 1);
        QCOMPARE(all[0].value(QStringLiteral("Name")).toString(), QStringLiteral("Peter's Feier"));
        QCOMPARE(all[0].value(QStringLiteral("Remark")).toString(), injection);
    }

    void insertFailureIsReportedAs800_data() { modes(); }
    void insertFailureIsReportedAs800()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        f.store.setRecordSource(QStringLiteral("Fehlt"));
        f.store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        QCOMPARE(f.reports.size(), 1);
        QCOMPARE(f.reports[0].code, 800);
        QCOMPARE(f.reports[0].description, QStringLiteral("no such table: Fehlt"));
    }

    void insertWithoutConnectionIsReportedAs800()
    {
        kvAppointmentStore store;
        store.setRecordSource(termine);
        QList<Report> reports;
        store.SetReporter([&](int code, const QString &description) { reports.append({code, description}); });
        store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        QCOMPARE(reports.size(), 1);
        QCOMPARE(reports[0].code, 800);
        QVERIFY(!reports[0].description.isEmpty());
    }

    // --- Part 2.3: UpdateAppointment ---------------------------------------------------------

    void legacyUpdateIsTheSpecsTextAndSQLiteRefusesIt()
    {
        Fixture f;
        setUp(f, false);
        const qint32 id = insertRow(*f.connection, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("alt"));
        f.trace.clear();
        f.store.UpdateAppointment(id, at(2004, 3, 17, 14, 5), at(2004, 3, 17, 15), QStringLiteral("neu"),
                                  QStringLiteral("r"), QStringLiteral("d"), 12);
        QCOMPARE(f.trace, QStringList(QStringLiteral(
                              "UPDATE Termine SET Termine.[DateBegin] = '2004-03-17 14:05',Termine.[DateEnd] = "
                              "'2004-03-17 15:00',Termine.[Name] = 'neu',Termine.[Remark] = 'r',"
                              "Termine.[Document] = 'd',Termine.[ImageID] = '12' WHERE (((Termine.DateID)=%1))")
                                          .arg(id)));
        // SQLite does not accept table-qualified columns in SET: its own message, code 600.
        QCOMPARE(f.reports.size(), 1);
        QCOMPARE(f.reports[0].code, 600);
        QCOMPARE(f.reports[0].description, QStringLiteral("near \".\": syntax error"));
        QCOMPARE(rows(*f.connection).at(0).value(QStringLiteral("Name")).toString(), QStringLiteral("alt"));
    }

    void legacyUpdateWithoutOptionalColumnsEndsWithName()
    {
        Fixture f;
        setUp(f, false, false);
        f.store.UpdateAppointment(5, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"),
                                  QStringLiteral("r"), QStringLiteral("d"), 12);
        QCOMPARE(f.trace.size(), 1);
        QVERIFY2(f.trace[0].endsWith(QStringLiteral("Termine.[Name] = 'x' WHERE (((Termine.DateID)=5))")),
                 qPrintable(f.trace[0]));
    }

    void apostropheInNameBreaksOnlyTheLegacyUpdate_data() { modes(); }
    void apostropheInNameBreaksOnlyTheLegacyUpdate()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        const qint32 id = insertRow(*f.connection, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("alt"));
        f.store.UpdateAppointment(id, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("Peter's Geburtstag"),
                                  QString(), QString(), 0);
        const QString name = rows(*f.connection).at(0).value(QStringLiteral("Name")).toString();
        if (parameterized) {
            QVERIFY(f.reports.isEmpty());
            QCOMPARE(name, QStringLiteral("Peter's Geburtstag"));
        } else {
            QCOMPARE(f.reports.size(), 1);
            QCOMPARE(f.reports[0].code, 600);
            QVERIFY(!f.reports[0].description.isEmpty());
            QCOMPARE(name, QStringLiteral("alt"));
        }
    }

    void parameterizedUpdateWritesTheSameRow()
    {
        Fixture f;
        setUp(f, true);
        const qint32 other = insertRow(*f.connection, at(2004, 3, 1, 9), at(2004, 3, 1, 10), QStringLiteral("andere"));
        const qint32 id = insertRow(*f.connection, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("alt"),
                                    QStringLiteral("r"), QStringLiteral("d"), 5);
        f.trace.clear();
        const QString injection = QStringLiteral("x'); DROP TABLE Termine; --");
        f.store.UpdateAppointment(id, at(2004, 3, 18, 14, 5), at(2004, 3, 18, 15), injection,
                                  QStringLiteral("Peter's"), QStringLiteral("/tmp/a b.odt"), 12);
        QVERIFY(f.reports.isEmpty());
        QCOMPARE(f.trace, QStringList(QStringLiteral("UPDATE Termine SET DateBegin = ?, DateEnd = ?, Name = ?, "
                                                     "Remark = ?, Document = ?, ImageID = ? WHERE DateID = ?")));
        const QList<QVariantMap> all = rows(*f.connection);
        QCOMPARE(all.size(), 2);
        QCOMPARE(all[0].value(QStringLiteral("DateID")).toInt(), other);
        QCOMPARE(all[0].value(QStringLiteral("Name")).toString(), QStringLiteral("andere"));
        QCOMPARE(dateOf(all[1].value(QStringLiteral("DateBegin"))), at(2004, 3, 18, 14, 5));
        QCOMPARE(dateOf(all[1].value(QStringLiteral("DateEnd"))), at(2004, 3, 18, 15));
        QCOMPARE(all[1].value(QStringLiteral("Name")).toString(), injection);
        QCOMPARE(all[1].value(QStringLiteral("Remark")).toString(), QStringLiteral("Peter's"));
        QCOMPARE(all[1].value(QStringLiteral("Document")).toString(), QStringLiteral("/tmp/a b.odt"));
        QCOMPARE(all[1].value(QStringLiteral("ImageID")).toInt(), 12);
        // The updated row is found where the per-day load looks for it.
        const auto cell = load(f, at(2004, 3, 18));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->Text(), injection);
        QCOMPARE(cell->Entries(1)->ImgId(), qint16(12));
    }

    void parameterizedUpdateWithoutOptionalColumns()
    {
        Fixture f;
        setUp(f, true, false);
        const qint32 id = insertBareRow(*f.connection, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("alt"));
        f.trace.clear();
        f.store.UpdateAppointment(id, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"),
                                  QStringLiteral("r"), QStringLiteral("d"), 12);
        QVERIFY(f.reports.isEmpty());
        QCOMPARE(f.trace, QStringList(QStringLiteral("UPDATE Termine SET DateBegin = ?, DateEnd = ?, Name = ? "
                                                     "WHERE DateID = ?")));
        QCOMPARE(rows(*f.connection).at(0).value(QStringLiteral("Name")).toString(), QStringLiteral("x"));
    }

    void parameterizedUpdateRefusesAnOddTableName()
    {
        Fixture f;
        setUp(f, true);
        f.store.setRecordSource(QStringLiteral("Termine SET Name = 'x' --"));
        f.store.UpdateAppointment(1, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        QCOMPARE(f.reports.size(), 1);
        QCOMPARE(f.reports[0].code, 600);
        QVERIFY(f.reports[0].description.contains(QStringLiteral("kein einfacher Tabellenname")));
        QVERIFY(f.trace.isEmpty());
    }

    void updateWithoutConnectionSkipsSilently_data() { modes(); }
    void updateWithoutConnectionSkipsSilently()
    {
        QFETCH(bool, parameterized);
        kvAppointmentStore store;
        store.setParameterizedSql(parameterized);
        store.setRecordSource(termine);
        int reports = 0;
        store.SetReporter([&](int, const QString &) { ++reports; });
        store.UpdateAppointment(5, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        QCOMPARE(reports, 0);
    }

    // --- Part 2.3: DeleteAppointment ---------------------------------------------------------

    void deleteAsksAndNoKeepsTheRow_data() { modes(); }
    void deleteAsksAndNoKeepsTheRow()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        const qint32 id = insertRow(*f.connection, at(2004, 3, 17), at(2004, 3, 17), QStringLiteral("Urlaub"));
        f.trace.clear();
        kvScriptedMessageBox box;
        kvScopedService installed(box);
        box.EnqueueAnswer(kvMessageBox::vbNo);
        bool bCancel = false;
        f.store.DeleteAppointment(id, at(2004, 3, 17), at(2004, 3, 17), QStringLiteral("Urlaub"), {}, {}, bCancel);
        QCOMPARE(box.CallCount(), 1);
        QCOMPARE(box.LastCall().prompt, QStringLiteral("Termin < Urlaub> löschen?"));
        QCOMPARE(box.LastCall().buttons, 35);
        QCOMPARE(box.LastCall().title, QString());
        QVERIFY(bCancel);
        QVERIFY(f.trace.isEmpty());
        QVERIFY(f.reports.isEmpty());
        QCOMPARE(rows(*f.connection).size(), 1);
    }

    void deleteCancelledAtATimedAppointment_data() { modes(); }
    void deleteCancelledAtATimedAppointment()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        const qint32 id = insertRow(*f.connection, at(2004, 3, 17, 14, 30), at(2004, 3, 17, 15), QStringLiteral("Zahnarzt"));
        kvScriptedMessageBox box;
        kvScopedService installed(box);
        box.EnqueueAnswer(kvMessageBox::vbCancel);
        bool bCancel = false;
        f.store.DeleteAppointment(id, at(2004, 3, 17, 14, 30), at(2004, 3, 17, 15), QStringLiteral("Zahnarzt"),
                                  {}, {}, bCancel);
        QCOMPARE(box.LastCall().prompt, QStringLiteral("Termin <14:30 Zahnarzt> löschen?"));
        QVERIFY(bCancel);
        QCOMPARE(rows(*f.connection).size(), 1);
    }

    void deleteOnYes_data() { modes(); }
    void deleteOnYes()
    {
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f, parameterized);
        const qint32 keep = insertRow(*f.connection, at(2004, 3, 16, 9), at(2004, 3, 16, 10), QStringLiteral("bleibt"));
        const qint32 id = insertRow(*f.connection, at(2004, 3, 17, 14, 30), at(2004, 3, 17, 15), QStringLiteral("Zahnarzt"));
        f.trace.clear();
        kvScriptedMessageBox box;
        kvScopedService installed(box);
        box.EnqueueAnswer(kvMessageBox::vbYes);
        bool bCancel = false;
        f.store.DeleteAppointment(id, at(2004, 3, 17, 14, 30), at(2004, 3, 17, 15), QStringLiteral("Zahnarzt"),
                                  {}, {}, bCancel);
        QVERIFY(!bCancel);
        const QStringList sent = f.trace;
        const QList<QVariantMap> all = rows(*f.connection);
        if (parameterized) {
            QCOMPARE(sent, QStringList(QStringLiteral("DELETE FROM Termine WHERE DateID = ?")));
            QVERIFY(f.reports.isEmpty());
            QCOMPARE(all.size(), 1);
            QCOMPARE(all[0].value(QStringLiteral("DateID")).toInt(), keep);
        } else {
            // The spec's text; SQLite does not know "DELETE T.* FROM": its message, code 700.
            QCOMPARE(sent, QStringList(QStringLiteral("DELETE Termine.* FROM Termine WHERE (Termine.DateID = %1)")
                                              .arg(id)));
            QCOMPARE(f.reports.size(), 1);
            QCOMPARE(f.reports[0].code, 700);
            QCOMPARE(f.reports[0].description, QStringLiteral("near \"Termine\": syntax error"));
            QCOMPARE(all.size(), 2);
        }
    }

    void deleteWithoutConnectionAsksThenSkipsSilently()
    {
        kvAppointmentStore store;
        store.setRecordSource(termine);
        int reports = 0;
        store.SetReporter([&](int, const QString &) { ++reports; });
        kvScriptedMessageBox box;
        kvScopedService installed(box);
        box.EnqueueAnswer(kvMessageBox::vbYes);
        bool bCancel = false;
        store.DeleteAppointment(5, at(2004, 3, 17), at(2004, 3, 17), QStringLiteral("Urlaub"), {}, {}, bCancel);
        QCOMPARE(box.CallCount(), 1);
        QVERIFY(!bCancel);
        QCOMPARE(reports, 0);
    }
};

QTEST_MAIN(tst_kvAppointmentStore)
#include "tst_kvAppointmentStore.moc"
