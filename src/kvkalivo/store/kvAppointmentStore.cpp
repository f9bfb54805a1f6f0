#include "kvAppointmentStore.h"

#include "kvAdoError.h"
#include "kvAppointmentColumnPositions.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvDatabaseError.h"
#include "kvErrorReporting.h"
#include "kvField.h"
#include "kvFieldConversion.h"
#include "kvFields.h"
#include "kvFormat.h"
#include "kvInt16.h"
#include "kvRecordset.h"
#include "kvRuntimeError.h"
#include "kvSqlTexts.h"

#include <cmath>
#include <utility>

namespace {

// ADO's command, cursor and lock values, as the store passes them to the data layer.
constexpr int adCmdText = 1;
constexpr int adCmdTable = 2;
constexpr int adCmdUnspecified = -1;
constexpr int adOpenForwardOnly = 0;
constexpr int adOpenKeyset = 1;
constexpr int adLockUnspecified = -1;
constexpr int adLockReadOnly = 1;
constexpr int adLockPessimistic = 2;

constexpr qint16 NoIcon = 0;
constexpr qint16 FirstIcon = 10;

kvRuntimeError objectVariableNotSet()
{
    return kvRuntimeError(91, QStringLiteral("Objektvariable oder With-Blockvariable nicht festgelegt"));
}

QVariant value(const kvFields &fields, const char *name)
{
    return fields[QString::fromLatin1(name)].Value();
}

//! Inside a catch block: whether the failure says the database cannot serve anything just now.
bool currentFailureIsUnavailable()
{
    try {
        throw;
    } catch (const kvDatabaseError &failure) {
        return failure.isUnavailable();
    } catch (...) {
        return false;
    }
}

double durationInDays(const kvDate &begin, const kvDate &end)
{
    return (end.toDateTime().toMSecsSinceEpoch() - begin.toDateTime().toMSecsSinceEpoch()) / 86400000.0;
}

} // namespace

kvAppointmentStore::kvAppointmentStore(QObject *parent) : QObject(parent) {}

kvAppointmentStore::~kvAppointmentStore() = default;

std::optional<int> kvAppointmentStore::SetConnection(kvConnection *connection)
{
    m_connection = connection;
    m_batch = DayLoadBatch{};
    m_columnsProbed = false;
    m_longest.reset();
    m_dialect = ChooseDialect(connection);
    if (!connection)
        return std::nullopt;
    const int state = connection->State();
    Q_EMIT ConnectionStateRead(state);
    ProbeColumns(*connection);
    return state;
}

qint16 kvAppointmentStore::ChooseDialect(const kvConnection *connection) const
{
    if (m_dbDateFormat >= kvSqlTexts::MicrosoftSql && m_dbDateFormat <= kvSqlTexts::MySql)
        return kvSqlTexts::DatabaseDialect(m_dbDateFormat, QString(), QString());
    if (!connection)
        throw objectVariableNotSet();
    // A Jet provider means Access whatever the connection string says; only other providers'
    // connection strings are read.
    if (kvSqlTexts::IsJetProvider(connection->Provider()))
        return kvSqlTexts::MicrosoftAccess;
    return kvSqlTexts::DialectFromConnectionString(connection->ConnectionString());
}

void kvAppointmentStore::ProbeColumns(kvConnection &connection)
{
    kvRecordset recordset;
    recordset.Open(TableSource(), &connection, adOpenForwardOnly, adLockReadOnly, adCmdTable);
    const kvFields &fields = recordset.Fields();
    for (int i = 0; i < fields.Count(); ++i) {
        const QString name = fields.Item(i).Name().toUpper();
        if (name == QStringLiteral("IMAGEID"))
            m_columns.ImageID = true;
        else if (name == QStringLiteral("DOCUMENT"))
            m_columns.Document = true;
        else if (name == QStringLiteral("REMARK"))
            m_columns.Remark = true;
    }
    m_columnsProbed = true;
}

void kvAppointmentStore::RequireColumns()
{
    // A failed probe says nothing about the columns: ask again rather than write without them.
    if (!m_columnsProbed)
        ProbeColumns(*m_connection);
}

kvParameterizedSql::Engine kvAppointmentStore::Engine() const
{
    return kvParameterizedSql::EngineOf(m_connection->Database().driverName());
}

kvTableName kvAppointmentStore::TableName() const
{
    return kvTableName::Parse(m_recordSource, kvDataSource::Of(*m_connection).engine());
}

QString kvAppointmentStore::TableSource() const
{
    return m_parameterizedSql ? TableName().Qualified() : m_recordSource;
}

QString kvAppointmentStore::FormatDbDate(const kvDate &date) const
{
    return kvSqlTexts::FormatDbDate(date, m_dialect);
}

bool kvAppointmentStore::CanQuery() const
{
    return m_connection && !m_connection->ConnectionString().isEmpty() && !m_recordSource.isEmpty();
}

QString kvAppointmentStore::LoadDayAppointments(const kvDate &day, const kvDayRowSink &rows)
{
    if (!CanQuery())
        return QString();
    if (m_batch.abandoned)
        return std::exchange(m_batch.failure, QString());   // reported once, by the first day
    int step = 1;
    if (m_batch.rows && m_batch.rows->Covers(day)) {
        try {
            HandOverGridRows(day, rows, step);
        } catch (...) {
            return DayLoadFailure(step);
        }
        return QString();
    }
    try {
        RequireColumns();
        step = 2; // the date literals cannot fail; the text can (a refused table name)
        const kvSqlStatement statement = DayStatement(day);
        step = 3;
        kvCommand command;
        command.setActiveConnection(m_connection.data());
        command.setCommandType(adCmdText);
        command.setCommandText(statement.Text);
        command.Parameters() = statement.Values;
        step = 4;
        kvRecordset recordset;
        recordset.Open(command, adOpenForwardOnly, adLockUnspecified, adCmdUnspecified);
        step = 5;
        const kvAppointmentColumnPositions columns = kvAppointmentColumnPositions::Of(recordset.Fields());
        while (!recordset.EOF()) {
            HandOver(ReadRow(recordset.Fields(), columns, step), day, rows, step);
            recordset.MoveNext();
        }
        step = 10;
        recordset.Close();
    } catch (...) {
        m_batch.abandoned = m_batch.active && currentFailureIsUnavailable();
        return DayLoadFailure(step);
    }
    return QString();
}

QString kvAppointmentStore::DayLoadFailure(int step)
{
    return QStringLiteral("%1-%2\r\n%3")
        .arg(DayLoadFailureBase)
        .arg(step)
        .arg(kvErrorReporting::DescribeCurrentException());
}

void kvAppointmentStore::BeginDayLoads(const kvDate &firstDay, int dayCount)
{
    m_batch = DayLoadBatch{};
    if (!CanQuery())
        return;
    m_batch.active = true;
    int step = 1;
    try {
        RequireColumns();
        if (m_parameterizedSql)
            LoadGridRows(firstDay, dayCount, step);
    } catch (...) {
        m_batch.rows.reset();
        // Busy or gone: the day loads would each wait for the same; the first reports this.
        // Anything else: the day loads run their own queries and report their own failures.
        if (currentFailureIsUnavailable()) {
            m_batch.abandoned = true;
            m_batch.failure = DayLoadFailure(step);
        }
    }
}

void kvAppointmentStore::LoadGridRows(const kvDate &firstDay, int dayCount, int &step)
{
    step = 4;
    const kvSqlStatement statement = kvParameterizedSql::GridQuery(
        TableName(), firstDay, firstDay.addDays(dayCount), GridFloor(firstDay), m_dialect, Engine());
    kvRecordset recordset;
    OpenQuery(recordset, statement, adCmdUnspecified);
    m_batch.rows.emplace(firstDay, dayCount);
    step = 5;
    const kvAppointmentColumnPositions columns = kvAppointmentColumnPositions::Of(recordset.Fields());
    while (!recordset.EOF()) {
        const kvFields fields = recordset.Fields();
        m_batch.rows->Append(ReadRow(fields, columns, step), fields.Value(columns.DateBegin),
                             fields.Value(columns.DateEnd));
        step = 5;
        recordset.MoveNext();
    }
    recordset.Close();
}

void kvAppointmentStore::HandOverGridRows(const kvDate &day, const kvDayRowSink &rows, int &step) const
{
    step = 2;
    const kvParameterizedSql::Engine engine = Engine();
    const QVariant dayStart = kvParameterizedSql::BoundDate(day, m_dialect, engine);
    const QVariant nextDay = kvParameterizedSql::BoundDate(day.addDays(1), m_dialect, engine);
    step = 5;
    for (const kvAppointmentValues *appointment : m_batch.rows->RowsOf(dayStart, nextDay)) {
        step = 8;
        HandOver(*appointment, day, rows, step);
    }
}

kvDate kvAppointmentStore::GridFloor(const kvDate &firstDay)
{
    if (Engine() != kvParameterizedSql::Engine::SQLite)
        return SearchedFloor(firstDay);
    const QVariantList marker = ChangeMarker();
    if (!m_longest || m_longest->marker != marker) {
        const QVariantList longest = FirstValues(kvParameterizedSql::LongestDurationQuery(TableName()),
                                                 {"Longest", "Unreadable"});
        m_longest = LongestDuration{marker, std::nullopt, longest.value(1).toInt() != 0};
        if (!kvFieldConversion::IsNull(longest.value(0)))
            m_longest->days = longest.value(0).toDouble();
    }
    if (m_longest->unreadable)
        return SearchedFloor(firstDay);
    if (!m_longest->days)
        return firstDay;
    // A day more than the longest duration: the bound stays below the first day's minute.
    return firstDay.addDays(-qint64(std::ceil(std::max(0.0, *m_longest->days))) - 1);
}

kvDate kvAppointmentStore::SearchedFloor(const kvDate &firstDay)
{
    const QVariant earliest = FirstValue(
        kvParameterizedSql::EarliestOverlapQuery(TableName(), firstDay, m_dialect, Engine()), "EarliestBegin");
    if (kvFieldConversion::IsNull(earliest))
        return firstDay;
    return std::min(firstDay, kvField::ToDate(earliest));
}

QVariantList kvAppointmentStore::ChangeMarker()
{
    return FirstValues(kvParameterizedSql::ChangeMarkerQuery(), {"Changes", "Version"});
}

/*!
    After the store's own write of an appointment lasting \a days (0 for a delete):
    when that write is the only one since the longest duration was read, the duration covers
    it and the marker moves on; after anyone else's write the next grid reads it again.
*/
void kvAppointmentStore::WidenLongestDuration(double days)
{
    if (!m_longest || !m_parameterizedSql || Engine() != kvParameterizedSql::Engine::SQLite)
        return;
    try {
        const QVariantList marker = ChangeMarker();
        const bool onlyThisWrite = marker.value(1) == m_longest->marker.value(1)
                                   && marker.value(0).toLongLong() == m_longest->marker.value(0).toLongLong() + 1;
        if (!onlyThisWrite)
            return;
        m_longest->days = std::max(m_longest->days.value_or(days), days);
        m_longest->marker = marker;
    } catch (...) {
        // The marker stays behind: the next grid reads the longest duration again.
    }
}

void kvAppointmentStore::EndDayLoads()
{
    m_batch = DayLoadBatch{};
}

kvSqlStatement kvAppointmentStore::DayStatement(const kvDate &day) const
{
    if (m_parameterizedSql)
        return kvParameterizedSql::DayQuery(TableName(), day, m_dialect, Engine());
    return {kvSqlTexts::DayQuery(m_recordSource, day, m_dialect), {}};
}

kvAppointmentValues kvAppointmentStore::ReadRow(const kvFields &fields, const kvAppointmentColumnPositions &columns,
                                                int &step) const
{
    kvAppointmentValues appointment;
    if (m_columns.ImageID) {
        const QVariant image = fields.Value(columns.ImageID);
        if (kvFieldConversion::IsNumeric(image))
            appointment.ImageID = kvFieldConversion::ToInteger(image);
        if (appointment.ImageID < FirstIcon)
            appointment.ImageID = NoIcon;
    }
    step = 6;
    if (m_columns.Document)
        appointment.Document = kvFieldConversion::AppendedToEmpty(fields.Value(columns.Document));
    step = 7;
    if (m_columns.Remark)
        appointment.Remark = kvFieldConversion::AppendedToEmpty(fields.Value(columns.Remark));
    step = 8;
    appointment.DateBegin = kvField::ToDate(fields.Value(columns.DateBegin));
    appointment.DateID = kvFieldConversion::ToLong(fields.Value(columns.DateID));
    appointment.DateEnd = kvField::ToDate(fields.Value(columns.DateEnd));
    appointment.Name = kvFieldConversion::ToText(fields.Value(columns.Name));
    return appointment;
}

void kvAppointmentStore::HandOver(const kvAppointmentValues &appointment, const kvDate &day,
                                  const kvDayRowSink &rows, int &step)
{
    rows.AddAppointment(appointment);
    step = 9;
    if (day > appointment.DateBegin)
        rows.MarkLastContinued();
}

std::optional<kvDate> kvAppointmentStore::FindNextAppointment(const kvDate &lastDisplayedDay)
{
    if (!CanQuery())
        return std::nullopt;
    try {
        if (m_parameterizedSql)
            return FirstDate(kvParameterizedSql::NextQuery(TableName(), lastDisplayedDay, m_dialect, Engine()));
        return FirstDate({kvSqlTexts::NextQuery(m_recordSource, lastDisplayedDay, m_dialect), {}});
    } catch (...) {
        return std::nullopt; // a failed search finds nothing and reports nothing
    }
}

std::optional<kvDate> kvAppointmentStore::FindPreviousAppointment(const kvDate &firstDisplayedDay)
{
    if (!CanQuery())
        return std::nullopt;
    try {
        if (m_parameterizedSql)
            return FirstDate(kvParameterizedSql::PreviousQuery(TableName(), firstDisplayedDay, m_dialect, Engine()));
        return FirstDate({kvSqlTexts::PreviousQuery(m_recordSource, firstDisplayedDay, m_dialect), {}});
    } catch (...) {
        return std::nullopt;
    }
}

std::optional<kvDate> kvAppointmentStore::FirstDate(const kvSqlStatement &statement)
{
    const QVariant next = FirstValue(statement, "NextDate");
    if (!next.isValid())
        return std::nullopt;
    // The round trip through "dd-mm-yyyy" drops the time of day: the searches return days.
    return kv::CDate(kv::Format(kvField::ToDate(next), QStringLiteral("dd-mm-yyyy")));
}

//! \a column of the statement's first row; an invalid QVariant when there is no row.
QVariant kvAppointmentStore::FirstValue(const kvSqlStatement &statement, const char *column)
{
    return FirstValues(statement, {column}).value(0);
}

//! \a columns of the statement's first row; empty when there is no row.
QVariantList kvAppointmentStore::FirstValues(const kvSqlStatement &statement, const QList<const char *> &columns)
{
    kvRecordset recordset;
    OpenQuery(recordset, statement, adCmdText);
    QVariantList found;
    for (const char *column : columns) {
        if (!recordset.EOF())
            found << value(recordset.Fields(), column);
    }
    recordset.Close();
    return found;
}

//! Opens \a recordset forward-only on \a statement, its values bound, with the Open \a options.
void kvAppointmentStore::OpenQuery(kvRecordset &recordset, const kvSqlStatement &statement, int options)
{
    kvCommand command;
    command.setActiveConnection(m_connection.data());
    command.setCommandType(adCmdText);
    command.setCommandText(statement.Text);
    command.Parameters() = statement.Values;
    recordset.Open(command, adOpenForwardOnly, adLockUnspecified, options);
}

void kvAppointmentStore::InsertAppointment(const kvDate &DateBegin, const kvDate &DateEnd,
                                           const QString &Name, const QString &Remark,
                                           const QString &Document, qint16 ImageID)
{
    try {
        WriteRecord({0, DateBegin, DateEnd, Name, Remark, Document, ImageID});
        WidenLongestDuration(durationInDays(DateBegin, DateEnd));
    } catch (...) {
        Report(InsertFailureCode);
    }
}

void kvAppointmentStore::WriteRecord(const kvAppointmentValues &values)
{
    if (!m_connection)
        throw kvAdoError::connectionUnusable();
    RequireColumns();
    kvRecordset recordset;
    recordset.Open(TableSource(), m_connection.data(), adOpenKeyset, adLockPessimistic, adCmdTable);
    recordset.AddNew();
    recordset.setValue(QStringLiteral("DateBegin"), QVariant::fromValue(values.DateBegin));
    recordset.setValue(QStringLiteral("DateEnd"), QVariant::fromValue(values.DateEnd));
    recordset.setValue(QStringLiteral("Name"), values.Name);
    if (m_columns.Remark)
        recordset.setValue(QStringLiteral("Remark"), values.Remark);
    if (m_columns.Document)
        recordset.setValue(QStringLiteral("Document"), values.Document);
    if (m_columns.ImageID)
        recordset.setValue(QStringLiteral("ImageID"), values.ImageID);
    recordset.Update();
    recordset.Close();
}

void kvAppointmentStore::UpdateAppointment(qint32 DateID, const kvDate &DateBegin,
                                           const kvDate &DateEnd, const QString &Name,
                                           const QString &Remark, const QString &Document,
                                           qint16 ImageID)
{
    if (!m_connection)
        return;
    try {
        RequireColumns();
        const kvAppointmentValues values{DateID, DateBegin, DateEnd, Name, Remark, Document, ImageID};
        if (m_parameterizedSql)
            Execute(kvParameterizedSql::UpdateStatement(TableName(), m_dialect, values, m_columns));
        else
            Execute({kvSqlTexts::UpdateStatement(m_recordSource, m_dialect, values, m_columns), {}});
        WidenLongestDuration(durationInDays(DateBegin, DateEnd));
    } catch (...) {
        Report(UpdateFailureCode);
    }
}

void kvAppointmentStore::DeleteAppointment(qint32 DateID)
{
    if (!m_connection)
        return;
    try {
        if (m_parameterizedSql)
            Execute(kvParameterizedSql::DeleteStatement(TableName(), DateID));
        else
            Execute({kvSqlTexts::DeleteStatement(m_recordSource, DateID), {}});
        WidenLongestDuration(0);
    } catch (...) {
        Report(DeleteFailureCode);
    }
}

void kvAppointmentStore::Execute(const kvSqlStatement &statement)
{
    if (m_parameterizedSql)
        m_connection->Execute(statement.Text, statement.Values);
    else
        m_connection->Execute(statement.Text);
}

void kvAppointmentStore::Report(int code) const
{
    const QString description = kvErrorReporting::DescribeCurrentException();
    if (m_reporter)
        m_reporter(code, description);
}
