#include "kvKalivo.h"
#include "kvKalivo_p.h"

#include "ctlDay.h"
#include "ctlToolTip.h"
#include "frmPicSelector.h"
#include "kvAppointmentStore.h"
#include "kvCalendarPrinter.h"
#include "kvCellInteraction.h"
#include "kvChrome.h"
#include "kvClock.h"
#include "kvDayGrid.h"
#include "kvEditFlow.h"
#include "kvErrorReporting.h"
#include "kvOleColor.h"
#include "kvPlatform.h"
#include "kvPropertyBag.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRegion>

namespace {

qint16 int16OrDefault(qint32 value, qint16 defaultValue)
{
    return value >= std::numeric_limits<qint16>::min() && value <= std::numeric_limits<qint16>::max()
        ? qint16(value) : defaultValue;
}

} // namespace

kvKalivo::kvKalivo(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<kvKalivoPrivate>(this))
{
    setObjectName(QStringLiteral("kvKalivo"));
    setLocale(kv::DefaultLocale());
    // Not a tab stop of its own: Tab reaches the toolbar, the date picker and the grid.
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    d->Initialize();
    InitProperties();
}

kvKalivo::~kvKalivo() = default;

// --- Persistence ---------------------------------------------------------------------------------

void kvKalivo::InitProperties()
{
    kvKalivoSettings &settings = d->settings;
    settings.BorderStyle = kvNone;
    settings.WeekendColumns = kvOne;
    settings.DayHeaderColor1 = DefaultDayHeaderColor1;
    settings.DayHeaderColor2 = DefaultDayHeaderColor2;
    settings.BackColor = DefaultBackColor;
    settings.View = kvWeek;
    settings.TodayHeaderColor = DefaultTodayHeaderColor;
    settings.ActualDate = kvPlatform::clock().Today();
    settings.AutoRefresh = true;
    // A fresh control shows its calendar weeks, as the persisted default of WeeksVisible says.
    settings.WeeksVisible = true;
    settings.ToolTipBackColor1 = d->interaction->ToolTip()->ToolTipBackColor1();
    settings.ToolTipBackColor2 = d->interaction->ToolTip()->ToolTipBackColor2();
    d->store->setParameterizedSql(false);
    d->chrome->PressViewButton();
    d->chrome->SyncDatePicker();
    d->chrome->ShowCalendarWeek();
    update();
}

void kvKalivo::ReadProperties(const kvPropertyBag &bag)
{
    kvKalivoSettings &settings = d->settings;
    settings.View = kvView(int16OrDefault(bag.ReadLong(QStringLiteral("View"), kvWeek), kvWeek));
    settings.BorderStyle = enBorderStyle(int16OrDefault(bag.ReadLong(QStringLiteral("BorderStyle"), kvNone), kvNone));
    settings.WeekendColumns = enWeekendColumns(bag.ReadInteger(QStringLiteral("WeekendColumns"), kvOne));
    settings.BackColor = d->ReadCellColour(bag, QStringLiteral("BackColor"), &ctlDay::BackColor, DefaultBackColor);
    settings.ActualDate = bag.ReadDate(QStringLiteral("ActualDate"), kvPlatform::clock().Today());
    settings.DayHeaderColor2 = d->ReadCellColour(bag, QStringLiteral("DayHeaderColor2"), &ctlDay::DayHeaderColor2,
                                                 DefaultDayHeaderColor2);
    settings.DayHeaderColor1 = uint(bag.ReadLong(QStringLiteral("DayHeaderColor1"),
                                                 qint32(DefaultDayHeaderColor1)));
    settings.DayHeaderForeColor = d->ReadCellColour(bag, QStringLiteral("DayHeaderForeColor"),
                                                    &ctlDay::DayHeaderForeColor, 0);
    settings.TodayHeaderColor = d->ReadCellColour(bag, QStringLiteral("TodayHeaderColor"),
                                                  &ctlDay::TodayHeaderColor, DefaultTodayHeaderColor);
    settings.WeeksVisible = bag.ReadBoolean(QStringLiteral("WeeksVisible"), true);
    settings.RecordSource = bag.ReadString(QStringLiteral("RecordSource"), QString());
    settings.AutoRefresh = bag.ReadBoolean(QStringLiteral("AutoRefresh"), true);
    settings.RaiseDatabaseEvents = bag.ReadBoolean(QStringLiteral("RaiseDatabaseEvents"), false);
    settings.PublicHoliday = bag.ReadBoolean(QStringLiteral("PublicHoliday"), false);
    settings.RaiseEditEvent = bag.ReadBoolean(QStringLiteral("RaiseEditEvent"), false);
    settings.Footnote = bag.ReadString(QStringLiteral("Footnote"), QString());
    settings.DbDateFormat = enDbDateFormat(bag.ReadInteger(QStringLiteral("DbDateFormat"), kvAuto));
    d->store->setDbDateFormat(settings.DbDateFormat);
    d->store->setRecordSource(settings.RecordSource);
    d->chrome->PressViewButton();
    ctlToolTip *toolTip = d->interaction->ToolTip();
    settings.ToolTipBackColor1 = uint(bag.ReadLong(QStringLiteral("ToolTipBackColor1"),
                                                   qint32(toolTip->ToolTipBackColor1())));
    settings.ToolTipBackColor2 = uint(bag.ReadLong(QStringLiteral("ToolTipBackColor2"),
                                                   qint32(toolTip->ToolTipBackColor2())));
    toolTip->setToolTipBackColor1(settings.ToolTipBackColor1);
    toolTip->setToolTipBackColor2(settings.ToolTipBackColor2);
    // ParameterizedSql, the newest key, is read last.
    d->store->setParameterizedSql(bag.ReadBoolean(QStringLiteral("ParameterizedSql"), false));
    d->grid->ApplyColours();
    // The picker and the status bar show the date that was read rather than the one
    // Initialize set; neither re-layouts nor notifies.
    d->chrome->SyncDatePicker();
    d->chrome->ShowCalendarWeek();
}

void kvKalivo::WriteProperties(kvPropertyBag &bag) const
{
    const kvKalivoSettings &settings = d->settings;
    const QVariant alwaysStored;
    bag.WriteProperty(QStringLiteral("View"), int(settings.View), alwaysStored);
    bag.WriteProperty(QStringLiteral("BorderStyle"), int(settings.BorderStyle), alwaysStored);
    bag.WriteProperty(QStringLiteral("WeekendColumns"), int(settings.WeekendColumns), alwaysStored);
    bag.WriteProperty(QStringLiteral("BackColor"), qint32(settings.BackColor), alwaysStored);
    bag.WriteProperty(QStringLiteral("ActualDate"), settings.ActualDate.date(), alwaysStored);
    bag.WriteProperty(QStringLiteral("DayHeaderColor2"), qint32(settings.DayHeaderColor2), alwaysStored);
    bag.WriteProperty(QStringLiteral("DayHeaderColor1"), qint32(settings.DayHeaderColor1),
                      qint32(DefaultDayHeaderColor1));
    bag.WriteProperty(QStringLiteral("DayHeaderForeColor"), qint32(settings.DayHeaderForeColor),
                      alwaysStored);
    bag.WriteProperty(QStringLiteral("TodayHeaderColor"), qint32(settings.TodayHeaderColor), alwaysStored);
    bag.WriteProperty(QStringLiteral("ToolTipBackColor1"), qint32(settings.ToolTipBackColor1), qint32(0));
    bag.WriteProperty(QStringLiteral("ToolTipBackColor2"), qint32(settings.ToolTipBackColor2), qint32(0));
    bag.WriteProperty(QStringLiteral("WeeksVisible"), settings.WeeksVisible, true);
    bag.WriteProperty(QStringLiteral("RecordSource"), settings.RecordSource, QString());
    bag.WriteProperty(QStringLiteral("AutoRefresh"), settings.AutoRefresh, alwaysStored);
    bag.WriteProperty(QStringLiteral("RaiseDatabaseEvents"), settings.RaiseDatabaseEvents, false);
    bag.WriteProperty(QStringLiteral("PublicHoliday"), settings.PublicHoliday, false);
    bag.WriteProperty(QStringLiteral("RaiseEditEvent"), settings.RaiseEditEvent, false);
    bag.WriteProperty(QStringLiteral("Footnote"), settings.Footnote, QString());
    bag.WriteProperty(QStringLiteral("DbDateFormat"), int(settings.DbDateFormat), alwaysStored);
    bag.WriteProperty(QStringLiteral("ParameterizedSql"), d->store->ParameterizedSql(), false);
}

// --- Events --------------------------------------------------------------------------------------

void kvKalivo::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const int headerHeight = d->chrome->HeaderHeight();
    const QRect surface(0, headerHeight, width(), d->chrome->StatusBarTop() - headerHeight);
    // Each pixel is filled once: the surface behind the cells, the window colour around it.
    for (const QRect &around : QRegion(event->rect()).subtracted(surface))
        painter.fillRect(around, palette().window());
    painter.fillRect(surface.intersected(event->rect()), kvOleColor::ToQColor(DefaultSurfaceColor));
}

void kvKalivo::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->grid->ArrangeGrid(kvDayGrid::Refill::IfDaysChanged);
    d->grid->MarkActualDay();
}

void kvKalivo::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LocaleChange && d->chrome)
        d->grid->FillGrid();
}

void kvKalivo::keyPressEvent(QKeyEvent *event)
{
    if (!d->interaction->HandleKey(*event))
        QWidget::keyPressEvent(event);
}

void kvKalivo::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (QWidget *tabStop = d->grid->GridTabStop())
        tabStop->setFocus(event->reason());
}

// --- Properties ----------------------------------------------------------------------------------

kvKalivo::kvView kvKalivo::View() const
{
    return d->settings.View;
}

void kvKalivo::setView(kvView view)
{
    d->settings.View = view;
    d->chrome->PressViewButton();
    d->Notify(QStringLiteral("View"));
    d->RelayoutIfAutoRefresh();
}

kvKalivo::enWeekendColumns kvKalivo::WeekendColumns() const
{
    return d->settings.WeekendColumns;
}

void kvKalivo::setWeekendColumns(enWeekendColumns columns)
{
    if (columns == kvOne || columns == kvTwo)
        d->settings.WeekendColumns = columns;
    d->Notify(QString::number(d->settings.WeekendColumns));
    d->RelayoutIfAutoRefresh();
}

bool kvKalivo::AutoRefresh() const
{
    return d->settings.AutoRefresh;
}

void kvKalivo::setAutoRefresh(bool autoRefresh)
{
    d->settings.AutoRefresh = autoRefresh;
    // The value as German text, which hosts compare, rather than the property's name.
    d->Notify(autoRefresh ? QStringLiteral("Wahr") : QStringLiteral("Falsch"));
    d->RelayoutIfAutoRefresh();
}

kvKalivo::enBorderStyle kvKalivo::BorderStyle() const
{
    return d->settings.BorderStyle;
}

void kvKalivo::setBorderStyle(enBorderStyle style)
{
    d->settings.BorderStyle = style;
    d->Notify(QString::number(style));
    if (style != kvNone)
        d->Relayout();
}

uint kvKalivo::BackColor() const
{
    return d->settings.BackColor;
}

void kvKalivo::setBackColor(uint color)
{
    d->SetCellColour(d->settings.BackColor, color, QStringLiteral("BackColor"));
}

uint kvKalivo::TodayHeaderColor() const
{
    return d->settings.TodayHeaderColor;
}

void kvKalivo::setTodayHeaderColor(uint color)
{
    d->SetCellColour(d->settings.TodayHeaderColor, color, QStringLiteral("TodayHeaderColor"));
}

uint kvKalivo::DayHeaderForeColor() const
{
    return d->settings.DayHeaderForeColor;
}

void kvKalivo::setDayHeaderForeColor(uint color)
{
    d->SetCellColour(d->settings.DayHeaderForeColor, color, QStringLiteral("DayHeaderForeColor"));
}

uint kvKalivo::DayHeaderColor2() const
{
    return d->settings.DayHeaderColor2;
}

void kvKalivo::setDayHeaderColor2(uint color)
{
    d->SetCellColour(d->settings.DayHeaderColor2, color, QStringLiteral("DayHeaderColor2"));
}

uint kvKalivo::DayHeaderColor1() const
{
    return d->settings.DayHeaderColor1;
}

void kvKalivo::setDayHeaderColor1(uint color)
{
    d->SetCellColour(d->settings.DayHeaderColor1, color, QStringLiteral("DayHeaderColor1"));
}

QDate kvKalivo::ActualDate() const
{
    return d->settings.ActualDate.date();
}

void kvKalivo::setActualDate(const QDate &date)
{
    const kvDate newDate = kvDate::fromDate(date);
    if (date.isValid() && newDate != d->settings.ActualDate) {
        d->SetActualDay(newDate);
        d->Notify(QStringLiteral("ActualDate"));
    }
    d->RelayoutIfAutoRefresh();
    d->chrome->ShowCalendarWeek();
}

kvConnection *kvKalivo::Connection() const
{
    return d->store->Connection();
}

void kvKalivo::setConnection(kvConnection *connection)
{
    d->SetConnection(connection);
}

QString kvKalivo::RecordSource() const
{
    return d->settings.RecordSource;
}

void kvKalivo::setRecordSource(const QString &recordSource)
{
    d->settings.RecordSource = recordSource;
    d->store->setRecordSource(recordSource);
    d->Notify(QStringLiteral("RecordSource"));
}

QString kvKalivo::Footnote() const
{
    return d->settings.Footnote;
}

void kvKalivo::setFootnote(const QString &footnote)
{
    d->settings.Footnote = footnote;
    d->Notify(QStringLiteral("Footnote"));
}

uint kvKalivo::ToolTipBackColor1() const
{
    return d->settings.ToolTipBackColor1;
}

void kvKalivo::setToolTipBackColor1(uint color)
{
    d->settings.ToolTipBackColor1 = color;
    d->interaction->ToolTip()->setToolTipBackColor1(color);
    d->Notify(QStringLiteral("ToolTipBackColor1"));
}

uint kvKalivo::ToolTipBackColor2() const
{
    return d->settings.ToolTipBackColor2;
}

void kvKalivo::setToolTipBackColor2(uint color)
{
    d->settings.ToolTipBackColor2 = color;
    d->interaction->ToolTip()->setToolTipBackColor2(color);
    d->Notify(QStringLiteral("ToolTipBackColor2"));
}

bool kvKalivo::WeeksVisible() const
{
    return d->settings.WeeksVisible;
}

void kvKalivo::setWeeksVisible(bool visible)
{
    d->settings.WeeksVisible = visible;
    d->Notify(QStringLiteral("WeeksVisible"));
    d->RelayoutIfAutoRefresh();
}

void kvKalivo::setEnabled(bool enabled)
{
    QWidget::setEnabled(enabled);
}

bool kvKalivo::RaiseDatabaseEvents() const
{
    return d->settings.RaiseDatabaseEvents;
}

void kvKalivo::setRaiseDatabaseEvents(bool raise)
{
    d->settings.RaiseDatabaseEvents = raise;
    d->Notify(QStringLiteral("RaiseDatabaseEvents"));
}

bool kvKalivo::PublicHoliday() const
{
    return d->settings.PublicHoliday;
}

void kvKalivo::setPublicHoliday(bool show)
{
    d->settings.PublicHoliday = show;
    d->Notify(QStringLiteral("PublicHoliday"));
    d->RelayoutIfAutoRefresh();
}

bool kvKalivo::RaiseEditEvent() const
{
    return d->settings.RaiseEditEvent;
}

void kvKalivo::setRaiseEditEvent(bool raise)
{
    d->settings.RaiseEditEvent = raise;
    d->Notify(QStringLiteral("RaiseEditEvent"));
}

bool kvKalivo::RaiseErrorEvent() const
{
    return kvErrorReporting::RaiseErrorEvent();
}

void kvKalivo::setRaiseErrorEvent(bool raise)
{
    kvErrorReporting::setRaiseErrorEvent(raise);
}

QString kvKalivo::IconPath() const
{
    return d->settings.IconPath;
}

void kvKalivo::setIconPath(const QString &path)
{
    d->settings.IconPath = path;
    frmPicSelector::ThreadInstance().loadPics(path);
}

kvKalivo::enDbDateFormat kvKalivo::DbDateFormat() const
{
    return d->settings.DbDateFormat;
}

void kvKalivo::setDbDateFormat(enDbDateFormat format)
{
    d->settings.DbDateFormat = format;
    d->store->setDbDateFormat(format);
}

bool kvKalivo::ParameterizedSql() const
{
    return d->store->ParameterizedSql();
}

void kvKalivo::setParameterizedSql(bool parameterized)
{
    d->store->setParameterizedSql(parameterized);
    d->Notify(QStringLiteral("ParameterizedSql"));
}

bool kvKalivo::UserMode() const
{
    return d->settings.UserMode;
}

void kvKalivo::setUserMode(bool userMode)
{
    if (d->settings.UserMode == userMode)
        return;
    d->settings.UserMode = userMode;
    // A container switching between design and run mode sees the grid change at once.
    if (isVisible())
        d->Relayout();
}

// --- Commands ------------------------------------------------------------------------------------

void kvKalivo::Refresh()
{
    d->Relayout();
}

void kvKalivo::EditAppointment(qint16 action)
{
    d->editFlow->EditAppointment(kvEditFlow::Action(action));
}

void kvKalivo::PrintCalendar()
{
    PrintCalendar(d->settings.ActualDate.date(), d->settings.View);
}

void kvKalivo::PrintCalendar(const QDate &printDate, kvView printView)
{
    try {
        kvCalendarPrinter::Job job;
        job.PrintDate = kvDate::fromDate(printDate);
        job.PrintView = printView;
        job.Footnote = d->settings.Footnote;
        job.PublicHoliday = d->settings.PublicHoliday;
        job.Locale = locale();
        job.LoadDay = kvCalendarPrinter::StoreLoader(*d->store);
        kvCalendarPrinter(job).Print(this);
    } catch (...) {
        d->ReportError(300, kvErrorReporting::DescribeCurrentException());
    }
}
