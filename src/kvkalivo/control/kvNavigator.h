#pragma once

#include "kvKalivo.h"

class kvDate;
class kvKalivoPrivate;

/*!
    \internal
    Moves the control through time: the view switch, a week or month back and forth, today,
    the date picker's day (reloading only when it lies outside the grid) and the jumps to the
    next and previous appointment (failures reported as 14 + step and 1500 + step).
*/
class kvNavigator
{
public:
    enum class Direction { Next, Previous };

    explicit kvNavigator(kvKalivoPrivate &d);

    //! The view buttons: the switch takes effect even without AutoRefresh.
    void SwitchView(kvKalivo::kvView view);
    //! One week (week view) or one month (month view) forward (1) or back (-1).
    void StepDate(int direction);
    //! Makes \a date the actual day; the grid reloads only when it does not show that day.
    void ApplyRangeCheck(const kvDate &date);
    void GotoToday();
    void GotoAppointment(Direction direction);

private:
    void JumpToAppointment(const kvDate &date, bool outsideTheView);

    kvKalivoPrivate &d;
};
