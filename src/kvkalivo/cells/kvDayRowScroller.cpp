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

    int overflowing = 0;
    if (m_cell.m_entries) {
        for (kvDayRow &row : m_cell.m_entries->rows) {
            row.setGeometry(QRect(0, m_cell.m_nextRowTop, innerWidth, ctlDay::RowHeight));
            m_cell.m_nextRowTop += row.geometry().height();
            if (m_cell.m_nextRowTop > innerHeight)
                overflowing = kvInt16::add(overflowing, 1);
        }
    }
    bar->setMaximum(overflowing);

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
    QList<kvDayRow> &rows = m_cell.m_entries->rows;
    if (rows.isEmpty())
        return;
    const qint16 rowHeight = FirstRowHeight();
    const qint16 offset = kvInt16::multiply(m_cell.m_vScroll->value(), rowHeight);
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const qint16 top = kvInt16::add(kvInt16::multiply(int(i), rowHeight), headerHeight);
        rows[i].setTop(kvInt16::subtract(top, offset));
    }
    m_cell.update();
}

//! Every row is taken to be as high as the first.
qint16 kvDayRowScroller::FirstRowHeight() const
{
    return kvInt16::fromInt(m_cell.m_entries->rows.constFirst().geometry().height());
}

void kvDayRowScroller::ScrollIntoView(qint16 index)
{
    QScrollBar *bar = m_cell.m_vScroll;
    if (!bar->isVisible() || m_cell.EntriesCount() == 0)
        return;
    const int rowHeight = std::max<int>(1, FirstRowHeight());
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
