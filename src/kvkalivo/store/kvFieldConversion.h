#pragma once

#include "kvkalivo_export.h"

#include <QString>
#include <QVariant>

/*!
    \brief The conversions of a field value (a QVariant) into the typed arguments of AddDate
    (dates: kvField::ToDate).

    A Null where a value is needed is error 94 ("Unzulässige Verwendung von Null"), a value that
    does not convert is error 13 ("Typen unverträglich"), a number out of range error 6
    ("Überlauf").
*/
class KVKALIVO_TESTS_EXPORT kvFieldConversion
{
public:
    static bool IsNull(const QVariant &value);
    //! Numbers, and text that reads as a number; Null is not numeric.
    static bool IsNumeric(const QVariant &value);

    //! Rounds halves to even; outside 32 bits (NaN and infinities too) is error 6.
    static qint32 ToLong(const QVariant &value);
    //! Rounds halves to even; outside 16 bits is error 6.
    static qint16 ToInteger(const QVariant &value);
    //! A String argument: Null is error 94.
    static QString ToText(const QVariant &value);
    //! The value appended to empty text: Null reads as empty text.
    static QString AppendedToEmpty(const QVariant &value);

private:
    static double ToNumber(const QVariant &value);
    static void RequireNotNull(const QVariant &value);
};
