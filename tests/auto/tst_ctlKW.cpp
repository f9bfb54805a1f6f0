// Part 3.4: the calendar-week column.
#include "ctlKW.h"
#include "kvCalendarWeek.h"
#include "kvTestSupport.h"

#include <QDir>
#include <QLabel>
#include <QtTest>

namespace {

constexpr int ColumnWidth = 15; // the grid's week-column width (Part 3.1)

int textHeight(const ctlKW &column)
{
    return column.fontMetrics().size(Qt::TextSingleLine, QStringLiteral("1")).height();
}

QList<int> captionTops(const ctlKW &column)
{
    QList<int> tops;
    for (int i = 1; i <= column.CountKW(); ++i)
        tops << column.getKW(i)->y();
    return tops;
}

bool showsCaption(const ctlKW &column, int index)
{
    return column.getKW(index)->isVisibleTo(&column);
}

//! The rows of \a image that hold a pixel of \a color anywhere.
QList<int> rowsWithColor(const QImage &image, const QColor &color)
{
    QList<int> rows;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color) {
                rows << y;
                break;
            }
        }
    }
    return rows;
}

} // namespace

class tst_ctlKW : public QObject
{
    Q_OBJECT

private slots:
    void startsEmptyWithAHiddenTemplate()
    {
        ctlKW column;
        QCOMPARE(column.objectName(), QStringLiteral("ctlKW"));
        QCOMPARE(column.CountKW(), 0);
        QCOMPARE(column.Sectionheight(), 0);
        QCOMPARE(column.getKW(0)->objectName(), QStringLiteral("lblKW0"));
        QVERIFY(!showsCaption(column, 0));
        QVERIFY(column.Lines().isEmpty());
    }

    void addLoadsTheNextElementHidden()
    {
        ctlKW column;
        column.show();
        column.Add(QStringLiteral("48"));
        column.Add(QStringLiteral("49"));
        QCOMPARE(column.CountKW(), 2);
        QCOMPARE(column.getKW(1)->objectName(), QStringLiteral("lblKW1"));
        QCOMPARE(column.getKW(2)->objectName(), QStringLiteral("lblKW2"));
        QCOMPARE(column.sCaption(1), QStringLiteral("48"));
        QCOMPARE(column.sCaption(2), QStringLiteral("49"));
        QCOMPARE(column.getKW(2)->text(), QStringLiteral("49"));
        QVERIFY(!showsCaption(column, 1));
        QVERIFY(!showsCaption(column, 2));
        QVERIFY(column.Lines().isEmpty());
    }

    void countAfterThreeAddsAndAfterClear()
    {
        ctlKW column;
        column.Add(QStringLiteral("1"));
        column.Add(QStringLiteral("2"));
        column.Add(QStringLiteral("3"));
        QCOMPARE(column.CountKW(), 3);
        column.setSectionheight(80);
        column.Clear();
        QCOMPARE(column.CountKW(), 0);
        QCOMPARE(column.Sectionheight(), 0);
        QCOMPARE(errorNumber([&] { column.getKW(1); }), int(kvRuntimeError::ControlArrayElementMissing));
        column.Add(QStringLiteral("4"));
        QCOMPARE(column.getKW(1)->objectName(), QStringLiteral("lblKW1"));
    }

    void sectionsOfHeight80()
    {
        ctlKW column;
        column.resize(ColumnWidth, 300);
        for (const QString &caption : {QStringLiteral("48"), QStringLiteral("49"), QStringLiteral("50")})
            column.Add(caption);
        column.setSectionheight(80);
        column.Paint();
        QCOMPARE(column.Lines(), (QList<int>{80, 161, 242}));
        QCOMPARE(captionTops(column), (QList<int>{40, 121, 202}));
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(column.getKW(i)->x(), 0);
            QCOMPARE(column.getKW(i)->width(), ColumnWidth);
            QCOMPARE(column.getKW(i)->height(), textHeight(column));
            QVERIFY(column.getKW(i)->alignment() & Qt::AlignHCenter);
            QVERIFY(showsCaption(column, i));
        }
    }

    void anOddSectionPutsTheHalfPixelAbove()
    {
        ctlKW column;
        column.resize(ColumnWidth, 300);
        column.Add(QStringLiteral("1"));
        column.Add(QStringLiteral("2"));
        column.setSectionheight(81);
        column.Paint();
        QCOMPARE(column.Lines(), (QList<int>{81, 163}));
        QCOMPARE(captionTops(column), (QList<int>{40, 122})); // 40.5 and 122.5
    }

    void linesAreDrawnInTheForeColour()
    {
        ctlKW column;
        QPalette palette = column.palette();
        palette.setColor(QPalette::Window, Qt::white);
        palette.setColor(QPalette::WindowText, QColor(0x20, 0x40, 0x80));
        column.setPalette(palette);
        column.resize(ColumnWidth, 100);
        column.Add(QString());
        column.Add(QString());
        column.setSectionheight(30);
        column.Paint();
        const QImage image = column.grab().toImage();
        QCOMPARE(rowsWithColor(image, QColor(0x20, 0x40, 0x80)), (QList<int>{30, 61}));
        for (int x = 0; x < ColumnWidth; ++x)
            QCOMPARE(image.pixelColor(x, 30), QColor(0x20, 0x40, 0x80));
    }

    void paintWithoutAddOnlyClearsTheSurface()
    {
        ctlKW column;
        QPalette palette = column.palette();
        palette.setColor(QPalette::Window, Qt::white);
        column.setPalette(palette);
        column.resize(ColumnWidth, 200);
        column.Add(QStringLiteral("52"));
        column.Add(QStringLiteral("53"));
        column.setSectionheight(50);
        column.Paint();
        QCOMPARE(column.Lines().size(), 2);
        column.Clear();
        column.Paint();
        QVERIFY(column.Lines().isEmpty());
        QCOMPARE(column.CountKW(), 0);
        QVERIFY(!showsCaption(column, 0));
        const QImage image = column.grab().toImage();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                QCOMPARE(image.pixelColor(x, y), QColor(Qt::white));
    }

    void paintAgainReplacesTheLines()
    {
        ctlKW column;
        column.Add(QStringLiteral("1"));
        column.setSectionheight(80);
        column.Paint();
        column.setSectionheight(20);
        column.Paint();
        QCOMPARE(column.Lines(), QList<int>{20});
        QCOMPARE(captionTops(column), QList<int>{10});
    }

    void sixteenBitOverflowIsAnError()
    {
        ctlKW column;
        column.Add(QStringLiteral("1"));
        column.Add(QStringLiteral("2"));
        column.setSectionheight(20000);
        QString description;
        // y = 20001 after the first section; y + SH for the second line does not fit.
        QCOMPARE(errorNumber([&] { column.Paint(); }, &description), int(kvRuntimeError::Overflow));
        QCOMPARE(description, QStringLiteral("Überlauf"));
        QCOMPARE(column.Lines(), QList<int>{20000});
        QVERIFY(showsCaption(column, 1));
        QVERIFY(!showsCaption(column, 2));
    }

    void theLastSectionMayEndAtTheLimit()
    {
        ctlKW column;
        column.Add(QStringLiteral("1"));
        column.setSectionheight(32766); // line at 32766, y := 32767: still a 16-bit value
        column.Paint();
        QCOMPARE(column.Lines(), QList<int>{32766});
        column.setSectionheight(32767); // y := 32767 + 1 overflows
        QCOMPARE(errorNumber([&] { column.Paint(); }), int(kvRuntimeError::Overflow));
    }

    void aSectionHeightBeyond16BitIsAnError()
    {
        ctlKW column;
        column.Add(QStringLiteral("1"));
        column.setSectionheight(10);
        column.Paint();
        column.setSectionheight(40000);
        QCOMPARE(column.Sectionheight(), 40000);
        QCOMPARE(errorNumber([&] { column.Paint(); }), int(kvRuntimeError::Overflow));
        QVERIFY(column.Lines().isEmpty()); // the surface was cleared first
    }

    void gallery()
    {
        QWidget host;
        host.resize(ColumnWidth + 2, 6 * 81 + 1);
        ctlKW column(&host);
        column.setGeometry(1, 1, ColumnWidth, 6 * 81);
        // The month grid of December 2026: Monday 30 November to Sunday 10 January 2027.
        const QDate firstMonday(2026, 11, 30);
        for (int row = 0; row < 6; ++row)
            column.Add(QString::number(GetCalendarWeek(firstMonday.addDays(7 * row))));
        column.setSectionheight(80);
        column.Paint();
        QCOMPARE(column.sCaption(5), QStringLiteral("53"));
        QCOMPARE(column.sCaption(6), QStringLiteral("1"));
        for (int i = 1; i <= 6; ++i) {
            const QLabel *caption = column.getKW(i);
            QVERIFY(caption->fontMetrics().horizontalAdvance(caption->text()) <= caption->width());
        }
        const QImage image = host.grab().toImage();
        QVERIFY(image.save(galleryFolder() + QStringLiteral("/ctlKW-month.png")));
    }
};

QTEST_MAIN(tst_ctlKW)
#include "tst_ctlKW.moc"
