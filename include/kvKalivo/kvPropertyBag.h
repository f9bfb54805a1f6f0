#pragma once

#include "kvDate.h"
#include "kvkalivo_export.h"

#include <QString>
#include <QVariant>

#include <optional>

/*!
    \file kvPropertyBag.h
    \brief kvPropertyBag, where kvKalivo::ReadProperties() and WriteProperties() keep the properties.
*/

/*!
    \brief The property store a host saves the control's properties in.

    A missing key reads as the default given; writing a value equal to its default stores
    nothing and removes a stale stored value. The typed readers serve the control's
    ReadProperties: each returns the fallback when the key is missing or its stored value has
    the wrong type, does not parse or does not fit the type.

    Implementations: kvMemoryPropertyBag (in memory, for tests and copies) and
    kvSettingsPropertyBag (over a host's QSettings).
*/
class KVKALIVO_EXPORT kvPropertyBag
{
public:
    virtual ~kvPropertyBag();

    //! The value stored under \a name, or \a defaultValue when there is none.
    virtual QVariant ReadProperty(const QString &name, const QVariant &defaultValue) const = 0;
    /*!
        Stores \a value under \a name; when it equals \a defaultValue (IsDefault()) the key is
        removed instead, so that only values that differ from their default are saved.
    */
    virtual void WriteProperty(const QString &name, const QVariant &value,
                               const QVariant &defaultValue) = 0;

    //! A 32-bit Long; unsigned values up to 0xFFFFFFFF are taken as their 32-bit pattern (OLE_COLOR).
    qint32 ReadLong(const QString &name, qint32 fallback) const;
    //! A 16-bit Integer; values outside -32768..32767 give the fallback.
    qint16 ReadInteger(const QString &name, qint16 fallback) const;
    //! A Boolean, as ToBoolean() reads it.
    bool ReadBoolean(const QString &name, bool fallback) const;
    //! A String, as ToString() reads it.
    QString ReadString(const QString &name, const QString &fallback) const;
    //! A Date, as ToDate() reads it.
    kvDate ReadDate(const QString &name, kvDate fallback) const;

    /*!
        Whether \a value counts as equal to \a defaultValue, as WriteProperty() compares them
        before storing: numbers by value (an unsigned 32-bit value equals its signed pattern),
        dates by value whatever their type, True equals -1.
    */
    static bool IsDefault(const QVariant &value, const QVariant &defaultValue);

    //! Integers, integral doubles and numeric text: decimal, or hexadecimal as "0x..." or "&H...".
    static std::optional<qint32> ToLong(const QVariant &value);
    //! As ToLong(), within -32768 .. 32767.
    static std::optional<qint16> ToInteger(const QVariant &value);
    //! bool, -1/0/1 as numbers or text, and "true"/"false" in any case.
    static std::optional<bool> ToBoolean(const QVariant &value);
    //! Text, a list of texts (an INI value with commas) joined with ", ", or a number.
    static std::optional<QString> ToString(const QVariant &value);
    //! kvDate, QDate, QDateTime, ISO 8601 text or an OLE day number, within the years 100 to 9999.
    static std::optional<kvDate> ToDate(const QVariant &value);
    //! Whether \a value holds a date type (kvDate, QDate, QDateTime), not text or a number.
    static bool IsDateValue(const QVariant &value);
};
