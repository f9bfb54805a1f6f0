#include "DemoEventPanel.h"

#include "DemoAppointmentWriter.h"
#include "kvClock.h"
#include "kvError.h"
#include "kvKalivo.h"
#include "kvPlatform.h"
#include "kvRuntimeError.h"

#include <QCheckBox>
#include <QFont>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <exception>

namespace {

QColor OutcomeColor(DemoHostEvent::Outcome outcome)
{
    switch (outcome) {
    case DemoHostEvent::Outcome::Written:
        return QColor(0x1e, 0x7b, 0x34);
    case DemoHostEvent::Outcome::Cancelled:
        return QColor(0xb3, 0x59, 0x00);
    case DemoHostEvent::Outcome::Failed:
        return QColor(0xc0, 0x1c, 0x28);
    default:
        return QColor(0x1c, 0x5f, 0xa8);
    }
}

DemoAppointmentWriter WriterFor(kvKalivo *calendar)
{
    if (!calendar || !calendar->Connection())
        throw kvRuntimeError(3709, QStringLiteral("Das Steuerelement hat keine Verbindung."));
    return DemoAppointmentWriter(*calendar->Connection(), calendar->RecordSource());
}

} // namespace

DemoEventPanel::DemoEventPanel(kvKalivo *calendar, QWidget *parent)
    : QDockWidget(QStringLiteral("Ereignisse"), parent)
    , m_calendar(calendar)
{
    setObjectName(QStringLiteral("eventPanel"));
    setWidget(CreateContents());
    BindSwitches();
    ConnectEvents();
    UpdateCount();
}

void DemoEventPanel::Clear()
{
    m_events.clear();
    m_log->clear();
    UpdateCount();
}

int DemoEventPanel::PreferredWidth() const
{
    const int value = fontMetrics().horizontalAdvance(QStringLiteral("vom Host geschrieben (DateID 9999)"));
    return m_log->columnWidth(0) + value + style()->pixelMetric(QStyle::PM_ScrollBarExtent)
        + 4 * style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
}

// --- Widgets ----------------------------------------------------------------------------------

QWidget *DemoEventPanel::CreateContents()
{
    auto *contents = new QWidget(this);
    auto *layout = new QVBoxLayout(contents);
    auto *hint = new QLabel(
        QStringLiteral("Was das Steuerelement dem Host meldet, wenn ein Termin per Doppelklick oder "
                       "Kontextmenü angelegt, geändert oder gelöscht wird. Mit RaiseDatabaseEvents "
                       "schreibt es nicht selbst: dann schreibt die Demo als Host, außer sie bricht ab."),
        contents);
    hint->setWordWrap(true);
    hint->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(hint);
    layout->addWidget(CreateSwitches());
    layout->addWidget(CreateLog(), 1);
    layout->addWidget(CreateFooter());
    return contents;
}

QWidget *DemoEventPanel::CreateSwitches()
{
    auto *switches = new QWidget(this);
    auto *layout = new QVBoxLayout(switches);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *control = new QGroupBox(QStringLiteral("Steuerelement"), switches);
    new QVBoxLayout(control);
    m_raiseDatabaseEvents = AddSwitch(control, QStringLiteral("RaiseDatabaseEvents"),
        QStringLiteral("DateNew, DateChange und DateDelete melden, statt selbst zu schreiben"));
    m_raiseEditEvent = AddSwitch(control, QStringLiteral("RaiseEditEvent"),
        QStringLiteral("Edit melden, statt den eigenen Editor zu zeigen"));
    m_raiseErrorEvent = AddSwitch(control, QStringLiteral("RaiseErrorEvent"),
        QStringLiteral("Fehler als Error-Ereignis melden statt als Meldungsfenster"));
    auto *host = new QGroupBox(QStringLiteral("Host"), switches);
    new QVBoxLayout(host);
    m_cancel = AddSwitch(host, QStringLiteral("Abbrechen (bCancel setzen)"),
        QStringLiteral("Jedes Ereignis mit bCancel = True beantworten: nichts wird geschrieben, "
                       "das Steuerelement lädt nicht neu"));
    m_cancel->setObjectName(QStringLiteral("checkCancel"));
    m_logPropertyChanged = AddSwitch(host, QStringLiteral("PropertyChanged zeigen"),
        QStringLiteral("Auch PropertyChanged protokollieren (bei jeder Änderung einer Eigenschaft)"));
    m_logPropertyChanged->setObjectName(QStringLiteral("checkPropertyChanged"));
    layout->addWidget(control);
    layout->addWidget(host);
    return switches;
}

QCheckBox *DemoEventPanel::AddSwitch(QWidget *box, const QString &name, const QString &toolTip)
{
    auto *check = new QCheckBox(name, box);
    check->setObjectName(QStringLiteral("check") + name);
    check->setToolTip(toolTip);
    box->layout()->addWidget(check);
    return check;
}

QWidget *DemoEventPanel::CreateLog()
{
    m_log = new QTreeWidget(this);
    m_log->setObjectName(QStringLiteral("eventLog"));
    m_log->setColumnCount(2);
    m_log->setHeaderLabels({QStringLiteral("Ereignis"), QStringLiteral("Wert")});
    m_log->setRootIsDecorated(false);
    m_log->setIndentation(fontMetrics().horizontalAdvance(QLatin1Char('M')));
    m_log->setUniformRowHeights(true);
    m_log->setTextElideMode(Qt::ElideMiddle);
    m_log->setSelectionMode(QAbstractItemView::NoSelection);
    m_log->setFocusPolicy(Qt::NoFocus);
    m_log->setColumnWidth(0, m_log->indentation()
                                 + fontMetrics().horizontalAdvance(QStringLiteral("Err.Description")) + 12);
    m_log->header()->setStretchLastSection(true);
    return m_log;
}

QWidget *DemoEventPanel::CreateFooter()
{
    auto *footer = new QWidget(this);
    auto *layout = new QHBoxLayout(footer);
    layout->setContentsMargins(0, 0, 0, 0);
    m_count = new QLabel(footer);
    m_count->setObjectName(QStringLiteral("eventCount"));
    auto *clear = new QPushButton(QStringLiteral("Leeren"), footer);
    clear->setObjectName(QStringLiteral("clearLog"));
    connect(clear, &QPushButton::clicked, this, &DemoEventPanel::Clear);
    layout->addWidget(m_count, 1);
    layout->addWidget(clear);
    return footer;
}

// --- The control's switches -------------------------------------------------------------------

void DemoEventPanel::BindSwitches()
{
    if (!m_calendar)
        return;
    m_raiseDatabaseEvents->setChecked(m_calendar->RaiseDatabaseEvents());
    m_raiseEditEvent->setChecked(m_calendar->RaiseEditEvent());
    m_raiseErrorEvent->setChecked(m_calendar->RaiseErrorEvent());
    connect(m_raiseDatabaseEvents, &QCheckBox::toggled, this, [this](bool on) {
        if (m_calendar)
            m_calendar->setRaiseDatabaseEvents(on);
    });
    connect(m_raiseEditEvent, &QCheckBox::toggled, this, [this](bool on) {
        if (m_calendar)
            m_calendar->setRaiseEditEvent(on);
    });
    connect(m_raiseErrorEvent, &QCheckBox::toggled, this, [this](bool on) {
        if (m_calendar)
            m_calendar->setRaiseErrorEvent(on);
    });
}

void DemoEventPanel::SyncSwitch(const QString &propertyName)
{
    // RaiseErrorEvent is thread-wide and not announced; the other two are.
    if (propertyName == QLatin1String("RaiseDatabaseEvents"))
        m_raiseDatabaseEvents->setChecked(m_calendar->RaiseDatabaseEvents());
    else if (propertyName == QLatin1String("RaiseEditEvent"))
        m_raiseEditEvent->setChecked(m_calendar->RaiseEditEvent());
}

// --- Host events ------------------------------------------------------------------------------

void DemoEventPanel::ConnectEvents()
{
    if (!m_calendar)
        return;
    // The handlers change the by-reference arguments: they must run inside the emission.
    connect(m_calendar, &kvKalivo::DateNew, this, &DemoEventPanel::OnDateNew, Qt::DirectConnection);
    connect(m_calendar, &kvKalivo::DateChange, this, &DemoEventPanel::OnDateChange, Qt::DirectConnection);
    connect(m_calendar, &kvKalivo::DateDelete, this, &DemoEventPanel::OnDateDelete, Qt::DirectConnection);
    connect(m_calendar, &kvKalivo::Edit, this, &DemoEventPanel::OnEdit, Qt::DirectConnection);
    connect(m_calendar, &kvKalivo::Error, this, &DemoEventPanel::OnError, Qt::DirectConnection);
    connect(m_calendar, &kvKalivo::PropertyChanged, this, &DemoEventPanel::OnPropertyChanged);
}

void DemoEventPanel::OnDateNew(QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                               QString &document, qint16 &imageId, bool &bCancel)
{
    const DemoAppointment appointment{0, begin, end, name, remark, document, imageId};
    const auto [outcome, text] = Respond(bCancel, [&](DemoAppointmentWriter &writer) {
        return QStringLiteral("vom Host geschrieben (DateID %1)").arg(writer.Insert(appointment));
    });
    DemoHostEvent event = DemoHostEvent::DateNew(appointment, bCancel);
    event.setResult(outcome, text);
    Append(event);
}

void DemoEventPanel::OnDateChange(qint32 &dateId, QDateTime &begin, QDateTime &end, QString &name,
                                  QString &remark, QString &document, qint16 &imageId, bool &bCancel)
{
    const DemoAppointment appointment{dateId, begin, end, name, remark, document, imageId};
    const auto [outcome, text] = Respond(bCancel, [&](DemoAppointmentWriter &writer) {
        writer.Update(appointment);
        return QStringLiteral("vom Host geschrieben (geändert)");
    });
    DemoHostEvent event = DemoHostEvent::DateChange(appointment, bCancel);
    event.setResult(outcome, text);
    Append(event);
}

void DemoEventPanel::OnDateDelete(qint32 &dateId, QDateTime &begin, QDateTime &end, QString &name,
                                  QString &remark, QString &document, bool &bCancel)
{
    const DemoAppointment appointment{dateId, begin, end, name, remark, document, 0};
    const auto [outcome, text] = Respond(bCancel, [&](DemoAppointmentWriter &writer) {
        writer.Delete(appointment.dateId);
        return QStringLiteral("vom Host geschrieben (gelöscht)");
    });
    DemoHostEvent event = DemoHostEvent::DateDelete(appointment, bCancel);
    event.setResult(outcome, text);
    Append(event);
}

void DemoEventPanel::OnEdit(qint32 &dateId, QDateTime &begin, QDateTime &end, QString &name,
                            QString &remark, qint16 &imageId, QString &document, qint16 &action,
                            bool &bCancel)
{
    // The control shows no editor and writes nothing after Edit: a real host would
    // open its own editor here and write the result itself.
    bCancel = m_cancel->isChecked();
    DemoHostEvent event = DemoHostEvent::Edit({dateId, begin, end, name, remark, document, imageId}, action,
                                              bCancel);
    if (bCancel)
        event.setResult(DemoHostEvent::Outcome::Cancelled, QStringLiteral("abgebrochen, keine Neuladung"));
    else
        event.setResult(DemoHostEvent::Outcome::Noted,
                        QStringLiteral("würde eigenen Editor zeigen"));
    Append(event);
}

void DemoEventPanel::OnError(kvError &error)
{
    Append(DemoHostEvent::Error(error.Number(), error.Description()));
}

void DemoEventPanel::OnPropertyChanged(const QString &propertyName)
{
    if (m_calendar)
        SyncSwitch(propertyName);
    if (m_logPropertyChanged->isChecked())
        Append(DemoHostEvent::PropertyChanged(propertyName));
}

DemoEventPanel::Response DemoEventPanel::Respond(bool &bCancel, const Write &write) const
{
    if (m_cancel->isChecked()) {
        bCancel = true;
        return {DemoHostEvent::Outcome::Cancelled, QStringLiteral("abgebrochen, nichts geschrieben")};
    }
    try {
        DemoAppointmentWriter writer = WriterFor(m_calendar);
        return {DemoHostEvent::Outcome::Written, write(writer)};
    } catch (const std::exception &failure) {
        // Nothing changed: cancelling spares the control a pointless reload.
        bCancel = true;
        return {DemoHostEvent::Outcome::Failed,
                QStringLiteral("nicht geschrieben: ") + QString::fromUtf8(failure.what())};
    }
}

// --- The log ----------------------------------------------------------------------------------

void DemoEventPanel::Append(DemoHostEvent event)
{
    event.setTime(kvPlatform::clock().Now().time());
    m_events << event;
    QTreeWidgetItem *item = AddItem(event);
    m_log->scrollToItem(item->childCount() > 0 ? item->child(item->childCount() - 1) : item);
    UpdateCount();
}

QTreeWidgetItem *DemoEventPanel::AddItem(const DemoHostEvent &event)
{
    auto *item = new QTreeWidgetItem(m_log);
    item->setText(0, event.Time().toString(QStringLiteral("hh:mm:ss")) + QStringLiteral("  ") + event.Name());
    QFont bold = m_log->font();
    bold.setBold(true);
    item->setFont(0, bold);
    item->setBackground(0, palette().alternateBase());
    item->setFirstColumnSpanned(true);
    item->setToolTip(0, event.Text());
    for (const auto &[argument, value] : event.Arguments()) {
        auto *child = new QTreeWidgetItem(item, {argument, value});
        child->setToolTip(1, value);
    }
    if (event.Result() != DemoHostEvent::Outcome::None) {
        auto *result = new QTreeWidgetItem(item, {QStringLiteral("Host"), event.ResultText()});
        result->setForeground(1, OutcomeColor(event.Result()));
        result->setToolTip(1, event.ResultText());
    }
    item->setExpanded(true);
    return item;
}

void DemoEventPanel::UpdateCount()
{
    m_count->setText(m_events.size() == 1 ? QStringLiteral("1 Ereignis")
                                          : QStringLiteral("%1 Ereignisse").arg(m_events.size()));
}
