#include "kvDayRowScroller.h"

#include "ctlDay.h"
#include "kvInt16.h"

#include <QCoreApplication>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>

kvDayRowScroller::kvDayRowScroller(ctlDay &cell)
    : m_cell(cell)
{
}

QScrollBar *kvDayRowScroller::CreateScrollBar()
{
    auto *bar = new QScrollBar(Qt::Vertical, &m_cell);
    bar->setObjectName(QStringLiteral("VScroll"));
    bar->setRange(0, 0);
    bar->setSingleStep(1);
    bar->setPageStep(1);
    const int width = m_cell.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, bar);
    bar->resize(width, bar->height());
    bar->hide();
    return bar;
}

void kvDayRowScroller::Resize()
{
    m_cell.m_laidOutSize = m_cell.size();
    const int innerWidth = m_cell.InnerWidth();
    const int innerHeight = m_cell.InnerHeight();
    ctlEntry *header = m_cell.m_header;
    QScrollBar *bar = m_cell.m_vScroll;
    header->Move(0, 0, innerWidth, header->Height());
    m_cell.m_nextRowTop = header->Height();
    bar->setMaximum(0);

    for (qsizetype i = 0; i < m_cell.EntriesCount(); ++i) {
        ctlEntry *row = m_cell.m_entries->rows.at(i);
        row->setTop(m_cell.m_nextRowTop);
        row->setWidth(innerWidth);
        row->setHeight(ctlDay::RowHeight);
        m_cell.m_nextRowTop += row->Height();
        if (m_cell.m_nextRowTop > innerHeight)
            bar->setMaximum(kvInt16::add(bar->maximum(), 1));
    }

    // Rows that overflow the cell show the bar; an empty cell lower than its header never
    // shows it, though its header alone overflows.
    PlaceScrollBar(m_cell.m_nextRowTop > innerHeight && m_cell.EntriesCount() > 0);
    header->setWidth(innerWidth);
    PlaceIcons();
    m_cell.update();
}

void kvDayRowScroller::PlaceScrollBar(bool visible)
{
    QScrollBar *bar = m_cell.m_vScroll;
    const QRect inner = m_cell.contentsRect();
    const int width = bar->width();
    // A cell too low for the bar gets one of height 0 rather than a failure.
    bar->setGeometry(inner.left() + inner.width() - width, inner.top() + ctlDay::ScrollBarTop,
                     width, qMax(0, inner.height() - 16 - 1));
    bar->setVisible(visible);
}

void kvDayRowScroller::PlaceIcons()
{
    QList<ctlDay::Image> &images = m_cell.m_images;
    const int width = images.constFirst().Geometry.width();
    for (qsizetype k = 1; k < images.size(); ++k)
        images[k].Geometry.moveLeft(ctlDay::IconsLeft + int(k) * width);
}

void kvDayRowScroller::Scrolling()
{
    const qint16 headerHeight = kvInt16::fromInt(m_cell.m_header->Height());
    if (!m_cell.m_entries) {
        m_cell.m_vScroll->hide();
        return;
    }
    const QList<ctlEntry *> &rows = m_cell.m_entries->rows;
    if (rows.isEmpty())
        return;
    const qint16 rowHeight = kvInt16::fromInt(m_cell.Entries(1)->Height());
    const qint16 offset = kvInt16::multiply(m_cell.m_vScroll->value(), rowHeight);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const qint16 top = kvInt16::add(kvInt16::multiply(int(i), rowHeight), headerHeight);
        rows.at(i)->setTop(kvInt16::subtract(top, offset));
    }
    m_cell.update();
}

void kvDayRowScroller::ScrollIntoView(qint16 index)
{
    QScrollBar *bar = m_cell.m_vScroll;
    if (!bar->isVisible())
        return;
    const int rowHeight = std::max(1, m_cell.Entries(1)->Height());
    const int headerHeight = m_cell.m_header->Height();
    const int shownRows = std::max(1, (m_cell.InnerHeight() - headerHeight) / rowHeight);
    const int top = index - 1;
    int value = bar->value();
    if (top < value)
        value = top;
    else if (top >= value + shownRows)
        value = top - shownRows + 1;
    bar->setValue(value);
}

void kvDayRowScroller::Wheel(QWheelEvent *event)
{
    if (m_cell.m_vScroll->isVisible())
        QCoreApplication::sendEvent(m_cell.m_vScroll, event);
    else
        event->ignore();
}
