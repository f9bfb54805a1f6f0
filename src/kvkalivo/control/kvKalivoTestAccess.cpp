#include "kvKalivoTestAccess.h"

#include "kvCellInteraction.h"
#include "kvKalivo_p.h"

kvDayGrid *kvKalivoTestAccess::Grid(const kvKalivo &control)
{
    return kvKalivoPrivate::get(&control)->grid.get();
}

qint16 kvKalivoTestAccess::SelectedDayIndex(const kvKalivo &control)
{
    return kvKalivoPrivate::get(&control)->interaction->SelectedDayIndex();
}

qint16 kvKalivoTestAccess::SelectedEntryIndex(const kvKalivo &control)
{
    return kvKalivoPrivate::get(&control)->interaction->SelectedEntryIndex();
}

bool kvKalivoTestAccess::TooltipMode(const kvKalivo &control)
{
    return kvKalivoPrivate::get(&control)->interaction->TooltipMode();
}
