#include "kvDayGrid.h"

#include "PublicHolidays.h"
#include "ctlDay.h"
#include "ctlKW.h"
#include "frmEdit.h"
#include "kvAppointmentStore.h"
#include "kvCalendarWeek.h"
#include "kvCellInteraction.h"
#include "kvChrome.h"
#include "kvClock.h"
#include "kvControlArray.h"
#include "kvDayCellFiller.h"
#include "kvErrorReporting.h"
#include "kvFaultSite.h"
#include "kvFormat.h"
#include "kvKalivo_p.h"
#include "kvPlatform.h"

#include <QApplication>
#include <QDateEdit>
#include <QFrame>
#include <QLabel>
#include <QScopeGuard>

kvDayGrid::kvDayGrid(kvKalivoPrivate &d)
    : d(d)
{
    kvKalivo *control = d.q;
    m_days = std::make_unique<kvControlArray<ctlDay>>(QStringLiteral("ctlDay"), [this, control](int index) {
        auto *cell = new ctlDay(control);
        cell->setVisible(false); // element 0 is the hidden template; the others are placed first
        if (index > 0)
            this->d.interaction->ConnectDayCell(cell, qint16(index));
        return cell;
    });
    m_weekdayCaptions = std::make_unique<kvControlArray<QLabel>>(QStringLiteral("lblWeekDay"), [control](int) {
        auto *caption = new QLabel(control);
        caption->setAlignment(Qt::AlignCenter);
        caption->setAutoFillBackground(true);
        caption->setVisible(false);
        return caption;
    });
    m_corner = new QFrame(control);
    m_corner->setObjectName(QStringLiteral("shpTopLeftEdge"));
    m_corner->setAutoFillBackground(true);
    m_weekColumn = new ctlKW(control);
    m_weekColumn->setAutoFillBackground(true);
}

kvDayGrid::~kvDayGrid() = default;

// --- Arrangement ---------------------------------------------------------------------------------

void kvDayGrid::ArrangeGrid(Refill refill)
{
    qint16 step = 0;
    try {
        ArrangeGridStages(step, refill);
    } catch (...) {
        d.ReportError(kvErrorReporting::StepCode(900, step), kvErrorReporting::DescribeCurrentException());
    }
    Q_EMIT gridArranged();
}

void kvDayGrid::ArrangeGridStages(qint16 &step, Refill refill)
{
    auto stage = [&step](qint16 number) {
        step = number;
        KV_FAULT_SITE("ArrangeGrid", number);
    };
    stage(0);
    d.interaction->HideToolTip();
    stage(1);
    if (DayIndexOf(QApplication::focusWidget()) > 0) {
        m_gridTabStop = nullptr;
        d.q->setFocus(Qt::OtherFocusReason); // the control keeps the grid's focus for the new cells
    }
    d.interaction->ReleaseRowCapture();
    m_gridTabStop = nullptr;
    if (!d.settings.UserMode)
        UnloadDayCells(); // design mode shows cells without days: fresh ones
    kvGridGeometry::Input input;
    input.scaleWidth = d.q->width();
    input.captionTop = d.chrome->HeaderHeight() + 1;
    input.statusBarTop = d.chrome->StatusBarTop();
    input.borderStyle = d.settings.BorderStyle;
    input.weeksVisible = d.settings.WeeksVisible;
    input.weekendColumns = d.settings.WeekendColumns;
    input.view = d.settings.View;
    m_geometry = kvGridGeometry(input, &step); // stages 2, 3, 4 and 6
    stage(5);
    PlaceWeekdayCaptions();
    stage(6);
    PlaceDayCells();
    stage(7);
    PlaceWeekColumn();
    stage(8);
    d.chrome->Place();
    stage(9);
    if (refill == Refill::Always || m_filledFor != CurrentContent())
        RefillCells();
    else
        m_weekColumn->Paint(); // the weeks it holds, in sections of the new height
    stage(10);
    ApplyColours();
}

void kvDayGrid::UnloadDayCells()
{
    d.interaction->ReleaseRowCapture();
    m_gridTabStop = nullptr;
    for (int index = m_days->UBound(); index >= 1; --index) {
        if (m_days->isLoaded(index))
            m_days->Unload(index);
    }
}

void kvDayGrid::PlaceWeekdayCaptions()
{
    const QLocale calendarLocale = d.q->locale();
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
            text = kv::WeekdayName(column, true, calendarLocale);
        caption->setText(text);
        caption->show();
    }
}

QString kvDayGrid::WeekdayCaption(int column, int columns, const QLocale &calendarLocale)
{
    if (columns == 6 && column == 6)
        return kv::WeekdayName(6, true, calendarLocale) + QLatin1Char('-') + kv::WeekdayName(7, true, calendarLocale);
    return kv::WeekdayName(column, false, calendarLocale);
}

/*!
    The cells stay from one arrangement to the next: only a change in their number loads or
    unloads the difference, so that moving through the dates refills the cells it has.
*/
void kvDayGrid::PlaceDayCells()
{
    const QList<QRect> &cells = m_geometry.cells();
    for (int index = m_days->UBound(); index > cells.size(); --index)
        m_days->Unload(index);
    for (int index = 1; index <= cells.size(); ++index) {
        ctlDay *cell = m_days->isLoaded(index) ? (*m_days)(index) : m_days->Load(index);
        cell->setBorderVisible(d.settings.BorderStyle != kvKalivo::kvNone);
        cell->setGeometry(cells.at(index - 1));
        cell->show();
    }
}

void kvDayGrid::PlaceWeekColumn()
{
    m_corner->setGeometry(m_geometry.corner());
    m_weekColumn->setGeometry(m_geometry.weekColumn());
    m_weekColumn->setSectionheight(m_geometry.cellHeight());
    m_corner->setVisible(d.settings.WeeksVisible);
    m_weekColumn->setVisible(d.settings.WeeksVisible);
}

// --- Days ----------------------------------------------------------------------------------------

kvDate kvDayGrid::FirstGridDate() const
{
    const kvDate &actual = d.settings.ActualDate;
    if (d.settings.View == kvKalivo::kvWeek)
        return actual.addDays(-(actual.weekdayFromMonday() - 1));
    // ActualDate formatted "mm/yyyy" and converted back: the 1st of its month.
    const kvDate firstOfMonth = kv::CDate(kv::Format(actual, QStringLiteral("mm/yyyy"))).value_or(actual);
    return firstOfMonth.addDays(-(firstOfMonth.weekdayFromMonday() - 1));
}

kvDate kvDayGrid::FirstCellDate() const
{
    return DayCellCount() > 0 ? (*m_days)(1)->datDay() : FirstGridDate();
}

kvDate kvDayGrid::LastCellDate() const
{
    const int count = DayCellCount();
    return count > 0 ? (*m_days)(count)->datDay()
                     : FirstGridDate().addDays(d.settings.View == kvKalivo::kvWeek ? 6 : 41);
}

int kvDayGrid::DayCellCount() const
{
    return m_days->Count() - 1;
}

ctlDay *kvDayGrid::DayCell(int index) const
{
    return (*m_days)(index);
}

int kvDayGrid::DayIndexOf(const QWidget *widget) const
{
    while (widget && widget != d.q) {
        if (widget->parentWidget() == d.q) {
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

bool kvDayGrid::IsFirstCellOfRow(int index)
{
    return (index - 1) % 7 == 0;
}

//! The same calendar day: what comparing both as "dd-mm-yyyy" tells, without writing them out.
bool kvDayGrid::IsToday(const kvDate &day)
{
    return day.date() == kvPlatform::clock().Today().date();
}

bool kvDayGrid::IsOtherMonth(const kvDate &day) const
{
    return day.month() != d.settings.ActualDate.month();
}

// --- Filling -------------------------------------------------------------------------------------

void kvDayGrid::FillGrid()
{
    m_filledFor.reset();
    qint16 step = 0;
    QString pendingCode;
    try {
        FillGridStages(step, pendingCode);
    } catch (...) {
        d.ReportError(kvErrorReporting::StepCode(1100, step), kvErrorReporting::DescribeCurrentException());
        return;
    }
    if (!pendingCode.isEmpty()) {
        kvErrorReporting::ReportPendingCode(pendingCode, [this](kvError &error) { Q_EMIT d.q->Error(error); });
        return;
    }
    m_filledFor = CurrentContent();
}

void kvDayGrid::RefillCells()
{
    d.interaction->ForgetRows();
    for (int index = 1; index <= DayCellCount(); ++index)
        (*m_days)(index)->ClearDates();
    FillGrid();
}

/*!
    The days the cells show, how, and where they are read from; a resize that leaves these as
    they were keeps the rows the cells hold and reads nothing.
*/
kvDayGrid::Content kvDayGrid::CurrentContent() const
{
    const kvConnection *connection = d.store->Connection();
    return Content{FirstGridDate(), DayCellCount(), d.settings.UserMode, d.settings.PublicHoliday,
                   connection, connection ? connection->State() : 0, d.settings.RecordSource,
                   d.store->ParameterizedSql()};
}

void kvDayGrid::FillGridStages(qint16 &step, QString &pendingCode)
{
    auto stage = [&step](qint16 number) {
        step = number;
        KV_FAULT_SITE("FillGrid", number);
    };
    stage(0);
    const int cellCount = DayCellCount();
    stage(1);
    const kvDate first = FirstGridDate();
    stage(2);
    if (kvConnection *connection = d.store->Connection();
        connection && connection->State() != kvConnection::adStateClosed) {
        stage(3);
        frmEdit &editor = frmEdit::ThreadInstance();
        editor.setIconControlsEnabled(d.store->HasImageIdColumn());
        editor.setDocumentControlsEnabled(d.store->HasDocumentColumn());
    }
    const bool runMode = d.settings.UserMode;
    m_weekColumn->Clear();
    m_weekColumn->setSectionheight(m_geometry.cellHeight());
    stage(5);
    if (runMode)
        d.store->BeginDayLoads(first, cellCount);
    const auto endDayLoads = qScopeGuard([this] { d.store->EndDayLoads(); });
    // Design mode: empty cells, no dates, no appointments.
    for (int index = 1; runMode && index <= cellCount; ++index)
        FillDayCell(index, first.addDays(index - 1), pendingCode);
    m_weekColumn->Paint();
    stage(6);
    d.chrome->SetMonthCaption(runMode ? MonthCaption(first, first.addDays(std::max(0, cellCount - 1)))
                                      : QStringLiteral("kvKalivo"));
    stage(7);
}

void kvDayGrid::FillDayCell(int index, const kvDate &day, QString &pendingCode)
{
    const kvKalivoSettings &settings = d.settings;
    ctlDay *cell = (*m_days)(index);
    const bool otherMonth = IsOtherMonth(day);
    cell->Init(day, QString(), QString(), otherMonth ? settings.DayHeaderColor1 : settings.DayHeaderColor2,
               otherMonth ? 0 : settings.DayHeaderForeColor);
    if (IsToday(day)) {
        cell->setTodayHeaderColor(settings.TodayHeaderColor);
        cell->setIsToday(true);
    }
    cell->setPublicHolidayName(settings.PublicHoliday ? kv::GetPublicHolidayName(day) : QString());
    if (IsFirstCellOfRow(index))
        m_weekColumn->Add(QString::number(kv::GetCalendarWeek(day)));
    const QString failure = d.store->LoadDayAppointments(day, kvDayCellFiller(*cell, settings.BackColor));
    if (!failure.isEmpty())
        pendingCode = failure;
}

QString kvDayGrid::MonthCaption(const kvDate &first, const kvDate &last) const
{
    const QLocale calendarLocale = d.q->locale();
    const kvDate &actual = d.settings.ActualDate;
    if (d.settings.View != kvKalivo::kvWeek || first.month() == last.month())
        return kv::Format(actual, QStringLiteral("MMMM"), calendarLocale) + QLatin1Char(' ')
            + QString::number(actual.year());
    return kv::Format(first, QStringLiteral("MMM"), calendarLocale) + QLatin1Char('/')
        + kv::Format(last, QStringLiteral("MMM"), calendarLocale) + QLatin1Char(' ')
        + QString::number(last.year());
}

void kvDayGrid::Reload()
{
    try {
        d.interaction->HideToolTip(); // and the row that could hold the mouse lets go: the rows are unloaded
        RefillCells();
        MarkActualDay();
    } catch (...) {
        d.ReportError(400, kvErrorReporting::DescribeCurrentException());
    }
}

// --- Marking and colours -------------------------------------------------------------------------

void kvDayGrid::MarkActualDay()
{
    const kvDate actualDay = d.settings.ActualDate.dateOnly();
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
void kvDayGrid::PlaceGridTabStop(ctlDay *actualCell)
{
    for (int index = 1; index <= DayCellCount(); ++index) {
        ctlDay *cell = (*m_days)(index);
        cell->setFocusPolicy(cell == actualCell ? Qt::StrongFocus : Qt::ClickFocus);
    }
    m_gridTabStop = actualCell;
    if (!actualCell)
        return;
    QWidget::setTabOrder(d.chrome->DatePicker(), actualCell);
    if (d.q->hasFocus()) // kept by the control while the cells were made anew
        actualCell->setFocus(Qt::OtherFocusReason);
}

void kvDayGrid::ApplyColours()
{
    const kvKalivoSettings &settings = d.settings;
    for (int index = 1; index <= DayCellCount(); ++index) {
        ctlDay *cell = (*m_days)(index);
        cell->setBackColor(settings.BackColor);
        cell->setDayHeaderColor2(settings.DayHeaderColor2);
        cell->setDayHeaderForeColor(settings.DayHeaderForeColor);
        cell->setTodayHeaderColor(settings.TodayHeaderColor);
        RestoreDayHeader(*cell);
    }
    d.q->update();
    Q_EMIT coloursApplied();
}

void kvDayGrid::RestoreDayHeader(ctlDay &cell) const
{
    // The cell's colour setters repaint the whole header; put back what FillGrid gave
    // this particular day, so a re-layout keeps other-month, today and holiday headers apart.
    if (!d.settings.UserMode)
        return;
    const kvDate day = cell.datDay();
    if (IsOtherMonth(day)) {
        cell.ctlHeader().setBackColor(d.settings.DayHeaderColor1);
        cell.ctlHeader().setForeColor(0);
    }
    if (IsToday(day))
        cell.setIsToday(true);
    const QString holiday = cell.PublicHolidayName();
    if (!holiday.isEmpty())
        cell.setPublicHolidayName(holiday);
    cell.update();
}
