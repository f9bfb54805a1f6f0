#pragma once

#include "kvPropertyBag.h"

#include <QHash>
#include <QStringList>

/*!
    \file kvMemoryPropertyBag.h
    \brief kvMemoryPropertyBag, a property bag in memory (tests, copies of a control's settings).
*/

/*!
    \brief A property bag in memory.

    Besides storing, it shows what a control did with it: the keys in the order they were
    read (ReadLog()) and the stored keys in the order of their latest write (Keys()).
*/
class KVKALIVO_TESTS_EXPORT kvMemoryPropertyBag : public kvPropertyBag
{
public:
    //! The stored value or \a defaultValue; appends \a name to ReadLog().
    QVariant ReadProperty(const QString &name, const QVariant &defaultValue) const override;
    //! Stores \a value, or removes the key when it equals \a defaultValue.
    void WriteProperty(const QString &name, const QVariant &value,
                       const QVariant &defaultValue) override;

    //! Stores \a value as it is, whatever its default; for preparing a bag in a test.
    void SetValue(const QString &name, const QVariant &value);
    //! Removes the key \a name, if stored.
    void Remove(const QString &name);

    //! Whether a value is stored under \a name (names are case-sensitive).
    bool Contains(const QString &name) const { return m_values.contains(name); }
    //! The stored value, or an invalid QVariant when the key is not stored.
    QVariant Value(const QString &name) const { return m_values.value(name); }
    //! The stored keys, in the order of their latest write.
    const QStringList &Keys() const { return m_keys; }
    //! Every key read so far, in reading order, repeats included.
    const QStringList &ReadLog() const { return m_readLog; }
    //! Empties ReadLog(); the stored values stay.
    void ClearReadLog() { m_readLog.clear(); }
    //! Removes every stored value and empties the read log.
    void Clear();

private:
    QHash<QString, QVariant> m_values;
    QStringList m_keys;
    mutable QStringList m_readLog;
};
