#include "kvRecordset.h"

#include "kvAdoError.h"
#include "kvCommand.h"
#include "kvConnection.h"
#include "kvConnection_p.h"

#include <QHash>
#include <QMetaObject>
#include <QPointer>
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

class kvRecordsetPrivate
{
public:
    enum class DateColumn { No, Declared, Alias };

    void Start(kvConnection *target, const QString &sql, const QVariantList &parameters, int lockType,
               const QString &sourceTable);
    void Adopt(kvConnection *target, QSqlQuery &&result);
    void FindSQLiteDateColumns();
    void Fetch();
    QVariant ReadValue(int column) const;
    void RequireOpen() const;
    void Release();
    int FieldIndex(const QString &name) const;
    QString InsertStatement(QVariantList *bound) const;

    QPointer<kvConnection> connection;
    QMetaObject::Connection closingLink;
    std::unique_ptr<QSqlQuery> query;
    QString source;
    QString table;                 // the table AddNew inserts into
    QStringList names;
    QList<bool> autoColumns;
    QList<DateColumn> dateColumns;
    QVariantList values;
    QList<bool> assigned;          // per field: set by setValue on the new row
    bool open = false;
    bool eof = true;
    bool updatable = false;
    bool adding = false;
};

kvRecordset::kvRecordset() : d(std::make_unique<kvRecordsetPrivate>())
{
}

kvRecordset::~kvRecordset()
{
    d->Release();
}

int kvRecordset::State() const
{
    return d->open ? adStateOpen : adStateClosed;
}

QString kvRecordset::Source() const
{
    return d->source;
}

void kvRecordset::Open(const QString &source, kvConnection *connection, int /*cursorType*/, int lockType, int options)
{
    d->Start(connection, kvCommand::StatementFor(source, options), {}, lockType,
             options == adCmdTable ? source : QString());
}

void kvRecordset::Open(kvCommand &command, int /*cursorType*/, int lockType, int options)
{
    const int type = options != adCmdUnspecified ? options : command.CommandType();
    d->Start(command.ActiveConnection(), kvCommand::StatementFor(command.CommandText(), type), command.Parameters(),
             lockType, type == adCmdTable ? command.CommandText() : QString());
}

void kvRecordsetPrivate::Start(kvConnection *target, const QString &sql, const QVariantList &parameters, int lockType,
                               const QString &sourceTable)
{
    if (open)
        throw kvAdoError::objectOpen();
    if (!target || target->State() != kvConnection::adStateOpen)
        throw kvAdoError::connectionUnusable();
    QSqlQuery result = kvConnectionPrivate::get(target)->Run(sql, parameters);
    source = sql;
    if (!result.isSelect())
        return;   // a statement without rows leaves the recordset closed, as in ADO
    Adopt(target, std::move(result));
    table = sourceTable;
    if (table.isEmpty() && !query->record().isEmpty()) {
        table = query->record().field(0).tableName();
        for (int i = 1; i < query->record().count(); ++i) {
            if (query->record().field(i).tableName() != table)
                table.clear();
        }
    }
    updatable = lockType >= kvRecordset::adLockPessimistic && !table.isEmpty();
    if (target->Database().driverName() == QLatin1String("QSQLITE"))
        FindSQLiteDateColumns();
    open = true;
    Fetch();
}

void kvRecordsetPrivate::Adopt(kvConnection *target, QSqlQuery &&result)
{
    query = std::make_unique<QSqlQuery>(std::move(result));
    connection = target;
    closingLink = QObject::connect(target, &kvConnection::Closing, target, [this] { Release(); });
    const QSqlRecord record = query->record();
    names.clear();
    autoColumns.clear();
    for (int i = 0; i < record.count(); ++i) {
        names << record.fieldName(i);
        autoColumns << record.field(i).isAutoValue();
    }
    dateColumns = QList<DateColumn>(names.size(), DateColumn::No);
}

void kvRecordsetPrivate::FindSQLiteDateColumns()
{
    const QSqlRecord record = query->record();
    QHash<QString, QHash<QString, SQLiteColumn>> tables;
    for (int i = 0; i < record.count(); ++i) {
        const QString table = record.field(i).tableName();
        if (table.isEmpty())
            continue;
        if (!tables.contains(table))
            tables.insert(table, sqliteColumns(connection->Database(), table));
        const QHash<QString, SQLiteColumn> &columns = tables[table];
        const auto column = columns.constFind(names.at(i).toLower());
        if (column == columns.constEnd()) {
            // An alias ("DateBegin AS NextDate") of some column of a table that has dates.
            dateColumns[i] = hasDateColumn(columns) ? DateColumn::Alias : DateColumn::No;
            continue;
        }
        dateColumns[i] = isDateType(column->declaredType) ? DateColumn::Declared : DateColumn::No;
        autoColumns[i] = autoColumns[i] || column->integerPrimaryKey;
    }
}

void kvRecordsetPrivate::Fetch()
{
    values = QVariantList(names.size());
    eof = !(query && query->isActive() && query->next());
    if (eof)
        return;
    for (int i = 0; i < names.size(); ++i)
        values[i] = ReadValue(i);
}

QVariant kvRecordsetPrivate::ReadValue(int column) const
{
    const QVariant value = query->value(column);
    if (!value.isValid() || value.isNull())
        return QVariant();
    if (value.typeId() == QMetaType::QDateTime) {
        // The driver builds a local time; its date() and time() are the stored wall clock.
        const QDateTime dateTime = value.toDateTime();
        return dateTime.date().isValid() ? QVariant(QDateTime(dateTime.date(), dateTime.time(), Qt::UTC)) : QVariant();
    }
    const DateColumn kind = dateColumns.value(column, DateColumn::No);
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
    d->Release();
}

void kvRecordsetPrivate::Release()
{
    if (closingLink)
        QObject::disconnect(closingLink);
    query.reset();
    connection = nullptr;
    open = false;
    eof = true;
    adding = false;
    updatable = false;
    values.clear();
}

void kvRecordsetPrivate::RequireOpen() const
{
    if (!open)
        throw kvAdoError::objectClosed();
}

bool kvRecordset::EOF() const
{
    d->RequireOpen();
    return d->eof;
}

kvFields kvRecordset::Fields() const
{
    d->RequireOpen();
    return kvFields(d->names, d->values, !d->eof);
}

void kvRecordset::MoveNext()
{
    d->RequireOpen();
    if (d->adding) {
        Update();
    } else if (d->eof) {
        throw kvAdoError::noCurrentRecord();
    }
    d->Fetch();
}

void kvRecordset::AddNew()
{
    d->RequireOpen();
    if (!d->updatable)
        throw kvAdoError::notUpdatable();
    if (d->adding)
        Update();
    d->adding = true;
    d->eof = false;
    d->values = QVariantList(d->names.size());
    d->assigned = QList<bool>(d->names.size(), false);
}

void kvRecordset::setValue(const QString &field, const QVariant &value)
{
    d->RequireOpen();
    const int index = d->FieldIndex(field);
    if (!d->adding)
        throw d->eof ? kvAdoError::noCurrentRecord() : kvAdoError::notUpdatable();
    d->values[index] = isDateVariant(value) && kvField::TryDate(value)
                          ? QVariant(kvField::ToDateTime(*kvField::TryDate(value)))
                          : value;
    d->assigned[index] = true;
}

int kvRecordsetPrivate::FieldIndex(const QString &name) const
{
    for (int i = 0; i < names.size(); ++i) {
        if (names.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    throw kvAdoError::itemNotFound();
}

void kvRecordset::Update()
{
    d->RequireOpen();
    if (!d->adding)
        return;
    QVariantList values;
    const QString sql = d->InsertStatement(&values);
    d->query->finish();   // some engines (FreeTDS) serve one statement at a time per connection
    const QSqlQuery insert = kvConnectionPrivate::get(d->connection)->Run(sql, values);
    if (!d->open)
        return;   // the connection was reopened under the recordset, which let go of its rows
    const QVariant key = insert.lastInsertId();
    for (int i = 0; i < d->names.size(); ++i) {
        if (d->autoColumns.at(i) && !d->assigned.at(i) && key.isValid())
            d->values[i] = key;
    }
    d->adding = false;
}

QString kvRecordsetPrivate::InsertStatement(QVariantList *bound) const
{
    QStringList columns;
    QStringList markers;
    for (int i = 0; i < names.size(); ++i) {
        if (!assigned.at(i))
            continue;
        columns << names.at(i);
        markers << QStringLiteral("?");
        bound->append(values.at(i));
    }
    if (columns.isEmpty())
        throw kvAdoError::invalidArgument(QStringLiteral("Update ohne gesetzte Felder"));
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(table, columns.join(QStringLiteral(", ")), markers.join(QStringLiteral(", ")));
}
