// The edit flow as a user lives it, built twice: on SQLite, and on the CTest fixture's MariaDB
// server (KV_END_TO_END_ON_MARIADB).
#include "frmEdit.h"
#include "kvEditCalendar.h"
#include "kvMessageBox.h"

#include <QtTest>

#include <optional>

using Calendar = kvEditCalendar;
#ifdef KV_END_TO_END_ON_MARIADB
const auto database = kvTestCalendar::Database::MariaDb;
#else
const auto database = kvTestCalendar::Database::Sqlite;
#endif

class tst_kvEditEndToEnd : public QObject
{
    Q_OBJECT

    std::optional<kvEditTestServices> m_services;

private Q_SLOTS:
    void init() { m_services.emplace(); }
    void cleanup() { m_services.reset(); }

    void doubleClickRowChangesNameWithApostrophe()
    {
        Calendar calendar(database);
        calendar.add(at(18, 10), at(18, 11), QStringLiteral("Müller"));
        calendar.add(at(18, 12), at(18, 13), QStringLiteral("Mittag"));
        calendar.control.Refresh();
        m_services->runner.Enqueue(typeName(QStringLiteral("O'Brien")));
        calendar.doubleClickRow(18, 1);
        QCOMPARE(m_services->runner.ExecCount(), 1);
        QCOMPARE(m_services->runner.DialogNames().constFirst(), QStringLiteral("frmEdit"));
        // Shown with the control as owner: a window of its own, modal over the control's window.
        QCOMPARE(frmEdit::ThreadInstance().parentWidget(), calendar.control.window());
        QVERIFY(frmEdit::ThreadInstance().isWindow());
        QCOMPARE(m_services->messageBox().CallCount(), 0);
        QCOMPARE(calendar.names(), (QStringList{QStringLiteral("O'Brien"), QStringLiteral("Mittag")}));
        QCOMPARE(calendar.firstBegin(), at(18, 10).toDateTime());
        QCOMPARE(calendar.cell(18)->Entries(1)->Text(), QStringLiteral("O'Brien"));
        QCOMPARE(calendar.control.ActualDate(), QDate(2026, 11, 18));

        // The second row through the context menu's "Bearbeiten...".
        m_services->runner.Enqueue(typeName(QStringLiteral("Mittagessen")));
        calendar.rightClickRow(18, 2);
        calendar.chooseMenuItem(1);
        QCOMPARE(calendar.names(), (QStringList{QStringLiteral("O'Brien"), QStringLiteral("Mittagessen")}));
        QCOMPARE(calendar.cell(18)->Entries(2)->Text(), QStringLiteral("Mittagessen"));
    }

    void doubleClickDayCreatesAppointmentOnThatDay()
    {
        Calendar calendar(database);
        calendar.control.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&calendar.control));
        m_services->runner.Enqueue(typeName(QStringLiteral("Zahnarzt")));
        ctlDay *day = calendar.cell(17);
        calendar.doubleClick(day, QPoint(day->width() / 2, day->height() / 2));
        QCOMPARE(m_services->runner.ExecCount(), 1);
        QCOMPARE(kvKalivoTestAccess::SelectedEntryIndex(calendar.control), qint16(-1));
        QCOMPARE(calendar.names(), QStringList{QStringLiteral("Zahnarzt")});
        QCOMPARE(calendar.firstBegin().date(), QDate(2026, 11, 17));
        QCOMPARE(calendar.cell(17)->EntriesCount(), 1);
        QCOMPARE(calendar.cell(17)->Entries(1)->Text(), QStringLiteral("Zahnarzt"));
    }

    void editorDeleteButtonAsksAndDeletes()
    {
        Calendar calendar(database);
        calendar.add(at(18, 10), at(18, 11), QStringLiteral("Müller"));
        calendar.control.Refresh();
        m_services->runner.Enqueue(pressButton("cmdDelete"));
        m_services->messageBox().EnqueueAnswer(kvMessageBox::vbYes);
        calendar.doubleClickRow(18, 1);
        QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("Termin <10:00 Müller> löschen?"));
        QVERIFY(calendar.names().isEmpty());
        QCOMPARE(calendar.cell(18)->EntriesCount(), 0);
    }

    void databaseEventsWithHostCancellingWriteNothing()
    {
        Calendar calendar(database);
        calendar.add(at(18, 10), at(18, 11), QStringLiteral("Müller"));
        calendar.control.Refresh();
        calendar.control.setRaiseDatabaseEvents(true);
        int changes = 0, news = 0, deletes = 0;
        QObject::connect(&calendar.control, &kvKalivo::DateChange,
                         [&](qint32 &, QDateTime &, QDateTime &, QString &, QString &, QString &, qint16 &,
                             bool &bCancel) { ++changes; bCancel = true; });
        QObject::connect(&calendar.control, &kvKalivo::DateNew,
                         [&](QDateTime &, QDateTime &, QString &, QString &, QString &, qint16 &,
                             bool &bCancel) { ++news; bCancel = true; });
        QObject::connect(&calendar.control, &kvKalivo::DateDelete,
                         [&](qint32 &, QDateTime &, QDateTime &, QString &, QString &, QString &,
                             bool &bCancel) { ++deletes; bCancel = true; });
        calendar.statements.clear();

        m_services->runner.Enqueue(typeName(QStringLiteral("O'Brien")));
        calendar.doubleClickRow(18, 1);
        m_services->runner.Enqueue(typeName(QStringLiteral("Neu")));
        calendar.doubleClick(calendar.cell(19), QPoint(40, 80));
        m_services->runner.Enqueue(pressButton("cmdDelete"));
        calendar.doubleClickRow(18, 1);

        QCOMPARE(changes, 1);
        QCOMPARE(news, 1);
        QCOMPARE(deletes, 1);
        QCOMPARE(m_services->messageBox().CallCount(), 0);
        QVERIFY2(calendar.statements.isEmpty(), qPrintable(calendar.statements.join(QLatin1Char('\n'))));
        QCOMPARE(calendar.names(), QStringList{QStringLiteral("Müller")});
        QCOMPARE(calendar.cell(18)->Entries(1)->Text(), QStringLiteral("Müller"));
    }
};

QTEST_MAIN(tst_kvEditEndToEnd)
#include "tst_kvEditEndToEnd.moc"
