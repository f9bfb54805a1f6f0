// Moving through the calendar: steps, today, the date picker, the view switch, printing and
// the jumps to the next and previous appointment.
#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvControlTestServices.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvTestCalendar.h"
#include "kvPdfPrinterService.h"
#include "kvRecordset.h"

#include <QAction>
#include <QDateEdit>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QToolBar>
#include <QtTest>

namespace {

const QDate fixedToday(2026, 11, 22);

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

struct Calendar : kvTestCalendar
{
    void press(const char *key)
    {
        control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))
            ->findChild<QAction *>(QString::fromLatin1(key))->trigger();
    }
    QString status() const
    {
        return control.findChild<QStatusBar *>(QStringLiteral("StatusBar"))->findChild<QLabel *>()->text();
    }
};

} // namespace

class tst_kvNavigation : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kvControlTestServices> m_services;

private slots:
    void initTestCase()
    {
        m_services = std::make_unique<kvControlTestServices>(fixedToday);
    }

    void init()
    {
        m_services->messageBox().Clear();
    }

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
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 1)->datDay().date(), firstCell);
        QCOMPARE(calendar.status(), week);
    }

    void steppingWithoutAutoRefreshReloads()
    {
        Calendar calendar;
        calendar.control.setAutoRefresh(false);
        calendar.control.setActualDate(QDate(2026, 11, 18));
        calendar.control.Refresh();
        calendar.statements.clear();
        calendar.press("Forward");
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 1)->datDay().date(), QDate(2026, 11, 23));
        QCOMPARE(calendar.dayLoads(), 7);
    }

    // "Today" while today's date is already visible only moves the marking; no cell
    // is cleared. "Today" never updates the status bar's week number.
    void todayWhileVisibleOnlyMovesTheMarking()
    {
        Calendar calendar;
        calendar.add(at(2026, 11, 17, 9), at(2026, 11, 17, 10), QStringLiteral("Teambesprechung"));
        calendar.control.setActualDate(QDate(2026, 11, 17));
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->EntriesCount(), 1);
        QVERIFY(kvKalivoTestAccess::DayCell(calendar.control, 2)->IsActualDay());
        QSignalSpy arranged(kvKalivoTestAccess::Grid(calendar.control), &kvDayGrid::gridArranged);
        QSignalSpy marked(kvKalivoTestAccess::Grid(calendar.control), &kvDayGrid::actualDayMarked);
        calendar.statements.clear();
        QLabel *panel = calendar.control.findChild<QStatusBar *>()->findChild<QLabel *>();
        panel->setText(QStringLiteral("unverändert"));
        calendar.press("Today");
        QCOMPARE(calendar.control.ActualDate(), fixedToday);
        QCOMPARE(calendar.statements, QStringList());
        QCOMPARE(arranged.count(), 0);
        QCOMPARE(marked.count(), 1);
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 2)->EntriesCount(), 1);
        QVERIFY(!kvKalivoTestAccess::DayCell(calendar.control, 2)->IsActualDay());
        QVERIFY(kvKalivoTestAccess::DayCell(calendar.control, 7)->IsActualDay());
        QCOMPARE(panel->text(), QStringLiteral("unverändert"));
    }

    void todayOutsideTheViewReloads()
    {
        Calendar calendar;
        calendar.control.setActualDate(QDate(2026, 1, 14));
        calendar.statements.clear();
        calendar.press("Today");
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 1)->datDay().date(), QDate(2026, 11, 16));
        QCOMPARE(calendar.dayLoads(), 7);
        QCOMPARE(calendar.status(), QStringLiteral("3. KW")); // still the setter's last word
        QCOMPARE(calendar.control.findChild<QDateEdit *>(QStringLiteral("DTPicker1"))->date(), fixedToday);
    }

    // Switching view with "Week"/"Month" re-arranges the grid even when AutoRefresh
    // is False.
    void viewButtonsRearrangeWithoutAutoRefresh()
    {
        Calendar calendar;
        calendar.control.setAutoRefresh(false);
        calendar.press("Month");
        QCOMPARE(calendar.control.View(), kvKalivo::kvMonth);
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 42);
        calendar.press("Week");
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 7);
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

    // The toolbar's "Print" asks first; the context menu's "Drucken" prints at once.
    void toolbarPrintAsksAndMenuPrintDoesNot()
    {
        Calendar calendar;
        calendar.add(at(2026, 11, 17, 9), at(2026, 11, 17, 10), QStringLiteral("Teambesprechung"));
        calendar.control.setFootnote(QStringLiteral("Büro Müller"));
        calendar.control.setActualDate(QDate(2026, 11, 17));
        kvPdfPrinterService printer(calendar.folder.filePath(QStringLiteral("kalender.pdf")));
        kvScopedService installed(printer);

        m_services->messageBox().EnqueueAnswer(kvMessageBox::vbNo);
        calendar.press("Print");
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("Kalendar drucken?"));
        QCOMPARE(m_services->messageBox().LastCall().buttons, 35);
        QCOMPARE(m_services->messageBox().LastCall().title, QString());
        QCOMPARE(printer.CallCount(), 0);

        m_services->messageBox().EnqueueAnswer(kvMessageBox::vbCancel);
        calendar.press("Print");
        QCOMPARE(printer.CallCount(), 0);

        m_services->messageBox().EnqueueAnswer(kvMessageBox::vbYes);
        calendar.press("Print");
        QCOMPARE(printer.CallCount(), 1);
        QCOMPARE(printer.Calls().last().DocumentName, QStringLiteral("Kalender November 2026"));

        calendar.chooseMenuItem(8); // "Drucken"
        QCOMPARE(m_services->messageBox().CallCount(), 3);
        QCOMPARE(printer.CallCount(), 2);
        QVERIFY(QFileInfo(printer.FilePath()).size() > 1000);
    }

    void printFailureIsReportedAs300()
    {
        Calendar calendar;
        calendar.connection.Execute(QStringLiteral("DROP TABLE Termine"));
        m_services->messageBox().Clear();
        kvPdfPrinterService printer(calendar.folder.filePath(QStringLiteral("kalender.pdf")));
        kvScopedService installed(printer);
        calendar.control.PrintCalendar();
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QVERIFY2(m_services->messageBox().LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 300\r\n")),
                 qPrintable(m_services->messageBox().LastCall().prompt));
    }

    void nextAndPreviousJumpToAppointments()
    {
        Calendar calendar;
        calendar.add(at(2026, 12, 3, 10), at(2026, 12, 3, 11), QStringLiteral("Weihnachtsmarkt"));
        calendar.add(at(2026, 10, 30, 8), at(2026, 10, 30, 9), QStringLiteral("Arzt"));
        calendar.control.setActualDate(QDate(2026, 11, 18));
        calendar.press("Next");
        QCOMPARE(calendar.control.ActualDate(), QDate(2026, 12, 3));
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 1)->datDay().date(), QDate(2026, 11, 30));
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
