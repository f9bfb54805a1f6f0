#include "kvKalivo_p.h"

#include "ctlDay.h"
#include "frmPicSelector.h"
#include "kvAppointmentStore.h"
#include "kvCellInteraction.h"
#include "kvChrome.h"
#include "kvClock.h"
#include "kvDayGrid.h"
#include "kvEditFlow.h"
#include "kvError.h"
#include "kvErrorReporting.h"
#include "kvModalWindows.h"
#include "kvNavigator.h"
#include "kvPlatform.h"
#include "kvPropertyBag.h"
#include "kvRuntimeError.h"

#include <QApplication>

namespace {

// ADO's adErrInvalidConnection: reported for a connection failure whose number needs 32 bits.
constexpr int InvalidConnectionCode = 3709;

} // namespace

kvKalivoPrivate::kvKalivoPrivate(kvKalivo *control)
    : q(control)
{
}

kvKalivoPrivate::~kvKalivoPrivate()
{
    if (!grid)
        return;
    // Terminate: hide the tooltip and unload the dynamically created day cells.
    QObject::disconnect(qApp, nullptr, q, nullptr); // no focus notifications while being destroyed
    interaction->HideToolTip();
    grid->UnloadDayCells();
}

void kvKalivoPrivate::Initialize()
{
    kvError::ReplaceThreadInstance();
    frmPicSelector::ThreadInstance();
    chrome = std::make_unique<kvChrome>(*this);
    grid = std::make_unique<kvDayGrid>(*this);
    interaction = std::make_unique<kvCellInteraction>(*this);
    navigator = std::make_unique<kvNavigator>(*this);
    editFlow = std::make_unique<kvEditFlow>(*this);

    store = new kvAppointmentStore(q);
    store->setObjectName(QStringLiteral("kvAppointmentStore"));
    store->SetReporter([this](int code, const QString &description) { ReportError(code, description); });
    QObject::connect(store, &kvAppointmentStore::ConnectionStateRead, q,
                     [this](int state) { chrome->EnableDatabaseButtons(state); });

    q->setView(kvKalivo::kvWeek);
    q->setActualDate(kvPlatform::clock().Today().date());
    QObject::connect(qApp, &QApplication::focusChanged, q,
                     [this](QWidget *old, QWidget *now) { interaction->OnFocusChanged(old, now); });
    // A modal window takes the focus, as a click elsewhere does; the row must let go of the mouse first.
    QObject::connect(&kvModalWindows::ThreadInstance(), &kvModalWindows::opening, q,
                     [this] { interaction->HideToolTip(); });
}

void kvKalivoPrivate::Relayout()
{
    grid->ArrangeGrid();
    grid->MarkActualDay();
}

void kvKalivoPrivate::RelayoutIfAutoRefresh()
{
    if (settings.AutoRefresh)
        Relayout();
}

void kvKalivoPrivate::SetCellColour(uint &field, uint color, const QString &propertyName)
{
    field = color;
    if (color != 0)
        grid->ApplyColours();
    Notify(propertyName);
}

uint kvKalivoPrivate::ReadCellColour(const kvPropertyBag &bag, const QString &key,
                                     uint (ctlDay::*cellColour)() const, uint defaultColour) const
{
    const uint shown = grid->DayCellCount() > 0 ? (grid->DayCell(1)->*cellColour)() : defaultColour;
    return uint(bag.ReadLong(key, qint32(shown)));
}

void kvKalivoPrivate::SetConnection(kvConnection *connection)
{
    try {
        store->SetConnection(connection);
    } catch (const kvRuntimeError &error) {
        const bool fits = error.number() >= std::numeric_limits<qint16>::min()
            && error.number() <= std::numeric_limits<qint16>::max();
        ReportError(fits ? error.number() : InvalidConnectionCode, error.description());
    } catch (...) {
        ReportError(InvalidConnectionCode, kvErrorReporting::DescribeCurrentException());
    }
}

void kvKalivoPrivate::SetActualDay(const kvDate &date)
{
    settings.ActualDate = date.dateOnly();
    chrome->SyncDatePicker();
}

void kvKalivoPrivate::Notify(const QString &propertyName)
{
    Q_EMIT q->PropertyChanged(propertyName);
}

void kvKalivoPrivate::ReportError(int code, const QString &description)
{
    kvErrorReporting::ReportFromControl(code, description,
                                        [this](kvError &error) { Q_EMIT q->Error(error); });
}
