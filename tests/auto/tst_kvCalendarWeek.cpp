#include "kvCalendarWeek.h"

#include <QtTest>

class tst_kvCalendarWeek : public QObject
{
    Q_OBJECT

private slots:
    void edgeCasesOfTheSpec_data()
    {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<int>("week");
        QTest::newRow("1 Jan 2026, Thursday") << QDate(2026, 1, 1) << 1;
        QTest::newRow("31 Dec 2025, Wednesday") << QDate(2025, 12, 31) << 1;
        QTest::newRow("29 Dec 2025, Monday") << QDate(2025, 12, 29) << 1;
        QTest::newRow("28 Dec 2025, Sunday") << QDate(2025, 12, 28) << 52;
        QTest::newRow("1 Jan 2021, Friday: recursion") << QDate(2021, 1, 1) << 53;
        QTest::newRow("3 Jan 2021, Sunday: recursion") << QDate(2021, 1, 3) << 53;
        QTest::newRow("4 Jan 2021, Monday") << QDate(2021, 1, 4) << 1;
        QTest::newRow("31 Dec 2020, Thursday: week 53 kept") << QDate(2020, 12, 31) << 53;
        QTest::newRow("31 Dec 2024, Tuesday") << QDate(2024, 12, 31) << 1;
        QTest::newRow("1 Jan 2023, Sunday: recursion to 52") << QDate(2023, 1, 1) << 52;
        QTest::newRow("7 Jun 2024") << QDate(2024, 6, 7) << 23;
    }

    void edgeCasesOfTheSpec()
    {
        QFETCH(QDate, date);
        QFETCH(int, week);
        QCOMPARE(GetCalendarWeek(date), week);
        QCOMPARE(GetCalendarWeek(kvDate::fromDate(date)), week);
    }

    void timeOfDayIsIgnored()
    {
        QCOMPARE(GetCalendarWeek(kvDate::fromDate(QDate(2021, 1, 3), QTime(23, 59))), 53);
        QCOMPARE(GetCalendarWeek(kvDate::fromDate(QDate(2024, 12, 31), QTime(18, 30))), 1);
        QCOMPARE(GetCalendarWeek(kvDate::fromDate(QDate(1899, 12, 29), QTime(6, 0))), 52);
    }

    void invalidDateIsWeekZero()
    {
        QCOMPARE(GetCalendarWeek(QDate()), 0);
    }

    void everyDayFrom1600To2400IsTheIsoWeek()
    {
        int days = 0;
        for (QDate day(1600, 1, 1); day <= QDate(2400, 12, 31); day = day.addDays(1), ++days) {
            if (GetCalendarWeek(day) != day.weekNumber())
                QFAIL(qPrintable(day.toString(Qt::ISODate)));
        }
        QCOMPARE(days, 2 * 146097 + 366); // two 400-year cycles and the leap year 2400
    }

    void earlyYearsAcrossQtsMissingYearZero()
    {
        for (QDate day(-3, 1, 1); day <= QDate(3, 12, 31); day = day.addDays(1))
            QCOMPARE(GetCalendarWeek(day), day.weekNumber());
    }
};

QTEST_GUILESS_MAIN(tst_kvCalendarWeek)
#include "tst_kvCalendarWeek.moc"
