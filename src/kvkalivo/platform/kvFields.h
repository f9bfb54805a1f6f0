#pragma once

#include "kvField.h"
#include "kvkalivo_export.h"

#include <QStringList>
#include <QVariantList>

/*!
    \brief The Fields collection of a recordset's current row.

    Names are looked up case-insensitively; an unknown name or an index out of range throws
    kvRuntimeError 3265. The names are there even without a current record (EOF), so that
    the column probe of Part 2.1 works on an empty table.
*/
class KVKALIVO_EXPORT kvFields
{
public:
    kvFields() = default;
    kvFields(const QStringList &names, const QVariantList &values, bool hasRecord);

    int Count() const { return int(m_names.size()); }
    kvField Item(int index) const;
    kvField Item(const QString &name) const;
    kvField operator[](const QString &name) const { return Item(name); }
    kvField operator[](int index) const { return Item(index); }

    //! The index of \a name (case-insensitive), or -1.
    int IndexOf(const QString &name) const;
    QStringList Names() const { return m_names; }

private:
    QStringList m_names;
    QVariantList m_values;
    bool m_hasRecord = false;
};
