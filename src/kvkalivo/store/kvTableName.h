#pragma once

#include "kvDataSource.h"
#include "kvkalivo_export.h"

#include <QString>

/*!
    \brief A RecordSource read as one table name, and written as the connected engine quotes it.

    Accepted is one identifier, optionally after a schema and a dot ("dbo.Termine"). Each part
    is either bare (letters, digits and "_", not beginning with a digit) or quoted in any of
    the usual ways: [Meine Termine], "Meine Termine" or `Meine Termine`, the closing character
    doubled inside ("[a]]b]" is a]b). Quoted parts must not be empty nor hold control
    characters. Bare parts are written as they are; quoted ones as the engine quotes names:
    "…" for SQLite and other ODBC sources, `…` for MySQL and MariaDB, […] for SQL Server and
    Access. Anything else, several statements above all, is refused with error 5.
*/
class KVKALIVO_TESTS_EXPORT kvTableName
{
public:
    //! The number of the error a refused name raises: 5, an invalid argument.
    static constexpr int RefusedNumber = 5;

    //! Reads \a recordSource; throws kvRuntimeError 5 naming it unless it is one table name.
    static kvTableName Parse(const QString &recordSource, kvDataSource::Engine engine);
    //! Whether Parse() accepts \a recordSource.
    static bool IsTableName(const QString &recordSource);

    //! The name for FROM, UPDATE, DELETE and INSERT: with its schema, quoted for the engine.
    QString Qualified() const { return m_qualified; }
    //! The table's own name, quoted for the engine: what qualifies its columns ("T.DateBegin").
    QString Table() const { return m_table; }

private:
    static QString Written(const QString &part, bool quoted, kvDataSource::Engine engine);

    QString m_qualified;
    QString m_table;
};
