#include "kvCommand.h"

#include "kvAdoError.h"
#include "kvConnection.h"
#include "kvConnection_p.h"

#include <QPointer>
#include <QSharedData>
#include <QSqlQuery>

class kvCommandPrivate : public QSharedData
{
public:
    QPointer<kvConnection> connection;
    int commandType = kvCommand::adCmdUnspecified;
    QString commandText;
    QVariantList parameters;
};

kvCommand::kvCommand() : d(new kvCommandPrivate)
{
}

kvCommand::kvCommand(const kvCommand &other) = default;
kvCommand::kvCommand(kvCommand &&other) noexcept = default;
kvCommand &kvCommand::operator=(const kvCommand &other) = default;
kvCommand &kvCommand::operator=(kvCommand &&other) noexcept = default;
kvCommand::~kvCommand() = default;

void kvCommand::setActiveConnection(kvConnection *connection)
{
    d->connection = connection;
}

kvConnection *kvCommand::ActiveConnection() const
{
    return d->connection;
}

void kvCommand::setCommandType(int commandType)
{
    d->commandType = commandType;
}

int kvCommand::CommandType() const
{
    return d->commandType;
}

void kvCommand::setCommandText(const QString &commandText)
{
    d->commandText = commandText;
}

QString kvCommand::CommandText() const
{
    return d->commandText;
}

QVariantList &kvCommand::Parameters()
{
    return d->parameters;
}

const QVariantList &kvCommand::Parameters() const
{
    return d->parameters;
}

int kvCommand::Execute()
{
    if (!d->connection)
        throw kvAdoError::connectionUnusable();
    kvConnectionPrivate *connection = kvConnectionPrivate::get(d->connection);
    return kvConnectionPrivate::RecordsAffected(
        connection->Run(StatementFor(d->commandText, d->commandType), d->parameters));
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
