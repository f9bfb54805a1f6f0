#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAppointmentStore.h"
#include "kvControlTestServices.h"
#include "kvMariaDbServer.h"
#include "kvRecordset.h"
#include "kvTestCalendar.h"
#include "kvKalivoTestAccess.h"
#include "kvTestSupport.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace {

const QDate fixedToday(2026, 11, 22);

kvDate at(int day, int hour = 0)
{
    return kvDate::fromDate(QDate(2026, 11, day), QTime(hour, 0));
}

//! Resumes a paused server after \a seconds unless finished first: no test can hang on it.
class ResumeGuard
{
public:
    ResumeGuard(kvMariaDbServer &server, int seconds)
        : m_thread([this, &server, seconds] {
              for (int tenth = 0; tenth < seconds * 10 && !m_done; ++tenth)
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

} // namespace

/*!
    The control on a MariaDB server of the test's own that is frozen (SIGSTOP), killed and
    restarted: the window is never blocked longer than the connection string's timeouts,
    each failure is reported once with its code, and the connection heals by itself.
*/
class tst_kvMariaDbFaults : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kvControlTestServices> m_services;
    std::unique_ptr<kvMariaDbServer> m_server;

    kvScriptedMessageBox &messageBox() { return m_services->messageBox(); }

    QString generalLog() const
    {
        QFile file(m_server->generalLogPath());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    std::unique_ptr<kvTestCalendar> calendarWithOneAppointment()
    {
        auto calendar = std::make_unique<kvTestCalendar>(
            m_server->connectionString(QStringLiteral("Connect Timeout=2;Command Timeout=2")));
        calendar->add(at(17, 9), at(17, 10), QStringLiteral("Zahnarzt"));
        calendar->control.Refresh();
        return calendar;
    }

private slots:
    void initTestCase()
    {
        m_services = std::make_unique<kvControlTestServices>(fixedToday);
        m_server = std::make_unique<kvMariaDbServer>(qEnvironmentVariable("KV_MARIADB_FAULTS_DIR"));
        QVERIFY2(m_server->started(), qPrintable(m_server->problem()));
    }

    void cleanupTestCase()
    {
        m_server.reset();
    }

    void init()
    {
        messageBox().Clear();
    }

    void aFrozenServerTimesOutOnceAndTheControlRecovers()
    {
        const auto calendar = calendarWithOneAppointment();
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar->control, 2)->EntriesCount(), 1);
        {
            QVERIFY(m_server->pause());
            ResumeGuard guard(*m_server, 30);
            calendar->control.Refresh();
            QCOMPARE(messageBox().CallCount(), 1);
            const QString prompt = messageBox().LastCall().prompt;
            QVERIFY2(prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 12-4\r\n")), qPrintable(prompt));
            QVERIFY2(prompt.contains(QStringLiteral("keine Antwort innerhalb von 2 s")), qPrintable(prompt));
            QVERIFY(m_server->resume());
        }
        calendar->control.Refresh();
        QCOMPARE(messageBox().CallCount(), 1);
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar->control, 2)->EntriesCount(), 1);
    }

    void afterARestartReadsHealAndAWriteIsNeverSentTwice()
    {
        const auto calendar = calendarWithOneAppointment();
        const qint32 id = kvKalivoTestAccess::DayCell(calendar->control, 2)->Entries(1)->DateID();
        QVERIFY(m_server->kill());
        calendar->control.Refresh();
        QCOMPARE(messageBox().CallCount(), 1);   // the server is down: said once for the reload
        QVERIFY2(messageBox().LastCall().prompt.contains(QStringLiteral("Keine Verbindung zum MySQL/MariaDB-Server")),
                 qPrintable(messageBox().LastCall().prompt));

        QVERIFY(m_server->restart());
        calendar->control.Refresh();
        QCOMPARE(messageBox().CallCount(), 1);
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar->control, 2)->EntriesCount(), 1);

        kvAppointmentStore *store = calendar->control.findChild<kvAppointmentStore *>();
        QVERIFY(m_server->kill());
        QVERIFY(m_server->restart());
        QList<int> codes;
        store->SetReporter([&codes](int code, const QString &) { codes << code; });
        const QString renamed = QStringLiteral("Zahnarzt nach Neustart");
        const int loggedBefore = int(generalLog().count(renamed));   // the log outlives earlier runs
        store->UpdateAppointment(id, at(17, 9), at(17, 10), renamed, {}, {}, 0);
        QCOMPARE(codes, QList<int>{600});   // the lost connection took the UPDATE along
        store->UpdateAppointment(id, at(17, 9), at(17, 10), renamed, {}, {}, 0);
        QCOMPARE(codes, QList<int>{600});
        QCOMPARE(generalLog().count(renamed), loggedBefore + 1);   // the restarted server executed it once
        QCOMPARE(calendar->names(), QStringList{renamed});
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
};

QTEST_MAIN(tst_kvMariaDbFaults)
#include "tst_kvMariaDbFaults.moc"
