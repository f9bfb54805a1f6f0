#pragma once

#include "kvFields.h"
#include "kvkalivo_export.h"

#include <QMetaObject>
#include <QPointer>
#include <QString>
#include <QVariantList>

#include <cstdio>
#include <memory>

// ADO's EOF property collides with the C library's EOF macro. <cstdio> is included above so
// that its guard keeps the macro from coming back; code that needs it can use
// std::char_traits<char>::eof().
#undef EOF

class QSqlQuery;
class kvCommand;
class kvConnection;

/*!
    \brief ADO's Recordset, forward-only: Open, EOF, Fields, MoveNext, AddNew, Update, Close.

    Open runs the source over the connection (adCmdTable sends "SELECT * FROM " source, the
    text that StatementExecuted() shows) and stands on the first row. Fields() are the current
    row's; their names are there even at EOF. Date and time columns arrive as QDateTime in
    Qt::UTC carrying the stored wall-clock value (see kvField), also from SQLite, whose
    DATE/DATETIME/TIME columns hold text.

    A recordset opened with a lock type other than adLockReadOnly/unspecified on one table
    accepts AddNew, setValue and Update: Update sends
    "INSERT INTO T (A, B) VALUES (?, ?)" with the values set, bound; the key is left to the
    database (and read back into the field where the driver tells which column is automatic).
    After Update the new row is the current one and the next MoveNext reaches EOF.

    Failures throw kvRuntimeError: 3709 without an open connection, 3705 when already open,
    3704 when closed, 3021 without a current record, 3251 when not updatable, 3265 for an
    unknown field, the engine's own message when it refuses a statement. Close() on a closed
    recordset does nothing; closing the connection closes its recordsets.
*/
class KVKALIVO_EXPORT kvRecordset
{
public:
    enum CursorTypeEnum { adOpenUnspecified = -1, adOpenForwardOnly = 0, adOpenKeyset = 1, adOpenDynamic = 2,
                          adOpenStatic = 3 };
    enum LockTypeEnum { adLockUnspecified = -1, adLockReadOnly = 1, adLockPessimistic = 2, adLockOptimistic = 3,
                        adLockBatchOptimistic = 4 };
    enum CommandTypeEnum { adCmdUnspecified = -1, adCmdText = 1, adCmdTable = 2 };
    enum ObjectState { adStateClosed = 0, adStateOpen = 1 };

    kvRecordset();
    ~kvRecordset();
    kvRecordset(const kvRecordset &) = delete;
    kvRecordset &operator=(const kvRecordset &) = delete;

    void Open(const QString &source, kvConnection *connection, int cursorType = adOpenForwardOnly,
              int lockType = adLockUnspecified, int options = adCmdUnspecified);
    void Open(kvCommand &command, int cursorType = adOpenForwardOnly, int lockType = adLockUnspecified,
              int options = adCmdUnspecified);
    void Close();

    int State() const { return m_open ? adStateOpen : adStateClosed; }
    bool EOF() const;
    kvFields Fields() const;
    void MoveNext();

    void AddNew();
    //! Fields(field).Value = value on the row being added.
    void setValue(const QString &field, const QVariant &value);
    void Update();

    //! The SQL text the recordset was opened with.
    QString Source() const { return m_source; }

private:
    enum class DateColumn { No, Declared, Alias };

    void Start(kvConnection *connection, const QString &sql, const QVariantList &parameters, int lockType,
               const QString &table);
    void Adopt(kvConnection *connection, QSqlQuery &&query);
    void FindSQLiteDateColumns();
    void Fetch();
    QVariant ReadValue(int column) const;
    void RequireOpen() const;
    void Release();
    int FieldIndex(const QString &name) const;
    QString InsertStatement(QVariantList *values) const;

    QPointer<kvConnection> m_connection;
    QMetaObject::Connection m_closingLink;
    std::unique_ptr<QSqlQuery> m_query;
    QString m_source;
    QString m_table;                 // the table AddNew inserts into
    QStringList m_names;
    QList<bool> m_autoColumns;
    QList<DateColumn> m_dateColumns;
    QVariantList m_values;
    QList<bool> m_assigned;          // per field: set by setValue on the new row
    bool m_open = false;
    bool m_eof = true;
    bool m_updatable = false;
    bool m_adding = false;
};
