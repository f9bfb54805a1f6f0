#pragma once

#include "kvDate.h"

#include <QRect>
#include <QString>

class ctlEntry;

/*!
    \brief One row of a day cell: the appointment AddDate gave it, its place in the cell, and
    its ctlEntry once the row is needed.

    A busy day has thousands of rows of which a few can be seen at once, so a row gets its
    ctlEntry only when it is painted, hit by the mouse or asked for (ctlDay::Entries). Until
    then the row is its appointment and its place; from then on the ctlEntry is the row, and
    the place is read from and written to it.
*/
class kvDayRow
{
public:
    //! AddDate's arguments, in its order.
    struct Appointment
    {
        qint32 DateID = 0;
        kvDate DateBegin;
        kvDate DateEnd;
        QString Text;
        QString Remark;
        QString Document;
        qint16 ImgId = 0;
        uint BackColor = 0;
        uint ForeColor = 0;
    };

    kvDayRow(const Appointment &appointment, const QRect &geometry);

    const Appointment &appointment() const { return m_appointment; }
    //! Null until the row is needed.
    ctlEntry *entry() const { return m_entry; }
    //! Makes \a entry the row: filled as row \a index, in the row's place; it must be new or cleared.
    void Attach(ctlEntry *entry, qint16 index);

    QRect geometry() const;
    void setGeometry(const QRect &geometry);
    void setTop(int top);
    //! An unmade row is shown; a made one as its ctlEntry says.
    bool Visible() const;
    void setShowLineSeperator(bool show);

private:
    Appointment m_appointment;
    QRect m_geometry;
    bool m_showLineSeperator = false;
    ctlEntry *m_entry = nullptr;
};
