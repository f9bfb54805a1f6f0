#include "PublicHolidays.h"

#include <QtTest>

#include <limits>

namespace {

QString nameOf(int year, int month, int day)
{
    return GetPublicHolidayName(QDate(year, month, day));
}

QDate easterOf(int year)
{
    return GetEasterSunday(qint16(year)).date();
}

// Independent reference: the Meeus/Jones/Butcher "anonymous Gregorian" algorithm.
QDate gregorianEaster(int year)
{
    const int a = year % 19;
    const int b = year / 100;
    const int c = year % 100;
    const int d = b / 4;
    const int e = b % 4;
    const int f = (b + 8) / 25;
    const int g = (b - f + 1) / 3;
    const int h = (19 * a + b - d - g + 15) % 30;
    const int i = c / 4;
    const int k = c % 4;
    const int l = (32 + 2 * e + 2 * i - h - k) % 7;
    const int m = (a + 11 * h + 22 * l) / 451;
    const int month = (h + l - 7 * m + 114) / 31;
    const int day = (h + l - 7 * m + 114) % 31 + 1;
    return QDate(year, month, day);
}

using NamedDays = QMap<QDate, QString>;

NamedDays namedDaysOf(int year)
{
    NamedDays named;
    for (QDate day(year, 1, 1); day.year() == year; day = day.addDays(1)) {
        const QString name = GetPublicHolidayName(day);
        if (!name.isEmpty())
            named.insert(day, name);
    }
    return named;
}

// The fixed-date rows, the same in every year.
NamedDays fixedDaysOf(int year)
{
    return {
        {QDate(year, 1, 1), QStringLiteral("Neujahrstag")},
        {QDate(year, 1, 6), QStringLiteral("Hl. drei Könige")},
        {QDate(year, 5, 1), QStringLiteral("Tag der Arbeit")},
        {QDate(year, 8, 15), QStringLiteral("Maria Himmelfahrt")},
        {QDate(year, 10, 3), QStringLiteral("Tag der dt. Einheit")},
        {QDate(year, 11, 1), QStringLiteral("Allerheiligen")},
        {QDate(year, 12, 24), QStringLiteral("Hl. Abend")},
        {QDate(year, 12, 25), QStringLiteral("1. Weihnachtstag")},
        {QDate(year, 12, 26), QStringLiteral("2. Weihnachtstag")},
        {QDate(year, 12, 31), QStringLiteral("Silvester")},
    };
}

struct MovableDays
{
    QDate aschermittwoch, karfreitag, ostersonntag, ostermontag, himmelfahrt, pfingstsonntag,
        pfingstmontag, fronleichnam, volkstrauertag, bussUndBettag, totensonntag, advent1, advent2,
        advent3, advent4;
};

NamedDays expectedDays(int year, const MovableDays &m)
{
    NamedDays named = fixedDaysOf(year);
    named.insert(m.aschermittwoch, QStringLiteral("Aschermittwoch"));
    named.insert(m.karfreitag, QStringLiteral("Karfreitag"));
    named.insert(m.ostersonntag, QStringLiteral("Ostersonntag"));
    named.insert(m.ostermontag, QStringLiteral("Ostermontag"));
    named.insert(m.himmelfahrt, QStringLiteral("Christi Himmelfahrt"));
    named.insert(m.pfingstsonntag, QStringLiteral("Pfingstsonntag"));
    named.insert(m.pfingstmontag, QStringLiteral("Pfingstmontag"));
    named.insert(m.fronleichnam, QStringLiteral("Fronleichnam"));
    named.insert(m.volkstrauertag, QStringLiteral("Volkstrauertag"));
    named.insert(m.bussUndBettag, QStringLiteral("Buss und Bettag"));
    named.insert(m.totensonntag, QStringLiteral("Totensonntag"));
    named.insert(m.advent1, QStringLiteral("1. Advent"));
    named.insert(m.advent2, QStringLiteral("2. Advent"));
    named.insert(m.advent3, QStringLiteral("3. Advent"));
    named.insert(m.advent4, QStringLiteral("4. Advent"));
    return named;
}

} // namespace

class tst_PublicHolidays : public QObject
{
    Q_OBJECT

private slots:
    void easterChecksOfTheSpec_data()
    {
        QTest::addColumn<int>("year");
        QTest::addColumn<QDate>("easter");
        QTest::newRow("2024: e 4, s 2521, d 31") << 2024 << QDate(2024, 3, 31);
        QTest::newRow("2025: e 23, d 51") << 2025 << QDate(2025, 4, 20);
        QTest::newRow("2019: e 29 -> 28, d 52") << 2019 << QDate(2019, 4, 21);
        QTest::newRow("1954: e 28 -> 27, d 49") << 1954 << QDate(1954, 4, 18);
        QTest::newRow("2008: 23 March") << 2008 << QDate(2008, 3, 23);
        // 1582 is in the table; the spec's result is the proleptic Gregorian Easter.
        QTest::newRow("1582") << 1582 << QDate(1582, 4, 18);
    }

    void easterChecksOfTheSpec()
    {
        QFETCH(int, year);
        QFETCH(QDate, easter);
        QCOMPARE(easterOf(year), easter);
        QCOMPARE(GetEasterSunday(qint16(year)).days(), kvDate::fromDate(easter).days());
    }

    void easterAgreesWithTheGregorianReference_data()
    {
        QTest::addColumn<int>("year");
        for (int year = 1583; year <= 2399; ++year)
            QTest::addRow("%d", year) << year;
    }

    // The spec's table-driven algorithm gives the Gregorian Easter in every year 1583-2399,
    // so there is no list of years where the spec's result would have to win.
    void easterAgreesWithTheGregorianReference()
    {
        QFETCH(int, year);
        QCOMPARE(easterOf(year), gregorianEaster(year));
        QCOMPARE(nameOf(year, easterOf(year).month(), easterOf(year).day()),
                 QStringLiteral("Ostersonntag"));
    }

    // Outside 1582-2399 A = B = C = 0, remainders keep the dividend's sign, floor(Y/4) rounds
    // toward minus infinity, and the date is built like DateSerial (day <= 0 rolls into February,
    // 31 April into May). Years are astronomical: year 0 is QDate's -1, year -5 is QDate's -6.
    void easterOutsideTheTable_data()
    {
        QTest::addColumn<int>("year");
        QTest::addColumn<QDate>("easter");
        // 1500 % 19 = 18, e = -198 % 30 = -18, s = 1500 + 375 - 18 = 1857, s % 7 = 2, d = 8.
        QTest::newRow("1500") << 1500 << QDate(1500, 3, 8);
        // 2400 % 19 = 6, e = -66 % 30 = -6, s = 2400 + 600 - 6 = 2994, s % 7 = 5, d = 17.
        QTest::newRow("2400") << 2400 << QDate(2400, 3, 17);
        // 1 % 19 = 1, e = -11, s = 1 + 0 - 11 = -10, s % 7 = -3, d = 28 - 11 + 3 = 20.
        QTest::newRow("1") << 1 << QDate(1, 3, 20);
        // e = 0, s = 0, d = 28; astronomical year 0 is 1 BC, QDate's year -1.
        QTest::newRow("0") << 0 << QDate(-1, 3, 28);
        // -5 % 19 = -5, e = 55 % 30 = 25, floor(-5/4) = -2, s = -5 - 2 + 25 = 18, s % 7 = 4,
        // d = 28 + 25 - 4 = 49: 18 April of year -5 (6 BC, QDate's -6).
        QTest::newRow("-5") << -5 << QDate(-6, 4, 18);
        // 32767 % 19 = 11, e = -121 % 30 = -1, s = 32767 + 8191 - 1 = 40957, s % 7 = 0, d = 27.
        QTest::newRow("32767") << 32767 << QDate(32767, 3, 27);
        // -32768 % 19 = -12, e = 132 % 30 = 12, s = -32768 - 8192 + 12 = -40948, s % 7 = -5,
        // d = 28 + 12 + 5 = 45: 14 April of year -32768 (QDate's -32769).
        QTest::newRow("-32768") << -32768 << QDate(-32769, 4, 14);
        // 24 % 19 = 5, e = -55 % 30 = -25, s = 24 + 6 - 25 = 5, d = 28 - 25 - 5 = -2:
        // DateSerial(24, 3, -2) is 27 February (24 is a leap year, day 0 is 29 February).
        QTest::newRow("24 rolls into February") << 24 << QDate(24, 2, 27);
        // 51 % 19 = 13, e = -143 % 30 = -23, s = 51 + 12 - 23 = 40, s % 7 = 5, d = 0: 28 February.
        QTest::newRow("51, day 0") << 51 << QDate(51, 2, 28);
        // -27 % 19 = -8, e = 88 % 30 = 28, floor(-27/4) = -7, s = -27 - 7 + 28 = -6,
        // s % 7 = -6, d = 28 + 28 + 6 = 62: 31 April, that is 1 May of year -27 (QDate's -28).
        QTest::newRow("-27 rolls into May") << -27 << QDate(-28, 5, 1);
    }

    void easterOutsideTheTable()
    {
        QFETCH(int, year);
        QFETCH(QDate, easter);
        QCOMPARE(easterOf(year), easter);
    }

    void everySixteenBitYearGivesADateInItsYear()
    {
        for (int year = std::numeric_limits<qint16>::min(); year <= std::numeric_limits<qint16>::max(); ++year) {
            const kvDate easter = GetEasterSunday(qint16(year));
            QVERIFY2(easter.isValid(), qPrintable(QString::number(year)));
            const int qtYear = year > 0 ? year : year - 1;
            QCOMPARE(easter.year(), qtYear);
            QVERIFY(easter.month() >= 2 && easter.month() <= 5);
            QCOMPARE(GetPublicHolidayName(easter), QStringLiteral("Ostersonntag"));
        }
    }

    void fixedDaysOfAnyYear()
    {
        for (int year = 1583; year <= 2399; ++year) {
            QCOMPARE(nameOf(year, 1, 1), QStringLiteral("Neujahrstag"));
            QCOMPARE(nameOf(year, 10, 3), QStringLiteral("Tag der dt. Einheit"));
            QCOMPARE(nameOf(year, 12, 31), QStringLiteral("Silvester"));
        }
        QCOMPARE(nameOf(1, 1, 1), QStringLiteral("Neujahrstag"));
        QCOMPARE(nameOf(-1, 12, 31), QStringLiteral("Silvester"));
    }

    void namesAreTrimmed()
    {
        QCOMPARE(nameOf(2024, 1, 1).size(), 11);
        QCOMPARE(nameOf(2024, 5, 9), QStringLiteral("Christi Himmelfahrt"));
        QCOMPARE(nameOf(2024, 5, 9).size(), 19);
        QVERIFY(!nameOf(2024, 12, 24).endsWith(QLatin1Char(' ')));
    }

    void easterRelativeDays2024()
    {
        QCOMPARE(nameOf(2024, 2, 14), QStringLiteral("Aschermittwoch"));
        QCOMPARE(nameOf(2024, 3, 29), QStringLiteral("Karfreitag"));
        QCOMPARE(nameOf(2024, 3, 31), QStringLiteral("Ostersonntag"));
        QCOMPARE(nameOf(2024, 4, 1), QStringLiteral("Ostermontag"));
        QCOMPARE(nameOf(2024, 5, 9), QStringLiteral("Christi Himmelfahrt"));
        QCOMPARE(nameOf(2024, 5, 19), QStringLiteral("Pfingstsonntag"));
        QCOMPARE(nameOf(2024, 5, 20), QStringLiteral("Pfingstmontag"));
        QCOMPARE(nameOf(2024, 5, 30), QStringLiteral("Fronleichnam"));
    }

    void adventDays2024()
    {
        // 24 December 2024 is a Tuesday: k = 2, the Fourth Advent is 22 December.
        QCOMPARE(QDate(2024, 12, 24).dayOfWeek(), 2);
        QCOMPARE(nameOf(2024, 12, 22), QStringLiteral("4. Advent"));
        QCOMPARE(nameOf(2024, 11, 24), QStringLiteral("Totensonntag"));
        QCOMPARE(nameOf(2024, 11, 20), QStringLiteral("Buss und Bettag"));
        QCOMPARE(QDate(2024, 11, 20).dayOfWeek(), 3);
        QCOMPARE(nameOf(2024, 11, 17), QStringLiteral("Volkstrauertag"));
        QCOMPARE(nameOf(2024, 12, 1), QStringLiteral("1. Advent"));
        QCOMPARE(nameOf(2024, 12, 24), QStringLiteral("Hl. Abend"));
    }

    void christmasEveOnASundayIsTheFourthAdvent()
    {
        QCOMPARE(QDate(2023, 12, 24).dayOfWeek(), 7);
        QCOMPARE(nameOf(2023, 12, 24), QStringLiteral("4. Advent"));
        QCOMPARE(nameOf(2023, 12, 3), QStringLiteral("1. Advent"));
        QCOMPARE(nameOf(2023, 12, 25), QStringLiteral("1. Weihnachtstag"));
    }

    void mayDayWinsOverAscension()
    {
        QCOMPARE(easterOf(2008), QDate(2008, 3, 23));
        QCOMPARE(easterOf(2008).addDays(39), QDate(2008, 5, 1));
        QCOMPARE(nameOf(2008, 5, 1), QStringLiteral("Tag der Arbeit"));
    }

    void timeOfDayIsIgnored()
    {
        QCOMPARE(GetPublicHolidayName(kvDate::fromDate(QDate(2024, 12, 25), QTime(18, 30))),
                 QStringLiteral("1. Weihnachtstag"));
        QCOMPARE(GetPublicHolidayName(kvDate::fromDate(QDate(2024, 3, 31), QTime(23, 59, 59))),
                 QStringLiteral("Ostersonntag"));
        // Before the epoch the OLE whole part still names the day: -1.25 is 29 December 1899, 06:00.
        QCOMPARE(GetPublicHolidayName(kvDate::fromDate(QDate(1899, 12, 31), QTime(6, 0))),
                 QStringLiteral("Silvester"));
    }

    void ordinaryDayHasNoName()
    {
        QVERIFY(nameOf(2024, 7, 10).isEmpty());
        QVERIFY(nameOf(2024, 12, 23).isEmpty());
        QVERIFY(GetPublicHolidayName(kvDate::fromDate(QDate(2024, 3, 30), QTime(12, 0))).isEmpty());
        QVERIFY(GetPublicHolidayName(QDate()).isEmpty());
    }

    void yearsBeyondSixteenBitsKeepTheirOtherNames()
    {
        QCOMPARE(nameOf(40000, 1, 1), QStringLiteral("Neujahrstag"));
        QCOMPARE(nameOf(40000, 12, 25), QStringLiteral("1. Weihnachtstag"));
        // 24 December 40000 is a Sunday (the Gregorian cycle repeats every 400 years, as 2000).
        QCOMPARE(QDate(40000, 12, 24).dayOfWeek(), 7);
        QCOMPARE(nameOf(40000, 12, 24), QStringLiteral("4. Advent"));
    }

    void wholeYears_data()
    {
        QTest::addColumn<int>("year");
        QTest::addColumn<NamedDays>("expected");
        QTest::newRow("2024") << 2024
            << expectedDays(2024, {QDate(2024, 2, 14), QDate(2024, 3, 29), QDate(2024, 3, 31),
                                   QDate(2024, 4, 1), QDate(2024, 5, 9), QDate(2024, 5, 19),
                                   QDate(2024, 5, 20), QDate(2024, 5, 30), QDate(2024, 11, 17),
                                   QDate(2024, 11, 20), QDate(2024, 11, 24), QDate(2024, 12, 1),
                                   QDate(2024, 12, 8), QDate(2024, 12, 15), QDate(2024, 12, 22)});
        QTest::newRow("2025") << 2025
            << expectedDays(2025, {QDate(2025, 3, 5), QDate(2025, 4, 18), QDate(2025, 4, 20),
                                   QDate(2025, 4, 21), QDate(2025, 5, 29), QDate(2025, 6, 8),
                                   QDate(2025, 6, 9), QDate(2025, 6, 19), QDate(2025, 11, 16),
                                   QDate(2025, 11, 19), QDate(2025, 11, 23), QDate(2025, 11, 30),
                                   QDate(2025, 12, 7), QDate(2025, 12, 14), QDate(2025, 12, 21)});
        QTest::newRow("2026") << 2026
            << expectedDays(2026, {QDate(2026, 2, 18), QDate(2026, 4, 3), QDate(2026, 4, 5),
                                   QDate(2026, 4, 6), QDate(2026, 5, 14), QDate(2026, 5, 24),
                                   QDate(2026, 5, 25), QDate(2026, 6, 4), QDate(2026, 11, 15),
                                   QDate(2026, 11, 18), QDate(2026, 11, 22), QDate(2026, 11, 29),
                                   QDate(2026, 12, 6), QDate(2026, 12, 13), QDate(2026, 12, 20)});
    }

    void wholeYears()
    {
        QFETCH(int, year);
        QFETCH(NamedDays, expected);
        QCOMPARE(expected.size(), 25);
        QCOMPARE(namedDaysOf(year), expected);
    }

    void tieBreakYearsNameOneDayLess()
    {
        // 2008: Christi Himmelfahrt falls on 1 May and is not named; 2023: Hl. Abend is not named.
        const NamedDays named2008 = namedDaysOf(2008);
        QCOMPARE(named2008.size(), 24);
        QVERIFY(!named2008.values().contains(QStringLiteral("Christi Himmelfahrt")));
        const NamedDays named2023 = namedDaysOf(2023);
        QCOMPARE(named2023.size(), 24);
        QVERIFY(!named2023.values().contains(QStringLiteral("Hl. Abend")));
    }
};

QTEST_GUILESS_MAIN(tst_PublicHolidays)
#include "tst_PublicHolidays.moc"
