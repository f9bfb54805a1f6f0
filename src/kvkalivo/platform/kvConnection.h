#pragma once

#include "kvDataSource.h"
#include "kvkalivo_export.h"

#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QVariantList>

class QSqlQuery;

/*!
    \brief ADO's Connection over a QSqlDatabase: Provider, ConnectionString, State, Open,
    Close, Execute.

    Open() takes the ADO connection strings a host already has (see kvDataSource for the
    forms) and keeps ConnectionString exactly as given, so that the dialect detection of
    Part 2.1 reads what the host wrote. Each connection opened here has a QSqlDatabase
    connection of its own, named uniquely and removed again on Close and destruction.
    Wrap() instead adopts a host's own QSqlDatabase: it is used as it is, its Provider and
    ConnectionString are derived from its driver, and Close() only lets go of it (the host
    owns it).

    Like ADO, the calls throw on failure: kvRuntimeError with ADO's number (kvAdoError) and,
    for failures of the engine, the engine's own message. Every SQL text sent, by Execute,
    kvCommand and kvRecordset alike, is announced by StatementExecuted() just before it runs.
    Dates in bound values (kvDate, QDateTime, QDate) are written as their wall-clock value:
    SQLite and MariaDB get the text "yyyy-MM-dd hh:mm:ss", ODBC a timestamp.
*/
class KVKALIVO_EXPORT kvConnection : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString ConnectionString READ ConnectionString WRITE setConnectionString)
    Q_PROPERTY(QString Provider READ Provider)
    Q_PROPERTY(int State READ State)

public:
    enum ObjectState { adStateClosed = 0, adStateOpen = 1 };
    Q_ENUM(ObjectState)

    explicit kvConnection(QObject *parent = nullptr);
    ~kvConnection() override;

    //! A connection over the host's own \a database (open or not yet open).
    static kvConnection *Wrap(const QSqlDatabase &database, QObject *parent = nullptr);

    //! The Provider element as written; "MSDASQL" for ODBC-style strings, "SQLite3" for SQLite.
    QString Provider() const;
    QString ConnectionString() const { return m_connectionString; }
    //! Throws 3705 while the connection is open, as ADO does.
    void setConnectionString(const QString &connectionString);
    int State() const;

    //! Opens with \a connectionString, or with ConnectionString when it is empty.
    void Open(const QString &connectionString = QString());
    //! Closes; closing a closed connection does nothing. Open recordsets are closed first.
    void Close();

    //! Runs \a sql as text (Options 1); returns the records affected, -1 for a query.
    int Execute(const QString &sql);
    //! Runs \a sql with its positional "?" parameters bound to \a boundValues.
    void Execute(const QString &sql, const QVariantList &boundValues);

    QSqlDatabase Database() const { return m_database; }
    kvDataSource::Engine engine() const { return m_source.engine(); }
    bool isWrapped() const { return m_wrapped; }

signals:
    void StatementExecuted(const QString &sql);
    //! Just before the connection closes: recordsets on it let go of their queries.
    void Closing();

private:
    friend class kvCommand;
    friend class kvRecordset;

    //! Traces, prepares, binds and runs \a sql; throws the engine's error.
    QSqlQuery Run(const QString &sql, const QVariantList &boundValues);
    static int RecordsAffected(const QSqlQuery &query);
    QVariant DriverValue(const QVariant &value) const;
    void RequireOpen() const;
    void OpenOwn(const kvDataSource &source);
    void OpenWrapped();
    QString OpenFailureContext(const kvDataSource &source) const;
    void ReleaseDatabase();

    kvDataSource m_source;
    QString m_connectionString;
    QString m_connectionName;    // our own QSqlDatabase connection; empty when none or wrapped
    QSqlDatabase m_database;
    bool m_wrapped = false;
    bool m_open = false;
};
