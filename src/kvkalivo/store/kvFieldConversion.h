#pragma once

#include "kvkalivo_export.h"

#include <QString>
#include <QVariant>

/*!
    \brief VB's conversions of a field value (a Variant) into the typed arguments of AddDate
    (dates: kvField::ToDate).

    A Null where a value is needed is error 94 ("Unzulässige Verwendung von Null"), a value that
    does not convert is error 13 ("Typen unverträglich"), a number out of range error 6
    ("Überlauf"), as when VB passed rs!Field to a typed parameter.
*/
class KVKALIVO_TESTS_EXPORT kvFieldConversion
{
public:
    static bool IsNull(const QVariant &value);
    //! VB's IsNumeric: numbers, and text that reads as a number; Null is not numeric.
    static bool IsNumeric(const QVariant &value);

    //! CLng: rounds halves to even; outside 32 bits (NaN and infinities too) is error 6.
    static qint32 ToLong(const QVariant &value);
    //! CInt: rounds halves to even; outside 16 bits is error 6.
    static qint16 ToInteger(const QVariant &value);
    //! A String argument: Null is error 94.
    static QString ToText(const QVariant &value);
    //! "" & value: Null reads as empty text.
    static QString AppendedToEmpty(const QVariant &value);

private:
    static double ToNumber(const QVariant &value);
    static void RequireNotNull(const QVariant &value);
};
