#pragma once

#include "kvDate.h"

#include <QString>
#include <QtGlobal>

//! One appointment's values as the writers take them: a row of the appointment table.
struct kvAppointmentValues
{
    qint32 DateID = 0;
    kvDate DateBegin;
    kvDate DateEnd;
    QString Name;
    QString Remark;
    QString Document;
    qint16 ImageID = 0;
};
