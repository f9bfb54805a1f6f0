#include "kvCalendarPrinter.h"

#include "PublicHolidays.h"
#include "ctlDay.h"
#include "ctlEntry.h"
#include "kvConnection.h" // before kvAppointmentStore.h, whose QPointer needs the complete type
#include "kvAppointmentStore.h"
#include "kvDayCellFiller.h"
#include "kvErrorReporting.h"
#include "kvInt16.h"
#include "kvPlatform.h"
#include "kvPrinterService.h"
#include "kvRuntimeError.h"

#include <QPagedPaintDevice>
#include <QPainter>

#include <memory>
#include <optional>

namespace {

constexpr int InvalidProcedureCall = 5;
constexpr uint White = 0xFFFFFFu;
constexpr uint Black = 0;

QString yearText(const kvDate &date)
{
    return QString::number(date.year());
}

} // namespace

kvCalendarPrinter::kvCalendarPrinter(Job job)
    : m_job(std::move(job))
{
    if ((m_job.PrintView != Week && m_job.PrintView != Month) || !m_job.PrintDate.isValid())
        throw kvRuntimeError(InvalidProcedureCall,
                             QStringLiteral("Ungültiger Prozeduraufruf oder ungültiges Argument"));
    m_job.PrintDate = m_job.PrintDate.dateOnly();
}

QString kvCalendarPrinter::Caption() const
{
    const kvDate first = FirstDay();
    return MonthCaption(m_job.PrintDate, first, first.addDays(DayCount() - 1), m_job.PrintView, m_job.Locale);
}

QString kvCalendarPrinter::DocumentName() const
{
    return QStringLiteral("Kalender ") + Caption();
}

kvCalendarPage kvCalendarPrinter::LoadPage() const
{
    kvCalendarPage page;
    page.Caption = Caption();
    page.WeekdayNames = WeekdayNames();
    page.Footnote = m_job.Footnote;
    ctlDay cell;
    const kvDate first = FirstDay();
    for (int i = 0; i < DayCount(); ++i)
        page.Days.append(LoadDay(first.addDays(i), cell));
    return page;
}

bool kvCalendarPrinter::Print(QWidget *parent) const
{
    const kvCalendarPage page = LoadPage();
    kvPrinterService::Job job;
    job.DocumentName = DocumentName();
    job.Pages = [&page](QPagedPaintDevice &device) { Render(page, device); };
    return kvPlatform::printerService().Print(parent, job);
}

void kvCalendarPrinter::Render(const kvCalendarPage &page, QPagedPaintDevice &device)
{
    QPainter painter;
    if (!painter.begin(&device))
        throw kvPrinterService::PrinterError();
    page.Paint(painter, QRectF(0, 0, device.width(), device.height()));
    if (!painter.end())
        throw kvPrinterService::PrinterError();
}

kvDate kvCalendarPrinter::FirstDayOf(const kvDate &date, int view)
{
    const kvDate day = date.dateOnly();
    if (view == Week)
        return day.addDays(1 - day.weekdayFromMonday());
    const kvDate firstOfMonth = kvDate::DateSerial(day.year(), day.month(), 1);
    return firstOfMonth.addDays(1 - firstOfMonth.weekdayFromMonday());
}

QString kvCalendarPrinter::MonthCaption(const kvDate &date, const kvDate &first, const kvDate &last,
                                        int view, const QLocale &locale)
{
    if (view == Week && first.month() != last.month())
        return kv::Format(first, QStringLiteral("MMM"), locale) + QLatin1Char('/')
               + kv::Format(last, QStringLiteral("MMM"), locale) + QLatin1Char(' ') + yearText(last);
    return kv::Format(date, QStringLiteral("MMMM"), locale) + QLatin1Char(' ') + yearText(date);
}

kvCalendarPrinter::DayLoader kvCalendarPrinter::StoreLoader(kvAppointmentStore &store, uint backColor)
{
    // A page asks for its days in order: a day not after the last one asked for begins the
    // next page's grid loads. The last copy of the loader ends them.
    auto lastDay = std::shared_ptr<std::optional<kvDate>>(new std::optional<kvDate>, [&store](auto *day) {
        if (day->has_value())
            store.EndDayLoads();
        delete day;
    });
    return [&store, backColor, lastDay](const kvDate &day, ctlDay &cell) {
        if (!lastDay->has_value() || !(**lastDay < day))
            store.BeginDayLoads(day, MaxDayCount);
        *lastDay = day;
        const QString failure = store.LoadDayAppointments(day, kvDayCellFiller(cell, backColor));
        if (!failure.isEmpty())
            throw kvRuntimeError(kvPrinterService::PrinterErrorNumber, failure);
    };
}

kvCalendarPage::Day kvCalendarPrinter::LoadDay(const kvDate &day, ctlDay &cell) const
{
    cell.ClearDates();
    cell.Init(day, QString(), QString(), White, Black);
    if (m_job.LoadDay)
        RunLoader(day, cell);
    kvCalendarPage::Day printed;
    printed.Date = day;
    printed.HolidayName = m_job.PublicHoliday ? kv::GetPublicHolidayName(day) : QString();
    printed.OutsideMonth = m_job.PrintView == Month && day.month() != m_job.PrintDate.month();
    printed.Entries = EntriesOf(cell);
    return printed;
}

void kvCalendarPrinter::RunLoader(const kvDate &day, ctlDay &cell) const
{
    try {
        m_job.LoadDay(day, cell);
    } catch (const kvRuntimeError &) {
        throw;
    } catch (...) {
        throw kvRuntimeError(kvPrinterService::PrinterErrorNumber, kvErrorReporting::DescribeCurrentException());
    }
}

QList<kvCalendarPage::Entry> kvCalendarPrinter::EntriesOf(const ctlDay &cell)
{
    QList<kvCalendarPage::Entry> entries;
    for (int i = 1; i <= cell.EntriesCount(); ++i) {
        const ctlEntry *row = cell.Entries(kvInt16::fromInt(i));
        entries.append({row->Time(), row->Text()});
    }
    return entries;
}

QStringList kvCalendarPrinter::WeekdayNames() const
{
    QStringList names;
    for (int day = 1; day <= 7; ++day)
        names.append(kv::WeekdayName(day, false, m_job.Locale));
    return names;
}
