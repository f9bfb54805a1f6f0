// Moving through the calendar: steps, today, the date picker, the view switch, printing and
// the jumps to the next and previous appointment.
#include "kvEditCalendar.h"
#include "kvPdfPrinterService.h"

#include <QAction>
#include <QDateEdit>
#include <QLabel>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolBar>
#include <QtTest>

#include <optional>

namespace {

struct Calendar : kvEditCalendar
{
    void press(const char *key)
    {
        control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))
            ->findChild<QAction *>(QString::fromLatin1(key))->trigger();
    }
    QLabel *status() { return control.findChild<QStatusBar *>(QStringLiteral("StatusBar"))->findChild<QLabel *>(); }
    QDate firstDay() { return kvKalivoTestAccess::DayCell(control, 1)->datDay().date(); }
};

} // namespace

class tst_kvNavigation : public QObject
{
    Q_OBJECT

    std::optional<kvControlTestServices> m_services;

private slots:
    void init() { m_services.emplace(fixedToday); }
    void cleanup() { m_services.reset(); }

    // A step moves ActualDate by a week, or by a month clamped to the month's end.
    void steps_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QDate>("to");
        QTest::addColumn<QDate>("firstCell");
        QTest::addColumn<QString>("week");
        QTest::newRow("month Forward to a shorter month") << 2 << QDate(2024, 1, 31) << "Forward"
                                                          << QDate(2024, 2, 29) << QDate(2024, 1, 29) << "9. KW";
        QTest::newRow("month Back") << 2 << QDate(2024, 2, 29) << "Back" << QDate(2024, 1, 29)
                                    << QDate(2024, 1, 1) << "5. KW";
        QTest::newRow("week Forward across the year") << 1 << QDate(2025, 12, 29) << "Forward"
                                                      << QDate(2026, 1, 5) << QDate(2026, 1, 5) << "2. KW";
        QTest::newRow("menu \"Zurück\"") << 1 << QDate(2026, 1, 5) << "4" << QDate(2025, 12, 29)
                                          << QDate(2025, 12, 29) << "1. KW";
        QTest::newRow("menu \"Vor\"") << 1 << QDate(2025, 12, 29) << "3" << QDate(2026, 1, 5)
                                       << QDate(2026, 1, 5) << "2. KW";
        // The picker runs the range check alone: the status bar keeps the week it had.
        QTest::newRow("date picker") << 1 << QDate(2026, 11, 18) << "picker" << QDate(2026, 12, 24)
                                     << QDate(2026, 12, 21) << "47. KW";
    }
    void steps()
    {
        QFETCH(int, view);
        QFETCH(QDate, from);
        QFETCH(QString, command);
        QFETCH(QDate, to);
        QFETCH(QDate, firstCell);
        QFETCH(QString, week);
        Calendar calendar;
        calendar.control.setView(kvKalivo::kvView(view));
        calendar.control.setActualDate(from);
        if (command == QLatin1String("picker"))
            calendar.control.findChild<QDateEdit *>(QStringLiteral("DTPicker1"))->setDate(to);
        else if (command.size() == 1)
            calendar.chooseMenuItem(command.toInt());
        else
            calendar.press(qPrintable(command));
        QCOMPARE(calendar.control.ActualDate(), to);
        QCOMPARE(calendar.firstDay(), firstCell);
        QCOMPARE(calendar.status()->text(), week);
    }

    // Without AutoRefresh a step still reloads, and "Week"/"Month" still re-arrange the grid.
    void navigationIgnoresAutoRefresh()
    {
        Calendar calendar;
        calendar.control.setAutoRefresh(false);
        calendar.control.setActualDate(QDate(2026, 11, 18));
        calendar.control.Refresh();
        calendar.statements.clear();
        calendar.press("Forward");
        QCOMPARE(calendar.firstDay(), QDate(2026, 11, 23));
        QCOMPARE(calendar.dayLoads(), 7);
        calendar.press("Month");
        QCOMPARE(calendar.control.View(), kvKalivo::kvMonth);
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 42);
        calendar.press("Week");
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 7);
    }

    // "Today" while today is visible only moves the marking; otherwise it reloads. It never
    // updates the status bar's week number.
    void today()
    {
        Calendar calendar;
        calendar.add(at(17, 9), at(17, 10), QStringLiteral("Teambesprechung"));
        calendar.control.setActualDate(QDate(2026, 11, 17));
        QVERIFY(calendar.cell(17)->IsActualDay());
        QSignalSpy arranged(kvKalivoTestAccess::Grid(calendar.control), &kvDayGrid::gridArranged);
        QSignalSpy marked(kvKalivoTestAccess::Grid(calendar.control), &kvDayGrid::actualDayMarked);
        calendar.statements.clear();
        calendar.status()->setText(QStringLiteral("unverändert"));
        calendar.press("Today");
        QCOMPARE(calendar.control.ActualDate(), fixedToday);
        QCOMPARE(calendar.statements, QStringList());
        QCOMPARE(arranged.count(), 0);
        QCOMPARE(marked.count(), 1);
        QCOMPARE(calendar.cell(17)->EntriesCount(), 1);
        QVERIFY(!calendar.cell(17)->IsActualDay());
        QVERIFY(calendar.cell(22)->IsActualDay());
        QCOMPARE(calendar.status()->text(), QStringLiteral("unverändert"));

        calendar.control.setActualDate(QDate(2026, 1, 14));
        calendar.statements.clear();
        calendar.press("Today");
        QCOMPARE(calendar.firstDay(), QDate(2026, 11, 16));
        QCOMPARE(calendar.dayLoads(), 7);
        QCOMPARE(calendar.status()->text(), QStringLiteral("3. KW")); // still the setter's last word
        QCOMPARE(calendar.control.findChild<QDateEdit *>(QStringLiteral("DTPicker1"))->date(), fixedToday);
    }

    void menuItemSixOffersTheOtherView()
    {
        Calendar calendar;
        QAction *item = calendar.control.findChild<QAction *>(QStringLiteral("KontextDay6"));
        calendar.chooseMenuItem(6);
        QCOMPARE(calendar.control.View(), kvKalivo::kvMonth);
        QCOMPARE(item->text(), QStringLiteral("Wochenansicht"));
        calendar.chooseMenuItem(6);
        QCOMPARE(calendar.control.View(), kvKalivo::kvWeek);
        QCOMPARE(item->text(), QStringLiteral("Monatsansicht"));
    }

    // The toolbar's "Print" asks first; the context menu's "Drucken" prints at once. A failure
    // is reported as 300.
    void printing()
    {
        Calendar calendar;
        calendar.add(at(17, 9), at(17, 10), QStringLiteral("Teambesprechung"));
        calendar.control.setFootnote(QStringLiteral("Büro Müller"));
        calendar.control.setActualDate(QDate(2026, 11, 17));
        kvPdfPrinterService printer(calendar.folder.filePath(QStringLiteral("kalender.pdf")));
        kvScopedService installed(printer);
        kvScriptedMessageBox &messageBox = m_services->messageBox();
        for (const int answer : {kvMessageBox::vbNo, kvMessageBox::vbCancel, kvMessageBox::vbYes}) {
            messageBox.EnqueueAnswer(answer);
            calendar.press("Print");
            QCOMPARE(messageBox.LastCall().prompt, QStringLiteral("Kalendar drucken?"));
            QCOMPARE(messageBox.LastCall().buttons, 35);
            QCOMPARE(messageBox.LastCall().title, QString());
            QCOMPARE(printer.CallCount(), answer == kvMessageBox::vbYes ? 1 : 0);
        }
        QCOMPARE(printer.Calls().last().DocumentName, QStringLiteral("Kalender November 2026"));
        calendar.chooseMenuItem(8); // "Drucken"
        QCOMPARE(messageBox.CallCount(), 3);
        QCOMPARE(printer.CallCount(), 2);
        QVERIFY(QFileInfo(printer.FilePath()).size() > 1000);

        calendar.connection.Execute(QStringLiteral("DROP TABLE Termine"));
        messageBox.Clear();
        calendar.control.PrintCalendar();
        QCOMPARE(messageBox.CallCount(), 1);
        QVERIFY2(messageBox.LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 300\r\n")),
                 qPrintable(messageBox.LastCall().prompt));
    }

    void nextAndPreviousJumpToAppointments()
    {
        Calendar calendar;
        calendar.add(at(QDate(2026, 12, 3), 10), at(QDate(2026, 12, 3), 11), QStringLiteral("Weihnachtsmarkt"));
        calendar.add(at(QDate(2026, 10, 30), 8), at(QDate(2026, 10, 30), 9), QStringLiteral("Arzt"));
        calendar.control.setActualDate(QDate(2026, 11, 18));
        calendar.press("Next");
        QCOMPARE(calendar.control.ActualDate(), QDate(2026, 12, 3));
        QCOMPARE(calendar.firstDay(), QDate(2026, 11, 30));
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 4)->EntriesCount(), 1);
        QVERIFY(kvKalivoTestAccess::DayCell(calendar.control, 4)->IsActualDay());
        calendar.press("Previous");
        QCOMPARE(calendar.control.ActualDate(), QDate(2026, 10, 30));
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 5)->Entries(1)->Text(), QStringLiteral("Arzt"));
        calendar.press("Previous"); // nothing earlier: nothing changes, nothing is reported
        QCOMPARE(calendar.control.ActualDate(), QDate(2026, 10, 30));
        QCOMPARE(m_services->messageBox().CallCount(), 0);
    }
};

QTEST_MAIN(tst_kvNavigation)
#include "tst_kvNavigation.moc"
