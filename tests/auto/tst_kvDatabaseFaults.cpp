// Faults of real databases under the control: a locked or read-only SQLite file, one deleted while
// open, a MariaDB server of the test's own that is frozen (SIGSTOP), killed and restarted.
#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAppointmentStore.h"
#include "kvControlTestServices.h"
#include "kvDayLoading.h"
#include "kvKalivoTestAccess.h"
#include "kvDataTestSupport.h"
#include "kvTestCalendar.h"
#include "kvTestSupport.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

kvDate at(int day, int hour = 0)
{
    return kvDate::fromDate(QDate(2026, 11, day), QTime(hour, 0));
}

//! A second connection holding an SQLite file's write lock, as "BEGIN EXCLUSIVE" in the sqlite3 shell.
struct FileLock
{
    explicit FileLock(const QString &file)
    {
        holder.Open(QStringLiteral("Driver=SQLite3;Database=") + file);
        holder.Execute(QStringLiteral("BEGIN EXCLUSIVE"));
    }
    void release() { holder.Execute(QStringLiteral("ROLLBACK")); }
    kvConnection holder;
};

//! A MariaDB server of the test's own, through the fixture script ($KV_MARIADB_FIXTURE) in a folder of its own.
class kvMariaDbServer
{
public:
    explicit kvMariaDbServer(const QString &directory) : m_directory(directory)
    {
        if (run(QStringLiteral("start"))) {
            qputenv("KV_MARIADB_INFO", (directory + QStringLiteral("/mariadb.info")).toLocal8Bit());
            m_info = readMariaDbInfo(&m_problem);
        }
    }
    ~kvMariaDbServer() { run(QStringLiteral("stop")); }
    bool started() const { return !m_info.isEmpty(); }
    QString problem() const { return m_problem; }
    QString info(const char *key) const { return m_info.value(QString::fromLatin1(key)); }
    QString connectionString() const { return info("connection_string") + QStringLiteral(";Connect Timeout=2;Command Timeout=2"); }
    bool pause() { return run(QStringLiteral("pause")); }
    bool resume() { return run(QStringLiteral("resume")); }
    bool kill() { return run(QStringLiteral("kill")); }
    bool restart() { return run(QStringLiteral("restart")); }

private:
    bool run(const QString &command)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral("bash"), {qEnvironmentVariable("KV_MARIADB_FIXTURE"), command, m_directory});
        const bool ok = process.waitForFinished(180000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
        if (!ok)
            m_problem = QStringLiteral("mariadb-fixture.sh %1 failed: %2").arg(command, QString::fromLocal8Bit(process.readAll()));
        return ok;
    }
    QString m_directory;
    QHash<QString, QString> m_info;
    QString m_problem;
};

//! Resumes a paused server after 30 s unless finished first: no test can hang on it.
class ResumeGuard
{
public:
    explicit ResumeGuard(kvMariaDbServer &server)
        : m_thread([this, &server] {
              for (int tenth = 0; tenth < 300 && !m_done; ++tenth)
                  std::this_thread::sleep_for(std::chrono::milliseconds(100));
              if (!m_done)
                  server.resume();
          })
    {
    }
    ~ResumeGuard()
    {
        m_done = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_done{false};
    std::thread m_thread;
};

//! A store in bound-statement mode on an SQLite file holding one appointment.
struct StoreOnFile
{
    explicit StoreOnFile(const QString &folder, const QString &options) : file(folder + QStringLiteral("/faults.db"))
    {
        QFile::remove(file);
        connection.Open(QStringLiteral("Driver=SQLite3;Database=") + file);
        kvAppointmentTable::Create(connection, QStringLiteral("Termine"));
        connection.Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name, Remark, ImageID) VALUES "
                                          "('2026-11-17 09:00', '2026-11-17 10:00', 'Zahnarzt', 'Kontrolle', 12)"));
        connection.Close();
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1;%2").arg(file, options));
        store.setParameterizedSql(true);
        store.setRecordSource(QStringLiteral("Termine"));
        store.SetReporter([this](int code, const QString &description) { reports << QStringLiteral("%1 %2").arg(code).arg(description); });
    }
    QString file;
    kvConnection connection;
    kvAppointmentStore store;
    QStringList reports;
};

} // namespace

class tst_kvDatabaseFaults : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<kvControlTestServices> m_services;
    std::unique_ptr<kvMariaDbServer> m_server;
    int m_files = 0;

    kvScriptedMessageBox &messageBox() { return m_services->messageBox(); }

    QString generalLog() const
    {
        QFile file(m_server->info("general_log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private slots:
    void initTestCase()
    {
        m_services = std::make_unique<kvControlTestServices>(QDate(2026, 11, 22));
        m_server = std::make_unique<kvMariaDbServer>(qEnvironmentVariable("KV_MARIADB_FAULTS_DIR"));
        QVERIFY2(m_server->started(), qPrintable(m_server->problem()));
    }
    void cleanupTestCase() { m_server.reset(); }
    void init() { messageBox().Clear(); }

    //! The reload waits once (no wait per day), says so once with its step, and heals by itself.
    void aFailingReloadIsReportedOnceAndHeals_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("prompt");
        QTest::newRow("SQLite file locked") << "lock" << "kvKalivo-Fehlercode 12-4\r\ndatabase is locked";
        QTest::newRow("MariaDB frozen") << "pause" << "kvKalivo-Fehlercode 12-4\r\n";
        QTest::newRow("MariaDB killed") << "kill" << "Keine Verbindung zum MySQL/MariaDB-Server";
    }
    void aFailingReloadIsReportedOnceAndHeals()
    {
        QFETCH(QString, fault);
        QFETCH(QString, prompt);
        const QString sqlite = QStringLiteral("Driver=SQLite3;Database=%1;Command Timeout=1")
                                   .arg(m_folder.filePath(QStringLiteral("lock%1.db").arg(++m_files)));
        kvTestCalendar calendar(fault == QStringLiteral("lock")
                                    ? sqlite : m_server->connectionString());
        calendar.add(at(17, 9), at(17, 10), QStringLiteral("Zahnarzt"));
        calendar.control.Refresh();
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->EntriesCount(), 1);
        {
            std::optional<FileLock> lock;
            std::optional<ResumeGuard> guard;
            if (fault == QStringLiteral("lock"))
                lock.emplace(m_folder.filePath(QStringLiteral("lock%1.db").arg(m_files)));
            else if (fault == QStringLiteral("pause"))
                guard.emplace(*m_server);
            if (fault == QStringLiteral("pause"))
                QVERIFY(m_server->pause());
            else if (fault == QStringLiteral("kill"))
                QVERIFY(m_server->kill());
            calendar.statements.clear();
            calendar.control.Refresh();
            QCOMPARE(messageBox().CallCount(), 1);
            QVERIFY2(messageBox().LastCall().prompt.contains(prompt), qPrintable(messageBox().LastCall().prompt));
            if (fault == QStringLiteral("pause"))
                QVERIFY2(messageBox().LastCall().prompt.contains(QStringLiteral("keine Antwort innerhalb von 2 s")),
                         qPrintable(messageBox().LastCall().prompt));
            QCOMPARE(calendar.statements.size(), 1);   // one wait, then the rest of the reload is left
            QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->datDay(), at(17));   // the days are there, empty
            QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->EntriesCount(), 0);
            if (lock)
                lock->release();
            else
                QVERIFY(fault == QStringLiteral("pause") ? m_server->resume() : m_server->restart());
        }
        calendar.control.Refresh();
        QCOMPARE(messageBox().CallCount(), 1);
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->EntriesCount(), 1);
    }

    //! A write lost with the connection is reported (600) and never sent again.
    void aWriteIsNeverSentTwiceAfterARestart()
    {
        kvTestCalendar calendar(m_server->connectionString());
        calendar.add(at(17, 9), at(17, 10), QStringLiteral("Zahnarzt"));
        calendar.control.Refresh();
        const qint32 id = kvKalivoTestAccess::DayCell(calendar.control, 2)->Entries(1)->DateID();
        kvAppointmentStore *store = calendar.control.findChild<kvAppointmentStore *>();
        QVERIFY(m_server->kill());
        QVERIFY(m_server->restart());
        QList<int> codes;
        store->SetReporter([&codes](int code, const QString &) { codes << code; });
        const QString renamed = QStringLiteral("Zahnarzt nach Neustart");
        const int loggedBefore = int(generalLog().count(renamed));   // the log outlives earlier runs
        store->UpdateAppointment(id, at(17, 9), at(17, 10), renamed, {}, {}, 0);
        QCOMPARE(codes, QList<int>{600});
        store->UpdateAppointment(id, at(17, 9), at(17, 10), renamed, {}, {}, 0);
        QCOMPARE(codes, QList<int>{600});
        QCOMPARE(generalLog().count(renamed), loggedBefore + 1);
        QCOMPARE(calendar.names(), QStringList{renamed});
    }

    void aWrappedDatabaseIsReopenedInPlace()
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), QStringLiteral("host's own"));
        database.setHostName(m_server->info("host"));
        database.setPort(m_server->info("port").toInt());
        database.setDatabaseName(m_server->info("database"));
        database.setUserName(m_server->info("user"));
        database.setPassword(m_server->info("password"));
        QVERIFY(database.open());
        {
            const std::unique_ptr<kvConnection> connection(kvConnection::Wrap(database));
            QVERIFY(m_server->kill());
            QVERIFY(m_server->restart());
            kvRecordset recordset;
            QCOMPARE(errorNumber([&] { recordset.Open(QStringLiteral("SELECT 1 AS One"), connection.get()); }), 0);
            QCOMPARE(recordset.Fields().Item(0).Value().toInt(), 1);
            QVERIFY(QSqlQuery(QStringLiteral("SELECT 1"), database).next());   // the host's handle healed too
        }
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("host's own"));
    }

    void lockAtConnectLeavesTheOptionalColumnsToALaterProbe()
    {
        StoreOnFile f(m_folder.path(), QStringLiteral("Command Timeout=1"));
        FileLock lock(f.file);
        QString description;
        QVERIFY(errorNumber([&] { f.store.SetConnection(&f.connection); }, &description) != 0);
        QCOMPARE(description, QStringLiteral("database is locked"));
        QString result;
        loadDay(f.store, at(17), 0, &result);
        QCOMPARE(result, QStringLiteral("12-1\r\ndatabase is locked"));
        lock.release();
        const auto cell = loadDay(f.store, at(17), 0);
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->Remark(), QStringLiteral("Kontrolle"));
        QCOMPARE(cell->Entries(1)->ImgId(), qint16(12));
    }

    void writesThatCannotBeMadeAreReported_data()
    {
        QTest::addColumn<bool>("deleted");   // else opened read-only
        QTest::newRow("read-only") << false;
        QTest::newRow("deleted while open") << true;
    }
    void writesThatCannotBeMadeAreReported()
    {
        QFETCH(bool, deleted);
        StoreOnFile f(m_folder.path(), deleted ? QString() : QStringLiteral("Mode=Read"));
        f.store.SetConnection(&f.connection);
        if (deleted)
            QVERIFY(QFile::remove(f.file));
        const auto cell = loadDay(f.store, at(17), 0);
        QCOMPARE(cell->EntriesCount(), 1);   // what is there can still be read
        f.store.InsertAppointment(at(18, 9), at(18, 10), QStringLiteral("Friseur"), {}, {}, 0);
        f.store.UpdateAppointment(cell->Entries(1)->DateID(), at(17, 11), at(17, 12), QStringLiteral("später"), {}, {}, 0);
        f.store.DeleteAppointment(cell->Entries(1)->DateID());
        const QString readonly = QStringLiteral(" attempt to write a readonly database");
        QCOMPARE(f.reports, QStringList({"800" + readonly, "600" + readonly, "700" + readonly}));
        QCOMPARE(loadDay(f.store, at(17), 0)->Entries(1)->Text(), QStringLiteral("Zahnarzt"));
        QCOMPARE(loadDay(f.store, at(18), 0)->EntriesCount(), 0);
    }
};

QTEST_MAIN(tst_kvDatabaseFaults)
#include "tst_kvDatabaseFaults.moc"
