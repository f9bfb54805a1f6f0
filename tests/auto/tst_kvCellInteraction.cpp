// The day cells' events: selection, context menu, tooltip, mouse capture; keys, focus and screen
// reader; the edit flow they start with its host events (user stories: tst_kvEditEndToEnd.cpp).
#include "ctlToolTip.h"
#include "frmEdit.h"
#include "kvEditCalendar.h"
#include "kvSystemMessageBox.h"
#include "kvSystemModalRunner.h"
#include "kvWhenShown.h"

#include <QAccessible>
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QTimer>
#include <QtTest>

#include <optional>

namespace {

//! 16 .. 22 November 2026, two rows on the 18th, one on the 22nd; \a focused: the 18th clicked.
struct Calendar : kvEditCalendar
{
    explicit Calendar(bool focused = false)
        : kvEditCalendar(Database::Sqlite, QSize(1000, 600))
    {
        add(at(18, 10), at(18, 11), QStringLiteral("Zahnarzt"), 0, QStringLiteral("Dr. Weiß, Praxis am Markt"));
        add(at(18, 12), at(18, 13), QStringLiteral("Mittagessen"));
        add(at(22, 15), at(22, 16), QStringLiteral("Kaffee mit der ganzen Familie und den Nachbarn"), 0,
            QStringLiteral("Kuchen mitbringen"));
        control.setPublicHoliday(true);
        control.Refresh();
        control.activateWindow();
        if (focused && QTest::qWaitForWindowActive(&control))
            QTest::mouseClick(cell(18), Qt::LeftButton, Qt::NoModifier, QPoint(cell(18)->width() / 2, cell(18)->height() - 5));
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
    //! The cell's EntryMouseMove for a point \a dx, \a dy from the row's top-left corner.
    void move(int day, int row, int dx, int dy)
    {
        const ctlEntry *entry = cell(day)->Entries(qint16(row));
        Q_EMIT cell(day)->EntryMouseMove(qint16(row), entry->Left() + dx, entry->Top() + dy,
                                         entry->Left(), entry->Top(), entry->Width(), entry->Height());
    }
    //! The pointer comes to rest on the row, through the window (Qt drops a move to where it is).
    void hover(int day, int row)
    {
        const QPoint point = cell(day)->mapTo(&control, rowPoint(day, row));
        QTest::mouseMove(control.windowHandle(), point - QPoint(1, 1));
        QTest::mouseMove(control.windowHandle(), point);
    }
    QAction *item(int index) { return control.findChild<QAction *>(QStringLiteral("KontextDay%1").arg(index)); }
    QMenu *menu() { return control.findChild<QMenu *>(QStringLiteral("Kontextmenü")); }
    ctlToolTip *toolTip() { return control.findChild<ctlToolTip *>(); }
    QTimer *timer(const char *name) { return control.findChild<QTimer *>(QString::fromLatin1(name)); }
    bool tooltipMode() { return kvKalivoTestAccess::TooltipMode(control); }
};

} // namespace

class tst_kvCellInteraction : public QObject
{
    Q_OBJECT

    std::optional<kvEditTestServices> m_services;

private Q_SLOTS:
    void init() { m_services.emplace(); }
    void cleanup() { m_services.reset(); }

    // A right-click selects the day (and row) and opens the menu, its row items enabled only over
    // a row, the view switch only over the day; a left click does nothing.
    void rightClickSelectsAndOpensTheMenu_data()
    {
        QTest::addColumn<int>("day");
        QTest::addColumn<int>("row");
        QTest::newRow("day") << 17 << 0;
        QTest::newRow("row") << 18 << 2;
    }
    void rightClickSelectsAndOpensTheMenu()
    {
        QFETCH(int, day);
        QFETCH(int, row);
        Calendar calendar;
        const QPoint onTheDay(20, calendar.cell(day)->height() - 10);
        for (int pass = 0; pass < 2; ++pass) {
            const bool onRow = row > 0 && pass == 0;
            QTest::mouseClick(calendar.cell(day), Qt::RightButton, Qt::NoModifier,
                              onRow ? calendar.rowPoint(day, row) : onTheDay);
            QCOMPARE(calendar.control.ActualDate(), QDate(2026, 11, day));
            QCOMPARE(kvKalivoTestAccess::SelectedDayIndex(calendar.control), qint16(day - 15));
            if (onRow)
                QCOMPARE(kvKalivoTestAccess::SelectedEntryIndex(calendar.control), qint16(row));
            QVERIFY(calendar.cell(day)->IsActualDay());
            QCOMPARE(calendar.item(1)->isEnabled(), onRow);
            QCOMPARE(calendar.item(2)->isEnabled(), onRow);
            QCOMPARE(calendar.item(6)->isEnabled(), !onRow);
            QVERIFY(calendar.item(0)->isEnabled());
            QTRY_VERIFY(calendar.menu()->isVisible());
            calendar.menu()->hide();
        }
        QTest::mouseClick(calendar.cell(19), Qt::LeftButton, Qt::NoModifier, onTheDay);
        QCOMPARE(kvKalivoTestAccess::SelectedDayIndex(calendar.control), qint16(day - 15));
        QVERIFY(!calendar.menu()->isVisible());
    }

    void focusMakesTheCellsDayCurrent()
    {
        Calendar calendar;
        calendar.control.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&calendar.control));
        calendar.cell(16)->setFocus();
        QTRY_COMPARE(calendar.control.ActualDate(), QDate(2026, 11, 16));
        QVERIFY(calendar.cell(16)->IsActualDay());
        QVERIFY(!calendar.cell(22)->IsActualDay());
    }

    void tooltipAfterRestThenImmediateThenIdle()
    {
        Calendar calendar;
        ctlToolTip *tip = calendar.toolTip();
        QCOMPARE(calendar.timer("TimerTooltip")->interval(), 1000);
        QCOMPARE(calendar.timer("TimerTooltipOFF")->interval(), 800);
        calendar.move(18, 1, 5, 5);
        QVERIFY(calendar.timer("TimerTooltip")->isActive()); // armed
        QTest::qWait(500);
        QVERIFY(!tip->isVisible());
        QVERIFY(!calendar.tooltipMode());
        QTRY_VERIFY_WITH_TIMEOUT(tip->isVisible(), 1500);
        QVERIFY(calendar.tooltipMode());
        QVERIFY(!calendar.timer("TimerTooltip")->isActive());
        const ctlEntry *row = calendar.cell(18)->Entries(1);
        QCOMPARE(tip->Text(), QStringLiteral("Zahnarzt"));
        QCOMPARE(tip->Remark(), QStringLiteral("Dr. Weiß, Praxis am Markt"));
        QCOMPARE(tip->Time(), row->Time());
        QCOMPARE(tip->DateID(), 1);
        // Not the actual day (22 is): shifted by one unit up and left.
        QCOMPARE(tip->pos(), QPoint(calendar.cell(18)->x() + row->Left() - 1, calendar.cell(18)->y() + row->Top() - 1));

        // Leaving the row (the captured row keeps getting the moves): hidden, mode still on.
        calendar.move(18, 1, 5, row->Height() + 3);
        QVERIFY(!tip->isVisible());
        QVERIFY(calendar.tooltipMode());
        QVERIFY(calendar.timer("TimerTooltipOFF")->isActive());

        // Another row within 800 ms: shown at once.
        calendar.move(18, 2, 5, 5);
        QVERIFY(tip->isVisible());
        QCOMPARE(tip->Text(), QStringLiteral("Mittagessen"));
        QVERIFY(!calendar.timer("TimerTooltipOFF")->isActive());

        // The bounds are inclusive: the bottom-right corner is still inside.
        const ctlEntry *second = calendar.cell(18)->Entries(2);
        calendar.move(18, 2, second->Width(), second->Height());
        QVERIFY(tip->isVisible());

        // Off all rows for 800 ms: idle again.
        calendar.move(18, 2, second->Width() + 1, 5);
        QVERIFY(!tip->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!calendar.tooltipMode(), 1500);
        calendar.move(18, 1, 5, 5);
        QVERIFY(!tip->isVisible());
        QVERIFY(calendar.timer("TimerTooltip")->isActive());
    }

    // Pushed back inside at the right edge; on the actual day not shifted, as wide as the day.
    void tooltipPosition()
    {
        Calendar calendar;
        ctlToolTip *tip = calendar.toolTip();
        calendar.move(22, 1, 5, 5);
        QTRY_VERIFY_WITH_TIMEOUT(tip->isVisible(), 1500);
        QCOMPARE(tip->x() + tip->width(), calendar.control.width());
        QCOMPARE(tip->Text(), QStringLiteral("Kaffee mit der ganzen Familie und den Nachbarn"));

        calendar.control.resize(1400, 600); // the tooltip fits without the push-back
        calendar.control.setActualDate(QDate(2026, 11, 18));
        calendar.move(18, 1, 5, 5);
        QTRY_COMPARE_WITH_TIMEOUT(tip->Text(), QStringLiteral("Zahnarzt"), 1500);
        const ctlEntry *row = calendar.cell(18)->Entries(1);
        QCOMPARE(tip->pos(), QPoint(calendar.cell(18)->x() + row->Left(), calendar.cell(18)->y() + row->Top()));
        QCOMPARE(tip->NormalWidth(), qint16(calendar.cell(16)->width() - 2));
        QCOMPARE(tip->MinWidth(), qint16(calendar.cell(16)->width()));
    }

    // A click on the tooltip, a press on a row or a left mouse-up hides it and goes idle; one
    // pending when the grid moves on never shows.
    void clickOnTooltipOrRowHidesIt()
    {
        Calendar calendar;
        const std::pair<int, std::function<void()>> clicks[] = {
            {1, [&] { QTest::mouseClick(calendar.toolTip(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5)); }},
            {2, [&] { Q_EMIT calendar.cell(18)->EntryMouseDown(2, 0, 0, 0, 0, 0, 0); }},
            {1, [&] { Q_EMIT calendar.cell(18)->EntryMouseUp(1, 1, 0, 5, 5); }},
        };
        for (const auto &[row, click] : clicks) {
            calendar.move(18, row, 5, 5);
            QTRY_VERIFY_WITH_TIMEOUT(calendar.toolTip()->isVisible(), 1500);
            click();
            QVERIFY(!calendar.toolTip()->isVisible());
            QVERIFY(!calendar.tooltipMode());
            QVERIFY(!calendar.timer("TimerTooltip")->isActive());
        }
        calendar.move(18, 1, 5, 5);
        QVERIFY(calendar.timer("TimerTooltip")->isActive());
        calendar.control.setActualDate(QDate(2026, 11, 25)); // the next week: cell 3 shows the 25th
        QTest::qWait(1200);
        QVERIFY(!calendar.toolTip()->isVisible());
    }

    // A reload lets go of the captured row (it would swallow every click); the next move captures.
    void reloadLetsGoOfTheCapturedRow()
    {
        Calendar calendar;
        calendar.control.setRaiseEditEvent(true);
        for (const bool cellsMadeAnew : {false, true}) {
            calendar.move(18, 1, 5, 5);
            QCOMPARE(QWidget::mouseGrabber(), calendar.cell(18));
            if (cellsMadeAnew)
                calendar.control.Refresh();
            else
                calendar.control.EditAppointment(1); // the host's Edit, not cancelled: reload
            QCOMPARE(QWidget::mouseGrabber(), nullptr);
        }
        calendar.move(18, 1, 5, 5);
        QCOMPARE(QWidget::mouseGrabber(), calendar.cell(18));
    }

    // A row holding the mouse when the editor opened would take every click from the editor.
    void editorOpensWithTheMouseFree()
    {
        kvSystemMessageBox realMessageBox;
        kvScopedService installed(realMessageBox);
        kvSystemModalRunner realRunner;
        kvScopedService installedRunner(realRunner);
        Calendar calendar;
        QVERIFY(QTest::qWaitForWindowExposed(&calendar.control));
        calendar.hover(18, 1);
        QCOMPARE(QWidget::mouseGrabber(), calendar.cell(18));
        QWidget *grabberWhileOpen = calendar.cell(18);
        bool closedByClick = false;
        whenShown<QDialog>([&](QDialog *dialog) {
            grabberWhileOpen = QWidget::mouseGrabber();
            QTest::mouseClick(dialog->findChild<QPushButton *>(QStringLiteral("CancelButton")), Qt::LeftButton);
            closedByClick = !dialog->isVisible();
        });
        calendar.statements.clear();
        calendar.doubleClickRow(18, 1);
        QCOMPARE(grabberWhileOpen, nullptr);
        QVERIFY(closedByClick);
        QVERIFY(!calendar.tooltipMode());
        QCOMPARE(calendar.writes(), 0);
        calendar.hover(18, 2); // resting on a row afterwards captures it anew
        QCOMPARE(QWidget::mouseGrabber(), calendar.cell(18));
    }

    // Tab: the toolbar's buttons, the date picker, then the grid at the selected day, in one step.
    void tabReachesToolbarPickerAndGrid()
    {
        Calendar calendar(true);
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

    // A move does what a click does: ActualDate, marking, status bar week, reload outside the grid.
    void keysMoveTheSelection()
    {
        QFETCH(QList<int>, keys);
        QFETCH(QDate, day);
        QFETCH(int, row);
        QFETCH(QString, week);
        Calendar calendar(true);
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

    // Editor and question answered "Abbrechen"/"Nein": nothing written or reloaded, selection kept.
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
        Calendar calendar(true);
        calendar.statements.clear();
        calendar.press(keys.mid(0, keys.size() - 1));
        const qint16 selected = calendar.focusedCell()->FocusEntryIndex();
        calendar.press({keys.constLast()});
        QCOMPARE(title, editorTitle);
        QCOMPARE(name, editorName);
        QCOMPARE(m_services->messageBox().LastCall().prompt, question);
        QCOMPARE(calendar.writes(), 0);
        QCOMPARE(calendar.gridLoads(), 0);
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
        Calendar calendar(true);
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

    // Frames round the focused day and its selected row, which has the accessible focus.
    void theSelectionIsFramedAndFocused()
    {
        Calendar calendar(true);
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
        QTest::newRow("one") << 22 << "Sonntag, 22. November 2026, Totensonntag, 1 Termin"
                                     << QStringList{"15:00 Kaffee mit der ganzen Familie und den Nachbarn"};
        QTest::newRow("none") << 17 << "Dienstag, 17. November 2026, keine Termine" << QStringList{};
    }

    void screenReaderNamesDaysRowsAndButtons()
    {
        QFETCH(int, day);
        QFETCH(QString, name);
        QFETCH(QStringList, rows);
        Calendar calendar(true);
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

    // "Löschen..." asks with the row's time (blank all day); only "Ja" deletes and reloads.
    void deleteAsks_data()
    {
        QTest::addColumn<kvDate>("begin");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<int>("rowsLeft");
        QTest::newRow("all day, No") << at(18) << int(kvMessageBox::vbNo) << "Termin < Urlaub> löschen?" << 2;
        QTest::newRow("timed, Cancel") << at(18, 14, 30) << int(kvMessageBox::vbCancel)
                                       << "Termin <14:30 Urlaub> löschen?" << 2;
        QTest::newRow("timed, Yes") << at(18, 14, 30) << int(kvMessageBox::vbYes)
                                    << "Termin <14:30 Urlaub> löschen?" << 1;
    }
    void deleteAsks()
    {
        QFETCH(kvDate, begin);
        QFETCH(int, answer);
        QFETCH(QString, prompt);
        QFETCH(int, rowsLeft);
        kvEditCalendar calendar;
        calendar.add(begin, begin.addMinutes(60), QStringLiteral("Urlaub"));
        calendar.add(at(18, 16), at(18, 17), QStringLiteral("Friseur"));
        calendar.control.Refresh();
        calendar.rightClickRow(18, 1);
        const int loads = calendar.gridLoads();
        m_services->messageBox().EnqueueAnswer(answer);
        calendar.chooseMenuItem(2);
        QCOMPARE(m_services->messageBox().LastCall().prompt, prompt);
        QCOMPARE(m_services->messageBox().LastCall().buttons, 35);
        QCOMPARE(calendar.names().size(), rowsLeft);
        QCOMPARE(calendar.names().constLast(), QStringLiteral("Friseur"));
        QCOMPARE(calendar.cell(18)->EntriesCount(), rowsLeft);
        QCOMPARE(calendar.gridLoads() > loads, rowsLeft == 1);
    }

    // With RaiseEditEvent the host edits instead of the editor; "Löschen..." still asks.
    void editEventReplacesTheEditor()
    {
        kvEditCalendar calendar;
        calendar.add(at(18, 14, 30), at(18, 15), QStringLiteral("Zahnarzt"));
        calendar.control.Refresh();
        calendar.control.setRaiseEditEvent(true);
        QStringList seen;
        bool cancel = false;
        QObject::connect(&calendar.control, &kvKalivo::Edit,
                         [&](qint32 &id, QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                             qint16 &imgId, QString &document, qint16 &action, bool &bCancel) {
                             QVERIFY(remark.isEmpty() && document.isEmpty() && imgId == 0 && !bCancel);
                             seen << QStringLiteral("%1 %2 %3 %4 %5").arg(action).arg(id).arg(
                                 begin.toString(u"dd.MM. HH:mm"), end.toString(u"dd.MM. HH:mm"), name);
                             bCancel = cancel;
                         });
        calendar.statements.clear();
        int loads = calendar.gridLoads();
        calendar.control.findChild<QAction *>(QStringLiteral("New"))->trigger();
        QCOMPARE(calendar.gridLoads() - loads, 1); // not cancelled: reloaded
        cancel = true;
        loads = calendar.gridLoads();
        calendar.doubleClickRow(18, 1);
        QCOMPARE(calendar.gridLoads(), loads); // cancelled: no reload
        QCOMPARE(seen, (QStringList{"1 0 22.11. 00:00 22.11. 00:00 ", "3 1 18.11. 14:30 18.11. 15:00 Zahnarzt"}));
        QCOMPARE(m_services->runner.ExecCount(), 0);
        QCOMPARE(calendar.writes(), 0);

        calendar.rightClickRow(18, 1);
        m_services->messageBox().EnqueueAnswer(kvMessageBox::vbYes);
        calendar.chooseMenuItem(2);
        QCOMPARE(seen.size(), 2);
        QCOMPARE(m_services->messageBox().LastCall().prompt, QStringLiteral("Termin <14:30 Zahnarzt> löschen?"));
        QVERIFY(calendar.names().isEmpty());
    }

    // "Neu" on the toolbar and menu item 0 open the editor on ActualDate.
    void newUsesActualDate()
    {
        kvEditCalendar calendar;
        calendar.control.setActualDate(QDate(2026, 11, 20));
        m_services->runner.Enqueue(typeName(QStringLiteral("Neu")));
        calendar.control.findChild<QAction *>(QStringLiteral("New"))->trigger();
        QCOMPARE(calendar.names(), QStringList{QStringLiteral("Neu")});
        QCOMPARE(calendar.firstBegin().date(), QDate(2026, 11, 20));
        QCOMPARE(calendar.cell(20)->EntriesCount(), 1);
        m_services->runner.Enqueue(typeName(QStringLiteral("Zweiter")));
        calendar.chooseMenuItem(0);
        QCOMPARE(calendar.names().size(), 2);
    }

    // A table without the optional columns disables the editor's document and picture buttons.
    void fillGridEnablesEditorControlsFromColumns()
    {
        QTemporaryDir folder;
        kvConnection connection;
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db"))));
        kvAppointmentTable::Create(connection, QStringLiteral("Kurz"), false);
        kvKalivo control;
        control.setRecordSource(QStringLiteral("Kurz"));
        control.setConnection(&connection);
        control.resize(800, 600);
        control.Refresh();
        frmEdit &editor = frmEdit::ThreadInstance();
        QVERIFY(!editor.findChild<QPushButton *>(QStringLiteral("cmdDocumentBrowser"))->isEnabled());
        QVERIFY(!editor.findChild<QPushButton *>(QStringLiteral("cmdEdit"))->isEnabled());
    }
};

QTEST_MAIN(tst_kvCellInteraction)
#include "tst_kvCellInteraction.moc"
