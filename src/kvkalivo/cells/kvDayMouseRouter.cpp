#include "kvDayMouseRouter.h"

#include "ctlDay.h"
#include "kvRuntimeError.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <cmath>
#include <limits>

namespace {

// To the nearest integer, halves to the even neighbour; out of range is error 6 ("Überlauf").
qint32 CLng(double value)
{
    const double rounded = std::nearbyint(value);
    if (!std::isfinite(rounded) || rounded < std::numeric_limits<qint32>::min()
        || rounded > std::numeric_limits<qint32>::max()) {
        throw kvRuntimeError::overflow();
    }
    return qint32(rounded);
}

} // namespace

kvDayMouseRouter::kvDayMouseRouter(ctlDay &cell)
    : m_cell(cell)
{
}

QPointF kvDayMouseRouter::ToInner(QPointF widgetPos) const
{
    return widgetPos - QPointF(m_cell.contentsRect().topLeft());
}

QPointF kvDayMouseRouter::InRow(const ctlEntry *row, QPointF innerPos)
{
    return innerPos - QPointF(row->geometry().topLeft());
}

//! What lies under \a innerPos, topmost first: icons, the header, the rows, the background.
kvDayMouseRouter::Target kvDayMouseRouter::HitTest(QPointF innerPos) const
{
    for (qsizetype k = m_cell.m_images.size() - 1; k >= 1; --k) {
        const ctlDay::Image &icon = m_cell.m_images.at(k);
        if (icon.Visible && QRectF(icon.Geometry).contains(innerPos))
            return {Area::Icon, {}};
    }
    const auto over = [innerPos](const ctlEntry *row) {
        return row->Visible() && row->HitTest(InRow(row, innerPos)) != ctlEntry::Part::None;
    };
    if (over(m_cell.m_header))
        return {Area::Header, m_cell.m_header};
    if (m_cell.m_entries) {
        const QList<kvDayRow> &rows = m_cell.m_entries->rows;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            // Only a row whose place holds the point is made to look closer.
            if (rows.at(i).Visible() && QRectF(rows.at(i).geometry()).contains(innerPos)
                && over(m_cell.MadeRow(i)))
                return {Area::Row, m_cell.MadeRow(i)};
        }
    }
    return {Area::Background, {}};
}

//! A captured mouse goes to its row whatever lies under it.
kvDayMouseRouter::Target kvDayMouseRouter::TargetAt(QPointF innerPos) const
{
    if (m_rowCapture)
        return *m_rowCapture;
    if (m_pressCapture)
        return *m_pressCapture;
    return HitTest(innerPos);
}

/*!
    The first button pressed fixes the target that gets every move and release until the last
    button is released: the row or cell under a pressed button keeps the mouse.
*/
kvDayMouseRouter::Target kvDayMouseRouter::PressTarget(QMouseEvent *event, QPointF innerPos)
{
    const bool firstButton = (event->buttons() & ~event->button()) == Qt::NoButton;
    if (firstButton || !m_pressCapture)
        m_pressCapture = m_rowCapture ? *m_rowCapture : HitTest(innerPos);
    return *m_pressCapture;
}

void kvDayMouseRouter::Press(QMouseEvent *event)
{
    const QPointF pos = ToInner(event->position());
    const Target target = PressTarget(event, pos);
    if (target.area != Area::Row && target.area != Area::Header)
        return;
    if (ctlEntry *row = target.row)
        row->HandleMousePress(InRow(row, pos), event->button(), event->modifiers());
}

void kvDayMouseRouter::Release(QMouseEvent *event)
{
    const QPointF pos = ToInner(event->position());
    const Target target = TargetAt(pos);
    if (event->buttons() == Qt::NoButton)
        m_pressCapture.reset();
    switch (target.area) {
    case Area::Row:
    case Area::Header:
        if (ctlEntry *row = target.row)
            row->HandleMouseRelease(InRow(row, pos), event->button(), event->modifiers());
        break;
    case Area::Background:
        m_cell.SetFocusEntry(0);
        Q_EMIT m_cell.DayMouseUp(ctlEntry::VbButton(event->button()),
                                 ctlEntry::VbShift(event->modifiers()), float(pos.x()),
                                 float(pos.y()));
        break;
    case Area::Icon:
        break;
    }
}

void kvDayMouseRouter::Move(QMouseEvent *event)
{
    if (event->buttons() == Qt::NoButton)
        m_pressCapture.reset(); // a release that never reached the cell
    const QPointF pos = ToInner(event->position());
    const Target target = TargetAt(pos);
    if (target.area != Area::Row)
        return;
    if (ctlEntry *row = target.row)
        row->HandleMouseMove(InRow(row, pos), event->buttons(), event->modifiers());
}

void kvDayMouseRouter::DoubleClick(QMouseEvent *event)
{
    const QPointF pos = ToInner(event->position());
    const Target target = PressTarget(event, pos); // it is the second press
    switch (target.area) {
    case Area::Row:
    case Area::Header:
        if (ctlEntry *row = target.row)
            row->HandleDoubleClick(InRow(row, pos));
        break;
    case Area::Background:
    case Area::Icon:
        Q_EMIT m_cell.DayDblClick();
        break;
    }
}

void kvDayMouseRouter::CaptureRow(ctlEntry *row)
{
    m_rowCapture = Target{Area::Row, row};
}

bool kvDayMouseRouter::ReleaseRowCapture()
{
    if (!m_rowCapture)
        return false;
    m_rowCapture.reset();
    return true;
}

bool kvDayMouseRouter::ShowHoverText(QHelpEvent *event)
{
    const QPointF pos = ToInner(event->pos());
    if (ctlEntry *row = HitTest(pos).row) {
        const ctlEntry::Part part = row->HitTest(InRow(row, pos));
        const ctlEntry::Label &label =
            part == ctlEntry::Part::TimeLabel ? row->lblTime() : row->lblText();
        if ((part == ctlEntry::Part::TimeLabel || part == ctlEntry::Part::TextLabel)
            && !label.ToolTipText.isEmpty()) {
            const QRect area = label.Geometry.translated(row->geometry().topLeft())
                                   .translated(m_cell.contentsRect().topLeft());
            QToolTip::showText(event->globalPos(), label.ToolTipText, &m_cell, area);
            return true;
        }
    }
    QToolTip::hideText();
    event->ignore();
    return true;
}

void kvDayMouseRouter::RowMouseUp(qint16 index, qint16 button, qint16 shift, float x, float y)
{
    m_cell.m_activeEntryIndex = index;
    m_cell.SetFocusEntry(index);
    Q_EMIT m_cell.EntryMouseUp(index, button, shift, x, y);
}

void kvDayMouseRouter::RowPointer(qint16 index, float x, float y, bool pressed)
{
    const ctlEntry *row = m_cell.m_rows(index);
    const qint32 cellX = CLng(row->Left() + double(x));
    const qint32 cellY = CLng(row->Top() + double(y));
    const qint32 left = CLng(row->Left());
    const qint32 top = CLng(row->Top());
    const qint32 width = CLng(row->Width());
    const qint32 height = CLng(row->Height());
    if (pressed)
        Q_EMIT m_cell.EntryMouseDown(index, cellX, cellY, left, top, width, height);
    else
        Q_EMIT m_cell.EntryMouseMove(index, cellX, cellY, left, top, width, height);
}
