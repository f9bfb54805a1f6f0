#pragma once

#include "kvField.h"
#include "kvkalivo_export.h"

#include <QSharedDataPointer>
#include <QStringList>
#include <QVariantList>

class kvFieldsPrivate;

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
    kvFields();
    //! The fields \a names with \a values (same order); \a hasRecord false stands for EOF.
    kvFields(const QStringList &names, const QVariantList &values, bool hasRecord);
    //! A copy: copies share their data until one of them changes.
    kvFields(const kvFields &other);
    //! Takes over \a other's data; \a other may then only be assigned to or destroyed.
    kvFields(kvFields &&other) noexcept;
    //! Makes this a copy of \a other.
    kvFields &operator=(const kvFields &other);
    //! Takes over \a other's data.
    kvFields &operator=(kvFields &&other) noexcept;
    ~kvFields();

    //! The number of columns.
    int Count() const;
    //! The field at \a index, 0 .. Count() - 1; throws 3265 outside.
    kvField Item(int index) const;
    //! The field called \a name (case-insensitive); throws 3265 when there is none.
    kvField Item(const QString &name) const;
    //! Item(\a name): fields["Name"].
    kvField operator[](const QString &name) const { return Item(name); }
    //! Item(\a index): fields[0].
    kvField operator[](int index) const { return Item(index); }

    //! Item(\a index).Value() without making the kvField: throws 3265 outside, 3021 at EOF.
    QVariant Value(int index) const;

    //! The index of \a name (case-insensitive), or -1.
    int IndexOf(const QString &name) const;
    //! The column names, in column order.
    QStringList Names() const;

private:
    QSharedDataPointer<kvFieldsPrivate> d;
};
