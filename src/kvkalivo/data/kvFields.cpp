#include "kvFields.h"

#include "kvAdoError.h"

kvFields::kvFields(const QStringList &names, const QVariantList &values, bool hasRecord)
    : m_names(names), m_values(values), m_hasRecord(hasRecord)
{
}

kvField kvFields::Item(int index) const
{
    if (index < 0 || index >= Count())
        throw kvAdoError::itemNotFound();
    return kvField(m_names.at(index), index < m_values.size() ? m_values.at(index) : QVariant(), m_hasRecord);
}

kvField kvFields::Item(const QString &name) const
{
    return Item(IndexOf(name));
}

int kvFields::IndexOf(const QString &name) const
{
    for (int i = 0; i < m_names.size(); ++i) {
        if (m_names.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}
