#pragma once

#include "kvRuntimeError.h"
#include "kvkalivo_export.h"

#include <QString>

class QSqlError;

/*!
    \brief The failures the ADO-like data layer raises, with ADO's numbers and German texts.

    Failures of the database itself carry the engine's own message as description
    (QSqlError::databaseText(), else driverText()), so that a caller reporting
    "12-5" CR LF description shows what the engine said.
*/
class KVKALIVO_EXPORT kvAdoError
{
public:
    //! ADO's ErrorValueEnum members used here, and the HRESULTs a provider reports.
    enum Number {
        TypeMismatch = 13,
        InvalidUseOfNull = 94,
        adErrInvalidArgument = 3001,
        adErrNoCurrentRecord = 3021,
        adErrFeatureNotAvailable = 3251,
        adErrItemNotFound = 3265,
        adErrObjectClosed = 3704,
        adErrObjectOpen = 3705,
        adErrProviderNotFound = 3706,
        adErrInvalidConnection = 3709,
        ProviderFailed = -2147467259,      //!< E_FAIL: the connection could not be opened
        StatementFailed = -2147217900,     //!< DB_E_ERRORSINTEXT: the engine refused a statement
    };

    //! VB's 13 "Typen unverträglich": a value is no date where a date is wanted.
    static kvRuntimeError typeMismatch();
    //! VB's 94 "Unzulässige Verwendung von Null".
    static kvRuntimeError invalidUseOfNull();
    static kvRuntimeError invalidArgument(const QString &detail = QString());
    static kvRuntimeError noCurrentRecord();
    static kvRuntimeError notUpdatable();
    static kvRuntimeError itemNotFound();
    static kvRuntimeError objectClosed();
    static kvRuntimeError objectOpen();
    static kvRuntimeError providerNotFound(const QString &name);
    static kvRuntimeError connectionUnusable();
    //! An engine's refusal of a statement: its own message.
    static kvRuntimeError statementFailed(const QSqlError &error);
    //! A failed Open: \a context (may be empty) followed by the engine's or driver's message.
    static kvRuntimeError openFailed(const QString &context, const QString &engineMessage);

    //! The engine's own words for \a error: databaseText(), else driverText().
    static QString engineMessage(const QSqlError &error);
};
