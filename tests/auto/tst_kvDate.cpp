#include "kvDate.h"

#include <QtTest>

class tst_kvDate : public QObject
{
    Q_OBJECT

private slots:
    void epochIsZero()
    {
        QCOMPARE(kvDate::fromDate(QDate(1899, 12, 30)).days(), 0.0);
        QCOMPARE(kvDate().date(), QDate(1899, 12, 30));
    }

    void knownSerials()
    {
        QCOMPARE(kvDate::fromDate(QDate(2024, 3, 31)).days(), 45382.0);
        QCOMPARE(kvDate::fromDate(QDate(2004, 3, 17), QTime(14, 5)).time(), QTime(14, 5));
        QCOMPARE(kvDate::fromDate(QDate(1900, 1, 1), QTime(12, 0)).days(), 2.5);
    }

    void negativeSerialsKeepAPositiveTime()
    {
        const kvDate d = kvDate::fromDays(-1.25);
        QCOMPARE(d.date(), QDate(1899, 12, 29));
        QCOMPARE(d.time(), QTime(6, 0));
        QCOMPARE(kvDate::fromDate(QDate(1899, 12, 29), QTime(6, 0)).days(), -1.25);
    }

    void wallClockIgnoresTimeZones()
    {
        // 29 March 2026, 02:30: the hour clocks skip in Germany; a naive value keeps it.
        const kvDate d = kvDate::fromDate(QDate(2026, 3, 29), QTime(2, 30));
        QCOMPARE(d.time(), QTime(2, 30));
        QCOMPARE(d.toDateTime().timeSpec(), Qt::UTC);
        QCOMPARE(d.toDateTime().time(), QTime(2, 30));
        QCOMPARE(kvDate::fromDateTime(d.toDateTime()), d);
    }

    void minuteArithmeticIsExact()
    {
        kvDate d = kvDate::fromDate(QDate(2026, 1, 1));
        for (int i = 0; i < 48 * 365; ++i)
            d = d.addMinutes(30);
        QCOMPARE(d.date(), QDate(2027, 1, 1));
        QCOMPARE(d.time(), QTime(0, 0));
        QCOMPARE(kvDate::fromDate(QDate(2026, 1, 1), QTime(23, 45)).addMinutes(30).time(), QTime(0, 15));
    }

    void monthArithmeticClampsToTheLastDay()
    {
        QCOMPARE(kvDate::fromDate(QDate(2024, 1, 31)).addMonths(1).date(), QDate(2024, 2, 29));
        QCOMPARE(kvDate::fromDate(QDate(2023, 1, 31)).addMonths(1).date(), QDate(2023, 2, 28));
        QCOMPARE(kvDate::fromDate(QDate(2024, 3, 31)).addMonths(-1).date(), QDate(2024, 2, 29));
        QCOMPARE(kvDate::fromDate(QDate(2024, 1, 31), QTime(9, 15)).addMonths(1).time(), QTime(9, 15));
    }

    void dateSerialRollsOver()
    {
        QCOMPARE(kvDate::DateSerial(2024, 3, 0).date(), QDate(2024, 2, 29));
        QCOMPARE(kvDate::DateSerial(2024, 3, -1).date(), QDate(2024, 2, 28));
        QCOMPARE(kvDate::DateSerial(2024, 13, 1).date(), QDate(2025, 1, 1));
        QCOMPARE(kvDate::DateSerial(2024, 0, 15).date(), QDate(2023, 12, 15));
        QCOMPARE(kvDate::DateSerial(2024, 4, 32).date(), QDate(2024, 5, 2));
    }

    void weekdays()
    {
        const kvDate thursday = kvDate::fromDate(QDate(2026, 1, 1));
        QCOMPARE(thursday.weekdayFromMonday(), 4);
        QCOMPARE(thursday.weekdayFromSunday(), 5);
        const kvDate sunday = kvDate::fromDate(QDate(2023, 12, 24));
        QCOMPARE(sunday.weekdayFromMonday(), 7);
        QCOMPARE(sunday.weekdayFromSunday(), 1);
    }

    void dateOnlyDropsTheTime()
    {
        const kvDate d = kvDate::fromDate(QDate(2024, 12, 25), QTime(18, 30));
        QCOMPARE(d.dateOnly(), kvDate::fromDate(QDate(2024, 12, 25)));
        QCOMPARE(d.daysSince(kvDate::fromDate(QDate(2024, 12, 24), QTime(23, 0))), 1LL);
    }

    void ordering()
    {
        const kvDate a = kvDate::fromDate(QDate(2024, 1, 1), QTime(10, 0));
        const kvDate b = a.addMinutes(1);
        QVERIFY(a < b);
        QVERIFY(b > a);
        QVERIFY(a != b);
        QVERIFY(a == kvDate::fromDays(a.days()));
    }

    void nonFiniteInputIsTheEpoch()
    {
        QCOMPARE(kvDate::fromDays(std::numeric_limits<double>::quiet_NaN()).days(), 0.0);
        QCOMPARE(kvDate::fromDate(QDate()).days(), 0.0);
    }
};

QTEST_GUILESS_MAIN(tst_kvDate)
#include "tst_kvDate.moc"
