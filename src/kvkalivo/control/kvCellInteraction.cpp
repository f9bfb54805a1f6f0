#include "kvCellInteraction.h"

#include "ctlDay.h"
#include "ctlEntry.h"
#include "ctlToolTip.h"
#include "kvChrome.h"
#include "kvClock.h"
#include "kvDayGrid.h"
#include "kvKalivo_p.h"
#include "kvNavigator.h"
#include "kvPlatform.h"

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QTimer>

kvCellInteraction::kvCellInteraction(kvKalivoPrivate &d)
    : d(d)
{
    m_toolTip = new ctlToolTip(d.q);
    m_toolTip->hide();
    QObject::connect(m_toolTip, &ctlToolTip::Click, d.q, [this] { HideToolTip(); });
    m_timerTooltipOff = new QTimer(d.q);
    m_timerTooltipOff->setObjectName(QStringLiteral("TimerTooltipOFF"));
    m_timerTooltipOff->setInterval(800);
    m_timerTooltip = new QTimer(d.q);
    m_timerTooltip->setObjectName(QStringLiteral("TimerTooltip"));
    m_timerTooltip->setInterval(1000);
    QObject::connect(m_timerTooltip, &QTimer::timeout, d.q, [this] { OnTimerTooltip(); });
    QObject::connect(m_timerTooltipOff, &QTimer::timeout, d.q, [this] { OnTimerTooltipOff(); });
}

void kvCellInteraction::ConnectDayCell(ctlDay *cell, qint16 dayIndex)
{
    // Clicking a cell gives it the focus, which makes its day the current one.
    cell->setFocusPolicy(Qt::ClickFocus);
    kvKalivo *control = d.q;
    QObject::connect(cell, &ctlDay::DayMouseUp, control, [this, dayIndex](qint16 button, qint16, float, float) {
        OnDayMouseUp(dayIndex, button);
    });
    QObject::connect(cell, &ctlDay::EntryMouseUp, control,
                     [this, dayIndex](qint16 entryIndex, qint16 button, qint16, float, float) {
                         OnEntryMouseUp(dayIndex, entryIndex, button);
                     });
    QObject::connect(cell, &ctlDay::EntryDblClick, control,
                     [this, dayIndex](qint16 entryIndex) { OnEntryDblClick(dayIndex, entryIndex); });
    QObject::connect(cell, &ctlDay::EntryMouseMove, control,
                     [this, dayIndex](qint16 entryIndex, qint32 x, qint32 y, qint32 left, qint32 top,
                                      qint32 width, qint32 height) {
                         OnEntryMouseMove(dayIndex, entryIndex, x, y, left, top, width, height);
                     });
    QObject::connect(cell, &ctlDay::EntryMouseDown, control, [this] { HideToolTip(); });
    QObject::connect(cell, &ctlDay::DayDblClick, control, [this, dayIndex] { OnDayDblClick(dayIndex); });
}

// --- Focus and mouse -----------------------------------------------------------------------------

void kvCellInteraction::OnFocusChanged(QWidget *old, QWidget *now)
{
    // LostFocus of the whole control: focus moved from inside it to somewhere outside.
    const bool hadFocus = old && (old == d.q || d.q->isAncestorOf(old));
    const bool hasFocus = now && (now == d.q || d.q->isAncestorOf(now));
    if (hadFocus && !hasFocus)
        HideToolTip();
    // A day cell lost or received the focus.
    const int oldDayIndex = d.grid->DayIndexOf(old);
    const int dayIndex = d.grid->DayIndexOf(now);
    if (oldDayIndex > 0 && oldDayIndex != dayIndex)
        HideToolTip();
    if (dayIndex > 0 && oldDayIndex != dayIndex)
        OnDayFocus(qint16(dayIndex));
}

void kvCellInteraction::ActivateDay(qint16 dayIndex)
{
    d.settings.ActualDate = d.grid->DayCell(dayIndex)->datDay();
    d.grid->MarkActualDay();
}

void kvCellInteraction::OnDayFocus(qint16 dayIndex)
{
    ActivateDay(dayIndex);
    d.chrome->ShowCalendarWeek();
}

void kvCellInteraction::OnDayMouseUp(qint16 dayIndex, qint16 button)
{
    if (button != 2)
        return;
    m_selectedDayIndex = dayIndex;
    ActivateDay(dayIndex);
    PopupContextMenu(false, QCursor::pos());
}

void kvCellInteraction::OnEntryMouseUp(qint16 dayIndex, qint16 entryIndex, qint16 button)
{
    if (button != 2) {
        HideToolTip();
        return;
    }
    m_selectedEntryIndex = entryIndex;
    m_selectedDayIndex = dayIndex;
    ActivateDay(dayIndex);
    PopupContextMenu(true, QCursor::pos());
}

void kvCellInteraction::PopupContextMenu(bool onRow, const QPoint &globalPos)
{
    d.chrome->PopupContextMenu(onRow, globalPos);
}

void kvCellInteraction::OnEntryDblClick(qint16 dayIndex, qint16 entryIndex)
{
    d.settings.ActualDate = d.grid->DayCell(dayIndex)->datDay();
    m_selectedEntryIndex = entryIndex;
    m_selectedDayIndex = dayIndex;
    d.q->EditAppointment(3);
}

void kvCellInteraction::OnDayDblClick(qint16 dayIndex)
{
    m_selectedEntryIndex = -1;
    m_selectedDayIndex = dayIndex;
    d.q->EditAppointment(1);
}

void kvCellInteraction::OnEntryMouseMove(qint16 dayIndex, qint16 entryIndex, qint32 x, qint32 y,
                                         qint32 entryLeft, qint32 entryTop, qint32 entryWidth,
                                         qint32 entryHeight)
{
    m_selectedDayIndex = dayIndex;
    m_selectedEntryIndex = entryIndex;
    ctlDay *cell = d.grid->DayCell(dayIndex);
    const qint32 mx = x + cell->x();
    const qint32 my = y + cell->y();
    const qint32 ex = entryLeft + cell->x();
    const qint32 ey = entryTop + cell->y();
    const bool inside = mx >= ex && my >= ey && mx <= ex + entryWidth && my <= ey + entryHeight;
    if (!inside) {
        m_timerTooltip->stop();
        m_timerTooltipOff->start();
        m_toolTip->hide();
        ReleaseRowCapture();
        return;
    }
    m_timerTooltipOff->stop();
    if (m_capturedEntryIndex != entryIndex || m_capturedDayIndex != dayIndex) {
        ReleaseRowCapture(); // a window capture moves; here each cell holds its own
        cell->SetCapture(entryIndex);
        m_capturedEntryIndex = entryIndex;
        m_capturedDayIndex = dayIndex;
    }
    m_tooltipAnchorX = ex;
    m_tooltipAnchorY = ey;
    m_tooltipDay = cell->datDay();
    if (m_tooltipMode)
        ShowToolTip();
    else
        m_timerTooltip->start();
}

void kvCellInteraction::ReleaseRowCapture()
{
    m_capturedEntryIndex = -1;
    m_capturedDayIndex = -1;
    for (int index = 1; index <= d.grid->DayCellCount(); ++index)
        d.grid->DayCell(index)->ReleaseCapture();
}

// --- Tooltip -------------------------------------------------------------------------------------

void kvCellInteraction::HideToolTip()
{
    m_tooltipMode = false;
    m_timerTooltip->stop();
    m_timerTooltipOff->stop();
    m_toolTip->hide();
    ReleaseRowCapture();
}

void kvCellInteraction::OnTimerTooltip()
{
    m_timerTooltip->stop();
    m_tooltipMode = true;
    try {
        ShowToolTip();
    } catch (...) {
        // The row went away with a refresh: no tooltip, and nothing to report.
    }
}

void kvCellInteraction::OnTimerTooltipOff()
{
    m_timerTooltipOff->stop();
    m_tooltipMode = false;
    ReleaseRowCapture();
}

void kvCellInteraction::ShowToolTip()
{
    if (m_selectedDayIndex < 1 || m_selectedDayIndex > d.grid->DayCellCount())
        return;
    ctlDay *cell = d.grid->DayCell(m_selectedDayIndex);
    if (cell->datDay() != m_tooltipDay)
        return;
    const ctlEntry *row = cell->Entries(m_selectedEntryIndex);
    m_timerTooltipOff->stop();
    if (m_toolTip->isVisible())
        return;
    if (m_tooltipRowHandle == row->hWnd()) {
        HideToolTip();
        m_tooltipRowHandle = 0; // reset: the next rest on this row shows it again
        return;
    }
    m_tooltipRowHandle = row->hWnd();
    const int firstCellWidth = d.grid->DayCell(1)->width();
    m_toolTip->setMinWidth(qint16(firstCellWidth));
    m_toolTip->setTime(row->Time());
    m_toolTip->setText(row->Text());
    m_toolTip->setRemark(row->Remark());
    m_toolTip->setDateID(row->DateID());
    if (cell->IsActualDay()) {
        m_toolTip->move(m_tooltipAnchorX, m_tooltipAnchorY);
        m_toolTip->setNormalWidth(qint16(firstCellWidth - 2));
    } else {
        m_toolTip->move(m_tooltipAnchorX - 1, m_tooltipAnchorY - 1);
        m_toolTip->setNormalWidth(qint16(firstCellWidth));
    }
    cell->SetCapture(m_selectedEntryIndex);
    m_toolTip->raise();
    m_toolTip->Resize();
    m_toolTip->show();
    const int controlWidth = d.q->width();
    if (m_toolTip->x() + m_toolTip->width() > controlWidth) {
        m_toolTip->Resize();
        m_toolTip->move(controlWidth - m_toolTip->width(), m_toolTip->y());
    }
}

// --- Keyboard ------------------------------------------------------------------------------------

bool kvCellInteraction::HandleKey(const QKeyEvent &event)
{
    const int dayIndex = d.grid->DayIndexOf(QApplication::focusWidget());
    return dayIndex >= 1 && HandleGridKey(qint16(dayIndex), event);
}

/*!
    The keys of the grid, where the focus is on day cell \a dayIndex: the arrows move the
    selection through the days and their rows, PageUp/PageDown are "Zurück"/"Vor", Home is
    "Heute", Enter opens, Delete deletes, the menu key and Shift+F10 open the context menu.
*/
bool kvCellInteraction::HandleGridKey(qint16 dayIndex, const QKeyEvent &event)
{
    if (!d.settings.UserMode)
        return false; // a form designer's grid has no days
    ctlDay *cell = d.grid->DayCell(dayIndex);
    const kvDate day = cell->datDay();
    const qint16 row = cell->FocusEntryIndex();
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        SelectDay(day.addDays(event.key() == Qt::Key_Left ? -1 : 1));
        return true;
    case Qt::Key_Up:
        if (row > 0)
            cell->SelectEntry(qint16(row - 1));
        else
            SelectDay(day.addDays(-7));
        return true;
    case Qt::Key_Down:
        if (row < cell->EntriesCount())
            cell->SelectEntry(qint16(row + 1));
        else
            SelectDay(day.addDays(7));
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        d.navigator->StepDate(event.key() == Qt::Key_PageUp ? -1 : 1);
        SelectDay(d.settings.ActualDate);
        return true;
    case Qt::Key_Home:
        d.navigator->GotoToday();
        SelectDay(d.settings.ActualDate);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        EditSelection(dayIndex, row, row > 0 ? 3 : 1);
        return true;
    case Qt::Key_Delete:
        if (row > 0)
            EditSelection(dayIndex, row, 2);
        return true;
    case Qt::Key_F10:
        if (event.modifiers() != Qt::ShiftModifier)
            return false;
        [[fallthrough]];
    case Qt::Key_Menu:
        PopupContextMenuAt(dayIndex, row);
        return true;
    default:
        return false;
    }
}

/*!
    Moves the keyboard selection to \a day, on the day itself, as a click on its cell does; a
    day outside the grid is reached by reloading the grid around it.
*/
void kvCellInteraction::SelectDay(const kvDate &day)
{
    kvDayGrid &grid = *d.grid;
    if (grid.DayCellCount() == 0)
        return;
    const kvDate target = day.dateOnly();
    if (target < grid.FirstCellDate() || target > grid.LastCellDate()) {
        d.settings.ActualDate = target;
        grid.Reload();
    }
    const int index = int(target.daysSince(grid.FirstCellDate())) + 1;
    if (index < 1 || index > grid.DayCellCount())
        return;
    ctlDay *cell = grid.DayCell(index);
    cell->SelectEntry(0);
    cell->setFocus(Qt::OtherFocusReason);
    OnDayFocus(qint16(index)); // also when the cell kept the focus through a reload
}

//! Enter and Delete: the edit flow for the selected row (or, with \a action 1, the day).
void kvCellInteraction::EditSelection(qint16 dayIndex, qint16 row, qint16 action)
{
    kvDayGrid &grid = *d.grid;
    m_selectedDayIndex = dayIndex;
    m_selectedEntryIndex = row > 0 ? row : qint16(-1);
    if (row > 0)
        grid.DayCell(dayIndex)->SelectEntry(row); // the edit flow reads the cell's active row
    const kvDate day = grid.DayCell(dayIndex)->datDay();
    d.q->EditAppointment(action);
    // The reload took the rows away: the selection stays at the same place of the same day.
    if (dayIndex <= grid.DayCellCount() && grid.DayCell(dayIndex)->datDay() == day) {
        ctlDay *cell = grid.DayCell(dayIndex);
        cell->SelectEntry(qint16(std::min<int>(row, cell->EntriesCount())));
    }
}

//! The menu key and Shift+F10: the context menu below the selected row or day header.
void kvCellInteraction::PopupContextMenuAt(qint16 dayIndex, qint16 row)
{
    ctlDay *cell = d.grid->DayCell(dayIndex);
    m_selectedDayIndex = dayIndex;
    if (row > 0)
        m_selectedEntryIndex = row;
    const QRect area = row > 0 ? cell->Entries(row)->geometry() : cell->ctlHeader().geometry();
    const QPoint below = area.bottomLeft() + cell->contentsRect().topLeft() + QPoint(4, 1);
    PopupContextMenu(row > 0, cell->mapToGlobal(below));
}
