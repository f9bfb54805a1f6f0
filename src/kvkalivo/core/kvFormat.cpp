#include "kvFormat.h"

#include "kvDigitFormat.h"

#include <QList>
#include <QStringView>

#include <algorithm>

namespace {

// ---- Format

enum class Field {
    Literal,
    DateSeparator,
    Day,            // d dd
    DayName,        // ddd dddd
    ShortDate,      // ddddd
    LongDate,       // dddddd
    GeneralDate,    // c
    LongTime,       // ttttt
    WeekdayNumber,  // w, Sunday = 1
    WeekOfYear,     // ww
    Quarter,        // q
    DayOfYear,      // y
    Year,           // yy yyyy
    Month,          // m mm
    MonthName,      // mmm mmmm
    Hour,           // h hh
    Minute,         // n nn, and m mm after an hour
    Second,         // s ss
    AmPm,           // AM/PM am/pm A/P a/p AMPM
};

struct Token
{
    Field field = Field::Literal;
    int width = 0;  // the letters the field was written with
    QString text;   // the literal, or the AM/PM designator as written
};

QString withoutTrailingDot(QString name)
{
    if (name.endsWith(u'.'))
        name.chop(1);
    return name;
}

QString digits(int value, int width)
{
    return QStringLiteral("%1").arg(value, width, 10, QLatin1Char('0'));
}

// Replaces each run of \a letter outside quotes in a QLocale pattern by replace(run length).
template <typename Replace>
QString replaceRuns(const QString &pattern, QChar letter, Replace replace)
{
    QString result;
    bool quoted = false;
    qsizetype i = 0;
    while (i < pattern.size()) {
        const QChar c = pattern.at(i);
        if (c == u'\'')
            quoted = !quoted;
        if (quoted || c != letter) {
            result += c;
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < pattern.size() && pattern.at(end) == letter)
            ++end;
        result += replace(int(end - i));
        i = end;
    }
    return result;
}

QString shortDate(const kvDate &value, const QLocale &locale)
{
    // "Short Date" has a four-digit year ("15.11.2026"); Qt's pattern has two.
    const QString pattern = replaceRuns(locale.dateFormat(QLocale::ShortFormat), u'y', [](int run) {
        return run == 2 ? QStringLiteral("yyyy") : QString(run, u'y');
    });
    return locale.toString(value.date(), pattern);
}

QString longDate(const kvDate &value, const QLocale &locale)
{
    return locale.toString(value.date(), QLocale::LongFormat);
}

QString longTime(const kvDate &value, const QLocale &locale)
{
    // A naive date has no time zone, so Qt's zone field is dropped.
    const QString pattern = replaceRuns(locale.timeFormat(QLocale::LongFormat), u't', [](int) {
        return QString();
    });
    return locale.toString(value.time(), pattern.trimmed());
}

QString shortTime(const kvDate &value)
{
    return digits(value.hour(), 2) + u':' + digits(value.minute(), 2);
}

QString generalDate(const kvDate &value, const QLocale &locale)
{
    if (value.dayNumber() == 0)
        return longTime(value, locale);
    if (value.secondsOfDay() == 0)
        return shortDate(value, locale);
    return shortDate(value, locale) + u' ' + longTime(value, locale);
}

std::optional<QString> namedFormat(const kvDate &value, const QString &pattern, const QLocale &locale)
{
    const auto is = [&pattern](const char *name) {
        return pattern.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
    };
    if (pattern.isEmpty() || is("General Date"))
        return generalDate(value, locale);
    if (is("Long Date"))
        return longDate(value, locale);
    if (is("Short Date"))
        return shortDate(value, locale);
    if (is("Long Time"))
        return longTime(value, locale);
    if (is("Short Time"))
        return shortTime(value);
    return std::nullopt;
}

QString dateSeparator(const QLocale &locale)
{
    // The first character after the first field of the short date pattern.
    const QString pattern = locale.dateFormat(QLocale::ShortFormat);
    const auto separator = std::find_if(pattern.cbegin(), pattern.cend(),
                                        [](QChar c) { return !c.isLetter(); });
    if (separator == pattern.cend() || *separator == u'\'')
        return QStringLiteral("/");
    return QString(*separator);
}

int weekOfYear(const kvDate &value)
{
    // "ww": weeks start on Sunday and week 1 is the one holding 1 January.
    const QDate date = value.date();
    const int daysBeforeJanuaryFirst = QDate(date.year(), 1, 1).dayOfWeek() % 7;
    return (date.dayOfYear() - 1 + daysBeforeJanuaryFirst) / 7 + 1;
}

qsizetype meridiemLength(QStringView pattern)
{
    for (const char *designator : {"am/pm", "ampm", "a/p"}) {
        const QLatin1String text(designator);
        if (pattern.startsWith(text, Qt::CaseInsensitive))
            return text.size();
    }
    return 0;
}

QString meridiem(const QString &designator, bool afternoon, const QLocale &locale)
{
    if (designator.compare(QLatin1String("ampm"), Qt::CaseInsensitive) == 0)
        return afternoon ? locale.pmText() : locale.amText();
    // "AM/PM", "a/p", ...: the half as written, so that the case follows the pattern.
    const qsizetype slash = designator.indexOf(u'/');
    return afternoon ? designator.mid(slash + 1) : designator.left(slash);
}

int runLength(QStringView pattern, qsizetype from)
{
    const QChar letter = pattern.at(from).toLower();
    qsizetype end = from;
    while (end < pattern.size() && pattern.at(end).toLower() == letter)
        ++end;
    return int(end - from);
}

// The field a run of \a run equal letters starts with; its width is the letters it takes.
std::optional<Token> readField(char16_t letter, int run)
{
    const auto field = [](Field kind, int width) { return std::optional<Token>(Token{kind, width, {}}); };
    switch (letter) {
    case u'd': {
        const int width = qMin(run, 6);
        return field(width <= 2 ? Field::Day
                     : width <= 4 ? Field::DayName
                     : width == 5 ? Field::ShortDate
                                  : Field::LongDate,
                     width);
    }
    case u'm': {
        const int width = qMin(run, 4);
        return field(width <= 2 ? Field::Month : Field::MonthName, width);
    }
    case u'y': {
        const int width = run >= 4 ? 4 : run >= 2 ? 2 : 1;
        return field(width == 1 ? Field::DayOfYear : Field::Year, width);
    }
    case u'h':
        return field(Field::Hour, qMin(run, 2));
    case u'n':
        return field(Field::Minute, qMin(run, 2));
    case u's':
        return field(Field::Second, qMin(run, 2));
    case u'w': {
        const int width = qMin(run, 2);
        return field(width == 1 ? Field::WeekdayNumber : Field::WeekOfYear, width);
    }
    case u'q':
        return field(Field::Quarter, 1);
    case u'c':
        return field(Field::GeneralDate, 1);
    case u't':
        if (run >= 5)
            return field(Field::LongTime, 5);
        break;
    }
    return std::nullopt;
}

QList<Token> tokenize(QStringView pattern)
{
    QList<Token> tokens;
    const auto appendLiteral = [&tokens](QStringView text) {
        if (tokens.isEmpty() || tokens.constLast().field != Field::Literal)
            tokens.append(Token{});
        tokens.last().text += text;
    };
    bool afterHour = false;
    qsizetype i = 0;
    while (i < pattern.size()) {
        const QChar c = pattern.at(i);
        if (c == u'"') {
            const qsizetype close = pattern.indexOf(u'"', i + 1);
            const qsizetype end = close < 0 ? pattern.size() : close;
            appendLiteral(pattern.sliced(i + 1, end - i - 1));
            i = end + 1;
        } else if (c == u'\\') {
            if (i + 1 < pattern.size())
                appendLiteral(pattern.sliced(i + 1, 1));
            i += 2;
        } else if (c == u'/') {
            tokens.append(Token{Field::DateSeparator, 1, {}});
            ++i;
        } else if (const qsizetype length = meridiemLength(pattern.sliced(i))) {
            tokens.append(Token{Field::AmPm, int(length), pattern.sliced(i, length).toString()});
            afterHour = false;
            i += length;
        } else if (std::optional<Token> token = readField(c.toLower().unicode(), runLength(pattern, i))) {
            // "m" and "mm" right after an hour (literals between) are minutes.
            if (token->field == Field::Month && afterHour)
                token->field = Field::Minute;
            afterHour = token->field == Field::Hour;
            i += token->width;
            tokens.append(*token);
        } else {
            appendLiteral(pattern.sliced(i, 1));
            ++i;
        }
    }
    return tokens;
}

QString render(const Token &token, const kvDate &value, const QLocale &locale, bool twelveHour)
{
    switch (token.field) {
    case Field::Literal:
        return token.text;
    case Field::DateSeparator:
        return dateSeparator(locale);
    case Field::Day:
        return digits(value.day(), token.width);
    case Field::DayName:
        return kv::WeekdayName(value.weekdayFromMonday(), token.width == 3, locale);
    case Field::ShortDate:
        return shortDate(value, locale);
    case Field::LongDate:
        return longDate(value, locale);
    case Field::GeneralDate:
        return generalDate(value, locale);
    case Field::LongTime:
        return longTime(value, locale);
    case Field::WeekdayNumber:
        return QString::number(value.weekdayFromSunday());
    case Field::WeekOfYear:
        return QString::number(weekOfYear(value));
    case Field::Quarter:
        return QString::number((value.month() + 2) / 3);
    case Field::DayOfYear:
        return QString::number(value.date().dayOfYear());
    case Field::Year:
        return token.width == 2 ? digits(value.year() % 100, 2) : digits(value.year(), 4);
    case Field::Month:
        return digits(value.month(), token.width);
    case Field::MonthName:
        return kv::MonthName(value.month(), token.width == 3, locale);
    case Field::Hour:
        return digits(twelveHour ? (value.hour() + 11) % 12 + 1 : value.hour(), token.width);
    case Field::Minute:
        return digits(value.minute(), token.width);
    case Field::Second:
        return digits(value.second(), token.width);
    case Field::AmPm:
        return meridiem(token.text, value.hour() >= 12, locale);
    }
    return {};
}

// ---- CDate

struct Lexeme
{
    enum Kind { Number, Word, Colon };
    Kind kind;
    QStringView text;
};

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

std::optional<QList<Lexeme>> lex(QStringView text, const QLocale &locale)
{
    const QString separators = QStringLiteral(".-/,") + dateSeparator(locale);
    QList<Lexeme> lexemes;
    qsizetype i = 0;
    while (i < text.size()) {
        const QChar c = text.at(i);
        if (isAsciiDigit(c) || c.isLetter()) {
            const bool number = isAsciiDigit(c);
            qsizetype end = i + 1;
            while (end < text.size() && (number ? isAsciiDigit(text.at(end)) : text.at(end).isLetter()))
                ++end;
            lexemes.append({number ? Lexeme::Number : Lexeme::Word, text.sliced(i, end - i)});
            i = end;
        } else if (c == u':') {
            lexemes.append({Lexeme::Colon, text.sliced(i, 1)});
            ++i;
        } else if (c.isSpace() || separators.contains(c)) {
            ++i;
        } else {
            return std::nullopt;
        }
    }
    return lexemes;
}

bool isName(QStringView word, const QString &name)
{
    return !name.isEmpty() && word.compare(withoutTrailingDot(name), Qt::CaseInsensitive) == 0;
}

// Month names are read in the locale and in English.
int monthFromName(QStringView word, const QLocale &locale)
{
    for (const QLocale &names : {locale, QLocale::c()}) {
        for (int month = 1; month <= 12; ++month) {
            for (QLocale::FormatType type : {QLocale::LongFormat, QLocale::ShortFormat}) {
                if (isName(word, names.monthName(month, type))
                    || isName(word, names.standaloneMonthName(month, type))) {
                    return month;
                }
            }
        }
    }
    return 0;
}

bool isWeekdayName(QStringView word, const QLocale &locale)
{
    for (const QLocale &names : {locale, QLocale::c()}) {
        for (int day = 1; day <= 7; ++day) {
            for (QLocale::FormatType type : {QLocale::LongFormat, QLocale::ShortFormat}) {
                if (isName(word, names.dayName(day, type)) || isName(word, names.standaloneDayName(day, type)))
                    return true;
            }
        }
    }
    return false;
}

bool isYearLike(QStringView number)
{
    return number.size() > 2 || number.toInt() > 31;
}

int fullYear(QStringView number)
{
    const int value = number.toInt();
    if (number.size() > 2)
        return value;
    return value < 30 ? 2000 + value : 1900 + value;  // two-digit years: 00-29 are 2000-2029
}

std::optional<QDate> makeDate(int year, int month, int day)
{
    const QDate date(year, month, day);
    if (year < 100 || year > 9999 || !date.isValid())
        return std::nullopt;
    return date;
}

bool monthBeforeDay(const QLocale &locale)
{
    const QString pattern = locale.dateFormat(QLocale::ShortFormat);
    return pattern.indexOf(u'M') < pattern.indexOf(u'd');
}

class DateTextParser
{
public:
    explicit DateTextParser(const QLocale &locale) : m_locale(locale) {}

    std::optional<kvDate> parse(QStringView text)
    {
        const std::optional<QList<Lexeme>> lexemes = lex(text, m_locale);
        if (!lexemes || !read(*lexemes))
            return std::nullopt;
        const std::optional<QDate> day = date();
        const std::optional<QTime> clock = time();
        if (!day || !clock)
            return std::nullopt;
        return kvDate::fromDate(*day, *clock);
    }

private:
    enum class Meridiem { None, Am, Pm };

    bool read(const QList<Lexeme> &lexemes)
    {
        for (qsizetype k = 0; k < lexemes.size(); ++k) {
            const Lexeme &lexeme = lexemes.at(k);
            if (lexeme.kind == Lexeme::Colon)
                return false;
            if (lexeme.kind == Lexeme::Number && lexeme.text.size() > 4)
                return false;
            if (lexeme.kind == Lexeme::Word) {
                if (!readWord(lexeme.text))
                    return false;
            } else if (k + 1 < lexemes.size() && lexemes.at(k + 1).kind == Lexeme::Colon) {
                if (!m_clock.isEmpty())
                    return false;
                m_clock.append(lexeme.text);
                while (k + 2 < lexemes.size() && lexemes.at(k + 1).kind == Lexeme::Colon
                       && lexemes.at(k + 2).kind == Lexeme::Number) {
                    m_clock.append(lexemes.at(k + 2).text);
                    k += 2;
                }
                if (m_clock.size() < 2 || m_clock.size() > 3)
                    return false;
            } else {
                m_numbers.append(lexeme.text);
            }
        }
        return true;
    }

    bool readWord(QStringView word)
    {
        if (const int month = monthFromName(word, m_locale)) {
            if (m_month)
                return false;
            m_month = month;
            return true;
        }
        if (isWeekdayName(word, m_locale)) {
            if (m_weekday)
                return false;
            m_weekday = true;
            return true;
        }
        const Meridiem meridiem = meridiemFromWord(word);
        if (meridiem == Meridiem::None || m_meridiem != Meridiem::None)
            return false;
        m_meridiem = meridiem;
        return true;
    }

    Meridiem meridiemFromWord(QStringView word) const
    {
        if (word.compare(QLatin1String("am"), Qt::CaseInsensitive) == 0
            || word.compare(QLatin1String("a"), Qt::CaseInsensitive) == 0
            || isName(word, m_locale.amText())) {
            return Meridiem::Am;
        }
        if (word.compare(QLatin1String("pm"), Qt::CaseInsensitive) == 0
            || word.compare(QLatin1String("p"), Qt::CaseInsensitive) == 0
            || isName(word, m_locale.pmText())) {
            return Meridiem::Pm;
        }
        return Meridiem::None;
    }

    std::optional<QDate> date() const
    {
        if (m_month)
            return dateWithMonthName();
        switch (m_numbers.size()) {
        case 0:
            // A time alone is a time on day 0.
            if (m_clock.isEmpty() || m_weekday)
                return std::nullopt;
            return QDate(1899, 12, 30);
        case 2:
            return firstOfMonth();
        case 3:
            return numericDate();
        }
        return std::nullopt;
    }

    std::optional<QDate> dateWithMonthName() const
    {
        if (m_numbers.size() == 1) {
            if (!isYearLike(m_numbers.at(0)))
                return std::nullopt;
            return makeDate(fullYear(m_numbers.at(0)), m_month, 1);
        }
        if (m_numbers.size() != 2)
            return std::nullopt;
        const bool yearFirst = isYearLike(m_numbers.at(0)) && !isYearLike(m_numbers.at(1));
        const QStringView day = m_numbers.at(yearFirst ? 1 : 0);
        const QStringView year = m_numbers.at(yearFirst ? 0 : 1);
        if (day.size() > 2)
            return std::nullopt;
        return makeDate(fullYear(year), m_month, day.toInt());
    }

    // "mm/yyyy" and "yyyy-mm": the 1st of that month.
    std::optional<QDate> firstOfMonth() const
    {
        const QStringView first = m_numbers.at(0);
        const QStringView second = m_numbers.at(1);
        if (isYearLike(second))
            return makeDate(fullYear(second), first.toInt(), 1);
        if (isYearLike(first))
            return makeDate(fullYear(first), second.toInt(), 1);
        return std::nullopt;
    }

    std::optional<QDate> numericDate() const
    {
        const QStringView first = m_numbers.at(0);
        if (first.size() > 2)
            return makeDate(fullYear(first), m_numbers.at(1).toInt(), m_numbers.at(2).toInt());
        int day = first.toInt();
        int month = m_numbers.at(1).toInt();
        if (monthBeforeDay(m_locale))
            std::swap(day, month);
        const int year = fullYear(m_numbers.at(2));
        if (const std::optional<QDate> date = makeDate(year, month, day))
            return date;
        // Day and month swap when only that order makes a date ("03.17.2004").
        return makeDate(year, day, month);
    }

    std::optional<QTime> time() const
    {
        if (m_clock.isEmpty()) {
            if (m_meridiem != Meridiem::None)
                return std::nullopt;
            return QTime(0, 0);
        }
        if (std::any_of(m_clock.cbegin(), m_clock.cend(), [](QStringView part) { return part.size() > 2; }))
            return std::nullopt;
        int hour = m_clock.at(0).toInt();
        const int minute = m_clock.at(1).toInt();
        const int second = m_clock.size() > 2 ? m_clock.at(2).toInt() : 0;
        if (m_meridiem != Meridiem::None) {
            if (hour > 12)
                return std::nullopt;
            hour = hour % 12 + (m_meridiem == Meridiem::Pm ? 12 : 0);
        }
        if (hour > 23 || minute > 59 || second > 59)
            return std::nullopt;
        return QTime(hour, minute, second);
    }

    const QLocale &m_locale;
    QList<QStringView> m_numbers;  // the date's numbers in reading order
    QList<QStringView> m_clock;    // hour, minute and maybe second
    int m_month = 0;               // from a month name
    bool m_weekday = false;
    Meridiem m_meridiem = Meridiem::None;
};

} // namespace

QLocale kv::DefaultLocale()
{
    static const QLocale german(QLocale::German, QLocale::Germany);
    return german;
}

QString kv::Format(const kvDate &value, const QString &pattern, const QLocale &locale)
{
    if (std::optional<QString> digits = kvDigitFormat::Format(value, pattern))
        return *std::move(digits);
    if (const std::optional<QString> named = namedFormat(value, pattern, locale))
        return *named;
    const QList<Token> tokens = tokenize(pattern);
    const bool twelveHour = std::any_of(tokens.cbegin(), tokens.cend(),
                                        [](const Token &token) { return token.field == Field::AmPm; });
    QString result;
    for (const Token &token : tokens)
        result += render(token, value, locale, twelveHour);
    return result;
}

std::optional<kvDate> kv::CDate(const QString &text, const QLocale &locale)
{
    return DateTextParser(locale).parse(text);
}

bool kv::IsDate(const QString &text, const QLocale &locale)
{
    return kv::CDate(text, locale).has_value();
}

QString kv::MonthName(int month, bool abbreviate, const QLocale &locale)
{
    // Standalone names: Qt's German format forms are "Dez.", "Sept.", "Juni" and "März";
    // the standalone ones have three letters ("Dez", "Sep", "Jun", "Mär").
    if (!abbreviate)
        return locale.standaloneMonthName(month, QLocale::LongFormat);
    return withoutTrailingDot(locale.standaloneMonthName(month, QLocale::ShortFormat));
}

QString kv::WeekdayName(int dayOfWeek, bool abbreviate, const QLocale &locale)
{
    if (!abbreviate)
        return locale.standaloneDayName(dayOfWeek, QLocale::LongFormat);
    return withoutTrailingDot(locale.standaloneDayName(dayOfWeek, QLocale::ShortFormat));
}
