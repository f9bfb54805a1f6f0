// The appointment tooltip: its size from text, remark and day width, colours and limits.
#include "ctlToolTip.h"
#include "kvOleColor.h"
#include "kvTestSupport.h"

#include <QLabel>
#include <QtTest>

#include <cmath>

namespace {

constexpr int FirstLineHeight = 16;

int captionWidth(const ctlToolTip &toolTip, const QString &caption)
{
    return int(std::ceil(QFontMetricsF(toolTip.font()).boundingRect(QRectF(), Qt::AlignLeft, caption).width()));
}

void fill(ctlToolTip &toolTip, const QString &time, const QString &text, const QString &remark)
{
    toolTip.setTime(time);
    toolTip.setText(text);
    toolTip.setRemark(remark);
}

const QString LongRemark = QStringLiteral(
    "Bitte alle Unterlagen zur Steuererklärung mitbringen:\r\n- Lohnsteuerbescheinigung\r\n"
    "- Belege für Handwerkerleistungen und Spenden\r\nDer Termin findet bei Frau Dr. Schneider-"
    "Müllerhausen im dritten Stock statt (Raum 312); bitte vorher am Empfang anmelden und etwa "
    "zehn Minuten früher kommen, da der Parkplatz im Hof wegen Bauarbeiten gesperrt ist.");
const QString LongText = QStringLiteral("Jahreshauptversammlung des Kleingartenvereins „Grüne Aue“ "
                                        "mit Neuwahl des gesamten Vorstands");

} // namespace

class tst_ctlToolTip : public QObject
{
    Q_OBJECT

private slots:
    // The width inside the border: the wider of text + 37 and the remark's widest line + 2,
    // at most 381; a short one takes the day's width (MinWidth, or NormalWidth if smaller).
    void width_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("remark");
        QTest::addColumn<int>("minWidth");
        QTest::addColumn<int>("normalWidth");
        QTest::addColumn<int>("expected"); // -1: the text's width + 37; -2: the remark's + 2
        QTest::addColumn<int>("remarkLines"); // -1: wrapped into more than five
        QTest::newRow("text") << "Besprechung mit Herrn Maier" << "" << 0 << 0 << -1 << 0;
        QTest::newRow("remark wider") << "Kino" << "Karten liegen an der Kasse bereit" << 0 << 0 << -2 << 1;
        QTest::newRow("widest remark line") << "Werkstatt" << "Reifenwechsel\r\nÖlstand prüfen lassen\r\nRechnung"
                                            << 0 << 0 << -2 << 3;
        QTest::newRow("long remark wraps") << "Steuerberater" << LongRemark << 0 << 0 << 381 << -1;
        QTest::newRow("long text clamped") << LongText << "" << 0 << 0 << 381 << 0;
        QTest::newRow("clamped before the day width") << LongText << "" << 500 << 500 << 381 << 0;
        QTest::newRow("day: MinWidth") << "Essen" << "Kantine" << 150 << 150 << 150 << 1;
        QTest::newRow("day: smaller NormalWidth") << "Essen" << "Kantine" << 150 << 148 << 148 << 1;
        QTest::newRow("day: larger NormalWidth") << "Essen" << "Kantine" << 150 << 200 << 150 << 1;
        QTest::newRow("narrow day") << "Essen" << "Kantine" << 20 << 18 << -1 << 1;
    }
    void width()
    {
        QFETCH(QString, text);
        QFETCH(QString, remark);
        QFETCH(int, minWidth);
        QFETCH(int, normalWidth);
        QFETCH(int, expected);
        QFETCH(int, remarkLines);
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("10:00"), text, remark);
        toolTip.setMinWidth(qint16(minWidth));
        toolTip.setNormalWidth(qint16(normalWidth));
        toolTip.Resize();
        if (expected == -1)
            expected = captionWidth(toolTip, text) + 37;
        if (expected == -2)
            expected = captionWidth(toolTip, remark.split(QStringLiteral("\r\n")).at(remarkLines == 3 ? 1 : 0)) + 2;
        QCOMPARE(toolTip.width(), expected + 2);
        QCOMPARE(toolTip.Text(), text); // the caption stays whole; only the drawing is elided
        const QLabel *remarkLabel = toolTip.findChild<QLabel *>(QStringLiteral("lblRemark"));
        const QFontMetrics metrics = toolTip.fontMetrics();
        if (remarkLines >= 0)
            QCOMPARE(remarkLabel->height(), remarkLines * metrics.lineSpacing() - (remarkLines ? metrics.leading() : 0));
        else
            QVERIFY(remarkLabel->height() > 5 * metrics.height());
        if (remarkLines != 0)
            QCOMPARE(remarkLabel->heightForWidth(remarkLabel->width()), remarkLabel->height()); // nothing cut
        QCOMPARE(toolTip.height(), FirstLineHeight + remarkLabel->height() + 2);
    }

    void sixteenBitOverflowIsAnError()
    {
        ctlToolTip toolTip;
        fill(toolTip, QString(), QString(4000, QLatin1Char('W')), QString());
        QString description;
        QCOMPARE(errorNumber([&] { toolTip.Resize(); }, &description), int(kvRuntimeError::Overflow));
        QCOMPARE(description, QStringLiteral("Überlauf"));
        fill(toolTip, QString(), QStringLiteral("kurz"), QString(4000, QLatin1Char('W')));
        QCOMPARE(errorNumber([&] { toolTip.Resize(); }), int(kvRuntimeError::Overflow));
        // Inside a resize event the overflow is not thrown out of it.
        toolTip.resize(200, 200);
        QCOMPARE(toolTip.size(), QSize(200, 200));
    }

    // Shown in a control: the colours fill their areas, and a resize from outside is undone.
    void shownInAControl()
    {
        QWidget control;
        control.resize(600, 400);
        ctlToolTip toolTip(&control);
        fill(toolTip, QStringLiteral("10:00"), QStringLiteral("Friseur"), QStringLiteral("Waschen"));
        toolTip.Resize();
        QCOMPARE(toolTip.grab().toImage().pixelColor(2, 2), toolTip.palette().color(QPalette::ToolTipBase));
        toolTip.setMinWidth(200);
        toolTip.setNormalWidth(200);
        toolTip.setToolTipBackColor1(kvOleColor::FromRgb(0xF0, 0xE0, 0xA0));
        toolTip.setToolTipBackColor2(kvOleColor::FromRgb(0xA0, 0xC0, 0xF0));
        toolTip.Resize();
        const QSize computed = toolTip.size();
        control.show();
        toolTip.show();
        toolTip.resize(500, 300);
        QCOMPARE(toolTip.size(), computed);
        const QImage image = toolTip.grab().toImage();
        const QColor first(0xF0, 0xE0, 0xA0);
        const QColor remark(0xA0, 0xC0, 0xF0);
        QCOMPARE(image.pixelColor(1, 1), first);                 // time column
        QCOMPARE(image.pixelColor(190, 2), first);               // the first line's free end
        QCOMPARE(image.pixelColor(200, FirstLineHeight), first); // right of the labels
        QCOMPARE(image.pixelColor(1, FirstLineHeight + 1), remark);
        QCOMPARE(image.pixelColor(200, image.height() - 2), remark);
        const QColor border = toolTip.palette().color(QPalette::WindowText);
        QCOMPARE(image.pixelColor(0, 0), border);
        QCOMPARE(image.pixelColor(image.width() - 1, 5), border); // lblText does not cover it
        QCOMPARE(image.pixelColor(5, image.height() - 1), border);
    }
};

QTEST_MAIN(tst_ctlToolTip)
#include "tst_ctlToolTip.moc"
