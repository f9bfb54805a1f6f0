#include "kvDatabaseError.h"

#include <QSqlError>
#include <QStringList>

namespace {

kvDatabaseError::Condition sqliteCondition(int code)
{
    switch (code) {
    case 5:  // SQLITE_BUSY
    case 6:  // SQLITE_LOCKED
        return kvDatabaseError::Busy;
    case 10: // SQLITE_IOERR
    case 11: // SQLITE_CORRUPT
    case 14: // SQLITE_CANTOPEN
    case 26: // SQLITE_NOTADB
        return kvDatabaseError::ServerGone;
    default:
        return kvDatabaseError::Refused;
    }
}

kvDatabaseError::Condition mySqlCondition(int code)
{
    switch (code) {
    case 1205: // ER_LOCK_WAIT_TIMEOUT
        return kvDatabaseError::Busy;
    case 1927: // ER_CONNECTION_KILLED
    case 2002: // CR_CONNECTION_ERROR
    case 2003: // CR_CONN_HOST_ERROR
    case 2006: // CR_SERVER_GONE_ERROR
    case 2013: // CR_SERVER_LOST
    case 2055: // CR_SERVER_LOST_EXTENDED
    case 4031: // ER_CLIENT_INTERACTION_TIMEOUT
        return kvDatabaseError::ServerGone;
    default:
        return kvDatabaseError::Refused;
    }
}

// QODBC reports the SQLSTATEs of a failure, separated by ";".
kvDatabaseError::Condition odbcCondition(const QString &states)
{
    for (const QString &state : states.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        if (state == QLatin1String("HYT00") || state == QLatin1String("HYT01"))
            return kvDatabaseError::TimedOut;
        if (state.startsWith(QLatin1String("08")))
            return kvDatabaseError::ServerGone;
    }
    return kvDatabaseError::Refused;
}

} // namespace

kvDatabaseError::kvDatabaseError(int number, const QString &description, Condition condition)
    : kvRuntimeError(number, description), m_condition(condition)
{
}

kvDatabaseError::~kvDatabaseError() = default;

kvDatabaseError::Condition kvDatabaseError::ConditionOf(const QSqlError &error, kvDataSource::Engine engine)
{
    const QString native = error.nativeErrorCode().trimmed();
    switch (engine) {
    case kvDataSource::SQLite:
        return sqliteCondition(native.toInt());
    case kvDataSource::MySql:
        return mySqlCondition(native.toInt());
    case kvDataSource::SqlServer:
    case kvDataSource::Access:
    case kvDataSource::Odbc:
        break;
    }
    return odbcCondition(native);
}
