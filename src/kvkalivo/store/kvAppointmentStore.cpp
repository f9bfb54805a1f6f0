#include "kvAppointmentStore.h"

#include "kvAdoError.h"
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

} // namespace

kvAppointmentStore::kvAppointmentStore(QObject *parent) : QObject(parent) {}

kvAppointmentStore::~kvAppointmentStore() = default;

std::optional<int> kvAppointmentStore::SetConnection(kvConnection *connection)
{
    m_connection = connection;
    m_batch = DayLoadBatch{};
    m_columnsProbed = false;
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
        while (!recordset.EOF()) {
            HandOverRow(recordset.Fields(), day, rows, step);
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

void kvAppointmentStore::BeginDayLoads(const kvDate &firstDay)
{
    m_batch = DayLoadBatch{};
    if (!CanQuery())
        return;
    m_batch.active = true;
    int step = 1;
    try {
        RequireColumns();
        if (!m_parameterizedSql)
            return;
        step = 4;
        const QVariant earliest = FirstValue(
            kvParameterizedSql::EarliestOverlapQuery(TableName(), firstDay, m_dialect, Engine()),
            "EarliestBegin");
        kvDate floor = firstDay;
        if (!kvFieldConversion::IsNull(earliest))
            floor = std::min(floor, kvField::ToDate(earliest));
        m_batch.floor = DayLoadFloor{firstDay, floor};
    } catch (...) {
        // Busy or gone: the day loads would each wait for the same; the first reports this.
        // Anything else: the floor is only a shortcut, the day loads report their own failures.
        if (currentFailureIsUnavailable()) {
            m_batch.abandoned = true;
            m_batch.failure = DayLoadFailure(step);
        }
    }
}

void kvAppointmentStore::EndDayLoads()
{
    m_batch = DayLoadBatch{};
}

kvSqlStatement kvAppointmentStore::DayStatement(const kvDate &day) const
{
    if (m_parameterizedSql && m_batch.floor && !(day < m_batch.floor->from))
        return kvParameterizedSql::DayQuery(TableName(), day, m_batch.floor->floor, m_dialect, Engine());
    if (m_parameterizedSql)
        return kvParameterizedSql::DayQuery(TableName(), day, m_dialect, Engine());
    return {kvSqlTexts::DayQuery(m_recordSource, day, m_dialect), {}};
}

void kvAppointmentStore::HandOverRow(const kvFields &fields, const kvDate &day,
                                     const kvDayRowSink &rows, int &step) const
{
    kvAppointmentValues appointment;
    if (m_columns.ImageID) {
        const QVariant image = value(fields, "ImageID");
        if (kvFieldConversion::IsNumeric(image))
            appointment.ImageID = kvFieldConversion::ToInteger(image);
        if (appointment.ImageID < FirstIcon)
            appointment.ImageID = NoIcon;
    }
    step = 6;
    if (m_columns.Document)
        appointment.Document = kvFieldConversion::AppendedToEmpty(value(fields, "Document"));
    step = 7;
    if (m_columns.Remark)
        appointment.Remark = kvFieldConversion::AppendedToEmpty(value(fields, "Remark"));
    step = 8;
    appointment.DateBegin = kvField::ToDate(value(fields, "DateBegin"));
    appointment.DateID = kvFieldConversion::ToLong(value(fields, "DateID"));
    appointment.DateEnd = kvField::ToDate(value(fields, "DateEnd"));
    appointment.Name = kvFieldConversion::ToText(value(fields, "Name"));
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
    kvCommand command;
    command.setActiveConnection(m_connection.data());
    command.setCommandType(adCmdText);
    command.setCommandText(statement.Text);
    command.Parameters() = statement.Values;
    kvRecordset recordset;
    recordset.Open(command, adOpenForwardOnly, adLockUnspecified, adCmdText);
    QVariant found;
    if (!recordset.EOF())
        found = value(recordset.Fields(), column);
    recordset.Close();
    return found;
}

void kvAppointmentStore::InsertAppointment(const kvDate &DateBegin, const kvDate &DateEnd,
                                           const QString &Name, const QString &Remark,
                                           const QString &Document, qint16 ImageID)
{
    try {
        WriteRecord({0, DateBegin, DateEnd, Name, Remark, Document, ImageID});
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
