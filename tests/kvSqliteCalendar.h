#pragma once

#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvKalivo.h"
#include "kvRecordset.h"

#include <QSize>
#include <QStringList>
#include <QTemporaryDir>

/*!
    A shown kvKalivo on a fresh SQLite appointment table "Termine" (ParameterizedSql on), with
    every SQL text the connection sends recorded in \c statements.
*/
struct kvSqliteCalendar
{
    explicit kvSqliteCalendar(QSize size = QSize(1000, 700))
    {
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db"))));
        kvAppointmentTable::Create(connection, QStringLiteral("Termine"));
        control.setParameterizedSql(true);
        control.setRecordSource(QStringLiteral("Termine"));
        control.setConnection(&connection);
        control.resize(size);
        control.show();
        QObject::connect(&connection, &kvConnection::StatementExecuted,
                         [this](const QString &sql) { statements << sql; });
    }

    void add(const kvDate &begin, const kvDate &end, const QString &name, int imageId = 0)
    {
        kvRecordset recordset;
        recordset.Open(QStringLiteral("Termine"), &connection, 1, 2, 2);
        recordset.AddNew();
        recordset.setValue(QStringLiteral("DateBegin"), QVariant::fromValue(begin.toDateTime()));
        recordset.setValue(QStringLiteral("DateEnd"), QVariant::fromValue(end.toDateTime()));
        recordset.setValue(QStringLiteral("Name"), name);
        recordset.setValue(QStringLiteral("ImageID"), imageId);
        recordset.Update();
        recordset.Close();
    }

    QTemporaryDir folder;
    kvConnection connection;
    kvKalivo control;
    QStringList statements;
};
