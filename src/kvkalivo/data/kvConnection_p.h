#pragma once

#include "kvConnection.h"
#include "kvDataSource.h"
#include "kvDatabaseError.h"

#include <QSqlDatabase>
#include <QSqlQuery>

class QSqlError;

// The state and the statement machinery of a kvConnection; kvCommand and kvRecordset run
// their statements through Run().
class kvConnectionPrivate
{
public:
    explicit kvConnectionPrivate(kvConnection *q) : q(q) {}

    static kvConnectionPrivate *get(kvConnection *connection) { return connection->d.get(); }

    //! Runs \a sql, reopening a lost connection first, and a read once more when it is lost.
    QSqlQuery Run(const QString &sql, const QVariantList &boundValues);
    static int RecordsAffected(const QSqlQuery &query);

    bool IsOpen() const;
    void OpenOwn(const kvDataSource &source);
    void OpenWrapped();
    void ReleaseDatabase();

    kvConnection *const q;
    kvDataSource source;
    QString connectionString;
    QString connectionName;    // our own QSqlDatabase connection; empty when none or wrapped
    QSqlDatabase database;
    bool wrapped = false;
    bool open = false;
    bool reopenNeeded = false;   // the server went away: the next statement reopens first

private:
    //! Traces, prepares, binds and runs \a sql; throws the engine's error as a kvDatabaseError.
    QSqlQuery RunOnce(const QString &sql, const QVariantList &boundValues);
    kvDatabaseError StatementFailure(const QSqlError &error, qint64 waitedMilliseconds) const;
    //! Closes and opens the connection again; throws the engine's message when it cannot.
    void Reopen();
    //! A server engine, whose lost connection a reopen can heal (not a file).
    bool IsServer() const;
    //! Whether \a sql only reads (a SELECT), so that running it twice changes nothing.
    static bool IsRead(const QString &sql);
    QVariant DriverValue(const QVariant &value) const;
    void RequireOpen() const;
    static QString OpenFailureContext(const kvDataSource &source);
};
