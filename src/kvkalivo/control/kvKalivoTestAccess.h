#pragma once

#include "kvkalivo_export.h"

#include "kvDayGrid.h"

#include <QtGlobal>

class ctlDay;
class kvKalivo;

/*!
    \internal
    What the tests see of a kvKalivo beyond its public interface: the day grid with its cells
    and signals, and the cell interaction's selection and tooltip mode. Not installed.
*/
class KVKALIVO_TESTS_EXPORT kvKalivoTestAccess
{
public:
    //! The grid, whose gridArranged(), actualDayMarked() and coloursApplied() tests wait for.
    static kvDayGrid *Grid(const kvKalivo &control);
    //! The visible day cells, 1 .. DayCellCount(), in reading order.
    static int DayCellCount(const kvKalivo &control) { return Grid(control)->DayCellCount(); }
    //! Day cell \a index, 1 to DayCellCount(); throws kvRuntimeError 340 outside that range.
    static ctlDay *DayCell(const kvKalivo &control, int index) { return Grid(control)->DayCell(index); }
    //! The cell (DayIndex) last selected by a mouse action or a key.
    static qint16 SelectedDayIndex(const kvKalivo &control);
    //! The row within that cell, 1-based; -1 after an action on the day itself.
    static qint16 SelectedEntryIndex(const kvKalivo &control);
    //! True while tooltips show without delay.
    static bool TooltipMode(const kvKalivo &control);
};
