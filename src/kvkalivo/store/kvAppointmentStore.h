#pragma once

#include "kvAppointmentValues.h"
#include "kvDate.h"
#include "kvDayRowSink.h"
#include "kvGridRows.h"
#include "kvOptionalColumns.h"
#include "kvParameterizedSql.h"
#include "kvSqlStatement.h"
#include "kvkalivo_export.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <optional>

struct kvAppointmentColumnPositions;
class kvConnection;
class kvFields;
class kvRecordset;

/*!
    \brief The appointment store: the host's connection and table, dialect and column probe,
    the per-day, next and previous queries, and inserts, updates and deletes.

    The store holds the connection without owning it (it becomes null when the host
    deletes it). With ParameterizedSql false it sends the plain SQL texts exactly (kvSqlTexts);
    with true it binds every value (kvParameterizedSql) and accepts only one table name
    (kvTableName), which it quotes as the engine wants.

    Failures: SetConnection lets the data layer's kvRuntimeError through to kvKalivo, which
    reports it; LoadDayAppointments returns "12-" step CR LF description; the
    searches return nothing on failure; the writers hand their failure to the reporter
    (800 insert, 600 update, 700 delete) and never throw.
*/
class KVKALIVO_TESTS_EXPORT kvAppointmentStore : public QObject
{
    Q_OBJECT

public:
    //! Receives a writer's failure: its code and the failure's description.
    using Reporter = std::function<void(int code, const QString &description)>;

    static constexpr int UpdateFailureCode = 600;
    static constexpr int DeleteFailureCode = 700;
    static constexpr int InsertFailureCode = 800;
    //! The per-day load's failure text begins with this and the step number.
    static constexpr int DayLoadFailureBase = 12;

    explicit kvAppointmentStore(QObject *parent = nullptr);
    ~kvAppointmentStore() override;

    kvConnection *Connection() const { return m_connection.data(); }
    /*!
        Stores \a connection, chooses DatabaseDialect, and unless it is
        nullptr reads its State (announced by ConnectionStateRead before the probe, and
        returned) and probes the table's optional columns. nullptr returns std::nullopt.
        Throws the data layer's kvRuntimeError (a closed connection, a missing table, a
        locked file, ...), and error 91 for nullptr while DbDateFormat is kvAuto (no Provider to
        read). A failed probe leaves the columns unknown, not absent: the next load,
        insert or update probes again first and fails with it while it fails, so that no
        row is written without the columns the table has.
    */
    std::optional<int> SetConnection(kvConnection *connection);

    QString RecordSource() const { return m_recordSource; }
    //! Does not probe the columns again; only SetConnection does (or a load or write after a failed probe).
    void setRecordSource(const QString &recordSource) { m_recordSource = recordSource; }
    //! The host's choice, an enDbDateFormat value (0 kvAuto).
    qint16 DbDateFormat() const { return m_dbDateFormat; }
    void setDbDateFormat(qint16 format) { m_dbDateFormat = format; }
    //! 1, 2 or 3 once a connection was set; 0 before.
    qint16 DatabaseDialect() const { return m_dialect; }

    // Set to true by the probe and never cleared (a deliberate carry-over to later connections).
    bool HasImageIdColumn() const { return m_columns.ImageID; }
    bool HasDocumentColumn() const { return m_columns.Document; }
    bool HasRemarkColumn() const { return m_columns.Remark; }

    bool ParameterizedSql() const { return m_parameterizedSql; }
    void setParameterizedSql(bool parameterized) { m_parameterizedSql = parameterized; }

    void SetReporter(Reporter reporter) { m_reporter = std::move(reporter); }

    //! The SQL date literal of \a date in the current DatabaseDialect (see kvSqlTexts).
    QString FormatDbDate(const kvDate &date) const;
    //! Connection set, its ConnectionString not empty and RecordSource not empty.
    bool CanQuery() const;

    /*!
        Hands every appointment that touches \a day to \a rows, each followed by
        MarkLastContinued() when it began before \a day. Returns empty text, or on failure
        "12-" + step + CR LF + description; the rows handed over before stay with the sink.
        Does nothing unless CanQuery().
    */
    QString LoadDayAppointments(const kvDate &day, const kvDayRowSink &rows);
    /*!
        The LoadDayAppointments calls until EndDayLoads() fill one grid of \a dayCount days from
        \a firstDay on. With ParameterizedSql one grid query reads all their rows at once, and
        each of these days receives from it exactly the rows, order and continuation marks its
        own query gives; other days still run their own query. The grid query reads the
        DateBegin index from a floor before \a firstDay below which no appointment reaching into
        the grid can begin:
        - SQLite: \a firstDay less the longest duration in the table (from its duration index;
          one full read per connection on tables without it). Before each grid a cheap marker (this connection's total_changes and the
          file's data_version) tells whether anyone wrote since; then the longest duration is read
          again, unless the only write was the store's own insert or update, which widens it.
          Rows whose dates are no date text have no duration: then the floor is searched for.
        - other engines: the earliest DateBegin of the appointments that reach into \a firstDay,
          searched for before each grid.
        When the grid query fails the days run their own queries, except when the database is
        busy or gone (kvDatabaseError::isUnavailable()): then the first day reports the failure
        and the later days return empty text without a query, so the grid waits once.
    */
    void BeginDayLoads(const kvDate &firstDay, int dayCount);
    void EndDayLoads();
    //! The day (without time) of the first appointment from the day after \a lastDisplayedDay.
    std::optional<kvDate> FindNextAppointment(const kvDate &lastDisplayedDay);
    //! The day (without time) of the last appointment beginning before \a firstDisplayedDay.
    std::optional<kvDate> FindPreviousAppointment(const kvDate &firstDisplayedDay);

    void InsertAppointment(const kvDate &DateBegin, const kvDate &DateEnd, const QString &Name,
                           const QString &Remark, const QString &Document, qint16 ImageID);
    void UpdateAppointment(qint32 DateID, const kvDate &DateBegin, const kvDate &DateEnd,
                           const QString &Name, const QString &Remark, const QString &Document,
                           qint16 ImageID);
    //! Deletes appointment \a DateID; the caller has asked first. A failure is reported as 700.
    void DeleteAppointment(qint32 DateID);

Q_SIGNALS:
    //! SetConnection() read the State (before the probe); "Next", "Previous", "New" follow it.
    void ConnectionStateRead(int State);

private:
    qint16 ChooseDialect(const kvConnection *connection) const;
    void ProbeColumns(kvConnection &connection);
    void RequireColumns();
    //! Inside a catch block: "12-" step CR LF the failure's description.
    static QString DayLoadFailure(int step);
    kvParameterizedSql::Engine Engine() const;
    //! RecordSource as one table name for the connected engine; throws 5 when it is none.
    kvTableName TableName() const;
    //! What the probe and the insert open: the quoted name with ParameterizedSql, else RecordSource.
    QString TableSource() const;

    kvSqlStatement DayStatement(const kvDate &day) const;
    kvAppointmentValues ReadRow(const kvFields &fields, const kvAppointmentColumnPositions &columns, int &step) const;
    static void HandOver(const kvAppointmentValues &appointment, const kvDate &day, const kvDayRowSink &rows,
                         int &step);
    void LoadGridRows(const kvDate &firstDay, int dayCount, int &step);
    void HandOverGridRows(const kvDate &day, const kvDayRowSink &rows, int &step) const;
    kvDate GridFloor(const kvDate &firstDay);
    kvDate SearchedFloor(const kvDate &firstDay);
    QVariantList ChangeMarker();
    void WidenLongestDuration(double days);
    std::optional<kvDate> FirstDate(const kvSqlStatement &statement);
    QVariant FirstValue(const kvSqlStatement &statement, const char *column);
    QVariantList FirstValues(const kvSqlStatement &statement, const QList<const char *> &columns);
    void OpenQuery(kvRecordset &recordset, const kvSqlStatement &statement, int options);
    void Execute(const kvSqlStatement &statement);
    void WriteRecord(const kvAppointmentValues &values);
    void Report(int code) const;

    QPointer<kvConnection> m_connection;
    QString m_recordSource;
    qint16 m_dbDateFormat = 0;
    qint16 m_dialect = 0;
    kvOptionalColumns m_columns;
    bool m_parameterizedSql = false;
    //! Whether the optional columns are known for this connection (the last probe succeeded).
    bool m_columnsProbed = false;
    //! SQLite: the longest duration in the table as of the change marker \c marker.
    struct LongestDuration
    {
        QVariantList marker;
        std::optional<double> days;   // none: no row has both dates
        bool unreadable = false;      // a row's date is no date text
    };
    std::optional<LongestDuration> m_longest;
    //! The loading of one grid, between BeginDayLoads and EndDayLoads.
    struct DayLoadBatch
    {
        bool active = false;
        std::optional<kvGridRows> rows;
        bool abandoned = false;   // busy or gone: no more queries
        QString failure;          // what the next day load reports, once
    };
    DayLoadBatch m_batch;
    Reporter m_reporter;
};
