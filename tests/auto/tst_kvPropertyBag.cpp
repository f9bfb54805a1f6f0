#include "kvMemoryPropertyBag.h"
#include "kvSettingsPropertyBag.h"

#include <QtTest>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 inactiveBorder = qint32(0x8000000B);   // DayHeaderColor1's default, a system colour
constexpr qint32 menuBar = qint32(0x80000004);

// Part 1.1's WriteProperties: keys, the values written in the round trips, and their defaults.
struct Property
{
    QString key;
    QVariant value;
    QVariant defaultValue;
};

QList<Property> savedProperties()
{
    const kvDate actualDate = kvDate::fromDate(QDate(2024, 3, 31), QTime(14, 5));
    return {
        {u"View"_s, 2, QVariant()},
        {u"BorderStyle"_s, 1, QVariant()},
        {u"WeekendColumns"_s, qint16(2), QVariant()},
        {u"BackColor"_s, 0xFFFFFF, QVariant()},
        {u"ActualDate"_s, QVariant::fromValue(actualDate), QVariant()},
        {u"DayHeaderColor2"_s, menuBar, QVariant()},
        {u"DayHeaderColor1"_s, 0x00C0FFEE, inactiveBorder},
        {u"DayHeaderForeColor"_s, 0x000080, QVariant()},
        {u"TodayHeaderColor"_s, 0xC0C0FF, QVariant()},
        {u"ToolTipBackColor1"_s, 0xE1FFFF, 0},
        {u"ToolTipBackColor2"_s, 0xFFFFFF, 0},
        {u"WeeksVisible"_s, false, true},
        {u"RecordSource"_s, u"Termine"_s, QString()},
        {u"AutoRefresh"_s, false, QVariant()},
        {u"RaiseDatabaseEvents"_s, true, false},
        {u"PublicHoliday"_s, true, false},
        {u"RaiseEditEvent"_s, true, false},
        {u"Footnote"_s, u"Seite 1, Kalender; gedruckt = heute"_s, QString()},
        {u"DbDateFormat"_s, qint16(3), QVariant()},
    };
}

QStringList keysOf(const QList<Property> &properties)
{
    QStringList keys;
    for (const Property &property : properties)
        keys.append(property.key);
    return keys;
}

void writeAll(kvPropertyBag &bag)
{
    for (const Property &property : savedProperties())
        bag.WriteProperty(property.key, property.value, property.defaultValue);
}

// Part 1.1's ReadProperties, key by key with its read type; the fallbacks here are arbitrary.
struct ReadBack
{
    qint32 view = 0;
    qint32 borderStyle = 0;
    qint16 weekendColumns = 0;
    qint32 backColor = 0;
    kvDate actualDate;
    qint32 dayHeaderColor2 = 0;
    qint32 dayHeaderColor1 = 0;
    qint32 dayHeaderForeColor = 0;
    qint32 todayHeaderColor = 0;
    bool weeksVisible = false;
    QString recordSource;
    bool autoRefresh = false;
    bool raiseDatabaseEvents = false;
    bool publicHoliday = false;
    bool raiseEditEvent = false;
    QString footnote;
    qint16 dbDateFormat = 0;
    qint32 toolTipBackColor1 = 0;
    qint32 toolTipBackColor2 = 0;
};

const kvDate fallbackDate = kvDate::fromDate(QDate(2020, 2, 2));

ReadBack readAll(const kvPropertyBag &bag)
{
    ReadBack r;
    r.view = bag.ReadLong(u"View"_s, 1);
    r.borderStyle = bag.ReadLong(u"BorderStyle"_s, 0);
    r.weekendColumns = bag.ReadInteger(u"WeekendColumns"_s, 1);
    r.backColor = bag.ReadLong(u"BackColor"_s, 0xFFFFFF);
    r.actualDate = bag.ReadDate(u"ActualDate"_s, fallbackDate);
    r.dayHeaderColor2 = bag.ReadLong(u"DayHeaderColor2"_s, 0x111111);
    r.dayHeaderColor1 = bag.ReadLong(u"DayHeaderColor1"_s, inactiveBorder);
    r.dayHeaderForeColor = bag.ReadLong(u"DayHeaderForeColor"_s, 0);
    r.todayHeaderColor = bag.ReadLong(u"TodayHeaderColor"_s, 0xC0C0FF);
    r.weeksVisible = bag.ReadBoolean(u"WeeksVisible"_s, true);
    r.recordSource = bag.ReadString(u"RecordSource"_s, QString());
    r.autoRefresh = bag.ReadBoolean(u"AutoRefresh"_s, true);
    r.raiseDatabaseEvents = bag.ReadBoolean(u"RaiseDatabaseEvents"_s, false);
    r.publicHoliday = bag.ReadBoolean(u"PublicHoliday"_s, false);
    r.raiseEditEvent = bag.ReadBoolean(u"RaiseEditEvent"_s, false);
    r.footnote = bag.ReadString(u"Footnote"_s, QString());
    r.dbDateFormat = bag.ReadInteger(u"DbDateFormat"_s, 0);
    r.toolTipBackColor1 = bag.ReadLong(u"ToolTipBackColor1"_s, 0x222222);
    r.toolTipBackColor2 = bag.ReadLong(u"ToolTipBackColor2"_s, 0x333333);
    return r;
}

const QStringList readOrder = {
    u"View"_s, u"BorderStyle"_s, u"WeekendColumns"_s, u"BackColor"_s, u"ActualDate"_s,
    u"DayHeaderColor2"_s, u"DayHeaderColor1"_s, u"DayHeaderForeColor"_s, u"TodayHeaderColor"_s,
    u"WeeksVisible"_s, u"RecordSource"_s, u"AutoRefresh"_s, u"RaiseDatabaseEvents"_s,
    u"PublicHoliday"_s, u"RaiseEditEvent"_s, u"Footnote"_s, u"DbDateFormat"_s,
    u"ToolTipBackColor1"_s, u"ToolTipBackColor2"_s};

void verifySaved(const ReadBack &r)
{
    QCOMPARE(r.view, 2);
    QCOMPARE(r.borderStyle, 1);
    QCOMPARE(r.weekendColumns, qint16(2));
    QCOMPARE(r.backColor, 0xFFFFFF);
    QCOMPARE(r.actualDate, kvDate::fromDate(QDate(2024, 3, 31), QTime(14, 5)));
    QCOMPARE(r.dayHeaderColor2, menuBar);
    QCOMPARE(r.dayHeaderColor1, 0x00C0FFEE);
    QCOMPARE(r.dayHeaderForeColor, 0x000080);
    QCOMPARE(r.todayHeaderColor, 0xC0C0FF);
    QCOMPARE(r.weeksVisible, false);
    QCOMPARE(r.recordSource, u"Termine"_s);
    QCOMPARE(r.autoRefresh, false);
    QCOMPARE(r.raiseDatabaseEvents, true);
    QCOMPARE(r.publicHoliday, true);
    QCOMPARE(r.raiseEditEvent, true);
    QCOMPARE(r.footnote, u"Seite 1, Kalender; gedruckt = heute"_s);
    QCOMPARE(r.dbDateFormat, qint16(3));
    QCOMPARE(r.toolTipBackColor1, 0xE1FFFF);
    QCOMPARE(r.toolTipBackColor2, 0xFFFFFF);
}

void verifyFallbacks(const ReadBack &r)
{
    QCOMPARE(r.view, 1);
    QCOMPARE(r.borderStyle, 0);
    QCOMPARE(r.weekendColumns, qint16(1));
    QCOMPARE(r.backColor, 0xFFFFFF);
    QCOMPARE(r.actualDate, fallbackDate);
    QCOMPARE(r.dayHeaderColor2, 0x111111);
    QCOMPARE(r.dayHeaderColor1, inactiveBorder);
    QCOMPARE(r.dayHeaderForeColor, 0);
    QCOMPARE(r.todayHeaderColor, 0xC0C0FF);
    QCOMPARE(r.weeksVisible, true);
    QCOMPARE(r.recordSource, QString());
    QCOMPARE(r.autoRefresh, true);
    QCOMPARE(r.raiseDatabaseEvents, false);
    QCOMPARE(r.publicHoliday, false);
    QCOMPARE(r.raiseEditEvent, false);
    QCOMPARE(r.footnote, QString());
    QCOMPARE(r.dbDateFormat, qint16(0));
    QCOMPARE(r.toolTipBackColor1, 0x222222);
    QCOMPARE(r.toolTipBackColor2, 0x333333);
}

QString writeFile(const QTemporaryDir &dir, const QString &name, const QByteArray &content)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write(content);
    return path;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_kvPropertyBag : public QObject
{
    Q_OBJECT

private slots:
    // --- conversions of the typed readers --------------------------------------------------

    void toLong_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<std::optional<qint32>>("expected");
        using L = std::optional<qint32>;
        QTest::newRow("int") << QVariant(5) << L(5);
        QTest::newRow("negative int") << QVariant(-7) << L(-7);
        QTest::newRow("uint system colour") << QVariant(0x8000000Bu) << L(inactiveBorder);
        QTest::newRow("0xFFFFFFFF") << QVariant(quint32(0xFFFFFFFF)) << L(-1);
        QTest::newRow("qint64 too big") << QVariant(qint64(0x100000000)) << L();
        QTest::newRow("qint64 too small") << QVariant(qint64(-2147483649LL)) << L();
        QTest::newRow("quint64 huge") << QVariant(quint64(0xFFFFFFFFFFFFFFFFULL)) << L();
        QTest::newRow("short") << QVariant::fromValue(qint16(-3)) << L(-3);
        QTest::newRow("whole double") << QVariant(12.0) << L(12);
        QTest::newRow("fractional double") << QVariant(1.5) << L();
        QTest::newRow("decimal text") << QVariant(u" 42 "_s) << L(42);
        QTest::newRow("negative text") << QVariant(u"-2147483637"_s) << L(inactiveBorder);
        QTest::newRow("unsigned text") << QVariant(u"2147483659"_s) << L(inactiveBorder);
        QTest::newRow("hex text") << QVariant(u"0x8000000B"_s) << L(inactiveBorder);
        QTest::newRow("VB hex text") << QVariant(u"&H8000000B"_s) << L(inactiveBorder);
        QTest::newRow("hex too big") << QVariant(u"0x100000000"_s) << L();
        QTest::newRow("decimal too big") << QVariant(u"4294967296"_s) << L();
        QTest::newRow("word") << QVariant(u"abc"_s) << L();
        QTest::newRow("decimal with fraction") << QVariant(u"1.0"_s) << L();
        QTest::newRow("empty text") << QVariant(QString()) << L();
        QTest::newRow("bool") << QVariant(true) << L();
        QTest::newRow("date") << QVariant(QDate(2024, 1, 1)) << L();
        QTest::newRow("invalid") << QVariant() << L();
    }

    void toLong()
    {
        QFETCH(QVariant, stored);
        QFETCH(std::optional<qint32>, expected);
        QCOMPARE(kvPropertyBag::ToLong(stored), expected);
    }

    void toInteger_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<std::optional<qint16>>("expected");
        using I = std::optional<qint16>;
        QTest::newRow("1") << QVariant(1) << I(1);
        QTest::newRow("32767") << QVariant(32767) << I(32767);
        QTest::newRow("-32768") << QVariant(-32768) << I(-32768);
        QTest::newRow("32768") << QVariant(32768) << I();
        QTest::newRow("-32769") << QVariant(-32769) << I();
        QTest::newRow("70000 as text") << QVariant(u"70000"_s) << I();
        QTest::newRow("text") << QVariant(u"3"_s) << I(3);
        QTest::newRow("hex 0xFFFF") << QVariant(u"0xFFFF"_s) << I();
        QTest::newRow("word") << QVariant(u"zwei"_s) << I();
        QTest::newRow("bool") << QVariant(false) << I();
    }

    void toInteger()
    {
        QFETCH(QVariant, stored);
        QFETCH(std::optional<qint16>, expected);
        QCOMPARE(kvPropertyBag::ToInteger(stored), expected);
    }

    void toBoolean_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<std::optional<bool>>("expected");
        using B = std::optional<bool>;
        QTest::newRow("true") << QVariant(true) << B(true);
        QTest::newRow("false") << QVariant(false) << B(false);
        QTest::newRow("-1") << QVariant(-1) << B(true);
        QTest::newRow("0") << QVariant(0) << B(false);
        QTest::newRow("1") << QVariant(1) << B(true);
        QTest::newRow("16-bit True") << QVariant::fromValue(qint16(-1)) << B(true);
        QTest::newRow("2") << QVariant(2) << B();
        QTest::newRow("text true") << QVariant(u"true"_s) << B(true);
        QTest::newRow("text False") << QVariant(u"False"_s) << B(false);
        QTest::newRow("text TRUE") << QVariant(u" TRUE "_s) << B(true);
        QTest::newRow("text -1") << QVariant(u"-1"_s) << B(true);
        QTest::newRow("text 0") << QVariant(u"0"_s) << B(false);
        QTest::newRow("text 1") << QVariant(u"1"_s) << B(true);
        QTest::newRow("maybe") << QVariant(u"maybe"_s) << B();
        QTest::newRow("empty") << QVariant(QString()) << B();
        QTest::newRow("text 5") << QVariant(u"5"_s) << B();
        QTest::newRow("date") << QVariant(QDate(2024, 1, 1)) << B();
    }

    void toBoolean()
    {
        QFETCH(QVariant, stored);
        QFETCH(std::optional<bool>, expected);
        QCOMPARE(kvPropertyBag::ToBoolean(stored), expected);
    }

    void toString_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<std::optional<QString>>("expected");
        using S = std::optional<QString>;
        QTest::newRow("text") << QVariant(u"Termine"_s) << S(u"Termine"_s);
        QTest::newRow("empty text") << QVariant(QString()) << S(QString());
        QTest::newRow("INI list") << QVariant(QStringList({u"Seite 1"_s, u"Kalender"_s}))
                                  << S(u"Seite 1, Kalender"_s);
        QTest::newRow("number") << QVariant(12) << S(u"12"_s);
        QTest::newRow("bool") << QVariant(true) << S();
        QTest::newRow("date") << QVariant(QDate(2024, 1, 1)) << S();
        QTest::newRow("invalid") << QVariant() << S();
    }

    void toString()
    {
        QFETCH(QVariant, stored);
        QFETCH(std::optional<QString>, expected);
        QCOMPARE(kvPropertyBag::ToString(stored), expected);
    }

    void toDate_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<std::optional<kvDate>>("expected");
        using D = std::optional<kvDate>;
        const kvDate day = kvDate::fromDate(QDate(2024, 3, 31));
        const kvDate moment = kvDate::fromDate(QDate(2024, 3, 31), QTime(14, 5));
        QTest::newRow("kvDate") << QVariant::fromValue(moment) << D(moment);
        QTest::newRow("QDate") << QVariant(QDate(2024, 3, 31)) << D(day);
        QTest::newRow("QDateTime local") << QVariant(QDateTime(QDate(2024, 3, 31), QTime(14, 5))) << D(moment);
        QTest::newRow("QDateTime UTC") << QVariant(moment.toDateTime()) << D(moment);
        QTest::newRow("ISO date") << QVariant(u"2024-03-31"_s) << D(day);
        QTest::newRow("ISO date and time") << QVariant(u"2024-03-31T14:05:00"_s) << D(moment);
        QTest::newRow("ISO with a space") << QVariant(u"2024-03-31 14:05:00"_s) << D(moment);
        QTest::newRow("ISO without seconds") << QVariant(u"2024-03-31T14:05"_s) << D(moment);
        QTest::newRow("OLE number") << QVariant(45382.0) << D(day);
        QTest::newRow("OLE text") << QVariant(u"45382"_s) << D(day);
        QTest::newRow("OLE int") << QVariant(45382) << D(day);
        QTest::newRow("clocks go forward") << QVariant(u"2026-03-29T02:30:00"_s)
                                           << D(kvDate::fromDate(QDate(2026, 3, 29), QTime(2, 30)));
        QTest::newRow("German text") << QVariant(u"31.03.2024"_s) << D();
        QTest::newRow("nonsense") << QVariant(u"someday"_s) << D();
        QTest::newRow("hour 25") << QVariant(u"2024-03-31T25:00:00"_s) << D();
        QTest::newRow("February 30") << QVariant(u"2024-02-30"_s) << D();
        QTest::newRow("beyond 9999") << QVariant(3e6) << D();
        QTest::newRow("before 100") << QVariant(-700000.0) << D();
        QTest::newRow("invalid QDate") << QVariant(QDate()) << D();
        QTest::newRow("bool") << QVariant(true) << D();
    }

    void toDate()
    {
        QFETCH(QVariant, stored);
        QFETCH(std::optional<kvDate>, expected);
        QCOMPARE(kvPropertyBag::ToDate(stored), expected);
    }

    void isDefault_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("defaultValue");
        QTest::addColumn<bool>("isDefault");
        QTest::newRow("same int") << QVariant(1) << QVariant(1) << true;
        QTest::newRow("other int") << QVariant(2) << QVariant(1) << false;
        QTest::newRow("int and short") << QVariant::fromValue(qint16(1)) << QVariant(1) << true;
        QTest::newRow("colour signed and unsigned") << QVariant(0x8000000Bu) << QVariant(inactiveBorder) << true;
        QTest::newRow("int and double") << QVariant(3) << QVariant(3.0) << true;
        QTest::newRow("bools") << QVariant(true) << QVariant(true) << true;
        QTest::newRow("True and -1") << QVariant(true) << QVariant(-1) << true;
        QTest::newRow("False and True") << QVariant(false) << QVariant(true) << false;
        QTest::newRow("empty strings") << QVariant(u""_s) << QVariant(QString()) << true;
        QTest::newRow("strings") << QVariant(u"a"_s) << QVariant(u"A"_s) << false;
        QTest::newRow("kvDate and QDate") << QVariant::fromValue(kvDate::fromDate(QDate(2024, 1, 1)))
                                          << QVariant(QDate(2024, 1, 1)) << true;
        QTest::newRow("dates differ in time") << QVariant::fromValue(kvDate::fromDate(QDate(2024, 1, 1), QTime(8, 0)))
                                              << QVariant(QDate(2024, 1, 1)) << false;
        QTest::newRow("no default") << QVariant(0) << QVariant() << false;
        QTest::newRow("both invalid") << QVariant() << QVariant() << true;
        QTest::newRow("numeric text and number") << QVariant(u"1"_s) << QVariant(1) << true;
        QTest::newRow("text and number") << QVariant(u"eins"_s) << QVariant(1) << false;
    }

    void isDefault()
    {
        QFETCH(QVariant, value);
        QFETCH(QVariant, defaultValue);
        QFETCH(bool, isDefault);
        QCOMPARE(kvPropertyBag::IsDefault(value, defaultValue), isDefault);
    }

    // --- the memory bag ---------------------------------------------------------------------

    void memoryMissingKeysReadAsDefaults()
    {
        kvMemoryPropertyBag bag;
        QCOMPARE(bag.ReadProperty(u"View"_s, 1), QVariant(1));
        QVERIFY(!bag.ReadProperty(u"View"_s, QVariant()).isValid());
        bag.ClearReadLog();
        verifyFallbacks(readAll(bag));
        QCOMPARE(bag.ReadLog(), readOrder);
        QVERIFY(bag.Keys().isEmpty());
    }

    void memoryRoundTripsEveryType()
    {
        kvMemoryPropertyBag bag;
        writeAll(bag);
        QCOMPARE(bag.Keys(), keysOf(savedProperties()));
        QCOMPARE(bag.Value(u"RecordSource"_s), QVariant(u"Termine"_s));
        QVERIFY(bag.Contains(u"ActualDate"_s));
        verifySaved(readAll(bag));
        QCOMPARE(bag.ReadLog(), readOrder);
    }

    void memoryWriteOfTheDefaultStoresNothing()
    {
        kvMemoryPropertyBag bag;
        bag.WriteProperty(u"WeeksVisible"_s, true, true);
        bag.WriteProperty(u"RecordSource"_s, QString(), QString());
        bag.WriteProperty(u"DayHeaderColor1"_s, 0x8000000Bu, inactiveBorder);
        bag.WriteProperty(u"ToolTipBackColor1"_s, 0, 0);
        bag.WriteProperty(u"RaiseEditEvent"_s, false, false);
        QVERIFY(bag.Keys().isEmpty());

        bag.WriteProperty(u"WeeksVisible"_s, false, true);
        bag.WriteProperty(u"Footnote"_s, u"Fuß"_s, QString());
        QCOMPARE(bag.Keys(), QStringList({u"WeeksVisible"_s, u"Footnote"_s}));
        bag.WriteProperty(u"WeeksVisible"_s, true, true);   // the stale False goes
        QVERIFY(!bag.Contains(u"WeeksVisible"_s));
        QCOMPARE(bag.ReadBoolean(u"WeeksVisible"_s, true), true);
        QCOMPARE(bag.Keys(), QStringList({u"Footnote"_s}));
    }

    void memoryKeysFollowTheLatestWrite()
    {
        kvMemoryPropertyBag bag;
        bag.WriteProperty(u"View"_s, 2, QVariant());
        bag.WriteProperty(u"BorderStyle"_s, 1, QVariant());
        bag.WriteProperty(u"View"_s, 1, QVariant());
        QCOMPARE(bag.Keys(), QStringList({u"BorderStyle"_s, u"View"_s}));
        QCOMPARE(bag.ReadLong(u"View"_s, 0), 1);
        bag.Clear();
        QVERIFY(bag.Keys().isEmpty());
        QVERIFY(bag.ReadLog().isEmpty());
        QVERIFY(!bag.Value(u"View"_s).isValid());
    }

    void memoryWrongTypesFallBack()
    {
        kvMemoryPropertyBag bag;
        bag.SetValue(u"View"_s, u"abc"_s);
        bag.SetValue(u"BorderStyle"_s, QDate(2024, 1, 1));
        bag.SetValue(u"WeekendColumns"_s, 70000);
        bag.SetValue(u"BackColor"_s, qint64(0x1FFFFFFFF));
        bag.SetValue(u"ActualDate"_s, u"nonsense"_s);
        bag.SetValue(u"DayHeaderColor2"_s, true);
        bag.SetValue(u"DayHeaderColor1"_s, 1.5);
        bag.SetValue(u"DayHeaderForeColor"_s, QStringList({u"x"_s}));
        bag.SetValue(u"TodayHeaderColor"_s, u""_s);
        bag.SetValue(u"WeeksVisible"_s, u"maybe"_s);
        bag.SetValue(u"RecordSource"_s, QDate(2024, 1, 1));
        bag.SetValue(u"AutoRefresh"_s, 7);
        bag.SetValue(u"RaiseDatabaseEvents"_s, u"ja"_s);
        bag.SetValue(u"PublicHoliday"_s, QDate(2024, 1, 1));
        bag.SetValue(u"RaiseEditEvent"_s, 2.0);
        bag.SetValue(u"Footnote"_s, QVariant::fromValue(kvDate()));
        bag.SetValue(u"DbDateFormat"_s, u"0x10000"_s);
        bag.SetValue(u"ToolTipBackColor1"_s, u"rot"_s);
        bag.SetValue(u"ToolTipBackColor2"_s, u"#FFFFFF"_s);
        verifyFallbacks(readAll(bag));
    }

    // --- the settings bag -------------------------------------------------------------------

    void settingsRoundTripsEveryType()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath(u"kalender.ini"_s);
        {
            QSettings settings(path, QSettings::IniFormat);
            kvSettingsPropertyBag bag(&settings, u"kvKalivo1"_s);
            writeAll(bag);
            verifySaved(readAll(bag));
            settings.sync();
            QCOMPARE(settings.status(), QSettings::NoError);
        }
        QSettings settings(path, QSettings::IniFormat);
        const kvSettingsPropertyBag bag(&settings, u"kvKalivo1"_s);
        verifySaved(readAll(bag));

        settings.beginGroup(u"kvKalivo1"_s);
        QCOMPARE(settings.childKeys().size(), savedProperties().size());
        settings.endGroup();
    }

    void settingsFileStaysReadable()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"kalender.ini"_s);
        {
            QSettings settings(path, QSettings::IniFormat);
            kvSettingsPropertyBag bag(&settings, u"kvKalivo1"_s);
            writeAll(bag);
            bag.WriteProperty(u"Day"_s, QVariant(QDate(2024, 12, 24)), QVariant());
            bag.WriteProperty(u"Moment"_s, QVariant(QDateTime(QDate(2024, 12, 24), QTime(18, 30, 15))), QVariant());
        }
        const QString text = QString::fromUtf8(readFile(path));
        QVERIFY2(text.contains(u"[kvKalivo1]"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nView=2\n"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nActualDate=2024-03-31T14:05:00\n"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nDay=2024-12-24\n"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nMoment=2024-12-24T18:30:15\n"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nWeeksVisible=false\n"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nRaiseEditEvent=true\n"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nRecordSource=Termine\n"_s), qPrintable(text));
        QVERIFY2(text.contains(u"\nDayHeaderColor2=-2147483644\n"_s), qPrintable(text));
        QVERIFY2(!text.contains(u"@Variant"_s), qPrintable(text));
    }

    void settingsWithoutGroupUseTheTopLevel()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"kalender.ini"_s);
        QSettings settings(path, QSettings::IniFormat);
        kvSettingsPropertyBag bag(&settings);
        QCOMPARE(bag.Settings(), &settings);
        QVERIFY(bag.Group().isEmpty());
        QCOMPARE(bag.Key(u"View"_s), u"View"_s);
        bag.WriteProperty(u"View"_s, 2, 1);
        QCOMPARE(settings.value(u"View"_s).toInt(), 2);
        QCOMPARE(bag.ReadLong(u"View"_s, 1), 2);
        QCOMPARE(kvSettingsPropertyBag(&settings, u"g"_s).Key(u"View"_s), u"g/View"_s);
    }

    void settingsWriteOfTheDefaultRemovesTheStaleValue()
    {
        QTemporaryDir dir;
        QSettings settings(dir.filePath(u"kalender.ini"_s), QSettings::IniFormat);
        kvSettingsPropertyBag bag(&settings, u"kvKalivo1"_s);
        bag.WriteProperty(u"WeeksVisible"_s, false, true);
        bag.WriteProperty(u"DayHeaderColor1"_s, 0x00FF00, inactiveBorder);
        QVERIFY(settings.contains(u"kvKalivo1/WeeksVisible"_s));
        QVERIFY(settings.contains(u"kvKalivo1/DayHeaderColor1"_s));

        bag.WriteProperty(u"WeeksVisible"_s, true, true);
        bag.WriteProperty(u"DayHeaderColor1"_s, 0x8000000Bu, inactiveBorder);
        bag.WriteProperty(u"Footnote"_s, QString(), QString());
        QVERIFY(settings.allKeys().isEmpty());
        QCOMPARE(bag.ReadBoolean(u"WeeksVisible"_s, true), true);
        QCOMPARE(bag.ReadLong(u"DayHeaderColor1"_s, inactiveBorder), inactiveBorder);
    }

    void settingsGarbageFileFallsBack()
    {
        QTemporaryDir dir;
        QByteArray garbage(8192, '\0');
        QRandomGenerator random(20240331);
        for (char &byte : garbage)
            byte = char(random.bounded(256));
        const QString path = writeFile(dir, u"garbage.ini"_s, garbage);
        QVERIFY(!path.isEmpty());

        QSettings settings(path, QSettings::IniFormat);
        verifyFallbacks(readAll(kvSettingsPropertyBag(&settings)));
        verifyFallbacks(readAll(kvSettingsPropertyBag(&settings, u"kvKalivo1"_s)));
    }

    void settingsWrongTypesFallBack()
    {
        QTemporaryDir dir;
        const QByteArray content = "[General]\n"
                                   "View=abc\n"
                                   "BorderStyle=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\x3garbage)\n"
                                   "WeekendColumns=70000\n"
                                   "BackColor=0x1FFFFFFFF\n"
                                   "ActualDate=someday\n"
                                   "DayHeaderColor2=\n"
                                   "DayHeaderColor1=blue\n"
                                   "DayHeaderForeColor=1.5\n"
                                   "TodayHeaderColor=@ByteArray(\\xff)\n"
                                   "WeeksVisible=maybe\n"
                                   "AutoRefresh=2\n"
                                   "RaiseDatabaseEvents=ja\n"
                                   "PublicHoliday=\n"
                                   "RaiseEditEvent=nein\n"
                                   "DbDateFormat=0x10000\n"
                                   "ToolTipBackColor1=@Rect(1 2 3 4)\n"
                                   "ToolTipBackColor2=#FFFFFF\n";
        const QString path = writeFile(dir, u"wrong.ini"_s, content);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^QVariant::load: unknown user type"_s));
        QSettings settings(path, QSettings::IniFormat);
        verifyFallbacks(readAll(kvSettingsPropertyBag(&settings)));
    }

    void settingsHandEditedValuesAreRead()
    {
        QTemporaryDir dir;
        const QByteArray content = "[kvKalivo1]\n"
                                   "View=2\n"
                                   "DayHeaderColor1=0x80000004\n"
                                   "DayHeaderColor2=&H80000004\n"
                                   "BackColor=2147483652\n"
                                   "ActualDate=2024-03-31 14:05\n"
                                   "WeeksVisible=False\n"
                                   "AutoRefresh=-1\n"
                                   "Footnote=Seite 1, Kalender\n"
                                   "RecordSource=\"Termine, alt\"\n";
        const QString path = writeFile(dir, u"edited.ini"_s, content);
        QSettings settings(path, QSettings::IniFormat);
        const kvSettingsPropertyBag bag(&settings, u"kvKalivo1"_s);
        QCOMPARE(bag.ReadLong(u"View"_s, 1), 2);
        QCOMPARE(bag.ReadLong(u"DayHeaderColor1"_s, 0), menuBar);
        QCOMPARE(bag.ReadLong(u"DayHeaderColor2"_s, 0), menuBar);
        QCOMPARE(bag.ReadLong(u"BackColor"_s, 0), menuBar);
        QCOMPARE(bag.ReadDate(u"ActualDate"_s, fallbackDate), kvDate::fromDate(QDate(2024, 3, 31), QTime(14, 5)));
        QCOMPARE(bag.ReadBoolean(u"WeeksVisible"_s, true), false);
        QCOMPARE(bag.ReadBoolean(u"AutoRefresh"_s, false), true);
        QCOMPARE(bag.ReadString(u"Footnote"_s, QString()), u"Seite 1, Kalender"_s);
        QCOMPARE(bag.ReadString(u"RecordSource"_s, QString()), u"Termine, alt"_s);
    }

    void settingsInErrorGiveTheDefaults()
    {
        QTemporaryDir dir;
        // An INI line that Qt cannot parse (a section that never closes) is a format error.
        const QString path = writeFile(dir, u"broken.ini"_s, "View=2\n[kvKalivo1\nView=2\n");
        QSettings settings(path, QSettings::IniFormat);
        QCOMPARE(settings.status(), QSettings::FormatError);
        const kvSettingsPropertyBag bag(&settings);
        QCOMPARE(bag.ReadProperty(u"View"_s, 1), QVariant(1));
        verifyFallbacks(readAll(bag));
    }

    void settingsWithoutASettingsObjectGiveTheDefaults()
    {
        kvSettingsPropertyBag bag(nullptr);
        bag.WriteProperty(u"View"_s, 2, 1);
        verifyFallbacks(readAll(bag));

        auto settings = std::make_unique<QSettings>(QDir::temp().filePath(u"kvKalivo-deleted.ini"_s),
                                                    QSettings::IniFormat);
        kvSettingsPropertyBag guarded(settings.get());
        settings.reset();
        QVERIFY(!guarded.Settings());
        guarded.WriteProperty(u"View"_s, 2, 1);
        verifyFallbacks(readAll(guarded));
    }
};

QTEST_GUILESS_MAIN(tst_kvPropertyBag)
#include "tst_kvPropertyBag.moc"
