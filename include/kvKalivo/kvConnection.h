#pragma once

#include "kvkalivo_export.h"

#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>

#include <memory>

class kvConnectionPrivate;

/*!
    \file kvConnection.h
    \brief kvConnection, the ADO-style connection a host hands to kvKalivo::setConnection().
*/

/*!
    \brief ADO's Connection over a QSqlDatabase: Provider, ConnectionString, State, Open,
    Close, Execute.

    Open() takes the ADO connection strings a host already has (the README lists the
    forms) and keeps ConnectionString exactly as given, so that kvKalivo's dialect detection
    reads what the host wrote. Each connection opened here has a QSqlDatabase
    connection of its own, named uniquely and removed again on Close and destruction.
    Wrap() instead adopts a host's own QSqlDatabase: it is used as it is, its Provider and
    ConnectionString are derived from its driver, and Close() only lets go of it (the host
    owns it).

    Like ADO, the calls throw on failure: kvRuntimeError with ADO's number (kvAdoError) and,
    for failures of the engine, a kvDatabaseError with the engine's own message and what it
    means (refused, busy, server gone, timed out). The connection string's "Command Timeout"
    and "Connect Timeout" limit every wait (default 30 and 15 seconds).

    When a server (MySQL/MariaDB, SQL Server, ODBC) has gone away, the connection heals
    itself at the next statement: it is closed and opened again with the settings it was
    opened with; a read (SELECT) that met the lost connection runs once more on the new one,
    a write is reported as failed and never sent twice. A wrapped QSqlDatabase is reopened in
    place, so the host's handle heals as well; it must hold its password for that (one opened
    with QSqlDatabase::open(user, password) cannot be reopened, and each statement then
    reports the failed reopen). Until a reopen succeeds State stays adStateOpen. Every SQL text sent, by Execute,
    kvCommand and kvRecordset alike, is announced by StatementExecuted() just before it runs.
    Dates in bound values (kvDate, QDateTime, QDate) are written as their wall-clock value:
    SQLite and MariaDB get the text "yyyy-MM-dd hh:mm:ss", ODBC a timestamp.
*/
class KVKALIVO_EXPORT kvConnection : public QObject
{
    Q_OBJECT
    /*!
        The ADO connection string exactly as the host wrote it (the README lists the
        forms understood); for a wrapped QSqlDatabase, one derived from its driver. kvKalivo's
        dialect detection reads it: "SQL SERVER" or "SQLOLEDB" in it means SQL Server.
    */
    Q_PROPERTY(QString ConnectionString READ ConnectionString WRITE setConnectionString)
    /*!
        ADO's Provider: the Provider element as written ("Microsoft.Jet.OLEDB.4.0",
        "SQLOLEDB", …), "MSDASQL" for ODBC-style Driver= strings, "SQLite3" for SQLite.
        kvKalivo's dialect detection takes "Microsoft.Jet.OLEDB" in it for Access.
    */
    Q_PROPERTY(QString Provider READ Provider)
    //! ADO's State: adStateOpen (1) while open, adStateClosed (0) otherwise.
    Q_PROPERTY(int State READ State)

public:
    //! ADO's ObjectStateEnum, the values of State.
    enum ObjectState {
        adStateClosed = 0, //!< closed: kvKalivo disables "Next", "Previous" and "New"
        adStateOpen = 1    //!< open
    };
    Q_ENUM(ObjectState)

    //! A closed connection without a connection string.
    explicit kvConnection(QObject *parent = nullptr);
    //! Closes the connection (a wrapped QSqlDatabase is only let go of).
    ~kvConnection() override;

    //! A connection over the host's own \a database (open or not yet open).
    static kvConnection *Wrap(const QSqlDatabase &database, QObject *parent = nullptr);

    //! The Provider element as written; "MSDASQL" for ODBC-style strings, "SQLite3" for SQLite.
    QString Provider() const;
    //! The connection string as given; see the #ConnectionString property.
    QString ConnectionString() const;
    //! Throws 3705 while the connection is open, as ADO does.
    void setConnectionString(const QString &connectionString);
    //! adStateOpen (1) while open, else adStateClosed (0).
    int State() const;

    /*!
        Opens with \a connectionString, or with ConnectionString when it is empty. Throws 3705
        when already open, 3001 for a malformed string, 3706 for an unknown Provider or a
        missing Qt SQL driver, and ADO's E_FAIL with the engine's message when the database
        cannot be opened.
    */
    void Open(const QString &connectionString = QString());
    //! Closes; closing a closed connection does nothing. Open recordsets are closed first.
    void Close();

    //! Runs \a sql as text (Options 1); returns the records affected, -1 for a query.
    int Execute(const QString &sql);
    //! Runs \a sql with its positional "?" parameters bound to \a boundValues.
    void Execute(const QString &sql, const QVariantList &boundValues);

    //! The Qt SQL connection underneath (the host's own one for Wrap()).
    QSqlDatabase Database() const;
    //! True for a connection made by Wrap().
    bool isWrapped() const;

signals:
    //! Emitted with every SQL text just before it runs, bound values as "?" (for logging and tests).
    void StatementExecuted(const QString &sql);
    //! Just before the connection closes: recordsets on it let go of their queries.
    void Closing();

private:
    friend class kvConnectionPrivate;
    friend class kvDataSource;
    std::unique_ptr<kvConnectionPrivate> const d;
};
