#include "kvField.h"

#include "kvAdoError.h"
#include "kvFormat.h"
#include "kvIsoDateText.h"

#include <QSharedData>

namespace {

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::LongLong: case QMetaType::ULongLong:
    case QMetaType::Double: case QMetaType::Float: case QMetaType::Short: case QMetaType::UShort:
        return true;
    default:
        return false;
    }
}

} // namespace

class kvFieldPrivate : public QSharedData
{
public:
    QString name;
    QVariant value;
    bool hasRecord = false;
};

kvField::kvField() : d(new kvFieldPrivate)
{
}

kvField::kvField(const QString &name, const QVariant &value, bool hasRecord) : d(new kvFieldPrivate)
{
    d->name = name;
    d->value = value;
    d->hasRecord = hasRecord;
}

kvField::kvField(const kvField &other) = default;
kvField::kvField(kvField &&other) noexcept = default;
kvField &kvField::operator=(const kvField &other) = default;
kvField &kvField::operator=(kvField &&other) noexcept = default;
kvField::~kvField() = default;

QString kvField::Name() const
{
    return d->name;
}

QVariant kvField::Value() const
{
    if (!d->hasRecord)
        throw kvAdoError::noCurrentRecord();
    return d->value;
}

bool kvField::IsNull() const
{
    const QVariant value = Value();
    return !value.isValid() || value.isNull();
}

kvDate kvField::ToDate(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        throw kvAdoError::invalidUseOfNull();
    const std::optional<kvDate> date = TryDate(value);
    if (!date)
        throw kvAdoError::typeMismatch();
    return *date;
}

std::optional<kvDate> kvField::TryDate(const QVariant &value)
{
    const std::optional<kvDate> date = AnyDate(value);
    if (date && !kvDate::isInRange(date->days()))
        return std::nullopt;
    return date;
}

std::optional<kvDate> kvField::AnyDate(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return std::nullopt;
    if (value.userType() == qMetaTypeId<kvDate>())
        return value.value<kvDate>();
    switch (value.typeId()) {
    case QMetaType::QDateTime: {
        // date() and time() give the wall clock as stored, even for a local time in a DST gap.
        const QDateTime dateTime = value.toDateTime();
        return dateTime.date().isValid() ? std::optional(kvDate::fromDateTime(dateTime)) : std::nullopt;
    }
    case QMetaType::QDate:
        return value.toDate().isValid() ? std::optional(kvDate::fromDate(value.toDate())) : std::nullopt;
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        const QString text = value.toString().trimmed();
        if (const std::optional<kvDate> iso = kvIsoDateText::Read(text))
            return iso;
        return kv::CDate(text);
    }
    default:
        break;
    }
    if (isNumber(value) && kvDate::isInRange(value.toDouble()))
        return kvDate::fromDays(value.toDouble());
    return std::nullopt;
}

QDateTime kvField::ToDateTime(const kvDate &date)
{
    return QDateTime(date.date(), date.time(), Qt::UTC);
}

QString kvField::ToDbText(const kvDate &date)
{
    return date.date().toString(QStringLiteral("yyyy-MM-dd")) + QLatin1Char(' ')
           + date.time().toString(QStringLiteral("HH:mm:ss"));
}

bool kvField::IsDbDateTimeText(const QString &text)
{
    return kvIsoDateText::IsDbDateTime(text);
}
