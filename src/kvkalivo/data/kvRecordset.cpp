#include "kvRecordset.h"

#include "kvAdoError.h"
#include "kvCommand.h"
#include "kvConnection.h"

#include <QHash>
#include <QSqlField>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

struct SQLiteColumn
{
    QString declaredType;
    bool integerPrimaryKey = false;
};

// One table's columns as SQLite declared them (lower-case names): its DATETIME columns hold text.
QHash<QString, SQLiteColumn> sqliteColumns(const QSqlDatabase &database, const QString &table)
{
    QHash<QString, SQLiteColumn> columns;
    QString quoted = table;
    quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    QSqlQuery pragma(database);
    if (!pragma.exec(QStringLiteral("PRAGMA table_info(\"%1\")").arg(quoted)))
        return columns;
    while (pragma.next()) {
        const QString type = pragma.value(2).toString().toUpper();
        columns.insert(pragma.value(1).toString().toLower(),
                       {type, pragma.value(5).toInt() == 1 && type == QLatin1String("INTEGER")});
    }
    return columns;
}

bool isDateType(const QString &declaredType)
{
    return declaredType.contains(QLatin1String("DATE")) || declaredType.contains(QLatin1String("TIME"));
}

bool hasDateColumn(const QHash<QString, SQLiteColumn> &columns)
{
    for (const SQLiteColumn &column : columns) {
        if (isDateType(column.declaredType))
            return true;
    }
    return false;
}

bool isDateVariant(const QVariant &value)
{
    const int type = value.userType();
    return type == qMetaTypeId<kvDate>() || type == QMetaType::QDateTime || type == QMetaType::QDate;
}

} // namespace

kvRecordset::kvRecordset() = default;

kvRecordset::~kvRecordset()
{
    Release();
}

void kvRecordset::Open(const QString &source, kvConnection *connection, int /*cursorType*/, int lockType, int options)
{
    Start(connection, kvCommand::StatementFor(source, options), {}, lockType,
          options == adCmdTable ? source : QString());
}

void kvRecordset::Open(kvCommand &command, int /*cursorType*/, int lockType, int options)
{
    const int type = options != adCmdUnspecified ? options : command.CommandType();
    Start(command.ActiveConnection(), kvCommand::StatementFor(command.CommandText(), type), command.Parameters(),
          lockType, type == adCmdTable ? command.CommandText() : QString());
}

void kvRecordset::Start(kvConnection *connection, const QString &sql, const QVariantList &parameters, int lockType,
                        const QString &table)
{
    if (m_open)
        throw kvAdoError::objectOpen();
    if (!connection || connection->State() != kvConnection::adStateOpen)
        throw kvAdoError::connectionUnusable();
    QSqlQuery query = connection->Run(sql, parameters);
    m_source = sql;
    if (!query.isSelect())
        return;   // a statement without rows leaves the recordset closed, as in ADO
    Adopt(connection, std::move(query));
    m_table = table;
    if (m_table.isEmpty() && !m_query->record().isEmpty()) {
        m_table = m_query->record().field(0).tableName();
        for (int i = 1; i < m_query->record().count(); ++i) {
            if (m_query->record().field(i).tableName() != m_table)
                m_table.clear();
        }
    }
    m_updatable = lockType >= adLockPessimistic && !m_table.isEmpty();
    if (connection->Database().driverName() == QLatin1String("QSQLITE"))
        FindSQLiteDateColumns();
    m_open = true;
    Fetch();
}

void kvRecordset::Adopt(kvConnection *connection, QSqlQuery &&query)
{
    m_query = std::make_unique<QSqlQuery>(std::move(query));
    m_connection = connection;
    m_closingLink = QObject::connect(connection, &kvConnection::Closing, connection, [this] { Release(); });
    const QSqlRecord record = m_query->record();
    m_names.clear();
    m_autoColumns.clear();
    for (int i = 0; i < record.count(); ++i) {
        m_names << record.fieldName(i);
        m_autoColumns << record.field(i).isAutoValue();
    }
    m_dateColumns = QList<DateColumn>(m_names.size(), DateColumn::No);
}

void kvRecordset::FindSQLiteDateColumns()
{
    const QSqlRecord record = m_query->record();
    QHash<QString, QHash<QString, SQLiteColumn>> tables;
    for (int i = 0; i < record.count(); ++i) {
        const QString table = record.field(i).tableName();
        if (table.isEmpty())
            continue;
        if (!tables.contains(table))
            tables.insert(table, sqliteColumns(m_connection->Database(), table));
        const QHash<QString, SQLiteColumn> &columns = tables[table];
        const auto column = columns.constFind(m_names.at(i).toLower());
        if (column == columns.constEnd()) {
            // An alias ("DateBegin AS NextDate") of some column of a table that has dates.
            m_dateColumns[i] = hasDateColumn(columns) ? DateColumn::Alias : DateColumn::No;
            continue;
        }
        m_dateColumns[i] = isDateType(column->declaredType) ? DateColumn::Declared : DateColumn::No;
        m_autoColumns[i] = m_autoColumns[i] || column->integerPrimaryKey;
    }
}

void kvRecordset::Fetch()
{
    m_values = QVariantList(m_names.size());
    m_eof = !(m_query && m_query->isActive() && m_query->next());
    if (m_eof)
        return;
    for (int i = 0; i < m_names.size(); ++i)
        m_values[i] = ReadValue(i);
}

QVariant kvRecordset::ReadValue(int column) const
{
    const QVariant value = m_query->value(column);
    if (!value.isValid() || value.isNull())
        return QVariant();
    if (value.typeId() == QMetaType::QDateTime) {
        // The driver builds a local time; its date() and time() are the stored wall clock.
        const QDateTime dateTime = value.toDateTime();
        return dateTime.date().isValid() ? QVariant(QDateTime(dateTime.date(), dateTime.time(), Qt::UTC)) : QVariant();
    }
    const DateColumn kind = m_dateColumns.value(column, DateColumn::No);
    if (kind == DateColumn::No || value.typeId() != QMetaType::QString)
        return value;
    const QString text = value.toString().trimmed();
    if (kind == DateColumn::Alias && !kvField::IsDbDateTimeText(text))
        return value;
    const std::optional<kvDate> date = kvField::TryDate(text);
    return date ? QVariant(kvField::ToDateTime(*date)) : value;
}

void kvRecordset::Close()
{
    Release();
}

void kvRecordset::Release()
{
    if (m_closingLink)
        QObject::disconnect(m_closingLink);
    m_query.reset();
    m_connection = nullptr;
    m_open = false;
    m_eof = true;
    m_adding = false;
    m_updatable = false;
    m_values.clear();
}

void kvRecordset::RequireOpen() const
{
    if (!m_open)
        throw kvAdoError::objectClosed();
}

bool kvRecordset::EOF() const
{
    RequireOpen();
    return m_eof;
}

kvFields kvRecordset::Fields() const
{
    RequireOpen();
    return kvFields(m_names, m_values, !m_eof);
}

void kvRecordset::MoveNext()
{
    RequireOpen();
    if (m_adding) {
        Update();
    } else if (m_eof) {
        throw kvAdoError::noCurrentRecord();
    }
    Fetch();
}

void kvRecordset::AddNew()
{
    RequireOpen();
    if (!m_updatable)
        throw kvAdoError::notUpdatable();
    if (m_adding)
        Update();
    m_adding = true;
    m_eof = false;
    m_values = QVariantList(m_names.size());
    m_assigned = QList<bool>(m_names.size(), false);
}

void kvRecordset::setValue(const QString &field, const QVariant &value)
{
    RequireOpen();
    const int index = FieldIndex(field);
    if (!m_adding)
        throw m_eof ? kvAdoError::noCurrentRecord() : kvAdoError::notUpdatable();
    m_values[index] = isDateVariant(value) && kvField::TryDate(value)
                          ? QVariant(kvField::ToDateTime(*kvField::TryDate(value)))
                          : value;
    m_assigned[index] = true;
}

int kvRecordset::FieldIndex(const QString &name) const
{
    for (int i = 0; i < m_names.size(); ++i) {
        if (m_names.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    throw kvAdoError::itemNotFound();
}

void kvRecordset::Update()
{
    RequireOpen();
    if (!m_adding)
        return;
    QVariantList values;
    const QString sql = InsertStatement(&values);
    m_query->finish();   // some engines (FreeTDS) serve one statement at a time per connection
    const QSqlQuery insert = m_connection->Run(sql, values);
    if (!m_open)
        return;   // the connection was reopened under the recordset, which let go of its rows
    const QVariant key = insert.lastInsertId();
    for (int i = 0; i < m_names.size(); ++i) {
        if (m_autoColumns.at(i) && !m_assigned.at(i) && key.isValid())
            m_values[i] = key;
    }
    m_adding = false;
}

QString kvRecordset::InsertStatement(QVariantList *values) const
{
    QStringList columns;
    QStringList markers;
    for (int i = 0; i < m_names.size(); ++i) {
        if (!m_assigned.at(i))
            continue;
        columns << m_names.at(i);
        markers << QStringLiteral("?");
        values->append(m_values.at(i));
    }
    if (columns.isEmpty())
        throw kvAdoError::invalidArgument(QStringLiteral("Update ohne gesetzte Felder"));
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(m_table, columns.join(QStringLiteral(", ")), markers.join(QStringLiteral(", ")));
}
