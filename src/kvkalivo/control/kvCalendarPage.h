#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

/*!
    \brief One printed page of the calendar: what kvCalendarPrinter loaded, and how it looks.

    Days holds the week (7 days) or the month (42 days) Monday first, seven per row. Paint()
    draws, black on white: the caption on top, the weekday names, one box per day with its
    date ("23.11."), holiday name and appointment lines ("hh:nn Name"), the calendar week
    ("47. KW") left of each row and the footnote at the foot. Sizes are in millimetres and
    points, so the page looks the same on every device resolution.
*/
class KVKALIVO_EXPORT kvCalendarPage
{
public:
    //! One appointment line: the row's shown time ("" all day, "<--" continued) and name.
    struct Entry
    {
        QString Time;
        QString Text;
    };

    struct Day
    {
        kvDate Date;
        QString HolidayName;
        bool OutsideMonth = false;  //!< a day of a neighbouring month in the month view
        QList<Entry> Entries;
    };

    QString Caption;            //!< "November 2026", "Dez/Jan 2026"
    QStringList WeekdayNames;   //!< Monday .. Sunday
    QList<Day> Days;
    QString Footnote;           //!< at the foot of the page, up to two lines

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
