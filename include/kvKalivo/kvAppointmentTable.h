#pragma once

#include "kvkalivo_export.h"

#include <QString>
#include <QStringList>

class kvConnection;

/*!
    \file kvAppointmentTable.h
    \brief kvAppointmentTable: creates the appointment table a kvKalivo reads and writes.
*/

/*!
    \brief Creates the appointment table for the connected engine.

    Columns DateID (key filled by the database), DateBegin, DateEnd, Name and, with
    \a withOptionalColumns, Remark, Document and ImageID; plus one index on DateBegin and one
    on DateEnd for the per-day query, and on SQLite one on the appointments' durations, from
    which a month or week finds its longest appointment without reading the whole table
    (tables without it work alike, only slower). Engines: "SQLite", "MariaDB" (or "MySQL"), "SQLServer"
    and "Access" (case-insensitive); another name throws kvRuntimeError 3001.
*/
class KVKALIVO_EXPORT kvAppointmentTable
{
    // Only static functions and no state: nothing to hide behind a d-pointer.
public:
    //! Runs CreateTableSql() for \a connection's engine, statement by statement, with Execute; 3709 when closed.
    static void Create(kvConnection &connection, const QString &tableName, bool withOptionalColumns = true);
    //! The CREATE TABLE and CREATE INDEX statements for \a engine.
    static QStringList CreateTableSql(const QString &engine, const QString &tableName,
                                      bool withOptionalColumns = true);
};
