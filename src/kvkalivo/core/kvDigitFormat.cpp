#include "kvDigitFormat.h"

namespace {

qsizetype runLength(QStringView pattern, qsizetype from)
{
    qsizetype end = from;
    while (end < pattern.size() && pattern.at(end) == pattern.at(from))
        ++end;
    return end - from;
}

bool isLiteral(QChar c)
{
    return !c.isLetter() && c != u'"' && c != u'\\' && c != u'/';
}

void appendDigits(QString &text, int value, int width)
{
    for (int divisor = width == 4 ? 1000 : 10; divisor > 0; divisor /= 10)
        text += QChar(char16_t(u'0' + value / divisor % 10));
}

} // namespace

std::optional<QString> kvDigitFormat::Format(const kvDate &value, QStringView pattern)
{
    int year = 0;
    int month = 0;
    int day = 0;
    value.date().getDate(&year, &month, &day);
    const int seconds = value.secondsOfDay();
    if (pattern.isEmpty() || year < 0 || year > 9999)
        return std::nullopt;   // the empty pattern is "General Date"
    QString text;
    text.reserve(pattern.size());
    bool afterHour = false;
    for (qsizetype i = 0; i < pattern.size();) {
        const QChar c = pattern.at(i);
        if (isLiteral(c)) {
            text += c;
            ++i;
            continue;
        }
        const qsizetype run = runLength(pattern, i);
        int number = 0;
        switch (c.unicode()) {
        case u'y': number = year; break;
        case u'm': number = afterHour ? -1 : month; break;   // "mm" after "hh" is minutes
        case u'd': number = day; break;
        case u'h': number = seconds / 3600; break;
        case u'n': number = seconds / 60 % 60; break;
        case u's': number = seconds % 60; break;
        default: return std::nullopt;
        }
        const int width = c == u'y' ? 4 : 2;
        if (run != width || number < 0)
            return std::nullopt;
        appendDigits(text, number, width);
        afterHour = c == u'h';
        i += run;
    }
    return text;
}
