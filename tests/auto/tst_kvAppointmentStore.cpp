#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAdoError.h"
#include "kvAppointmentStore.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvDayLoading.h"
#include "kvFaultInjection.h"
#include "kvFieldConversion.h"
#include "kvFormat.h"
#include "kvFields.h"
#include "kvRecordset.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"
#include "kvSqlTexts.h"
#include "kvTestSupport.h"

#include <QSignalSpy>
#include <QSqlQuery>
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

struct Report
{
    int code = 0;
    QString description;
};

//! A connection with the appointment table, a store on it, the statements sent and the reports.
struct Fixture
{
    QStringList trace;
    QList<Report> reports;
    std::unique_ptr<kvConnection> connection;
    kvAppointmentStore store;

    int sent(const QString &start) const
    {
        return int(std::count_if(trace.begin(), trace.end(), [&](const QString &sql) { return sql.startsWith(start); }));
    }
    qint32 insert(const kvDate &begin, const kvDate &end, const QString &name, const QVariant &remark = {},
                  const QVariant &document = {}, const QVariant &imageId = {})
    {
        connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name, Remark, Document, ImageID) "
                                           "VALUES (?, ?, ?, ?, ?, ?)"),
                            {QVariant::fromValue(begin), QVariant::fromValue(end), name, remark, document, imageId});
        return rows().constLast().value(QStringLiteral("DateID")).toInt();
    }
    //! Every row of Termine in DateID order, each as column name → value.
    QList<QVariantMap> rows() const
    {
        QList<QVariantMap> result;
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT * FROM Termine ORDER BY DateID"), connection.get());
        for (; !recordset.EOF(); recordset.MoveNext()) {
            const kvFields fields = recordset.Fields();
            QVariantMap row;
            for (int i = 0; i < fields.Count(); ++i)
                row.insert(fields.Item(i).Name(), fields.Item(i).Value());
            result.append(row);
        }
        return result;
    }
    QString name(int row = 0) const { return rows().at(row).value(QStringLiteral("Name")).toString(); }
    std::unique_ptr<ctlDay> load(const kvDate &day, QString *result = nullptr)
    {
        return loadDay(store, day, CellBackColor, result);
    }
};

//! Keeps what a day load hands over ("<--" marks a continued row); throws on request.
struct RecordingSink final : kvDayRowSink
{
    mutable QStringList rows;
    bool failAdding = false;
    bool failMarking = false;

    void AddAppointment(const kvAppointmentValues &row) const override
    {
        if (failAdding)
            throw kvRuntimeError(5, QStringLiteral("add"));
        rows << QStringList{row.Name, row.Remark, QString::number(row.ImageID),
                            kv::Format(row.DateBegin, QStringLiteral("dd hh:nn"))}.join(u' ');
    }
    void MarkLastContinued() const override
    {
        if (failMarking)
            throw kvRuntimeError(5, QStringLiteral("mark"));
        rows.last() += QStringLiteral(" <--");
    }
};

} // namespace

// The store on SQLite files and the fixture's MariaDB server, with plain texts and bound statements.
class tst_kvAppointmentStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    int m_files = 0;
    const QString m_sqlite = QStringLiteral("Driver=SQLite3;Database=") + m_folder.path() + QLatin1Char('/');
    QHash<QString, QString> m_mariaDb;

    //! An open connection to \a engine, traced into \a f; Termine is dropped on MariaDB.
    void open(Fixture &f, const QString &engine)
    {
        f.connection = std::make_unique<kvConnection>();
        QObject::connect(f.connection.get(), &kvConnection::StatementExecuted, [&f](const QString &sql) { f.trace.append(sql); });
        if (engine == QStringLiteral("MariaDB")) {
            f.connection->Open(m_mariaDb.value(QStringLiteral("connection_string")));
            f.connection->Execute(QStringLiteral("DROP TABLE IF EXISTS Termine"));
        } else {
            f.connection->Open(m_sqlite + QStringLiteral("t%1.db").arg(++m_files));
        }
    }

    //! Table Termine (with or without the optional columns) and the store connected in the row's mode.
    void setUp(Fixture &f, bool optionalColumns = true)
    {
        QFETCH(QString, engine);
        QFETCH(bool, parameterized);
        open(f, engine);
        kvAppointmentTable::Create(*f.connection, termine, optionalColumns);
        f.store.setParameterizedSql(parameterized);
        f.store.setRecordSource(termine);
        f.store.SetReporter([&f](int code, const QString &description) { f.reports.append({code, description}); });
        QCOMPARE(f.store.SetConnection(f.connection.get()), std::optional<int>(1));
        f.trace.clear();
    }

    static void columns()
    {
        QTest::addColumn<QString>("engine");
        QTest::addColumn<bool>("parameterized");
    }
    static void everyEngineAndMode()
    {
        columns();
        for (const char *engine : {"SQLite", "MariaDB"}) {
            QTest::addRow("%s/legacy", engine) << QString::fromLatin1(engine) << false;
            QTest::addRow("%s/ParameterizedSql", engine) << QString::fromLatin1(engine) << true;
        }
    }

private slots:
    void initTestCase()
    {
        QString problem;
        m_mariaDb = readMariaDbInfo(&problem);
        QVERIFY2(!m_mariaDb.isEmpty(), qPrintable(problem));
        QVERIFY2(useBerlinTime(), "Europe/Berlin must have its 2026 spring-forward gap for the date tests");
    }

    //! How a day load reads numbers; the 16-bit overflow and Null (94) are in dayLoadFailures.
    void fieldConversions()
    {
        QVERIFY(kvFieldConversion::IsNumeric(QStringLiteral(" 12 ")));
        QVERIFY(!kvFieldConversion::IsNumeric(QStringLiteral("nan")) && !kvFieldConversion::IsNumeric(QVariant()));
        QCOMPARE(kvFieldConversion::ToInteger(2.5), qint16(2));   // halves to the even neighbour
        QCOMPARE(kvFieldConversion::ToLong(3.5), 4);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToLong(QStringLiteral("inf")); }), 13);
        QCOMPARE(errorNumber([] { kvFieldConversion::ToLong(-1e300); }), 6);   // a DateID, not 16 bits
    }

    //! The server through TCP and the socket; a refused port or a wrong password fail without the password.
    void mariaDbOpens_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("outcome");   // USER() and DATABASE(), or what the failure says
        const auto info = [this](const char *key) { return m_mariaDb.value(QString::fromLatin1(key)); };
        const QString tcp = "Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Port=%1;Database=" + info("database") + ";Uid="
                            + info("user") + ";Pwd=%2";
        QTest::newRow("tcp") << tcp.arg(info("port"), info("password")) << 0 << info("user") + "@127.0.0.1 " + info("database");
        QTest::newRow("socket") << "DRIVER={MySQL ODBC 8.0 Driver};SOCKET=" + info("socket") + ";DATABASE=" + info("database")
                                       + ";UID=" + info("user") + ";PWD=" + info("password")
                                << 0 << info("user") + "@localhost " + info("database");
        QTest::newRow("refused port") << tcp.arg(closedLocalPort()).arg(QStringLiteral("falsch")) << int(kvAdoError::ProviderFailed)
                                      << "Keine Verbindung zum MySQL/MariaDB-Server: Can't connect to server on '127.0.0.1'";
        QTest::newRow("wrong password") << tcp.arg(info("port"), QStringLiteral("falsch")) << int(kvAdoError::ProviderFailed)
                                        << "Access denied for user '" + info("user") + "'@'127.0.0.1'";
    }
    void mariaDbOpens()
    {
        QFETCH(QString, text);
        QFETCH(QString, outcome);
        kvConnection connection;
        QString description;
        QTEST(errorNumber([&] { connection.Open(text); }, &description), "number");
        if (connection.State() == int(kvConnection::adStateOpen)) {
            QCOMPARE(kvDataSource::Of(connection).engine(), kvDataSource::MySql);
            kvRecordset recordset;
            recordset.Open(QStringLiteral("SELECT CONCAT(USER(), ' ', DATABASE())"), &connection);
            QCOMPARE(recordset.Fields().Item(0).Value().toString(), outcome);
        } else {
            QVERIFY2(description.contains(outcome) && !description.contains(QStringLiteral("falsch")), qPrintable(description));
        }
    }

    void stateIsReadBeforeTheProbe()
    {
        kvConnection connection;
        connection.setConnectionString(m_sqlite + QStringLiteral("state.db"));
        kvAppointmentStore store;
        store.setRecordSource(termine);
        QSignalSpy states(&store, &kvAppointmentStore::ConnectionStateRead);
        QVERIFY(errorNumber([&] { store.SetConnection(&connection); }) != 0);
        connection.Open();
        kvAppointmentTable::Create(connection, termine, true);
        QCOMPARE(store.SetConnection(&connection), std::optional<int>(1));
        QCOMPARE(states.size(), 2);
        QCOMPARE(states.at(0).at(0).toInt(), 0);
        QCOMPARE(states.at(1).at(0).toInt(), 1);
        QCOMPARE(store.DatabaseDialect(), qint16(3));
        // Nothing: no State, no probe; with kvAuto there is no Provider to read (91).
        store.setDbDateFormat(2);
        QCOMPARE(store.SetConnection(nullptr), std::nullopt);
        QCOMPARE(store.DatabaseDialect(), qint16(2));
        QCOMPARE(states.size(), 2);
        store.setDbDateFormat(0);
        QString description;
        QCOMPARE(errorNumber([&] { store.SetConnection(nullptr); }, &description), 91);
        QCOMPARE(description, QStringLiteral("Objektvariable oder With-Blockvariable nicht festgelegt"));
    }

    void probeFindsTheOptionalColumnsAndKeepsThem()
    {
        Fixture f;
        open(f, QStringLiteral("SQLite"));
        f.connection->Execute(QStringLiteral("CREATE TABLE Termine (DateID INTEGER PRIMARY KEY, DateBegin DATETIME, "
                                             "DateEnd DATETIME, Name TEXT, remark TEXT, IMAGEID SMALLINT)"));
        f.store.setRecordSource(termine);
        f.store.SetConnection(f.connection.get());
        QVERIFY(f.store.HasRemarkColumn() && f.store.HasImageIdColumn() && !f.store.HasDocumentColumn());
        QVERIFY(f.trace.contains(QStringLiteral("SELECT * FROM Termine")));
        // The flags carry over to a table without the columns: the load reads a missing column (step 5).
        Fixture bare;
        open(bare, QStringLiteral("SQLite"));
        kvAppointmentTable::Create(*bare.connection, termine, false);
        bare.connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES ('2004-03-17 09:00', "
                                                "'2004-03-17 10:00', 'a')"));
        f.store.SetConnection(bare.connection.get());
        QVERIFY(f.store.HasRemarkColumn() && f.store.HasImageIdColumn());
        QString result;
        QCOMPARE(loadDay(f.store, at(2004, 3, 17), 0, &result)->EntriesCount(), 0);
        QVERIFY2(result.startsWith(QStringLiteral("12-5\r\n")), qPrintable(result));
    }

    void tableNamesInBothModes()
    {
        Fixture f;
        open(f, QStringLiteral("SQLite"));
        kvAppointmentTable::Create(*f.connection, termine, true);
        f.store.SetReporter([&f](int code, const QString &description) { f.reports.append({code, description}); });
        f.store.setRecordSource(QStringLiteral("Termine; DROP TABLE Termine; --"));
        // Plain texts: SQLite refuses the second statement; the next load probes again (step 1).
        QString description;
        QCOMPARE(errorNumber([&] { f.store.SetConnection(f.connection.get()); }, &description), int(kvAdoError::StatementFailed));
        QString result;
        f.load(at(2004, 3, 17), &result);
        QCOMPARE(result, QStringLiteral("12-1\r\nUnable to execute multiple statements at a time"));
        // Bound statements: one table name or error 5, before anything is sent.
        f.store.setParameterizedSql(true);
        f.trace.clear();
        QCOMPARE(errorNumber([&] { f.store.SetConnection(f.connection.get()); }, &description), 5);
        QVERIFY2(description.contains(QStringLiteral("kein einfacher Tabellenname")), qPrintable(description));
        f.store.setRecordSource(termine);
        QCOMPARE(errorNumber([&] { f.store.SetConnection(f.connection.get()); }), 0);
        f.trace.clear();
        f.store.setRecordSource(QStringLiteral("Termine WHERE 1=1 --"));
        f.load(at(2004, 3, 17), &result);
        QVERIFY2(result.startsWith(QStringLiteral("12-2\r\nRecordSource \"Termine WHERE 1=1 --\" ist kein einfacher")),
                 qPrintable(result));
        f.store.UpdateAppointment(1, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        QCOMPARE(f.reports.size(), 1);
        QCOMPARE(f.reports[0].code, 600);
        QVERIFY(f.trace.isEmpty());
    }

    void dayRowsInOrderWithTheirValues_data() { everyEngineAndMode(); }
    void dayRowsInOrderWithTheirValues()
    {
        Fixture f;
        setUp(f);
        const qint32 fair = f.insert(at(2004, 3, 16, 10), at(2004, 3, 18), QStringLiteral("Messe"), {}, {}, 5);
        const qint32 late = f.insert(at(2004, 3, 17, 14, 30), at(2004, 3, 17, 15), QStringLiteral("Zahnarzt"),
                                     QStringLiteral("Kontrolle"), QStringLiteral("/home/a/brief.odt"), 12);
        f.insert(at(2004, 3, 17), at(2004, 3, 17), QStringLiteral("Urlaub"), {}, {}, 10);
        f.insert(at(2004, 3, 18), at(2004, 3, 18, 1), QStringLiteral("morgen"));
        QCOMPARE(dayRows(f.store, at(2004, 3, 15), 5),
                 QStringList({"", "Messe 10:00", "Messe <--, Urlaub , Zahnarzt 14:30", "Messe <--, morgen ", ""}));
        const auto cell = f.load(at(2004, 3, 17));
        QCOMPARE(cell->Entries(1)->DateID(), fair);
        QVERIFY(cell->Entries(1)->IsContinuedDate() && !cell->Entries(2)->IsContinuedDate());
        QCOMPARE(cell->Entries(1)->ImgId(), qint16(0));   // below 10
        QCOMPARE(cell->Entries(2)->ImgId(), qint16(10));
        const ctlEntry *dentist = cell->Entries(3);
        QCOMPARE(dentist->DateID(), late);
        QCOMPARE(dentist->datDateEnd(), at(2004, 3, 17, 15));
        QCOMPARE(dentist->Remark(), QStringLiteral("Kontrolle"));
        QCOMPARE(dentist->Document(), QStringLiteral("/home/a/brief.odt"));
        QCOMPARE(dentist->ImgId(), qint16(12));
        QCOMPARE(dentist->BackColor(), CellBackColor);
        QVERIFY(cell->Entries(2)->Remark().isEmpty() && cell->Entries(2)->Document().isEmpty()); // Null
        QCOMPARE(f.sent(QStringLiteral("SELECT Termine.* From Termine Where")), 6);
    }

    void rowsWithoutOptionalColumns_data() { everyEngineAndMode(); }
    void rowsWithoutOptionalColumns()
    {
        Fixture f;
        setUp(f, false);
        f.connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"),
                              {QVariant::fromValue(at(2004, 3, 17, 8)), QVariant::fromValue(at(2004, 3, 17, 9)),
                               QStringLiteral("a")});
        const auto cell = f.load(at(2004, 3, 17));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->ImgId(), qint16(0));
        f.store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("b"), QStringLiteral("r"),
                                  QStringLiteral("d"), 12);
        QCOMPARE(f.trace.last(), QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"));
        f.store.UpdateAppointment(1, at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("c"), QStringLiteral("r"), {}, 12);
        QVERIFY2(f.trace.last().contains(QStringLiteral("Name")) && !f.trace.last().contains(QStringLiteral("Remark")),
                 qPrintable(f.trace.last()));
    }

    //! A host's rows may hold text without seconds; both modes compare alike and find them.
    void minuteTextRowsAreFoundAlike_data() { everyEngineAndMode(); }
    void minuteTextRowsAreFoundAlike()
    {
        Fixture f;
        setUp(f);
        f.connection->Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES ('2004-03-16 10:00', "
                                             "'2004-03-18 00:00', 'Messe'), ('2004-03-19 00:00', '2004-03-19 00:00', 'Urlaub')"));
        QCOMPARE(dayRows(f.store, at(2004, 3, 15), 6), QStringList({"", "Messe 10:00", "Messe <--", "Messe <--", "Urlaub ", ""}));
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 18)), std::optional<kvDate>(at(2004, 3, 19)));
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 19)), std::optional<kvDate>(at(2004, 3, 16)));
    }

    //! The grid's days show exactly the rows they show with their own queries.
    void dayLoadFloorFindsTheSameRows_data() { everyEngineAndMode(); }
    void dayLoadFloorFindsTheSameRows()
    {
        QFETCH(QString, engine);
        QFETCH(bool, parameterized);
        Fixture f;
        setUp(f);
        const kvDate first = at(2026, 10, 26); // the month grid of November 2026
        f.insert(at(2026, 6, 1, 9), at(2027, 2, 1, 17), QStringLiteral("Elternzeit"));
        f.insert(at(2026, 10, 20), at(2026, 10, 26), QStringLiteral("bis Mitternacht"));
        f.insert(at(2026, 10, 25, 23, 59), at(2026, 10, 26, 0, 1), QStringLiteral("über Mitternacht"));
        f.insert(at(2026, 10, 25, 8), at(2026, 10, 25, 9), QStringLiteral("Vortag"));
        f.insert(at(2026, 10, 26), at(2026, 10, 26), QStringLiteral("ganztägig"));
        f.insert(at(2026, 12, 6, 23, 30), at(2026, 12, 8), QStringLiteral("in das nächste Blatt"));
        const QStringList unbounded = dayRows(f.store, first, 43);
        QCOMPARE(unbounded.constFirst(), QStringLiteral("Elternzeit <--, bis Mitternacht <--, über Mitternacht <--, ganztägig "));
        f.trace.clear();
        f.store.BeginDayLoads(first, 42);
        QCOMPARE(dayRows(f.store, first, 43), unbounded);
        QCOMPARE(f.sent(QStringLiteral("SELECT Termine.* From Termine Where (Termine.DateBegin >= ?) And (Termine.DateBe")),
                 parameterized ? 1 : 0);
        // A day before or after the grid, and any day after EndDayLoads, runs its own query.
        QCOMPARE(f.load(at(2026, 10, 25))->EntriesCount(), 4);
        f.store.EndDayLoads();
        QCOMPARE(dayRows(f.store, first, 1), unbounded.mid(0, 1));
        if (!parameterized)
            QCOMPARE(f.trace.constLast(), kvSqlTexts::DayQuery(termine, first, 3));
        QFile log(m_mariaDb.value(QStringLiteral("general_log")));   // plain texts arrive as queries, bound ones prepared
        const QString sent = (parameterized ? QStringLiteral("Prepare\t") : QStringLiteral("Query\t")) + f.trace.constLast();
        if (engine == QStringLiteral("MariaDB"))
            QVERIFY(log.open(QIODevice::ReadOnly) && log.readAll().contains(sent.toUtf8()));
        QCOMPARE(f.sent(QStringLiteral("SELECT Termine.* From Termine Where ((")), parameterized ? 3 : 45);
        QVERIFY(f.reports.isEmpty());
    }

    /*!
        Rows written between two grids by another connection, or by the host on the store's own,
        are found however long before the grid they begin, and leave it when shortened.
    */
    void otherWritersReachIntoTheGrid_data()
    {
        columns();
        QTest::addColumn<bool>("sameConnection");
        for (const char *engine : {"SQLite", "MariaDB"}) {
            for (bool parameterized : {false, true}) {
                QTest::addRow("%s/%s/another connection", engine, parameterized ? "ParameterizedSql" : "legacy")
                    << QString::fromLatin1(engine) << parameterized << false;
            }
            QTest::addRow("%s/ParameterizedSql/the host's connection", engine) << QString::fromLatin1(engine) << true << true;
        }
    }
    void otherWritersReachIntoTheGrid()
    {
        QFETCH(bool, sameConnection);
        Fixture f;
        setUp(f);
        kvConnection other;
        if (!sameConnection)
            other.Open(f.connection->ConnectionString());
        kvConnection &writer = sameConnection ? *f.connection : other;
        const kvDate first = at(2026, 10, 26);
        const auto grid = [&f, &first] {
            f.store.BeginDayLoads(first, 42);
            const QStringList rows = dayRows(f.store, first, 42);
            f.store.EndDayLoads();
            return rows;
        };
        f.insert(at(2026, 11, 10, 9), at(2026, 11, 10, 10), QStringLiteral("kurz"));
        QCOMPARE(grid().constFirst(), QString());

        writer.Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES (?, ?, ?)"),
                       {QVariant::fromValue(at(2019, 3, 1, 9)), QVariant::fromValue(at(2026, 11, 3, 17)),
                        QStringLiteral("Sabbatjahr")});
        QStringList rows = grid();
        QCOMPARE(rows, dayRows(f.store, first, 42));   // as each day's own query finds them
        QCOMPARE(rows.constFirst(), QStringLiteral("Sabbatjahr <--"));
        QCOMPARE(rows.at(8), QStringLiteral("Sabbatjahr <--"));
        QCOMPARE(rows.at(9), QString());

        writer.Execute(QStringLiteral("UPDATE Termine SET DateEnd = ? WHERE Name = ?"),
                       {QVariant::fromValue(at(2026, 10, 25, 12)), QStringLiteral("Sabbatjahr")});
        rows = grid();
        QCOMPARE(rows, dayRows(f.store, first, 42));
        QCOMPARE(rows.filter(QStringLiteral("Sabbatjahr")), QStringList());
        QCOMPARE(rows.at(15), QStringLiteral("kurz 09:00"));

        f.store.InsertAppointment(at(2010, 1, 1), at(2026, 10, 27, 12), QStringLiteral("Elternzeit"), {}, {}, 0);
        rows = grid();
        QCOMPARE(rows, dayRows(f.store, first, 42));
        QCOMPARE(rows.mid(0, 3), QStringList({"Elternzeit <--", "Elternzeit <--", ""}));
        QVERIFY(f.reports.isEmpty());
    }

    /*!
        The longest duration, from which each grid's query starts, comes from the duration index
        of a table made by kvAppointmentTable; a table without it gives the same rows, reading all.
    */
    void longestDurationFromTheIndex_data()
    {
        QTest::addColumn<bool>("withIndex");
        QTest::newRow("made by kvAppointmentTable") << true;
        QTest::newRow("without the duration index") << false;
    }
    void longestDurationFromTheIndex()
    {
        QFETCH(bool, withIndex);
        Fixture f;
        open(f, QStringLiteral("SQLite"));
        kvAppointmentTable::Create(*f.connection, termine);
        if (!withIndex)
            f.connection->Execute(QStringLiteral("DROP INDEX IX_Termine_Duration"));
        const QString longest =
            kvParameterizedSql::LongestDurationQuery(kvTableName::Parse(termine, kvDataSource::SQLite)).Text;
        QSqlQuery plan(f.connection->Database());
        QVERIFY(plan.exec(QStringLiteral("EXPLAIN QUERY PLAN ") + longest));
        QStringList steps;
        while (plan.next())
            steps << plan.value(3).toString();
        QCOMPARE(steps.filter(QStringLiteral("Termine USING INDEX IX_Termine_Duration")).size(), withIndex ? 1 : 0);
        const auto read = [&f, &longest] {
            kvRecordset recordset;
            recordset.Open(longest, f.connection.get());
            return recordset.Fields().Item(0).Value().toString() + u'/' + recordset.Fields().Item(1).Value().toString();
        };

        const kvDate first = at(2026, 10, 26);
        f.insert(at(2019, 3, 1, 12), at(2026, 10, 27), QStringLiteral("Sabbatjahr"));
        f.insert(at(2026, 11, 3, 9), at(2026, 11, 3, 10), QStringLiteral("kurz"));
        QCOMPARE(read(), QStringLiteral("2796.5/0"));
        f.store.setParameterizedSql(true);
        f.store.setRecordSource(termine);
        f.store.SetConnection(f.connection.get());
        f.store.BeginDayLoads(first, 42);
        const QStringList grid = dayRows(f.store, first, 42);
        f.store.EndDayLoads();
        QCOMPARE(grid, dayRows(f.store, first, 42));
        QCOMPARE(grid.mid(0, 3), QStringList({"Sabbatjahr <--", "Sabbatjahr <--", ""}));
        f.connection->Execute(
            QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name) VALUES ('kein Datum', '2026-11-01', 'x')"));
        QCOMPARE(read(), QStringLiteral("/1"));
    }

    void nothingToQuery_data()
    {
        QTest::addColumn<QString>("missing");
        for (const char *missing : {"RecordSource", "ConnectionString", "Connection", "deleted connection"})
            QTest::newRow(missing) << QString::fromLatin1(missing);
    }
    void nothingToQuery()
    {
        QFETCH(QString, missing);
        Fixture f;
        open(f, QStringLiteral("SQLite"));
        kvAppointmentTable::Create(*f.connection, termine, true);
        f.insert(at(2004, 3, 17, 8), at(2004, 3, 17, 9), QStringLiteral("a"));
        f.store.setRecordSource(missing == QStringLiteral("RecordSource") ? QString() : termine);
        f.store.setDbDateFormat(3);
        if (missing == QStringLiteral("ConnectionString"))
            f.connection = std::make_unique<kvConnection>();
        if (missing != QStringLiteral("Connection"))
            errorNumber([&] { f.store.SetConnection(f.connection.get()); });
        if (missing == QStringLiteral("deleted connection"))
            f.connection.reset();
        f.trace.clear();
        QString result = QStringLiteral("unchanged");
        QCOMPARE(loadDay(f.store, at(2004, 3, 17), 0, &result)->EntriesCount(), 0);
        QVERIFY(result.isEmpty());
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 1)), std::nullopt);
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 31)), std::nullopt);
        QVERIFY2(f.trace.isEmpty(), qPrintable(f.trace.join(u'\n')));
    }

    void dayLoadFailures_data()
    {
        columns();
        QTest::addColumn<QStringList>("statements");  // run before the load
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QStringList>("rowsLeft");
        const QString row = QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name, ImageID) VALUES ");
        for (const bool parameterized : {false, true}) {
            const char *mode = parameterized ? "ParameterizedSql" : "legacy";
            QTest::addRow("%s: missing table, step 4", mode) << "SQLite" << parameterized << QStringList{"DROP TABLE Termine"}
                << "12-4\r\nno such table: Termine" << QStringList();
            QTest::addRow("%s: ImageID overflows, step 5", mode) << "SQLite" << parameterized
                << QStringList{row + "('2004-03-17 08:00', '2004-03-17 09:00', 'groß', 40000)"} << "12-5\r\nÜberlauf"
                << QStringList();
            // The step is not reset per row: the second row fails while it still reads 9.
            QTest::addRow("%s: a later row fails, the earlier stays", mode) << "SQLite" << parameterized
                << QStringList{row + "('2004-03-17 08:00', '2004-03-17 09:00', 'gut', 12), "
                                     "('2004-03-17 10:00', '2004-03-17 11:00', 'groß', 40000)"}
                << "12-9\r\nÜberlauf" << QStringList{"gut"};
            // A host's own table may allow a Null name.
            QTest::addRow("%s: Null name, step 8", mode) << "SQLite" << parameterized
                << QStringList{"DROP TABLE Termine", "CREATE TABLE Termine (DateID INTEGER PRIMARY KEY AUTOINCREMENT, "
                               "DateBegin DATETIME, DateEnd DATETIME, Name TEXT, Remark TEXT, Document TEXT, ImageID SMALLINT)",
                               row + "('2004-03-17 08:00', '2004-03-17 09:00', NULL, 12)"}
                << "12-8\r\nUnzulässige Verwendung von Null" << QStringList();
            QTest::addRow("%s: MariaDB, missing table, step 4", mode) << "MariaDB" << parameterized
                << QStringList{"DROP TABLE Termine"}
                << "12-4\r\nTable 'kvkalivo_test.Termine' doesn't exist" << QStringList();
        }
        const char *outOfRange[][2] = {{"-657435.5", "'2004-03-17 10:00'"}, {"'2004-03-17 09:00'", "2958466.0"},
                                       {"'0099-12-31 10:00'", "'2004-03-17 10:00'"}};
        QTest::newRow("the first and the last second are read") << "SQLite" << false
            << QStringList{row + "(-657434.0, '2004-03-17 10:00', 'a', 0), ('2004-03-17 09:00', 2958465.999988426, 'b', 0)"}
            << "" << QStringList{"a", "b"};
        for (const auto &[begin, end] : outOfRange)
            QTest::addRow("stored %s .. %s is a type mismatch", begin, end) << "SQLite" << false
                << QStringList{row + QStringLiteral("(%1, %2, 'x', 0)").arg(QLatin1String(begin), QLatin1String(end))}
                << "12-8\r\nTypen unverträglich" << QStringList();
    }
    void dayLoadFailures()
    {
        QFETCH(QStringList, statements);
        QFETCH(QString, expected);
        QFETCH(QStringList, rowsLeft);
        Fixture f;
        setUp(f);
        for (const QString &statement : statements)
            f.connection->Execute(statement);
        QString result;
        const auto cell = f.load(at(2004, 3, 17), &result);
        QCOMPARE(result, expected);
        QStringList names;
        for (int row = 1; row <= cell->EntriesCount(); ++row)
            names << cell->Entries(qint16(row))->Text();
        QCOMPARE(names, rowsLeft);
    }

    //! What the sink throws fails the load at the step that called it: adding 8, marking 9.
    void rowSinkFailuresKeepTheirSteps_data() { everyEngineAndMode(); }
    void rowSinkFailuresKeepTheirSteps()
    {
        Fixture f;
        setUp(f);
        f.insert(at(2004, 3, 16, 10), at(2004, 3, 18), QStringLiteral("Messe"), QStringLiteral("Halle 3"), {}, 12);
        RecordingSink sink;
        QCOMPARE(f.store.LoadDayAppointments(at(2004, 3, 17), sink), QString());
        QCOMPARE(sink.rows, QStringList{"Messe Halle 3 12 16 10:00 <--"});
        sink.failMarking = true;
        QCOMPARE(f.store.LoadDayAppointments(at(2004, 3, 17), sink), QStringLiteral("12-9\r\nmark"));
        QCOMPARE(f.store.LoadDayAppointments(at(2004, 3, 16), sink), QString()); // not continued: not marked
        sink.failAdding = true;
        QCOMPARE(f.store.LoadDayAppointments(at(2004, 3, 16), sink), QStringLiteral("12-8\r\nadd"));
        // A cell that refuses the row (reported as 200) has no row to mark: error 5 at step 9.
        kvScriptedMessageBox box;
        kvScopedService installed(box);
        kvFaultInjection::Arm(QStringLiteral("ctlDay.AddDate"), 0, QStringLiteral("Testfehler"));
        QString result;
        QCOMPARE(f.load(at(2004, 3, 17), &result)->EntriesCount(), 0);
        QCOMPARE(result, QStringLiteral("12-9\r\nUngültiger Prozeduraufruf oder ungültiges Argument"));
        QCOMPARE(box.LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 200\r\nTestfehler"));
    }

    void nextAndPreviousFindDays_data() { everyEngineAndMode(); }
    void nextAndPreviousFindDays()
    {
        Fixture f;
        setUp(f);
        f.insert(at(2004, 3, 21, 23, 30), at(2004, 3, 22, 1), QStringLiteral("spät"));
        f.insert(at(2004, 3, 25, 9, 15), at(2004, 3, 25, 10), QStringLiteral("später"));
        f.insert(at(2004, 3, 15), at(2004, 3, 15, 1), QStringLiteral("Mitternacht"));
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 15)), std::nullopt);
        const std::optional<kvDate> next = f.store.FindNextAppointment(at(2004, 3, 21));
        QCOMPARE(next, std::optional<kvDate>(at(2004, 3, 25)));   // the day, without 09:15
        QCOMPARE(next->secondsOfDay(), 0);
        f.insert(at(2004, 3, 22), at(2004, 3, 22), QStringLiteral("Mitternacht"));
        f.insert(at(2004, 3, 14, 18, 30), at(2004, 3, 15, 2), QStringLiteral("Vorabend"));
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 21)), std::optional<kvDate>(at(2004, 3, 22)));
        QCOMPARE(f.store.FindPreviousAppointment(at(2004, 3, 15)), std::optional<kvDate>(at(2004, 3, 14)));
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 25)), std::nullopt);
        QCOMPARE(f.sent(QStringLiteral("SELECT Termine.DateBegin AS NextDate")), 5);
        // A failing search finds nothing and reports nothing.
        f.store.setRecordSource(QStringLiteral("Fehlt"));
        QCOMPARE(f.store.FindNextAppointment(at(2004, 3, 21)), std::nullopt);
        QVERIFY(f.reports.isEmpty());
    }

    void insertWritesWhatIsTyped_data() { everyEngineAndMode(); }
    void insertWritesWhatIsTyped()
    {
        Fixture f;
        setUp(f);
        const QString injection = QStringLiteral("x'); DROP TABLE Termine; --");
        f.store.InsertAppointment(at(2026, 3, 29, 2, 30), at(2026, 3, 31), QStringLiteral("Peter's Messe"), injection,
                                  QStringLiteral("/home/a/plan.pdf"), 12);   // 02:30 does not exist in Berlin that night
        QVERIFY(f.reports.isEmpty());
        QCOMPARE(f.trace, QStringList({QStringLiteral("SELECT * FROM Termine"), QStringLiteral(
            "INSERT INTO Termine (DateBegin, DateEnd, Name, Remark, Document, ImageID) VALUES (?, ?, ?, ?, ?, ?)")}));
        const QVariantMap row = f.rows().at(0);
        QCOMPARE(kvField::ToDate(row.value(QStringLiteral("DateBegin"))), at(2026, 3, 29, 2, 30));
        QCOMPARE(kvField::ToDate(row.value(QStringLiteral("DateEnd"))), at(2026, 3, 31));
        QCOMPARE(row.value(QStringLiteral("Name")).toString(), QStringLiteral("Peter's Messe"));
        QCOMPARE(row.value(QStringLiteral("Remark")).toString(), injection);
        QCOMPARE(row.value(QStringLiteral("Document")).toString(), QStringLiteral("/home/a/plan.pdf"));
        QCOMPARE(row.value(QStringLiteral("ImageID")).toInt(), 12);
        QCOMPARE(f.load(at(2026, 3, 30))->Entries(1)->Text(), QStringLiteral("Peter's Messe"));
        QCOMPARE(f.load(at(2026, 3, 29))->Entries(1)->datDateBegin(), at(2026, 3, 29, 2, 30));
        f.store.setRecordSource(QStringLiteral("Fehlt"));
        f.store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        QCOMPARE(f.reports.size(), 1);
        QCOMPARE(f.reports[0].code, 800);
        QVERIFY2(f.reports[0].description.contains(QStringLiteral("Fehlt")), qPrintable(f.reports[0].description));
    }

    //! Without a connection an update does nothing; an insert reports 800.
    void writersWithoutConnection()
    {
        kvAppointmentStore store;
        QList<int> codes;
        store.SetReporter([&](int code, const QString &description) { codes << (description.isEmpty() ? -code : code); });
        store.UpdateAppointment(5, at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        store.InsertAppointment(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("x"), {}, {}, 0);
        QCOMPARE(codes, QList<int>{800});
    }

    //! The plain UPDATE qualifies its columns, which neither engine accepts; the plain DELETE ("DELETE T.* FROM T")
    //! works on MariaDB only; bound statements work on both.
    void updateAndDeleteOnEachEngine_data()
    {
        columns();
        QTest::addColumn<QString>("updateFailure");   // the report's description starts so; empty: none
        QTest::addColumn<QString>("deleteFailure");
        QTest::newRow("SQLite/legacy") << "SQLite" << false << "near \".\": syntax error" << "near \"Termine\": syntax error";
        QTest::newRow("SQLite/ParameterizedSql") << "SQLite" << true << "" << "";
        QTest::newRow("MariaDB/legacy") << "MariaDB" << false << "You have an error in your SQL syntax" << "";
        QTest::newRow("MariaDB/ParameterizedSql") << "MariaDB" << true << "" << "";
    }
    void updateAndDeleteOnEachEngine()
    {
        QFETCH(QString, updateFailure);
        QFETCH(QString, deleteFailure);
        Fixture f;
        setUp(f);
        const qint32 other = f.insert(at(2004, 3, 1, 9), at(2004, 3, 1, 10), QStringLiteral("andere"));
        const qint32 id = f.insert(at(2004, 3, 17, 9), at(2004, 3, 17, 10), QStringLiteral("alt"));
        const QString name = QStringLiteral("Peter's x'); DROP TABLE Termine; --");
        f.store.UpdateAppointment(id, at(2004, 3, 18, 14, 5), at(2004, 3, 18, 15), name, QStringLiteral("r"),
                                  QStringLiteral("d"), 12);
        if (updateFailure.isEmpty()) {
            QVERIFY(f.reports.isEmpty());
            QCOMPARE(f.rows().at(0).value(QStringLiteral("DateID")).toInt(), other);
            QCOMPARE(f.name(0), QStringLiteral("andere"));
            const auto cell = f.load(at(2004, 3, 18));
            QCOMPARE(cell->EntriesCount(), 1);
            QCOMPARE(cell->Entries(1)->Text(), name);
            QCOMPARE(cell->Entries(1)->datDateEnd(), at(2004, 3, 18, 15));
            QCOMPARE(cell->Entries(1)->Remark(), QStringLiteral("r"));
            QCOMPARE(cell->Entries(1)->ImgId(), qint16(12));
        } else {
            QCOMPARE(f.reports.size(), 1);
            QCOMPARE(f.reports[0].code, 600);
            QVERIFY2(f.reports[0].description.startsWith(updateFailure), qPrintable(f.reports[0].description));
            QCOMPARE(f.name(1), QStringLiteral("alt"));
        }
        f.reports.clear();
        f.store.DeleteAppointment(id);
        QCOMPARE(f.rows().size(), deleteFailure.isEmpty() ? 1 : 2);
        QCOMPARE(f.name(0), QStringLiteral("andere"));
        QCOMPARE(f.reports.size(), deleteFailure.isEmpty() ? 0 : 1);
        if (!deleteFailure.isEmpty()) {
            QCOMPARE(f.reports[0].code, 700);
            QCOMPARE(f.reports[0].description, deleteFailure);
        }
    }
};

QTEST_MAIN(tst_kvAppointmentStore)
#include "tst_kvAppointmentStore.moc"
