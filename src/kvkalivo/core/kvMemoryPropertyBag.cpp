#include "kvMemoryPropertyBag.h"

QVariant kvMemoryPropertyBag::ReadProperty(const QString &name, const QVariant &defaultValue) const
{
    m_readLog.append(name);
    const auto stored = m_values.constFind(name);
    return stored != m_values.cend() ? *stored : defaultValue;
}

void kvMemoryPropertyBag::WriteProperty(const QString &name, const QVariant &value,
                                        const QVariant &defaultValue)
{
    if (IsDefault(value, defaultValue))
        Remove(name);
    else
        SetValue(name, value);
}

void kvMemoryPropertyBag::SetValue(const QString &name, const QVariant &value)
{
    m_keys.removeOne(name);
    m_keys.append(name);
    m_values.insert(name, value);
}

void kvMemoryPropertyBag::Remove(const QString &name)
{
    m_keys.removeOne(name);
    m_values.remove(name);
}

void kvMemoryPropertyBag::Clear()
{
    m_values.clear();
    m_keys.clear();
    m_readLog.clear();
}
