#include "kvAdoError.h"

#include <QSqlError>

namespace {

QString withDetail(const QString &text, const QString &detail)
{
    return detail.isEmpty() ? text : text + QStringLiteral(" (") + detail + QLatin1Char(')');
}

} // namespace

kvRuntimeError kvAdoError::typeMismatch()
{
    return kvRuntimeError(TypeMismatch, QStringLiteral("Typen unverträglich"));
}

kvRuntimeError kvAdoError::invalidUseOfNull()
{
    return kvRuntimeError(InvalidUseOfNull, QStringLiteral("Unzulässige Verwendung von Null"));
}

kvRuntimeError kvAdoError::invalidArgument(const QString &detail)
{
    return kvRuntimeError(adErrInvalidArgument,
                          withDetail(QStringLiteral("Die Argumente sind vom falschen Typ, liegen außerhalb des "
                                                    "zulässigen Bereichs oder sind miteinander unvereinbar."),
                                     detail));
}

kvRuntimeError kvAdoError::noCurrentRecord()
{
    return kvRuntimeError(adErrNoCurrentRecord,
                          QStringLiteral("Entweder BOF oder EOF ist True, oder der aktuelle Datensatz wurde "
                                         "gelöscht. Der angeforderte Vorgang benötigt einen aktuellen Datensatz."));
}

kvRuntimeError kvAdoError::notUpdatable()
{
    return kvRuntimeError(adErrFeatureNotAvailable,
                          QStringLiteral("Das aktuelle Recordset unterstützt keine Aktualisierungen. Dies ist "
                                         "möglicherweise eine Einschränkung des Providers oder des gewählten "
                                         "Sperrtyps."));
}

kvRuntimeError kvAdoError::itemNotFound()
{
    return kvRuntimeError(adErrItemNotFound,
                          QStringLiteral("Das Element wurde in der Auflistung, die dem angeforderten Namen oder "
                                         "Ordinalwert entspricht, nicht gefunden."));
}

kvRuntimeError kvAdoError::objectClosed()
{
    return kvRuntimeError(adErrObjectClosed,
                          QStringLiteral("Der Vorgang ist für ein geschlossenes Objekt nicht zulässig."));
}

kvRuntimeError kvAdoError::objectOpen()
{
    return kvRuntimeError(adErrObjectOpen,
                          QStringLiteral("Der Vorgang ist für ein geöffnetes Objekt nicht zulässig."));
}

kvRuntimeError kvAdoError::providerNotFound(const QString &name)
{
    return kvRuntimeError(adErrProviderNotFound,
                          withDetail(QStringLiteral("Der Provider wurde nicht gefunden. Er ist möglicherweise "
                                                    "nicht ordnungsgemäß installiert."),
                                     name));
}

kvRuntimeError kvAdoError::connectionUnusable()
{
    return kvRuntimeError(adErrInvalidConnection,
                          QStringLiteral("Die Verbindung kann nicht zum Ausführen dieses Vorgangs verwendet "
                                         "werden. Sie ist entweder geschlossen oder in diesem Zusammenhang "
                                         "ungültig."));
}

kvDatabaseError kvAdoError::statementFailed(const QSqlError &error, kvDataSource::Engine engine)
{
    return kvDatabaseError(StatementFailed, engineMessage(error), kvDatabaseError::ConditionOf(error, engine));
}

kvDatabaseError kvAdoError::openFailed(const QString &context, const QString &engineMessage)
{
    const QString text = context.isEmpty() ? engineMessage : context + QStringLiteral(": ") + engineMessage;
    return kvDatabaseError(ProviderFailed, text, kvDatabaseError::ServerGone);
}

QString kvAdoError::engineMessage(const QSqlError &error)
{
    // SQLite says "not an error" when the driver refused the statement before the engine saw
    // it (several statements in one text): then the driver's words name what failed.
    const QString database = error.databaseText().trimmed();
    const bool engineSaysNothing = database.isEmpty() || database == QLatin1String("not an error");
    return engineSaysNothing ? error.driverText().trimmed() : database;
}
