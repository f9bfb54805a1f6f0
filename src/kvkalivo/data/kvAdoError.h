#pragma once

#include "kvDataSource.h"
#include "kvDatabaseError.h"
#include "kvRuntimeError.h"
#include "kvkalivo_export.h"

#include <QString>

class QSqlError;

/*!
    \file kvAdoError.h
    \brief kvAdoError: the data layer's error numbers (ADO's) and German descriptions.
*/

/*!
    \brief The failures the ADO-like data layer raises, with ADO's numbers and German texts.

    Failures of the database itself carry the engine's own message as description
    (QSqlError::databaseText(), else driverText()), so that a caller reporting
    "12-5" CR LF description shows what the engine said.
*/
class KVKALIVO_TESTS_EXPORT kvAdoError
{
public:
    //! ADO's ErrorValueEnum members used here, and the HRESULTs a provider reports.
    enum Number {
        TypeMismatch = 13,               //!< "Typen unverträglich": no date where a date is wanted
        InvalidUseOfNull = 94,           //!< "Unzulässige Verwendung von Null"
        adErrInvalidArgument = 3001,     //!< a malformed connection string, an unsupported engine, an Update without values
        adErrNoCurrentRecord = 3021,     //!< a field read or write at EOF
        adErrFeatureNotAvailable = 3251, //!< AddNew or Update on a read-only recordset
        adErrItemNotFound = 3265,        //!< an unknown field name or index
        adErrObjectClosed = 3704,        //!< a closed recordset or connection was used
        adErrObjectOpen = 3705,          //!< Open on an open object, a new ConnectionString while open
        adErrProviderNotFound = 3706,    //!< an unknown Provider, neither Provider nor Driver, a missing Qt SQL driver
        adErrInvalidConnection = 3709,   //!< no open connection
        ProviderFailed = -2147467259,      //!< E_FAIL: the connection could not be opened
        StatementFailed = -2147217900,     //!< DB_E_ERRORSINTEXT: the engine refused a statement
    };

    //! 13 "Typen unverträglich": a value is no date where a date is wanted.
    static kvRuntimeError typeMismatch();
    //! 94 "Unzulässige Verwendung von Null".
    static kvRuntimeError invalidUseOfNull();
    //! 3001, ADO's German text, followed by \a detail in parentheses when given.
    static kvRuntimeError invalidArgument(const QString &detail = QString());
    //! 3021 "Entweder BOF oder EOF ist True, …".
    static kvRuntimeError noCurrentRecord();
    //! 3251 "Das aktuelle Recordset unterstützt keine Aktualisierungen. …".
    static kvRuntimeError notUpdatable();
    //! 3265 "Das Element wurde in der Auflistung … nicht gefunden".
    static kvRuntimeError itemNotFound();
    //! 3704 "Der Vorgang ist für ein geschlossenes Objekt nicht zulässig."
    static kvRuntimeError objectClosed();
    //! 3705 "Der Vorgang ist für ein geöffnetes Objekt nicht zulässig."
    static kvRuntimeError objectOpen();
    //! 3706 "Der Provider wurde nicht gefunden. …", followed by \a name.
    static kvRuntimeError providerNotFound(const QString &name);
    //! 3709 "Die Verbindung kann nicht zum Ausführen dieses Vorgangs verwendet werden. …".
    static kvRuntimeError connectionUnusable();
    //! A statement that failed in \a engine: its own message, and what the failure means.
    static kvDatabaseError statementFailed(const QSqlError &error, kvDataSource::Engine engine);
    //! A failed Open: \a context (may be empty) followed by the engine's or driver's message.
    static kvDatabaseError openFailed(const QString &context, const QString &engineMessage);

    //! The engine's own words for \a error: databaseText(), else (when the engine has none) driverText().
    static QString engineMessage(const QSqlError &error);
};
