// The edit flow (EditAppointment) with its host events, on SQLite.
// The end-to-end user stories on SQLite and MariaDB are in tst_kvEditEndToEnd.cpp.
#include "ctlDay.h"
#include "ctlEntry.h"
#include "frmEdit.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvEditCalendar.h"
#include "kvFields.h"
#include "kvKalivo.h"
#include "kvMessageBox.h"
#include "kvRecordset.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolBar>
#include <QtTest>

#include <optional>

using Calendar = kvEditCalendar;

class tst_kvEditFlow : public QObject
{
    Q_OBJECT

    std::optional<kvEditTestServices> m_services;

private Q_SLOTS:
    void init() { m_services.emplace(); }
    void cleanup() { m_services.reset(); }
    void deleteAsks_data();
    void deleteAsks();
    void deleteWithDatabaseEventsRaisesDateDeleteWithoutAsking();
    void editEventReplacesEditorForNew();
    void deleteIsNotAffectedByEditEvent();
    void editEventCancelPreventsReload();
    void hostChangesByReferenceValues();
    void toolbarNewUsesActualDate();
    void editorCancelWritesNothing();
    void dateChangeCarriesTheEditorsValues();
    void failureOfGatheringReportsCode14();
    void fillGridEnablesEditorControlsFromColumns();
};

// "Löschen..." asks with the row's time (blank for an all-day row); only "Ja" deletes, and
// only then is the week reloaded.
void tst_kvEditFlow::deleteAsks_data()
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

void tst_kvEditFlow::deleteAsks()
{
    QFETCH(kvDate, begin);
    QFETCH(int, answer);
    QFETCH(QString, prompt);
    QFETCH(int, rowsLeft);
    Calendar calendar;
    calendar.add(begin, begin.addMinutes(60), QStringLiteral("Urlaub"));
    calendar.add(at(18, 16), at(18, 17), QStringLiteral("Friseur"));
    calendar.reload();
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

void tst_kvEditFlow::deleteWithDatabaseEventsRaisesDateDeleteWithoutAsking()
{
    Calendar calendar;
    calendar.add(at(18), at(18), QStringLiteral("Urlaub"));
    calendar.reload();
    calendar.control.setRaiseDatabaseEvents(true);
    calendar.rightClickRow(18, 1);
    int raised = 0;
    bool cancel = true;
    QObject::connect(&calendar.control, &kvKalivo::DateDelete,
                     [&](qint32 &id, QDateTime &begin, QDateTime &end, QString &name, QString &, QString &, bool &bCancel) {
                         ++raised;
                         QCOMPARE(id, 1);
                         QCOMPARE(begin, at(18).toDateTime());
                         QCOMPARE(end, at(18).toDateTime());
                         QCOMPARE(name, QStringLiteral("Urlaub"));
                         QCOMPARE(bCancel, false);
                         bCancel = cancel;
                     });
    const int calls = m_services->messageBox().CallCount();
    int loads = calendar.dayLoads();
    calendar.chooseMenuItem(2);
    QCOMPARE(raised, 1);
    QCOMPARE(m_services->messageBox().CallCount(), calls); // no question
    QCOMPARE(calendar.names(), QStringList{QStringLiteral("Urlaub")}); // the control wrote nothing
    QCOMPARE(calendar.dayLoads(), loads); // cancelled: no reload

    cancel = false;
    loads = calendar.dayLoads();
    calendar.chooseMenuItem(2);
    QCOMPARE(raised, 2);
    QCOMPARE(calendar.dayLoads() - loads, 7); // reloaded: one load per cell of the week
    QCOMPARE(calendar.names(), QStringList{QStringLiteral("Urlaub")});
}

void tst_kvEditFlow::editEventReplacesEditorForNew()
{
    Calendar calendar;
    calendar.control.setRaiseEditEvent(true);
    int raised = 0;
    QObject::connect(&calendar.control, &kvKalivo::Edit,
                     [&](qint32 &id, QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                         qint16 &imgId, QString &document, qint16 &action, bool &bCancel) {
                         ++raised;
                         QCOMPARE(id, 0);
                         QCOMPARE(begin.date(), fixedToday);
                         QCOMPARE(end.date(), fixedToday);
                         QVERIFY(name.isEmpty() && remark.isEmpty() && document.isEmpty());
                         QCOMPARE(imgId, qint16(0));
                         QCOMPARE(action, qint16(1));
                         QCOMPARE(bCancel, false);
                     });
    const int loads = calendar.dayLoads();
    calendar.control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))
        ->findChild<QAction *>(QStringLiteral("New"))->trigger();
    QCOMPARE(raised, 1);
    QCOMPARE(m_services->runner.ExecCount(), 0); // no editor
    QCOMPARE(calendar.writes(), 0); // the constructor's table has no rows added here
    QCOMPARE(calendar.dayLoads() - loads, 7); // not cancelled: reloaded
}

void tst_kvEditFlow::deleteIsNotAffectedByEditEvent()
{
    Calendar calendar;
    calendar.add(at(18, 14, 30), at(18, 15), QStringLiteral("Zahnarzt"));
    calendar.reload();
    calendar.control.setRaiseEditEvent(true);
    int raised = 0;
    QObject::connect(&calendar.control, &kvKalivo::Edit, [&] { ++raised; });
    calendar.rightClickRow(18, 1);
    m_services->messageBox().EnqueueAnswer(kvMessageBox::vbYes);
    calendar.chooseMenuItem(2);
    QCOMPARE(raised, 0);
    QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("Termin <14:30 Zahnarzt> löschen?"));
    QVERIFY(calendar.names().isEmpty());
    QCOMPARE(m_services->runner.ExecCount(), 0);
}

void tst_kvEditFlow::editEventCancelPreventsReload()
{
    Calendar calendar;
    calendar.add(at(18, 9), at(18, 10), QStringLiteral("Termin"));
    calendar.reload();
    calendar.control.setRaiseEditEvent(true);
    qint16 seenAction = 0;
    QObject::connect(&calendar.control, &kvKalivo::Edit,
                     [&](qint32 &id, QDateTime &, QDateTime &, QString &name, QString &, qint16 &,
                         QString &, qint16 &action, bool &bCancel) {
                         QCOMPARE(id, 1);
                         QCOMPARE(name, QStringLiteral("Termin"));
                         seenAction = action;
                         bCancel = true;
                     });
    const int loads = calendar.dayLoads();
    calendar.doubleClickRow(18, 1);
    QCOMPARE(seenAction, qint16(3));
    QCOMPARE(calendar.dayLoads(), loads);
}

void tst_kvEditFlow::hostChangesByReferenceValues()
{
    Calendar calendar;
    calendar.control.setRaiseDatabaseEvents(true);
    // The editor saves a new appointment; the host's DateNew sees the editor's values and the
    // test then writes the (changed) values itself, as a host would.
    m_services->runner.Enqueue(typeName(QStringLiteral("Neu")));
    QString seen;
    QObject::connect(&calendar.control, &kvKalivo::DateNew,
                     [&](QDateTime &begin, QDateTime &end, QString &name, QString &, QString &,
                         qint16 &, bool &) {
                         seen = name;
                         name = QStringLiteral("Vom Host");
                         begin = at(19, 8).toDateTime();
                         end = at(19, 9).toDateTime();
                         calendar.add(kvDate::fromDateTime(begin), kvDate::fromDateTime(end), name);
                     });
    calendar.control.EditAppointment(1);
    QCOMPARE(seen, QStringLiteral("Neu"));
    QCOMPARE(calendar.names(), QStringList{QStringLiteral("Vom Host")}); // the control wrote nothing
    QCOMPARE(calendar.cell(19)->EntriesCount(), 1); // reloaded, shows what the host wrote
}



void tst_kvEditFlow::toolbarNewUsesActualDate()
{
    Calendar calendar;
    calendar.control.setActualDate(QDate(2026, 11, 20));
    m_services->runner.Enqueue(typeName(QStringLiteral("Neu")));
    calendar.control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))
        ->findChild<QAction *>(QStringLiteral("New"))->trigger();
    QCOMPARE(calendar.names(), QStringList{QStringLiteral("Neu")});
    QCOMPARE(calendar.begins().constFirst().date(), QDate(2026, 11, 20));
    QCOMPARE(calendar.cell(20)->EntriesCount(), 1);
    // Menu item 0 "Neu..." as well.
    m_services->runner.Enqueue(typeName(QStringLiteral("Zweiter")));
    calendar.chooseMenuItem(0);
    QCOMPARE(calendar.names().size(), 2);
}

void tst_kvEditFlow::editorCancelWritesNothing()
{
    Calendar calendar;
    calendar.add(at(18, 10), at(18, 11), QStringLiteral("Müller"));
    calendar.reload();
    m_services->runner.Enqueue([](QDialog &dialog) {
        dialog.findChild<QLineEdit *>(QStringLiteral("txtName"))->setText(QStringLiteral("egal"));
        dialog.findChild<QPushButton *>(QStringLiteral("CancelButton"))->click();
        return int(QDialog::Rejected);
    });
    calendar.statements.clear();
    const int loads = calendar.dayLoads();
    calendar.doubleClickRow(18, 1);
    QCOMPARE(m_services->runner.ExecCount(), 1);
    QCOMPARE(calendar.names(), QStringList{QStringLiteral("Müller")});
    QCOMPARE(calendar.writes(), 0);
    QCOMPARE(calendar.dayLoads(), loads); // action 0: nothing happens, not even a reload
}



void tst_kvEditFlow::dateChangeCarriesTheEditorsValues()
{
    Calendar calendar;
    calendar.add(at(18, 10), at(18, 11), QStringLiteral("Müller"));
    calendar.reload();
    calendar.control.setRaiseDatabaseEvents(true);
    m_services->runner.Enqueue(typeName(QStringLiteral("Meier")));
    QStringList seen;
    QObject::connect(&calendar.control, &kvKalivo::DateChange,
                     [&](qint32 &id, QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                         QString &document, qint16 &imgId, bool &bCancel) {
                         const QString format = QStringLiteral("yyyy-MM-ddTHH:mm:ss");
                         seen << QString::number(id) << begin.toString(format)
                              << end.toString(format) << name << remark << document
                              << QString::number(imgId) << QString::number(bCancel);
                     });
    calendar.doubleClickRow(18, 1);
    QCOMPARE(seen, (QStringList{QStringLiteral("1"), QStringLiteral("2026-11-18T10:00:00"),
                                QStringLiteral("2026-11-18T11:00:00"), QStringLiteral("Meier"),
                                QString(), QString(), QStringLiteral("0"), QStringLiteral("0")}));
    QCOMPARE(calendar.names(), QStringList{QStringLiteral("Müller")}); // the host did not write
}

void tst_kvEditFlow::failureOfGatheringReportsCode14()
{
    Calendar calendar;
    // No row in the selected day: reading the active entry fails at step 1.
    calendar.control.EditAppointment(3);
    QCOMPARE(m_services->messageBox().CallCount(), 1);
    QVERIFY2(m_services->messageBox().LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 14\r\n")),
             qPrintable(m_services->messageBox().LastCall().prompt));
    QCOMPARE(m_services->messageBox().LastCall().title, QStringLiteral("kvKalivo.ocx"));
}

void tst_kvEditFlow::fillGridEnablesEditorControlsFromColumns()
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

QTEST_MAIN(tst_kvEditFlow)
#include "tst_kvEditFlow.moc"
