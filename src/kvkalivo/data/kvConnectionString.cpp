#include "kvConnectionString.h"

#include "kvAdoError.h"
#include "kvEnclosedText.h"

namespace {

class Parser
{
public:
    explicit Parser(const QString &text) : m_text(text) {}

    bool AtEnd() const { return m_pos >= m_text.size(); }

    void SkipBlanksAndSeparators()
    {
        while (!AtEnd() && (m_text.at(m_pos).isSpace() || m_text.at(m_pos) == QLatin1Char(';')))
            ++m_pos;
    }

    QString ReadKey(int element)
    {
        const qsizetype equals = m_text.indexOf(QLatin1Char('='), m_pos);
        const qsizetype separator = m_text.indexOf(QLatin1Char(';'), m_pos);
        if (equals < 0 || (separator >= 0 && separator < equals))
            throw kvAdoError::invalidArgument(Message(element, QStringLiteral("ohne '='")));
        const QString key = m_text.mid(m_pos, equals - m_pos).trimmed();
        if (key.isEmpty())
            throw kvAdoError::invalidArgument(Message(element, QStringLiteral("ohne Namen")));
        m_pos = equals + 1;
        return key;
    }

    QString ReadValue(int element)
    {
        while (!AtEnd() && m_text.at(m_pos).isSpace() && m_text.at(m_pos) != QLatin1Char(';'))
            ++m_pos;
        if (AtEnd())
            return QString();
        const QChar first = m_text.at(m_pos);
        if (first == QLatin1Char('{'))
            return ReadEnclosed(element, QLatin1Char('}'), QStringLiteral("'}' fehlt"));
        if (first == QLatin1Char('"') || first == QLatin1Char('\''))
            return ReadEnclosed(element, first, QStringLiteral("schließendes Anführungszeichen fehlt"));
        const qsizetype separator = m_text.indexOf(QLatin1Char(';'), m_pos);
        const qsizetype end = separator < 0 ? m_text.size() : separator;
        const QString value = m_text.mid(m_pos, end - m_pos).trimmed();
        m_pos = end;
        return value;
    }

private:
    // Reads from an opening brace or quote to its closing character; a doubled closer is literal.
    QString ReadEnclosed(int element, QChar closer, const QString &problem)
    {
        const std::optional<QString> value = kvEnclosedText::Read(m_text, m_pos, closer);
        if (!value)
            throw kvAdoError::invalidArgument(Message(element, problem));
        ExpectEndOfElement(element);
        return *value;
    }

    void ExpectEndOfElement(int element)
    {
        while (!AtEnd() && m_text.at(m_pos).isSpace())
            ++m_pos;
        if (!AtEnd() && m_text.at(m_pos) != QLatin1Char(';'))
            throw kvAdoError::invalidArgument(Message(element, QStringLiteral("Zeichen nach dem Wert")));
    }

    static QString Message(int element, const QString &problem)
    {
        return QStringLiteral("Verbindungszeichenfolge: Element %1 %2").arg(element).arg(problem);
    }

    const QString &m_text;
    qsizetype m_pos = 0;
};

} // namespace

kvConnectionString kvConnectionString::Parse(const QString &text)
{
    if (text.trimmed().isEmpty())
        throw kvAdoError::invalidArgument(QStringLiteral("Verbindungszeichenfolge ist leer"));
    kvConnectionString result;
    Parser parser(text);
    for (int element = 1;; ++element) {
        parser.SkipBlanksAndSeparators();
        if (parser.AtEnd())
            break;
        const QString key = parser.ReadKey(element);
        result.Set(key, parser.ReadValue(element));
    }
    return result;
}

QStringList kvConnectionString::Keys() const
{
    QStringList keys;
    for (const auto &pair : m_pairs)
        keys << pair.first;
    return keys;
}

bool kvConnectionString::Contains(const QString &key) const
{
    return IndexOf(key) >= 0;
}

QString kvConnectionString::Value(const QString &key) const
{
    const int index = IndexOf(key);
    return index < 0 ? QString() : m_pairs.at(index).second;
}

QString kvConnectionString::Value(const QStringList &synonyms) const
{
    for (const QString &key : synonyms) {
        if (Contains(key))
            return Value(key);
    }
    return QString();
}

bool kvConnectionString::ContainsAny(const QStringList &synonyms) const
{
    for (const QString &key : synonyms) {
        if (Contains(key))
            return true;
    }
    return false;
}

QString kvConnectionString::Quote(const QString &value)
{
    const bool opensEnclosure = value.startsWith(QLatin1Char('"')) || value.startsWith(QLatin1Char('\''));
    const bool plain = !opensEnclosure && !value.contains(QLatin1Char(';')) && !value.contains(QLatin1Char('{'))
                       && !value.contains(QLatin1Char('}')) && value.trimmed() == value;
    if (plain)
        return value;
    QString escaped = value;
    escaped.replace(QStringLiteral("}"), QStringLiteral("}}"));
    return QLatin1Char('{') + escaped + QLatin1Char('}');
}

QString kvConnectionString::Join(const QList<std::pair<QString, QString>> &pairs)
{
    QStringList elements;
    QStringList written;
    for (const auto &[key, value] : pairs) {
        const int element = int(written.size()) + 1;
        if (!IsWritableKey(key))
            throw kvAdoError::invalidArgument(
                QStringLiteral("Verbindungszeichenfolge: Element %1 hat keinen schreibbaren Namen").arg(element));
        if (written.contains(NormalizedKey(key)))
            throw kvAdoError::invalidArgument(
                QStringLiteral("Verbindungszeichenfolge: Element %1 wiederholt einen Namen").arg(element));
        written << NormalizedKey(key);
        elements << key + QLatin1Char('=') + Quote(value);
    }
    return elements.join(QLatin1Char(';'));
}

bool kvConnectionString::IsWritableKey(const QString &key)
{
    return !key.trimmed().isEmpty() && key.trimmed() == key && !key.contains(QLatin1Char('='))
           && !key.contains(QLatin1Char(';'));
}

QString kvConnectionString::NormalizedKey(const QString &key)
{
    return key.simplified().toLower();
}

int kvConnectionString::IndexOf(const QString &key) const
{
    const QString wanted = NormalizedKey(key);
    for (int i = 0; i < m_pairs.size(); ++i) {
        if (NormalizedKey(m_pairs.at(i).first) == wanted)
            return i;
    }
    return -1;
}

void kvConnectionString::Set(const QString &key, const QString &value)
{
    const int index = IndexOf(key);
    if (index >= 0)
        m_pairs[index] = {key, value};
    else
        m_pairs.append({key, value});
}
