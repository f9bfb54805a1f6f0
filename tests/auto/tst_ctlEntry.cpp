#include "ctlEntry.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

const kvDate Begin = kvDate::fromDate(QDate(2025, 3, 14), QTime(10, 30));
const kvDate End = kvDate::fromDate(QDate(2025, 3, 14), QTime(11, 15));
const QString LongText = QStringLiteral("Besprechung mit der Geschäftsleitung über das Budget 2026");

QFont rowFont(int pixelSize = 11)
{
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    return font;
}

// A row as its cell makes it: the cell's font, Init, then its place in the cell.
void initRow(ctlEntry &row, const QString &text, int rowWidth, const QString &time = QStringLiteral("10:30"))
{
    row.setFont(rowFont());
    row.Init(4711, 1, time, Begin, End, text, QStringLiteral("Raum 3"), QStringLiteral("C:\\a.doc"),
             23, 0xFFFFFF, 0x000000);
    row.Move(0, 15, rowWidth, row.Height());
}

// The shortening rule written out: drop k = 1, 2, ... characters, add "...", take the first fit.
QString shortened(const QString &text, int labelWidth, const QFont &font = rowFont())
{
    const QFontMetrics metrics(font);
    if (metrics.horizontalAdvance(text) <= labelWidth)
        return text;
    for (qsizetype k = 1; text.size() - k >= 0; ++k) {
        const QString candidate = text.left(text.size() - k) + QStringLiteral("...");
        if (metrics.horizontalAdvance(candidate) <= labelWidth)
            return candidate;
    }
    return QString(); // the end case: even "..." does not fit
}

} // namespace

class tst_ctlEntry : public QObject
{
    Q_OBJECT

private slots:
    // Init: the row is one pixel higher than its text; midnight shows no time. A row narrower
    // than its time label leaves the text label alone; a continued row shows "<--".
    void initSizesTheRow()
    {
        ctlEntry row;
        initRow(row, QStringLiteral("Urlaub"), 180, QStringLiteral("00:00"));
        QCOMPARE(row.lblTime().Geometry, QRect(0, 0, 35, 14));
        QCOMPARE(row.lblText().Geometry, QRect(35, 0, 145, 14));
        QCOMPARE(row.Height(), 15);
        QCOMPARE(row.linSeperator().Y1, 16);
        QCOMPARE(row.lblTime().Caption, QString());
        QCOMPARE(row.Time(), QString());
        row.setWidth(35);
        QCOMPARE(row.lblText().Geometry, QRect(35, 0, 145, 14));
        QCOMPARE(row.linSeperator().X2, 35);
        row.setIsContinuedDate(false); // the marker shows whatever is written
        QCOMPARE(row.Time(), QStringLiteral("<--"));
        QVERIFY(!row.IsContinuedDate());
    }

    // At every width, down to where even "..." does not fit and the caption is empty.
    void shorteningMatchesTheRuleAtEveryWidth()
    {
        ctlEntry row;
        initRow(row, LongText, 180);
        for (int width = 36; width <= 35 + QFontMetrics(rowFont()).horizontalAdvance(LongText) + 2; ++width) {
            row.setWidth(width);
            const int labelWidth = width - 35;
            QCOMPARE(row.lblText().Geometry.width(), labelWidth);
            QCOMPARE(row.lblText().Caption, shortened(LongText, labelWidth));
            QVERIFY(QFontMetrics(rowFont()).horizontalAdvance(row.lblText().Caption) <= labelWidth);
            QCOMPARE(row.Text(), LongText);
            QCOMPARE(row.OverflowText(), row.lblText().Caption == LongText ? QString() : LongText);
        }
    }

    // Rows of one text share its measuring, yet each fits it to its own width and font.
    void rowsOfOneTextFitTheirOwnWidthAndFont()
    {
        ctlEntry wide;
        ctlEntry narrow;
        initRow(wide, LongText, 300);
        initRow(narrow, LongText, 120);
        QCOMPARE(wide.lblText().Caption, shortened(LongText, 265));
        QCOMPARE(narrow.lblText().Caption, shortened(LongText, 85));
        QVERIFY(wide.lblText().Caption != narrow.lblText().Caption);
        narrow.setFont(rowFont(16));
        QCOMPARE(narrow.lblText().Caption, shortened(LongText, 85, rowFont(16)));
        QVERIFY(narrow.lblText().Caption != shortened(LongText, 85));
        narrow.setWidth(300);
        QCOMPARE(narrow.lblText().Caption, shortened(LongText, 265, rowFont(16)));
        QCOMPARE(wide.lblText().Caption, shortened(LongText, 265));
    }

    // A day header's number: bold on the selected day, bold and red (255) with the holiday name
    // as its hover text on a holiday, back to its own colour when the name goes.
    void headerMarks_data()
    {
        QTest::addColumn<bool>("actualDay");
        QTest::addColumn<QStringList>("holidayNames"); // set one after the other
        QTest::addColumn<bool>("bold");
        QTest::addColumn<uint>("foreColor");
        QTest::newRow("plain") << false << QStringList{} << false << 0x404040u;
        QTest::newRow("actual day") << true << QStringList{} << true << 0x404040u;
        QTest::newRow("holiday") << false << QStringList{"1. Weihnachtstag"} << true << 255u;
        QTest::newRow("holiday on the actual day") << true << QStringList{"1. Weihnachtstag"} << true << 255u;
        QTest::newRow("holiday name removed") << false << QStringList{"1. Weihnachtstag", ""} << false << 0x404040u;
    }
    void headerMarks()
    {
        QFETCH(bool, actualDay);
        QFETCH(QStringList, holidayNames);
        QFETCH(bool, bold);
        QFETCH(uint, foreColor);
        ctlEntry header;
        header.Init(0, 0, QStringLiteral("25"), Begin, Begin, QString(), QString(), QString(), 0,
                    0x8000000A, 0x000000);
        header.setForeColor(0x404040);
        header.setIsActualDay(actualDay);
        for (const QString &name : holidayNames)
            header.setPublicHolidayName(name);
        header.setIsActualDay(actualDay); // the marking after a reload keeps the holiday look
        QCOMPARE(header.lblTime().Bold, bold);
        QCOMPARE(header.lblTime().ForeColor, foreColor);
        QCOMPARE(header.lblTime().ToolTipText, holidayNames.isEmpty() ? QString() : holidayNames.constLast());
    }

    void coloursGoToBothLabelsButNotTheRowBackground()
    {
        ctlEntry row;
        initRow(row, QStringLiteral("Zahnarzt"), 180);
        row.setBackColor(0xC0C0FF);
        row.setForeColor(0x0000FF);
        QCOMPARE(row.lblTime().BackColor, 0xC0C0FFu);
        QCOMPARE(row.lblText().BackColor, 0xC0C0FFu);
        QCOMPARE(row.lblTime().ForeColor, 0x0000FFu);
        QCOMPARE(row.lblText().ForeColor, 0x0000FFu);
        QCOMPARE(row.RowBackColor(), 0xFFFFFFu); // set by Init only
        row.Init(1, 1, QStringLiteral("08:00"), Begin, End, QStringLiteral("x"), QString(), QString(),
                 0, 0x00FFFF, 0x800000);
        QCOMPARE(row.RowBackColor(), 0x00FFFFu);
        QCOMPARE(row.lblTime().ForeColor, 0x800000u);
    }

    void hitTestFindsTheLabels()
    {
        ctlEntry row;
        initRow(row, QStringLiteral("Zahnarzt"), 180);
        QCOMPARE(row.HitTest(QPointF(10, 5)), ctlEntry::Part::TimeLabel);
        QCOMPARE(row.HitTest(QPointF(34.9, 5)), ctlEntry::Part::TimeLabel);
        QCOMPARE(row.HitTest(QPointF(35, 5)), ctlEntry::Part::TextLabel);
        QCOMPARE(row.HitTest(QPointF(100, 14)), ctlEntry::Part::Background);
        QCOMPARE(row.HitTest(QPointF(100, 15)), ctlEntry::Part::None);
        QCOMPARE(row.HitTest(QPointF(180, 5)), ctlEntry::Part::None);
    }

    void paintsLabelsAndSeparator()
    {
        ctlEntry row;
        initRow(row, QStringLiteral("Zahnarzt"), 100);
        row.Move(0, 0, 100, 16);
        row.setVisible(true);
        row.setShowLineSeperator(true);
        QImage image(100, 16, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        row.Paint(painter, QPalette());
        painter.end();
        QCOMPARE(image.pixelColor(99, 2).rgb(), QColor(Qt::white).rgb()); // lblText's background
        QCOMPARE(image.pixelColor(50, 15).rgb(), QPalette().color(QPalette::Midlight).rgb()); // the separator
    }
};

QTEST_MAIN(tst_ctlEntry)
#include "tst_ctlEntry.moc"
