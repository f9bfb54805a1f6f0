#include "kvFormat.h"

#include <QtTest>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute, second));
}

} // namespace

class tst_kvFormat : public QObject
{
    Q_OBJECT

private slots:
    void defaultLocaleIsGerman()
    {
        QCOMPARE(kvDefaultLocale().language(), QLocale::German);
        QCOMPARE(kvDefaultLocale().territory(), QLocale::Germany);
    }

    // Qt 6.4 (CLDR) gives German abbreviations in two forms. The format forms are
    // "Jan.", "März", "Juni", "Sept.", "Dez." and "Sa."; the standalone forms are
    // "Jan", "Mär", "Jun", "Sep", "Dez" and "Sa". VB writes three letters without a dot,
    // so Format uses the standalone forms and strips a trailing dot in any locale.
    void qtGermanShortNames()
    {
        const QLocale german(QLocale::German, QLocale::Germany);
        QCOMPARE(german.monthName(12, QLocale::ShortFormat), QStringLiteral("Dez."));
        QCOMPARE(german.standaloneMonthName(12, QLocale::ShortFormat), QStringLiteral("Dez"));
        QCOMPARE(german.monthName(3, QLocale::ShortFormat), QStringLiteral("März"));
        QCOMPARE(german.standaloneMonthName(3, QLocale::ShortFormat), QStringLiteral("Mär"));
        QCOMPARE(german.monthName(9, QLocale::ShortFormat), QStringLiteral("Sept."));
        QCOMPARE(german.standaloneMonthName(9, QLocale::ShortFormat), QStringLiteral("Sep"));
        QCOMPARE(german.dayName(6, QLocale::ShortFormat), QStringLiteral("Sa."));
        QCOMPARE(german.standaloneDayName(6, QLocale::ShortFormat), QStringLiteral("Sa"));
    }

    void germanNames()
    {
        const QStringList months = {
            QStringLiteral("Jan"), QStringLiteral("Feb"), QStringLiteral("Mär"), QStringLiteral("Apr"),
            QStringLiteral("Mai"), QStringLiteral("Jun"), QStringLiteral("Jul"), QStringLiteral("Aug"),
            QStringLiteral("Sep"), QStringLiteral("Okt"), QStringLiteral("Nov"), QStringLiteral("Dez")};
        const QStringList days = {QStringLiteral("Mo"), QStringLiteral("Di"), QStringLiteral("Mi"),
                                  QStringLiteral("Do"), QStringLiteral("Fr"), QStringLiteral("Sa"),
                                  QStringLiteral("So")};
        for (int month = 1; month <= 12; ++month) {
            QCOMPARE(MonthName(month, true), months.at(month - 1));
            QCOMPARE(Format(at(2026, month, 1), QStringLiteral("mmm")), months.at(month - 1));
        }
        for (int day = 1; day <= 7; ++day) {
            QCOMPARE(WeekdayName(day, true), days.at(day - 1));
            // 2026-06-01 is a Monday.
            QCOMPARE(Format(at(2026, 6, day), QStringLiteral("ddd")), days.at(day - 1));
        }
        QCOMPARE(MonthName(12), QStringLiteral("Dezember"));
        QCOMPARE(MonthName(3), QStringLiteral("März"));
        QCOMPARE(WeekdayName(7), QStringLiteral("Sonntag"));
        QCOMPARE(WeekdayName(6, true, QLocale(QLocale::English, QLocale::UnitedStates)), QStringLiteral("Sat"));
    }

    void format_data()
    {
        QTest::addColumn<kvDate>("value");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("expected");

        const auto row = [](const char *name, const kvDate &value, const char *pattern, const char *expected,
                            const char *locale = "de_DE") {
            QTest::newRow(name) << value << QString::fromUtf8(pattern) << QString::fromLatin1(locale)
                                << QString::fromUtf8(expected);
        };
        const kvDate spec = at(2004, 3, 17, 14, 5);   // Part 2.1: a Wednesday
        const kvDate early = at(2004, 3, 5, 9, 7, 3);

        // The patterns the spec quotes.
        row("Access literal", spec, "mm-dd-yyyy hh:nn", "03-17-2004 14:05");
        row("SQL Server literal", spec, "yyyy-mm-dd hh:nn:ss", "2004-03-17 14:05:00");
        row("MySQL literal", spec, "yyyy-mm-dd hh:nn", "2004-03-17 14:05");
        row("dd-mm-yyyy", spec, "dd-mm-yyyy", "17-03-2004");
        row("mm/yyyy", spec, "mm/yyyy", "03.2004");
        row("MMMM", at(2026, 12, 28), "MMMM", "Dezember");
        row("MMM", at(2026, 12, 28), "MMM", "Dez");
        row("MMM January", at(2026, 1, 4), "MMM", "Jan");
        row("hh:nn", spec, "hh:nn", "14:05");
        row("hh:nn midnight", at(2026, 5, 1), "hh:nn", "00:00");
        row("hh", early, "hh", "09");
        row("nn", early, "nn", "07");
        row("ss", early, "ss", "03");
        row("dd", early, "dd", "05");
        row("mm", early, "mm", "03");
        row("yyyy", early, "yyyy", "2004");
        row("d mmm yyyy", spec, "d mmm yyyy", "17 Mär 2004");
        row("d mmm yyyy December", at(2026, 12, 5), "d mmm yyyy", "5 Dez 2026");
        row("dddd", at(2026, 11, 15), "dddd", "Sonntag");
        row("Short Date", at(2026, 11, 15), "Short Date", "15.11.2026");
        row("ddd Saturday", at(2026, 11, 14), "ddd", "Sa");
        row("ddd Sunday", at(2026, 11, 15), "ddd", "So");

        // Named formats.
        row("Short Date with a time", spec, "Short Date", "17.03.2004");
        row("short date lower case", spec, "short date", "17.03.2004");
        row("Long Date", at(2026, 11, 15), "Long Date", "Sonntag, 15. November 2026");
        row("Long Time", spec, "Long Time", "14:05:00");
        row("Short Time", early, "Short Time", "09:07");
        row("General Date", spec, "General Date", "17.03.2004 14:05:00");
        row("General Date at midnight", at(2004, 3, 17), "General Date", "17.03.2004");
        row("General Date on day 0", at(1899, 12, 30, 14, 30), "General Date", "14:30:00");
        row("empty pattern", spec, "", "17.03.2004 14:05:00");

        // Single tokens.
        row("d", early, "d", "5");
        row("m", early, "m", "3");
        row("M is m", early, "M", "3");
        row("MM is mm", early, "MM", "03");
        row("mmmm", early, "mmmm", "März");
        row("dddd lower", early, "dddd", "Freitag");
        row("yy", early, "yy", "04");
        row("yy of 2000", at(2000, 1, 1), "yy", "00");
        row("h", early, "h", "9");
        row("n", early, "n", "7");
        row("s", early, "s", "3");
        row("upper-case letters", spec, "DD.MM.YYYY HH:NN", "17.03.2004 14:05");
        row("y is the day of the year", spec, "y", "77");
        row("q", at(2004, 11, 1), "q", "4");
        row("w is the weekday from Sunday", spec, "w", "4");
        row("ww", spec, "ww", "12");
        row("ww on 1 January", at(2004, 1, 1), "ww", "1");
        row("ddddd", spec, "ddddd", "17.03.2004");
        row("dddddd", spec, "dddddd", "Mittwoch, 17. März 2004");
        row("ttttt", spec, "ttttt", "14:05:00");
        row("c", spec, "c", "17.03.2004 14:05:00");

        // m and mm after an hour mean minutes.
        row("hh:mm", early, "hh:mm", "09:07");
        row("h:m", early, "h:m", "9:7");
        row("hh:mm:ss", early, "hh:mm:ss", "09:07:03");
        row("quoted text between hour and mm", early, "hh \"Uhr\" mm", "09 Uhr 07");
        row("mm before hh is the month", early, "mm hh", "03 09");
        row("mm after a day is the month", early, "hh dd mm", "09 05 03");
        row("mmm after an hour is the month", early, "hh mmm", "09 Mär");
        row("second mm after minutes is the month", early, "hh:mm:mm", "09:07:03");

        // Literals.
        row("quoted text", early, "\"Tag\" d", "Tag 5");
        row("quoted text keeps letters", early, "\"dd mm yyyy\"", "dd mm yyyy");
        row("backslash escapes", early, "\\d\\d dd", "dd 05");
        row("unquoted letters that are fields", early, "hh Uhr", "09 U9r");
        row("other characters are literal", spec, "[dd]-(mm) #yyyy!", "[17]-(03) #2004!");
        row("unterminated quote", early, "d \"Tag", "5 Tag");
        row("trailing backslash", early, "d\\", "5");
        row("colon is always a colon", spec, "hh:nn", "14:05", "fi_FI");
        row("slash is the date separator", spec, "dd/mm/yyyy", "17.03.2004");
        row("slash in the US", spec, "dd/mm/yyyy", "17/03/2004", "en_US");
        row("slash in Sweden", spec, "dd/mm/yyyy", "17-03-2004", "sv_SE");

        // 12-hour clock.
        row("AM/PM", spec, "h:nn AM/PM", "2:05 PM");
        row("am/pm", at(2004, 3, 17, 0, 30), "h:nn am/pm", "12:30 am");
        row("A/P", at(2004, 3, 17, 12, 0), "hh:nn A/P", "12:00 P");
        row("a/p", early, "hh a/p", "09 a");
        row("AMPM", spec, "h AMPM", "2 PM", "en_US");

        // Other locales.
        row("English MMM", spec, "MMM", "Mar", "en_US");
        row("English dddd", spec, "dddd", "Wednesday", "en_US");
        row("English Short Date", spec, "Short Date", "3/17/2004", "en_US");
        row("English Long Time", spec, "Long Time", "2:05:00 PM", "en_US");
        row("French mmm loses its dot", at(2026, 1, 4), "mmm", "janv", "fr_FR");
        row("French Short Date", spec, "Short Date", "17/03/2004", "fr_FR");
    }

    void format()
    {
        QFETCH(kvDate, value);
        QFETCH(QString, pattern);
        QFETCH(QString, locale);
        QFETCH(QString, expected);
        QCOMPARE(Format(value, pattern, QLocale(locale)), expected);
    }

    void defaultLocaleArgument()
    {
        QCOMPARE(Format(at(2026, 12, 28), QStringLiteral("MMMM")), QStringLiteral("Dezember"));
    }

    void editorWindowTitle()
    {
        // Part 5.1: Format(DateBegin, "Short Date") & ", " & Format(DateBegin, "dddd").
        const kvDate begin = at(2026, 11, 15, 10, 0);
        QCOMPARE(Format(begin, QStringLiteral("Short Date")) + QStringLiteral(", ")
                     + Format(begin, QStringLiteral("dddd")),
                 QStringLiteral("15.11.2026, Sonntag"));
    }

    void weekCaptionAcrossTwoMonths()
    {
        // Part 3.1: the week from Monday 29 December 2025 to Sunday 4 January 2026.
        const kvDate first = at(2025, 12, 29);
        const kvDate last = first.addDays(6);
        QCOMPARE(Format(first, QStringLiteral("MMM")) + u'/' + Format(last, QStringLiteral("MMM")) + u' '
                     + QString::number(last.year()),
                 QStringLiteral("Dez/Jan 2026"));
    }

    void weekendCaption()
    {
        // Part 3.1: the shared weekend column shows "Sa-So".
        QCOMPARE(WeekdayName(6, true) + u'-' + WeekdayName(7, true), QStringLiteral("Sa-So"));
    }

    void timeBoxEntries()
    {
        // Part 5.1: 47 half hours from midnight, formatted "hh:nn".
        kvDate t = at(1899, 12, 30);
        QStringList entries;
        for (int i = 0; i < 47; ++i) {
            t = t.addMinutes(30);
            entries.append(Format(t, QStringLiteral("hh:nn")));
        }
        QCOMPARE(entries.constFirst(), QStringLiteral("00:30"));
        QCOMPARE(entries.at(1), QStringLiteral("01:00"));
        QCOMPARE(entries.constLast(), QStringLiteral("23:30"));
    }

    void cdate_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QDateTime>("expected");

        const auto row = [](const char *text, const QDateTime &expected, const char *locale = "de_DE") {
            QTest::addRow("%s (%s)", text, locale) << QString::fromUtf8(text) << QString::fromLatin1(locale)
                                                   << expected;
        };
        const auto day = [](int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
            return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
        };

        row("17-03-2004", day(2004, 3, 17));
        row("17.03.2004", day(2004, 3, 17));
        row("17/03/2004", day(2004, 3, 17));
        row("17.03.2004 14:05", day(2004, 3, 17, 14, 5));
        row("17.03.2004 14:05:09", day(2004, 3, 17, 14, 5, 9));
        row("  17.03.2004   14:05  ", day(2004, 3, 17, 14, 5));
        row("03/2004", day(2004, 3, 1));
        row("03.2004", day(2004, 3, 1));
        row("03-2004", day(2004, 3, 1));
        row("2004-03", day(2004, 3, 1));
        row("17 Mär 2004", day(2004, 3, 17));
        row("17 März 2004", day(2004, 3, 17));
        row("17 mär. 2004", day(2004, 3, 17));
        row("17 MÄRZ 2004 14:30", day(2004, 3, 17, 14, 30));
        row("15 Sept. 2026", day(2026, 9, 15));
        row("15 sep 2026 8:00", day(2026, 9, 15, 8, 0));
        row("5 Dez 2026 09:00", day(2026, 12, 5, 9, 0));
        row("5 Dez. 2026 09:00", day(2026, 12, 5, 9, 0));
        row("28 Dezember 2026", day(2026, 12, 28));
        row("1 Jun 2026", day(2026, 6, 1));
        row("1 Juni 2026", day(2026, 6, 1));
        row("17 Mar 2004", day(2004, 3, 17));
        row("March 17, 2004", day(2004, 3, 17));
        row("2026 Nov 15", day(2026, 11, 15));
        row("Nov 2026", day(2026, 11, 1));
        row("Mittwoch, 17. März 2004", day(2004, 3, 17));
        row("2004-03-17", day(2004, 3, 17));
        row("2004-03-17 14:05", day(2004, 3, 17, 14, 5));
        row("2004-03-17 14:05:00", day(2004, 3, 17, 14, 5));
        row("14:30", day(1899, 12, 30, 14, 30));
        row("9:05", day(1899, 12, 30, 9, 5));
        row("00:00", day(1899, 12, 30));
        row("23:59:59", day(1899, 12, 30, 23, 59, 59));
        row("2:05 PM", day(1899, 12, 30, 14, 5));
        row("12:00 am", day(1899, 12, 30, 0, 0));
        row("17.03.04", day(2004, 3, 17));
        row("17.03.45", day(1945, 3, 17));
        row("29.02.2024", day(2024, 2, 29));
        row("03.17.2004", day(2004, 3, 17));  // VB swaps day and month when only that is a date
        row("3/17/2004", day(2004, 3, 17), "en_US");
        row("17/3/2004", day(2004, 3, 17), "en_US");
        row("03/04/2004", day(2004, 3, 4), "en_US");
        row("03/04/2004", day(2004, 4, 3));

        // Not dates.
        row("31.02.2024", QDateTime());
        row("29.02.2023", QDateTime());
        row("32.01.2024", QDateTime());
        row("13.13.2024", QDateTime());
        row("24:00", QDateTime());
        row("25:00", QDateTime());
        row("14:60", QDateTime());
        row("14:30:60", QDateTime());
        row("17.03.2004 25:00", QDateTime());
        row("17 Mär 2004 25:00", QDateTime());
        row("13:00 PM", QDateTime());
        row("", QDateTime());
        row("   ", QDateTime());
        row("abc", QDateTime());
        row("17 Foo 2004", QDateTime());
        row("17.03", QDateTime());
        row("14", QDateTime());
        row("14:", QDateTime());
        row(":30", QDateTime());
        row("14:30:00:00", QDateTime());
        row("14:30 15:00", QDateTime());
        row("17#03#2004", QDateTime());
        row("2004-03-17T14:05", QDateTime());
        row("17.03.12345", QDateTime());
        row("17 Mär März 2004", QDateTime());
        row("Sonntag", QDateTime());
        row("17.03.2004 pm", QDateTime());
        row("1.2.3.4", QDateTime());
        row("17.03.0099", QDateTime());
    }

    void cdate()
    {
        QFETCH(QString, text);
        QFETCH(QString, locale);
        QFETCH(QDateTime, expected);

        const std::optional<kvDate> parsed = CDate(text, QLocale(locale));
        QCOMPARE(parsed.has_value(), expected.isValid());
        QCOMPARE(IsDate(text, QLocale(locale)), expected.isValid());
        if (parsed)
            QCOMPARE(parsed->toDateTime(), expected);
    }

    void roundTrips_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::newRow("German") << QStringLiteral("de_DE");
        QTest::newRow("English") << QStringLiteral("en_US");
        QTest::newRow("French") << QStringLiteral("fr_FR");
    }

    void roundTrips()
    {
        QFETCH(QString, locale);
        const QLocale l(locale);
        const auto read = [&l](const QString &text) {
            const std::optional<kvDate> parsed = CDate(text, l);
            return parsed ? parsed->toDateTime() : QDateTime();
        };
        // Every month, days on both sides of 12, times with and without seconds.
        for (int month = 1; month <= 12; ++month) {
            for (int day : {1, 12, 13, 28}) {
                const kvDate value = at(2026, month, day, (month * 7 + day) % 24, (day * 13) % 60, 30);
                const QDateTime minutes = value.addSeconds(-30).toDateTime();
                const QDateTime midnight = value.dateOnly().toDateTime();

                // Part 2.2: "dd-mm-yyyy" read back drops the time (in the German locale; en_US
                // reads numbers month first, as VB does).
                if (l.language() == QLocale::German)
                    QCOMPARE(read(Format(value, QStringLiteral("dd-mm-yyyy"), l)), midnight);
                QCOMPARE(read(Format(value, QStringLiteral("mm/yyyy"), l)),
                         at(2026, month, 1).toDateTime());
                QCOMPARE(read(Format(value, QStringLiteral("d mmm yyyy"), l)), midnight);
                QCOMPARE(read(Format(value, QStringLiteral("d mmmm yyyy"), l)), midnight);
                QCOMPARE(read(Format(value, QStringLiteral("d mmm yyyy"), l) + u' '
                              + Format(value, QStringLiteral("hh:nn"), l)),
                         minutes);
                QCOMPARE(read(Format(value, QStringLiteral("yyyy-mm-dd hh:nn:ss"), l)), value.toDateTime());
                QCOMPARE(read(Format(value, QStringLiteral("Short Date"), l)), midnight);
                QCOMPARE(read(Format(value, QStringLiteral("General Date"), l)), value.toDateTime());
                QCOMPARE(read(Format(value, QStringLiteral("Long Date"), l)), midnight);
            }
        }
    }

    void timeBoxRoundTrip()
    {
        // Part 5.1: date picker text & " " & time-box text, read by the system parser.
        const kvDate picker = at(2026, 11, 15);
        const QString date = Format(picker, QStringLiteral("d mmm yyyy"));
        QCOMPARE(date, QStringLiteral("15 Nov 2026"));
        QCOMPARE(CDate(date + QStringLiteral(" 14:30"))->toDateTime(),
                 QDateTime(QDate(2026, 11, 15), QTime(14, 30), Qt::UTC));
        QVERIFY(!IsDate(date + QStringLiteral(" 25:00")));
        QVERIFY(!IsDate(date + QStringLiteral(" 14:75")));
        QVERIFY(IsDate(date + QStringLiteral(" 00:00")));
    }
};

QTEST_GUILESS_MAIN(tst_kvFormat)
#include "tst_kvFormat.moc"
