#include "ctlKW.h"
#include "kvTestSupport.h"

#include <QLabel>
#include <QtTest>

namespace {

constexpr int ColumnWidth = 15; // the grid's week-column width

// A column of count sections of height pixels, captioned 1, 2, ...
void fill(ctlKW &column, int count, int height)
{
    QPalette palette = column.palette();
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::WindowText, QColor(0x20, 0x40, 0x80));
    column.setPalette(palette);
    column.resize(ColumnWidth, 300);
    for (int i = 1; i <= count; ++i)
        column.Add(QString::number(i));
    column.setSectionheight(height);
}

// The rows of the image that are a line in the fore colour across the whole column.
QList<int> lineRows(const QImage &image)
{
    QList<int> rows;
    for (int y = 0; y < image.height(); ++y) {
        bool line = true;
        for (int x = 0; x < image.width() && line; ++x)
            line = image.pixelColor(x, y) == QColor(0x20, 0x40, 0x80);
        if (line)
            rows << y;
    }
    return rows;
}

} // namespace

class tst_ctlKW : public QObject
{
    Q_OBJECT

private slots:
    // Each section ends in a line; its caption is centred in it, an odd half pixel above. Clear
    // takes the sections away and leaves a blank surface.
    void sections_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("height");
        QTest::addColumn<QList<int>>("lines");
        QTest::addColumn<QList<int>>("captionTops");
        QTest::newRow("80") << 3 << 80 << QList<int>{80, 161, 242} << QList<int>{40, 121, 202};
        QTest::newRow("81") << 2 << 81 << QList<int>{81, 163} << QList<int>{40, 122};
    }
    void sections()
    {
        QFETCH(int, count);
        QFETCH(int, height);
        QFETCH(QList<int>, lines);
        QFETCH(QList<int>, captionTops);
        ctlKW column;
        fill(column, count, height);
        column.Paint();
        QCOMPARE(column.Lines(), lines);
        QCOMPARE(lineRows(column.grab().toImage()), lines);
        for (int i = 1; i <= count; ++i) {
            const QLabel *caption = column.getKW(i);
            QCOMPARE(caption->y(), captionTops.at(i - 1));
            QCOMPARE(caption->geometry().left(), 0);
            QCOMPARE(caption->width(), ColumnWidth);
            QVERIFY(caption->isVisibleTo(&column));
            QVERIFY(caption->fontMetrics().horizontalAdvance(QStringLiteral("53")) <= caption->width());
        }
        column.Clear();
        column.Paint();
        QVERIFY(column.Lines().isEmpty());
        QCOMPARE(column.CountKW(), 0);
        QCOMPARE(column.Sectionheight(), 0);
        QCOMPARE(lineRows(column.grab().toImage()), QList<int>());
        QCOMPARE(errorNumber([&] { column.getKW(1); }), int(kvRuntimeError::ControlArrayElementMissing));
    }

    // Positions are 16-bit values: a line past 32767 is error 6 ("Überlauf"), after the lines
    // that fitted are drawn.
    void sixteenBitLimit_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("error");
        QTest::addColumn<QList<int>>("lines");
        QTest::newRow("second line overflows") << 2 << 20000 << 6 << QList<int>{20000};
        QTest::newRow("last section ends at the limit") << 1 << 32766 << 0 << QList<int>{32766};
        QTest::newRow("one past the limit") << 1 << 32767 << 6 << QList<int>{32767};
        QTest::newRow("height beyond 16 bits") << 1 << 40000 << 6 << QList<int>{};
    }
    void sixteenBitLimit()
    {
        QFETCH(int, count);
        QFETCH(int, height);
        QFETCH(int, error);
        QFETCH(QList<int>, lines);
        ctlKW column;
        fill(column, count, height);
        QString description;
        QCOMPARE(errorNumber([&] { column.Paint(); }, &description), error);
        if (error)
            QCOMPARE(description, QStringLiteral("Überlauf"));
        QCOMPARE(column.Lines(), lines);
    }
};

QTEST_MAIN(tst_ctlKW)
#include "tst_ctlKW.moc"
