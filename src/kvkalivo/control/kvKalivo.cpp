#include "kvKalivo.h"

#include "ctlDay.h"
#include "ctlKW.h"
#include "ctlToolTip.h"
#include "frmEdit.h"
#include "frmPicSelector.h"
#include "kvCalendarPrinter.h"
#include "kvAppointmentStore.h"
#include "kvCalendarWeek.h"
#include "kvClock.h"
#include "kvError.h"
#include "kvErrorReporting.h"
#include "kvFaultInjection.h"
#include "kvFormat.h"
#include "kvControlArray.h"
#include "kvDayCellFiller.h"
#include "kvInt16.h"
#include "kvModalRunner.h"
#include "kvModalWindows.h"
#include "kvMessageBox.h"
#include "PublicHolidays.h"
#include "kvOleColor.h"
#include "kvPlatform.h"
#include "kvPropertyBag.h"
#include "kvRuntimeError.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCursor>
#include <QDateEdit>
#include <QFontMetrics>
#include <QIcon>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPaintEvent>
#include <QScopeGuard>
#include <QPainter>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace {

constexpr int DatePickerWidth = 120;
constexpr int ChromeSpacing = 4;
constexpr int WeekdayCaptionHeight = 17;
// ADO's adErrInvalidConnection: reported for a connection failure whose number needs 32 bits.
constexpr int InvalidConnectionCode = 3709;

// A Boolean as German text ("Wahr", "Falsch"): the value that PropertyChanged passes for
// WeekendColumns, BorderStyle and AutoRefresh, which hosts compare.
QString booleanText(bool value)
{
    return value ? QStringLiteral("Wahr") : QStringLiteral("Falsch");
}

bool fitsInt16(qint32 value)
{
    return value >= std::numeric_limits<qint16>::min() && value <= std::numeric_limits<qint16>::max();
}

} // namespace

kvKalivo::kvKalivo(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("kvKalivo"));
    setLocale(kvDefaultLocale());
    // Not a tab stop of its own: Tab reaches the toolbar, the date picker and the grid.
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    Initialize();
    InitProperties();
}

kvKalivo::~kvKalivo()
{
    // Terminate: hide the tooltip and unload the dynamically created day cells.
    disconnect(qApp, nullptr, this, nullptr); // no focus notifications while being destroyed
    HideToolTip();
    UnloadDayCells();
}

// --- Lifecycle -----------------------------------------------------------------------------------

void kvKalivo::Initialize()
{
    kvError::ReplaceThreadInstance();
    CreateToolbar();
    frmPicSelector::ThreadInstance();
    CreateMonthCaption();
    CreateDatePicker();
    CreateStatusBar();
    CreateGrid();
    CreateContextMenu();
    m_toolTip = new ctlToolTip(this);
    m_toolTip->hide();
    connect(m_toolTip, &ctlToolTip::Click, this, &kvKalivo::HideToolTip);
    CreateStore();
    setView(kvWeek);
    setActualDate(kvPlatform::clock().Today().date());
    CreateTimers();
    connect(qApp, &QApplication::focusChanged, this, &kvKalivo::OnFocusChanged);
    // A modal window takes the focus, as a click elsewhere does; the row must let go of the mouse first.
    connect(&kvModalWindows::ThreadInstance(), &kvModalWindows::opening, this, &kvKalivo::HideToolTip);
}

void kvKalivo::CreateToolbar()
{
    m_toolbarMain = new QToolBar(this);
    m_toolbarMain->setObjectName(QStringLiteral("ToolbarMain"));
    m_toolbarMain->setIconSize(QSize(16, 16));
    m_toolbarMain->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_toolbarMain->setMovable(false);
    m_toolbarMain->setFloatable(false);

    m_viewButtons = new QActionGroup(this);
    m_viewButtons->setExclusive(true);

    struct Button { const char16_t *key; const char16_t *toolTip; const char16_t *image; };
    static constexpr Button buttons[] = {
        {u"Week", u"Wochenansicht", u"week"},
        {u"Month", u"Monatsansicht", u"month"},
        {u"Back", u"Zurück", u"back"},
        {u"Forward", u"Vor", u"forward"},
        {u"Print", u"Drucken", u"print"},
        {u"Previous", u"Vorheriger Termin", u"previous"},
        {u"Next", u"Nächster Termin", u"next"},
        {u"Today", u"Heute", u"today"},
        {u"New", u"Neuer Termin", u"new"},
    };
    int position = 1;
    for (const Button &button : buttons) {
        QAction *action = AddToolbarButton(position++, QString::fromUtf16(button.key),
                                           QString::fromUtf16(button.toolTip),
                                           QString::fromUtf16(button.image));
        m_toolbarMain->widgetForAction(action)->setFocusPolicy(Qt::TabFocus); // Tab: toolbar, picker, grid
    }
}

QAction *kvKalivo::AddToolbarButton(int position, const QString &key, const QString &toolTip,
                                    const QString &imageName)
{
    QIcon icon;
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/16/%1.svg").arg(imageName), QSize(16, 16));
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/22/%1.svg").arg(imageName), QSize(22, 22));
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/22/%1.svg").arg(imageName), QSize(32, 32));

    QAction *action = m_toolbarMain->addAction(icon, toolTip);
    connect(action, &QAction::triggered, this, [this, key] { OnToolbarButton(key); });
    action->setObjectName(key);
    action->setToolTip(toolTip);
    action->setProperty("Key", key);
    action->setProperty("Image", position + 2);
    if (key == QLatin1String("Week") || key == QLatin1String("Month")) {
        action->setCheckable(true);
        m_viewButtons->addAction(action);
    }
    return action;
}

void kvKalivo::CreateMonthCaption()
{
    m_monthCaption = new QLabel(this);
    m_monthCaption->setObjectName(QStringLiteral("lblMonat"));
    m_monthCaption->setAlignment(Qt::AlignCenter);
    QFont captionFont = m_monthCaption->font();
    captionFont.setBold(true);
    captionFont.setPointSizeF(captionFont.pointSizeF() * 1.2);
    m_monthCaption->setFont(captionFont);
}

void kvKalivo::CreateDatePicker()
{
    m_datePicker = new QDateEdit(this);
    m_datePicker->setObjectName(QStringLiteral("DTPicker1"));
    m_datePicker->setCalendarPopup(true);
    m_datePicker->setFocusPolicy(Qt::StrongFocus);
    m_datePicker->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    m_datePicker->setDateRange(QDate(1601, 1, 1), QDate(9999, 12, 31));
    connect(m_datePicker, &QDateEdit::dateChanged, this, [this](QDate date) {
        ApplyRangeCheck(kvDate::fromDate(date));
    });
}

void kvKalivo::CreateStatusBar()
{
    m_statusBar = new QStatusBar(this);
    m_statusBar->setObjectName(QStringLiteral("StatusBar"));
    m_statusBar->setSizeGripEnabled(false);
    m_statusWeekPanel = new QLabel(m_statusBar);
    m_statusWeekPanel->setObjectName(QStringLiteral("Panel1"));
    m_statusWeekPanel->setContentsMargins(4, 0, 4, 0);
    m_statusBar->addWidget(m_statusWeekPanel);
}

void kvKalivo::CreateGrid()
{
    m_days = std::make_unique<kvControlArray<ctlDay>>(QStringLiteral("ctlDay"), [this](int index) {
        auto *cell = new ctlDay(this);
        cell->setVisible(false); // element 0 is the hidden template; the others are placed first
        if (index > 0)
            ConnectDayCell(cell, qint16(index));
        return cell;
    });
    m_weekdayCaptions = std::make_unique<kvControlArray<QLabel>>(QStringLiteral("lblWeekDay"), [this](int) {
        auto *caption = new QLabel(this);
        caption->setAlignment(Qt::AlignCenter);
        caption->setAutoFillBackground(true);
        caption->setVisible(false);
        return caption;
    });
    m_corner = new QFrame(this);
    m_corner->setObjectName(QStringLiteral("shpTopLeftEdge"));
    m_corner->setAutoFillBackground(true);
    m_weekColumn = new ctlKW(this);
    m_weekColumn->setAutoFillBackground(true);
}

void kvKalivo::CreateContextMenu()
{
    m_contextMenu = new QMenu(QStringLiteral("Kontext"), this);
    m_contextMenu->setObjectName(QStringLiteral("Kontextmenü"));
    const QStringList captions{QStringLiteral("Neu..."), QStringLiteral("Bearbeiten..."),
                               QStringLiteral("Löschen..."), QStringLiteral("Vor"),
                               QStringLiteral("Zurück"), QStringLiteral("-"),
                               QStringLiteral("Wochenansicht"), QStringLiteral("-"),
                               QStringLiteral("Drucken")};
    for (int index = 0; index < captions.size(); ++index) {
        // A "-" caption is a separator line; styles would draw its text as a section title.
        const bool separator = captions.at(index) == QLatin1String("-");
        QAction *item = m_contextMenu->addAction(separator ? QString() : captions.at(index));
        item->setObjectName(QStringLiteral("KontextDay%1").arg(index));
        item->setProperty("Index", index);
        item->setSeparator(separator);
        connect(item, &QAction::triggered, this, [this, index] { OnContextMenuItem(index); });
        m_contextItems.append(item);
    }
}

void kvKalivo::CreateStore()
{
    m_store = new kvAppointmentStore(this);
    m_store->setObjectName(QStringLiteral("kvAppointmentStore"));
    m_store->SetReporter([this](int code, const QString &description) { ReportError(code, description); });
    connect(m_store, &kvAppointmentStore::ConnectionStateRead, this, &kvKalivo::EnableDatabaseButtons);
}

void kvKalivo::CreateTimers()
{
    m_timerTooltipOff = new QTimer(this);
    m_timerTooltipOff->setObjectName(QStringLiteral("TimerTooltipOFF"));
    m_timerTooltipOff->setInterval(800);
    m_timerTooltip = new QTimer(this);
    m_timerTooltip->setObjectName(QStringLiteral("TimerTooltip"));
    m_timerTooltip->setInterval(1000);
    connect(m_timerTooltip, &QTimer::timeout, this, &kvKalivo::OnTimerTooltip);
    connect(m_timerTooltipOff, &QTimer::timeout, this, &kvKalivo::OnTimerTooltipOff);
}

void kvKalivo::InitProperties()
{
    m_borderStyle = kvNone;
    m_weekendColumns = kvOne;
    m_dayHeaderColor1 = DefaultDayHeaderColor1;
    m_dayHeaderColor2 = DefaultDayHeaderColor2;
    m_backColor = DefaultBackColor;
    m_view = kvWeek;
    m_todayHeaderColor = DefaultTodayHeaderColor;
    m_actualDate = kvPlatform::clock().Today();
    m_autoRefresh = true;
    // A fresh control shows its calendar weeks, as the persisted default of WeeksVisible says.
    m_weeksVisible = true;
    m_toolTipBackColor1 = m_toolTip->ToolTipBackColor1();
    m_toolTipBackColor2 = m_toolTip->ToolTipBackColor2();
    m_store->setParameterizedSql(false);
    PressViewButton();
    SyncDatePicker();
    ShowCalendarWeek();
    update();
}

void kvKalivo::ReadProperties(const kvPropertyBag &bag)
{
    const qint32 view = bag.ReadLong(QStringLiteral("View"), kvWeek);
    m_view = kvView(fitsInt16(view) ? view : kvWeek);
    const qint32 borderStyle = bag.ReadLong(QStringLiteral("BorderStyle"), kvNone);
    m_borderStyle = enBorderStyle(fitsInt16(borderStyle) ? borderStyle : kvNone);
    m_weekendColumns = enWeekendColumns(bag.ReadInteger(QStringLiteral("WeekendColumns"), kvOne));
    m_backColor = ReadCellColour(bag, QStringLiteral("BackColor"), &ctlDay::BackColor, DefaultBackColor);
    m_actualDate = bag.ReadDate(QStringLiteral("ActualDate"), kvPlatform::clock().Today());
    m_dayHeaderColor2 = ReadCellColour(bag, QStringLiteral("DayHeaderColor2"), &ctlDay::DayHeaderColor2,
                                       DefaultDayHeaderColor2);
    m_dayHeaderColor1 = uint(bag.ReadLong(QStringLiteral("DayHeaderColor1"),
                                          qint32(DefaultDayHeaderColor1)));
    m_dayHeaderForeColor = ReadCellColour(bag, QStringLiteral("DayHeaderForeColor"),
                                          &ctlDay::DayHeaderForeColor, 0);
    m_todayHeaderColor = ReadCellColour(bag, QStringLiteral("TodayHeaderColor"),
                                        &ctlDay::TodayHeaderColor, DefaultTodayHeaderColor);
    m_weeksVisible = bag.ReadBoolean(QStringLiteral("WeeksVisible"), true);
    m_recordSource = bag.ReadString(QStringLiteral("RecordSource"), QString());
    m_autoRefresh = bag.ReadBoolean(QStringLiteral("AutoRefresh"), true);
    m_raiseDatabaseEvents = bag.ReadBoolean(QStringLiteral("RaiseDatabaseEvents"), false);
    m_publicHoliday = bag.ReadBoolean(QStringLiteral("PublicHoliday"), false);
    m_raiseEditEvent = bag.ReadBoolean(QStringLiteral("RaiseEditEvent"), false);
    m_footnote = bag.ReadString(QStringLiteral("Footnote"), QString());
    m_dbDateFormat = enDbDateFormat(bag.ReadInteger(QStringLiteral("DbDateFormat"), kvAuto));
    m_store->setDbDateFormat(m_dbDateFormat);
    m_store->setRecordSource(m_recordSource);
    PressViewButton();
    m_toolTipBackColor1 = uint(bag.ReadLong(QStringLiteral("ToolTipBackColor1"),
                                            qint32(m_toolTip->ToolTipBackColor1())));
    m_toolTipBackColor2 = uint(bag.ReadLong(QStringLiteral("ToolTipBackColor2"),
                                            qint32(m_toolTip->ToolTipBackColor2())));
    m_toolTip->setToolTipBackColor1(m_toolTipBackColor1);
    m_toolTip->setToolTipBackColor2(m_toolTipBackColor2);
    // ParameterizedSql, the newest key, is read last.
    m_store->setParameterizedSql(bag.ReadBoolean(QStringLiteral("ParameterizedSql"), false));
    ApplyColours();
    // The picker and the status bar show the date that was read rather than the one
    // Initialize set; neither re-layouts nor notifies.
    SyncDatePicker();
    ShowCalendarWeek();
}

/*!
    A colour key falls back on what the first day cell shows; before the first arrangement no
    cell exists, and a host's fresh control gets the documented default instead.
*/
uint kvKalivo::ReadCellColour(const kvPropertyBag &bag, const QString &key,
                              uint (ctlDay::*cellColour)() const, uint defaultColour) const
{
    const uint shown = DayCellCount() > 0 ? (DayCell(1)->*cellColour)() : defaultColour;
    return uint(bag.ReadLong(key, qint32(shown)));
}

void kvKalivo::WriteProperties(kvPropertyBag &bag) const
{
    const QVariant alwaysStored;
    bag.WriteProperty(QStringLiteral("View"), int(m_view), alwaysStored);
    bag.WriteProperty(QStringLiteral("BorderStyle"), int(m_borderStyle), alwaysStored);
    bag.WriteProperty(QStringLiteral("WeekendColumns"), int(m_weekendColumns), alwaysStored);
    bag.WriteProperty(QStringLiteral("BackColor"), qint32(m_backColor), alwaysStored);
    bag.WriteProperty(QStringLiteral("ActualDate"), m_actualDate.date(), alwaysStored);
    bag.WriteProperty(QStringLiteral("DayHeaderColor2"), qint32(m_dayHeaderColor2), alwaysStored);
    bag.WriteProperty(QStringLiteral("DayHeaderColor1"), qint32(m_dayHeaderColor1),
                      qint32(DefaultDayHeaderColor1));
    bag.WriteProperty(QStringLiteral("DayHeaderForeColor"), qint32(m_dayHeaderForeColor),
                      alwaysStored);
    bag.WriteProperty(QStringLiteral("TodayHeaderColor"), qint32(m_todayHeaderColor), alwaysStored);
    bag.WriteProperty(QStringLiteral("ToolTipBackColor1"), qint32(m_toolTipBackColor1), qint32(0));
    bag.WriteProperty(QStringLiteral("ToolTipBackColor2"), qint32(m_toolTipBackColor2), qint32(0));
    bag.WriteProperty(QStringLiteral("WeeksVisible"), m_weeksVisible, true);
    bag.WriteProperty(QStringLiteral("RecordSource"), m_recordSource, QString());
    bag.WriteProperty(QStringLiteral("AutoRefresh"), m_autoRefresh, alwaysStored);
    bag.WriteProperty(QStringLiteral("RaiseDatabaseEvents"), m_raiseDatabaseEvents, false);
    bag.WriteProperty(QStringLiteral("PublicHoliday"), m_publicHoliday, false);
    bag.WriteProperty(QStringLiteral("RaiseEditEvent"), m_raiseEditEvent, false);
    bag.WriteProperty(QStringLiteral("Footnote"), m_footnote, QString());
    bag.WriteProperty(QStringLiteral("DbDateFormat"), int(m_dbDateFormat), alwaysStored);
    bag.WriteProperty(QStringLiteral("ParameterizedSql"), m_store->ParameterizedSql(), false);
}

void kvKalivo::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().window());
    const QRect surface(0, HeaderHeight(), width(), StatusBarTop() - HeaderHeight());
    painter.fillRect(surface.intersected(event->rect()), kvOleColor::ToQColor(DefaultSurfaceColor));
}

void kvKalivo::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Relayout();
}

void kvKalivo::OnFocusChanged(QWidget *old, QWidget *now)
{
    // LostFocus of the whole control: focus moved from inside it to somewhere outside.
    const bool hadFocus = old && (old == this || isAncestorOf(old));
    const bool hasFocus = now && (now == this || isAncestorOf(now));
    if (hadFocus && !hasFocus)
        HideToolTip();
    // A day cell lost or received the focus.
    const int oldDayIndex = DayIndexOf(old);
    const int dayIndex = DayIndexOf(now);
    if (oldDayIndex > 0 && oldDayIndex != dayIndex)
        HideToolTip();
    if (dayIndex > 0 && oldDayIndex != dayIndex)
        OnDayFocus(qint16(dayIndex));
}

void kvKalivo::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LocaleChange && m_monthCaption)
        FillGrid();
}

// --- Property setters ----------------------------------------------------------------------------

void kvKalivo::setView(kvView view)
{
    m_view = view;
    PressViewButton();
    Notify(QStringLiteral("View"));
    if (m_autoRefresh)
        Relayout();
}

void kvKalivo::setWeekendColumns(enWeekendColumns columns)
{
    if (columns == kvOne || columns == kvTwo)
        m_weekendColumns = columns;
    Notify(QString::number(m_weekendColumns));
    if (m_autoRefresh)
        Relayout();
}

void kvKalivo::setAutoRefresh(bool autoRefresh)
{
    m_autoRefresh = autoRefresh;
    Notify(booleanText(m_autoRefresh));
    if (autoRefresh)
        Relayout();
}

void kvKalivo::setBorderStyle(enBorderStyle style)
{
    m_borderStyle = style;
    Notify(QString::number(m_borderStyle));
    if (style != kvNone)
        Relayout();
}

void kvKalivo::setBackColor(uint color)
{
    SetCellColour(m_backColor, color, QStringLiteral("BackColor"));
}

void kvKalivo::setTodayHeaderColor(uint color)
{
    SetCellColour(m_todayHeaderColor, color, QStringLiteral("TodayHeaderColor"));
}

void kvKalivo::setDayHeaderForeColor(uint color)
{
    SetCellColour(m_dayHeaderForeColor, color, QStringLiteral("DayHeaderForeColor"));
}

void kvKalivo::setDayHeaderColor2(uint color)
{
    SetCellColour(m_dayHeaderColor2, color, QStringLiteral("DayHeaderColor2"));
}

void kvKalivo::setDayHeaderColor1(uint color)
{
    SetCellColour(m_dayHeaderColor1, color, QStringLiteral("DayHeaderColor1"));
}

void kvKalivo::SetCellColour(uint &field, uint color, const QString &propertyName)
{
    field = color;
    // Deliberately, black (0) shows only from the next colour pass: a re-layout, or another colour.
    if (color != 0)
        ApplyColours();
    Notify(propertyName);
}

QDate kvKalivo::ActualDate() const
{
    return m_actualDate.date();
}

void kvKalivo::setActualDate(const QDate &date)
{
    const kvDate newDate = kvDate::fromDate(date);
    if (date.isValid() && newDate != m_actualDate) {
        m_actualDate = newDate;
        SyncDatePicker();
        Notify(QStringLiteral("ActualDate"));
    }
    if (m_autoRefresh)
        Relayout();
    ShowCalendarWeek();
}

kvConnection *kvKalivo::Connection() const
{
    return m_store->Connection();
}

void kvKalivo::setConnection(kvConnection *connection)
{
    try {
        m_store->SetConnection(connection);
    } catch (const kvRuntimeError &error) {
        const bool fits = error.number() >= std::numeric_limits<qint16>::min()
            && error.number() <= std::numeric_limits<qint16>::max();
        ReportError(fits ? error.number() : InvalidConnectionCode, error.description());
    } catch (...) {
        ReportError(InvalidConnectionCode, kvErrorReporting::DescribeCurrentException());
    }
}

void kvKalivo::EnableDatabaseButtons(int connectionState)
{
    for (const char16_t *key : {u"Next", u"Previous", u"New"}) {
        if (QAction *button = m_toolbarMain->findChild<QAction *>(QString::fromUtf16(key)))
            button->setEnabled(connectionState != kvConnection::adStateClosed);
    }
}

bool kvKalivo::ParameterizedSql() const
{
    return m_store->ParameterizedSql();
}

void kvKalivo::setParameterizedSql(bool parameterized)
{
    m_store->setParameterizedSql(parameterized);
    Notify(QStringLiteral("ParameterizedSql"));
}

void kvKalivo::setRecordSource(const QString &recordSource)
{
    m_recordSource = recordSource;
    m_store->setRecordSource(recordSource);
    Notify(QStringLiteral("RecordSource"));
}

void kvKalivo::setFootnote(const QString &footnote)
{
    m_footnote = footnote;
    Notify(QStringLiteral("Footnote"));
}

void kvKalivo::setToolTipBackColor1(uint color)
{
    m_toolTipBackColor1 = color;
    m_toolTip->setToolTipBackColor1(color);
    Notify(QStringLiteral("ToolTipBackColor1"));
}

void kvKalivo::setToolTipBackColor2(uint color)
{
    m_toolTipBackColor2 = color;
    m_toolTip->setToolTipBackColor2(color);
    Notify(QStringLiteral("ToolTipBackColor2"));
}

void kvKalivo::setWeeksVisible(bool visible)
{
    m_weeksVisible = visible;
    Notify(QStringLiteral("WeeksVisible"));
    if (m_autoRefresh)
        Relayout();
}

void kvKalivo::setEnabled(bool enabled)
{
    QWidget::setEnabled(enabled);
}

void kvKalivo::setRaiseDatabaseEvents(bool raise)
{
    m_raiseDatabaseEvents = raise;
    Notify(QStringLiteral("RaiseDatabaseEvents"));
}

void kvKalivo::setPublicHoliday(bool show)
{
    m_publicHoliday = show;
    Notify(QStringLiteral("PublicHoliday"));
    if (m_autoRefresh)
        Relayout();
}

void kvKalivo::setRaiseEditEvent(bool raise)
{
    m_raiseEditEvent = raise;
    Notify(QStringLiteral("RaiseEditEvent"));
}

bool kvKalivo::RaiseErrorEvent() const
{
    return kvErrorReporting::RaiseErrorEvent();
}

void kvKalivo::setRaiseErrorEvent(bool raise)
{
    kvErrorReporting::setRaiseErrorEvent(raise);
}

void kvKalivo::setIconPath(const QString &path)
{
    m_iconPath = path;
    frmPicSelector::ThreadInstance().loadPics(path);
}

void kvKalivo::setDbDateFormat(enDbDateFormat format)
{
    m_dbDateFormat = format;
    m_store->setDbDateFormat(format);
}

void kvKalivo::setUserMode(bool userMode)
{
    if (m_userMode == userMode)
        return;
    m_userMode = userMode;
    // A container switching between design and run mode sees the grid change at once.
    if (isVisible())
        Relayout();
}

void kvKalivo::Refresh()
{
    Relayout();
}

void kvKalivo::Notify(const QString &propertyName)
{
    Q_EMIT PropertyChanged(propertyName);
}

void kvKalivo::PressViewButton()
{
    const QString key = m_view == kvWeek ? QStringLiteral("Week") : QStringLiteral("Month");
    const QList<QAction *> viewActions = m_viewButtons->actions();
    for (QAction *action : viewActions) {
        if (action->objectName() == key)
            action->setChecked(true);
    }
}

void kvKalivo::SyncDatePicker()
{
    const QSignalBlocker blocker(m_datePicker);
    m_datePicker->setDate(m_actualDate.date());
}

void kvKalivo::ShowCalendarWeek()
{
    m_statusWeekPanel->setText(QString::number(GetCalendarWeek(m_actualDate))
                               + QStringLiteral(". KW"));
}

void kvKalivo::HideToolTip()
{
    // Mode off, both timers stopped, tooltip hidden; with the tooltip mode the row's capture ends.
    m_tooltipMode = false;
    if (m_timerTooltip)
        m_timerTooltip->stop();
    if (m_timerTooltipOff)
        m_timerTooltipOff->stop();
    if (m_toolTip)
        m_toolTip->hide();
    if (m_days)
        ReleaseRowCapture();
}

void kvKalivo::ReportError(int code, const QString &description)
{
    kvErrorReporting::ReportFromControl(code, description,
                                        [this](kvError &error) { Q_EMIT Error(error); });
}

// --- Grid ----------------------------------------------------------------------------------------

void kvKalivo::Relayout()
{
    ArrangeGrid();
    MarkActualDay();
}

void kvKalivo::ArrangeGrid()
{
    qint16 step = 0;
    try {
        ArrangeGridStages(step);
    } catch (...) {
        ReportError(kvErrorReporting::StepCode(900, step),
                    kvErrorReporting::DescribeCurrentException());
    }
    Q_EMIT gridArranged();
}

void kvKalivo::ArrangeGridStages(qint16 &step)
{
    auto stage = [&step](qint16 number) {
        step = number;
        kvFaultInjection::Visit("ArrangeGrid", number);
    };
    stage(0);
    HideToolTip();
    stage(1);
    if (DayIndexOf(QApplication::focusWidget()) > 0) {
        m_gridTabStop = nullptr;
        setFocus(Qt::OtherFocusReason); // the control keeps the grid's focus for the new cells
    }
    UnloadDayCells();
    kvGridGeometry::Input input;
    input.scaleWidth = width();
    input.captionTop = HeaderHeight() + 1;
    input.statusBarTop = StatusBarTop();
    input.borderStyle = m_borderStyle;
    input.weeksVisible = m_weeksVisible;
    input.weekendColumns = m_weekendColumns;
    input.view = m_view;
    m_geometry = kvGridGeometry(input, &step); // stages 2, 3, 4 and 6
    stage(5);
    PlaceWeekdayCaptions();
    stage(6);
    PlaceDayCells();
    stage(7);
    PlaceWeekColumn();
    stage(8);
    PlaceChrome();
    stage(9);
    FillGrid();
    stage(10);
    ApplyColours();
}

void kvKalivo::UnloadDayCells()
{
    ReleaseRowCapture();
    m_gridTabStop = nullptr;
    for (int index = m_days->UBound(); index >= 1; --index) {
        if (m_days->isLoaded(index))
            m_days->Unload(index);
    }
}

void kvKalivo::PlaceWeekdayCaptions()
{
    const QLocale calendarLocale = locale();
    const QList<QRect> &captions = m_geometry.captions();
    for (int column = 1; column <= 7; ++column) {
        if (!m_weekdayCaptions->isLoaded(column))
            m_weekdayCaptions->Load(column);
        QLabel *caption = (*m_weekdayCaptions)(column);
        if (column > captions.size()) {
            caption->hide();
            continue;
        }
        caption->setGeometry(captions.at(column - 1));
        QString text = WeekdayCaption(column, captions.size(), calendarLocale);
        // Where a full name would be cut off, the abbreviated one is what a reader expects.
        if (caption->fontMetrics().horizontalAdvance(text) > caption->width() - 2 && column <= 7
            && !(captions.size() == 6 && column == 6))
            text = WeekdayName(column, true, calendarLocale);
        caption->setText(text);
        caption->show();
    }
}

QString kvKalivo::WeekdayCaption(int column, int columns, const QLocale &calendarLocale)
{
    if (columns == 6 && column == 6)
        return WeekdayName(6, true, calendarLocale) + QLatin1Char('-') + WeekdayName(7, true, calendarLocale);
    return WeekdayName(column, false, calendarLocale);
}

void kvKalivo::PlaceDayCells()
{
    const QList<QRect> &cells = m_geometry.cells();
    for (int index = 1; index <= cells.size(); ++index) {
        ctlDay *cell = m_days->isLoaded(index) ? (*m_days)(index) : m_days->Load(index);
        cell->setBorderVisible(m_borderStyle != kvNone);
        cell->setGeometry(cells.at(index - 1));
        cell->show();
    }
}

void kvKalivo::PlaceWeekColumn()
{
    m_corner->setGeometry(m_geometry.corner());
    m_weekColumn->setGeometry(m_geometry.weekColumn());
    m_weekColumn->setSectionheight(m_geometry.cellHeight());
    m_corner->setVisible(m_weeksVisible);
    m_weekColumn->setVisible(m_weeksVisible);
}

int kvKalivo::ToolbarRowHeight() const
{
    return m_toolbarMain->sizeHint().height();
}

int kvKalivo::StatusBarTop() const
{
    return height() - m_statusBar->sizeHint().height();
}


void kvKalivo::PlaceChrome()
{
    const int toolbarHeight = ToolbarRowHeight();
    m_toolbarMain->setGeometry(0, 0, m_toolbarMain->sizeHint().width(), toolbarHeight);

    const int pickerHeight = std::min(m_datePicker->sizeHint().height(), toolbarHeight);
    const int pickerLeft = std::max(m_toolbarMain->width() + ChromeSpacing,
                                    width() - DatePickerWidth - ChromeSpacing);
    m_datePicker->setGeometry(pickerLeft, (toolbarHeight - pickerHeight) / 2, DatePickerWidth,
                              pickerHeight);

    if (MonthCaptionFitsBesideToolbar()) {
        const int captionLeft = m_toolbarMain->width() + ChromeSpacing;
        m_monthCaption->setGeometry(captionLeft, 0, pickerLeft - ChromeSpacing - captionLeft,
                                    toolbarHeight);
    } else {
        m_monthCaption->setGeometry(0, toolbarHeight, width(), HeaderHeight() - toolbarHeight);
    }

    m_statusBar->setGeometry(0, StatusBarTop(), width(), height() - StatusBarTop());
    update();
}

int kvKalivo::WidestMonthCaption() const
{
    const QFontMetrics metrics(m_monthCaption->font());
    int widest = 0;
    for (int month = 1; month <= 12; ++month) {
        const QString caption = locale().monthName(month, QLocale::LongFormat) + QStringLiteral(" 2026");
        widest = std::max(widest, metrics.horizontalAdvance(caption));
    }
    return widest + 2 * ChromeSpacing;
}

bool kvKalivo::MonthCaptionFitsBesideToolbar() const
{
    const int between = width() - DatePickerWidth - 2 * ChromeSpacing - m_toolbarMain->sizeHint().width();
    return between >= WidestMonthCaption();
}

int kvKalivo::HeaderHeight() const
{
    // On a narrow control the month caption gets a row of its own below the toolbar.
    if (MonthCaptionFitsBesideToolbar())
        return ToolbarRowHeight();
    return ToolbarRowHeight() + QFontMetrics(m_monthCaption->font()).height() + ChromeSpacing;
}

kvDate kvKalivo::FirstGridDate() const
{
    if (m_view == kvWeek)
        return m_actualDate.addDays(-(m_actualDate.weekdayFromMonday() - 1));
    // ActualDate formatted "mm/yyyy" and converted back: the 1st of its month.
    const kvDate firstOfMonth = CDate(Format(m_actualDate, QStringLiteral("mm/yyyy"))).value_or(m_actualDate);
    return firstOfMonth.addDays(-(firstOfMonth.weekdayFromMonday() - 1));
}

kvDate kvKalivo::FirstCellDate() const
{
    return DayCellCount() > 0 ? (*m_days)(1)->datDay() : FirstGridDate();
}

kvDate kvKalivo::LastCellDate() const
{
    const int count = DayCellCount();
    return count > 0 ? (*m_days)(count)->datDay() : FirstGridDate().addDays(m_view == kvWeek ? 6 : 41);
}

int kvKalivo::DayCellCount() const
{
    return m_days->Count() - 1;
}

ctlDay *kvKalivo::DayCell(int index) const
{
    return (*m_days)(index);
}

void kvKalivo::FillGrid()
{
    qint16 step = 0;
    QString pendingCode;
    try {
        FillGridStages(step, pendingCode);
    } catch (...) {
        ReportError(kvErrorReporting::StepCode(1100, step), kvErrorReporting::DescribeCurrentException());
        return;
    }
    if (!pendingCode.isEmpty())
        kvErrorReporting::ReportPendingCode(pendingCode, [this](kvError &error) { Q_EMIT Error(error); });
}

void kvKalivo::FillGridStages(qint16 &step, QString &pendingCode)
{
    auto stage = [&step](qint16 number) {
        step = number;
        kvFaultInjection::Visit("FillGrid", number);
    };
    stage(0);
    const int cellCount = DayCellCount();
    stage(1);
    const kvDate first = FirstGridDate();
    stage(2);
    if (kvConnection *connection = m_store->Connection();
        connection && connection->State() != kvConnection::adStateClosed) {
        stage(3);
        frmEdit &editor = frmEdit::ThreadInstance();
        editor.setIconControlsEnabled(m_store->HasImageIdColumn());
        editor.setDocumentControlsEnabled(m_store->HasDocumentColumn());
    }
    const bool runMode = m_userMode;
    m_weekColumn->Clear();
    m_weekColumn->setSectionheight(m_geometry.cellHeight());
    stage(5);
    if (runMode)
        m_store->BeginDayLoads(first);
    const auto endDayLoads = qScopeGuard([this] { m_store->EndDayLoads(); });
    for (int index = 1; index <= cellCount; ++index)
        FillDayCell(index, first.addDays(index - 1), runMode, pendingCode);
    m_weekColumn->Paint();
    stage(6);
    ShowMonthCaption(first, first.addDays(std::max(0, cellCount - 1)), runMode);
    stage(7);
}

void kvKalivo::FillDayCell(int index, const kvDate &day, bool runMode, QString &pendingCode)
{
    if (!runMode)
        return; // design mode: empty cells, no dates, no appointments
    ctlDay *cell = (*m_days)(index);
    const bool otherMonth = day.month() != m_actualDate.month();
    cell->Init(day, QString(), QString(), otherMonth ? m_dayHeaderColor1 : m_dayHeaderColor2,
               otherMonth ? 0 : m_dayHeaderForeColor);
    if (IsToday(day)) {
        cell->setTodayHeaderColor(m_todayHeaderColor);
        cell->setIsToday(true);
    }
    if (m_publicHoliday)
        cell->setPublicHolidayName(GetPublicHolidayName(day));
    if (IsFirstCellOfRow(index))
        m_weekColumn->Add(QString::number(GetCalendarWeek(day)));
    const QString failure = m_store->LoadDayAppointments(day, kvDayCellFiller(*cell, m_backColor));
    if (!failure.isEmpty())
        pendingCode = failure;
}

bool kvKalivo::IsFirstCellOfRow(int index) const
{
    return (index - 1) % 7 == 0;
}

bool kvKalivo::IsToday(const kvDate &day) const
{
    const QString pattern = QStringLiteral("dd-mm-yyyy");
    return Format(day, pattern) == Format(kvPlatform::clock().Today(), pattern);
}

void kvKalivo::ShowMonthCaption(const kvDate &first, const kvDate &last, bool runMode)
{
    if (!runMode) {
        m_monthCaption->setText(QStringLiteral("kvKalivo"));
        return;
    }
    const QLocale calendarLocale = locale();
    if (m_view != kvWeek || first.month() == last.month()) {
        m_monthCaption->setText(Format(m_actualDate, QStringLiteral("MMMM"), calendarLocale)
                                + QLatin1Char(' ') + QString::number(m_actualDate.year()));
        return;
    }
    m_monthCaption->setText(Format(first, QStringLiteral("MMM"), calendarLocale) + QLatin1Char('/')
                            + Format(last, QStringLiteral("MMM"), calendarLocale) + QLatin1Char(' ')
                            + QString::number(last.year()));
}

void kvKalivo::MarkActualDay()
{
    const kvDate actualDay = m_actualDate.dateOnly();
    ctlDay *actualCell = nullptr;
    for (int index = 1; index <= DayCellCount(); ++index) {
        ctlDay *cell = (*m_days)(index);
        const bool isActualDay = cell->datDay().dateOnly() == actualDay;
        // Renewed on the actual day: a reload's holiday name has reset its header's bold number.
        if (isActualDay || cell->IsActualDay())
            cell->setIsActualDay(isActualDay);
        if (isActualDay)
            actualCell = cell;
    }
    PlaceGridTabStop(actualCell);
    Q_EMIT actualDayMarked();
}

/*!
    The keyboard reaches the grid at one cell, the actual day's: Tab stops there right after
    the date picker, and the control passes its focus on to it. The other cells take the focus
    only from a click, so that Tab leaves the grid in one step.
*/
void kvKalivo::PlaceGridTabStop(ctlDay *actualCell)
{
    for (int index = 1; index <= DayCellCount(); ++index) {
        ctlDay *cell = (*m_days)(index);
        cell->setFocusPolicy(cell == actualCell ? Qt::StrongFocus : Qt::ClickFocus);
    }
    m_gridTabStop = actualCell;
    if (!actualCell)
        return;
    QWidget::setTabOrder(m_datePicker, actualCell);
    if (hasFocus()) // kept by the control while the cells were made anew
        actualCell->setFocus(Qt::OtherFocusReason);
}

//! The focus given to the control itself (a host's setFocus()) goes on to the grid.
void kvKalivo::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    if (m_gridTabStop)
        m_gridTabStop->setFocus(event->reason());
}

void kvKalivo::ApplyColours()
{
    for (int index = 1; index <= DayCellCount(); ++index) {
        ctlDay *cell = (*m_days)(index);
        cell->setBackColor(m_backColor);
        cell->setDayHeaderColor2(m_dayHeaderColor2);
        cell->setDayHeaderForeColor(m_dayHeaderForeColor);
        cell->setTodayHeaderColor(m_todayHeaderColor);
        RestoreDayHeader(*cell);
    }
    update();
    Q_EMIT coloursApplied();
}

void kvKalivo::RestoreDayHeader(ctlDay &cell)
{
    // The cell's colour setters repaint the whole header; put back what FillGrid gave
    // this particular day, so a re-layout keeps other-month, today and holiday headers apart.
    if (!m_userMode)
        return;
    const kvDate day = cell.datDay();
    if (day.month() != m_actualDate.month()) {
        cell.ctlHeader().setBackColor(m_dayHeaderColor1);
        cell.ctlHeader().setForeColor(0);
    }
    if (IsToday(day))
        cell.setIsToday(true);
    const QString holiday = cell.PublicHolidayName();
    if (!holiday.isEmpty())
        cell.setPublicHolidayName(holiday);
    cell.update();
}

void kvKalivo::Reload()
{
    try {
        HideToolTip(); // and the row that could hold the mouse lets go: the rows are unloaded
        for (int index = 1; index <= DayCellCount(); ++index)
            (*m_days)(index)->ClearDates();
        FillGrid();
        MarkActualDay();
    } catch (...) {
        ReportError(400, kvErrorReporting::DescribeCurrentException());
    }
}

// --- Navigation and commands ---------------------------------------------------------------------

void kvKalivo::OnToolbarButton(const QString &key)
{
    if (key == QLatin1String("Week") || key == QLatin1String("Month")) {
        SwitchView(key == QLatin1String("Week") ? kvWeek : kvMonth);
    } else if (key == QLatin1String("Back")) {
        StepDate(-1);
    } else if (key == QLatin1String("Forward")) {
        StepDate(1);
    } else if (key == QLatin1String("Print")) {
        if (kvPlatform::messageBox().MsgBox(QStringLiteral("Kalendar drucken?"), 35, QString())
            == kvMessageBox::vbYes)
            PrintCalendar();
    } else if (key == QLatin1String("Previous")) {
        GotoPreviousAppointment();
    } else if (key == QLatin1String("Next")) {
        GotoNextAppointment();
    } else if (key == QLatin1String("Today")) {
        ApplyRangeCheck(kvPlatform::clock().Today());
    } else if (key == QLatin1String("New")) {
        EditAppointment(1);
    }
}

void kvKalivo::OnContextMenuItem(int index)
{
    switch (index) {
    case 0:
        EditAppointment(1);
        break;
    case 1:
        EditAppointment(3);
        break;
    case 2:
        EditAppointment(2);
        break;
    case 3:
        StepDate(1);
        break;
    case 4:
        StepDate(-1);
        break;
    case 6:
        if (m_view != kvWeek) {
            setView(kvWeek);
            m_contextItems.at(6)->setText(QStringLiteral("Monatsansicht"));
        } else {
            setView(kvMonth);
            m_contextItems.at(6)->setText(QStringLiteral("Wochenansicht"));
        }
        MarkActualDay();
        break;
    case 8:
        PrintCalendar();
        break;
    default:
        break;
    }
}

void kvKalivo::SwitchView(kvView view)
{
    setView(view);
    if (!m_autoRefresh)
        ArrangeGrid(); // the switch always takes effect
    MarkActualDay();
}

void kvKalivo::StepDate(int direction)
{
    const kvDate stepped = m_view != kvWeek ? m_actualDate.addMonths(direction)
                                            : m_actualDate.addDays(7 * direction);
    setActualDate(stepped.date());
    // With AutoRefresh the setter's re-layout has just filled the cells for the new date.
    if (!m_autoRefresh)
        Reload();
}

void kvKalivo::ApplyRangeCheck(const kvDate &date)
{
    m_actualDate = date.dateOnly();
    SyncDatePicker();
    if (DayCellCount() > 0 && (m_actualDate < FirstCellDate() || m_actualDate > LastCellDate()))
        Reload();
    else
        MarkActualDay();
}

void kvKalivo::GotoNextAppointment()
{
    GotoAppointment(Direction::Next);
}

void kvKalivo::GotoPreviousAppointment()
{
    GotoAppointment(Direction::Previous);
}

void kvKalivo::GotoAppointment(Direction direction)
{
    const bool next = direction == Direction::Next;
    qint16 step = 0;
    try {
        step = 1;
        const kvDate edge = next ? LastCellDate() : FirstCellDate();
        step = 2;
        const std::optional<kvDate> found = next ? m_store->FindNextAppointment(edge)
                                                 : m_store->FindPreviousAppointment(edge);
        step = 3;
        if (found)
            JumpToAppointment(*found, next ? *found > edge : *found < edge);
    } catch (...) {
        ReportError(kvErrorReporting::StepCode(next ? 14 : 1500, step),
                    kvErrorReporting::DescribeCurrentException());
    }
}

void kvKalivo::JumpToAppointment(const kvDate &date, bool outsideTheView)
{
    m_actualDate = date.dateOnly();
    SyncDatePicker();
    if (outsideTheView)
        Reload();
    else
        MarkActualDay();
}

void kvKalivo::PrintCalendar()
{
    PrintCalendar(m_actualDate.date(), m_view);
}

void kvKalivo::PrintCalendar(const QDate &printDate, kvView printView)
{
    try {
        kvCalendarPrinter::Job job;
        job.PrintDate = kvDate::fromDate(printDate);
        job.PrintView = printView;
        job.Footnote = m_footnote;
        job.PublicHoliday = m_publicHoliday;
        job.Locale = locale();
        job.LoadDay = kvCalendarPrinter::StoreLoader(*m_store);
        kvCalendarPrinter(job).Print(this);
    } catch (...) {
        ReportError(300, kvErrorReporting::DescribeCurrentException());
    }
}

// --- Edit flow -----------------------------------------------------------------------------------

struct kvKalivo::EditValues
{
    qint32 DateID = 0;
    kvDate DateBegin;
    kvDate DateEnd;
    QString Name;
    QString Remark;
    QString Document;
    qint16 ImageID = 0;
};

void kvKalivo::EditAppointment(qint16 action)
{
    qint16 step = 0;
    try {
        EditAppointmentSteps(action, step);
    } catch (...) {
        ReportError(kvErrorReporting::StepCode(13, step), kvErrorReporting::DescribeCurrentException());
    }
}

void kvKalivo::EditAppointmentSteps(qint16 action, qint16 &step)
{
    step = 1;
    EditValues values;
    if (action == 1) {
        values.DateBegin = m_actualDate;
        values.DateEnd = m_actualDate;
    } else {
        const ctlDay *cell = DayCell(m_selectedDayIndex);
        const ctlEntry *entry = cell->Entries(cell->ActiveEntryIndex());
        values.DateID = entry->DateID();
        values.DateBegin = entry->datDateBegin();
        values.DateEnd = entry->datDateEnd();
        values.Name = entry->Text();
        values.Remark = entry->Remark();
        values.Document = entry->Document();
        values.ImageID = entry->ImgId();
    }
    bool bCancel = false;

    if (action == 2) {
        step = 2;
        if (m_raiseDatabaseEvents)
            RaiseDatabaseEvent(2, values, bCancel);
        else
            m_store->DeleteAppointment(values.DateID, values.DateBegin, values.DateEnd, values.Name,
                                       values.Remark, values.Document, bCancel);
        if (!bCancel)
            Reload();
        return;
    }

    if (m_raiseEditEvent) {
        step = 3;
        QDateTime begin = values.DateBegin.toDateTime();
        QDateTime end = values.DateEnd.toDateTime();
        qint16 editAction = action;
        Q_EMIT Edit(values.DateID, begin, end, values.Name, values.Remark, values.ImageID,
                    values.Document, editAction, bCancel);
        if (!bCancel)
            Reload();
        return;
    }

    step = 4;
    frmPicSelector::ThreadInstance().Reset();
    step = 5;
    frmEdit &editor = frmEdit::ThreadInstance();
    editor.SetOwner(this);
    editor.SetDateValues(values.DateBegin, values.DateEnd, values.Name, values.Remark,
                         values.ImageID, values.Document, action);
    step = 6;
    kvPlatform::modalRunner().Exec(editor);
    qint16 editAction = action;
    editor.GetDateValues(values.DateBegin, values.DateEnd, values.Name, values.Remark,
                         values.ImageID, values.Document, editAction);

    step = 7;
    switch (editAction) {
    case 1:
        if (m_raiseDatabaseEvents)
            RaiseDatabaseEvent(1, values, bCancel);
        else
            m_store->InsertAppointment(values.DateBegin, values.DateEnd, values.Name, values.Remark,
                                       values.Document, values.ImageID);
        break;
    case 2:
        if (m_raiseDatabaseEvents)
            RaiseDatabaseEvent(2, values, bCancel);
        else
            m_store->DeleteAppointment(values.DateID, values.DateBegin, values.DateEnd, values.Name,
                                       values.Remark, values.Document, bCancel);
        break;
    case 3:
        if (m_raiseDatabaseEvents)
            RaiseDatabaseEvent(3, values, bCancel);
        else
            m_store->UpdateAppointment(values.DateID, values.DateBegin, values.DateEnd, values.Name,
                                       values.Remark, values.Document, values.ImageID);
        break;
    default:
        return; // the editor was closed without saving
    }
    if (!bCancel)
        Reload();
}

void kvKalivo::RaiseDatabaseEvent(qint16 action, EditValues &values, bool &bCancel)
{
    QDateTime begin = values.DateBegin.toDateTime();
    QDateTime end = values.DateEnd.toDateTime();
    switch (action) {
    case 1:
        Q_EMIT DateNew(begin, end, values.Name, values.Remark, values.Document, values.ImageID, bCancel);
        break;
    case 2:
        Q_EMIT DateDelete(values.DateID, begin, end, values.Name, values.Remark, values.Document, bCancel);
        break;
    case 3:
        Q_EMIT DateChange(values.DateID, begin, end, values.Name, values.Remark, values.Document,
                          values.ImageID, bCancel);
        break;
    default:
        return;
    }
    values.DateBegin = kvDate::fromDateTime(begin);
    values.DateEnd = kvDate::fromDateTime(end);
}

// --- Cell interaction ----------------------------------------------------------------------------

void kvKalivo::ConnectDayCell(ctlDay *cell, qint16 dayIndex)
{
    // Clicking a cell gives it the focus, which makes its day the current one.
    cell->setFocusPolicy(Qt::ClickFocus);
    connect(cell, &ctlDay::DayMouseUp, this, [this, dayIndex](qint16 button, qint16, float, float) {
        OnDayMouseUp(dayIndex, button);
    });
    connect(cell, &ctlDay::EntryMouseUp, this,
            [this, dayIndex](qint16 entryIndex, qint16 button, qint16, float, float) {
                OnEntryMouseUp(dayIndex, entryIndex, button);
            });
    connect(cell, &ctlDay::EntryDblClick, this,
            [this, dayIndex](qint16 entryIndex) { OnEntryDblClick(dayIndex, entryIndex); });
    connect(cell, &ctlDay::EntryMouseMove, this,
            [this, dayIndex](qint16 entryIndex, qint32 x, qint32 y, qint32 left, qint32 top,
                             qint32 width, qint32 height) {
                OnEntryMouseMove(dayIndex, entryIndex, x, y, left, top, width, height);
            });
    connect(cell, &ctlDay::EntryMouseDown, this, &kvKalivo::HideToolTip);
    connect(cell, &ctlDay::DayDblClick, this, [this, dayIndex] { OnDayDblClick(dayIndex); });
}

int kvKalivo::DayIndexOf(const QWidget *widget) const
{
    if (!m_days)
        return 0;
    while (widget && widget != this) {
        if (widget->parentWidget() == this) {
            for (int index = 1; index <= DayCellCount(); ++index) {
                if ((*m_days)(index) == widget)
                    return index;
            }
            return 0;
        }
        widget = widget->parentWidget();
    }
    return 0;
}

void kvKalivo::OnDayFocus(qint16 dayIndex)
{
    m_actualDate = DayCell(dayIndex)->datDay();
    MarkActualDay();
    ShowCalendarWeek();
}

void kvKalivo::OnDayMouseUp(qint16 dayIndex, qint16 button)
{
    if (button != 2)
        return;
    m_actualDate = DayCell(dayIndex)->datDay();
    m_selectedDayIndex = dayIndex;
    MarkActualDay();
    PopupContextMenu(false, QCursor::pos());
}

void kvKalivo::OnEntryMouseUp(qint16 dayIndex, qint16 entryIndex, qint16 button)
{
    if (button != 2) {
        HideToolTip();
        return;
    }
    m_actualDate = DayCell(dayIndex)->datDay();
    m_selectedEntryIndex = entryIndex;
    m_selectedDayIndex = dayIndex;
    MarkActualDay();
    PopupContextMenu(true, QCursor::pos());
}

void kvKalivo::PopupContextMenu(bool onRow, const QPoint &globalPos)
{
    m_contextItems.at(1)->setEnabled(onRow);
    m_contextItems.at(2)->setEnabled(onRow);
    m_contextItems.at(6)->setEnabled(!onRow);
    m_contextMenu->popup(globalPos);
}

void kvKalivo::OnEntryDblClick(qint16 dayIndex, qint16 entryIndex)
{
    m_actualDate = DayCell(dayIndex)->datDay();
    m_selectedEntryIndex = entryIndex;
    m_selectedDayIndex = dayIndex;
    EditAppointment(3);
}

void kvKalivo::OnDayDblClick(qint16 dayIndex)
{
    m_selectedEntryIndex = -1;
    m_selectedDayIndex = dayIndex;
    EditAppointment(1);
}

void kvKalivo::OnEntryMouseMove(qint16 dayIndex, qint16 entryIndex, qint32 x, qint32 y,
                                qint32 entryLeft, qint32 entryTop, qint32 entryWidth,
                                qint32 entryHeight)
{
    m_selectedDayIndex = dayIndex;
    m_selectedEntryIndex = entryIndex;
    ctlDay *cell = DayCell(dayIndex);
    const qint32 mx = x + cell->x();
    const qint32 my = y + cell->y();
    const qint32 ex = entryLeft + cell->x();
    const qint32 ey = entryTop + cell->y();
    const bool inside = mx >= ex && my >= ey && mx <= ex + entryWidth && my <= ey + entryHeight;
    if (inside) {
        m_timerTooltipOff->stop();
        if (m_capturedEntryIndex != entryIndex || m_capturedDayIndex != dayIndex) {
            ReleaseRowCapture(); // a window capture moves; here each cell holds its own
            cell->SetCapture(entryIndex);
            m_capturedEntryIndex = entryIndex;
            m_capturedDayIndex = dayIndex;
        }
        m_tooltipAnchorX = ex;
        m_tooltipAnchorY = ey;
        m_tooltipDay = cell->datDay();
        if (m_tooltipMode)
            ShowToolTip();
        else
            m_timerTooltip->start();
    } else {
        m_timerTooltip->stop();
        m_timerTooltipOff->start();
        m_toolTip->hide();
        ReleaseRowCapture();
    }
}

void kvKalivo::ReleaseRowCapture()
{
    m_capturedEntryIndex = -1;
    m_capturedDayIndex = -1;
    for (int index = 1; index <= DayCellCount(); ++index)
        (*m_days)(index)->ReleaseCapture();
}

void kvKalivo::OnTimerTooltip()
{
    m_timerTooltip->stop();
    m_tooltipMode = true;
    try {
        ShowToolTip();
    } catch (...) {
        // The row went away with a refresh: no tooltip, and nothing to report.
    }
}

void kvKalivo::OnTimerTooltipOff()
{
    m_timerTooltipOff->stop();
    m_tooltipMode = false;
    ReleaseRowCapture();
}

void kvKalivo::ShowToolTip()
{
    if (m_selectedDayIndex < 1 || m_selectedDayIndex > DayCellCount())
        return;
    ctlDay *cell = DayCell(m_selectedDayIndex);
    if (cell->datDay() != m_tooltipDay)
        return;
    const ctlEntry *row = cell->Entries(m_selectedEntryIndex);
    m_timerTooltipOff->stop();
    if (m_toolTip->isVisible())
        return;
    if (m_tooltipRowHandle == row->hWnd()) {
        HideToolTip();
        m_tooltipRowHandle = 0; // reset: the next rest on this row shows it again
        return;
    }
    m_tooltipRowHandle = row->hWnd();
    const int firstCellWidth = DayCell(1)->width();
    m_toolTip->setMinWidth(qint16(firstCellWidth));
    m_toolTip->setTime(row->Time());
    m_toolTip->setText(row->Text());
    m_toolTip->setRemark(row->Remark());
    m_toolTip->setDateID(row->DateID());
    if (cell->IsActualDay()) {
        m_toolTip->move(m_tooltipAnchorX, m_tooltipAnchorY);
        m_toolTip->setNormalWidth(qint16(firstCellWidth - 2));
    } else {
        m_toolTip->move(m_tooltipAnchorX - 1, m_tooltipAnchorY - 1);
        m_toolTip->setNormalWidth(qint16(firstCellWidth));
    }
    cell->SetCapture(m_selectedEntryIndex);
    m_toolTip->raise();
    m_toolTip->Resize();
    m_toolTip->show();
    if (m_toolTip->x() + m_toolTip->width() > width()) {
        m_toolTip->Resize();
        m_toolTip->move(width() - m_toolTip->width(), m_toolTip->y());
    }
}

// --- Keyboard ------------------------------------------------------------------------------------

void kvKalivo::keyPressEvent(QKeyEvent *event)
{
    const int dayIndex = DayIndexOf(QApplication::focusWidget());
    if (dayIndex < 1 || !HandleGridKey(qint16(dayIndex), *event))
        QWidget::keyPressEvent(event);
}

/*!
    The keys of the grid, where the focus is on day cell \a dayIndex: the arrows move the
    selection through the days and their rows, PageUp/PageDown are "Zurück"/"Vor", Home is
    "Heute", Enter opens, Delete deletes, the menu key and Shift+F10 open the context menu.
*/
bool kvKalivo::HandleGridKey(qint16 dayIndex, const QKeyEvent &event)
{
    if (!m_userMode)
        return false; // a form designer's grid has no days
    ctlDay *cell = DayCell(dayIndex);
    const kvDate day = cell->datDay();
    const qint16 row = cell->FocusEntryIndex();
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        SelectDay(day.addDays(event.key() == Qt::Key_Left ? -1 : 1));
        return true;
    case Qt::Key_Up:
        if (row > 0)
            cell->SelectEntry(qint16(row - 1));
        else
            SelectDay(day.addDays(-7));
        return true;
    case Qt::Key_Down:
        if (row < cell->EntriesCount())
            cell->SelectEntry(qint16(row + 1));
        else
            SelectDay(day.addDays(7));
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        StepDate(event.key() == Qt::Key_PageUp ? -1 : 1);
        SelectDay(m_actualDate);
        return true;
    case Qt::Key_Home:
        ApplyRangeCheck(kvPlatform::clock().Today());
        SelectDay(m_actualDate);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        EditSelection(dayIndex, row, row > 0 ? 3 : 1);
        return true;
    case Qt::Key_Delete:
        if (row > 0)
            EditSelection(dayIndex, row, 2);
        return true;
    case Qt::Key_F10:
        if (event.modifiers() != Qt::ShiftModifier)
            return false;
        [[fallthrough]];
    case Qt::Key_Menu:
        PopupContextMenuAt(dayIndex, row);
        return true;
    default:
        return false;
    }
}

/*!
    Moves the keyboard selection to \a day, on the day itself, as a click on its cell does; a
    day outside the grid is reached by reloading the grid around it.
*/
void kvKalivo::SelectDay(const kvDate &day)
{
    if (DayCellCount() == 0)
        return;
    const kvDate target = day.dateOnly();
    if (target < FirstCellDate() || target > LastCellDate()) {
        m_actualDate = target;
        Reload();
    }
    const int index = int(target.daysSince(FirstCellDate())) + 1;
    if (index < 1 || index > DayCellCount())
        return;
    ctlDay *cell = DayCell(index);
    cell->SelectEntry(0);
    cell->setFocus(Qt::OtherFocusReason);
    OnDayFocus(qint16(index)); // also when the cell kept the focus through a reload
}

//! Enter and Delete: the edit flow for the selected row (or, with \a action 1, the day).
void kvKalivo::EditSelection(qint16 dayIndex, qint16 row, qint16 action)
{
    m_selectedDayIndex = dayIndex;
    m_selectedEntryIndex = row > 0 ? row : qint16(-1);
    if (row > 0)
        DayCell(dayIndex)->SelectEntry(row); // the edit flow reads the cell's active row
    const kvDate day = DayCell(dayIndex)->datDay();
    EditAppointment(action);
    // The reload took the rows away: the selection stays at the same place of the same day.
    if (dayIndex <= DayCellCount() && DayCell(dayIndex)->datDay() == day) {
        ctlDay *cell = DayCell(dayIndex);
        cell->SelectEntry(qint16(std::min<int>(row, cell->EntriesCount())));
    }
}

//! The menu key and Shift+F10: the context menu below the selected row or day header.
void kvKalivo::PopupContextMenuAt(qint16 dayIndex, qint16 row)
{
    ctlDay *cell = DayCell(dayIndex);
    m_selectedDayIndex = dayIndex;
    if (row > 0)
        m_selectedEntryIndex = row;
    const QRect area = row > 0 ? cell->Entries(row)->geometry() : cell->ctlHeader().geometry();
    const QPoint below = area.bottomLeft() + cell->contentsRect().topLeft() + QPoint(4, 1);
    PopupContextMenu(row > 0, cell->mapToGlobal(below));
}

