#include "kvOleColor.h"

#include <QtTest>

class tst_kvOleColor : public QObject
{
    Q_OBJECT

private slots:
    void explicitColoursAreBgr()
    {
        QCOMPARE(kvOleColor::ToQColor(0x0000FF), QColor(255, 0, 0)); // pure red, the holiday colour
        QCOMPARE(kvOleColor::ToQColor(0xC0C0FF), QColor(255, 192, 192)); // TodayHeaderColor: light red
        QCOMPARE(kvOleColor::ToQColor(0x808080), QColor(128, 128, 128));
        QCOMPARE(kvOleColor::ToQColor(0xFFFFFF), QColor(255, 255, 255));
        QCOMPARE(kvOleColor::FromRgb(255, 192, 192), 0xC0C0FFu);
        QCOMPARE(kvOleColor::FromQColor(QColor(0x12, 0x34, 0x56)), 0x563412u);
    }

    void systemColoursComeFromThePalette()
    {
        QPalette palette;
        palette.setColor(QPalette::Button, QColor(1, 2, 3));
        palette.setColor(QPalette::Midlight, QColor(4, 5, 6));
        palette.setColor(QPalette::ToolTipBase, QColor(7, 8, 9));
        palette.setColor(QPalette::Base, QColor(10, 11, 12));
        QVERIFY(kvOleColor::IsSystemColor(0x80000004));
        QVERIFY(!kvOleColor::IsSystemColor(0x00FFFFFF));
        QCOMPARE(kvOleColor::ToQColor(0x80000004, palette), QColor(1, 2, 3));   // menu
        QCOMPARE(kvOleColor::ToQColor(0x8000000B, palette), QColor(4, 5, 6));   // inactive border
        QCOMPARE(kvOleColor::ToQColor(0x8000000A, palette), QColor(4, 5, 6));   // active border
        QCOMPARE(kvOleColor::ToQColor(0x80000018, palette), QColor(7, 8, 9));   // info background
        QCOMPARE(kvOleColor::ToQColor(0x80000005, palette), QColor(10, 11, 12)); // window
        QCOMPARE(kvOleColor::FromSystemColor(kvOleColor::InfoBackground), 0x80000018u);
    }

    void unknownSystemColourIsTheWindowColour()
    {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(20, 30, 40));
        QCOMPARE(kvOleColor::ToQColor(0x800000FF, palette), QColor(20, 30, 40));
    }
};

QTEST_GUILESS_MAIN(tst_kvOleColor)
#include "tst_kvOleColor.moc"
