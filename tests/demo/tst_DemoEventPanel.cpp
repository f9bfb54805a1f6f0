// The demo's "Ereignisse" panel: the host events of Part 2.3 (and Error, PropertyChanged)
// handled and listed by the demo host, on a temporary SQLite database.
#include "DemoAppointmentWriter.h"
#include "DemoDatabase.h"
#include "DemoEventPanel.h"
#include "DemoHostEvent.h"
#include "DemoWindow.h"
#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvConnection.h"
#include "kvControlTestServices.h"
#include "kvErrorReporting.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvRecordset.h"
#include "kvScriptedModalRunner.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

#include <memory>

namespace {

const QDate fixedToday(2026, 11, 22); // a Sunday: the week view shows 16 .. 22 November

QDateTime at(int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(2026, 11, day), QTime(hour, minute)).toDateTime();
}

//! The demo window on a fresh SQLite database, with the services a control test installs.
struct Host
{
    Host()
        : services(fixedToday)
        , installedRunner(runner)
    {
        auto database = std::make_unique<DemoDatabase>();
        QString error;
        if (!database->Open(DemoDatabase::SqliteConnectionString(folder.filePath(QStringLiteral("t.sqlite"))), &error))
            qFatal("cannot open the test database: %s", qPrintable(error));
        DemoOptions options;
        options.view = kvKalivo::kvWeek;
        options.date = fixedToday;
        options.sampleAnchor = fixedToday;
        window = std::make_unique<DemoWindow>(std::move(database), nullptr, options);
        window->show();
    }

    kvKalivo &control() { return *window->Calendar(); }
    DemoEventPanel &panel() { return *window->EventPanel(); }
    kvConnection &connection() { return *window->Database().Connection(); }
    QCheckBox *check(const char *name) { return panel().findChild<QCheckBox *>(QLatin1String(name)); }
    QTreeWidget *log() { return panel().findChild<QTreeWidget *>(QStringLiteral("eventLog")); }
    const DemoHostEvent &lastEvent() { return panel().Events().constLast(); }

    qint32 add(const QDateTime &begin, const QDateTime &end, const QString &name, const QString &remark = {},
               const QString &document = {}, qint16 imageId = 0)
    {
        const qint32 id = DemoAppointmentWriter(connection(), QStringLiteral("Termine"))
                              .Insert({0, begin, end, name, remark, document, imageId});
        control().Refresh();
        return id;
    }
    QStringList names()
    {
        QStringList result;
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT Name FROM Termine ORDER BY DateID"), &connection());
        for (; !recordset.EOF(); recordset.MoveNext())
            result << recordset.Fields()[QStringLiteral("Name")].Value().toString();
        recordset.Close();
        return result;
    }
    QDateTime firstBegin()
    {
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT DateBegin FROM Termine ORDER BY DateID"), &connection());
        const QDateTime begin = recordset.Fields()[QStringLiteral("DateBegin")].DateValue().toDateTime();
        recordset.Close();
        return begin;
    }
    //! Day cell of 16 .. 22 November.
    ctlDay *cell(int day) { return kvKalivoTestAccess::DayCell(control(), qint16(day - 15)); }
    //! Selects a row as a right-click does, and closes the context menu it opens.
    void selectRow(int day, int row)
    {
        const ctlEntry *entry = cell(day)->Entries(qint16(row));
        QTest::mouseClick(cell(day), Qt::RightButton, Qt::NoModifier,
                          QPoint(entry->Left() + entry->Width() / 2, entry->Top() + entry->Height() / 2));
        if (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
    }
    //! The editor saves \a name, as a user typing it and pressing OK.
    void editorSaves(const QString &name)
    {
        runner.Enqueue([name](QDialog &dialog) {
            dialog.findChild<QLineEdit *>(QStringLiteral("txtName"))->setText(name);
            dialog.findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
            return int(QDialog::Accepted);
        });
    }

    kvControlTestServices services;
    kvScriptedModalRunner runner;
    kvScopedService<kvScriptedModalRunner> installedRunner;
    QTemporaryDir folder;
    std::unique_ptr<DemoWindow> window;
};

QStringList argumentNames(const DemoHostEvent &event)
{
    QStringList names;
    for (const auto &argument : event.Arguments())
        names << argument.first;
    return names;
}

} // namespace

class tst_DemoEventPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void switchesStartFromTheControlsProperties();
    void switchesAreBoundBothWays();
    void panelIsShownAndHiddenFromTheViewMenu();
    void cancelledDateNewIsListedAndWritesNothing();
    void dateNewIsWrittenByTheHostAndShown();
    void dateChangeListsItsArgumentsAndIsWrittenByTheHost();
    void dateDeleteIsWrittenByTheHostUnlessCancelled();
    void editEventShowsNoEditorAndWritesNothing();
    void failedHostWriteCancels();
    void errorEventIsListed();
    void propertyChangedOnlyWhenSwitchedOn();
    void newestEventIsAtTheBottomAndInView();
    void clearEmptiesTheLog();
    void shortensRemarksAndFormatsDates();
};

void tst_DemoEventPanel::cleanup()
{
    kvErrorReporting::setRaiseErrorEvent(false); // thread-wide: one test must not leave it on
}

void tst_DemoEventPanel::switchesStartFromTheControlsProperties()
{
    kvControlTestServices services(fixedToday);
    kvKalivo control;
    control.setRaiseDatabaseEvents(true);
    DemoEventPanel panel(&control);
    QVERIFY(panel.findChild<QCheckBox *>(QStringLiteral("checkRaiseDatabaseEvents"))->isChecked());
    QVERIFY(!panel.findChild<QCheckBox *>(QStringLiteral("checkRaiseEditEvent"))->isChecked());
    QVERIFY(!panel.findChild<QCheckBox *>(QStringLiteral("checkRaiseErrorEvent"))->isChecked());
    QVERIFY(!panel.findChild<QCheckBox *>(QStringLiteral("checkCancel"))->isChecked());
    QCOMPARE(panel.windowTitle(), QStringLiteral("Ereignisse"));
}

void tst_DemoEventPanel::switchesAreBoundBothWays()
{
    Host host;
    host.check("checkRaiseDatabaseEvents")->click();
    QVERIFY(host.control().RaiseDatabaseEvents());
    host.check("checkRaiseEditEvent")->click();
    QVERIFY(host.control().RaiseEditEvent());
    host.check("checkRaiseErrorEvent")->click();
    QVERIFY(host.control().RaiseErrorEvent());

    host.control().setRaiseDatabaseEvents(false);
    QVERIFY(!host.check("checkRaiseDatabaseEvents")->isChecked());
    host.control().setRaiseEditEvent(false);
    QVERIFY(!host.check("checkRaiseEditEvent")->isChecked());
    host.check("checkRaiseErrorEvent")->click();
    QVERIFY(!host.control().RaiseErrorEvent());

    // The cancel switch is the host's own: the control does not change.
    host.check("checkCancel")->click();
    QVERIFY(!host.control().RaiseDatabaseEvents());
    QVERIFY(!host.control().RaiseEditEvent());
}

void tst_DemoEventPanel::panelIsShownAndHiddenFromTheViewMenu()
{
    Host host;
    QVERIFY(host.panel().isVisible());
    QCOMPARE(host.window->dockWidgetArea(&host.panel()), Qt::RightDockWidgetArea);
    QVERIFY2(host.control().width() > 2 * host.panel().width(),
             qPrintable(QStringLiteral("calendar %1, panel %2").arg(host.control().width()).arg(host.panel().width())));
    QAction *viewMenu = nullptr;
    for (QAction *action : host.window->menuBar()->actions()) {
        if (action->text() == QStringLiteral("&Ansicht"))
            viewMenu = action;
    }
    QVERIFY(viewMenu && viewMenu->menu());
    QAction *showEvents = host.window->findChild<QAction *>(QStringLiteral("actionShowEvents"));
    QVERIFY(viewMenu->menu()->actions().contains(showEvents));
    QVERIFY(showEvents->isChecked());
    showEvents->trigger();
    QVERIFY(!host.panel().isVisible());
    showEvents->trigger();
    QVERIFY(host.panel().isVisible());
}

void tst_DemoEventPanel::cancelledDateNewIsListedAndWritesNothing()
{
    Host host;
    host.check("checkRaiseDatabaseEvents")->click();
    host.check("checkCancel")->click();
    host.editorSaves(QStringLiteral("Zahnarzt"));
    const int loads = host.cell(22)->EntriesCount();
    host.control().EditAppointment(1);

    QCOMPARE(host.panel().Events().size(), 1);
    const DemoHostEvent &event = host.lastEvent();
    QCOMPARE(event.Name(), QStringLiteral("DateNew"));
    QCOMPARE(event.Time(), QTime(9, 41));
    QCOMPARE(argumentNames(event),
             (QStringList{QStringLiteral("datDateBegin"), QStringLiteral("datDateEnd"), QStringLiteral("sName"),
                          QStringLiteral("sRemark"), QStringLiteral("sDocument"), QStringLiteral("iImgId"),
                          QStringLiteral("bCancel")}));
    QVERIFY(event.ArgumentValue(QStringLiteral("datDateBegin")).startsWith(QStringLiteral("22.11.2026 ")));
    QCOMPARE(event.ArgumentValue(QStringLiteral("sName")), QStringLiteral("„Zahnarzt“"));
    QCOMPARE(event.ArgumentValue(QStringLiteral("bCancel")), QStringLiteral("True"));
    QCOMPARE(event.Result(), DemoHostEvent::Outcome::Cancelled);
    QVERIFY(host.names().isEmpty());
    QCOMPARE(host.cell(22)->EntriesCount(), loads);

    // The tree shows the event with its arguments and the host's answer.
    QTreeWidgetItem *item = host.log()->topLevelItem(0);
    QCOMPARE(item->text(0), QStringLiteral("09:41:00  DateNew"));
    QCOMPARE(item->childCount(), 8);
    QCOMPARE(item->child(2)->text(0), QStringLiteral("sName"));
    QCOMPARE(item->child(2)->text(1), QStringLiteral("„Zahnarzt“"));
    QCOMPARE(item->child(7)->text(0), QStringLiteral("Host"));
    QVERIFY(item->child(7)->text(1).startsWith(QStringLiteral("abgebrochen")));
}

void tst_DemoEventPanel::dateNewIsWrittenByTheHostAndShown()
{
    Host host;
    host.check("checkRaiseDatabaseEvents")->click();
    host.editorSaves(QStringLiteral("Zahnarzt"));
    host.control().EditAppointment(1);

    const DemoHostEvent &event = host.lastEvent();
    QCOMPARE(event.Name(), QStringLiteral("DateNew"));
    QCOMPARE(event.ArgumentValue(QStringLiteral("bCancel")), QStringLiteral("False"));
    QCOMPARE(event.Result(), DemoHostEvent::Outcome::Written);
    QCOMPARE(event.ResultText(), QStringLiteral("vom Host geschrieben (DateID 1)"));
    QCOMPARE(host.names(), QStringList{QStringLiteral("Zahnarzt")});
    QCOMPARE(DemoHostEvent::FormatDate(host.firstBegin()), event.ArgumentValue(QStringLiteral("datDateBegin")));
    // The control reloaded after the event and shows the host's row.
    QCOMPARE(host.cell(22)->EntriesCount(), 1);
    QCOMPARE(host.cell(22)->Entries(1)->Text(), QStringLiteral("Zahnarzt"));
}

void tst_DemoEventPanel::dateChangeListsItsArgumentsAndIsWrittenByTheHost()
{
    Host host;
    host.add(at(18, 10), at(18, 11), QStringLiteral("Müller"),
             QStringLiteral("Angebot besprechen\nUnterlagen mitbringen"), QStringLiteral("/tmp/Angebot.txt"), 19);
    host.check("checkRaiseDatabaseEvents")->click();
    host.selectRow(18, 1);
    host.editorSaves(QStringLiteral("Meier"));
    host.control().EditAppointment(3);

    const DemoHostEvent &event = host.lastEvent();
    QCOMPARE(event.Name(), QStringLiteral("DateChange"));
    const QList<DemoHostEvent::Argument> expected{
        {QStringLiteral("lDateID"), QStringLiteral("1")},
        {QStringLiteral("datDateBegin"), QStringLiteral("18.11.2026 10:00")},
        {QStringLiteral("datDateEnd"), QStringLiteral("18.11.2026 11:00")},
        {QStringLiteral("sName"), QStringLiteral("„Meier“")},
        {QStringLiteral("sRemark"), QStringLiteral("„Angebot besprechen…“")},
        {QStringLiteral("sDocument"), QStringLiteral("„/tmp/Angebot.txt“")},
        {QStringLiteral("iImgId"), QStringLiteral("19")},
        {QStringLiteral("bCancel"), QStringLiteral("False")}};
    QCOMPARE(event.Arguments(), expected);
    QCOMPARE(event.ResultText(), QStringLiteral("vom Host geschrieben (geändert)"));
    QCOMPARE(host.names(), QStringList{QStringLiteral("Meier")});
    QCOMPARE(host.cell(18)->Entries(1)->Text(), QStringLiteral("Meier"));
    QCOMPARE(host.cell(18)->Entries(1)->Remark(), QStringLiteral("Angebot besprechen\nUnterlagen mitbringen"));

    host.check("checkCancel")->click();
    host.selectRow(18, 1);
    host.editorSaves(QStringLiteral("Schulz"));
    host.control().EditAppointment(3);
    QCOMPARE(host.lastEvent().ArgumentValue(QStringLiteral("sName")), QStringLiteral("„Schulz“"));
    QCOMPARE(host.lastEvent().ArgumentValue(QStringLiteral("bCancel")), QStringLiteral("True"));
    QCOMPARE(host.names(), QStringList{QStringLiteral("Meier")});
    QCOMPARE(host.cell(18)->Entries(1)->Text(), QStringLiteral("Meier"));
}

void tst_DemoEventPanel::dateDeleteIsWrittenByTheHostUnlessCancelled()
{
    Host host;
    host.add(at(18, 14, 30), at(18, 15), QStringLiteral("Zahnarzt"));
    host.check("checkRaiseDatabaseEvents")->click();
    host.check("checkCancel")->click();
    host.selectRow(18, 1);
    host.control().EditAppointment(2);

    QCOMPARE(host.lastEvent().Name(), QStringLiteral("DateDelete"));
    QCOMPARE(argumentNames(host.lastEvent()),
             (QStringList{QStringLiteral("lDateID"), QStringLiteral("datDateBegin"), QStringLiteral("datDateEnd"),
                          QStringLiteral("sName"), QStringLiteral("sRemark"), QStringLiteral("sDocument"),
                          QStringLiteral("bCancel")}));
    QCOMPARE(host.lastEvent().ArgumentValue(QStringLiteral("datDateBegin")), QStringLiteral("18.11.2026 14:30"));
    QCOMPARE(host.lastEvent().Result(), DemoHostEvent::Outcome::Cancelled);
    QCOMPARE(host.names(), QStringList{QStringLiteral("Zahnarzt")});
    QCOMPARE(host.cell(18)->EntriesCount(), 1);

    host.check("checkCancel")->click();
    host.selectRow(18, 1);
    host.control().EditAppointment(2);
    QCOMPARE(host.lastEvent().ResultText(), QStringLiteral("vom Host geschrieben (gelöscht)"));
    QVERIFY(host.names().isEmpty());
    QCOMPARE(host.cell(18)->EntriesCount(), 0);
    QCOMPARE(host.services.messageBox().CallCount(), 0); // with RaiseDatabaseEvents no question
}

void tst_DemoEventPanel::editEventShowsNoEditorAndWritesNothing()
{
    Host host;
    host.check("checkRaiseEditEvent")->click();
    host.control().EditAppointment(1);

    const DemoHostEvent &event = host.lastEvent();
    QCOMPARE(event.Name(), QStringLiteral("Edit"));
    QCOMPARE(argumentNames(event),
             (QStringList{QStringLiteral("lDateID"), QStringLiteral("datDateBegin"), QStringLiteral("datDateEnd"),
                          QStringLiteral("sName"), QStringLiteral("sRemark"), QStringLiteral("iImgId"),
                          QStringLiteral("sDocument"), QStringLiteral("iAction"), QStringLiteral("bCancel")}));
    QCOMPARE(event.ArgumentValue(QStringLiteral("iAction")), QStringLiteral("1 (neu)"));
    QCOMPARE(event.ArgumentValue(QStringLiteral("datDateBegin")), QStringLiteral("22.11.2026 00:00"));
    QCOMPARE(event.Result(), DemoHostEvent::Outcome::Noted);
    QCOMPARE(host.runner.ExecCount(), 0);
    QVERIFY(host.names().isEmpty());

    host.check("checkCancel")->click();
    host.control().EditAppointment(1);
    QCOMPARE(host.lastEvent().ArgumentValue(QStringLiteral("bCancel")), QStringLiteral("True"));
    QCOMPARE(host.lastEvent().Result(), DemoHostEvent::Outcome::Cancelled);
}

void tst_DemoEventPanel::failedHostWriteCancels()
{
    Host host;
    host.check("checkRaiseDatabaseEvents")->click();
    host.connection().Execute(QStringLiteral("DROP TABLE Termine"));
    host.editorSaves(QStringLiteral("Zahnarzt"));
    host.control().EditAppointment(1);
    QCOMPARE(host.lastEvent().Result(), DemoHostEvent::Outcome::Failed);
    QVERIFY(host.lastEvent().ResultText().startsWith(QStringLiteral("nicht geschrieben: ")));
    QCOMPARE(host.lastEvent().ArgumentValue(QStringLiteral("bCancel")), QStringLiteral("True"));
    QCOMPARE(host.services.messageBox().CallCount(), 0); // cancelled: no reload on the missing table
}

void tst_DemoEventPanel::errorEventIsListed()
{
    Host host;
    host.check("checkRaiseErrorEvent")->click();
    host.control().EditAppointment(3); // no row selected: gathering the values fails (13 + 1)
    QCOMPARE(host.lastEvent().Name(), QStringLiteral("Error"));
    QCOMPARE(host.lastEvent().ArgumentValue(QStringLiteral("Err.Number")), QStringLiteral("14"));
    QCOMPARE(argumentNames(host.lastEvent()),
             (QStringList{QStringLiteral("Err.Number"), QStringLiteral("Err.Description")}));
    QCOMPARE(host.services.messageBox().CallCount(), 0);
}

void tst_DemoEventPanel::propertyChangedOnlyWhenSwitchedOn()
{
    Host host;
    host.check("checkRaiseEditEvent")->click();
    QVERIFY(host.panel().Events().isEmpty());
    host.check("checkPropertyChanged")->click();
    host.check("checkRaiseEditEvent")->click();
    QCOMPARE(host.panel().Events().size(), 1);
    QCOMPARE(host.lastEvent().Name(), QStringLiteral("PropertyChanged"));
    QCOMPARE(host.lastEvent().ArgumentValue(QStringLiteral("PropertyName")), QStringLiteral("RaiseEditEvent"));
}

void tst_DemoEventPanel::newestEventIsAtTheBottomAndInView()
{
    Host host;
    host.check("checkPropertyChanged")->click();
    for (int i = 0; i < 30; ++i)
        host.control().setFootnote(QString::number(i));
    host.check("checkRaiseDatabaseEvents")->click();
    host.editorSaves(QStringLiteral("Letzter"));
    host.control().EditAppointment(1);

    QTreeWidget *log = host.log();
    QCOMPARE(log->topLevelItemCount(), 32);
    QTreeWidgetItem *newest = log->topLevelItem(31);
    QCOMPARE(newest->text(0), QStringLiteral("09:41:00  DateNew"));
    const QRect lastRow = log->visualItemRect(newest->child(newest->childCount() - 1));
    QVERIFY(log->verticalScrollBar()->value() > 0);
    QVERIFY2(log->viewport()->rect().contains(lastRow),
             qPrintable(QStringLiteral("last row at y %1, viewport height %2").arg(lastRow.y()).arg(log->viewport()->height())));
}

void tst_DemoEventPanel::clearEmptiesTheLog()
{
    Host host;
    host.check("checkRaiseEditEvent")->click();
    host.control().EditAppointment(1);
    host.control().EditAppointment(1);
    QLabel *count = host.panel().findChild<QLabel *>(QStringLiteral("eventCount"));
    QCOMPARE(count->text(), QStringLiteral("2 Ereignisse"));
    host.panel().findChild<QPushButton *>(QStringLiteral("clearLog"))->click();
    QVERIFY(host.panel().Events().isEmpty());
    QCOMPARE(host.log()->topLevelItemCount(), 0);
    QCOMPARE(count->text(), QStringLiteral("0 Ereignisse"));
}

void tst_DemoEventPanel::shortensRemarksAndFormatsDates()
{
    QCOMPARE(DemoHostEvent::Shorten(QStringLiteral("Erste Zeile\nZweite Zeile")), QStringLiteral("Erste Zeile…"));
    QCOMPARE(DemoHostEvent::Shorten(QStringLiteral("kurz")), QStringLiteral("kurz"));
    const QString longText(60, QLatin1Char('x'));
    QCOMPARE(DemoHostEvent::Shorten(longText), QString(39, QLatin1Char('x')) + QStringLiteral("…"));
    QCOMPARE(DemoHostEvent::FormatDate(at(5, 7, 3)), QStringLiteral("05.11.2026 07:03"));
    QCOMPARE(DemoHostEvent::ActionText(3), QStringLiteral("3 (ändern)"));
}

QTEST_MAIN(tst_DemoEventPanel)
#include "tst_DemoEventPanel.moc"
