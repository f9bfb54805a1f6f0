#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

/*!
    \file kvCalendarPage.h
    \brief kvCalendarPage, one printed calendar page: its content and how it is painted.
*/

/*!
    \brief One printed page of the calendar: what kvCalendarPrinter loaded, and how it looks.

    Days holds the week (7 days) or the month (42 days) Monday first, seven per row. Paint()
    draws, black on white: the caption on top, the weekday names, one box per day with its
    date ("23.11."), holiday name and appointment lines ("hh:nn Name"), the calendar week
    ("47. KW") left of each row and the footnote at the foot. Sizes are in millimetres and
    points, so the page looks the same on every device resolution.
*/
class KVKALIVO_TESTS_EXPORT kvCalendarPage
{
public:
    //! One appointment line: the row's shown time ("" all day, "<--" continued) and name.
    struct Entry
    {
        QString Time;   //!< "hh:nn", "" for a whole-day appointment, "<--" for a continued one
        QString Text;   //!< the appointment's name
    };

    //! One day's box.
    struct Day
    {
        kvDate Date;                //!< the day (no time of day)
        QString HolidayName;        //!< kv::GetPublicHolidayName(), or empty
        bool OutsideMonth = false;  //!< a day of a neighbouring month in the month view
        QList<Entry> Entries;       //!< the appointment lines, in DateBegin order
    };

    QString Caption;            //!< "November 2026", "Dez/Jan 2026"
    QStringList WeekdayNames;   //!< Monday to Sunday
    QList<Day> Days;            //!< 7 (week) or 42 (month) days, Monday first
    QString Footnote;           //!< at the foot of the page, up to two lines

    //! 1 for a week, 6 for a month: seven days per row.
    int Rows() const { return int(Days.size()) / 7; }
    //! True for the week view: one tall row, larger type.
    bool IsWeek() const { return Rows() == 1; }

    //! Paints the page into \a pageRect (device pixels of the painter's device).
    void Paint(QPainter &painter, const QRectF &pageRect) const;

    //! The text of a box's date label.
    static QString DateLabel(const kvDate &day);
    //! The last line of a full box: "+ N weitere".
    static QString MoreLine(int hidden);
};
