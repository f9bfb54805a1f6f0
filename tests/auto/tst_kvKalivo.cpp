// The control shell: defaults, property rules, re-layout triggers and persistence.
#include "ctlToolTip.h"
#include "kvControlTestServices.h"
#include "kvDesignerFormValues.h"
#include "kvKalivoTestAccess.h"
#include "kvMemoryPropertyBag.h"
#include "kvSettingsPropertyBag.h"
#include "kvTestCalendar.h"

#include <QAction>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QToolBar>
#include <QtTest>

namespace {

const QDate fixedToday(2026, 11, 22); // a Sunday in week 47

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

} // namespace

class tst_kvKalivo : public QObject
{
    Q_OBJECT

    std::unique_ptr<kvControlTestServices> m_services;

private slots:
    void initTestCase() { m_services = std::make_unique<kvControlTestServices>(fixedToday); }
    void cleanup() { QCOMPARE(m_services->messageBox().CallCount(), 0); }

    // A fresh control: the week of today, a grey surface, icons on the toolbar; InitProperties
    // gives the defaults back after changes.
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
        QCOMPARE(control.grab().toImage().pixelColor(320, 240), QColor(0x80, 0x80, 0x80));
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

    // The same date again re-layouts and rewrites the status bar, but leaves the picker alone
    // and does not notify; a new date does all of it.
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
                kvKalivo original;
                for (const auto &[name, value] : kvDesignerFormValues())
                    original.setProperty(name, value);
                original.WriteProperties(*bag);
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

    // A closed connection disables "Next", "Previous" and "New" and is reported; an open one
    // enables them. A missing table is reported with the engine's message.
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
};

QTEST_MAIN(tst_kvKalivo)
#include "tst_kvKalivo.moc"
