#pragma once

#include <QAccessibleWidget>

class ctlDay;

/*!
    \brief What an assistive tool (a screen reader) learns of a day cell: a list named after
    its day ("Montag, 23. November 2026, 3 Termine", with the holiday's name when it has one)
    whose items are its appointment rows (ctlEntryAccessible).

    The rows are painted by the cell, not widgets; the cell's interface hands them out as its
    children. Install() registers the factory for both once per process.
*/
class ctlDayAccessible : public QAccessibleWidget
{
public:
    explicit ctlDayAccessible(ctlDay *cell);

    //! Registers the factory that gives day cells and their rows these interfaces.
    static void Install();

    QString text(QAccessible::Text type) const override;
    QAccessible::State state() const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *focusChild() const override;

private:
    ctlDay *cell() const;
    QString DayName() const;
};
