#pragma once

#include "kvkalivo_export.h"

#include <QPointer>
#include <QString>
#include <QVariantList>

class kvConnection;

/*!
    \brief ADO's Command: ActiveConnection, CommandType, CommandText, Parameters, Execute.

    Parameters() are positional values for the "?" markers of CommandText; when empty the
    text runs as it is. A Command is a source for kvRecordset::Open, as in Part 2.2.
*/
class KVKALIVO_EXPORT kvCommand
{
public:
    enum CommandTypeEnum { adCmdUnspecified = -1, adCmdText = 1, adCmdTable = 2 };

    void setActiveConnection(kvConnection *connection) { m_connection = connection; }
    kvConnection *ActiveConnection() const { return m_connection; }
    void setCommandType(int commandType) { m_commandType = commandType; }
    int CommandType() const { return m_commandType; }
    void setCommandText(const QString &commandText) { m_commandText = commandText; }
    QString CommandText() const { return m_commandText; }
    QVariantList &Parameters() { return m_parameters; }
    const QVariantList &Parameters() const { return m_parameters; }

    //! Runs the command; returns the records affected, -1 for a query. Throws like kvConnection.
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
