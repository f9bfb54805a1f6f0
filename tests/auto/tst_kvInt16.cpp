#include "kvInt16.h"
#include "kvRuntimeError.h"
#include "kvTestSupport.h"

#include <QtTest>

#include <functional>
#include <limits>

class tst_kvInt16 : public QObject
{
    Q_OBJECT

private slots:
    void runtimeErrorCarriesNumberAndDescription()
    {
        const kvRuntimeError error(1000, QStringLiteral("Datei nicht gefunden: Übersicht"));
        QCOMPARE(error.number(), 1000);
        QCOMPARE(error.description(), QStringLiteral("Datei nicht gefunden: Übersicht"));
        QCOMPARE(QString::fromUtf8(error.what()), QStringLiteral("Datei nicht gefunden: Übersicht"));
    }

    void runtimeErrorIsAStdRuntimeError()
    {
        try {
            throw kvRuntimeError::overflow();
        } catch (const std::runtime_error &error) {
            QCOMPARE(QString::fromUtf8(error.what()), QStringLiteral("Überlauf"));
            return;
        }
        QFAIL("kvRuntimeError was not caught as std::runtime_error");
    }

    void factories_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");
        QTest::addColumn<int>("expectedNumber");
        QTest::addColumn<QString>("expectedDescription");

        const auto row = [](const char *name, const kvRuntimeError &error, int number, const QString &text) {
            QTest::newRow(name) << error.number() << error.description() << number << text;
        };
        row("overflow", kvRuntimeError::overflow(), 6, QStringLiteral("Überlauf"));
        row("division", kvRuntimeError::divisionByZero(), 11, QStringLiteral("Division durch Null"));
        row("missing", kvRuntimeError::controlArrayElementMissing(12), 340,
            QStringLiteral("Steuerelementarray-Element '12' ist nicht vorhanden"));
        row("loaded", kvRuntimeError::objectAlreadyLoaded(), 360, QStringLiteral("Objekt bereits geladen"));
        row("designTime", kvRuntimeError::cannotUnloadDesignTimeControl(), 362,
            QStringLiteral("In der Entwurfszeit erstellte Steuerelemente können nicht entladen werden"));
    }

    void factories()
    {
        QFETCH(int, number);
        QFETCH(QString, description);
        QFETCH(int, expectedNumber);
        QFETCH(QString, expectedDescription);
        QCOMPARE(number, expectedNumber);
        QCOMPARE(description, expectedDescription);
    }

    void arithmetic_data()
    {
        QTest::addColumn<char>("operation");
        QTest::addColumn<int>("a");
        QTest::addColumn<int>("b");
        QTest::addColumn<int>("expected");

        QTest::newRow("add") << '+' << 900 << 10 << 910;
        QTest::newRow("add to the maximum") << '+' << 32766 << 1 << 32767;
        QTest::newRow("add negative") << '+' << -32767 << -1 << -32768;
        QTest::newRow("subtract") << '-' << 100 << 250 << -150;
        QTest::newRow("subtract to the minimum") << '-' << -32767 << 1 << -32768;
        QTest::newRow("multiply") << '*' << 181 << 181 << 32761;
        QTest::newRow("multiply to the minimum") << '*' << -256 << 128 << -32768;
        QTest::newRow("divide truncates") << '/' << 7 << 2 << 3;
        QTest::newRow("divide truncates toward zero") << '/' << -7 << 2 << -3;
        QTest::newRow("operands wider than 16 bits") << '+' << 40000 << -10000 << 30000;
    }

    void arithmetic()
    {
        QFETCH(char, operation);
        QFETCH(int, a);
        QFETCH(int, b);
        QFETCH(int, expected);
        qint16 result = 0;
        switch (operation) {
        case '+': result = kvInt16::add(a, b); break;
        case '-': result = kvInt16::subtract(a, b); break;
        case '*': result = kvInt16::multiply(a, b); break;
        case '/': result = kvInt16::divide(a, b); break;
        }
        QCOMPARE(int(result), expected);
    }

    void overflowIsAnError_data()
    {
        QTest::addColumn<char>("operation");
        QTest::addColumn<int>("a");
        QTest::addColumn<int>("b");

        QTest::newRow("add past the maximum") << '+' << 32767 << 1;
        QTest::newRow("add past the minimum") << '+' << -32768 << -1;
        QTest::newRow("subtract past the minimum") << '-' << -32768 << 1;
        QTest::newRow("subtract past the maximum") << '-' << 0 << -32768;
        QTest::newRow("multiply") << '*' << 182 << 181;
        QTest::newRow("multiply negative") << '*' << -256 << 129;
        QTest::newRow("divide the minimum by -1") << '/' << -32768 << -1;
        QTest::newRow("large ints") << '+' << std::numeric_limits<int>::max() << std::numeric_limits<int>::max();
    }

    void overflowIsAnError()
    {
        QFETCH(char, operation);
        QFETCH(int, a);
        QFETCH(int, b);
        QString description;
        const int number = errorNumber([&] {
            switch (operation) {
            case '+': kvInt16::add(a, b); break;
            case '-': kvInt16::subtract(a, b); break;
            case '*': kvInt16::multiply(a, b); break;
            case '/': kvInt16::divide(a, b); break;
            }
        }, &description);
        QCOMPARE(number, 6);
        QCOMPARE(description, QStringLiteral("Überlauf"));
    }

    void divisionByZero()
    {
        QString description;
        QCOMPARE(errorNumber([] { kvInt16::divide(5, 0); }, &description), 11);
        QCOMPARE(description, QStringLiteral("Division durch Null"));
    }

    void fromInt()
    {
        QCOMPARE(kvInt16::fromInt(32767), qint16(32767));
        QCOMPARE(kvInt16::fromInt(-32768), qint16(-32768));
        QCOMPARE(kvInt16::fromInt(0), qint16(0));
        QCOMPARE(errorNumber([] { kvInt16::fromInt(32768); }), 6);
        QCOMPARE(errorNumber([] { kvInt16::fromInt(-32769); }), 6);
        QCOMPARE(errorNumber([] { kvInt16::fromInt(1LL << 40); }), 6);
    }

    void fromDoubleRoundsHalvesToEven_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("expected");

        QTest::newRow("2.5") << 2.5 << 2;
        QTest::newRow("3.5") << 3.5 << 4;
        QTest::newRow("-2.5") << -2.5 << -2;
        QTest::newRow("-3.5") << -3.5 << -4;
        QTest::newRow("2.4999") << 2.4999 << 2;
        QTest::newRow("2.5001") << 2.5001 << 3;
        QTest::newRow("-0.4") << -0.4 << 0;
        QTest::newRow("cell width 1135/6") << 1135.0 / 6 << 189;
        QTest::newRow("32767.4") << 32767.4 << 32767;
        QTest::newRow("-32768.5") << -32768.5 << -32768;
    }

    void fromDoubleRoundsHalvesToEven()
    {
        QFETCH(double, value);
        QFETCH(int, expected);
        QCOMPARE(int(kvInt16::fromDouble(value)), expected);
    }

    void fromDoubleOverflow()
    {
        QCOMPARE(errorNumber([] { kvInt16::fromDouble(32767.5); }), 6);
        QCOMPARE(errorNumber([] { kvInt16::fromDouble(-32769.0); }), 6);
        QCOMPARE(errorNumber([] { kvInt16::fromDouble(std::numeric_limits<double>::quiet_NaN()); }), 6);
        QCOMPARE(errorNumber([] { kvInt16::fromDouble(std::numeric_limits<double>::infinity()); }), 6);
    }
};

QTEST_GUILESS_MAIN(tst_kvInt16)
#include "tst_kvInt16.moc"
