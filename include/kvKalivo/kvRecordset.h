#pragma once

#include "kvFields.h"
#include "kvkalivo_export.h"

#include <QString>

#include <cstdio>
#include <memory>

// ADO's EOF property collides with the C library's EOF macro. <cstdio> is included above so
// that its guard keeps the macro from coming back; code that needs it can use
// std::char_traits<char>::eof().
#undef EOF

class kvCommand;
class kvConnection;
class kvRecordsetPrivate;

/*!
    \file kvRecordset.h
    \brief kvRecordset, ADO's forward-only Recordset over a kvConnection.
*/

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
    //! ADO's CursorTypeEnum; accepted for compatibility, every recordset reads forward only.
    enum CursorTypeEnum {
        adOpenUnspecified = -1, //!< not given
        adOpenForwardOnly = 0,  //!< forward only (what every recordset is)
        adOpenKeyset = 1,       //!< keyset (the store's insert asks for it)
        adOpenDynamic = 2,      //!< dynamic
        adOpenStatic = 3        //!< static
    };
    //! ADO's LockTypeEnum; any lock other than read-only/unspecified allows AddNew on one table.
    enum LockTypeEnum {
        adLockUnspecified = -1,   //!< not given: read-only
        adLockReadOnly = 1,       //!< read-only
        adLockPessimistic = 2,    //!< updatable (the store's insert)
        adLockOptimistic = 3,     //!< updatable
        adLockBatchOptimistic = 4 //!< updatable
    };
    //! ADO's CommandTypeEnum, the \c options of Open().
    enum CommandTypeEnum {
        adCmdUnspecified = -1, //!< the source is an SQL text (a kvCommand's own CommandType applies)
        adCmdText = 1,         //!< the source is an SQL text
        adCmdTable = 2         //!< the source is a table name: "SELECT * FROM " source
    };
    //! ADO's ObjectStateEnum, the values of State().
    enum ObjectState {
        adStateClosed = 0, //!< closed
        adStateOpen = 1    //!< open
    };

    //! A closed recordset.
    kvRecordset();
    //! Closes the recordset; a row being added is not written.
    ~kvRecordset();
    kvRecordset(const kvRecordset &) = delete;            //!< Not copyable.
    kvRecordset &operator=(const kvRecordset &) = delete; //!< Not copyable.

    /*!
        Runs \a source, an SQL text or with \a options adCmdTable a table name, on the open
        \a connection and stands on the first row. \a cursorType is ignored; \a lockType
        decides whether AddNew() is allowed. Throws 3709 without an open connection, 3705 when
        already open, or the engine's message when it refuses the statement.
    */
    void Open(const QString &source, kvConnection *connection, int cursorType = adOpenForwardOnly,
              int lockType = adLockUnspecified, int options = adCmdUnspecified);
    //! Runs \a command (its connection, text, type and parameters); \a options, when given, overrides its CommandType.
    void Open(kvCommand &command, int cursorType = adOpenForwardOnly, int lockType = adLockUnspecified,
              int options = adCmdUnspecified);
    //! Lets go of the rows; a row being added is not written. Does nothing when closed.
    void Close();

    //! adStateOpen (1) while open, else adStateClosed (0).
    int State() const;
    //! True after the last row (or for an empty result); throws 3704 when closed.
    bool EOF() const;
    //! The current row's fields; throws 3704 when closed.
    kvFields Fields() const;
    //! Goes on to the next row (writing a row being added first); throws 3021 at EOF.
    void MoveNext();

    //! Starts a new row, all fields Null; throws 3251 unless opened updatable on a table.
    void AddNew();
    //! Fields(field).Value = value on the row being added.
    void setValue(const QString &field, const QVariant &value);
    //! Inserts the row being added (see the class description); does nothing otherwise.
    void Update();

    //! The SQL text the recordset was opened with.
    QString Source() const;

private:
    std::unique_ptr<kvRecordsetPrivate> const d;
};
