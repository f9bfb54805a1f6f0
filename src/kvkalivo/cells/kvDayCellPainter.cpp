#include "kvDayCellPainter.h"

#include "ctlDay.h"
#include "kvOleColor.h"

#include <QPaintEvent>
#include <QPainter>

kvDayCellPainter::kvDayCellPainter(ctlDay &cell)
    : m_cell(cell)
{
}

void kvDayCellPainter::Paint(QPaintEvent *event) const
{
    QPainter painter(&m_cell);
    const QPalette &colours = m_cell.palette();
    painter.fillRect(event->rect(), kvOleColor::ToQColor(m_cell.m_backColor, colours));
    if (m_cell.m_borderVisible) {
        painter.setPen(colours.color(QPalette::Shadow));
        painter.drawRect(m_cell.rect().adjusted(0, 0, -1, -1));
    }

    const QRect inner = m_cell.contentsRect();
    painter.setClipRect(inner & event->rect());
    painter.translate(inner.topLeft());
    const QRect dirty = event->rect().translated(-inner.topLeft());
    if (m_cell.m_entries) {
        const QList<kvDayRow> &rows = m_cell.m_entries->rows;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            if (rows.at(i).geometry().intersects(dirty))
                m_cell.MadeRow(i)->Paint(painter, colours);
        }
    }
    m_cell.m_header->Paint(painter, colours); // rows scrolled above it pass beneath the header
    PaintIcons(painter);
    if (m_cell.hasFocus())
        PaintFocusFrames(painter);
}

//! The icons belong to the header row: a 16-pixel picture is cut to the 15-pixel header
//! rather than spilling onto the first appointment.
void kvDayCellPainter::PaintIcons(QPainter &painter) const
{
    const QList<ctlDay::Image> &images = m_cell.m_images;
    if (images.size() < 2)
        return;
    painter.save();
    painter.setClipRect(m_cell.m_header->geometry(), Qt::IntersectClip);
    for (qsizetype k = 1; k < images.size(); ++k) {
        const ctlDay::Image &icon = images.at(k);
        if (icon.Visible && !icon.Picture.isNull())
            painter.drawPixmap(icon.Geometry.topLeft(), icon.Picture);
    }
    painter.restore();
}

//! The focus frames: round the day, and round its selected row.
void kvDayCellPainter::PaintFocusFrames(QPainter &painter) const
{
    const int width = m_cell.InnerWidth();
    const int height = m_cell.InnerHeight();
    const qint16 focusIndex = m_cell.m_focusEntryIndex;
    painter.save();
    painter.setPen(QPen(m_cell.palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(0, 0, width, height).adjusted(1, 1, -1, -1));
    if (focusIndex > 0 && focusIndex <= m_cell.EntriesCount()) {
        const QRect row = m_cell.Entries(focusIndex)->geometry();
        const QRect belowHeader(0, m_cell.m_header->Height(), width, height);
        painter.setClipRect(belowHeader, Qt::IntersectClip);
        painter.drawRect(QRectF(row).adjusted(1, 1, -1, -1));
    }
    painter.restore();
}
