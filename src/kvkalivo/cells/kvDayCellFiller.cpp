#include "kvDayCellFiller.h"

#include "ctlDay.h"
#include "kvInt16.h"

kvDayCellFiller::kvDayCellFiller(ctlDay &cell, uint backColor)
    : m_cell(cell), m_backColor(backColor)
{
}

void kvDayCellFiller::AddAppointment(const kvAppointmentValues &appointment) const
{
    m_cell.AddDate(appointment.DateID, appointment.DateBegin, appointment.DateEnd,
                   appointment.Name, appointment.Remark, appointment.Document,
                   appointment.ImageID, m_backColor, 0);
}

void kvDayCellFiller::MarkLastContinued() const
{
    // The last row of the cell: when AddAppointment added none, an earlier one or error 5.
    m_cell.Entries(kvInt16::fromInt(m_cell.EntriesCount()))->setIsContinuedDate(true);
}
