#pragma once

#include "kvConnection.h"
#include "kvkalivo_export.h"

#include <QPointer>
#include <QString>
#include <QVariantList>

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

    //! The connection the command runs on (not owned; watched, null once deleted).
    void setActiveConnection(kvConnection *connection) { m_connection = connection; }
    //! The connection set by setActiveConnection(), or null.
    kvConnection *ActiveConnection() const { return m_connection; }
    //! How CommandText is read: a CommandTypeEnum value.
    void setCommandType(int commandType) { m_commandType = commandType; }
    //! The CommandTypeEnum value set; adCmdUnspecified by default.
    int CommandType() const { return m_commandType; }
    //! The SQL text (or table name), "?" marking each parameter.
    void setCommandText(const QString &commandText) { m_commandText = commandText; }
    //! The SQL text (or table name) set.
    QString CommandText() const { return m_commandText; }
    //! The values for the "?" markers, in order; append to it before Execute().
    QVariantList &Parameters() { return m_parameters; }
    //! \overload
    const QVariantList &Parameters() const { return m_parameters; }

    //! Runs the command; returns the records affected, -1 for a query. Throws like kvConnection, 3709 without a connection.
    int Execute();

    /*!
        The SQL text for \a source of \a commandType: the text itself for adCmdText and
        adCmdUnspecified, "SELECT * FROM " source for adCmdTable; other types throw 3001.
    */
    static QString StatementFor(const QString &source, int commandType);

private:
    QPointer<kvConnection> m_connection;
    int m_commandType = adCmdUnspecified;
    QString m_commandText;
    QVariantList m_parameters;
};
