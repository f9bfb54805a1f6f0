#pragma once

#include "kvPropertyBag.h"

#include <QHash>
#include <QStringList>

/*!
    \brief A property bag in memory.

    Besides storing, it shows what a control did with it: the keys in the order they were
    read (ReadLog()) and the stored keys in the order of their latest write (Keys()).
*/
class KVKALIVO_EXPORT kvMemoryPropertyBag : public kvPropertyBag
{
public:
    QVariant ReadProperty(const QString &name, const QVariant &defaultValue) const override;
    void WriteProperty(const QString &name, const QVariant &value,
                       const QVariant &defaultValue) override;

    //! Stores \a value as it is, whatever its default; for preparing a bag in a test.
    void SetValue(const QString &name, const QVariant &value);
    void Remove(const QString &name);

    bool Contains(const QString &name) const { return m_values.contains(name); }
    //! The stored value, or an invalid QVariant when the key is not stored.
    QVariant Value(const QString &name) const { return m_values.value(name); }
    const QStringList &Keys() const { return m_keys; }
    const QStringList &ReadLog() const { return m_readLog; }
    void ClearReadLog() { m_readLog.clear(); }
    //! Removes every stored value and empties the read log.
    void Clear();

private:
    QHash<QString, QVariant> m_values;
    QStringList m_keys;
    mutable QStringList m_readLog;
};
