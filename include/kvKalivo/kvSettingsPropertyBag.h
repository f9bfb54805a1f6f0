#pragma once

#include "kvPropertyBag.h"
#include "kvkalivo_export.h"

#include <QSharedDataPointer>
#include <QString>

class QSettings;
class kvSettingsPropertyBagPrivate;

/*!
    \file kvSettingsPropertyBag.h
    \brief kvSettingsPropertyBag, a property bag over the host's QSettings.
*/

/*!
    \brief A property bag over a QSettings that the host owns, optionally under a group.

    Values are written so that an INI file stays readable and editable: dates as ISO text
    ("2024-03-31", or "2024-03-31T14:05:00" with a time), Booleans as true/false, numbers as
    numbers. When the settings cannot be read (QSettings::status() is not NoError) every read
    gives its default.
*/
class KVKALIVO_EXPORT kvSettingsPropertyBag : public kvPropertyBag
{
public:
    /*!
        A bag over \a settings (not owned; watched, so a deleted QSettings reads as empty)
        that keeps the properties under \a group ("kvKalivo/View"), or at the top level when
        \a group is empty.
    */
    explicit kvSettingsPropertyBag(QSettings *settings, const QString &group = QString());
    //! A bag over the same settings and group.
    kvSettingsPropertyBag(const kvSettingsPropertyBag &other);
    //! Takes over \a other's data; \a other may then only be assigned to or destroyed.
    kvSettingsPropertyBag(kvSettingsPropertyBag &&other) noexcept;
    //! Makes this a copy of \a other.
    kvSettingsPropertyBag &operator=(const kvSettingsPropertyBag &other);
    //! Takes over \a other's data.
    kvSettingsPropertyBag &operator=(kvSettingsPropertyBag &&other) noexcept;
    ~kvSettingsPropertyBag() override;

    //! The value under Key(\a name), or \a defaultValue when it is missing or unreadable.
    QVariant ReadProperty(const QString &name, const QVariant &defaultValue) const override;
    //! Writes \a value under Key(\a name), or removes the key when it equals \a defaultValue.
    void WriteProperty(const QString &name, const QVariant &value,
                       const QVariant &defaultValue) override;

    //! The QSettings written to; null once the host deleted it.
    QSettings *Settings() const;
    //! The settings group the keys are under; empty for the top level.
    QString Group() const;
    //! The settings key of a property: "group/name", or the name when there is no group.
    QString Key(const QString &name) const;

    //! A date as it is written: "yyyy-MM-dd", with "THH:mm:ss" when it has a time of day.
    static QString DateText(kvDate date);

private:
    QSharedDataPointer<kvSettingsPropertyBagPrivate> d;
};
