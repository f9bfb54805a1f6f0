#pragma once

#include <QAccessibleObject>

class ctlDay;
class ctlEntry;

/*!
    \brief What an assistive tool learns of an appointment row: a list item named by its time
    and name ("09:00 Teambesprechung"; an all-day appointment by its name), described by its
    remark, selected and focused while it is its cell's selected row.
*/
class ctlEntryAccessible : public QAccessibleObject
{
public:
    explicit ctlEntryAccessible(ctlEntry *row);

    QAccessibleInterface *parent() const override;
    int childCount() const override { return 0; }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QString text(QAccessible::Text type) const override;
    QAccessible::State state() const override;
    QRect rect() const override;

private:
    ctlEntry *row() const;
    ctlDay *cell() const;
};
