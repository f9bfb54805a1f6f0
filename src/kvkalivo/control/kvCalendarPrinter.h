#pragma once

#include "kvCalendarPage.h"
#include "kvDate.h"
#include "kvFormat.h"
#include "kvkalivo_export.h"

#include <QLocale>
#include <QString>

#include <functional>

class QPagedPaintDevice;
class QWidget;
class ctlDay;
class kvAppointmentStore;

/*!
    \file kvCalendarPrinter.h
    \brief kvCalendarPrinter, the routine behind kvKalivo::PrintCalendar().
*/

/*!
    \brief Calendar printing (PrintCalendar): the week or the month around a date on one
    landscape A4 page, through kvPlatform::printerService().

    The days are those of the grid: the week is Monday .. Sunday of the date, the
    month 42 days from the Monday on or before the 1st. Each day is loaded into an offscreen
    ctlDay by the job's day loader, with the same queries the grid runs; its rows give the
    appointment lines. Every failure throws kvRuntimeError (the control reports code 300):
    the loader's own kvRuntimeError unchanged, any other exception as 482 with its text.

    \code
    kvCalendarPrinter printer({date, view, Footnote(), PublicHoliday(), locale(),
                               kvCalendarPrinter::StoreLoader(*m_store)});
    printer.Print(this);   // false: the user cancelled
    \endcode
*/
class KVKALIVO_TESTS_EXPORT kvCalendarPrinter
{
public:
    //! Fills \a cell, already Init-ed with \a day, with the day's appointments (AddDate).
    using DayLoader = std::function<void(const kvDate &day, ctlDay &cell)>;

    //! The kvView values.
    static constexpr int Week = 1;   //!< kvKalivo::kvWeek: one week, Monday to Sunday
    static constexpr int Month = 2;  //!< kvKalivo::kvMonth: 42 days around the month
    //! The days of the longest page, the month.
    static constexpr int MaxDayCount = 42;

    //! What to print.
    struct Job
    {
        kvDate PrintDate;           //!< any time of day; the day counts
        int PrintView = Month;      //!< Week (1) or Month (2)
        QString Footnote;           //!< kvKalivo's Footnote, at the foot of the page
        bool PublicHoliday = true;  //!< print the holiday names
        QLocale Locale = kv::DefaultLocale(); //!< month and weekday names
        DayLoader LoadDay;          //!< empty: no appointments
    };

    //! Throws kvRuntimeError 5 for a PrintView other than 1 or 2, or an invalid PrintDate.
    explicit kvCalendarPrinter(Job job);

    //! The job as given.
    const Job &job() const { return m_job; }
    //! The first printed day (see FirstDayOf()).
    kvDate FirstDay() const { return FirstDayOf(m_job.PrintDate, m_job.PrintView); }
    //! 7 for a week, 42 for a month.
    int DayCount() const { return m_job.PrintView == Week ? 7 : 42; }
    //! The page's caption: the grid's month caption ("November 2026", "Dez/Jan 2026").
    QString Caption() const;
    //! The print queue's name: "Kalender " + caption.
    QString DocumentName() const;

    //! Runs the day loader for every printed day and returns the page.
    kvCalendarPage LoadPage() const;
    //! Loads the page, then prints it; false when the user cancelled the print.
    bool Print(QWidget *parent = nullptr) const;

    //! Paints \a page on \a device as one page; throws 482 when the device cannot be painted.
    static void Render(const kvCalendarPage &page, QPagedPaintDevice &device);

    //! The first printed day: the Monday of the week, or the Monday on or before the 1st.
    static kvDate FirstDayOf(const kvDate &date, int view);
    //! The grid's month caption for the days \a first .. \a last around \a date.
    static QString MonthCaption(const kvDate &date, const kvDate &first, const kvDate &last, int view,
                                const QLocale &locale = kv::DefaultLocale());
    /*!
        A day loader running \a store's LoadDayAppointments (rows in \a backColor); the
        failure text it returns ("12-" step CR LF description) is thrown as kvRuntimeError 482.
        Each page's first day begins the store's grid loads for the page (one query for the
        page, as the grid runs it); the last copy of the loader ends them.
    */
    static DayLoader StoreLoader(kvAppointmentStore &store, uint backColor = 0xFFFFFFu);

private:
    kvCalendarPage::Day LoadDay(const kvDate &day, ctlDay &cell) const;
    void RunLoader(const kvDate &day, ctlDay &cell) const;
    static QList<kvCalendarPage::Entry> EntriesOf(const ctlDay &cell);
    QStringList WeekdayNames() const;

    Job m_job;
};
