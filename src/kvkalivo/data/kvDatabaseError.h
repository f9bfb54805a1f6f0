#pragma once

#include "kvDataSource.h"
#include "kvRuntimeError.h"
#include "kvkalivo_export.h"

class QSqlError;

/*!
    \file kvDatabaseError.h
    \brief kvDatabaseError: a failure of the database, with what it means for the caller.
*/

/*!
    \brief A statement or connection that failed in the database, and why: refused, busy,
    the server gone or no answer in time.

    The data layer throws it with the engine's own message; number() is ADO's
    (kvAdoError::StatementFailed or kvAdoError::ProviderFailed). isUnavailable() tells a
    caller that the database cannot serve anything just now, so that a series of reads
    (the days of a grid) stops at the first such failure instead of waiting once per read.
*/
class KVKALIVO_TESTS_EXPORT kvDatabaseError : public kvRuntimeError
{
public:
    //! Why the database failed.
    enum Condition {
        Refused,    //!< the engine refused this statement (syntax, missing table, constraint, …)
        Busy,       //!< another connection holds a lock (SQLite busy, a lock wait timeout)
        ServerGone, //!< the connection to the server is lost, or the file cannot be read
        TimedOut    //!< no answer within the connection string's Command Timeout
    };

    //! A failure with ADO's \a number, the engine's \a description and its \a condition.
    kvDatabaseError(int number, const QString &description, Condition condition);
    ~kvDatabaseError() override;

    //! Why the database failed.
    Condition condition() const { return m_condition; }
    //! Busy, ServerGone or TimedOut: the database cannot serve anything just now.
    bool isUnavailable() const { return m_condition != Refused; }

    //! What \a error of an \a engine means: the engines' native codes, SQLSTATEs for ODBC.
    static Condition ConditionOf(const QSqlError &error, kvDataSource::Engine engine);

private:
    Condition m_condition;
};
