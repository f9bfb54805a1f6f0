// Holiday names, Easter and the calendar week, over tables of years.
#include "PublicHolidays.h"
#include "kvCalendarWeek.h"

#include <QtTest>

#include <limits>

namespace {

// The Meeus/Jones/Butcher Gregorian Easter, as an independent reference.
QDate gregorianEaster(int year)
{
    const int a = year % 19, b = year / 100, c = year % 100, d = b / 4, e = b % 4;
    const int g = (b - (b + 8) / 25 + 1) / 3;
    const int h = (19 * a + b - d - g + 15) % 30;
    const int l = (32 + 2 * e + 2 * (c / 4) - h - c % 4) % 7;
    const int m = (a + 11 * h + 22 * l) / 451;
    return QDate(year, (h + l - 7 * m + 114) / 31, (h + l - 7 * m + 114) % 31 + 1);
}

} // namespace

class tst_PublicHolidays : public QObject
{
    Q_OBJECT

private slots:
    //! Outside 1583-2399 remainders keep the dividend's sign and the day rolls over; year 0 is QDate's -1.
    void easter_data()
    {
        QTest::addColumn<int>("year");
        QTest::addColumn<QDate>("easter");
        QTest::newRow("1582") << 1582 << QDate(1582, 4, 18);
        QTest::newRow("0") << 0 << QDate(-1, 3, 28);
        QTest::newRow("-32768") << -32768 << QDate(-32769, 4, 14);
        QTest::newRow("24 rolls into February") << 24 << QDate(24, 2, 27);
        QTest::newRow("-27 rolls into May") << -27 << QDate(-28, 5, 1);
    }
    void easter()
    {
        QFETCH(int, year);
        QTEST(kv::GetEasterSunday(qint16(year)).date(), "easter");
    }

    void easterIsGregorianInEveryYearOfTheTable()
    {
        for (int year = 1583; year <= 2399; ++year)
            QCOMPARE(kv::GetEasterSunday(qint16(year)).date(), gregorianEaster(year));
    }

    void everySixteenBitYearNamesItsEaster()
    {
        for (int year = std::numeric_limits<qint16>::min(); year <= std::numeric_limits<qint16>::max(); ++year) {
            const kvDate easter = kv::GetEasterSunday(qint16(year));
            QCOMPARE(easter.year(), year > 0 ? year : year - 1);
            QCOMPARE(kv::GetPublicHolidayName(easter), QStringLiteral("Ostersonntag"));
        }
    }

    void wholeYear()
    {
        const QStringList days{
            "01-01 Neujahrstag", "01-06 Hl. drei Könige", "02-14 Aschermittwoch", "03-29 Karfreitag",
            "03-31 Ostersonntag", "04-01 Ostermontag", "05-01 Tag der Arbeit", "05-09 Christi Himmelfahrt",
            "05-19 Pfingstsonntag", "05-20 Pfingstmontag", "05-30 Fronleichnam", "08-15 Maria Himmelfahrt",
            "10-03 Tag der dt. Einheit", "11-01 Allerheiligen", "11-17 Volkstrauertag", "11-20 Buss und Bettag",
            "11-24 Totensonntag", "12-01 1. Advent", "12-08 2. Advent", "12-15 3. Advent", "12-22 4. Advent",
            "12-24 Hl. Abend", "12-25 1. Weihnachtstag", "12-26 2. Weihnachtstag", "12-31 Silvester"};
        QStringList named;
        for (QDate day(2024, 1, 1); day.year() == 2024; day = day.addDays(1)) {
            if (const QString name = kv::GetPublicHolidayName(day); !name.isEmpty())
                named << day.toString(QStringLiteral("MM-dd ")) + name;
        }
        QCOMPARE(named, days);
    }

    void theTimeOfDayAndInvalidDates()
    {
        QCOMPARE(kv::GetPublicHolidayName(kvDate::fromDate(QDate(2024, 3, 31), QTime(23, 59, 59))), QStringLiteral("Ostersonntag"));
        QCOMPARE(kv::GetPublicHolidayName(kvDate::fromDate(QDate(1899, 12, 31), QTime(6, 0))), QStringLiteral("Silvester"));
        QCOMPARE(kv::GetPublicHolidayName(QDate(2008, 5, 1)), QStringLiteral("Tag der Arbeit"));   // also Ascension that year
        QCOMPARE(kv::GetPublicHolidayName(QDate(40000, 12, 24)), QStringLiteral("4. Advent"));   // a Sunday, as in 2000
        QVERIFY(kv::GetPublicHolidayName(QDate()).isEmpty());
        QCOMPARE(kv::GetCalendarWeek(QDate()), 0);
    }

    void calendarWeekIsTheIsoWeekFrom1600To2400()
    {
        for (QDate day(1600, 1, 1); day <= QDate(2400, 12, 31); day = day.addDays(1)) {
            if (kv::GetCalendarWeek(day) != day.weekNumber() || kv::GetCalendarWeek(kvDate::fromDate(day, QTime(23, 59))) != day.weekNumber())
                QFAIL(qPrintable(day.toString(Qt::ISODate)));
        }
        for (QDate day(-3, 1, 1); day <= QDate(3, 12, 31); day = day.addDays(1))
            QCOMPARE(kv::GetCalendarWeek(day), day.weekNumber());
    }
};

QTEST_GUILESS_MAIN(tst_PublicHolidays)
#include "tst_PublicHolidays.moc"
