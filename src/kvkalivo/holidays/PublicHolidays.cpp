#include "PublicHolidays.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace {

struct CenturyConstants
{
    int a = 0;
    int b = 0;
    int c = 0;
};

CenturyConstants centuryConstants(int year)
{
    struct Row
    {
        int first;
        int last;
        CenturyConstants constants;
    };
    static constexpr std::array<Row, 7> table = {{
        {1582, 1699, {10, 202, 1}},
        {1700, 1799, {11, 203, 0}},
        {1800, 1899, {12, 203, 0}},
        {1900, 2099, {13, 204, 2}},
        {2100, 2199, {14, 204, 2}},
        {2200, 2299, {15, 205, 1}},
        {2300, 2399, {16, 206, 0}},
    }};
    for (const Row &row : table) {
        if (year >= row.first && year <= row.last)
            return row.constants;
    }
    return {};
}

int correctedE(int e, int c)
{
    if (c == 1 && e == 29)
        e = 28;
    if (c == 2 && e == 28)
        e = 27;
    if (c == 2 && e == 29)
        e = 28;
    return e;
}

int floorDiv(int value, int divisor)
{
    return value / divisor - ((value % divisor != 0) && ((value < 0) != (divisor < 0)) ? 1 : 0);
}

// QDate has no year 0: astronomical year 0 is its year -1, -5 its year -6.
int qtYearFromAstronomical(int year)
{
    return year > 0 ? year : year - 1;
}

int astronomicalYearFromQt(int year)
{
    return year > 0 ? year : year + 1;
}

enum class Anchor { Fixed, Easter, FourthAdvent };

struct HolidayRule
{
    std::u16string_view paddedName;
    Anchor anchor;
    int offset; // days after the anchor; Easter and FourthAdvent only
    int month;  // Fixed only
    int day;    // Fixed only
};

constexpr HolidayRule fixed(std::u16string_view name, int month, int day)
{
    return {name, Anchor::Fixed, 0, month, day};
}

constexpr HolidayRule relative(std::u16string_view name, Anchor anchor, int offset)
{
    return {name, anchor, offset, 0, 0};
}

// The holiday table in its order of test; the order is the tie-break.
constexpr std::array<HolidayRule, 25> holidayTable = {{
    fixed(u"Neujahrstag        ", 1, 1),
    fixed(u"Hl. drei Könige    ", 1, 6),
    relative(u"Aschermittwoch     ", Anchor::Easter, -46),
    relative(u"Karfreitag         ", Anchor::Easter, -2),
    relative(u"Ostersonntag       ", Anchor::Easter, 0),
    relative(u"Ostermontag        ", Anchor::Easter, 1),
    fixed(u"Tag der Arbeit     ", 5, 1),
    relative(u"Christi Himmelfahrt", Anchor::Easter, 39),
    relative(u"Pfingstsonntag     ", Anchor::Easter, 49),
    relative(u"Pfingstmontag      ", Anchor::Easter, 50),
    relative(u"Fronleichnam       ", Anchor::Easter, 60),
    fixed(u"Maria Himmelfahrt  ", 8, 15),
    fixed(u"Tag der dt. Einheit", 10, 3),
    fixed(u"Allerheiligen      ", 11, 1),
    relative(u"Volkstrauertag     ", Anchor::FourthAdvent, -35),
    relative(u"Buss und Bettag    ", Anchor::FourthAdvent, -32),
    relative(u"Totensonntag       ", Anchor::FourthAdvent, -28),
    relative(u"1. Advent          ", Anchor::FourthAdvent, -21),
    relative(u"2. Advent          ", Anchor::FourthAdvent, -14),
    relative(u"3. Advent          ", Anchor::FourthAdvent, -7),
    relative(u"4. Advent          ", Anchor::FourthAdvent, 0),
    fixed(u"Hl. Abend          ", 12, 24),
    fixed(u"1. Weihnachtstag   ", 12, 25),
    fixed(u"2. Weihnachtstag   ", 12, 26),
    fixed(u"Silvester          ", 12, 31),
}};

static_assert(std::all_of(holidayTable.begin(), holidayTable.end(),
                          [](const HolidayRule &rule) { return rule.paddedName.size() == 19; }),
              "every stored holiday name is blank-padded to 19 characters");

struct Anchors
{
    QDate easter; // invalid when the year has no 16-bit Easter
    QDate fourthAdvent;
};

QDate easterOfQtYear(int qtYear)
{
    const int year = astronomicalYearFromQt(qtYear);
    if (year < std::numeric_limits<qint16>::min() || year > std::numeric_limits<qint16>::max())
        return {};
    return kv::GetEasterSunday(qint16(year)).date();
}

// The last Sunday on or before 24 December.
QDate fourthAdventOf(int qtYear)
{
    const QDate christmasEve(qtYear, 12, 24);
    return christmasEve.addDays(-(christmasEve.dayOfWeek() % 7));
}

bool matches(const HolidayRule &rule, QDate date, const Anchors &anchors)
{
    switch (rule.anchor) {
    case Anchor::Fixed:
        return date.month() == rule.month && date.day() == rule.day;
    case Anchor::Easter:
        return date == anchors.easter.addDays(rule.offset);
    case Anchor::FourthAdvent:
        return date == anchors.fourthAdvent.addDays(rule.offset);
    }
    return false;
}

QString withoutTrailingBlanks(std::u16string_view padded)
{
    const std::size_t last = padded.find_last_not_of(u' ');
    const std::size_t length = last == std::u16string_view::npos ? 0 : last + 1;
    return QString::fromUtf16(padded.data(), qsizetype(length));
}

} // namespace

kvDate kv::GetEasterSunday(qint16 year)
{
    // int arithmetic: s overflows 16 bits near the ends of the range, and any year gives a date.
    const int y = year;
    const CenturyConstants k = centuryConstants(y);
    const int e = correctedE((k.b - 11 * (y % 19)) % 30, k.c);
    const int s = y + floorDiv(y, 4) + e - k.a;
    const int d = 28 + e - s % 7;
    const int qtYear = qtYearFromAstronomical(y);
    return d < 32 ? kvDate::DateSerial(qtYear, 3, d) : kvDate::DateSerial(qtYear, 4, d - 31);
}

QString kv::GetPublicHolidayName(QDate date)
{
    if (!date.isValid())
        return {};
    const Anchors anchors{easterOfQtYear(date.year()), fourthAdventOf(date.year())};
    for (const HolidayRule &rule : holidayTable) {
        if (matches(rule, date, anchors))
            return withoutTrailingBlanks(rule.paddedName);
    }
    return {};
}

QString kv::GetPublicHolidayName(const kvDate &date)
{
    if (!date.isValid())
        return {};
    return kv::GetPublicHolidayName(date.dateOnly().date());
}
