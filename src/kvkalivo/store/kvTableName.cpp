#include "kvTableName.h"

#include "kvEnclosedText.h"
#include "kvRuntimeError.h"

#include <QList>
#include <QStringList>

#include <algorithm>

namespace {

constexpr int MaximumParts = 2;   // schema.table

bool isBare(QStringView part)
{
    if (part.isEmpty() || part.front().isDigit())
        return false;
    for (const QChar c : part) {
        if (!c.isLetterOrNumber() && c != u'_')
            return false;
    }
    return true;
}

QChar closerOf(QChar opener)
{
    return opener == u'[' ? QChar(u']') : opener;
}

bool isOpener(QChar c)
{
    return c == u'[' || c == u'"' || c == u'`';
}

struct NamePart
{
    QString name;
    bool quoted = false;
};

//! One part from \a position: bare up to the next dot, or enclosed. Moves \a position past it.
bool readPart(const QString &text, qsizetype &position, QString &part, bool &quoted)
{
    quoted = isOpener(text.at(position));
    if (!quoted) {
        const qsizetype dot = text.indexOf(u'.', position);
        const qsizetype end = dot < 0 ? text.size() : dot;
        part = text.mid(position, end - position);
        position = end;
        return isBare(part);
    }
    const std::optional<QString> enclosed = kvEnclosedText::Read(text, position, closerOf(text.at(position)));
    if (!enclosed || enclosed->isEmpty())
        return false;
    part = *enclosed;
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    return std::none_of(part.cbegin(), part.cend(), isControl);
}

//! The parts of \a text, unquoted; empty when it is not one table name.
QList<NamePart> partsOf(const QString &text)
{
    QList<NamePart> parts;
    qsizetype position = 0;
    while (position < text.size()) {
        NamePart part;
        if (parts.size() == MaximumParts || !readPart(text, position, part.name, part.quoted))
            return {};
        parts << part;
        if (position == text.size())
            break;
        if (text.at(position) != u'.' || ++position == text.size())
            return {};
    }
    return parts;
}

} // namespace

bool kvTableName::IsTableName(const QString &recordSource)
{
    return !partsOf(recordSource).isEmpty();
}

kvTableName kvTableName::Parse(const QString &recordSource, kvDataSource::Engine engine)
{
    const QList<NamePart> parts = partsOf(recordSource);
    if (parts.isEmpty())
        throw kvRuntimeError(RefusedNumber,
                             QStringLiteral("RecordSource \"%1\" ist kein einfacher Tabellenname. Mit "
                                            "ParameterizedSql ist ein Name aus Buchstaben, Ziffern und _ "
                                            "erlaubt (nicht an erster Stelle eine Ziffer) oder ein Name in "
                                            "[ ], \" \" oder ` `, wahlweise mit einem Schema davor "
                                            "(Schema.Tabelle).")
                                 .arg(recordSource));
    QStringList written;
    for (const NamePart &part : parts)
        written << Written(part.name, part.quoted, engine);
    kvTableName name;
    name.m_qualified = written.join(u'.');
    name.m_table = written.last();
    return name;
}

QString kvTableName::Written(const QString &part, bool quoted, kvDataSource::Engine engine)
{
    if (!quoted)
        return part;
    QChar opener = u'"';
    if (engine == kvDataSource::MySql)
        opener = u'`';
    else if (engine == kvDataSource::SqlServer || engine == kvDataSource::Access)
        opener = u'[';
    const QChar closer = closerOf(opener);
    QString escaped = part;
    escaped.replace(closer, QString(2, closer));
    return opener + escaped + closer;
}
