// The grid without a mouse: Tab order, keys, focus frames, and what a screen reader is told.
#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvEditCalendar.h"

#include <QAccessible>
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

#include <optional>

namespace {

//! The week of 16 to 22 November 2026 with focus in the grid; the 18th (Buß- und Bettag) has two rows.
struct Calendar : kvEditCalendar
{
    Calendar()
    {
        add(at(18, 10), at(18, 11), QStringLiteral("Zahnarzt"), 0, QStringLiteral("Kontrolle"));
        add(at(18, 12), at(18, 13), QStringLiteral("Mittagessen"));
        add(at(22), at(22), QStringLiteral("Geburtstag Oma"));
        control.setPublicHoliday(true);
        control.Refresh();
        control.activateWindow();
        if (QTest::qWaitForWindowActive(&control))
            select(18);
    }

    //! A click on the day's background: the day is selected and has the focus.
    void select(int day)
    {
        QTest::mouseClick(cell(day), Qt::LeftButton, Qt::NoModifier,
                          QPoint(cell(day)->width() / 2, cell(day)->height() - 5));
    }

    void press(const QList<int> &keys)
    {
        for (int key : keys) {
            const bool shifted = key & Qt::ShiftModifier;
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(key & ~Qt::KeyboardModifierMask),
                            shifted ? Qt::ShiftModifier : Qt::NoModifier);
        }
    }

    ctlDay *focusedCell() { return qobject_cast<ctlDay *>(QApplication::focusWidget()); }
    QMenu *menu() { return control.findChild<QMenu *>(QStringLiteral("Kontextmenü")); }
};

} // namespace

class tst_kvKeyboard : public QObject
{
    Q_OBJECT

    std::optional<kvEditTestServices> m_services;

private Q_SLOTS:
    void init() { m_services.emplace(); }
    void cleanup() { m_services.reset(); }

    // Tab: the toolbar's buttons, the date picker, then the grid at the selected day, in one step.
    void tabReachesToolbarPickerAndGrid()
    {
        Calendar calendar;
        QCOMPARE(calendar.focusedCell(), calendar.cell(18));
        QStringList order;
        for (int press = 0; press < 20 && order.size() < 12; ++press) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QWidget *focus = QApplication::focusWidget(); // a toolbar button by its key
            auto *button = qobject_cast<QToolButton *>(focus);
            const QString name = button ? button->defaultAction()->objectName() : focus->objectName();
            if (order.isEmpty() || order.constLast() != name) // the picker: day, month, year
                order << name;
        }
        QCOMPARE(order, (QStringList{"Week", "Month", "Back", "Forward", "Print", "Previous", "Next",
                                     "Today", "New", "DTPicker1", "ctlDay3", "Week"}));
    }

    void keysMoveTheSelection_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QDate>("day");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("week");
        const auto add = [](const char *name, QList<int> keys, int day, int row) {
            const QDate date = QDate(2026, 11, 1).addDays(day - 1);
            QTest::newRow(name) << keys << date << row << QStringLiteral("%1. KW").arg(date.weekNumber());
        };
        add("Right", {Qt::Key_Right}, 19, 0);
        add("Down into the rows", {Qt::Key_Down, Qt::Key_Down}, 18, 2);
        add("Up back to the day", {Qt::Key_Down, Qt::Key_Up}, 18, 0);
        add("Down past the last row: next week", {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down}, 25, 0);
        add("Up from the day: the week before", {Qt::Key_Up}, 11, 0);
        add("Right out of the week", QList<int>(5, Qt::Key_Right), 23, 0);
        add("PageDown: forward", {Qt::Key_PageDown}, 25, 0);
        add("Home: today", {Qt::Key_PageUp, Qt::Key_PageUp, Qt::Key_Home}, 22, 0);
    }

    // A move does what a click on the day does: ActualDate, marking, week in the status bar, and a
    // reload when the day lies outside the grid.
    void keysMoveTheSelection()
    {
        QFETCH(QList<int>, keys);
        QFETCH(QDate, day);
        QFETCH(int, row);
        QFETCH(QString, week);
        Calendar calendar;
        calendar.press(keys);
        ctlDay *cell = calendar.focusedCell();
        QVERIFY(cell);
        QCOMPARE(cell->datDay().date(), day);
        QCOMPARE(cell->FocusEntryIndex(), qint16(row));
        QCOMPARE(calendar.control.ActualDate(), day);
        QVERIFY(cell->IsActualDay());
        QCOMPARE(calendar.control.findChild<QStatusBar *>()->findChild<QLabel *>()->text(), week);
    }

    void enterAndDeleteActOnTheSelection_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("editorTitle");
        QTest::addColumn<QString>("editorName");
        QTest::addColumn<QString>("question");
        QTest::newRow("Enter on a row: edit it") << QList<int>{Qt::Key_Down, Qt::Key_Return}
                                                 << "18.11.2026, Mittwoch" << "Zahnarzt" << "";
        QTest::newRow("Enter on the day: a new one") << QList<int>{Qt::Key_Right, Qt::Key_Enter}
                                                     << "19.11.2026, Donnerstag" << "" << "";
        QTest::newRow("Delete on a row: ask") << QList<int>{Qt::Key_Down, Qt::Key_Down, Qt::Key_Delete}
                                              << "" << "" << "Termin <12:00 Mittagessen> löschen?";
        QTest::newRow("Delete on the day: nothing") << QList<int>{Qt::Key_Delete} << "" << "" << "";
    }

    // The editor and the question are answered "Abbrechen" and "Nein": nothing is written or
    // reloaded, and the selection stays where it was.
    void enterAndDeleteActOnTheSelection()
    {
        QFETCH(QList<int>, keys);
        QFETCH(QString, editorTitle);
        QFETCH(QString, editorName);
        QFETCH(QString, question);
        m_services->messageBox().EnqueueAnswer(kvMessageBox::vbNo);
        QString title;
        QString name;
        m_services->runner.Enqueue([&](QDialog &editor) {
            title = editor.windowTitle();
            name = editor.findChild<QLineEdit *>(QStringLiteral("txtName"))->text();
            return pressButton("CancelButton")(editor);
        });
        Calendar calendar;
        calendar.statements.clear();
        calendar.press(keys.mid(0, keys.size() - 1));
        const qint16 selected = calendar.focusedCell()->FocusEntryIndex();
        calendar.press({keys.constLast()});
        QCOMPARE(title, editorTitle);
        QCOMPARE(name, editorName);
        QCOMPARE(m_services->messageBox().LastCall().prompt, question);
        QCOMPARE(calendar.writes(), 0);
        QCOMPARE(calendar.dayLoads(), 0);
        QCOMPARE(calendar.focusedCell()->FocusEntryIndex(), selected);
        m_services->runner.Clear();
    }

    void menuKeyOpensTheContextMenuAtTheSelection_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("row");
        QTest::newRow("menu key on the day") << QList<int>{Qt::Key_Menu} << 0;
        const int shiftF10 = (Qt::ShiftModifier | Qt::Key_F10).toCombined();
        QTest::newRow("Shift+F10 on a row") << QList<int>{Qt::Key_Down, shiftF10} << 1;
    }

    void menuKeyOpensTheContextMenuAtTheSelection()
    {
        QFETCH(QList<int>, keys);
        QFETCH(int, row);
        Calendar calendar;
        calendar.press(keys);
        QTRY_VERIFY(calendar.menu()->isVisible());
        QCOMPARE(calendar.control.findChild<QAction *>(QStringLiteral("KontextDay1"))->isEnabled(), row > 0);
        QCOMPARE(calendar.control.findChild<QAction *>(QStringLiteral("KontextDay6"))->isEnabled(), row == 0);
        ctlDay *cell = calendar.cell(18);
        const ctlEntry &below = row > 0 ? *cell->Entries(qint16(row)) : cell->ctlHeader();
        const QPoint bottomLeft = cell->mapToGlobal(below.geometry().bottomLeft());
        QVERIFY(qAbs(calendar.menu()->y() - bottomLeft.y()) <= 4);
        QVERIFY(qAbs(calendar.menu()->x() - bottomLeft.x()) <= 8);
        calendar.menu()->hide();
    }

    // What a person sees, and a screen reader finds: a frame round the focused day and round its
    // selected row, which has the accessible focus; both gone with the focus.
    void theSelectionIsFramedAndFocused()
    {
        Calendar calendar;
        calendar.press({Qt::Key_Down});
        const QColor highlight = calendar.cell(18)->palette().color(QPalette::Highlight);
        ctlEntry *entry = calendar.cell(18)->Entries(1);
        const auto framed = [&](ctlDay *cell) {
            const QImage shown = cell->grab().toImage();
            return std::pair{QColor(shown.pixel(1, cell->height() / 2)) == highlight,
                             QColor(shown.pixel(entry->Left() + 20, entry->Top() + 1)) == highlight};
        };
        QAccessibleInterface *day = QAccessible::queryAccessibleInterface(calendar.cell(18));
        QAccessibleInterface *row = QAccessible::queryAccessibleInterface(entry);
        QCOMPARE(framed(calendar.cell(18)), std::pair(true, true));
        QVERIFY(row->state().focused && !day->state().focused);
        QCOMPARE(day->focusChild(), row);
        calendar.press({Qt::Key_Right});
        QCOMPARE(framed(calendar.cell(18)), std::pair(false, false));
        QCOMPARE(framed(calendar.cell(19)).first, true);
        QVERIFY(!row->state().focused);
        QVERIFY(QAccessible::queryAccessibleInterface(calendar.cell(19))->state().focused);
    }

    void screenReaderNamesDaysRowsAndButtons_data()
    {
        QTest::addColumn<int>("day");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("rows");
        QTest::newRow("holiday with two") << 18 << "Mittwoch, 18. November 2026, Buss und Bettag, 2 Termine"
                                          << QStringList{"10:00 Zahnarzt", "12:00 Mittagessen"};
        QTest::newRow("one all-day") << 22 << "Sonntag, 22. November 2026, Totensonntag, 1 Termin"
                                     << QStringList{"Geburtstag Oma"};
        QTest::newRow("none") << 17 << "Dienstag, 17. November 2026, keine Termine" << QStringList{};
    }

    void screenReaderNamesDaysRowsAndButtons()
    {
        QFETCH(int, day);
        QFETCH(QString, name);
        QFETCH(QStringList, rows);
        Calendar calendar;
        QAccessibleInterface *cell = QAccessible::queryAccessibleInterface(calendar.cell(day));
        QVERIFY(cell);
        QCOMPARE(cell->text(QAccessible::Name), name);
        QStringList shown;
        for (int index = 0; index < cell->childCount(); ++index) {
            QAccessibleInterface *row = cell->child(index);
            shown << row->text(QAccessible::Name);
            QCOMPARE(row->parent(), cell);
            QCOMPARE(cell->indexOfChild(row), index);
            const ctlEntry *entry = calendar.cell(day)->Entries(qint16(index + 1));
            QCOMPARE(row->rect().topLeft(), calendar.cell(day)->mapToGlobal(entry->geometry().topLeft()));
        }
        QCOMPARE(shown, rows);
        const QToolBar *toolbar = calendar.control.findChild<QToolBar *>();
        for (QAction *action : toolbar->actions()) { // the toolbar's buttons carry their captions
            QAccessibleInterface *button = QAccessible::queryAccessibleInterface(toolbar->widgetForAction(action));
            QCOMPARE(button->text(QAccessible::Name), action->toolTip());
        }
    }
};

QTEST_MAIN(tst_kvKeyboard)
#include "tst_kvKeyboard.moc"
