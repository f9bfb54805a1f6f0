#include "ctlDayAccessible.h"

#include "ctlDay.h"
#include "ctlEntry.h"
#include "ctlEntryAccessible.h"

namespace {

QAccessibleInterface *cellsAndRows(const QString &className, QObject *object)
{
    if (className == QLatin1String("ctlDay"))
        return new ctlDayAccessible(static_cast<ctlDay *>(object));
    // A day cell's rows; the header row is part of the cell's name.
    auto *row = qobject_cast<ctlEntry *>(object);
    if (className == QLatin1String("ctlEntry") && row && row->Listindex() > 0)
        return new ctlEntryAccessible(row);
    return nullptr;
}

QString appointmentCount(int count)
{
    if (count == 0)
        return QStringLiteral("keine Termine");
    return count == 1 ? QStringLiteral("1 Termin") : QStringLiteral("%1 Termine").arg(count);
}

} // namespace

ctlDayAccessible::ctlDayAccessible(ctlDay *cell)
    : QAccessibleWidget(cell, QAccessible::List)
{
}

void ctlDayAccessible::Install()
{
    static const bool installed = [] {
        QAccessible::installFactory(cellsAndRows);
        return true;
    }();
    Q_UNUSED(installed)
}

ctlDay *ctlDayAccessible::cell() const
{
    return static_cast<ctlDay *>(widget());
}

//! "Montag, 23. November 2026", then the holiday, then how many appointments.
QString ctlDayAccessible::DayName() const
{
    const ctlDay *day = cell();
    if (!day->datDay().date().isValid())
        return QString();
    QStringList parts{day->locale().toString(day->datDay().date(), QStringLiteral("dddd, d. MMMM yyyy"))};
    if (!day->PublicHolidayName().isEmpty())
        parts << day->PublicHolidayName();
    parts << appointmentCount(day->EntriesCount());
    return parts.join(QStringLiteral(", "));
}

QString ctlDayAccessible::text(QAccessible::Text type) const
{
    if (type == QAccessible::Name)
        return DayName();
    return QAccessibleWidget::text(type);
}

QAccessible::State ctlDayAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.selected = cell()->IsActualDay();
    state.focused = cell()->hasFocus() && cell()->FocusEntryIndex() == 0;
    return state;
}

int ctlDayAccessible::childCount() const
{
    return cell()->EntriesCount();
}

QAccessibleInterface *ctlDayAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    return QAccessible::queryAccessibleInterface(cell()->Entries(qint16(index + 1)));
}

int ctlDayAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *row = child ? qobject_cast<const ctlEntry *>(child->object()) : nullptr;
    if (!row || row->parent() != cell() || row->Listindex() > childCount())
        return -1;
    return row->Listindex() - 1;
}

QAccessibleInterface *ctlDayAccessible::focusChild() const
{
    const qint16 selected = cell()->FocusEntryIndex();
    if (!cell()->hasFocus() || selected < 1 || selected > childCount())
        return nullptr;
    return child(selected - 1);
}
