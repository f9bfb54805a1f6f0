// The demo's "Ereignisse" panel: the host events it handles and lists, on a temporary SQLite database.
#include "DemoAppointmentWriter.h"
#include "DemoDatabase.h"
#include "DemoEventPanel.h"
#include "DemoHostEvent.h"
#include "DemoWindow.h"
#include "kvEditCalendar.h"
#include "kvErrorReporting.h"

#include <QCheckBox>
#include <QLabel>
#include <QScrollBar>
#include <QTreeWidget>
#include <QtTest>

namespace {

//! The demo window in the week of fixedToday on a fresh SQLite database.
struct Host : kvEditTestServices
{
    Host()
    {
        auto database = std::make_unique<DemoDatabase>();
        QString error;
        if (!database->Open(DemoDatabase::SqliteConnectionString(folder.filePath("t.sqlite")), &error))
            qFatal("cannot open the test database: %s", qPrintable(error));
        DemoOptions options;
        options.view = kvKalivo::kvWeek;
        options.date = options.sampleAnchor = fixedToday;
        window = std::make_unique<DemoWindow>(std::move(database), nullptr, options);
        window->show();
    }

    kvKalivo &control() { return *window->Calendar(); }
    DemoEventPanel &panel() { return *window->EventPanel(); }
    kvConnection &connection() { return *window->Database().Connection(); }
    void click(const char *checkBox) { panel().findChild<QCheckBox *>(checkBox)->click(); }
    QTreeWidget *log() { return panel().findChild<QTreeWidget *>("eventLog"); }
    const DemoHostEvent &lastEvent() { return panel().Events().constLast(); }
    ctlDay *cell(int day) { return kvKalivoTestAccess::DayCell(control(), qint16(day - 15)); }

    QStringList names()
    {
        QStringList result;
        kvRecordset recordset;
        recordset.Open("SELECT Name FROM Termine ORDER BY DateID", &connection());
        for (; !recordset.EOF(); recordset.MoveNext())
            result << recordset.Fields()["Name"].Value().toString();
        return result;
    }

    QTemporaryDir folder;
    std::unique_ptr<DemoWindow> window;
};

QString argumentsOf(const DemoHostEvent &event)
{
    QStringList arguments;
    for (const auto &[name, value] : event.Arguments())
        arguments << name + "=" + value;
    return arguments.join(", ");
}

} // namespace

class tst_DemoEventPanel : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { kvErrorReporting::setRaiseErrorEvent(false); } // thread-wide

    // The host writes what the editor gave unless its own "cancel" switch is on; the control
    // reloads and asks nothing.
    void databaseEvents_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QStringList>("names");
        const QString changed = "lDateID=1, datDateBegin=18.11.2026 10:00, datDateEnd=18.11.2026 11:00, sName=„Meier“, "
                                "sRemark=„Angebot besprechen…“, sDocument=„/tmp/Angebot.txt“, iImgId=19, bCancel=";
        QTest::newRow("new, cancelled") << 1 << true << "" << "abgebrochen" << QStringList();
        QTest::newRow("new") << 1 << false << "" << "vom Host geschrieben (DateID 1)" << QStringList{"Meier"};
        QTest::newRow("change, cancelled") << 3 << true << changed + "True" << "abgebrochen" << QStringList{"Müller"};
        QTest::newRow("change") << 3 << false << changed + "False" << "vom Host geschrieben (geändert)" << QStringList{"Meier"};
        QTest::newRow("delete, cancelled") << 2 << true << "" << "abgebrochen" << QStringList{"Müller"};
        QTest::newRow("delete") << 2 << false
                                << "lDateID=1, datDateBegin=18.11.2026 10:00, datDateEnd=18.11.2026 11:00, sName=„Müller“, "
                                   "sRemark=„Angebot besprechen…“, sDocument=„/tmp/Angebot.txt“, bCancel=False"
                                << "vom Host geschrieben (gelöscht)" << QStringList();
    }
    void databaseEvents()
    {
        QFETCH(int, action);
        QFETCH(bool, cancel);
        QFETCH(QString, arguments);
        QFETCH(QString, result);
        QFETCH(QStringList, names);
        Host host;
        if (action != 1) { // an appointment on 18 November, selected as a right-click selects it
            const QDateTime begin = at(18, 10).toDateTime();
            DemoAppointmentWriter(host.connection(), "Termine")
                .Insert({0, begin, begin.addSecs(3600), "Müller", "Angebot besprechen\nUnterlagen mitbringen", "/tmp/Angebot.txt", 19});
            host.control().Refresh();
            const ctlEntry *entry = host.cell(18)->Entries(1);
            QTest::mouseClick(host.cell(18), Qt::RightButton, Qt::NoModifier, entry->geometry().center());
            if (QWidget *popup = QApplication::activePopupWidget())
                popup->close();
        }
        host.click("checkRaiseDatabaseEvents");
        if (cancel)
            host.click("checkCancel");
        host.runner.Enqueue(typeName("Meier"));
        host.control().EditAppointment(qint16(action));
        QCOMPARE(host.panel().Events().size(), 1);
        const DemoHostEvent &event = host.lastEvent();
        QCOMPARE(event.Name(), QString(action == 1 ? "DateNew" : action == 2 ? "DateDelete" : "DateChange"));
        if (!arguments.isEmpty())
            QCOMPARE(argumentsOf(event), arguments);
        QVERIFY2(event.ResultText().startsWith(result), qPrintable(event.ResultText()));
        QCOMPARE(host.names(), names);
        ctlDay *cell = host.cell(action == 1 ? 22 : 18); // reloaded after the event
        QCOMPARE(cell->EntriesCount(), int(names.size()));
        if (!names.isEmpty())
            QCOMPARE(cell->Entries(1)->Text(), names.last());
        QCOMPARE(host.messageBox().CallCount(), 0);
        QTreeWidgetItem *item = host.log()->topLevelItem(0);
        QCOMPARE(item->text(0), "09:41:00  " + event.Name());
        QCOMPARE(item->child(item->childCount() - 1)->text(0), QStringLiteral("Host"));
    }

    void failuresAreListed()
    {
        Host host;
        host.click("checkRaiseDatabaseEvents");
        host.click("checkRaiseErrorEvent");
        host.connection().Execute("DROP TABLE Termine");
        host.runner.Enqueue(typeName("Zahnarzt"));
        host.control().EditAppointment(1);
        QCOMPARE(host.lastEvent().Result(), DemoHostEvent::Outcome::Failed);
        QVERIFY(host.lastEvent().ResultText().startsWith("nicht geschrieben: "));
        QCOMPARE(host.lastEvent().ArgumentValue("bCancel"), QStringLiteral("True"));
        host.control().EditAppointment(3); // no row selected: gathering the values fails (13 + 1)
        QCOMPARE(host.lastEvent().Name(), QStringLiteral("Error"));
        QCOMPARE(argumentsOf(host.lastEvent()).left(14), QStringLiteral("Err.Number=14,"));
        QCOMPARE(host.messageBox().CallCount(), 0);
    }

    void theLogFollowsTheNewestAndClears()
    {
        Host host;
        host.click("checkRaiseEditEvent");
        QVERIFY(host.panel().Events().isEmpty()); // PropertyChanged only when switched on
        host.click("checkPropertyChanged");
        for (int i = 0; i < 30; ++i)
            host.control().setFootnote(QString::number(i));
        host.control().EditAppointment(1);
        QCOMPARE(host.lastEvent().Name(), QStringLiteral("Edit"));
        QCOMPARE(host.lastEvent().ArgumentValue("iAction"), QStringLiteral("1 (neu)"));
        QCOMPARE(host.panel().Events().constFirst().ArgumentValue("PropertyName"), QStringLiteral("Footnote"));
        QTreeWidget *log = host.log();
        QCOMPARE(log->topLevelItemCount(), 31);
        QTreeWidgetItem *newest = log->topLevelItem(30);
        QVERIFY(log->verticalScrollBar()->value() > 0);
        QVERIFY(log->viewport()->rect().contains(log->visualItemRect(newest->child(newest->childCount() - 1))));
        QLabel *count = host.panel().findChild<QLabel *>("eventCount");
        QCOMPARE(count->text(), QStringLiteral("31 Ereignisse"));
        host.panel().findChild<QPushButton *>("clearLog")->click();
        QCOMPARE(log->topLevelItemCount(), 0);
        QCOMPARE(count->text(), QStringLiteral("0 Ereignisse"));
    }
};

QTEST_MAIN(tst_DemoEventPanel)
#include "tst_DemoEventPanel.moc"
