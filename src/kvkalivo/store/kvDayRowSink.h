#pragma once

#include "kvAppointmentValues.h"

/*!
    \brief Where kvAppointmentStore::LoadDayAppointments hands a day's appointments, in the
    order of the query (DateBegin).

    A sink is a handle on its target: its members are const and may change what it points to.
    What a member throws ends the load, which reports it under the step in which it was called.
*/
class kvDayRowSink
{
public:
    virtual ~kvDayRowSink() = default;

    //! The next appointment of the day.
    virtual void AddAppointment(const kvAppointmentValues &appointment) const = 0;
    //! The appointment just added began on an earlier day and continues into this one.
    virtual void MarkLastContinued() const = 0;
};
