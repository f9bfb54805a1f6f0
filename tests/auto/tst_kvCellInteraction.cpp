// The control's handling of its day cells' events: selection, the context menu, the delayed
// tooltip and the row that holds the mouse.
#include "ctlToolTip.h"
#include "kvEditCalendar.h"
#include "kvSystemMessageBox.h"
#include "kvWhenShown.h"

#include <QAction>
#include <QMenu>
#include <QTimer>
#include <QtTest>

#include <optional>

namespace {

struct Calendar : kvEditCalendar
{
    Calendar()
        : kvEditCalendar(Database::Sqlite, QSize(1000, 600))
    {
        add(at(18, 10), at(18, 11), QStringLiteral("Zahnarzt"), 0, QStringLiteral("Dr. Weiß, Praxis am Markt"));
        add(at(18, 12), at(18, 13), QStringLiteral("Mittagessen"));
        add(at(22, 15), at(22, 16), QStringLiteral("Kaffee mit der ganzen Familie und den Nachbarn"), 0,
            QStringLiteral("Kuchen mitbringen"));
        control.Refresh();
    }
    //! The cell's EntryMouseMove for a point \a dx, \a dy from the row's top-left corner.
    void move(int day, int row, int dx, int dy)
    {
        const ctlEntry *entry = cell(day)->Entries(qint16(row));
        Q_EMIT cell(day)->EntryMouseMove(qint16(row), entry->Left() + dx, entry->Top() + dy,
                                         entry->Left(), entry->Top(), entry->Width(), entry->Height());
    }
    //! The pointer comes to rest on the row, through the window as real moves arrive (Qt
    //! drops a move to where the pointer already is).
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

    std::optional<kvControlTestServices> m_services;

private Q_SLOTS:
    void init() { m_services.emplace(fixedToday); }
    void cleanup() { m_services.reset(); }

    // A right-click selects the day (and the row under it) and opens the menu with "Bearbeiten..."
    // and "Löschen..." enabled only over a row, the view switch only over the day. A day
    // right-click after a row one never leaves the row items enabled; a left click does nothing.
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

    // At the control's right edge the tooltip is pushed back inside; on the actual day it is
    // not shifted, and takes the day's width.
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

    void pendingTooltipAfterRefreshShowsNothing()
    {
        Calendar calendar;
        calendar.move(18, 1, 5, 5);
        QVERIFY(calendar.timer("TimerTooltip")->isActive());
        calendar.control.setActualDate(QDate(2026, 11, 25)); // the next week: cell 3 shows the 25th
        QTest::qWait(1200);
        QVERIFY(!calendar.toolTip()->isVisible());
    }

    // A click on the tooltip, a press on a row or a left mouse-up hides it and goes idle.
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
    }

    // A reload unloads the rows; the captured one must not keep the mouse (it would swallow
    // every click on the cell), and the next move over a row captures it anew.
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

    // A row holds the mouse while the pointer rests on it. Had it still held it when the editor
    // opened, every click would go to the row and the editor's buttons would look dead.
    void editorOpensWithTheMouseFree()
    {
        kvSystemMessageBox realMessageBox; // and the real modal runner, since no other is installed
        kvScopedService installed(realMessageBox);
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
};

QTEST_MAIN(tst_kvCellInteraction)
#include "tst_kvCellInteraction.moc"
