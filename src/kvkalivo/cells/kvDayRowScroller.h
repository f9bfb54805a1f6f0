#pragma once

#include <QtGlobal>

class QScrollBar;
class QWheelEvent;
class ctlDay;

/*!
    \brief Lays the rows of a day cell out below its header and scrolls them with the cell's
    \c VScroll by whole rows; the bar shows only while the rows overflow the cell.
*/
class kvDayRowScroller
{
public:
    explicit kvDayRowScroller(ctlDay &cell);

    //! The cell's \c VScroll, hidden until rows overflow the cell.
    QScrollBar *CreateScrollBar();

    //! Lays the header, the rows, the bar and the icons out for the cell's inner size.
    void Resize();
    //! Moves the rows to the bar's value.
    void Scrolling();
    //! Scrolls by whole rows until row \a index lies wholly below the header.
    void ScrollIntoView(qint16 index);

    //! The wheel anywhere over the cell scrolls it as over VScroll: by whole rows.
    void Wheel(QWheelEvent *event);

private:
    qint16 FirstRowHeight() const;
    void PlaceScrollBar(bool visible);
    void PlaceIcons();

    ctlDay &m_cell;
};
