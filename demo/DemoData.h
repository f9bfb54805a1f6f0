#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTime>

class kvConnection;

/*!
    The demo's sample calendar: a realistic German calendar of a working person with a family,
    from the first day of the month three months before an anchor date to the last day of the
    month three months after it.

    Every day's appointments are drawn from a generator seeded with that day's date (and the
    month's events, holidays, birthdays and vacations with the month's), so a given date always
    gets the same appointments, whatever the anchor and whenever they are made: a screenshot
    for a given --date is stable.

    Appointments are written through the library's public data layer (kvRecordset AddNew,
    setValue, Update on the table) inside one database transaction.
*/
class DemoData
{
public:
    struct Appointment
    {
        QDate beginDate;
        QTime beginTime;
        QDate endDate;     // an all-day appointment: 00:00 of its first day to 00:00 of its
        QTime endTime;     // last day, as the control's editor writes it
        QString name;
        QString remark;
        QString document;  // a file name in the document folder, or empty
        int imageId = 0;   // 0: no icon

        bool isAllDay() const;
        bool isMultiDay() const;
    };

    //! How many appointments of which kind were made.
    struct Summary
    {
        int appointments = 0;
        int allDay = 0;
        int multiDay = 0;
        int withIcon = 0;
        int withRemark = 0;
        int withDocument = 0;

        static Summary Of(const QList<Appointment> &appointments);
        //! "339 appointments: 14 all-day, 11 over several days, …"
        QString Text() const;
    };

    //! The first and the last day of the sample calendar around \a anchor.
    static QDate FirstDay(QDate anchor);
    static QDate LastDay(QDate anchor);

    //! The appointments of the sample calendar around \a anchor, ordered by begin.
    static QList<Appointment> Generate(QDate anchor);

    //! True when \a table holds no row.
    static bool IsEmpty(kvConnection &connection, const QString &table);

    /*!
        Writes the documents into \a documentFolder and inserts the sample calendar around
        \a anchor into \a table, in one transaction; with \a clearFirst the table's rows are
        deleted first, in the same transaction. Returns what was inserted.
        Throws kvRuntimeError (the database's message) when a statement fails; the
        transaction is then rolled back.
    */
    static Summary Fill(kvConnection &connection, const QString &table, QDate anchor,
                    const QString &documentFolder, bool clearFirst = false);

    //! Writes the small documents the sample appointments link to; returns false on failure.
    static bool WriteDocuments(const QString &documentFolder, QString *error);
    //! The file names of those documents.
    static QStringList DocumentNames();
};
