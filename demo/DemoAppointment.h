#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

//! One appointment as the control's host events hand it over (Part 2.3's working values).
struct DemoAppointment
{
    qint32 dateId = 0;
    QDateTime begin;
    QDateTime end;
    QString name;
    QString remark;
    QString document;
    qint16 imageId = 0;
};
