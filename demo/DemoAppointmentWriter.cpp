#include "DemoAppointmentWriter.h"

#include "kvConnection.h"
#include "kvDate.h"
#include "kvRecordset.h"

#include <QSqlRecord>
#include <QStringList>
#include <QVariantList>

namespace {

QVariant DateValue(const QDateTime &value)
{
    return QVariant::fromValue(kvDate::fromDateTime(value));
}

} // namespace

DemoAppointmentWriter::DemoAppointmentWriter(kvConnection &connection, const QString &table)
    : m_connection(connection)
    , m_table(table)
{
}

qint32 DemoAppointmentWriter::Insert(const DemoAppointment &appointment)
{
    kvRecordset recordset;
    recordset.Open(m_table, &m_connection, kvRecordset::adOpenKeyset, kvRecordset::adLockPessimistic,
                   kvRecordset::adCmdTable);
    recordset.AddNew();
    recordset.setValue(QStringLiteral("DateBegin"), DateValue(appointment.begin));
    recordset.setValue(QStringLiteral("DateEnd"), DateValue(appointment.end));
    recordset.setValue(QStringLiteral("Name"), appointment.name);
    if (HasColumn(QStringLiteral("Remark")))
        recordset.setValue(QStringLiteral("Remark"), appointment.remark);
    if (HasColumn(QStringLiteral("Document")))
        recordset.setValue(QStringLiteral("Document"), appointment.document);
    if (HasColumn(QStringLiteral("ImageID")))
        recordset.setValue(QStringLiteral("ImageID"), int(appointment.imageId));
    recordset.Update();
    const qint32 dateId = recordset.Fields()[QStringLiteral("DateID")].Value().toInt();
    recordset.Close();
    return dateId;
}

void DemoAppointmentWriter::Update(const DemoAppointment &appointment)
{
    QStringList assignments{QStringLiteral("DateBegin = ?"), QStringLiteral("DateEnd = ?"),
                            QStringLiteral("Name = ?")};
    QVariantList values{DateValue(appointment.begin), DateValue(appointment.end), appointment.name};
    if (HasColumn(QStringLiteral("Remark"))) {
        assignments << QStringLiteral("Remark = ?");
        values << appointment.remark;
    }
    if (HasColumn(QStringLiteral("Document"))) {
        assignments << QStringLiteral("Document = ?");
        values << appointment.document;
    }
    if (HasColumn(QStringLiteral("ImageID"))) {
        assignments << QStringLiteral("ImageID = ?");
        values << int(appointment.imageId);
    }
    values << appointment.dateId;
    m_connection.Execute(QStringLiteral("UPDATE %1 SET %2 WHERE DateID = ?")
                             .arg(m_table, assignments.join(QStringLiteral(", "))),
                         values);
}

void DemoAppointmentWriter::Delete(qint32 dateId)
{
    m_connection.Execute(QStringLiteral("DELETE FROM %1 WHERE DateID = ?").arg(m_table), {dateId});
}

bool DemoAppointmentWriter::HasColumn(const QString &column) const
{
    return m_connection.Database().record(m_table).indexOf(column) >= 0;
}
