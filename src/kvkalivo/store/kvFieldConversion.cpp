#include "kvFieldConversion.h"

#include "kvInt16.h"
#include "kvRuntimeError.h"

#include <QLocale>

#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr int TypeMismatch = 13;
constexpr int InvalidUseOfNull = 94;

kvRuntimeError typeMismatch()
{
    return kvRuntimeError(TypeMismatch, QStringLiteral("Typen unverträglich"));
}

std::optional<double> numberFromText(const QString &text)
{
    bool ok = false;
    double number = QLocale::c().toDouble(text.trimmed(), &ok);
    if (!ok)
        number = QLocale(QLocale::German, QLocale::Germany).toDouble(text.trimmed(), &ok);
    // QLocale reads "nan" and "inf"; IsNumeric() does not count them as numbers.
    return ok && std::isfinite(number) ? std::optional<double>(number) : std::nullopt;
}

bool isNumberType(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

} // namespace

bool kvFieldConversion::IsNull(const QVariant &value)
{
    return !value.isValid() || value.isNull();
}

bool kvFieldConversion::IsNumeric(const QVariant &value)
{
    if (IsNull(value))
        return false;
    if (isNumberType(value))
        return true;
    if (value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray)
        return numberFromText(value.toString()).has_value();
    return false;
}

qint32 kvFieldConversion::ToLong(const QVariant &value)
{
    const double rounded = std::nearbyint(ToNumber(value));
    if (!(rounded >= std::numeric_limits<qint32>::min() && rounded <= std::numeric_limits<qint32>::max()))
        throw kvRuntimeError::overflow();
    return qint32(rounded);
}

qint16 kvFieldConversion::ToInteger(const QVariant &value)
{
    return kvInt16::fromDouble(ToNumber(value));
}

QString kvFieldConversion::ToText(const QVariant &value)
{
    RequireNotNull(value);
    return value.toString();
}

QString kvFieldConversion::AppendedToEmpty(const QVariant &value)
{
    return IsNull(value) ? QString() : value.toString();
}

double kvFieldConversion::ToNumber(const QVariant &value)
{
    RequireNotNull(value);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? -1.0 : 0.0; // True is -1
    if (isNumberType(value))
        return value.toDouble();
    if (const std::optional<double> number = numberFromText(value.toString()))
        return *number;
    throw typeMismatch();
}

void kvFieldConversion::RequireNotNull(const QVariant &value)
{
    if (IsNull(value))
        throw kvRuntimeError(InvalidUseOfNull, QStringLiteral("Unzulässige Verwendung von Null"));
}
