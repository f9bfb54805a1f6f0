// The week and month grid: geometry, the days shown, their headers and their rows.
#include "ctlKW.h"
#include "kvEditCalendar.h"
#include "kvFaultInjection.h"
#include "kvGridGeometry.h"

#include <QLabel>
#include <QtTest>

#include <optional>

namespace {

ctlDay *cellOf(const kvKalivo &control, const QDate &day)
{
    for (int index = 1; index <= kvKalivoTestAccess::DayCellCount(control); ++index)
        if (kvKalivoTestAccess::DayCell(control, index)->datDay().date() == day)
            return kvKalivoTestAccess::DayCell(control, index);
    return nullptr;
}

//! The rows of the cell that shows \a day, with the marker of continued ones.
QStringList rowsOf(const kvKalivo &control, const QDate &day)
{
    const ctlDay *cell = cellOf(control, day);
    if (!cell)
        return {QStringLiteral("<not shown>")};
    QStringList rows;
    for (int row = 1; row <= cell->EntriesCount(); ++row)
        rows << (cell->Entries(row)->Time() + QLatin1Char(' ') + cell->Entries(row)->Text()).trimmed();
    return rows;
}

} // namespace

class tst_kvGrid : public QObject
{
    Q_OBJECT

    std::optional<kvControlTestServices> m_services;

private slots:
    void init() { m_services.emplace(fixedToday); }
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
        const kvGridGeometry geometry({.scaleWidth = scaleWidth, .captionTop = 30, .statusBarTop = 500,
                                       .borderStyle = borderStyle, .weeksVisible = weeksVisible,
                                       .weekendColumns = columns, .view = 2});
        QCOMPARE(geometry.cellWidth(), cellWidth);
        QCOMPARE(geometry.cells().at(0).left(), firstLeft);
        QCOMPARE(geometry.cells().at(1).left(), geometry.cells().at(0).right() + 2);
        QCOMPARE(geometry.cells().at(7).top(), geometry.cells().at(0).bottom() + 2);
        if (columns == 2)
            QCOMPARE(geometry.cells().at(6).right(), scaleWidth - geometry.margin() - 1);
    }

    // With one weekend column a cell height of 101 gives Saturday and Sunday 50 pixels each;
    // a cell height of 100 gives Saturday 50 and Sunday 49.
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
        // Week view: the cells fill what lies between the caption row and the status bar, less 2 x margin.
        const kvGridGeometry geometry({.scaleWidth = 700, .captionTop = 30,
                                       .statusBarTop = 30 + kvGridGeometry::CaptionHeight + 1 + cellHeight + 2});
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

    // The week from its Monday; the month from the Monday on or before its 1st, for 42 days,
    // with one weekend column every seventh cell the Sunday below the Saturday.
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
        kvEditCalendar calendar;
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
        for (int index = 7; weekendColumns == 1 && index <= count; index += 7) {
            const ctlDay *sunday = kvKalivoTestAccess::DayCell(calendar.control, index);
            const ctlDay *saturday = kvKalivoTestAccess::DayCell(calendar.control, index - 1);
            QCOMPARE(sunday->datDay().weekdayFromMonday(), 7);
            QCOMPARE(sunday->x(), saturday->x());
            QCOMPARE(sunday->y(), saturday->geometry().bottom() + 2);
        }
    }

    void weekColumnShowsTheIsoWeeks()
    {
        kvEditCalendar calendar;
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
        kvEditCalendar calendar;
        kvKalivo &control = calendar.control;
        control.setPublicHoliday(true);
        control.setView(kvKalivo::kvMonth);
        control.setActualDate(QDate(2026, 11, 10));
        for (int index = 1; index <= 42; ++index) {
            ctlDay *cell = kvKalivoTestAccess::DayCell(control, index);
            const QDate day = cell->datDay().date();
            QCOMPARE(cell->ctlHeader().BackColor(), day == fixedToday ? 0xC0C0FFu
                                                    : day.month() != 11 ? control.DayHeaderColor1()
                                                                        : control.DayHeaderColor2());
        }
        QCOMPARE(cellOf(control, QDate(2026, 11, 1))->PublicHolidayName(), QStringLiteral("Allerheiligen"));
        QCOMPARE(cellOf(control, QDate(2026, 11, 29))->PublicHolidayName(), QStringLiteral("1. Advent"));
        QCOMPARE(cellOf(control, QDate(2026, 11, 10))->PublicHolidayName(), QString());
        QVERIFY(cellOf(control, QDate(2026, 11, 10))->IsActualDay());
        QVERIFY(!cellOf(control, QDate(2026, 11, 11))->IsActualDay());
        // A re-layout (the colour pass after FillGrid) keeps these headers apart.
        control.resize(1100, 700);
        QApplication::processEvents();
        QCOMPARE(cellOf(control, fixedToday)->ctlHeader().BackColor(), 0xC0C0FFu);
        QCOMPARE(cellOf(control, QDate(2026, 12, 1))->ctlHeader().BackColor(), control.DayHeaderColor1());
        QCOMPARE(cellOf(control, QDate(2026, 11, 29))->ctlHeader().lblTime().ForeColor, 255u);
    }

    // A reload gives every header its holiday name anew, which sets the boldness of its day
    // number; the marking that follows makes the selected day's number bold again.
    void selectedDayStaysBoldAfterAReload()
    {
        kvEditCalendar calendar;
        calendar.control.setPublicHoliday(true);
        calendar.control.setActualDate(QDate(2026, 11, 17));
        QVERIFY(calendar.cell(17)->IsActualDay());
        QVERIFY(calendar.cell(17)->ctlHeader().lblTime().Bold);
        calendar.control.setRaiseEditEvent(true);
        calendar.control.EditAppointment(1); // the host's Edit, not cancelled: a reload
        QVERIFY(calendar.cell(17)->IsActualDay());
        QVERIFY(calendar.cell(17)->ctlHeader().lblTime().Bold);
    }

    void appointmentsAppearInTheRightCells()
    {
        kvEditCalendar calendar;
        calendar.add(at(17, 9, 30), at(17, 10, 30), QStringLiteral("Teambesprechung"));
        calendar.add(at(18), at(19), QStringLiteral("Urlaub"));
        calendar.add(at(19, 14), at(21, 12), QStringLiteral("Messe"), 41);
        calendar.control.setActualDate(QDate(2026, 11, 19));
        calendar.control.Refresh();
        const QStringList continued{QStringLiteral("<-- Messe")};
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 17)), QStringList{QStringLiteral("09:30 Teambesprechung")});
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 18)), QStringList{QStringLiteral("Urlaub")});
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 19)),
                 (QStringList{QStringLiteral("<-- Urlaub"), QStringLiteral("14:00 Messe")}));
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 20)), continued);
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 21)), continued);
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 22)), QStringList());
        calendar.control.setView(kvKalivo::kvMonth);
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 20)), continued);
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 17)), QStringList{QStringLiteral("09:30 Teambesprechung")});
    }

    void aFailingFillStageReportsElevenHundredPlusStep()
    {
        kvEditCalendar calendar;
        kvFaultInjection::Arm(QStringLiteral("FillGrid"), 5, QStringLiteral("Testfehler"));
        calendar.control.Refresh();
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 1105\r\nTestfehler"));
        m_services->messageBox().Clear();
    }
};

QTEST_MAIN(tst_kvGrid)
#include "tst_kvGrid.moc"
