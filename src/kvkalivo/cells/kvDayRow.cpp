#include "kvDayRow.h"

#include "ctlEntry.h"
#include "kvFormat.h"

kvDayRow::kvDayRow(const Appointment &appointment, const QRect &geometry)
    : m_appointment(appointment), m_geometry(geometry)
{
}

//! The row's time is its begin as "hh:nn"; Init shows nothing for "00:00".
void kvDayRow::Attach(ctlEntry *entry, qint16 index)
{
    const Appointment &a = m_appointment;
    entry->Init(a.DateID, index, kv::Format(a.DateBegin, QStringLiteral("hh:nn")), a.DateBegin,
                a.DateEnd, a.Text, a.Remark, a.Document, a.ImgId, a.BackColor, a.ForeColor);
    entry->Move(m_geometry.left(), m_geometry.top(), m_geometry.width(), m_geometry.height());
    entry->setShowLineSeperator(m_showLineSeperator);
    entry->setVisible(true);
    m_entry = entry;
}

QRect kvDayRow::geometry() const
{
    return m_entry ? m_entry->geometry() : m_geometry;
}

void kvDayRow::setGeometry(const QRect &geometry)
{
    if (m_entry)
        m_entry->Move(geometry.left(), geometry.top(), geometry.width(), geometry.height());
    else
        m_geometry = geometry;
}

void kvDayRow::setTop(int top)
{
    if (m_entry)
        m_entry->setTop(top);
    else
        m_geometry.moveTop(top);
}

bool kvDayRow::Visible() const
{
    return !m_entry || m_entry->Visible();
}

void kvDayRow::setShowLineSeperator(bool show)
{
    if (m_entry)
        m_entry->setShowLineSeperator(show);
    else
        m_showLineSeperator = show;
}
