#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QSharedDataPointer>
#include <QString>
#include <QVariant>

#include <optional>

class kvFieldPrivate;

/*!
    \file kvField.h
    \brief kvField, one field of a recordset's current row, and the date conversions of the data layer.
*/

/*!
    \brief One field of a recordset's current row, as ADO's Field: Name and Value.

    Null is a null QVariant. Date and time columns arrive as QDateTime in Qt::UTC, used only
    as a carrier of the database's naive wall-clock value: 02:30 stored is 02:30 read, in any
    time zone. Without a current record (EOF) a field still has its Name, but reading its Value
    throws kvRuntimeError 3021, as ADO does.
*/
class KVKALIVO_EXPORT kvField
{
public:
    //! A field without name and record.
    kvField();
    //! The field \a name with \a value; \a hasRecord false stands for EOF.
    kvField(const QString &name, const QVariant &value, bool hasRecord = true);
    //! A copy: copies share their data until one of them changes.
    kvField(const kvField &other);
    //! Takes over \a other's data; \a other may then only be assigned to or destroyed.
    kvField(kvField &&other) noexcept;
    //! Makes this a copy of \a other.
    kvField &operator=(const kvField &other);
    //! Takes over \a other's data.
    kvField &operator=(kvField &&other) noexcept;
    ~kvField();

    //! The column name as the engine reports it.
    QString Name() const;
    //! The value; a null QVariant for Null. Throws kvRuntimeError 3021 at EOF.
    QVariant Value() const;
    //! Whether Value() is Null. Throws 3021 at EOF.
    bool IsNull() const;
    //! Value() as a date: see ToDate().
    kvDate DateValue() const { return ToDate(Value()); }

    /*!
        Any date-like value as a kvDate, without a time-zone shift: kvDate; QDateTime
        and QDate (their wall-clock date and time as they read, whatever their time zone);
        ISO text "yyyy-mm-dd[ hh:nn[:ss[.fff]]]" (also with "T", a zone suffix is ignored) or
        text CDate reads; a number of OLE days. Only Dates from 100-01-01 to 9999-12-31 are
        read: throws kvRuntimeError 94 for Null and 13 for anything else, a value outside
        that range included (it is never converted).
    */
    static kvDate ToDate(const QVariant &value);
    //! As ToDate(), but std::nullopt instead of throwing.
    static std::optional<kvDate> TryDate(const QVariant &value);
    //! The carrier the data layer returns dates in: \a date's wall clock in a QDateTime in UTC.
    static QDateTime ToDateTime(const kvDate &date);
    //! ISO text with a blank, as written into SQLite and MariaDB: "yyyy-MM-dd hh:mm:ss".
    static QString ToDbText(const kvDate &date);
    //! Whether \a text is exactly an ISO date and time as ToDbText() writes it (seconds optional).
    static bool IsDbDateTimeText(const QString &text);

private:
    //! TryDate() without the range check.
    static std::optional<kvDate> AnyDate(const QVariant &value);

    QSharedDataPointer<kvFieldPrivate> d;
};
