#pragma once

#include <QtGlobal>

class kvKalivoPrivate;
struct kvAppointmentValues;

/*!
    \internal
    The edit flow behind EditAppointment(): it takes the appointment of the action (a new one on
    the actual day, or the selected row), lets the editor dialog or the host's Edit event change
    it, asks before a delete, and writes it through the store or hands it to the host's
    DateNew, DateChange and DateDelete events. Failures are reported as 13 + step.
*/
class kvEditFlow
{
public:
    //! The edit actions; the numbers are those of EditAppointment() and the Edit event.
    enum class Action : qint16 {
        None = 0,   //!< the editor was closed without saving
        New = 1,    //!< a new appointment on the actual day
        Delete = 2, //!< the selected row
        Change = 3  //!< the selected row
    };

    explicit kvEditFlow(kvKalivoPrivate &d);

    void EditAppointment(Action action);

private:
    void Steps(Action action, qint16 &step);
    kvAppointmentValues Appointment(Action action) const;
    //! The host edits instead of the editor dialog (RaiseEditEvent).
    void RaiseEditEvent(Action action, kvAppointmentValues &values, bool &bCancel);
    //! The editor dialog; returns what its user chose to do with the appointment.
    Action RunEditor(Action action, kvAppointmentValues &values, qint16 &step);
    void Write(Action action, kvAppointmentValues &values, bool &bCancel);
    void RaiseDatabaseEvent(Action action, kvAppointmentValues &values, bool &bCancel);
    //! "Termin <…> löschen?" with Yes, No and Cancel; only Yes deletes.
    bool ConfirmDelete(const kvAppointmentValues &values) const;

    kvKalivoPrivate &d;
};
