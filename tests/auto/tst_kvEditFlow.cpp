// The edit flow (EditAppointment) with its host events, on SQLite; the user stories on both
// engines are in tst_kvEditEndToEnd.cpp, the host's values in the demo's event panel test.
#include "frmEdit.h"
#include "kvEditCalendar.h"
#include "kvMessageBox.h"

#include <QAction>
#include <QToolBar>
#include <QtTest>

#include <optional>

using Calendar = kvEditCalendar;

class tst_kvEditFlow : public QObject
{
    Q_OBJECT

    std::optional<kvEditTestServices> m_services;

    void triggerNew(Calendar &calendar)
    {
        calendar.control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))
            ->findChild<QAction *>(QStringLiteral("New"))->trigger();
    }

private Q_SLOTS:
    void init() { m_services.emplace(); }
    void cleanup() { m_services.reset(); }

    // "Löschen..." asks with the row's time (blank for an all-day row); only "Ja" deletes and
    // reloads.
    void deleteAsks_data()
    {
        QTest::addColumn<kvDate>("begin");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<int>("rowsLeft");
        QTest::newRow("all day, No") << at(18) << int(kvMessageBox::vbNo) << "Termin < Urlaub> löschen?" << 2;
        QTest::newRow("timed, Cancel") << at(18, 14, 30) << int(kvMessageBox::vbCancel)
                                       << "Termin <14:30 Urlaub> löschen?" << 2;
        QTest::newRow("timed, Yes") << at(18, 14, 30) << int(kvMessageBox::vbYes)
                                    << "Termin <14:30 Urlaub> löschen?" << 1;
    }
    void deleteAsks()
    {
        QFETCH(kvDate, begin);
        QFETCH(int, answer);
        QFETCH(QString, prompt);
        QFETCH(int, rowsLeft);
        Calendar calendar;
        calendar.add(begin, begin.addMinutes(60), QStringLiteral("Urlaub"));
        calendar.add(at(18, 16), at(18, 17), QStringLiteral("Friseur"));
        calendar.control.Refresh();
        calendar.rightClickRow(18, 1);
        const int loads = calendar.dayLoads();
        m_services->messageBox().EnqueueAnswer(answer);
        calendar.chooseMenuItem(2);
        QCOMPARE(m_services->messageBox().LastCall().prompt, prompt);
        QCOMPARE(m_services->messageBox().LastCall().buttons, 35);
        QCOMPARE(calendar.names().size(), rowsLeft);
        QCOMPARE(calendar.names().constLast(), QStringLiteral("Friseur"));
        QCOMPARE(calendar.cell(18)->EntriesCount(), rowsLeft);
        QCOMPARE(calendar.dayLoads() > loads, rowsLeft == 1);
    }

    // With RaiseDatabaseEvents the host deletes: DateDelete instead of the question; the
    // control writes nothing and reloads only when the host did not cancel.
    void deleteWithDatabaseEventsAsksTheHost()
    {
        Calendar calendar;
        calendar.add(at(18), at(18), QStringLiteral("Urlaub"));
        calendar.control.Refresh();
        calendar.control.setRaiseDatabaseEvents(true);
        calendar.rightClickRow(18, 1);
        int raised = 0;
        bool cancel = true;
        QObject::connect(&calendar.control, &kvKalivo::DateDelete,
                         [&](qint32 &id, QDateTime &, QDateTime &, QString &name, QString &, QString &, bool &bCancel) {
                             ++raised;
                             QCOMPARE(id, 1);
                             QCOMPARE(name, QStringLiteral("Urlaub"));
                             QCOMPARE(bCancel, false);
                             bCancel = cancel;
                         });
        for (const int reloads : {0, 7}) {
            const int loads = calendar.dayLoads();
            calendar.chooseMenuItem(2);
            QCOMPARE(calendar.dayLoads() - loads, reloads);
            cancel = false;
        }
        QCOMPARE(raised, 2);
        QCOMPARE(m_services->messageBox().CallCount(), 0);
        QCOMPARE(calendar.names(), QStringList{QStringLiteral("Urlaub")});
    }

    // With RaiseEditEvent the host edits instead of the editor; "Löschen..." still asks.
    void editEventReplacesTheEditor()
    {
        Calendar calendar;
        calendar.add(at(18, 14, 30), at(18, 15), QStringLiteral("Zahnarzt"));
        calendar.control.Refresh();
        calendar.control.setRaiseEditEvent(true);
        QStringList seen;
        bool cancel = false;
        QObject::connect(&calendar.control, &kvKalivo::Edit,
                         [&](qint32 &id, QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                             qint16 &imgId, QString &document, qint16 &action, bool &bCancel) {
                             QVERIFY(remark.isEmpty() && document.isEmpty() && imgId == 0 && !bCancel);
                             seen << QStringLiteral("%1 %2 %3 %4 %5").arg(action).arg(id).arg(
                                 begin.toString(u"dd.MM. HH:mm"), end.toString(u"dd.MM. HH:mm"), name);
                             bCancel = cancel;
                         });
        calendar.statements.clear();
        int loads = calendar.dayLoads();
        triggerNew(calendar);
        QCOMPARE(calendar.dayLoads() - loads, 7); // not cancelled: reloaded
        cancel = true;
        loads = calendar.dayLoads();
        calendar.doubleClickRow(18, 1);
        QCOMPARE(calendar.dayLoads(), loads); // cancelled: no reload
        QCOMPARE(seen, (QStringList{"1 0 22.11. 00:00 22.11. 00:00 ", "3 1 18.11. 14:30 18.11. 15:00 Zahnarzt"}));
        QCOMPARE(m_services->runner.ExecCount(), 0);
        QCOMPARE(calendar.writes(), 0);

        calendar.rightClickRow(18, 1);
        m_services->messageBox().EnqueueAnswer(kvMessageBox::vbYes);
        calendar.chooseMenuItem(2);
        QCOMPARE(seen.size(), 2);
        QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("Termin <14:30 Zahnarzt> löschen?"));
        QVERIFY(calendar.names().isEmpty());
    }

    // "Neu" on the toolbar and menu item 0 open the editor on ActualDate.
    void newUsesActualDate()
    {
        Calendar calendar;
        calendar.control.setActualDate(QDate(2026, 11, 20));
        m_services->runner.Enqueue(typeName(QStringLiteral("Neu")));
        triggerNew(calendar);
        QCOMPARE(calendar.names(), QStringList{QStringLiteral("Neu")});
        QCOMPARE(calendar.firstBegin().date(), QDate(2026, 11, 20));
        QCOMPARE(calendar.cell(20)->EntriesCount(), 1);
        m_services->runner.Enqueue(typeName(QStringLiteral("Zweiter")));
        calendar.chooseMenuItem(0);
        QCOMPARE(calendar.names().size(), 2);
    }

    // No row in the selected day: reading the active entry fails at step 1.
    void failureOfGatheringReportsCode14()
    {
        Calendar calendar;
        calendar.control.EditAppointment(3);
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QVERIFY2(m_services->messageBox().LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 14\r\n")),
                 qPrintable(m_services->messageBox().LastCall().prompt));
        QCOMPARE(m_services->messageBox().LastCall().title, QStringLiteral("kvKalivo.ocx"));
    }

    // A table without the optional columns disables the editor's document and picture buttons.
    void fillGridEnablesEditorControlsFromColumns()
    {
        QTemporaryDir folder;
        kvConnection connection;
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db"))));
        kvAppointmentTable::Create(connection, QStringLiteral("Kurz"), false);
        kvKalivo control;
        control.setRecordSource(QStringLiteral("Kurz"));
        control.setConnection(&connection);
        control.resize(800, 600);
        control.Refresh();
        frmEdit &editor = frmEdit::ThreadInstance();
        QVERIFY(!editor.findChild<QPushButton *>(QStringLiteral("cmdDocumentBrowser"))->isEnabled());
        QVERIFY(!editor.findChild<QPushButton *>(QStringLiteral("cmdEdit"))->isEnabled());
    }
};

QTEST_MAIN(tst_kvEditFlow)
#include "tst_kvEditFlow.moc"
