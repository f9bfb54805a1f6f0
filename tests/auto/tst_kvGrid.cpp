// The week and month grid: geometry, the days shown, their headers and their rows.
#include "ctlDay.h"
#include "ctlEntry.h"
#include "ctlKW.h"
#include "kvFaultInjection.h"
#include "kvGridGeometry.h"
#include "kvControlTestServices.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvTestCalendar.h"

#include <QLabel>
#include <QtTest>

namespace {

const QDate fixedToday(2026, 11, 22);

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

// An SQLite appointment table with a few rows, connected to a control.
struct Calendar : kvTestCalendar
{
    explicit Calendar(QSize size = QSize(1280, 800))
        : kvTestCalendar(size)
    {
    }
    // The texts of the rows in the cell that shows \a day, with the marker for continued ones.
    QStringList rowsOf(const QDate &day) const
    {
        for (int index = 1; index <= kvKalivoTestAccess::DayCellCount(control); ++index) {
            const ctlDay *cell = kvKalivoTestAccess::DayCell(control, index);
            if (cell->datDay().date() != day)
                continue;
            QStringList rows;
            for (int row = 1; row <= cell->EntriesCount(); ++row)
                rows << (cell->Entries(row)->Time() + QLatin1Char(' ') + cell->Entries(row)->Text()).trimmed();
            return rows;
        }
        return {QStringLiteral("<not shown>")};
    }
};

} // namespace

class tst_kvGrid : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<kvControlTestServices> m_services;

private slots:
    void initTestCase()
    {
        m_services = std::make_unique<kvControlTestServices>(fixedToday);
    }

    void cleanup()
    {
        QCOMPARE(m_services->messageBox().CallCount(), 0);
        kvFaultInjection::Disarm();
    }

    // (W - 2 x margin - gaps - week column) / columns, rounded half to even; one-pixel gaps;
    // the last column ends at the margin.
    void cellWidth_data()
    {
        QTest::addColumn<int>("scaleWidth");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("borderStyle");
        QTest::addColumn<bool>("weeksVisible");
        QTest::addColumn<int>("cellWidth");
        QTest::addColumn<int>("firstLeft");
        QTest::newRow("6 columns, exact") << 622 << 1 << 0 << true << 100 << 16;
        QTest::newRow("6 columns, .5 to even (down)") << 625 << 1 << 0 << true << 100 << 16;
        QTest::newRow("6 columns, .5 to even (up)") << 631 << 1 << 0 << true << 102 << 16;
        QTest::newRow("7 columns, exact") << 723 << 2 << 0 << true << 100 << 16;
        QTest::newRow("border, no week column") << 707 << 1 << 1 << false << 117 << 0;
    }
    void cellWidth()
    {
        QFETCH(int, scaleWidth);
        QFETCH(int, columns);
        QFETCH(int, borderStyle);
        QFETCH(bool, weeksVisible);
        QFETCH(int, cellWidth);
        QFETCH(int, firstLeft);
        kvGridGeometry::Input input;
        input.scaleWidth = scaleWidth;
        input.captionTop = 30;
        input.statusBarTop = 500;
        input.weekendColumns = columns;
        input.borderStyle = borderStyle;
        input.weeksVisible = weeksVisible;
        input.view = 2;
        const kvGridGeometry geometry(input);
        QCOMPARE(geometry.cellWidth(), cellWidth);
        QCOMPARE(geometry.cells().at(0).left(), firstLeft);
        QCOMPARE(geometry.cells().at(1).left(), geometry.cells().at(0).right() + 2);
        QCOMPARE(geometry.cells().at(7).top(), geometry.cells().at(0).bottom() + 2);
        if (columns == 2)
            QCOMPARE(geometry.cells().at(6).right(), scaleWidth - geometry.margin() - 1);
    }

    // With one weekend column a cell height of 101 gives Saturday and Sunday 50
    // pixels each; a cell height of 100 gives Saturday 50 and Sunday 49.
    void saturdayAboveSunday_data()
    {
        QTest::addColumn<int>("cellHeight");
        QTest::addColumn<int>("saturday");
        QTest::addColumn<int>("sunday");
        QTest::newRow("101") << 101 << 50 << 50;
        QTest::newRow("100") << 100 << 50 << 49;
    }
    void saturdayAboveSunday()
    {
        QFETCH(int, cellHeight);
        QFETCH(int, saturday);
        QFETCH(int, sunday);
        kvGridGeometry::Input input;
        input.scaleWidth = 700;
        input.captionTop = 30;
        // Week view: the cell height is what lies between the first cell top and the status bar,
        // less 2 x margin.
        input.statusBarTop = 30 + kvGridGeometry::CaptionHeight + 1 + cellHeight + 2;
        const kvGridGeometry geometry(input);
        QCOMPARE(geometry.cellHeight(), cellHeight);
        QCOMPARE(geometry.cells().size(), 7);
        const QRect saturdayCell = geometry.cells().at(5);
        const QRect sundayCell = geometry.cells().at(6);
        QCOMPARE(saturdayCell.height(), saturday);
        QCOMPARE(sundayCell.height(), sunday);
        QCOMPARE(saturdayCell.top(), geometry.firstCellTop());
        QCOMPARE(sundayCell.top(), saturdayCell.top() + saturday + 1);
        QCOMPARE(sundayCell.top() + sundayCell.height() - saturdayCell.top(), cellHeight);
    }

    // The week from its Monday; the month from the Monday on or before its 1st, for 42 days.
    void daysShown_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<int>("weekendColumns");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("first");
        QTest::addColumn<QDate>("last");
        QTest::addColumn<QStringList>("weekdays");
        const QStringList workdays{"Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag"};
        QTest::newRow("week, one weekend column") << 1 << 1 << QDate(2026, 11, 18) << QDate(2026, 11, 16)
                                                  << QDate(2026, 11, 22) << workdays + QStringList{"Sa-So"};
        QTest::newRow("week, two") << 1 << 2 << QDate(2026, 11, 18) << QDate(2026, 11, 16) << QDate(2026, 11, 22)
                                   << workdays + QStringList{"Samstag", "Sonntag"};
        QTest::newRow("June 2026 from Monday the 1st") << 2 << 1 << QDate(2026, 6, 17) << QDate(2026, 6, 1)
                                                       << QDate(2026, 7, 12) << workdays + QStringList{"Sa-So"};
        QTest::newRow("December 2025 (31 days)") << 2 << 1 << QDate(2025, 12, 24) << QDate(2025, 12, 1)
                                                 << QDate(2026, 1, 11) << workdays + QStringList{"Sa-So"};
    }
    void daysShown()
    {
        QFETCH(int, view);
        QFETCH(int, weekendColumns);
        QFETCH(QDate, date);
        QFETCH(QDate, first);
        QFETCH(QDate, last);
        QFETCH(QStringList, weekdays);
        Calendar calendar;
        calendar.control.setView(kvKalivo::kvView(view));
        calendar.control.setWeekendColumns(kvKalivo::enWeekendColumns(weekendColumns));
        calendar.control.setActualDate(date);
        const int count = kvKalivoTestAccess::DayCellCount(calendar.control);
        QCOMPARE(count, view == 1 ? 7 : 42);
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, 1)->datDay().date(), first);
        QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, count)->datDay().date(), last);
        QStringList captions;
        for (int column = 1; column <= weekdays.size(); ++column)
            captions << calendar.control.findChild<QLabel *>(QStringLiteral("lblWeekDay%1").arg(column))->text();
        QCOMPARE(captions, weekdays);
    }

    // In month view with kvOne, every seventh cell is a Sunday in the lower part of
    // the weekend column.
    void everySeventhCellIsTheSundayBelowTheSaturday()
    {
        Calendar calendar;
        calendar.control.setView(kvKalivo::kvMonth);
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 42);
        for (int index = 7; index <= 42; index += 7) {
            const ctlDay *sunday = kvKalivoTestAccess::DayCell(calendar.control, index);
            const ctlDay *saturday = kvKalivoTestAccess::DayCell(calendar.control, index - 1);
            QCOMPARE(sunday->datDay().weekdayFromMonday(), 7);
            QCOMPARE(saturday->datDay().weekdayFromMonday(), 6);
            QCOMPARE(sunday->x(), saturday->x());
            QCOMPARE(sunday->y(), saturday->geometry().bottom() + 2);
        }
    }

    void weekColumnShowsTheIsoWeeks()
    {
        Calendar calendar;
        calendar.control.setView(kvKalivo::kvMonth);
        calendar.control.setActualDate(QDate(2026, 12, 10));
        const ctlKW *weeks = calendar.control.findChild<ctlKW *>();
        QCOMPARE(weeks->CountKW(), 6);
        QCOMPARE(weeks->sCaption(1), QStringLiteral("49"));
        QCOMPARE(weeks->sCaption(5), QStringLiteral("53"));
        QCOMPARE(weeks->sCaption(6), QStringLiteral("1"));
        QVERIFY(weeks->isVisible());
        calendar.control.setWeeksVisible(false);
        QVERIFY(!weeks->isVisible());
        QVERIFY(!calendar.control.findChild<QWidget *>(QStringLiteral("shpTopLeftEdge"))->isVisible());
    }

    void headersTodayAndHolidays()
    {
        Calendar calendar;
        calendar.control.setPublicHoliday(true);
        calendar.control.setView(kvKalivo::kvMonth);
        calendar.control.setActualDate(QDate(2026, 11, 10));
        for (int index = 1; index <= 42; ++index) {
            ctlDay *cell = kvKalivoTestAccess::DayCell(calendar.control, index);
            const QDate day = cell->datDay().date();
            const uint header = cell->ctlHeader().BackColor();
            if (day == fixedToday)
                QCOMPARE(header, 0xC0C0FFu);
            else if (day.month() != 11)
                QCOMPARE(header, calendar.control.DayHeaderColor1());
            else
                QCOMPARE(header, calendar.control.DayHeaderColor2());
        }
        const auto cellOf = [&](const QDate &day) {
            for (int index = 1; index <= 42; ++index)
                if (kvKalivoTestAccess::DayCell(calendar.control, index)->datDay().date() == day)
                    return kvKalivoTestAccess::DayCell(calendar.control, index);
            return static_cast<ctlDay *>(nullptr);
        };
        QCOMPARE(cellOf(QDate(2026, 11, 1))->PublicHolidayName(), QStringLiteral("Allerheiligen"));
        QCOMPARE(cellOf(QDate(2026, 11, 29))->PublicHolidayName(), QStringLiteral("1. Advent"));
        QCOMPARE(cellOf(QDate(2026, 11, 10))->PublicHolidayName(), QString());
        QVERIFY(cellOf(QDate(2026, 11, 10))->IsActualDay());
        QVERIFY(!cellOf(QDate(2026, 11, 11))->IsActualDay());
        // A re-layout (the colour pass after FillGrid) keeps these headers apart.
        calendar.control.resize(1100, 700);
        QApplication::processEvents();
        QCOMPARE(cellOf(fixedToday)->ctlHeader().BackColor(), 0xC0C0FFu);
        QCOMPARE(cellOf(QDate(2026, 12, 1))->ctlHeader().BackColor(), calendar.control.DayHeaderColor1());
        QCOMPARE(cellOf(QDate(2026, 11, 29))->ctlHeader().lblTime().ForeColor, 255u);
    }

    // A reload gives every header its holiday name anew, which sets the boldness of its day
    // number; the marking that follows makes the selected day's number bold again.
    void selectedDayStaysBoldAfterAReload()
    {
        Calendar calendar;
        calendar.control.setPublicHoliday(true);
        calendar.control.setActualDate(QDate(2026, 11, 17));
        ctlDay *selected = kvKalivoTestAccess::DayCell(calendar.control, 2);
        QVERIFY(selected->IsActualDay());
        QVERIFY(selected->ctlHeader().lblTime().Bold);
        calendar.control.setRaiseEditEvent(true);
        calendar.control.EditAppointment(1); // the host's Edit, not cancelled: a reload
        QVERIFY(selected->IsActualDay());
        QVERIFY(selected->ctlHeader().lblTime().Bold);
    }

    void appointmentsAppearInTheRightCells()
    {
        Calendar calendar;
        calendar.add(at(2026, 11, 17, 9, 30), at(2026, 11, 17, 10, 30), QStringLiteral("Teambesprechung"));
        calendar.add(at(2026, 11, 18), at(2026, 11, 19), QStringLiteral("Urlaub"));
        calendar.add(at(2026, 11, 19, 14), at(2026, 11, 21, 12), QStringLiteral("Messe"), 41);
        calendar.control.setActualDate(QDate(2026, 11, 19));
        calendar.control.Refresh();
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 17)), QStringList{QStringLiteral("09:30 Teambesprechung")});
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 18)), QStringList{QStringLiteral("Urlaub")});
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 19)),
                 (QStringList{QStringLiteral("<-- Urlaub"), QStringLiteral("14:00 Messe")}));
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 20)), QStringList{QStringLiteral("<-- Messe")});
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 21)), QStringList{QStringLiteral("<-- Messe")});
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 22)), QStringList());

        calendar.control.setView(kvKalivo::kvMonth);
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 20)), QStringList{QStringLiteral("<-- Messe")});
        QCOMPARE(calendar.rowsOf(QDate(2026, 11, 17)), QStringList{QStringLiteral("09:30 Teambesprechung")});
    }

    void designModeShowsNoDates()
    {
        Calendar calendar;
        calendar.add(at(2026, 11, 17, 9, 30), at(2026, 11, 17, 10, 30), QStringLiteral("Teambesprechung"));
        calendar.control.setUserMode(false);
        calendar.control.Refresh();
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 7);
        for (int index = 1; index <= 7; ++index)
            QCOMPARE(kvKalivoTestAccess::DayCell(calendar.control, index)->EntriesCount(), 0);
    }

    void aFailingDayLoadIsReportedOnceAtTheEnd()
    {
        Calendar calendar;
        calendar.connection.Execute(QStringLiteral("DROP TABLE Termine"));
        calendar.control.Refresh();
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QVERIFY2(m_services->messageBox().LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 12-")),
                 qPrintable(m_services->messageBox().LastCall().prompt));
        QVERIFY(m_services->messageBox().LastCall().prompt.contains(QStringLiteral("no such table")));
        m_services->messageBox().Clear();
    }

    void aFailingFillStageReportsElevenHundredPlusStep()
    {
        Calendar calendar;
        kvFaultInjection::Arm(QStringLiteral("FillGrid"), 5, QStringLiteral("Testfehler"));
        calendar.control.Refresh();
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 1105\r\nTestfehler"));
        m_services->messageBox().Clear();
    }

};

QTEST_MAIN(tst_kvGrid)
#include "tst_kvGrid.moc"
