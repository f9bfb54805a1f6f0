// The control: properties, re-layout and persistence; the grid: geometry, days, headers, rows;
// moving through the calendar: steps, today, picker, view switch, printing, next and previous.
#include "ctlKW.h"
#include "ctlToolTip.h"
#include "kvDesignerFormValues.h"
#include "kvEditCalendar.h"
#include "kvFaultInjection.h"
#include "kvGridGeometry.h"
#include "kvMemoryPropertyBag.h"
#include "PublicHolidays.h"
#include "kvPdfPrinterService.h"
#include "kvSettingsPropertyBag.h"

#include <QAction>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolBar>
#include <QtTest>

#include <optional>

namespace {

QString statusText(const kvKalivo &control)
{
    return control.findChild<QStatusBar *>(QStringLiteral("StatusBar"))->findChild<QLabel *>()->text();
}

QString caption(const kvKalivo &control)
{
    return control.findChild<QLabel *>(QStringLiteral("lblMonat"))->text();
}

QAction *toolbarButton(const kvKalivo &control, const char *key)
{
    return control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))->findChild<QAction *>(QLatin1String(key));
}

QDateEdit *datePicker(const kvKalivo &control)
{
    return control.findChild<QDateEdit *>(QStringLiteral("DTPicker1"));
}

QStringList names(const QSignalSpy &notified)
{
    QStringList result;
    for (const QList<QVariant> &arguments : notified)
        result << arguments.at(0).toString();
    return result;
}

//! The properties \a names (default: every persisted one) have the values of a fresh control.
void compareWithDefaults(const kvKalivo &control, QList<QByteArray> names = {})
{
    const kvKalivo fresh;
    if (names.isEmpty())
        names = kvDesignablePersistedProperties();
    for (const QByteArray &name : names)
        QVERIFY2(control.property(name) == fresh.property(name), name.constData());
    QVERIFY(toolbarButton(control, "Week")->isChecked());
}

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

//! The day cells, watched: a cell destroyed since becomes null.
QList<QPointer<ctlDay>> dayCells(const kvKalivo &control)
{
    QList<QPointer<ctlDay>> cells;
    for (int index = 1; index <= kvKalivoTestAccess::DayCellCount(control); ++index)
        cells << kvKalivoTestAccess::DayCell(control, index);
    return cells;
}

} // namespace

class tst_kvKalivo : public QObject
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

    // A fresh control: the week of today in white cells, toolbar icons; InitProperties restores.
    void defaultsAndInitProperties()
    {
        kvKalivo control;
        QCOMPARE(control.View(), kvKalivo::kvWeek);
        QCOMPARE(control.ActualDate(), fixedToday);
        QCOMPARE(control.WeekendColumns(), kvKalivo::kvOne);
        QCOMPARE(control.BackColor(), 0xFFFFFFu);
        QCOMPARE(control.TodayHeaderColor(), 0xC0C0FFu);
        QCOMPARE(control.WeeksVisible(), true);
        QCOMPARE(control.AutoRefresh(), true);
        QCOMPARE(control.ParameterizedSql(), false);
        QCOMPARE(control.ToolTipBackColor1(), ctlToolTip::DefaultToolTipBackColor1);
        QCOMPARE(datePicker(control)->date(), fixedToday);
        QCOMPARE(statusText(control), QStringLiteral("47. KW"));
        control.resize(640, 480);
        QCOMPARE(control.grab().toImage().pixelColor(320, 240), QColor(Qt::white)); // a day cell in BackColor
        for (const QAction *action : control.findChild<QToolBar *>()->actions())
            QVERIFY2(!action->icon().pixmap(16, 16).isNull(), qPrintable(action->objectName()));
        for (const auto &[name, value] : kvDesignerFormValues())
            control.setProperty(name, value);
        control.InitProperties();
        compareWithDefaults(control, {"View", "ActualDate", "WeekendColumns", "BorderStyle", "BackColor",
                                      "TodayHeaderColor", "DayHeaderColor1", "DayHeaderColor2", "WeeksVisible",
                                      "AutoRefresh", "ParameterizedSql"});
    }

    // WeekendColumns other than 1 or 2 is ignored; only AutoRefresh re-layouts anyway.
    void weekendColumns_data()
    {
        QTest::addColumn<bool>("autoRefresh");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("rebuilds");
        QTest::newRow("0, AutoRefresh") << true << 0 << 2 << 1;
        QTest::newRow("3, AutoRefresh") << true << 3 << 2 << 1;
        QTest::newRow("3, no AutoRefresh") << false << 3 << 2 << 0;
        QTest::newRow("1, AutoRefresh") << true << 1 << 1 << 1;
    }
    void weekendColumns()
    {
        QFETCH(bool, autoRefresh);
        QFETCH(int, value);
        QFETCH(int, stored);
        QFETCH(int, rebuilds);
        kvKalivo control;
        control.setWeekendColumns(kvKalivo::kvTwo);
        control.setAutoRefresh(autoRefresh);
        QSignalSpy arranged(kvKalivoTestAccess::Grid(control), &kvDayGrid::gridArranged);
        QSignalSpy notified(&control, &kvKalivo::PropertyChanged);
        control.setWeekendColumns(kvKalivo::enWeekendColumns(value));
        QCOMPARE(int(control.WeekendColumns()), stored);
        QCOMPARE(arranged.count(), rebuilds);
        QCOMPARE(names(notified), QStringList{QString::number(stored)});
    }

    // The same date again re-layouts and rewrites the status bar only; a new date also notifies.
    void actualDate()
    {
        kvKalivo control;
        control.setActualDate(QDate(2024, 5, 17));
        control.findChild<QStatusBar *>()->findChild<QLabel *>()->setText(QStringLiteral("overwritten"));
        {
            const QSignalBlocker blocker(datePicker(control));
            datePicker(control)->setDate(QDate(2001, 1, 1));
        }
        QSignalSpy arranged(kvKalivoTestAccess::Grid(control), &kvDayGrid::gridArranged);
        QSignalSpy marked(kvKalivoTestAccess::Grid(control), &kvDayGrid::actualDayMarked);
        QSignalSpy notified(&control, &kvKalivo::PropertyChanged);
        control.setActualDate(QDate(2024, 5, 17));
        QCOMPARE(arranged.count(), 1);
        QCOMPARE(marked.count(), 1);
        QCOMPARE(statusText(control), QStringLiteral("20. KW"));
        QCOMPARE(datePicker(control)->date(), QDate(2001, 1, 1));
        QCOMPARE(notified.count(), 0);
        control.setActualDate(QDate(2021, 1, 1));
        QCOMPARE(datePicker(control)->date(), QDate(2021, 1, 1));
        QCOMPARE(statusText(control), QStringLiteral("53. KW"));
        QCOMPARE(names(notified), QStringList{QStringLiteral("ActualDate")});
    }

    // With AutoRefresh False nothing changes on screen until Refresh; True re-layouts at once.
    void autoRefresh()
    {
        kvKalivo control;
        control.resize(640, 480);
        control.setAutoRefresh(false);
        const QString captionBefore = caption(control);
        QSignalSpy arranged(kvKalivoTestAccess::Grid(control), &kvDayGrid::gridArranged);
        QSignalSpy marked(kvKalivoTestAccess::Grid(control), &kvDayGrid::actualDayMarked);
        QSignalSpy notified(&control, &kvKalivo::PropertyChanged);
        control.setView(kvKalivo::kvMonth);
        control.setWeekendColumns(kvKalivo::kvTwo);
        control.setWeeksVisible(false);
        control.setPublicHoliday(true);
        control.setActualDate(QDate(2024, 1, 31));
        QCOMPARE(arranged.count(), 0);
        QCOMPARE(marked.count(), 0);
        QCOMPARE(caption(control), captionBefore);
        control.Refresh();
        QCOMPARE(arranged.count(), 1);
        QCOMPARE(marked.count(), 1);
        QCOMPARE(caption(control), QStringLiteral("Januar 2024"));
        control.setAutoRefresh(true);
        QCOMPARE(arranged.count(), 2);
        QCOMPARE(names(notified).last(), QStringLiteral("Wahr"));
    }

    void lostFocusHidesTheToolTip()
    {
        QWidget form;
        auto *control = new kvKalivo(&form);
        auto *elsewhere = new QLineEdit(&form);
        control->setGeometry(0, 0, 400, 300);
        elsewhere->setGeometry(0, 310, 100, 20);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        form.activateWindow();
        control->setFocus(); // passed on to the grid
        QTRY_VERIFY(control->isAncestorOf(QApplication::focusWidget()));
        ctlToolTip *toolTip = control->findChild<ctlToolTip *>();
        toolTip->show();
        elsewhere->setFocus();
        QTRY_VERIFY(elsewhere->hasFocus());
        QVERIFY(!toolTip->isVisible());
    }

    // Values equal to their defaults are not written; every persisted property survives both bags.
    void writeAndReadProperties()
    {
        kvMemoryPropertyBag defaults;
        kvKalivo().WriteProperties(defaults);
        for (const char *key : {"DayHeaderColor1", "WeeksVisible", "RecordSource", "Footnote",
                                "RaiseDatabaseEvents", "ParameterizedSql"})
            QVERIFY2(!defaults.Keys().contains(QLatin1String(key)), key);
        QTemporaryDir folder;
        QSettings settings(folder.filePath(QStringLiteral("host.ini")), QSettings::IniFormat);
        kvSettingsPropertyBag settingsBag(&settings, QStringLiteral("Form1/kvKalivo1"));
        kvMemoryPropertyBag memoryBag;
        for (kvPropertyBag *bag : std::initializer_list<kvPropertyBag *>{&memoryBag, &settingsBag}) {
            {
                kvKalivo saved;
                for (const auto &[name, value] : kvDesignerFormValues())
                    saved.setProperty(name, value);
                saved.WriteProperties(*bag);
            }
            kvKalivo restored;
            restored.ReadProperties(*bag);
            for (const auto &[name, value] : kvDesignerFormValues())
                QVERIFY2(restored.property(name) == value, name.constData());
            QVERIFY(toolbarButton(restored, "Month")->isChecked());
        }
    }

    // Values of the wrong type or out of range give the defaults (garbage files: tst_kvPropertyBag).
    void brokenSettingsFallBack()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("broken.ini")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[kvKalivo]\nView=abc\nBorderStyle=99999999999\nWeekendColumns=70000\nBackColor=blue\n"
                   "ActualDate=gestern\nWeeksVisible=maybe\nAutoRefresh=7x\nDbDateFormat=x\n"
                   "ToolTipBackColor1=@ByteArray(\\0)\n");
        file.close();
        QSettings settings(file.fileName(), QSettings::IniFormat);
        kvKalivo control;
        control.ReadProperties(kvSettingsPropertyBag(&settings, QStringLiteral("kvKalivo")));
        compareWithDefaults(control);
    }

    void monthCaption_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QString>("caption");
        QTest::newRow("month view") << 2 << QDate(2026, 3, 10) << QStringLiteral("März 2026");
        QTest::newRow("week in one month") << 1 << QDate(2026, 11, 18) << QStringLiteral("November 2026");
        QTest::newRow("week across the year") << 1 << QDate(2025, 12, 31) << QStringLiteral("Dez/Jan 2026");
        QTest::newRow("week across months") << 1 << QDate(2026, 4, 29) << QStringLiteral("Apr/Mai 2026");
    }
    void monthCaption()
    {
        QFETCH(int, view);
        QFETCH(QDate, date);
        QFETCH(QString, caption);
        kvKalivo control;
        control.setView(kvKalivo::kvView(view));
        control.setActualDate(date);
        QCOMPARE(::caption(control), caption);
    }

    // Toolbar, picker and caption never overlap, and the longest month name fits.
    void chromeFitsAtEverySize()
    {
        kvKalivo control;
        control.setActualDate(QDate(2026, 9, 22));
        for (const QSize size : {QSize(400, 300), QSize(640, 480), QSize(1280, 800)}) {
            control.resize(size);
            QCOMPARE(control.grab().size(), size);
            const QWidget *picker = datePicker(control);
            const QWidget *toolbar = control.findChild<QToolBar *>();
            const QLabel *label = control.findChild<QLabel *>(QStringLiteral("lblMonat"));
            QVERIFY(!picker->geometry().intersects(toolbar->geometry()));
            QVERIFY(!label->geometry().intersects(toolbar->geometry()));
            QVERIFY(!label->geometry().intersects(picker->geometry()));
            QVERIFY(control.rect().contains(picker->geometry()));
            QVERIFY(label->fontMetrics().horizontalAdvance(label->text()) <= label->width());
            QCOMPARE(control.findChild<QStatusBar *>()->geometry().bottom(), size.height() - 1);
        }
    }

    // A closed connection disables "Next", "Previous" and "New" and is reported; a missing table too.
    void connectionStateEnablesTheDatabaseButtons()
    {
        kvTestCalendar calendar;
        for (const char *key : {"Next", "Previous", "New"})
            QVERIFY2(toolbarButton(calendar.control, key)->isEnabled(), key);
        kvConnection closed;
        closed.setConnectionString(calendar.connection.ConnectionString());
        calendar.control.setConnection(&closed);
        for (const char *key : {"Next", "Previous", "New"})
            QVERIFY2(!toolbarButton(calendar.control, key)->isEnabled(), key);
        QVERIFY(toolbarButton(calendar.control, "Forward")->isEnabled());
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QVERIFY(m_services->messageBox().LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode ")));
        m_services->messageBox().Clear();

        kvKalivo missingTable;
        missingTable.setRecordSource(QStringLiteral("Fehlt"));
        missingTable.setConnection(&calendar.connection);
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QVERIFY2(m_services->messageBox().LastCall().prompt.contains(QStringLiteral("no such table")),
                 qPrintable(m_services->messageBox().LastCall().prompt));
        QVERIFY(toolbarButton(missingTable, "Next")->isEnabled());
        m_services->messageBox().Clear();
    }

    // (W - 2 x margin - gaps - week column) / columns, half to even; the last ends at the margin.
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

    // One weekend column: Saturday above Sunday, Saturday taking the odd pixel.
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

    // The week from its Monday, the month 42 days from the Monday on or before its 1st.
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
        // A reload resets the headers' holiday boldness; the marking makes the selected day bold again.
        QVERIFY(cellOf(control, QDate(2026, 11, 10))->ctlHeader().lblTime().Bold);
        control.setRaiseEditEvent(true);
        control.EditAppointment(1); // the host's Edit, not cancelled: a reload
        QVERIFY(cellOf(control, QDate(2026, 11, 10))->IsActualDay());
        QVERIFY(cellOf(control, QDate(2026, 11, 10))->ctlHeader().lblTime().Bold);
    }

    void appointmentsAppearInTheRightCells()
    {
        Calendar calendar;
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
        Calendar calendar;
        kvFaultInjection::Arm(QStringLiteral("FillGrid"), 5, QStringLiteral("Testfehler"));
        calendar.control.Refresh();
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 1105\r\nTestfehler"));
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
        QCOMPARE(calendar.gridLoads(), 1);
        calendar.press("Month");
        QCOMPARE(calendar.control.View(), kvKalivo::kvMonth);
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 42);
        calendar.press("Week");
        QCOMPARE(kvKalivoTestAccess::DayCellCount(calendar.control), 7);
    }

    // Moving through the dates refills the cells it has: the same cells show the new days.
    void cellsStayWhileTheDatesChange_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QDate>("firstCell");
        QTest::newRow("week Forward") << 1 << "Forward" << QDate(2026, 11, 23);
        QTest::newRow("month Back") << 2 << "Back" << QDate(2026, 9, 28);
        QTest::newRow("Today from Christmas") << 1 << "Today" << QDate(2026, 11, 16);
        QTest::newRow("date picker") << 1 << "picker" << QDate(2026, 12, 21);
        QTest::newRow("reload") << 2 << "reload" << QDate(2026, 10, 26);
    }
    void cellsStayWhileTheDatesChange()
    {
        QFETCH(int, view);
        QFETCH(QString, command);
        QFETCH(QDate, firstCell);
        Calendar calendar;
        calendar.add(at(17, 9, 30), at(17, 10, 30), QStringLiteral("Teambesprechung"));
        calendar.add(at(24, 8), at(24, 9), QStringLiteral("Zahnarzt"));
        calendar.control.setView(kvKalivo::kvView(view));
        calendar.control.setPublicHoliday(true);
        calendar.control.setActualDate(command == QLatin1String("Today") ? QDate(2026, 12, 24) : QDate(2026, 11, 17));
        const QList<QPointer<ctlDay>> cells = dayCells(calendar.control);
        if (command == QLatin1String("picker"))
            datePicker(calendar.control)->setDate(QDate(2026, 12, 24));
        else if (command == QLatin1String("reload"))
            calendar.control.Refresh();
        else
            calendar.press(qPrintable(command));
        QCOMPARE(calendar.firstDay(), firstCell);
        QVERIFY(!cells.contains(nullptr));
        QVERIFY(dayCells(calendar.control) == cells);
        for (const ctlDay *cell : cells)
            QCOMPARE(cell->PublicHolidayName(), kv::GetPublicHolidayName(cell->datDay()));
        if (cellOf(calendar.control, QDate(2026, 11, 24)))
            QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 24)), QStringList{QStringLiteral("08:00 Zahnarzt")});
    }

    // A resize lays the cells out anew with the rows they hold: nothing is read again.
    void resizeKeepsTheCellsAndReadsNothing()
    {
        Calendar calendar;
        calendar.add(at(17, 9, 30), at(17, 10, 30), QStringLiteral("Teambesprechung"));
        calendar.control.setView(kvKalivo::kvMonth);
        calendar.control.setActualDate(QDate(2026, 11, 17));
        const QList<QPointer<ctlDay>> cells = dayCells(calendar.control);
        const int width = cells.constFirst()->width();
        QSignalSpy arranged(kvKalivoTestAccess::Grid(calendar.control), &kvDayGrid::gridArranged);
        calendar.statements.clear();
        calendar.control.resize(calendar.control.size() + QSize(140, 70));
        QCOMPARE(arranged.count(), 1);
        QCOMPARE(calendar.statements, QStringList());
        QVERIFY(!cells.contains(nullptr));
        QVERIFY(dayCells(calendar.control) == cells);
        QVERIFY(cells.constFirst()->width() > width);
        QCOMPARE(rowsOf(calendar.control, QDate(2026, 11, 17)), QStringList{QStringLiteral("09:30 Teambesprechung")});
        QCOMPARE(cellOf(calendar.control, QDate(2026, 11, 17))->Entries(1)->Width(),
                 cellOf(calendar.control, QDate(2026, 11, 17))->contentsRect().width());
        const ctlKW *weeks = calendar.control.findChild<ctlKW *>();
        const QRect lastWeek = weeks->getKW(6)->geometry().translated(weeks->pos());
        QVERIFY(cells.at(35)->geometry().contains(QPoint(cells.at(35)->x(), lastWeek.center().y())));
        QCOMPARE(weeks->getKW(6)->text(), QStringLiteral("49"));
    }

    // "Today" in view only moves the marking, else reloads; never updates the status bar's week.
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
        QCOMPARE(calendar.gridLoads(), 1);
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

    // The toolbar's "Print" asks first, the menu's "Drucken" does not; a failure is reported as 300.
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
        messageBox.Clear();
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

QTEST_MAIN(tst_kvKalivo)
#include "tst_kvKalivo.moc"
