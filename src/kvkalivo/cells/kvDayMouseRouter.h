#pragma once

#include <QPointF>
#include <QPointer>

#include <optional>

class QHelpEvent;
class QMouseEvent;
class ctlDay;
class ctlEntry;

/*!
    \brief Routes the mouse of a day cell to what lies under it: the icons, the header row, an
    appointment row or the cell's background.

    A pressed button keeps the mouse for its target until the last button is released, and a
    row that captured the mouse (ctlDay::SetCapture) gets every event whatever lies under it.
    Positions are pixels of the cell's widget; the router converts them to the inner area.
*/
class kvDayMouseRouter
{
public:
    explicit kvDayMouseRouter(ctlDay &cell);

    void Press(QMouseEvent *event);
    void Release(QMouseEvent *event);
    void Move(QMouseEvent *event);
    void DoubleClick(QMouseEvent *event);
    //! The hover text of the label under the pointer: a holiday's name over its day number.
    bool ShowHoverText(QHelpEvent *event);

    //! A row's MouseUp: the row becomes the active and the selected one, then EntryMouseUp.
    void RowMouseUp(qint16 index, qint16 button, qint16 shift, float x, float y);
    //! EntryMouseMove and EntryMouseDown: the position in the cell and the row's rectangle.
    void RowPointer(qint16 index, float x, float y, bool pressed);

    //! From now on every event goes to \a row.
    void CaptureRow(ctlEntry *row);
    //! Ends a row's capture; false when no row had captured the mouse.
    bool ReleaseRowCapture();
    //! Forgets the target of a pressed button, as when its row is unloaded.
    void ForgetPress() { m_pressCapture.reset(); }

private:
    enum class Area { Background, Header, Row, Icon };
    struct Target
    {
        Area area = Area::Background;
        QPointer<ctlEntry> row;
    };

    Target HitTest(QPointF innerPos) const;
    Target TargetAt(QPointF innerPos) const;
    Target PressTarget(QMouseEvent *event, QPointF innerPos);
    QPointF ToInner(QPointF widgetPos) const;
    static QPointF InRow(const ctlEntry *row, QPointF innerPos);

    ctlDay &m_cell;
    std::optional<Target> m_pressCapture;   //!< the target of the pressed button
    std::optional<Target> m_rowCapture;     //!< ctlDay::SetCapture
};
