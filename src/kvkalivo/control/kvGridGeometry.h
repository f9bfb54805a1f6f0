#pragma once

#include "kvkalivo_export.h"

#include <QList>
#include <QRect>

/*!
    \brief Part 3.1's arithmetic of the grid arrangement: margins, cell sizes and the place of
    every cell, caption and the week column, for one size and set of layout properties.

    All derived values are the spec's 16-bit integers: a control too large for them throws
    kvRuntimeError 6 ("Überlauf"), which ArrangeGrid reports with its step code.
*/
class KVKALIVO_EXPORT kvGridGeometry
{
public:
    struct Input
    {
        int scaleWidth = 0;
        int captionTop = 0;     //!< top of the weekday-caption row
        int statusBarTop = 0;   //!< the cells end above the status bar
        int borderStyle = 0;    //!< kvNone 0 gives a margin of 1
        bool weeksVisible = true;
        int weekendColumns = 1; //!< kvOne 1: Saturday above Sunday in one column
        int view = 1;           //!< kvWeek 1: one row; otherwise six
    };

    static constexpr int CaptionHeight = 17;
    static constexpr int WeekColumnWidth = 15;
    static constexpr int CornerWidth = 14;

    //! The steps Part 1.3 numbers: 2 derived values, 3 cell width, 4 cell height, 6 cells.
    enum Step { DerivedValues = 2, CellWidthStep = 3, CellHeightStep = 4, CellsStep = 6 };

    kvGridGeometry() = default;
    //! Computes everything; \a step follows the stages so a failure names the right one.
    kvGridGeometry(const Input &input, qint16 *step = nullptr);

    int margin() const { return m_margin; }
    int weekColumnWidth() const { return m_weekColumnWidth; }
    int columns() const { return m_columns; }
    int rows() const { return m_rows; }
    int cellWidth() const { return m_cellWidth; }
    int cellHeight() const { return m_cellHeight; }
    int firstCellTop() const { return m_firstCellTop; }

    //! The cells in reading order: 7 in the week view, 42 in the month view.
    const QList<QRect> &cells() const { return m_cells; }
    //! One caption rectangle per column.
    const QList<QRect> &captions() const { return m_captions; }
    QRect corner() const;
    QRect weekColumn() const;
    //! Top of grid row \a row (1-based).
    int rowTop(int row) const;

private:
    void ComputeCells(int scaleWidth);
    int ColumnLeft(int column) const;

    int m_margin = 1;
    int m_weekColumnWidth = WeekColumnWidth;
    int m_columns = 6;
    int m_rows = 1;
    int m_cellWidth = 0;
    int m_cellHeight = 0;
    int m_captionTop = 0;
    int m_firstCellTop = 0;
    QList<QRect> m_cells;
    QList<QRect> m_captions;
};
