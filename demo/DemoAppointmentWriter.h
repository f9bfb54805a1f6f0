#pragma once

#include "DemoAppointment.h"

#include <QString>

class kvConnection;

/*!
    How the demo host writes an appointment itself when the control announces a change through
    DateNew, DateChange or DateDelete instead of writing it (RaiseDatabaseEvents).

    Every value is bound as a parameter; the optional columns Remark, Document and ImageID are
    written only where the table has them. Failures throw kvRuntimeError with the database's
    message.
*/
class DemoAppointmentWriter
{
public:
    DemoAppointmentWriter(kvConnection &connection, const QString &table);

    //! Inserts \a appointment; returns the new DateID, or 0 when the driver does not tell it.
    qint32 Insert(const DemoAppointment &appointment);
    void Update(const DemoAppointment &appointment);
    void Delete(qint32 dateId);

private:
    bool HasColumn(const QString &column) const;

    kvConnection &m_connection;
    QString m_table;
};
