// Part 1.1: the control shell and its properties.
#include "ctlToolTip.h"
#include "frmPicSelector.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvError.h"
#include "kvControlTestServices.h"
#include "kvKalivo.h"
#include "kvKalivoTestAccess.h"
#include "kvMemoryPropertyBag.h"
#include "kvSettingsPropertyBag.h"
#include "kvTestSupport.h"

#include <QAction>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>
#include <QtTest>

namespace {

const QDate fixedToday(2026, 11, 22); // a Sunday in week 47

QString statusText(const kvKalivo &control)
{
    return control.findChild<QStatusBar *>(QStringLiteral("StatusBar"))
        ->findChild<QLabel *>()->text();
}

QAction *toolbarButton(const kvKalivo &control, const QString &key)
{
    return control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))
        ->findChild<QAction *>(key);
}

QDateEdit *datePicker(const kvKalivo &control)
{
    return control.findChild<QDateEdit *>(QStringLiteral("DTPicker1"));
}

// Counts the re-layouts, colour passes and notifications of one control.
struct Observer
{
    explicit Observer(kvKalivo &control)
        : arranged(kvKalivoTestAccess::Grid(control), &kvDayGrid::gridArranged)
        , marked(kvKalivoTestAccess::Grid(control), &kvDayGrid::actualDayMarked)
        , coloured(kvKalivoTestAccess::Grid(control), &kvDayGrid::coloursApplied)
        , notified(&control, &kvKalivo::PropertyChanged)
    {
    }
    QStringList notifications() const
    {
        QStringList names;
        for (const QList<QVariant> &arguments : notified)
            names << arguments.at(0).toString();
        return names;
    }
    QSignalSpy arranged;
    QSignalSpy marked;
    QSignalSpy coloured;
    QSignalSpy notified;
};

} // namespace

class tst_kvKalivo : public QObject
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
        QCOMPARE(m_services->messageBox().CallCount(), 0); // no test here expects an error report
    }

    // Edge case: a fresh control shows the week view of today, one weekend column, calendar
    // weeks visible, white cells on a grey surface, today's header light red.
    void freshControlHasTheDefaults()
    {
        kvKalivo control;
        QCOMPARE(control.View(), kvKalivo::kvWeek);
        QCOMPARE(control.ActualDate(), fixedToday);
        QCOMPARE(control.WeekendColumns(), kvKalivo::kvOne);
        QCOMPARE(control.WeeksVisible(), true);
        QCOMPARE(control.BackColor(), 0xFFFFFFu);
        QCOMPARE(control.TodayHeaderColor(), 0xC0C0FFu);
        QCOMPARE(control.BorderStyle(), kvKalivo::kvNone);
        QCOMPARE(control.DayHeaderColor1(), 0x8000000Bu);
        QCOMPARE(control.DayHeaderColor2(), 0x80000004u);
        QCOMPARE(control.DayHeaderForeColor(), 0u);
        QCOMPARE(control.AutoRefresh(), true);
        QCOMPARE(control.DbDateFormat(), kvKalivo::kvAuto);
        QCOMPARE(control.RaiseDatabaseEvents(), false);
        QCOMPARE(control.RaiseEditEvent(), false);
        QCOMPARE(control.PublicHoliday(), false);
        QCOMPARE(control.RecordSource(), QString());
        QCOMPARE(control.Footnote(), QString());
        QCOMPARE(control.ToolTipBackColor1(), ctlToolTip::DefaultToolTipBackColor1);
        QCOMPARE(control.ToolTipBackColor2(), ctlToolTip::DefaultToolTipBackColor2);
        QVERIFY(toolbarButton(control, QStringLiteral("Week"))->isChecked());
        QVERIFY(!toolbarButton(control, QStringLiteral("Month"))->isChecked());
        QCOMPARE(datePicker(control)->date(), fixedToday);
        QCOMPARE(statusText(control), QStringLiteral("47. KW"));
    }

    void freshControlPaintsTheGreySurface()
    {
        kvKalivo control;
        control.resize(640, 480);
        const QImage image = control.grab().toImage();
        QCOMPARE(image.pixelColor(320, 240), QColor(0x80, 0x80, 0x80));
    }

    void initializeFillsTheToolbar()
    {
        kvKalivo control;
        const QList<QAction *> actions = control.findChild<QToolBar *>(QStringLiteral("ToolbarMain"))->actions();
        const QStringList keys{"Week", "Month", "Back", "Forward", "Print", "Previous", "Next", "Today", "New"};
        const QStringList toolTips{"Wochenansicht", "Monatsansicht", "Zurück", "Vor", "Drucken",
                                   "Vorheriger Termin", "Nächster Termin", "Heute", "Neuer Termin"};
        QCOMPARE(actions.size(), 9);
        for (int position = 1; position <= 9; ++position) {
            const QAction *action = actions.at(position - 1);
            QCOMPARE(action->objectName(), keys.at(position - 1));
            QCOMPARE(action->property("Key").toString(), keys.at(position - 1));
            QCOMPARE(action->toolTip(), toolTips.at(position - 1));
            QCOMPARE(action->property("Image").toInt(), position + 2);
            QVERIFY2(!action->icon().pixmap(16, 16).isNull(), qPrintable(keys.at(position - 1)));
            QVERIFY(!action->icon().pixmap(32, 32).isNull());
        }
    }

    void initializeSetsTheTimersAndThreadObjects()
    {
        kvError &before = kvError::ThreadInstance();
        before.setNumber(42);
        kvKalivo control;
        const QTimer *tooltipTimer = control.findChild<QTimer *>(QStringLiteral("TimerTooltip"));
        const QTimer *tooltipOffTimer = control.findChild<QTimer *>(QStringLiteral("TimerTooltipOFF"));
        QVERIFY(tooltipTimer && tooltipOffTimer);
        QCOMPARE(tooltipTimer->interval(), 1000);
        QCOMPARE(tooltipOffTimer->interval(), 800);
        QVERIFY(!tooltipTimer->isActive());
        QVERIFY(frmPicSelector::HasThreadInstance());
        QVERIFY(!frmPicSelector::ThreadInstance().isVisible());
        // A second instance's Initialize replaces the error object; the old one stays valid.
        QVERIFY(&kvError::ThreadInstance() != &before);
        QCOMPARE(before.Number(), qint16(42));
        QCOMPARE(kvError::ThreadInstance().Number(), qint16(0));
    }

    void namedChildrenExist()
    {
        kvKalivo control;
        QVERIFY(control.findChild<QLabel *>(QStringLiteral("lblMonat")));
        QVERIFY(datePicker(control));
        QVERIFY(control.findChild<QStatusBar *>(QStringLiteral("StatusBar")));
        QVERIFY(control.findChild<ctlToolTip *>(QStringLiteral("ctlToolTip")));
    }

    // Edge case: WeekendColumns 0 or 3 leaves it unchanged and triggers no rebuild beyond the
    // one that AutoRefresh causes anyway.
    void weekendColumnsIgnoresInvalidValues_data()
    {
        QTest::addColumn<bool>("autoRefresh");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("rebuilds");
        QTest::newRow("0, AutoRefresh") << true << 0 << 1;
        QTest::newRow("3, AutoRefresh") << true << 3 << 1;
        QTest::newRow("0, no AutoRefresh") << false << 0 << 0;
        QTest::newRow("3, no AutoRefresh") << false << 3 << 0;
    }
    void weekendColumnsIgnoresInvalidValues()
    {
        QFETCH(bool, autoRefresh);
        QFETCH(int, value);
        QFETCH(int, rebuilds);
        kvKalivo control;
        control.setWeekendColumns(kvKalivo::kvTwo);
        control.setAutoRefresh(autoRefresh);
        Observer observer(control);
        control.setWeekendColumns(kvKalivo::enWeekendColumns(value));
        QCOMPARE(control.WeekendColumns(), kvKalivo::kvTwo);
        QCOMPARE(observer.arranged.count(), rebuilds);
        QCOMPARE(observer.notifications(), QStringList{QStringLiteral("2")});
    }

    void weekendColumnsStoresValidValuesAndNotifiesTheValue()
    {
        kvKalivo control;
        Observer observer(control);
        control.setWeekendColumns(kvKalivo::kvTwo);
        QCOMPARE(control.WeekendColumns(), kvKalivo::kvTwo);
        QCOMPARE(observer.arranged.count(), 1);
        QCOMPARE(observer.marked.count(), 1);
        QCOMPARE(observer.notifications(), QStringList{QStringLiteral("2")});
    }

    // Edge case: BorderStyle kvNone is stored but rebuilds nothing until the next re-layout.
    void borderStyleNoneDoesNotRebuild()
    {
        kvKalivo control;
        control.setBorderStyle(kvKalivo::kvFixedSingle);
        Observer observer(control);
        control.setBorderStyle(kvKalivo::kvNone);
        QCOMPARE(control.BorderStyle(), kvKalivo::kvNone);
        QCOMPARE(observer.arranged.count(), 0);
        QCOMPARE(observer.notifications(), QStringList{QStringLiteral("0")});
        control.Refresh();
        QCOMPARE(observer.arranged.count(), 1);
        control.show();
        QVERIFY(QTest::qWaitForWindowExposed(&control));
        const int arrangedWhenShown = observer.arranged.count();
        control.resize(500, 400);
        QCOMPARE(observer.arranged.count(), arrangedWhenShown + 1);
    }

    void borderStyleNonZeroRebuildsEvenWithoutAutoRefresh()
    {
        kvKalivo control;
        control.setAutoRefresh(false);
        Observer observer(control);
        control.setBorderStyle(kvKalivo::enBorderStyle(7)); // any value is stored as 16 bits
        QCOMPARE(int(control.BorderStyle()), 7);
        QCOMPARE(observer.arranged.count(), 1);
        QCOMPARE(observer.notifications(), QStringList{QStringLiteral("7")});
    }

    // Edge case: a header colour of 0 (black) is stored but does not repaint the cells.
    void colourZeroIsStoredWithoutAColourPass_data()
    {
        QTest::addColumn<QByteArray>("property");
        for (const char *name : {"BackColor", "TodayHeaderColor", "DayHeaderForeColor",
                                 "DayHeaderColor2", "DayHeaderColor1"})
            QTest::newRow(name) << QByteArray(name);
    }
    void colourZeroIsStoredWithoutAColourPass()
    {
        QFETCH(QByteArray, property);
        kvKalivo control;
        Observer observer(control);
        QVERIFY(control.setProperty(property, 0u));
        QCOMPARE(control.property(property).toUInt(), 0u);
        QCOMPARE(observer.coloured.count(), 0);
        QCOMPARE(observer.arranged.count(), 0);
        QVERIFY(control.setProperty(property, 0x00FF00u));
        QCOMPARE(control.property(property).toUInt(), 0x00FF00u);
        QCOMPARE(observer.coloured.count(), 1);
        QCOMPARE(observer.notifications(), (QStringList{QString::fromLatin1(property),
                                                        QString::fromLatin1(property)}));
    }

    // Edge case: setting ActualDate to the value it has re-layouts and rewrites the status bar,
    // but does not touch the date picker or notify.
    void actualDateSameValue()
    {
        kvKalivo control;
        control.setActualDate(QDate(2024, 5, 17));
        QLabel *panel = control.findChild<QStatusBar *>()->findChild<QLabel *>();
        panel->setText(QStringLiteral("overwritten"));
        {
            const QSignalBlocker blocker(datePicker(control));
            datePicker(control)->setDate(QDate(2001, 1, 1));
        }
        Observer observer(control);
        control.setActualDate(QDate(2024, 5, 17));
        QCOMPARE(observer.arranged.count(), 1);
        QCOMPARE(observer.marked.count(), 1);
        QCOMPARE(panel->text(), QStringLiteral("20. KW"));
        QCOMPARE(datePicker(control)->date(), QDate(2001, 1, 1));
        QCOMPARE(observer.notified.count(), 0);
    }

    void actualDateNewValue()
    {
        kvKalivo control;
        Observer observer(control);
        control.setActualDate(QDate(2021, 1, 1));
        QCOMPARE(control.ActualDate(), QDate(2021, 1, 1));
        QCOMPARE(datePicker(control)->date(), QDate(2021, 1, 1));
        QCOMPARE(statusText(control), QStringLiteral("53. KW"));
        QCOMPARE(observer.notifications(), QStringList{QStringLiteral("ActualDate")});
        QCOMPARE(observer.arranged.count(), 1);
    }

    // Edge case: with AutoRefresh False, View, WeekendColumns, WeeksVisible, PublicHoliday and
    // ActualDate change nothing on screen until Refresh.
    void autoRefreshFalseDefersLayout()
    {
        kvKalivo control;
        control.resize(640, 480);
        control.setAutoRefresh(false);
        const QString captionBefore = control.findChild<QLabel *>(QStringLiteral("lblMonat"))->text();
        Observer observer(control);
        control.setView(kvKalivo::kvMonth);
        control.setWeekendColumns(kvKalivo::kvTwo);
        control.setWeeksVisible(false);
        control.setPublicHoliday(true);
        control.setActualDate(QDate(2024, 1, 31));
        QCOMPARE(observer.arranged.count(), 0);
        QCOMPARE(observer.marked.count(), 0);
        QCOMPARE(control.findChild<QLabel *>(QStringLiteral("lblMonat"))->text(), captionBefore);
        control.Refresh();
        QCOMPARE(observer.arranged.count(), 1);
        QCOMPARE(observer.marked.count(), 1);
        QCOMPARE(control.findChild<QLabel *>(QStringLiteral("lblMonat"))->text(),
                 QStringLiteral("Januar 2024"));
    }

    // Edge case: setting AutoRefresh to True rebuilds at once.
    void autoRefreshTrueRebuilds()
    {
        kvKalivo control;
        control.setAutoRefresh(false);
        Observer observer(control);
        control.setAutoRefresh(true);
        QCOMPARE(observer.arranged.count(), 1);
        QCOMPARE(observer.marked.count(), 1);
        QCOMPARE(observer.notifications(), QStringList{QStringLiteral("Wahr")});
        control.setAutoRefresh(false);
        QCOMPARE(observer.arranged.count(), 1);
        QCOMPARE(observer.notifications().last(), QStringLiteral("Falsch"));
    }

    void relayoutRunsArrangementThenMarking()
    {
        kvKalivo control;
        QStringList order;
        connect(kvKalivoTestAccess::Grid(control), &kvDayGrid::gridArranged, this, [&order] { order << QStringLiteral("arrange"); });
        connect(kvKalivoTestAccess::Grid(control), &kvDayGrid::actualDayMarked, this, [&order] { order << QStringLiteral("mark"); });
        control.setWeeksVisible(false);
        QCOMPARE(order, (QStringList{QStringLiteral("arrange"), QStringLiteral("mark")}));
    }

    void viewSetterPressesTheButtonAndNotifies()
    {
        kvKalivo control;
        Observer observer(control);
        control.setView(kvKalivo::kvMonth);
        QVERIFY(toolbarButton(control, QStringLiteral("Month"))->isChecked());
        QVERIFY(!toolbarButton(control, QStringLiteral("Week"))->isChecked());
        control.setView(kvKalivo::kvView(5)); // any value is stored; not 1 presses "Month"
        QCOMPARE(int(control.View()), 5);
        QVERIFY(toolbarButton(control, QStringLiteral("Month"))->isChecked());
        control.setView(kvKalivo::kvWeek);
        QVERIFY(toolbarButton(control, QStringLiteral("Week"))->isChecked());
        QCOMPARE(observer.notifications(),
                 (QStringList{QStringLiteral("View"), QStringLiteral("View"), QStringLiteral("View")}));
        QCOMPARE(observer.arranged.count(), 3);
    }

    void propertiesAreReachableThroughTheMetaObject()
    {
        kvKalivo control;
        QVERIFY(control.setProperty("View", QStringLiteral("kvMonth")));
        QCOMPARE(control.View(), kvKalivo::kvMonth);
        QVERIFY(control.setProperty("DbDateFormat", int(kvKalivo::kvMySQL)));
        QCOMPARE(control.DbDateFormat(), kvKalivo::kvMySQL);
        QVERIFY(control.setProperty("ActualDate", QDate(2024, 2, 29)));
        QCOMPARE(control.property("ActualDate").toDate(), QDate(2024, 2, 29));
        const QMetaObject *meta = control.metaObject();
        for (const char *name : {"Enabled", "RaiseErrorEvent", "IconPath"})
            QVERIFY(!meta->property(meta->indexOfProperty(name)).isStored());
        QVERIFY(meta->property(meta->indexOfProperty("Footnote")).isStored());
    }

    void plainSettersNotifyTheirName()
    {
        kvKalivo control;
        Observer observer(control);
        control.setRecordSource(QStringLiteral("Termine"));
        control.setFootnote(QStringLiteral("Seite"));
        control.setRaiseDatabaseEvents(true);
        control.setRaiseEditEvent(true);
        control.setToolTipBackColor1(0x123456);
        control.setToolTipBackColor2(0x654321);
        control.setDbDateFormat(kvKalivo::kvMicrosoft_Access);
        control.setEnabled(false);
        control.setRaiseErrorEvent(false);
        QCOMPARE(observer.notifications(),
                 (QStringList{"RecordSource", "Footnote", "RaiseDatabaseEvents", "RaiseEditEvent",
                              "ToolTipBackColor1", "ToolTipBackColor2"}));
        QCOMPARE(observer.arranged.count(), 0);
        QCOMPARE(control.findChild<ctlToolTip *>()->ToolTipBackColor1(), 0x123456u);
        QCOMPARE(control.findChild<ctlToolTip *>()->ToolTipBackColor2(), 0x654321u);
        QCOMPARE(control.Enabled(), false);
        QCOMPARE(control.isEnabled(), false);
        QCOMPARE(control.DbDateFormat(), kvKalivo::kvMicrosoft_Access);
    }

    void iconPathReachesTheThreadPicker()
    {
        kvKalivo control;
        control.setIconPath(QStringLiteral("/opt/icons"));
        QCOMPARE(control.IconPath(), QStringLiteral("/opt/icons"));
        QCOMPARE(frmPicSelector::ThreadInstance().IconFolder(), QStringLiteral("/opt/icons"));
    }

    void raiseErrorEventIsThreadWide()
    {
        kvKalivo first;
        kvKalivo second;
        first.setRaiseErrorEvent(true);
        QVERIFY(second.RaiseErrorEvent());
        second.setRaiseErrorEvent(false);
        QVERIFY(!first.RaiseErrorEvent());
    }

    void resizeAlwaysRelayouts()
    {
        kvKalivo control;
        control.setAutoRefresh(false);
        control.show();
        QVERIFY(QTest::qWaitForWindowExposed(&control));
        Observer observer(control);
        control.resize(800, 600);
        QCOMPARE(observer.arranged.count(), 1);
        QCOMPARE(observer.marked.count(), 1);
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

    // InitProperties gives the defaults back after changes.
    void initPropertiesRestoresDefaults()
    {
        kvKalivo control;
        control.setBackColor(0x00FF00);
        control.setView(kvKalivo::kvMonth);
        control.setAutoRefresh(false);
        control.setActualDate(QDate(2020, 2, 2));
        control.InitProperties();
        QCOMPARE(control.BackColor(), 0xFFFFFFu);
        QCOMPARE(control.View(), kvKalivo::kvWeek);
        QCOMPARE(control.AutoRefresh(), true);
        QCOMPARE(control.ActualDate(), fixedToday);
        QVERIFY(toolbarButton(control, QStringLiteral("Week"))->isChecked());
    }

    void readPropertiesReadsKeysInOrderWithFallbacks()
    {
        kvKalivo control;
        control.setToolTipBackColor1(0x111111);
        control.setToolTipBackColor2(0x222222);
        kvMemoryPropertyBag empty;
        Observer observer(control);
        control.ReadProperties(empty);
        QCOMPARE(empty.ReadLog(),
                 (QStringList{"View", "BorderStyle", "WeekendColumns", "BackColor", "ActualDate",
                              "DayHeaderColor2", "DayHeaderColor1", "DayHeaderForeColor",
                              "TodayHeaderColor", "WeeksVisible", "RecordSource", "AutoRefresh",
                              "RaiseDatabaseEvents", "PublicHoliday", "RaiseEditEvent", "Footnote",
                              "DbDateFormat", "ToolTipBackColor1", "ToolTipBackColor2",
                              "ParameterizedSql"}));
        QCOMPARE(control.View(), kvKalivo::kvWeek);
        QCOMPARE(control.BorderStyle(), kvKalivo::kvNone);
        QCOMPARE(control.WeekendColumns(), kvKalivo::kvOne);
        // No day cell yet: the colour keys without a value give the control's defaults.
        QCOMPARE(control.BackColor(), kvKalivo::DefaultBackColor);
        QCOMPARE(control.ActualDate(), fixedToday);
        QCOMPARE(control.DayHeaderColor2(), kvKalivo::DefaultDayHeaderColor2);
        QCOMPARE(control.DayHeaderColor1(), 0x8000000Bu);
        QCOMPARE(control.DayHeaderForeColor(), 0u);
        QCOMPARE(control.TodayHeaderColor(), kvKalivo::DefaultTodayHeaderColor);
        QCOMPARE(control.WeeksVisible(), true);
        QCOMPARE(control.AutoRefresh(), true);
        QCOMPARE(control.ToolTipBackColor1(), 0x111111u);  // the tooltip's current colours
        QCOMPARE(control.ToolTipBackColor2(), 0x222222u);
        QCOMPARE(observer.arranged.count(), 0);             // the first Resize re-layouts
        QCOMPARE(observer.coloured.count(), 1);
        QCOMPARE(observer.notified.count(), 0);
    }

    // Once the grid exists, a missing colour key keeps what the first day cell shows, which a
    // black (0) colour set since has not reached yet.
    void readPropertiesFallsBackOnTheFirstCellsColours_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<uint>("shown");
        QTest::newRow("BackColor") << QByteArray("BackColor") << kvKalivo::DefaultBackColor;
        QTest::newRow("DayHeaderColor2") << QByteArray("DayHeaderColor2") << kvKalivo::DefaultDayHeaderColor2;
        QTest::newRow("TodayHeaderColor") << QByteArray("TodayHeaderColor") << kvKalivo::DefaultTodayHeaderColor;
    }

    void readPropertiesFallsBackOnTheFirstCellsColours()
    {
        QFETCH(QByteArray, property);
        QFETCH(uint, shown);
        kvKalivo control;
        control.resize(800, 500);
        control.show();
        QVERIFY(kvKalivoTestAccess::DayCellCount(control) > 0);
        QVERIFY(control.setProperty(property.constData(), 0u));
        kvMemoryPropertyBag empty;
        control.ReadProperties(empty);
        QCOMPARE(control.property(property.constData()).toUInt(), shown);
    }

    void readPropertiesAppliesStoredValues()
    {
        kvMemoryPropertyBag bag;
        bag.WriteProperty(QStringLiteral("View"), 2, QVariant());
        bag.WriteProperty(QStringLiteral("ActualDate"), QDate(2024, 12, 30), QVariant());
        bag.WriteProperty(QStringLiteral("ToolTipBackColor1"), 0x00FFFF, QVariant());
        bag.WriteProperty(QStringLiteral("WeeksVisible"), false, QVariant());
        kvKalivo control;
        control.ReadProperties(bag);
        QCOMPARE(control.View(), kvKalivo::kvMonth);
        QVERIFY(toolbarButton(control, QStringLiteral("Month"))->isChecked());
        QCOMPARE(control.ActualDate(), QDate(2024, 12, 30));
        QCOMPARE(datePicker(control)->date(), QDate(2024, 12, 30));
        QCOMPARE(statusText(control), QStringLiteral("1. KW"));
        QCOMPARE(control.findChild<ctlToolTip *>()->ToolTipBackColor1(), 0x00FFFFu);
        QCOMPARE(control.WeeksVisible(), false);
    }

    void writePropertiesOrderAndDefaults()
    {
        kvKalivo control;
        control.setActualDate(QDate(2025, 3, 4));
        kvMemoryPropertyBag bag;
        control.WriteProperties(bag);
        // Equal to their defaults, and so not stored: DayHeaderColor1, WeeksVisible,
        // RecordSource, RaiseDatabaseEvents, PublicHoliday, RaiseEditEvent, Footnote.
        QCOMPARE(bag.Keys(),
                 (QStringList{"View", "BorderStyle", "WeekendColumns", "BackColor", "ActualDate",
                              "DayHeaderColor2", "DayHeaderForeColor", "TodayHeaderColor",
                              "ToolTipBackColor1", "ToolTipBackColor2", "AutoRefresh",
                              "DbDateFormat"}));
        control.setWeeksVisible(false);
        control.setRecordSource(QStringLiteral("Termine"));
        control.setFootnote(QStringLiteral("Fuß"));
        control.setPublicHoliday(true);
        control.setRaiseDatabaseEvents(true);
        control.setRaiseEditEvent(true);
        control.setDayHeaderColor1(0x123456);
        control.setToolTipBackColor1(0);
        control.setParameterizedSql(true);
        control.setIconPath(QStringLiteral("/icons"));
        control.setRaiseErrorEvent(true);
        control.setEnabled(false);
        kvMemoryPropertyBag full;
        control.WriteProperties(full);
        control.setRaiseErrorEvent(false);
        QCOMPARE(full.Keys(),
                 (QStringList{"View", "BorderStyle", "WeekendColumns", "BackColor", "ActualDate",
                              "DayHeaderColor2", "DayHeaderColor1", "DayHeaderForeColor",
                              "TodayHeaderColor", "ToolTipBackColor2", "WeeksVisible",
                              "RecordSource", "AutoRefresh", "RaiseDatabaseEvents", "PublicHoliday",
                              "RaiseEditEvent", "Footnote", "DbDateFormat", "ParameterizedSql"}));
    }

    void roundTripThroughTheMemoryBag()
    {
        kvMemoryPropertyBag bag;
        {
            kvKalivo original;
            ConfigureEverything(original);
            original.WriteProperties(bag);
        }
        kvKalivo restored;
        restored.ReadProperties(bag);
        CompareWithEverything(restored);
    }

    void roundTripThroughQSettings()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("host.ini"));
        {
            QSettings settings(path, QSettings::IniFormat);
            kvSettingsPropertyBag bag(&settings, QStringLiteral("Form1/kvKalivo1"));
            kvKalivo original;
            ConfigureEverything(original);
            original.WriteProperties(bag);
        }
        QSettings settings(path, QSettings::IniFormat);
        kvSettingsPropertyBag bag(&settings, QStringLiteral("Form1/kvKalivo1"));
        kvKalivo restored;
        restored.ReadProperties(bag);
        CompareWithEverything(restored);
    }

    void settingsWithWrongTypesFallBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("broken.ini"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[kvKalivo]\nView=abc\nBorderStyle=99999999999\nWeekendColumns=70000\n"
                   "BackColor=blue\nActualDate=gestern\nWeeksVisible=maybe\nAutoRefresh=7x\n"
                   "DbDateFormat=x\nToolTipBackColor1=@ByteArray(\\0)\n");
        file.close();
        QSettings settings(path, QSettings::IniFormat);
        kvSettingsPropertyBag bag(&settings, QStringLiteral("kvKalivo"));
        kvKalivo control;
        control.ReadProperties(bag);
        QCOMPARE(control.View(), kvKalivo::kvWeek);
        QCOMPARE(control.BorderStyle(), kvKalivo::kvNone);
        QCOMPARE(control.WeekendColumns(), kvKalivo::kvOne);
        QCOMPARE(control.BackColor(), 0xFFFFFFu);
        QCOMPARE(control.ActualDate(), fixedToday);
        QCOMPARE(control.WeeksVisible(), true);
        QCOMPARE(control.AutoRefresh(), true);
        QCOMPARE(control.DbDateFormat(), kvKalivo::kvAuto);
        QCOMPARE(control.ToolTipBackColor1(), ctlToolTip::DefaultToolTipBackColor1);
    }

    void unreadableSettingsFileFallsBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("garbage.ini"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QByteArray garbage;
        for (int i = 0; i < 4096; ++i)
            garbage.append(char((i * 7919 + 13) % 256));
        file.write(garbage);
        file.close();
        QSettings settings(path, QSettings::IniFormat);
        kvSettingsPropertyBag bag(&settings, QString());
        kvKalivo control;
        control.ReadProperties(bag);
        QCOMPARE(control.View(), kvKalivo::kvWeek);
        QCOMPARE(control.ActualDate(), fixedToday);
        QCOMPARE(control.AutoRefresh(), true);
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
        QCOMPARE(control.findChild<QLabel *>(QStringLiteral("lblMonat"))->text(), caption);
    }

    void looksLikeAControl()
    {
        kvKalivo control;
        control.setActualDate(QDate(2026, 9, 22)); // the longest German month name
        for (const QSize size : {QSize(400, 300), QSize(640, 480), QSize(1280, 800)}) {
            control.resize(size);
            const QImage image = control.grab().toImage();
            QCOMPARE(image.size(), size);
            QVERIFY(image.save(QStringLiteral("%1/kvKalivo-shell-%2x%3.png")
                                   .arg(galleryFolder()).arg(size.width()).arg(size.height())));
            const QWidget *picker = datePicker(control);
            const QWidget *toolbar = control.findChild<QToolBar *>();
            const QLabel *caption = control.findChild<QLabel *>(QStringLiteral("lblMonat"));
            QVERIFY(!picker->geometry().intersects(toolbar->geometry()));
            QVERIFY(!caption->geometry().intersects(toolbar->geometry()));
            QVERIFY(!caption->geometry().intersects(picker->geometry()));
            QVERIFY(control.rect().contains(picker->geometry()));
            QVERIFY(caption->fontMetrics().horizontalAdvance(caption->text()) <= caption->width());
            QCOMPARE(control.findChild<QStatusBar *>()->geometry().bottom(), size.height() - 1);
        }
    }

    void parameterizedSqlIsOffByDefaultAndNotifies()
    {
        kvKalivo control;
        QCOMPARE(control.ParameterizedSql(), false);
        Observer observer(control);
        control.setParameterizedSql(true);
        QCOMPARE(control.ParameterizedSql(), true);
        QCOMPARE(observer.notifications(), QStringList{QStringLiteral("ParameterizedSql")});
        control.InitProperties();
        QCOMPARE(control.ParameterizedSql(), false);
    }

    // Part 2.1 edge case: a closed connection disables "Next", "Previous" and "New"; setting an
    // open one enables all three.
    void connectionStateEnablesTheDatabaseButtons()
    {
        QTemporaryDir folder;
        kvConnection connection;
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db"))));
        kvAppointmentTable::Create(connection, QStringLiteral("Termine"));
        kvKalivo control;
        control.setRecordSource(QStringLiteral("Termine"));
        control.setConnection(&connection);
        QCOMPARE(control.Connection(), &connection);
        for (const QString &key : {QStringLiteral("Next"), QStringLiteral("Previous"), QStringLiteral("New")})
            QVERIFY2(toolbarButton(control, key)->isEnabled(), qPrintable(key));

        kvConnection closed;
        closed.setConnectionString(connection.ConnectionString());
        control.setConnection(&closed);
        for (const QString &key : {QStringLiteral("Next"), QStringLiteral("Previous"), QStringLiteral("New")})
            QVERIFY2(!toolbarButton(control, key)->isEnabled(), qPrintable(key));
        QVERIFY(toolbarButton(control, QStringLiteral("Forward"))->isEnabled());
        // Probing a closed connection fails like ADO; the control reports it and stays usable.
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QVERIFY(m_services->messageBox().LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode ")));
        m_services->messageBox().Clear();
    }

    void connectionToAMissingTableIsReportedWithTheEnginesMessage()
    {
        QTemporaryDir folder;
        kvConnection connection;
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db"))));
        kvKalivo control;
        control.setRecordSource(QStringLiteral("Fehlt"));
        control.setConnection(&connection);
        QCOMPARE(m_services->messageBox().CallCount(), 1);
        QVERIFY2(m_services->messageBox().LastCall().prompt.contains(QStringLiteral("no such table")),
                 qPrintable(m_services->messageBox().LastCall().prompt));
        QVERIFY(toolbarButton(control, QStringLiteral("Next"))->isEnabled()); // step 4 came first
        m_services->messageBox().Clear();
    }

private:
    static void ConfigureEverything(kvKalivo &control)
    {
        control.setView(kvKalivo::kvMonth);
        control.setBorderStyle(kvKalivo::kvFixedSingle);
        control.setWeekendColumns(kvKalivo::kvTwo);
        control.setBackColor(0x0000FF);
        control.setActualDate(QDate(2024, 2, 29));
        control.setDayHeaderColor2(0x80000005);
        control.setDayHeaderColor1(0x00FF00);
        control.setDayHeaderForeColor(0x123456);
        control.setTodayHeaderColor(0x8000000D);
        control.setToolTipBackColor1(0xABCDEF);
        control.setToolTipBackColor2(0x80000018);
        control.setWeeksVisible(false);
        control.setRecordSource(QStringLiteral("Termine"));
        control.setAutoRefresh(false);
        control.setRaiseDatabaseEvents(true);
        control.setPublicHoliday(true);
        control.setRaiseEditEvent(true);
        control.setFootnote(QStringLiteral("Gedruckt: Büro Müller"));
        control.setDbDateFormat(kvKalivo::kvMySQL);
        control.setParameterizedSql(true);
    }

    static void CompareWithEverything(const kvKalivo &control)
    {
        QCOMPARE(control.View(), kvKalivo::kvMonth);
        QCOMPARE(control.BorderStyle(), kvKalivo::kvFixedSingle);
        QCOMPARE(control.WeekendColumns(), kvKalivo::kvTwo);
        QCOMPARE(control.BackColor(), 0x0000FFu);
        QCOMPARE(control.ActualDate(), QDate(2024, 2, 29));
        QCOMPARE(control.DayHeaderColor2(), 0x80000005u);
        QCOMPARE(control.DayHeaderColor1(), 0x00FF00u);
        QCOMPARE(control.DayHeaderForeColor(), 0x123456u);
        QCOMPARE(control.TodayHeaderColor(), 0x8000000Du);
        QCOMPARE(control.ToolTipBackColor1(), 0xABCDEFu);
        QCOMPARE(control.ToolTipBackColor2(), 0x80000018u);
        QCOMPARE(control.WeeksVisible(), false);
        QCOMPARE(control.RecordSource(), QStringLiteral("Termine"));
        QCOMPARE(control.AutoRefresh(), false);
        QCOMPARE(control.RaiseDatabaseEvents(), true);
        QCOMPARE(control.PublicHoliday(), true);
        QCOMPARE(control.RaiseEditEvent(), true);
        QCOMPARE(control.Footnote(), QStringLiteral("Gedruckt: Büro Müller"));
        QCOMPARE(control.DbDateFormat(), kvKalivo::kvMySQL);
        QCOMPARE(control.ParameterizedSql(), true);
    }
};

QTEST_MAIN(tst_kvKalivo)
#include "tst_kvKalivo.moc"
