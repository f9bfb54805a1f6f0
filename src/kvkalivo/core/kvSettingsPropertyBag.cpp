#include "kvSettingsPropertyBag.h"

#include <QPointer>
#include <QSettings>
#include <QSharedData>

class kvSettingsPropertyBagPrivate : public QSharedData
{
public:
    bool IsReadable() const { return settings && settings->status() == QSettings::NoError; }

    QPointer<QSettings> settings;
    QString group;
};

namespace {

// QSettings writes only some number types as plain text; the rest would become "@Variant(...)".
QVariant plainNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::Char:
    case QMetaType::SChar:
        return value.toLongLong();
    case QMetaType::UShort:
    case QMetaType::ULong:
    case QMetaType::UChar:
        return value.toULongLong();
    case QMetaType::Float:
        return value.toDouble();
    default:
        return value;
    }
}

QVariant settingsValue(const QVariant &value)
{
    if (!kvPropertyBag::IsDateValue(value))
        return plainNumber(value);
    const std::optional<kvDate> date = kvPropertyBag::ToDate(value);
    return date ? QVariant(kvSettingsPropertyBag::DateText(*date)) : QVariant(QString());
}

} // namespace

kvSettingsPropertyBag::kvSettingsPropertyBag(QSettings *settings, const QString &group)
    : d(new kvSettingsPropertyBagPrivate)
{
    d->settings = settings;
    d->group = group;
}

kvSettingsPropertyBag::kvSettingsPropertyBag(const kvSettingsPropertyBag &other) = default;
kvSettingsPropertyBag::kvSettingsPropertyBag(kvSettingsPropertyBag &&other) noexcept = default;
kvSettingsPropertyBag &kvSettingsPropertyBag::operator=(const kvSettingsPropertyBag &other) = default;
kvSettingsPropertyBag &kvSettingsPropertyBag::operator=(kvSettingsPropertyBag &&other) noexcept = default;
kvSettingsPropertyBag::~kvSettingsPropertyBag() = default;

QSettings *kvSettingsPropertyBag::Settings() const
{
    return d->settings;
}

QString kvSettingsPropertyBag::Group() const
{
    return d->group;
}

QString kvSettingsPropertyBag::Key(const QString &name) const
{
    return d->group.isEmpty() ? name : d->group + QLatin1Char('/') + name;
}

QString kvSettingsPropertyBag::DateText(kvDate date)
{
    const QString day = date.date().toString(QStringLiteral("yyyy-MM-dd"));
    if (date.secondsOfDay() == 0)
        return day;
    return day + QLatin1Char('T') + date.time().toString(QStringLiteral("HH:mm:ss"));
}

QVariant kvSettingsPropertyBag::ReadProperty(const QString &name, const QVariant &defaultValue) const
{
    if (!d->IsReadable())
        return defaultValue;
    const QString key = Key(name);
    return d->settings->contains(key) ? d->settings->value(key) : defaultValue;
}

void kvSettingsPropertyBag::WriteProperty(const QString &name, const QVariant &value,
                                          const QVariant &defaultValue)
{
    if (!d->settings)
        return;
    if (IsDefault(value, defaultValue))
        d->settings->remove(Key(name));
    else
        d->settings->setValue(Key(name), settingsValue(value));
}
