#pragma once

#include "kvkalivo_export.h"

#include <QSharedDataPointer>
#include <QString>
#include <QVariantList>

class kvCommandPrivate;
class kvConnection;

/*!
    \file kvCommand.h
    \brief kvCommand, ADO's Command: an SQL text with positional parameters.
*/

/*!
    \brief ADO's Command: ActiveConnection, CommandType, CommandText, Parameters, Execute.

    Parameters() are positional values for the "?" markers of CommandText; when empty the
    text runs as it is. A Command is a source for kvRecordset::Open, as the per-day query uses it.
*/
class KVKALIVO_EXPORT kvCommand
{
public:
    //! ADO's CommandTypeEnum: how CommandText is read.
    enum CommandTypeEnum {
        adCmdUnspecified = -1, //!< as text (the default)
        adCmdText = 1,         //!< an SQL text
        adCmdTable = 2         //!< a table name: "SELECT * FROM " name
    };

    //! A command without connection and text, of type adCmdUnspecified.
    kvCommand();
    //! Copies connection, type, text and parameters.
    kvCommand(const kvCommand &other);
    //! Takes over \a other's data; \a other may then only be assigned to or destroyed.
    kvCommand(kvCommand &&other) noexcept;
    //! Makes this a copy of \a other.
    kvCommand &operator=(const kvCommand &other);
    //! Takes over \a other's data.
    kvCommand &operator=(kvCommand &&other) noexcept;
    ~kvCommand();

    //! The connection the command runs on (not owned; watched, null once deleted).
    void setActiveConnection(kvConnection *connection);
    //! The connection set by setActiveConnection(), or null.
    kvConnection *ActiveConnection() const;
    //! How CommandText is read: a CommandTypeEnum value.
    void setCommandType(int commandType);
    //! The CommandTypeEnum value set; adCmdUnspecified by default.
    int CommandType() const;
    //! The SQL text (or table name), "?" marking each parameter.
    void setCommandText(const QString &commandText);
    //! The SQL text (or table name) set.
    QString CommandText() const;
    //! The values for the "?" markers, in order; append to it before Execute().
    QVariantList &Parameters();
    //! \overload
    const QVariantList &Parameters() const;

    //! Runs the command; returns the records affected, -1 for a query. Throws like kvConnection, 3709 without a connection.
    int Execute();

    /*!
        The SQL text for \a source of \a commandType: the text itself for adCmdText and
        adCmdUnspecified, "SELECT * FROM " source for adCmdTable; other types throw 3001.
    */
    static QString StatementFor(const QString &source, int commandType);

private:
    QSharedDataPointer<kvCommandPrivate> d;
};
