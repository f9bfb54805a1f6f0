// kvDate, 16-bit arithmetic, OLE colours, control arrays, Format and CDate.
#include "kvControlArray.h"
#include "kvDigitFormat.h"
#include "kvFormat.h"
#include "kvInt16.h"
#include "kvOleColor.h"
#include "kvTestSupport.h"

#include <QtTest>

#include <limits>

namespace {

kvDate at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute, second));
}

QDateTime wall(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}

} // namespace

class tst_kvValueTypes : public QObject
{
    Q_OBJECT

private slots:
    void dateSerials_data()
    {
        QTest::addColumn<kvDate>("value");
        QTest::addColumn<double>("days");
        QTest::addColumn<QDateTime>("wallClock");
        QTest::newRow("noon 1900-01-01") << at(1900, 1, 1, 12) << 2.5 << wall(1900, 1, 1, 12);
        QTest::newRow("before the epoch keeps a positive time") << kvDate::fromDays(-1.25) << -1.25 << wall(1899, 12, 29, 6);
        QTest::newRow("clocks skip 02:30 in Berlin") << at(2026, 3, 29, 2, 30) << 46110.0 + 2.5 / 24 << wall(2026, 3, 29, 2, 30);
        QTest::newRow("NaN is the epoch") << kvDate::fromDays(std::numeric_limits<double>::quiet_NaN()) << 0.0 << wall(1899, 12, 30);
        QTest::newRow("month clamps to 29 Feb") << at(2024, 1, 31, 9, 15).addMonths(1) << 45351.0 + 9.25 / 24 << wall(2024, 2, 29, 9, 15);
        QTest::newRow("minutes past midnight") << at(2026, 1, 1, 23, 45).addMinutes(30) << 46024.0 + 0.25 / 24 << wall(2026, 1, 2, 0, 15);
        QTest::newRow("DateSerial day 0") << kvDate::DateSerial(2024, 3, 0) << 45351.0 << wall(2024, 2, 29);
        QTest::newRow("DateSerial month 13") << kvDate::DateSerial(2024, 13, 1) << 45658.0 << wall(2025, 1, 1);
        QTest::newRow("DateSerial 32 April") << kvDate::DateSerial(2024, 4, 32) << 45414.0 << wall(2024, 5, 2);
    }
    void dateSerials()
    {
        QFETCH(kvDate, value);
        QFETCH(QDateTime, wallClock);
        QTEST(value.days(), "days");
        QCOMPARE(value.toDateTime(), wallClock);
        QCOMPARE(kvDate::fromDateTime(wallClock), value);
        QCOMPARE(value.dateOnly(), kvDate::fromDate(wallClock.date()));
    }

    void int16Arithmetic_data()
    {
        QTest::addColumn<char>("operation");   // d: fromDouble(a), i: fromInt(a)
        QTest::addColumn<double>("a");
        QTest::addColumn<double>("b");
        QTest::addColumn<int>("expected");
        QTest::addColumn<int>("error");
        QTest::newRow("add to the maximum") << '+' << 32766.0 << 1.0 << 32767 << 0;
        QTest::newRow("operands wider than 16 bits") << '+' << 40000.0 << -10000.0 << 30000 << 0;
        QTest::newRow("multiply to the minimum") << '*' << -256.0 << 128.0 << -32768 << 0;
        QTest::newRow("divide truncates toward zero") << '/' << -7.0 << 2.0 << -3 << 0;
        QTest::newRow("add past the maximum") << '+' << 32767.0 << 1.0 << 0 << 6;
        QTest::newRow("subtract past the minimum") << '-' << -32768.0 << 1.0 << 0 << 6;
        QTest::newRow("multiply past the maximum") << '*' << 182.0 << 181.0 << 0 << 6;
        QTest::newRow("minimum divided by -1") << '/' << -32768.0 << -1.0 << 0 << 6;
        QTest::newRow("division by zero") << '/' << 5.0 << 0.0 << 0 << 11;
        QTest::newRow("fromInt 2^40") << 'i' << double(1LL << 40) << 0.0 << 0 << 6;
        QTest::newRow("half to even, down") << 'd' << 2.5 << 0.0 << 2 << 0;
        QTest::newRow("cell width 1135/6") << 'd' << 1135.0 / 6 << 0.0 << 189 << 0;
        QTest::newRow("-32768.5") << 'd' << -32768.5 << 0.0 << -32768 << 0;
        QTest::newRow("32767.5") << 'd' << 32767.5 << 0.0 << 0 << 6;
        QTest::newRow("NaN") << 'd' << std::numeric_limits<double>::quiet_NaN() << 0.0 << 0 << 6;
    }
    void int16Arithmetic()
    {
        QFETCH(char, operation);
        QFETCH(double, a);
        QFETCH(double, b);
        QFETCH(int, error);
        qint16 result = 0;
        QString description;
        QCOMPARE(errorNumber([&] {
                     switch (operation) {
                     case '+': result = kvInt16::add(int(a), int(b)); break;
                     case '-': result = kvInt16::subtract(int(a), int(b)); break;
                     case '*': result = kvInt16::multiply(int(a), int(b)); break;
                     case '/': result = kvInt16::divide(int(a), int(b)); break;
                     case 'd': result = kvInt16::fromDouble(a); break;
                     default: result = kvInt16::fromInt(qint64(a));
                     }
                 }, &description), error);
        if (error == 0)
            QTEST(int(result), "expected");
        else
            QCOMPARE(description, error == 6 ? QStringLiteral("Überlauf") : QStringLiteral("Division durch Null"));
    }

    void oleColours_data()
    {
        QTest::addColumn<quint32>("ole");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("red is BGR") << 0x0000FFu << QColor(255, 0, 0);
        QTest::newRow("menu") << 0x80000004u << QColor(1, 2, 3);
        QTest::newRow("inactive border") << 0x8000000Bu << QColor(4, 5, 6);
        QTest::newRow("info background") << 0x80000018u << QColor(7, 8, 9);
        QTest::newRow("unknown system colour") << 0x800000FFu << QColor(20, 30, 40);
    }
    void oleColours()
    {
        QFETCH(quint32, ole);
        QFETCH(QColor, colour);
        QPalette palette;
        palette.setColor(QPalette::Button, QColor(1, 2, 3));
        palette.setColor(QPalette::Midlight, QColor(4, 5, 6));
        palette.setColor(QPalette::ToolTipBase, QColor(7, 8, 9));
        palette.setColor(QPalette::Base, QColor(10, 11, 12));
        palette.setColor(QPalette::Window, QColor(20, 30, 40));
        QCOMPARE(kvOleColor::ToQColor(ole, palette), colour);
        if (!kvOleColor::IsSystemColor(ole))
            QCOMPARE(kvOleColor::FromQColor(colour), ole);
    }

    void controlArrayErrors_data()
    {
        QTest::addColumn<char>("action");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");
        QTest::newRow("load a loaded element") << 'l' << 1 << 360 << QStringLiteral("Objekt bereits geladen");
        QTest::newRow("load a negative index") << 'l' << -1 << 340 << QStringLiteral("Steuerelementarray-Element '-1' ist nicht vorhanden");
        QTest::newRow("use an unloaded element") << 'a' << 2 << 340 << QStringLiteral("Steuerelementarray-Element '2' ist nicht vorhanden");
        QTest::newRow("use one deleted elsewhere") << 'a' << 3 << 340 << QStringLiteral("Steuerelementarray-Element '3' ist nicht vorhanden");
        QTest::newRow("unload a missing element") << 'u' << 9 << 340 << QStringLiteral("Steuerelementarray-Element '9' ist nicht vorhanden");
        QTest::newRow("unload the template") << 'u' << 0 << 362
                                             << QStringLiteral("In der Entwurfszeit erstellte Steuerelemente können nicht entladen werden");
    }
    void controlArrayErrors()
    {
        QFETCH(char, action);
        QFETCH(int, index);
        QFETCH(QString, description);
        QWidget parent;
        kvControlArray<QWidget> cells(QStringLiteral("ctlDay"), [&parent](int) { return new QWidget(&parent); });
        for (int i = 1; i <= 4; ++i)
            cells.Load(i);
        cells.Unload(2);
        delete cells(3);
        QCOMPARE(cells.indexes(), (QList<int>{0, 1, 4}));
        QString thrown;
        QTEST(errorNumber([&] {
                  if (action == 'l')
                      cells.Load(index);
                  else if (action == 'u')
                      cells.Unload(index);
                  else
                      cells(index);
              }, &thrown), "number");
        QCOMPARE(thrown, description);
        QCOMPARE(cells.Count(), 3);
        QWidget *reloaded = cells.Load(2);
        QCOMPARE(parent.findChild<QWidget *>(QStringLiteral("ctlDay2")), reloaded);
        QCOMPARE(cells(2)->property("Index").toInt(), 2);
    }

    void format_data()
    {
        QTest::addColumn<kvDate>("value");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const kvDate &value, const char *pattern, const char *expected,
                            const char *locale = "de_DE") {
            QTest::newRow(name) << value << QString::fromUtf8(pattern) << QString::fromLatin1(locale) << QString::fromUtf8(expected);
        };
        const kvDate wednesday = at(2004, 3, 17, 14, 5);
        const kvDate early = at(2004, 3, 5, 9, 7, 3);
        row("Access literal", wednesday, "mm-dd-yyyy hh:nn", "03-17-2004 14:05");
        row("month caption", wednesday, "mm/yyyy", "03.2004");
        row("mmm of March", wednesday, "d mmm yyyy", "17 Mär 2004");
        row("dddd", at(2026, 11, 15), "dddd", "Sonntag");
        row("Short Date drops the time", wednesday, "Short Date", "17.03.2004");
        row("Long Date", at(2026, 11, 15), "Long Date", "Sonntag, 15. November 2026");
        row("General Date on day 0", at(1899, 12, 30, 14, 30), "General Date", "14:30:00");
        row("empty pattern", wednesday, "", "17.03.2004 14:05:00");
        row("single digits", early, "d.m.yy h:n:s", "5.3.04 9:7:3");
        row("w from Sunday", wednesday, "w", "4");
        row("mm after an hour is minutes", early, "hh:mm:ss", "09:07:03");
        row("second mm after minutes is the month", early, "hh:mm:mm", "09:07:03");
        row("quoted text", early, "\"dd mm\" d", "dd mm 5");
        row("backslash escapes", early, "\\d\\d dd", "dd 05");
        row("unquoted letters that are fields", early, "hh Uhr", "09 U9r");
        row("slash in the US", wednesday, "dd/mm/yyyy", "17/03/2004", "en_US");
        row("colon is always a colon", wednesday, "hh:nn", "14:05", "fi_FI");
        row("AM/PM", wednesday, "h:nn AM/PM", "2:05 PM");
        row("English Long Time", wednesday, "Long Time", "2:05:00 PM", "en_US");
        row("French mmm loses its dot", at(2026, 1, 4), "mmm", "janv", "fr_FR");
    }
    void format()
    {
        QFETCH(kvDate, value);
        QFETCH(QString, pattern);
        QFETCH(QString, locale);
        QTEST(kv::Format(value, pattern, QLocale(locale)), "expected");
    }

    //! Patterns of numbers take kvDigitFormat's short way; every pattern writes what the tokens write.
    void digitPatterns_data()
    {
        QTest::addColumn<kvDate>("value");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<bool>("digitsOnly");
        const QList<std::pair<const char *, kvDate>> dates{
            {"midnight", at(2026, 3, 29)},
            {"last second of the year", at(2026, 12, 31, 23, 59, 59)},
            {"morning", at(2004, 3, 5, 9, 7, 3)},
            {"day 0", kvDate()},
            {"before day 0", kvDate::fromDays(-1.25)},
            {"a breath before midnight", kvDate::fromDays(46110.9999999)},
            {"first Date", at(100, 1, 1)},
            {"last Date", at(9999, 12, 31, 23, 59, 59)},
        };
        const QList<std::pair<const char *, bool>> patterns{
            {"hh:nn", true}, {"yyyy-mm-dd hh:nn", true}, {"yyyy-mm-dd hh:nn:ss", true}, {"dd-mm-yyyy", true},
            {"dd.mm.", true}, {"#mm-dd-yyyy hh:nn#", true}, {"'yyyy-mm-dd'", true}, {"hh:nn mm", true},
            {"hh:mm", false}, {"hh mm", false}, {"dd/mm/yyyy", false}, {"d-m-yy", false}, {"yyyyy", false},
            {"ddd dd", false}, {"hh:nn AM/PM", false}, {"HH:NN", false}, {"hh:nn \\h", false}, {"hh Uhr", false},
        };
        for (const auto &[dateName, value] : dates) {
            for (const auto &[pattern, digitsOnly] : patterns)
                QTest::addRow("%s, %s", dateName, pattern) << value << QString::fromLatin1(pattern) << digitsOnly;
        }
    }
    void digitPatterns()
    {
        QFETCH(kvDate, value);
        QFETCH(QString, pattern);
        QFETCH(bool, digitsOnly);
        QCOMPARE(kvDigitFormat::Format(value, pattern).has_value(), digitsOnly);
        // An empty quoted text writes nothing and keeps the pattern from the short way.
        const QString throughTokens = QStringLiteral("\"\"") + pattern;
        QVERIFY(!kvDigitFormat::Format(value, throughTokens));
        QCOMPARE(kv::Format(value, pattern), kv::Format(value, throughTokens));
    }

    void cdate_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QDateTime>("expected");
        const auto row = [](const char *text, const QDateTime &expected, const char *locale = "de_DE") {
            QTest::addRow("%s (%s)", text, locale) << QString::fromUtf8(text) << QString::fromLatin1(locale) << expected;
        };
        row("  17.03.2004   14:05  ", wall(2004, 3, 17, 14, 5));
        row("03/2004", wall(2004, 3, 1));
        row("17 MÄRZ 2004 14:30", wall(2004, 3, 17, 14, 30));
        row("March 17, 2004", wall(2004, 3, 17));
        row("Mittwoch, 17. März 2004", wall(2004, 3, 17));
        row("2:05 PM", wall(1899, 12, 30, 14, 5));
        row("03.17.2004", wall(2004, 3, 17));
        row("03/04/2004", wall(2004, 3, 4), "en_US");
        row("03/04/2004", wall(2004, 4, 3));
        for (const char *text : {"31.02.2024", "29.02.2023", "24:00", "14:60", "17 Mär 2004 25:00", "13:00 PM", "",
                                 "abc", "17 Foo 2004", "17.03", "14:30 15:00", "2004-03-17T14:05", "17.03.0099"})
            row(text, QDateTime());
    }
    void cdate()
    {
        QFETCH(QString, text);
        QFETCH(QString, locale);
        QFETCH(QDateTime, expected);
        const std::optional<kvDate> parsed = kv::CDate(text, QLocale(locale));
        QCOMPARE(parsed.has_value(), expected.isValid());
        QCOMPARE(kv::IsDate(text, QLocale(locale)), expected.isValid());
        if (parsed)
            QCOMPARE(parsed->toDateTime(), expected);
    }

    void cdateReadsWhatFormatWrites_data()
    {
        QTest::addColumn<QString>("locale");
        for (const char *locale : {"de_DE", "en_US", "fr_FR"})
            QTest::newRow(locale) << QString::fromLatin1(locale);
    }
    void cdateReadsWhatFormatWrites()
    {
        QFETCH(QString, locale);
        const QLocale l(locale);
        const auto read = [&l](const QString &text) {
            const std::optional<kvDate> parsed = kv::CDate(text, l);
            return parsed ? parsed->toDateTime() : QDateTime();
        };
        for (int month = 1; month <= 12; ++month) {
            for (int day : {1, 12, 13, 28}) {
                const kvDate value = at(2026, month, day, (month * 7 + day) % 24, (day * 13) % 60, 30);
                const QDateTime midnight = value.dateOnly().toDateTime();
                QCOMPARE(read(kv::Format(value, QStringLiteral("mm/yyyy"), l)), at(2026, month, 1).toDateTime());
                QCOMPARE(read(kv::Format(value, QStringLiteral("d mmmm yyyy"), l)), midnight);
                QCOMPARE(read(kv::Format(value, QStringLiteral("d mmm yyyy hh:nn"), l)), value.addSeconds(-30).toDateTime());
                QCOMPARE(read(kv::Format(value, QStringLiteral("Short Date"), l)), midnight);
                QCOMPARE(read(kv::Format(value, QStringLiteral("General Date"), l)), value.toDateTime());
                QCOMPARE(read(kv::Format(value, QStringLiteral("Long Date"), l)), midnight);
            }
        }
    }
};

QTEST_MAIN(tst_kvValueTypes)
#include "tst_kvValueTypes.moc"
