#include "ctlEntryAccessible.h"

#include "ctlDay.h"
#include "ctlEntry.h"

ctlEntryAccessible::ctlEntryAccessible(ctlEntry *row)
    : QAccessibleObject(row)
{
}

ctlEntry *ctlEntryAccessible::row() const
{
    return static_cast<ctlEntry *>(object());
}

ctlDay *ctlEntryAccessible::cell() const
{
    return qobject_cast<ctlDay *>(row()->parent());
}

QAccessibleInterface *ctlEntryAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(cell());
}

QString ctlEntryAccessible::text(QAccessible::Text type) const
{
    switch (type) {
    case QAccessible::Name:
        return row()->Time().isEmpty() ? row()->Text() : row()->Time() + u' ' + row()->Text();
    case QAccessible::Description:
        return row()->Remark();
    default:
        return QString();
    }
}

QAccessible::State ctlEntryAccessible::state() const
{
    QAccessible::State state;
    state.focusable = true;
    state.selectable = true;
    const ctlDay *day = cell();
    const bool selected = day && day->FocusEntryIndex() == row()->Listindex();
    state.selected = selected;
    state.focused = selected && day->hasFocus();
    state.invisible = !row()->Visible() || rect().isEmpty();
    return state;
}

//! The part of the row that shows: below the header, inside the cell.
QRect ctlEntryAccessible::rect() const
{
    const ctlDay *day = cell();
    if (!day || !day->isVisible())
        return QRect();
    const QRect inner = day->contentsRect();
    QRect shown = row()->geometry().translated(inner.topLeft()) & inner;
    shown.setTop(std::max(shown.top(), inner.top() + day->ctlHeader().Height()));
    if (shown.isEmpty())
        return QRect();
    return QRect(day->mapToGlobal(shown.topLeft()), shown.size());
}
