#include "kvChrome.h"

#include "kvCalendarWeek.h"
#include "kvDayGrid.h"
#include "kvKalivo_p.h"
#include "kvMessageBox.h"
#include "kvNavigator.h"
#include "kvPlatform.h"

#include <QAction>
#include <QActionGroup>
#include <QDateEdit>
#include <QFontMetrics>
#include <QIcon>
#include <QLabel>
#include <QMenu>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QToolBar>

namespace {

constexpr int DatePickerWidth = 120;
constexpr int ChromeSpacing = 4;

} // namespace

kvChrome::kvChrome(kvKalivoPrivate &d)
    : d(d)
{
    CreateToolbar();
    CreateMonthCaption();
    CreateDatePicker();
    CreateStatusBar();
    CreateContextMenu();
}

void kvChrome::CreateToolbar()
{
    m_toolbarMain = new QToolBar(d.q);
    m_toolbarMain->setObjectName(QStringLiteral("ToolbarMain"));
    m_toolbarMain->setIconSize(QSize(16, 16));
    m_toolbarMain->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_toolbarMain->setMovable(false);
    m_toolbarMain->setFloatable(false);

    m_viewButtons = new QActionGroup(d.q);
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

QAction *kvChrome::AddToolbarButton(int position, const QString &key, const QString &toolTip,
                                    const QString &imageName)
{
    QIcon icon;
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/16/%1.svg").arg(imageName), QSize(16, 16));
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/22/%1.svg").arg(imageName), QSize(22, 22));
    icon.addFile(QStringLiteral(":/kvkalivo/toolbar/22/%1.svg").arg(imageName), QSize(32, 32));

    QAction *action = m_toolbarMain->addAction(icon, toolTip);
    QObject::connect(action, &QAction::triggered, d.q, [this, key] { OnToolbarButton(key); });
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

void kvChrome::CreateMonthCaption()
{
    m_monthCaption = new QLabel(d.q);
    m_monthCaption->setObjectName(QStringLiteral("lblMonat"));
    m_monthCaption->setAlignment(Qt::AlignCenter);
    QFont captionFont = m_monthCaption->font();
    captionFont.setBold(true);
    captionFont.setPointSizeF(captionFont.pointSizeF() * 1.2);
    m_monthCaption->setFont(captionFont);
}

void kvChrome::CreateDatePicker()
{
    m_datePicker = new QDateEdit(d.q);
    m_datePicker->setObjectName(QStringLiteral("DTPicker1"));
    m_datePicker->setCalendarPopup(true);
    m_datePicker->setFocusPolicy(Qt::StrongFocus);
    m_datePicker->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    m_datePicker->setDateRange(QDate(1601, 1, 1), QDate(9999, 12, 31));
    QObject::connect(m_datePicker, &QDateEdit::dateChanged, d.q, [this](QDate date) {
        d.navigator->ApplyRangeCheck(kvDate::fromDate(date));
    });
}

void kvChrome::CreateStatusBar()
{
    m_statusBar = new QStatusBar(d.q);
    m_statusBar->setObjectName(QStringLiteral("StatusBar"));
    m_statusBar->setSizeGripEnabled(false);
    m_statusWeekPanel = new QLabel(m_statusBar);
    m_statusWeekPanel->setObjectName(QStringLiteral("Panel1"));
    m_statusWeekPanel->setContentsMargins(4, 0, 4, 0);
    m_statusBar->addWidget(m_statusWeekPanel);
}

void kvChrome::CreateContextMenu()
{
    m_contextMenu = new QMenu(QStringLiteral("Kontext"), d.q);
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
        QObject::connect(item, &QAction::triggered, d.q, [this, index] { OnContextMenuItem(index); });
        m_contextItems.append(item);
    }
}

void kvChrome::OnToolbarButton(const QString &key)
{
    if (key == QLatin1String("Week") || key == QLatin1String("Month")) {
        d.navigator->SwitchView(key == QLatin1String("Week") ? kvKalivo::kvWeek : kvKalivo::kvMonth);
    } else if (key == QLatin1String("Back")) {
        d.navigator->StepDate(-1);
    } else if (key == QLatin1String("Forward")) {
        d.navigator->StepDate(1);
    } else if (key == QLatin1String("Print")) {
        if (kvPlatform::messageBox().MsgBox(QStringLiteral("Kalendar drucken?"), 35, QString())
            == kvMessageBox::vbYes)
            d.q->PrintCalendar();
    } else if (key == QLatin1String("Previous")) {
        d.navigator->GotoAppointment(kvNavigator::Direction::Previous);
    } else if (key == QLatin1String("Next")) {
        d.navigator->GotoAppointment(kvNavigator::Direction::Next);
    } else if (key == QLatin1String("Today")) {
        d.navigator->GotoToday();
    } else if (key == QLatin1String("New")) {
        d.q->EditAppointment(1);
    }
}

void kvChrome::OnContextMenuItem(int index)
{
    switch (index) {
    case 0:
        d.q->EditAppointment(1);
        break;
    case 1:
        d.q->EditAppointment(3);
        break;
    case 2:
        d.q->EditAppointment(2);
        break;
    case 3:
        d.navigator->StepDate(1);
        break;
    case 4:
        d.navigator->StepDate(-1);
        break;
    case 6: {
        // The item offers the other view; its caption names the view the next choice shows.
        const bool toWeek = d.settings.View != kvKalivo::kvWeek;
        d.q->setView(toWeek ? kvKalivo::kvWeek : kvKalivo::kvMonth);
        m_contextItems.at(6)->setText(toWeek ? QStringLiteral("Monatsansicht") : QStringLiteral("Wochenansicht"));
        d.grid->MarkActualDay();
        break;
    }
    case 8:
        d.q->PrintCalendar();
        break;
    default:
        break;
    }
}

void kvChrome::PopupContextMenu(bool onRow, const QPoint &globalPos)
{
    m_contextItems.at(1)->setEnabled(onRow);
    m_contextItems.at(2)->setEnabled(onRow);
    m_contextItems.at(6)->setEnabled(!onRow);
    m_contextMenu->popup(globalPos);
}

void kvChrome::PressViewButton()
{
    const QString key = d.settings.View == kvKalivo::kvWeek ? QStringLiteral("Week") : QStringLiteral("Month");
    const QList<QAction *> viewActions = m_viewButtons->actions();
    for (QAction *action : viewActions) {
        if (action->objectName() == key)
            action->setChecked(true);
    }
}

void kvChrome::SyncDatePicker()
{
    const QSignalBlocker blocker(m_datePicker);
    m_datePicker->setDate(d.settings.ActualDate.date());
}

void kvChrome::ShowCalendarWeek()
{
    m_statusWeekPanel->setText(QString::number(kv::GetCalendarWeek(d.settings.ActualDate))
                               + QStringLiteral(". KW"));
}

void kvChrome::EnableDatabaseButtons(int connectionState)
{
    for (const char16_t *key : {u"Next", u"Previous", u"New"}) {
        if (QAction *button = m_toolbarMain->findChild<QAction *>(QString::fromUtf16(key)))
            button->setEnabled(connectionState != kvConnection::adStateClosed);
    }
}

void kvChrome::SetMonthCaption(const QString &text)
{
    m_monthCaption->setText(text);
}

int kvChrome::ToolbarRowHeight() const
{
    return m_toolbarMain->sizeHint().height();
}

int kvChrome::StatusBarTop() const
{
    return d.q->height() - m_statusBar->sizeHint().height();
}

void kvChrome::Place()
{
    const int width = d.q->width();
    const int toolbarHeight = ToolbarRowHeight();
    m_toolbarMain->setGeometry(0, 0, m_toolbarMain->sizeHint().width(), toolbarHeight);

    const int pickerHeight = std::min(m_datePicker->sizeHint().height(), toolbarHeight);
    const int pickerLeft = std::max(m_toolbarMain->width() + ChromeSpacing,
                                    width - DatePickerWidth - ChromeSpacing);
    m_datePicker->setGeometry(pickerLeft, (toolbarHeight - pickerHeight) / 2, DatePickerWidth,
                              pickerHeight);

    if (MonthCaptionFitsBesideToolbar()) {
        const int captionLeft = m_toolbarMain->width() + ChromeSpacing;
        m_monthCaption->setGeometry(captionLeft, 0, pickerLeft - ChromeSpacing - captionLeft,
                                    toolbarHeight);
    } else {
        m_monthCaption->setGeometry(0, toolbarHeight, width, HeaderHeight() - toolbarHeight);
    }

    m_statusBar->setGeometry(0, StatusBarTop(), width, d.q->height() - StatusBarTop());
    d.q->update();
}

int kvChrome::WidestMonthCaption() const
{
    const QFontMetrics metrics(m_monthCaption->font());
    int widest = 0;
    for (int month = 1; month <= 12; ++month) {
        const QString caption = d.q->locale().monthName(month, QLocale::LongFormat) + QStringLiteral(" 2026");
        widest = std::max(widest, metrics.horizontalAdvance(caption));
    }
    return widest + 2 * ChromeSpacing;
}

bool kvChrome::MonthCaptionFitsBesideToolbar() const
{
    const int between = d.q->width() - DatePickerWidth - 2 * ChromeSpacing - m_toolbarMain->sizeHint().width();
    return between >= WidestMonthCaption();
}

int kvChrome::HeaderHeight() const
{
    // On a narrow control the month caption gets a row of its own below the toolbar.
    if (MonthCaptionFitsBesideToolbar())
        return ToolbarRowHeight();
    return ToolbarRowHeight() + QFontMetrics(m_monthCaption->font()).height() + ChromeSpacing;
}
