#pragma once

class QPainter;
class QPaintEvent;
class ctlDay;

/*!
    \brief Paints a day cell: its background and border, the appointment rows, the header row
    above them, the header's icons and, while the cell has the focus, the focus frames.
*/
class kvDayCellPainter
{
public:
    explicit kvDayCellPainter(ctlDay &cell);

    void Paint(QPaintEvent *event) const;

private:
    void PaintIcons(QPainter &painter) const;
    void PaintFocusFrames(QPainter &painter) const;

    ctlDay &m_cell;
};
