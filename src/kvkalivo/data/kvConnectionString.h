#pragma once

#include "kvkalivo_export.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

/*!
    \file kvConnectionString.h
    \brief kvConnectionString: parsing and writing ADO/ODBC connection strings.
*/

/*!
    \brief An ADO/ODBC connection string: "key=value;key=value".

    Keys are compared case-insensitively with their blanks simplified ("data  source" is
    "Data Source"). A value may be written in {braces} (";" allowed inside, "}}" for "}") or in
    double or single quotes (the quote doubled inside); otherwise it is trimmed. Empty elements
    (";;", a trailing ";") are ignored; when a key repeats, the last value wins.
    Parse() throws kvRuntimeError 3001 for an element without "=", an empty key or an
    unclosed brace or quote. Its messages name elements by position, never by their value,
    so that a password does not end up in an error report.
*/
class KVKALIVO_TESTS_EXPORT kvConnectionString
{
public:
    //! An empty connection string: no elements.
    kvConnectionString() = default;

    //! The elements of \a text; throws kvRuntimeError 3001 when it is malformed or empty.
    static kvConnectionString Parse(const QString &text);

    //! The number of distinct keys.
    int Count() const { return int(m_pairs.size()); }
    //! The keys, in the order they first appear (spelled as last written).
    QStringList Keys() const;
    //! Whether \a key is present (case-insensitive, blanks simplified).
    bool Contains(const QString &key) const;
    //! The value of \a key; empty text when it is missing.
    QString Value(const QString &key) const;
    //! The value of the first of \a synonyms that is present.
    QString Value(const QStringList &synonyms) const;
    //! Whether any of \a synonyms ("Data Source", "Server", …) is present.
    bool ContainsAny(const QStringList &synonyms) const;

    /*!
        \a value as an ODBC value: in braces when it holds ";", "{" or "}", has outer blanks
        or begins with a quote, so that Parse() reads it back unchanged.
    */
    static QString Quote(const QString &value);
    /*!
        Joins \a pairs into "key=value;…", quoting the values as needed: Parse() gives back
        every key and value. Throws kvRuntimeError 3001 for a key Parse() could not give back
        (empty, with outer blanks, "=" or ";") and for a key repeated.
    */
    static QString Join(const QList<std::pair<QString, QString>> &pairs);
    //! Whether Join() can write \a key: not empty, no outer blanks, no "=" or ";".
    static bool IsWritableKey(const QString &key);

private:
    static QString NormalizedKey(const QString &key);
    int IndexOf(const QString &key) const;
    void Set(const QString &key, const QString &value);

    QList<std::pair<QString, QString>> m_pairs;   // key as written, value
};
