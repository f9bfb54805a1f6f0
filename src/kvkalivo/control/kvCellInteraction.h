#pragma once

#include "kvDate.h"

#include <QtGlobal>

class QKeyEvent;
class QPoint;
class QTimer;
class QWidget;
class ctlDay;
class ctlToolTip;
class kvKalivoPrivate;

/*!
    \internal
    What the mouse and the keyboard do in the grid: the selected day and row, the context menu,
    double-clicks into the edit flow, the appointment tooltip with its two timers ("TimerTooltip"
    shows it after a rest, "TimerTooltipOFF" ends the tooltip mode), the row that holds the mouse
    while the pointer rests on it, and the keys of the grid.
*/
class kvCellInteraction
{
public:
    explicit kvCellInteraction(kvKalivoPrivate &d);

    //! Wires day cell \a dayIndex's mouse events to the selection, menu, editor and tooltip.
    void ConnectDayCell(ctlDay *cell, qint16 dayIndex);
    //! The focus moved: leaving the control or a day cell hides the tooltip, a cell's day becomes the actual one.
    void OnFocusChanged(QWidget *old, QWidget *now);
    //! Mode off, both timers stopped, tooltip hidden, and the row lets go of the mouse.
    void HideToolTip();
    void ReleaseRowCapture();
    //! The rows are filled anew: a new row at a former row's address is another row.
    void ForgetRows() { m_tooltipRowHandle = 0; }
    //! The keys of the grid; false when the focus is not in a day cell or the key is not the grid's.
    bool HandleKey(const QKeyEvent &event);

    ctlToolTip *ToolTip() const { return m_toolTip; }
    //! The cell (DayIndex) last selected by a mouse action or a key.
    qint16 SelectedDayIndex() const { return m_selectedDayIndex; }
    //! The row within that cell, 1-based; -1 after an action on the day itself.
    qint16 SelectedEntryIndex() const { return m_selectedEntryIndex; }
    //! True while tooltips show without delay.
    bool TooltipMode() const { return m_tooltipMode; }

private:
    void OnDayFocus(qint16 dayIndex);
    void OnDayMouseUp(qint16 dayIndex, qint16 button);
    void OnEntryMouseUp(qint16 dayIndex, qint16 entryIndex, qint16 button);
    void OnEntryDblClick(qint16 dayIndex, qint16 entryIndex);
    void OnDayDblClick(qint16 dayIndex);
    void OnEntryMouseMove(qint16 dayIndex, qint16 entryIndex, qint32 x, qint32 y, qint32 entryLeft,
                          qint32 entryTop, qint32 entryWidth, qint32 entryHeight);
    //! Day cell \a dayIndex's day becomes the actual one and is marked.
    void ActivateDay(qint16 dayIndex);
    void OnTimerTooltip();
    void OnTimerTooltipOff();
    void ShowToolTip();
    bool HandleGridKey(qint16 dayIndex, const QKeyEvent &event);
    void SelectDay(const kvDate &day);
    void EditSelection(qint16 dayIndex, qint16 row, qint16 action);
    void PopupContextMenuAt(qint16 dayIndex, qint16 row);
    void PopupContextMenu(bool onRow, const QPoint &globalPos);

    kvKalivoPrivate &d;
    ctlToolTip *m_toolTip = nullptr;
    QTimer *m_timerTooltip = nullptr;
    QTimer *m_timerTooltipOff = nullptr;
    qint16 m_selectedDayIndex = 0;
    qint16 m_selectedEntryIndex = -1;
    bool m_tooltipMode = false;
    kvDate m_tooltipDay;
    qint32 m_tooltipAnchorX = 0;
    qint32 m_tooltipAnchorY = 0;
    qint16 m_capturedEntryIndex = -1;
    qint16 m_capturedDayIndex = -1;
    quintptr m_tooltipRowHandle = 0;
};
