// The property bags: typed readers, the round trip of every saved property, and garbage in.
#include "kvMemoryPropertyBag.h"
#include "kvSettingsPropertyBag.h"

#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

constexpr qint32 inactiveBorder = qint32(0x8000000B);   // a system colour
constexpr qint32 menuBar = qint32(0x80000004);

// A saved property: its reader, the value written, the reader's fallback, the default WriteProperty compares with.
struct Property
{
    const char *key;
    char type;   // L(ong), I(nteger), B(oolean), S(tring), D(ate)
    QVariant saved;
    QVariant fallback;
    QVariant writeDefault;
};

const QList<Property> properties = {
    {"View", 'L', 2, 1, {}},
    {"WeekendColumns", 'I', qint16(2), 1, {}},
    {"ActualDate", 'D', QDateTime(QDate(2024, 3, 31), QTime(14, 5), Qt::UTC), QDateTime(QDate(2020, 2, 2), QTime(0, 0), Qt::UTC), {}},
    {"DayHeaderColor2", 'L', menuBar, 0x111111, {}},
    {"DayHeaderColor1", 'L', 0x00C0FFEE, inactiveBorder, inactiveBorder},
    {"ToolTipBackColor1", 'L', 0xE1FFFF, 0x222222, 0},
    {"WeeksVisible", 'B', false, true, true},
    {"RaiseEditEvent", 'B', true, false, false},
    {"RecordSource", 'S', "Termine", QString(), QString()},
    {"Footnote", 'S', "Seite 1, Kalender; gedruckt = heute", QString(), QString()},
    {"DbDateFormat", 'I', qint16(3), 0, {}},
};

QVariant read(const kvPropertyBag &bag, const Property &p)
{
    switch (p.type) {
    case 'L': return bag.ReadLong(p.key, p.fallback.toInt());
    case 'I': return int(bag.ReadInteger(p.key, qint16(p.fallback.toInt())));
    case 'B': return bag.ReadBoolean(p.key, p.fallback.toBool());
    case 'S': return bag.ReadString(p.key, p.fallback.toString());
    default: return bag.ReadDate(p.key, kvDate::fromDateTime(p.fallback.toDateTime())).toDateTime();
    }
}

void writeAll(kvPropertyBag &bag)
{
    for (const Property &p : properties) {
        const QVariant value = p.type == 'D' ? QVariant::fromValue(kvDate::fromDateTime(p.saved.toDateTime())) : p.saved;
        bag.WriteProperty(p.key, value, p.writeDefault);
    }
}

void verifyAll(const kvPropertyBag &bag, bool saved)
{
    for (const Property &p : properties) {
        const QVariant expected = saved ? p.saved : p.fallback;
        QVERIFY2(read(bag, p) == (p.type == 'I' ? QVariant(expected.toInt()) : expected),
                 qPrintable(QStringLiteral("%1: %2").arg(p.key, read(bag, p).toString())));
    }
}

} // namespace

class tst_kvPropertyBag : public QObject
{
    Q_OBJECT

private slots:
    void conversions_data()
    {
        QTest::addColumn<char>("reader");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QVariant>("expected");   // invalid: no value, the fallback applies
        QTest::newRow("long: unsigned system colour") << 'L' << QVariant(0x8000000Bu) << QVariant(inactiveBorder);
        QTest::newRow("long: 0xFFFFFFFF") << 'L' << QVariant(quint32(0xFFFFFFFF)) << QVariant(-1);
        QTest::newRow("long: qint64 too big") << 'L' << QVariant(qint64(0x100000000)) << QVariant();
        QTest::newRow("long: fractional double") << 'L' << QVariant(1.5) << QVariant();
        QTest::newRow("long: unsigned text") << 'L' << QVariant("2147483659") << QVariant(inactiveBorder);
        QTest::newRow("long: &H hex text") << 'L' << QVariant("&H8000000B") << QVariant(inactiveBorder);
        QTest::newRow("long: 0x hex text") << 'L' << QVariant("0x80000004") << QVariant(menuBar);
        QTest::newRow("long: decimal with fraction") << 'L' << QVariant("1.0") << QVariant();
        QTest::newRow("integer: 32768") << 'I' << QVariant(32768) << QVariant();
        QTest::newRow("integer: hex 0xFFFF") << 'I' << QVariant("0xFFFF") << QVariant();
        QTest::newRow("boolean: 16-bit True") << 'B' << QVariant::fromValue(qint16(-1)) << QVariant(true);
        QTest::newRow("boolean: 2") << 'B' << QVariant(2) << QVariant();
        QTest::newRow("boolean: text TRUE") << 'B' << QVariant(" TRUE ") << QVariant(true);
        QTest::newRow("boolean: text -1") << 'B' << QVariant("-1") << QVariant(true);
        QTest::newRow("boolean: maybe") << 'B' << QVariant("maybe") << QVariant();
        QTest::newRow("string: INI list") << 'S' << QVariant(QStringList{"Seite 1", "Kalender"}) << QVariant("Seite 1, Kalender");
        QTest::newRow("string: number") << 'S' << QVariant(12) << QVariant("12");
        QTest::newRow("string: date") << 'S' << QVariant(QDate(2024, 1, 1)) << QVariant();
        QTest::newRow("date: local QDateTime") << 'D' << QVariant(QDateTime(QDate(2024, 3, 31), QTime(14, 5)))
                                               << QVariant(QDateTime(QDate(2024, 3, 31), QTime(14, 5), Qt::UTC));
        QTest::newRow("date: ISO with a space, no seconds") << 'D' << QVariant("2024-03-31 14:05")
                                                << QVariant(QDateTime(QDate(2024, 3, 31), QTime(14, 5), Qt::UTC));
        QTest::newRow("date: clocks go forward") << 'D' << QVariant("2026-03-29T02:30:00")
                                                 << QVariant(QDateTime(QDate(2026, 3, 29), QTime(2, 30), Qt::UTC));
        QTest::newRow("date: OLE text") << 'D' << QVariant("45382") << QVariant(QDateTime(QDate(2024, 3, 31), QTime(0, 0), Qt::UTC));
        QTest::newRow("date: German text") << 'D' << QVariant("31.03.2024") << QVariant();
        QTest::newRow("date: hour 25") << 'D' << QVariant("2024-03-31T25:00:00") << QVariant();
    }
    void conversions()
    {
        QFETCH(char, reader);
        QFETCH(QVariant, stored);
        QVariant converted;
        const auto take = [&converted](const auto &value) {
            if (value)
                converted = QVariant::fromValue(*value);
        };
        switch (reader) {
        case 'L': take(kvPropertyBag::ToLong(stored)); break;
        case 'I': take(kvPropertyBag::ToInteger(stored)); break;
        case 'B': take(kvPropertyBag::ToBoolean(stored)); break;
        case 'S': take(kvPropertyBag::ToString(stored)); break;
        default:
            if (const auto date = kvPropertyBag::ToDate(stored))
                converted = date->toDateTime();
        }
        if (reader == 'I' && converted.isValid())
            converted = converted.toInt();
        QTEST(converted, "expected");
    }

    void isDefault_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QVariant>("defaultValue");
        QTest::addColumn<bool>("isDefault");
        QTest::newRow("int and short") << QVariant::fromValue(qint16(1)) << QVariant(1) << true;
        QTest::newRow("colour signed and unsigned") << QVariant(0x8000000Bu) << QVariant(inactiveBorder) << true;
        QTest::newRow("True and -1") << QVariant(true) << QVariant(-1) << true;
        QTest::newRow("False and True") << QVariant(false) << QVariant(true) << false;
        QTest::newRow("case matters") << QVariant("a") << QVariant("A") << false;
        QTest::newRow("dates differ in time") << QVariant::fromValue(kvDate::fromDate(QDate(2024, 1, 1), QTime(8, 0)))
                                              << QVariant(QDate(2024, 1, 1)) << false;
        QTest::newRow("no default") << QVariant(0) << QVariant() << false;
        QTest::newRow("text and number") << QVariant("eins") << QVariant(1) << false;
    }
    void isDefault()
    {
        QFETCH(QVariant, value);
        QFETCH(QVariant, defaultValue);
        QTEST(kvPropertyBag::IsDefault(value, defaultValue), "isDefault");
    }

    void roundTrip_data()
    {
        QTest::addColumn<bool>("settings");
        QTest::newRow("memory") << false;
        QTest::newRow("INI file, reopened") << true;
    }
    void roundTrip()
    {
        QFETCH(bool, settings);
        QTemporaryDir dir;
        const QString path = dir.filePath("kalender.ini");
        kvMemoryPropertyBag memory;
        {
            QSettings file(path, QSettings::IniFormat);
            kvSettingsPropertyBag ini(&file, "kvKalivo1");
            kvPropertyBag &bag = settings ? static_cast<kvPropertyBag &>(ini) : memory;
            writeAll(bag);
            bag.WriteProperty("Day", QVariant(QDate(2024, 12, 24)), QVariant());
            verifyAll(bag, true);
            // Writing the default removes a stale value.
            bag.WriteProperty("WeeksVisible", true, true);
            QCOMPARE(bag.ReadBoolean("WeeksVisible", false), false);
            bag.WriteProperty("WeeksVisible", false, true);
        }
        QSettings file(path, QSettings::IniFormat);
        const kvSettingsPropertyBag ini(&file, "kvKalivo1");
        verifyAll(settings ? static_cast<const kvPropertyBag &>(ini) : memory, true);
        QCOMPARE(settings ? file.allKeys().size() : memory.Keys().size(), int(properties.size()) + 1);
        if (!settings)
            return;
        QFile written(path);   // a file a person can read and edit
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(written.readAll());
        for (const char *line : {"[kvKalivo1]\n", "\nView=2\n", "\nActualDate=2024-03-31T14:05:00\n", "\nDay=2024-12-24\n",
                                 "\nWeeksVisible=false\n", "\nDayHeaderColor2=-2147483644\n"})
            QVERIFY2(text.contains(QString::fromUtf8(line)), qPrintable(text));
        QVERIFY2(!text.contains("@Variant"), qPrintable(text));
    }

    void garbageGivesTheFallbacks_data()
    {
        QTest::addColumn<QByteArray>("content");
        QByteArray noise(8192, '\0');
        QRandomGenerator random(20240331);
        for (char &byte : noise)
            byte = char(random.bounded(256));
        QTest::newRow("random bytes") << noise;
        QTest::newRow("wrong types") << QByteArray("[kvKalivo1]\nView=abc\nWeekendColumns=70000\n"
                                                   "ActualDate=someday\nDayHeaderColor1=1.5\n"
                                                   "ToolTipBackColor1=@Rect(1 2 3 4)\nWeeksVisible=maybe\nRaiseEditEvent=nein\n"
                                                   "DbDateFormat=0x10000\nDayHeaderColor2=@ByteArray(\\xff)\n");
        QTest::newRow("unknown variant type") << QByteArray("[kvKalivo1]\nView=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\x3garbage)\n");
        QTest::newRow("section never closes") << QByteArray("View=2\n[kvKalivo1\nView=2\n");
    }
    void garbageGivesTheFallbacks()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        QFile file(dir.filePath("kalender.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        if (content.contains("@Variant"))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^QVariant::load: unknown user type"));
        QSettings settings(file.fileName(), QSettings::IniFormat);
        verifyAll(kvSettingsPropertyBag(&settings, "kvKalivo1"), false);
        verifyAll(kvSettingsPropertyBag(&settings), false);
    }

    void withoutSettingsTheFallbacks()
    {
        kvSettingsPropertyBag none(nullptr);
        writeAll(none);
        verifyAll(none, false);
        auto settings = std::make_unique<QSettings>(QDir::temp().filePath("kvKalivo-deleted.ini"), QSettings::IniFormat);
        kvSettingsPropertyBag deleted(settings.get());
        settings.reset();
        writeAll(deleted);
        verifyAll(deleted, false);
    }
};

QTEST_GUILESS_MAIN(tst_kvPropertyBag)
#include "tst_kvPropertyBag.moc"
