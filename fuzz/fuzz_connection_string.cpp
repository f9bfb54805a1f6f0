// Connection strings: Parse and the data source never fail but with 3001 or 3706, and Parse
// reads back every key and value Join wrote.
#include "kvConnectionString.h"
#include "kvDataSource.h"
#include "kvFuzzSupport.h"
#include "kvRuntimeError.h"

#include <QStringList>

namespace {

// The input once more as pairs: U+001E ends a pair, U+001F ends its key.
QList<std::pair<QString, QString>> pairsOf(const QString &text)
{
    QList<std::pair<QString, QString>> pairs;
    for (const QString &pair : text.split(QChar(0x1e))) {
        const qsizetype end = pair.indexOf(QChar(0x1f));
        pairs.append(end < 0 ? std::pair(pair, QString()) : std::pair(pair.left(end), pair.mid(end + 1)));
    }
    return pairs;
}

void checkRoundTrip(const QString &text)
{
    const QList<std::pair<QString, QString>> pairs = pairsOf(text);
    QString joined;
    try {
        joined = kvConnectionString::Join(pairs);
    } catch (const kvRuntimeError &error) {
        kvFuzzCheck(error.number() == 3001, "Join fails only with 3001");
        return;   // a key it cannot write, or one repeated
    }
    kvConnectionString parsed;
    try {
        parsed = kvConnectionString::Parse(joined);
    } catch (const kvRuntimeError &error) {
        kvFuzzCheck(false, "Parse reads what Join wrote", joined + QStringLiteral(" -> ") + error.description());
    }
    QStringList keys;
    for (const auto &pair : pairs)
        keys << pair.first;
    kvFuzzCheck(parsed.Keys() == keys, "Parse gives back Join's keys", joined);
    for (const auto &[key, value] : pairs)
        kvFuzzCheck(parsed.Value(key) == value, "Parse gives back Join's values", joined);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    try {
        kvConnectionString::Parse(text);
        kvDataSource::FromConnectionString(text);
    } catch (const kvRuntimeError &error) {
        kvFuzzCheck(error.number() == 3001 || error.number() == 3706, "only 3001 and 3706",
                    QString::number(error.number()));
    }
    checkRoundTrip(text);
    return 0;
}
