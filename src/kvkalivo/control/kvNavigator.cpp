#include "kvNavigator.h"

#include "kvAppointmentStore.h"
#include "kvClock.h"
#include "kvDayGrid.h"
#include "kvErrorReporting.h"
#include "kvKalivo_p.h"
#include "kvPlatform.h"

kvNavigator::kvNavigator(kvKalivoPrivate &d)
    : d(d)
{
}

void kvNavigator::SwitchView(kvKalivo::kvView view)
{
    d.q->setView(view);
    if (!d.settings.AutoRefresh)
        d.grid->ArrangeGrid(); // the switch always takes effect
    d.grid->MarkActualDay();
}

void kvNavigator::StepDate(int direction)
{
    const kvDate &actual = d.settings.ActualDate;
    const kvDate stepped = d.settings.View != kvKalivo::kvWeek ? actual.addMonths(direction)
                                                              : actual.addDays(7 * direction);
    d.q->setActualDate(stepped.date());
    // With AutoRefresh the setter's re-layout has just filled the cells for the new date.
    if (!d.settings.AutoRefresh)
        d.grid->Reload();
}

void kvNavigator::ApplyRangeCheck(const kvDate &date)
{
    d.SetActualDay(date);
    const kvDate &actual = d.settings.ActualDate;
    if (d.grid->DayCellCount() > 0 && (actual < d.grid->FirstCellDate() || actual > d.grid->LastCellDate()))
        d.grid->Reload();
    else
        d.grid->MarkActualDay();
}

void kvNavigator::GotoToday()
{
    ApplyRangeCheck(kvPlatform::clock().Today());
}

void kvNavigator::GotoAppointment(Direction direction)
{
    const bool next = direction == Direction::Next;
    qint16 step = 0;
    try {
        step = 1;
        const kvDate edge = next ? d.grid->LastCellDate() : d.grid->FirstCellDate();
        step = 2;
        const std::optional<kvDate> found = next ? d.store->FindNextAppointment(edge)
                                                 : d.store->FindPreviousAppointment(edge);
        step = 3;
        if (found)
            JumpToAppointment(*found, next ? *found > edge : *found < edge);
    } catch (...) {
        d.ReportError(kvErrorReporting::StepCode(next ? 14 : 1500, step),
                      kvErrorReporting::DescribeCurrentException());
    }
}

void kvNavigator::JumpToAppointment(const kvDate &date, bool outsideTheView)
{
    d.SetActualDay(date);
    if (outsideTheView)
        d.grid->Reload();
    else
        d.grid->MarkActualDay();
}
