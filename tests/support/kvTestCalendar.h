#pragma once

#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvDataTestSupport.h"
#include "kvFields.h"
#include "kvKalivo.h"
#include "kvRecordset.h"

#include <QAction>
#include <QTemporaryDir>

/*!
    A shown kvKalivo (ParameterizedSql on) on a fresh appointment table, recording every SQL
    text the connection sends in \c statements: "Termine" in a temporary SQLite file, or
    "EditTermine" (created anew) on the CTest fixture's MariaDB server, without which it aborts.
*/
struct kvTestCalendar
{
    enum class Database { Sqlite, MariaDb };

    explicit kvTestCalendar(QSize size = QSize(1000, 700), Database database = Database::Sqlite)
        : table(database == Database::Sqlite ? QStringLiteral("Termine") : QStringLiteral("EditTermine"))
    {
        setUp(connectionString(database), database == Database::MariaDb, size);
    }

    //! The calendar on the server of \a serverConnectionString, its table "Termine" created anew.
    explicit kvTestCalendar(const QString &serverConnectionString)
        : table(QStringLiteral("Termine"))
    {
        setUp(serverConnectionString, true, QSize(1000, 700));
    }

    void setUp(const QString &connectionString, bool dropTable, QSize size)
    {
        connection.Open(connectionString);
        if (dropTable)
            connection.Execute(QStringLiteral("DROP TABLE IF EXISTS ") + table);
        kvAppointmentTable::Create(connection, table);
        control.setParameterizedSql(true);
        control.setRecordSource(table);
        control.setConnection(&connection);
        control.resize(size);
        control.show();
        QObject::connect(&connection, &kvConnection::StatementExecuted,
                         [this](const QString &sql) { statements << sql; });
    }

    void add(const kvDate &begin, const kvDate &end, const QString &name, int imageId = 0,
             const QString &remark = QString())
    {
        kvRecordset recordset;
        recordset.Open(table, &connection, 1, 2, 2);
        recordset.AddNew();
        recordset.setValue(QStringLiteral("DateBegin"), QVariant::fromValue(begin.toDateTime()));
        recordset.setValue(QStringLiteral("DateEnd"), QVariant::fromValue(end.toDateTime()));
        recordset.setValue(QStringLiteral("Name"), name);
        recordset.setValue(QStringLiteral("ImageID"), imageId);
        if (!remark.isEmpty())
            recordset.setValue(QStringLiteral("Remark"), remark);
        recordset.Update();
        recordset.Close();
    }

    //! The values of \a name of every row, in the order of DateID.
    QVariantList column(const QString &name)
    {
        QVariantList result;
        kvRecordset recordset;
        recordset.Open(QStringLiteral("SELECT %1 FROM %2 ORDER BY DateID").arg(name, table), &connection);
        for (; !recordset.EOF(); recordset.MoveNext())
            result << recordset.Fields()[name].Value();
        recordset.Close();
        return result;
    }

    QStringList names()
    {
        QStringList result;
        for (const QVariant &value : column(QStringLiteral("Name")))
            result << value.toString();
        return result;
    }

    //! Triggers item \a index of the day cells' context menu ("KontextDay<index>").
    void chooseMenuItem(int index)
    {
        control.findChild<QAction *>(QStringLiteral("KontextDay%1").arg(index))->trigger();
    }

    //! How many grid loads (the one query of a grid's days) the control sent.
    int gridLoads() const
    {
        const QString dayOrder = QStringLiteral("ORDER BY %1.DateBegin").arg(table);
        return int(std::count_if(statements.cbegin(), statements.cend(), [&dayOrder](const QString &sql) {
            return sql.contains(dayOrder) && !sql.contains(QStringLiteral("NextDate"));
        }));
    }

    QTemporaryDir folder;
    const QString table;
    kvConnection connection;
    kvKalivo control;
    QStringList statements;

private:
    QString connectionString(Database database) const
    {
        if (database == Database::Sqlite)
            return QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db")));
        QString problem;
        const QString mariaDb = readMariaDbInfo(&problem).value(QStringLiteral("connection_string"));
        if (mariaDb.isEmpty())
            qFatal("kvTestCalendar needs the MariaDB fixture: %s", qPrintable(problem));
        return mariaDb;
    }
};
