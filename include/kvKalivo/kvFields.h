#pragma once

#include "kvField.h"
#include "kvkalivo_export.h"

#include <QStringList>
#include <QVariantList>

/*!
    \file kvFields.h
    \brief kvFields, the Fields collection of a recordset's current row.
*/

/*!
    \brief The Fields collection of a recordset's current row.

    Names are looked up case-insensitively; an unknown name or an index out of range throws
    kvRuntimeError 3265. The names are there even without a current record (EOF), so that
    the column probe works on an empty table.
*/
class KVKALIVO_EXPORT kvFields
{
public:
    //! No fields.
    kvFields() = default;
    //! The fields \a names with \a values (same order); \a hasRecord false stands for EOF.
    kvFields(const QStringList &names, const QVariantList &values, bool hasRecord);

    //! The number of columns.
    int Count() const { return int(m_names.size()); }
    //! The field at \a index, 0 .. Count() - 1; throws 3265 outside.
    kvField Item(int index) const;
    //! The field called \a name (case-insensitive); throws 3265 when there is none.
    kvField Item(const QString &name) const;
    //! Item(\a name): fields["Name"].
    kvField operator[](const QString &name) const { return Item(name); }
    //! Item(\a index): fields[0].
    kvField operator[](int index) const { return Item(index); }

    //! The index of \a name (case-insensitive), or -1.
    int IndexOf(const QString &name) const;
    //! The column names, in column order.
    QStringList Names() const { return m_names; }

private:
    QStringList m_names;
    QVariantList m_values;
    bool m_hasRecord = false;
};
