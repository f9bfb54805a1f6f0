#include "kvPropertyBag.h"

#include <QStringList>

#include <cmath>
#include <limits>

namespace {

bool isIntegral(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isFloating(const QVariant &value)
{
    return value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float;
}

bool isText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray;
}

std::optional<qint64> integralFromText(const QString &text)
{
    const QString trimmed = text.trimmed();
    bool ok = false;
    qint64 result = 0;
    if (trimmed.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)
        || trimmed.startsWith(QLatin1String("&H"), Qt::CaseInsensitive)) {
        const quint64 bits = trimmed.mid(2).toULongLong(&ok, 16);
        ok = ok && bits <= quint64(std::numeric_limits<qint64>::max());
        result = qint64(bits);
    } else {
        result = trimmed.toLongLong(&ok, 10);
    }
    return ok ? std::optional<qint64>(result) : std::nullopt;
}

std::optional<qint64> integralFromDouble(double number)
{
    // Only whole numbers that a double holds exactly: 1.5 does not parse as a Long.
    constexpr double exactLimit = 9007199254740992.0;
    if (!std::isfinite(number) || std::trunc(number) != number || std::fabs(number) > exactLimit)
        return std::nullopt;
    return qint64(number);
}

std::optional<qint64> integralValue(const QVariant &value)
{
    if (value.typeId() == QMetaType::ULongLong || value.typeId() == QMetaType::ULong) {
        const quint64 unsignedValue = value.toULongLong();
        if (unsignedValue > quint64(std::numeric_limits<qint64>::max()))
            return std::nullopt;
        return qint64(unsignedValue);
    }
    if (isIntegral(value))
        return value.toLongLong();
    if (isFloating(value))
        return integralFromDouble(value.toDouble());
    if (isText(value))
        return integralFromText(value.toString());
    return std::nullopt;
}

// Values that fit 32 bits, signed or unsigned, compared by their bit pattern.
qint64 normalisedInteger(qint64 value)
{
    if (value >= std::numeric_limits<qint32>::min() && value <= std::numeric_limits<quint32>::max())
        return static_cast<qint32>(static_cast<quint32>(value));
    return value;
}

std::optional<kvDate> dateInRange(kvDate date)
{
    if (!kvDate::isInRange(date.days()))
        return std::nullopt;
    return date;
}

std::optional<kvDate> dateFromDays(double days)
{
    return kvDate::isInRange(days) ? std::optional(kvDate::fromDays(days)) : std::nullopt;
}

std::optional<kvDate> dateFromText(const QString &text)
{
    QString trimmed = text.trimmed();
    if (trimmed.size() == 10) {
        const QDate date = QDate::fromString(trimmed, Qt::ISODate);
        if (date.isValid())
            return dateInRange(kvDate::fromDate(date));
    }
    if (trimmed.size() > 10 && trimmed.at(10) == QLatin1Char(' '))
        trimmed[10] = QLatin1Char('T');
    const QDateTime dateTime = QDateTime::fromString(trimmed, Qt::ISODate);
    if (dateTime.isValid())
        return dateInRange(kvDate::fromDateTime(dateTime));

    bool ok = false;
    const double days = trimmed.toDouble(&ok);
    return ok ? dateFromDays(days) : std::nullopt;
}

} // namespace

kvPropertyBag::~kvPropertyBag() = default;

qint32 kvPropertyBag::ReadLong(const QString &name, qint32 fallback) const
{
    return ToLong(ReadProperty(name, fallback)).value_or(fallback);
}

qint16 kvPropertyBag::ReadInteger(const QString &name, qint16 fallback) const
{
    return ToInteger(ReadProperty(name, fallback)).value_or(fallback);
}

bool kvPropertyBag::ReadBoolean(const QString &name, bool fallback) const
{
    return ToBoolean(ReadProperty(name, fallback)).value_or(fallback);
}

QString kvPropertyBag::ReadString(const QString &name, const QString &fallback) const
{
    return ToString(ReadProperty(name, fallback)).value_or(fallback);
}

kvDate kvPropertyBag::ReadDate(const QString &name, kvDate fallback) const
{
    return ToDate(ReadProperty(name, QVariant::fromValue(fallback))).value_or(fallback);
}

std::optional<qint32> kvPropertyBag::ToLong(const QVariant &value)
{
    const std::optional<qint64> integer = integralValue(value);
    if (!integer || *integer < std::numeric_limits<qint32>::min()
        || *integer > std::numeric_limits<quint32>::max())
        return std::nullopt;
    return static_cast<qint32>(static_cast<quint32>(*integer));
}

std::optional<qint16> kvPropertyBag::ToInteger(const QVariant &value)
{
    const std::optional<qint64> integer = integralValue(value);
    if (!integer || *integer < std::numeric_limits<qint16>::min()
        || *integer > std::numeric_limits<qint16>::max())
        return std::nullopt;
    return static_cast<qint16>(*integer);
}

std::optional<bool> kvPropertyBag::ToBoolean(const QVariant &value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (isText(value)) {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
            return false;
    }
    const std::optional<qint64> integer = integralValue(value);
    if (!integer || *integer < -1 || *integer > 1)
        return std::nullopt;
    return *integer != 0;
}

std::optional<QString> kvPropertyBag::ToString(const QVariant &value)
{
    if (isText(value))
        return value.toString();
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", "));
    if (isIntegral(value) || isFloating(value))
        return value.toString();
    return std::nullopt;
}

bool kvPropertyBag::IsDateValue(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<kvDate>()
           || value.typeId() == QMetaType::QDate || value.typeId() == QMetaType::QDateTime;
}

std::optional<kvDate> kvPropertyBag::ToDate(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<kvDate>())
        return dateInRange(value.value<kvDate>());
    if (value.typeId() == QMetaType::QDate) {
        const QDate date = value.toDate();
        return date.isValid() ? dateInRange(kvDate::fromDate(date)) : std::nullopt;
    }
    if (value.typeId() == QMetaType::QDateTime) {
        const QDateTime dateTime = value.toDateTime();
        return dateTime.isValid() ? dateInRange(kvDate::fromDateTime(dateTime)) : std::nullopt;
    }
    if (isIntegral(value) || isFloating(value)) {
        return dateFromDays(value.toDouble());
    }
    if (isText(value))
        return dateFromText(value.toString());
    return std::nullopt;
}

bool kvPropertyBag::IsDefault(const QVariant &value, const QVariant &defaultValue)
{
    if (!value.isValid() || !defaultValue.isValid())
        return value.isValid() == defaultValue.isValid();
    if (IsDateValue(value) || IsDateValue(defaultValue)) {
        const std::optional<kvDate> date = ToDate(value);
        return date && date == ToDate(defaultValue);
    }
    if (value.typeId() == QMetaType::Bool || defaultValue.typeId() == QMetaType::Bool) {
        const std::optional<bool> boolean = ToBoolean(value);
        return boolean && boolean == ToBoolean(defaultValue);
    }
    if (isIntegral(value) && isIntegral(defaultValue)) {
        const std::optional<qint64> a = integralValue(value);
        const std::optional<qint64> b = integralValue(defaultValue);
        return a && b && normalisedInteger(*a) == normalisedInteger(*b);
    }
    if ((isIntegral(value) || isFloating(value)) && (isIntegral(defaultValue) || isFloating(defaultValue)))
        return value.toDouble() == defaultValue.toDouble();
    return value == defaultValue;
}
