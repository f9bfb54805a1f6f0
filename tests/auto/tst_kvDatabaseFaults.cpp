#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAppointmentStore.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvControlTestServices.h"
#include "kvDayLoading.h"
#include "kvError.h"
#include "kvTestCalendar.h"
#include "kvKalivoTestAccess.h"
#include "kvTestSupport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QDate fixedToday(2026, 11, 22);

kvDate at(int day, int hour = 0)
{
    return kvDate::fromDate(QDate(2026, 11, day), QTime(hour, 0));
}

//! A second connection to an SQLite file that holds its write lock, as "BEGIN EXCLUSIVE" in the sqlite3 shell.
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

struct Report
{
    int code = 0;
    QString description;
};

//! A store on an SQLite file with the appointment table, found at \c file.
struct StoreOnFile
{
    explicit StoreOnFile(const QString &folder)
        : file(folder + QStringLiteral("/faults.db"))
    {
        QFile::remove(file);
        kvConnection setup;
        setup.Open(QStringLiteral("Driver=SQLite3;Database=") + file);
        kvAppointmentTable::Create(setup, QStringLiteral("Termine"));
        setup.Execute(QStringLiteral("INSERT INTO Termine (DateBegin, DateEnd, Name, Remark, ImageID) VALUES "
                                     "('2026-11-17 09:00', '2026-11-17 10:00', 'Zahnarzt', 'Kontrolle', 12)"));
        store.setParameterizedSql(true);
        store.setRecordSource(QStringLiteral("Termine"));
        store.SetReporter([this](int code, const QString &description) { reports.append({code, description}); });
    }

    void open(const QString &options)
    {
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1;%2").arg(file, options));
    }

    QString file;
    kvConnection connection;
    kvAppointmentStore store;
    QList<Report> reports;
};

} // namespace

/*!
    Faults of a real SQLite file under the control: another connection holding the write lock,
    a file opened read-only, a file deleted while open. Nothing typed may be lost silently, and
    no wait may repeat per day.
*/
class tst_kvDatabaseFaults : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<kvControlTestServices> m_services;

private slots:
    void initTestCase()
    {
        m_services = std::make_unique<kvControlTestServices>(fixedToday);
    }

    void lockAtConnectLeavesTheOptionalColumnsToALaterProbe()
    {
        StoreOnFile f(m_folder.path());
        f.open(QStringLiteral("Command Timeout=1"));
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
        f.store.InsertAppointment(at(18, 9), at(18, 10), QStringLiteral("Friseur"), QStringLiteral("Schneiden"),
                                  QStringLiteral("Termin.txt"), 21);
        QVERIFY(f.reports.isEmpty());
        const auto written = loadDay(f.store, at(18), 0);
        QCOMPARE(written->EntriesCount(), 1);
        QCOMPARE(written->Entries(1)->Remark(), QStringLiteral("Schneiden"));
        QCOMPARE(written->Entries(1)->Document(), QStringLiteral("Termin.txt"));
        QCOMPARE(written->Entries(1)->ImgId(), qint16(21));
    }

    void aLockedFileIsWaitedForOncePerReload()
    {
        kvTestCalendar calendar;
        calendar.add(at(17, 9), at(17, 10), QStringLiteral("Zahnarzt"));
        calendar.connection.Close();
        calendar.connection.Open(QStringLiteral("Driver=SQLite3;Database=%1;Command Timeout=1")
                                     .arg(calendar.folder.filePath(QStringLiteral("t.db"))));
        calendar.control.setConnection(&calendar.connection);
        calendar.control.setRaiseErrorEvent(true);
        QList<int> errors;
        connect(&calendar.control, &kvKalivo::Error, this, [&errors](kvError &error) { errors << error.Number(); });
        FileLock lock(calendar.folder.filePath(QStringLiteral("t.db")));
        calendar.statements.clear();
        calendar.control.Refresh();
        calendar.control.setRaiseErrorEvent(false);
        QCOMPARE(errors, QList<int>{12});
        QCOMPARE(calendar.statements.size(), 1);   // one wait, then the rest of the reload is left
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->datDay(), at(17));   // the days are there, empty
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->EntriesCount(), 0);

        lock.release();
        calendar.control.Refresh();
        QCOMPARE(errors.size(), 1);
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->EntriesCount(), 1);
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
        StoreOnFile f(m_folder.path());
        f.open(deleted ? QString() : QStringLiteral("Mode=Read"));
        f.store.SetConnection(&f.connection);
        if (deleted)
            QVERIFY(QFile::remove(f.file));
        const auto cell = loadDay(f.store, at(17), 0);
        QCOMPARE(cell->EntriesCount(), 1);   // what is there can still be read

        f.store.InsertAppointment(at(18, 9), at(18, 10), QStringLiteral("Friseur"), {}, {}, 0);
        f.store.UpdateAppointment(cell->Entries(1)->DateID(), at(17, 11), at(17, 12), QStringLiteral("später"),
                                  {}, {}, 0);
        f.store.DeleteAppointment(cell->Entries(1)->DateID());
        QCOMPARE(f.reports.size(), 3);
        const QList<int> codes{800, 600, 700};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(f.reports[i].code, codes[i]);
            QCOMPARE(f.reports[i].description, QStringLiteral("attempt to write a readonly database"));
        }
        QCOMPARE(loadDay(f.store, at(17), 0)->Entries(1)->Text(), QStringLiteral("Zahnarzt"));
        QCOMPARE(loadDay(f.store, at(18), 0)->EntriesCount(), 0);
    }
};

QTEST_MAIN(tst_kvDatabaseFaults)
#include "tst_kvDatabaseFaults.moc"
