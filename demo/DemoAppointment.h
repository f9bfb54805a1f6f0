#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

//! One appointment as the control's host events hand it over (the values the edit flow works on).
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
