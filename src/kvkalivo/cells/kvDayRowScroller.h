#pragma once

#include <QtGlobal>

class ctlDay;

/*!
    \brief Lays the rows of a day cell out below its header and scrolls them with the cell's
    \c VScroll by whole rows; the bar shows only while the rows overflow the cell.
*/
class kvDayRowScroller
{
public:
    explicit kvDayRowScroller(ctlDay &cell);

    //! Lays the header, the rows, the bar and the icons out for the cell's inner size.
    void Resize();
    //! Moves the rows to the bar's value.
    void Scrolling();
    //! Scrolls by whole rows until row \a index lies wholly below the header.
    void ScrollIntoView(qint16 index);

private:
    void PlaceScrollBar(bool visible);
    void PlaceIcons();

    ctlDay &m_cell;
};
