#include "kvCommand.h"

#include "kvAdoError.h"
#include "kvConnection.h"

#include <QSqlQuery>

int kvCommand::Execute()
{
    if (!m_connection)
        throw kvAdoError::connectionUnusable();
    return kvConnection::RecordsAffected(m_connection->Run(StatementFor(m_commandText, m_commandType), m_parameters));
}

QString kvCommand::StatementFor(const QString &source, int commandType)
{
    switch (commandType) {
    case adCmdUnspecified:
    case adCmdText:
        return source;
    case adCmdTable:
        return QStringLiteral("SELECT * FROM ") + source;
    default:
        throw kvAdoError::invalidArgument(QStringLiteral("CommandType %1 wird nicht unterstützt").arg(commandType));
    }
}
