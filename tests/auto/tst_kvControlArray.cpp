#include "kvControlArray.h"
#include "kvTestSupport.h"

#include <QAction>
#include <QLabel>
#include <QWidget>
#include <QtTest>

#include <functional>

class tst_kvControlArray : public QObject
{
    Q_OBJECT

private slots:
    void constructionLoadsTheTemplate()
    {
        QList<int> requested;
        kvControlArray<QObject> array(QStringLiteral("ctlDay"), [&requested](int index) {
            requested.append(index);
            return new QObject;
        });
        QCOMPARE(requested, QList<int>{0});
        QCOMPARE(array.Count(), 1);
        QCOMPARE(array.LBound(), 0);
        QCOMPARE(array.UBound(), 0);
        QCOMPARE(array.indexes(), QList<int>{0});
        QVERIFY(array.isLoaded(0));
        QCOMPARE(array(0)->objectName(), QStringLiteral("ctlDay0"));
        QCOMPARE(array(0)->property("Index"), QVariant(0));
        QCOMPARE(array.name(), QStringLiteral("ctlDay"));
    }

    void loadNamesAndIndexesElements()
    {
        QWidget parent;
        QList<int> requested;
        kvControlArray<QLabel> cells(QStringLiteral("ctlDay"), [&](int index) {
            requested.append(index);
            auto *label = new QLabel(&parent);
            label->setVisible(index != 0);
            return label;
        });
        for (int i = 1; i <= 42; ++i) {
            QLabel *cell = cells.Load(i);
            QCOMPARE(cell, cells(i));
        }
        QCOMPARE(requested.size(), 43);
        QCOMPARE(requested.constLast(), 42);
        QCOMPARE(cells.Count(), 43);
        QCOMPARE(cells.UBound(), 42);
        QCOMPARE(cells(12)->objectName(), QStringLiteral("ctlDay12"));
        QCOMPARE(cells(12)->property("Index").toInt(), 12);
        QCOMPARE(parent.findChild<QLabel *>(QStringLiteral("ctlDay42")), cells(42));
        QCOMPARE(parent.findChildren<QLabel *>().size(), 43);
        QVERIFY(cells(0)->isHidden());
    }

    void menuItemsAreNamedLikeTheSpec()
    {
        QWidget menuOwner;
        kvControlArray<QAction> items(QStringLiteral("KontextDay"),
                                      [&menuOwner](int) { return new QAction(&menuOwner); });
        for (int i = 1; i <= 6; ++i)
            items.Load(i);
        QCOMPARE(items(6)->objectName(), QStringLiteral("KontextDay6"));
        QCOMPARE(menuOwner.findChild<QAction *>(QStringLiteral("KontextDay6")), items(6));
    }

    void sparseIndexes()
    {
        kvControlArray<QObject> array(QStringLiteral("lblWeekDay"), [](int) { return new QObject; });
        array.Load(5);
        array.Load(2);
        QCOMPARE(array.Count(), 3);
        QCOMPARE(array.LBound(), 0);
        QCOMPARE(array.UBound(), 5);
        QCOMPARE(array.indexes(), (QList<int>{0, 2, 5}));
        QVERIFY(!array.isLoaded(3));
    }

    void unloadDestroysTheElement()
    {
        QWidget parent;
        kvControlArray<QWidget> cells(QStringLiteral("ctlDay"), [&parent](int) { return new QWidget(&parent); });
        cells.Load(1);
        cells.Load(2);
        cells.Load(3);
        QPointer<QWidget> second = cells(2);
        cells.Unload(2);
        QVERIFY(second.isNull());
        QCOMPARE(cells.Count(), 3);
        QCOMPARE(cells.indexes(), (QList<int>{0, 1, 3}));
        QVERIFY(!parent.findChild<QWidget *>(QStringLiteral("ctlDay2")));

        QWidget *again = cells.Load(2);
        QCOMPARE(parent.findChildren<QWidget *>(QStringLiteral("ctlDay2")), QList<QWidget *>{again});
    }

    void unloadingAllButTheTemplate()
    {
        kvControlArray<QObject> cells(QStringLiteral("ctlDay"), [](int) { return new QObject; });
        for (int i = 1; i <= 42; ++i)
            cells.Load(i);
        for (int index : cells.indexes()) {
            if (index != 0)
                cells.Unload(index);
        }
        QCOMPARE(cells.Count(), 1);
        QCOMPARE(cells.UBound(), 0);
        for (int i = 1; i <= 7; ++i)
            cells.Load(i);
        QCOMPARE(cells.Count(), 8);
    }

    void errors_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");

        QTest::newRow("load a loaded element") << QStringLiteral("load") << 1 << 360
                                               << QStringLiteral("Objekt bereits geladen");
        QTest::newRow("load the template again") << QStringLiteral("load") << 0 << 360
                                                 << QStringLiteral("Objekt bereits geladen");
        QTest::newRow("load a negative index") << QStringLiteral("load") << -1 << 340
                                               << QStringLiteral("Steuerelementarray-Element '-1' ist nicht vorhanden");
        QTest::newRow("access a missing element") << QStringLiteral("access") << 7 << 340
                                                  << QStringLiteral("Steuerelementarray-Element '7' ist nicht vorhanden");
        QTest::newRow("unload a missing element") << QStringLiteral("unload") << 9 << 340
                                                  << QStringLiteral("Steuerelementarray-Element '9' ist nicht vorhanden");
        QTest::newRow("unload the template") << QStringLiteral("unload") << 0 << 362
                                             << QStringLiteral("In der Entwurfszeit erstellte Steuerelemente können nicht entladen werden");
    }

    void errors()
    {
        QFETCH(QString, action);
        QFETCH(int, index);
        QFETCH(int, number);
        QFETCH(QString, description);

        kvControlArray<QObject> array(QStringLiteral("ctlDay"), [](int) { return new QObject; });
        array.Load(1);
        QString thrown;
        const int thrownNumber = errorNumber([&] {
            if (action == QLatin1String("load"))
                array.Load(index);
            else if (action == QLatin1String("unload"))
                array.Unload(index);
            else
                array(index);
        }, &thrown);
        QCOMPARE(thrownNumber, number);
        QCOMPARE(thrown, description);
        QCOMPARE(array.Count(), 2);
    }

    void elementDeletedElsewhereIsNotLoaded()
    {
        kvControlArray<QObject> array(QStringLiteral("ctlDay"), [](int) { return new QObject; });
        array.Load(1);
        array.Load(2);
        delete array(2);
        QVERIFY(!array.isLoaded(2));
        QCOMPARE(array.Count(), 2);
        QCOMPARE(array.UBound(), 1);
        QCOMPARE(errorNumber([&] { array(2); }), 340);
        array.Load(2);
        QCOMPARE(array.Count(), 3);
    }

    void destructorDeletesTheElements()
    {
        QPointer<QObject> element0;
        QPointer<QObject> element1;
        {
            kvControlArray<QObject> array(QStringLiteral("ctlDay"), [](int) { return new QObject; });
            array.Load(1);
            element0 = array(0);
            element1 = array(1);
        }
        QVERIFY(element0.isNull());
        QVERIFY(element1.isNull());
    }

    void parentDestroyedFirst()
    {
        auto *parent = new QObject;
        kvControlArray<QObject> array(QStringLiteral("ctlDay"), [parent](int) { return new QObject(parent); });
        array.Load(1);
        delete parent;
        QCOMPARE(array.Count(), 0);
        QCOMPARE(array.UBound(), -1);
    }
};

QTEST_MAIN(tst_kvControlArray)
#include "tst_kvControlArray.moc"
