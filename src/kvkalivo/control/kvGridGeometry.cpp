#include "kvGridGeometry.h"

#include "kvInt16.h"

namespace {

void enter(qint16 *step, qint16 number)
{
    if (step)
        *step = number;
}

} // namespace

kvGridGeometry::kvGridGeometry(const Input &input, qint16 *step)
    : m_captionTop(input.captionTop)
{
    enter(step, DerivedValues);
    m_margin = input.borderStyle == 0 ? 1 : 0;
    m_weekColumnWidth = input.weeksVisible ? WeekColumnWidth : 0;
    m_columns = input.weekendColumns == 1 ? 6 : 7;
    m_rows = input.view == 1 ? 1 : 6;
    m_firstCellTop = kvInt16::add(kvInt16::add(input.captionTop, CaptionHeight), 1);

    enter(step, CellWidthStep);
    const qint16 scaleWidth = kvInt16::fromInt(input.scaleWidth);
    const qint16 widthLeft = kvInt16::subtract(
        kvInt16::subtract(kvInt16::subtract(scaleWidth, 2 * m_margin), m_columns - 1),
        m_weekColumnWidth);
    m_cellWidth = kvInt16::fromDouble(double(widthLeft) / m_columns);

    enter(step, CellHeightStep);
    const qint16 heightLeft = kvInt16::subtract(
        kvInt16::subtract(kvInt16::fromInt(input.statusBarTop), m_firstCellTop), 2 * m_margin);
    m_cellHeight = m_rows == 1 ? heightLeft
                               : kvInt16::fromDouble(double(kvInt16::subtract(heightLeft, 5)) / 6);

    enter(step, CellsStep);
    ComputeCells(scaleWidth);
}

int kvGridGeometry::ColumnLeft(int column) const
{
    return kvInt16::add(kvInt16::add(m_margin, kvInt16::multiply(column - 1, m_cellWidth + 1)),
                        m_weekColumnWidth);
}

int kvGridGeometry::rowTop(int row) const
{
    return kvInt16::add(m_firstCellTop, kvInt16::multiply(row - 1, m_cellHeight + 1));
}

void kvGridGeometry::ComputeCells(int scaleWidth)
{
    for (int column = 1; column <= m_columns; ++column) {
        const int left = ColumnLeft(column);
        const int width = column < m_columns ? m_cellWidth : scaleWidth - m_margin - left;
        m_captions.append(QRect(left, m_captionTop, width, CaptionHeight));
    }
    for (int row = 1; row <= m_rows; ++row) {
        const int top = rowTop(row);
        for (int column = 1; column <= m_columns; ++column) {
            const int left = ColumnLeft(column);
            if (column < m_columns) {
                m_cells.append(QRect(left, top, m_cellWidth, m_cellHeight));
                continue;
            }
            const int width = scaleWidth - m_margin - left; // the last column runs to the edge
            if (m_columns == 7) {
                m_cells.append(QRect(left, top, width, m_cellHeight));
                continue;
            }
            // One weekend column: Saturday above Sunday, filling the row's height with a 1-px gap.
            const int saturdayHeight = m_cellHeight % 2 == 0 ? m_cellHeight / 2 : (m_cellHeight - 1) / 2;
            const int sundayHeight = m_cellHeight % 2 == 0 ? m_cellHeight / 2 - 1 : (m_cellHeight - 1) / 2;
            m_cells.append(QRect(left, top, width, saturdayHeight));
            m_cells.append(QRect(left, top + saturdayHeight + 1, width, sundayHeight));
        }
    }
}

QRect kvGridGeometry::corner() const
{
    return QRect(m_margin, m_captionTop, CornerWidth, CaptionHeight);
}

QRect kvGridGeometry::weekColumn() const
{
    const int height = m_rows * (m_cellHeight + 1) - 1;
    return QRect(m_margin, m_firstCellTop, CornerWidth, std::max(0, height));
}
