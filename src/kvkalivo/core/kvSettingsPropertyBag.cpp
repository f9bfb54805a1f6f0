#include "kvSettingsPropertyBag.h"

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
    : m_settings(settings), m_group(group)
{
}

QString kvSettingsPropertyBag::Key(const QString &name) const
{
    return m_group.isEmpty() ? name : m_group + QLatin1Char('/') + name;
}

QString kvSettingsPropertyBag::DateText(kvDate date)
{
    const QString day = date.date().toString(QStringLiteral("yyyy-MM-dd"));
    if (date.secondsOfDay() == 0)
        return day;
    return day + QLatin1Char('T') + date.time().toString(QStringLiteral("HH:mm:ss"));
}

bool kvSettingsPropertyBag::IsReadable() const
{
    return m_settings && m_settings->status() == QSettings::NoError;
}

QVariant kvSettingsPropertyBag::ReadProperty(const QString &name, const QVariant &defaultValue) const
{
    if (!IsReadable())
        return defaultValue;
    const QString key = Key(name);
    return m_settings->contains(key) ? m_settings->value(key) : defaultValue;
}

void kvSettingsPropertyBag::WriteProperty(const QString &name, const QVariant &value,
                                          const QVariant &defaultValue)
{
    if (!m_settings)
        return;
    if (IsDefault(value, defaultValue))
        m_settings->remove(Key(name));
    else
        m_settings->setValue(Key(name), settingsValue(value));
}
