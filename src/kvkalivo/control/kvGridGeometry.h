#pragma once

#include "kvkalivo_export.h"

#include <QList>
#include <QRect>

/*!
    \file kvGridGeometry.h
    \brief kvGridGeometry: where ArrangeGrid puts the day cells, captions and week column.
*/

/*!
    \brief The arithmetic of the grid arrangement: margins, cell sizes and the place of
    every cell, caption and the week column, for one size and set of layout properties.

    All derived values are 16-bit integers: a control too large for them throws
    kvRuntimeError 6 ("Überlauf"), which ArrangeGrid reports with its step code.
*/
class KVKALIVO_TESTS_EXPORT kvGridGeometry
{
public:
    //! The control's size and layout properties the arrangement depends on; all in pixels.
    struct Input
    {
        int scaleWidth = 0;     //!< inner width of the control
        int captionTop = 0;     //!< top of the weekday-caption row
        int statusBarTop = 0;   //!< the cells end above the status bar
        int borderStyle = 0;    //!< kvNone 0 gives a margin of 1
        bool weeksVisible = true; //!< WeeksVisible: reserve the 15-pixel week column
        int weekendColumns = 1; //!< kvOne 1: Saturday above Sunday in one column
        int view = 1;           //!< kvWeek 1: one row; otherwise six
    };

    //! Height of the weekday-caption row, pixels.
    static constexpr int CaptionHeight = 17;
    //! Width the week column takes from the cells when WeeksVisible, pixels.
    static constexpr int WeekColumnWidth = 15;
    //! Width of the week column and of the corner above it, pixels.
    static constexpr int CornerWidth = 14;

    //! ArrangeGrid's step numbers: 2 derived values, 3 cell width, 4 cell height, 6 cells.
    enum Step {
        DerivedValues = 2,  //!< margin, week-column width, columns and rows
        CellWidthStep = 3,  //!< the cell width
        CellHeightStep = 4, //!< the cell height
        CellsStep = 6       //!< the places of the cells
    };

    //! An empty arrangement: no cells, no captions.
    kvGridGeometry() = default;
    //! Computes everything; \a step follows the stages so a failure names the right one.
    kvGridGeometry(const Input &input, qint16 *step = nullptr);

    //! 1 with BorderStyle kvNone, 0 with kvFixedSingle.
    int margin() const { return m_margin; }
    //! 15 when WeeksVisible, else 0.
    int weekColumnWidth() const { return m_weekColumnWidth; }
    //! 6 with one weekend column (kvOne), 7 with two.
    int columns() const { return m_columns; }
    //! 1 in the week view, 6 in the month view.
    int rows() const { return m_rows; }
    //! Width of an ordinary day cell (the last column runs to the right edge).
    int cellWidth() const { return m_cellWidth; }
    //! Height of an ordinary day cell (Saturday and Sunday share one in a single weekend column).
    int cellHeight() const { return m_cellHeight; }
    //! Top of the first row of cells: caption top + 17 + 1.
    int firstCellTop() const { return m_firstCellTop; }

    //! The cells in reading order: 7 in the week view, 42 in the month view.
    const QList<QRect> &cells() const { return m_cells; }
    //! One caption rectangle per column.
    const QList<QRect> &captions() const { return m_captions; }
    //! The corner shape above the week column, level with the captions, 14 pixels wide.
    QRect corner() const;
    //! The week column: below the captions, as high as all rows of cells.
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
