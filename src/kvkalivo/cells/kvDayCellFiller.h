#pragma once

#include "kvDayRowSink.h"
#include "kvkalivo_export.h"

class ctlDay;

/*!
    \brief Fills a day cell with the appointments of a day load: one row each, in
    \a backColor and the default fore colour, continued ones marked as such.

    \code
    store.LoadDayAppointments(day, kvDayCellFiller(cell, backColor));
    \endcode
*/
class KVKALIVO_TESTS_EXPORT kvDayCellFiller final : public kvDayRowSink
{
public:
    kvDayCellFiller(ctlDay &cell, uint backColor);

    void AddAppointment(const kvAppointmentValues &appointment) const override;
    //! Marks the cell's last row; throws kvRuntimeError 5 when the cell has no row.
    void MarkLastContinued() const override;

private:
    ctlDay &m_cell;
    uint m_backColor;
};
