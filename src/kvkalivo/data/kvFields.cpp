#include "kvFields.h"

#include "kvAdoError.h"

#include <QSharedData>

class kvFieldsPrivate : public QSharedData
{
public:
    QStringList names;
    QVariantList values;
    bool hasRecord = false;
};

kvFields::kvFields() : d(new kvFieldsPrivate)
{
}

kvFields::kvFields(const QStringList &names, const QVariantList &values, bool hasRecord) : d(new kvFieldsPrivate)
{
    d->names = names;
    d->values = values;
    d->hasRecord = hasRecord;
}

kvFields::kvFields(const kvFields &other) = default;
kvFields::kvFields(kvFields &&other) noexcept = default;
kvFields &kvFields::operator=(const kvFields &other) = default;
kvFields &kvFields::operator=(kvFields &&other) noexcept = default;
kvFields::~kvFields() = default;

int kvFields::Count() const
{
    return int(d->names.size());
}

QStringList kvFields::Names() const
{
    return d->names;
}

kvField kvFields::Item(int index) const
{
    if (index < 0 || index >= Count())
        throw kvAdoError::itemNotFound();
    return kvField(d->names.at(index), index < d->values.size() ? d->values.at(index) : QVariant(), d->hasRecord);
}

QVariant kvFields::Value(int index) const
{
    if (index < 0 || index >= Count())
        throw kvAdoError::itemNotFound();
    if (!d->hasRecord)
        throw kvAdoError::noCurrentRecord();
    return d->values.value(index);
}

kvField kvFields::Item(const QString &name) const
{
    return Item(IndexOf(name));
}

int kvFields::IndexOf(const QString &name) const
{
    for (int i = 0; i < d->names.size(); ++i) {
        if (d->names.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}
