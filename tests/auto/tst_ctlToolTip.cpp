// Part 3.5: the appointment tooltip.
#include "ctlToolTip.h"
#include "kvOleColor.h"
#include "kvTestSupport.h"

#include <QDir>
#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

constexpr int FirstLineHeight = 16;

QLabel *label(const ctlToolTip &toolTip, const QString &name)
{
    return toolTip.findChild<QLabel *>(name);
}

QLabel *lblTime(const ctlToolTip &toolTip) { return label(toolTip, QStringLiteral("lblTime")); }
QLabel *lblText(const ctlToolTip &toolTip) { return label(toolTip, QStringLiteral("lblText")); }
QLabel *lblRemark(const ctlToolTip &toolTip) { return label(toolTip, QStringLiteral("lblRemark")); }

//! The width the spec measures: the caption's widest line in the control's font.
int captionWidth(const ctlToolTip &toolTip, const QString &caption)
{
    return int(std::ceil(QFontMetricsF(toolTip.font()).boundingRect(QRectF(), Qt::AlignLeft, caption).width()));
}

//! A label's geometry inside the border: the coordinates the spec gives.
QRect innerGeometry(const ctlToolTip &toolTip, const QLabel *child)
{
    return QRect(child->mapTo(&toolTip, QPoint(0, 0)) - toolTip.contentsRect().topLeft(), child->size());
}

void fill(ctlToolTip &toolTip, const QString &time, const QString &text, const QString &remark)
{
    toolTip.setTime(time);
    toolTip.setText(text);
    toolTip.setRemark(remark);
}

QString longRemark()
{
    return QStringLiteral("Bitte alle Unterlagen zur Steuererklärung mitbringen:\r\n"
                          "- Lohnsteuerbescheinigung\r\n"
                          "- Belege für Handwerkerleistungen und Spenden\r\n"
                          "Der Termin findet bei Frau Dr. Schneider-Müllerhausen im dritten Stock "
                          "statt (Raum 312); bitte vorher am Empfang anmelden und etwa zehn Minuten "
                          "früher kommen, da der Parkplatz im Hof wegen Bauarbeiten gesperrt ist.");
}

} // namespace

class tst_ctlToolTip : public QObject
{
    Q_OBJECT

private slots:
    void designCaptionsAndChildren()
    {
        QWidget control;
        ctlToolTip toolTip(&control);
        QCOMPARE(toolTip.objectName(), QStringLiteral("ctlToolTip"));
        QVERIFY(!toolTip.isWindow());
        QVERIFY(toolTip.isHidden());
        QVERIFY(lblTime(toolTip) && lblText(toolTip) && lblRemark(toolTip));
        QCOMPARE(toolTip.Time(), QStringLiteral("lblTooltiptime"));
        QCOMPARE(toolTip.Text(), QStringLiteral("lblTooltip"));
        QCOMPARE(toolTip.Remark(), QStringLiteral("lblTooltip"));
        QCOMPARE(toolTip.ToolTipBackColor1(), ctlToolTip::DefaultToolTipBackColor1);
        QCOMPARE(toolTip.ToolTipBackColor2(), ctlToolTip::DefaultToolTipBackColor2);
        QCOMPARE(toolTip.frameWidth(), 1);
    }

    void membersReadBackTheCaptions()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("09:30"), QStringLiteral("Zahnarzt"), QStringLiteral("Bonusheft\r\nmitnehmen"));
        QCOMPARE(toolTip.Time(), QStringLiteral("09:30"));
        QCOMPARE(toolTip.Text(), QStringLiteral("Zahnarzt"));
        QCOMPARE(toolTip.Remark(), QStringLiteral("Bonusheft\r\nmitnehmen"));
        QCOMPARE(lblTime(toolTip)->text(), QStringLiteral("09:30"));
        QCOMPARE(lblText(toolTip)->text(), QStringLiteral("Zahnarzt"));
        QCOMPARE(lblRemark(toolTip)->text(), QStringLiteral("Bonusheft\r\nmitnehmen"));
        toolTip.setDateID(123456);
        toolTip.setMinWidth(140);
        toolTip.setNormalWidth(138);
        QCOMPARE(toolTip.DateID(), 123456);
        QCOMPARE(toolTip.MinWidth(), qint16(140));
        QCOMPARE(toolTip.NormalWidth(), qint16(138));
        QCOMPARE(toolTip.property("Text").toString(), QStringLiteral("Zahnarzt"));
    }

    void labelsArePlacedAsSpecified()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("14:00"), QStringLiteral("Besprechung"), QStringLiteral("Raum 4"));
        toolTip.Resize();
        const int width = toolTip.width() - 2;
        QCOMPARE(innerGeometry(toolTip, lblTime(toolTip)), QRect(0, 0, 35, FirstLineHeight));
        QCOMPARE(innerGeometry(toolTip, lblText(toolTip)), QRect(35, 0, 346, FirstLineHeight));
        QCOMPARE(innerGeometry(toolTip, lblRemark(toolTip)),
                 QRect(0, FirstLineHeight, width, toolTip.fontMetrics().height()));
        QCOMPARE(toolTip.contentsRect().topLeft(), QPoint(1, 1));
    }

    void widthFollowsTheText()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("14:00"), QStringLiteral("Besprechung mit Herrn Maier"), QString());
        toolTip.Resize();
        const int w1 = captionWidth(toolTip, toolTip.Text()) + 35 + 2;
        QCOMPARE(toolTip.width(), w1 + 2);
    }

    void aRemarkWiderThanTheTextSetsTheWidth()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("14:00"), QStringLiteral("Kino"),
             QStringLiteral("Karten liegen an der Kasse bereit"));
        toolTip.Resize();
        const int wR = captionWidth(toolTip, toolTip.Remark());
        QVERIFY(wR > captionWidth(toolTip, toolTip.Text()) + 37);
        QCOMPARE(toolTip.width(), wR + 2 + 2);
        // The 2 pixels beside the measured width hold the indent: the remark stays one line.
        QCOMPARE(lblRemark(toolTip)->height(), toolTip.fontMetrics().height());
        QCOMPARE(toolTip.height(), FirstLineHeight + toolTip.fontMetrics().height() + 2);
    }

    void aMultiLineRemarkIsMeasuredByItsWidestLine()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("08:00"), QStringLiteral("Werkstatt"),
             QStringLiteral("Reifenwechsel\r\nÖlstand prüfen lassen\r\nRechnung"));
        toolTip.Resize();
        QCOMPARE(toolTip.width(), captionWidth(toolTip, QStringLiteral("Ölstand prüfen lassen")) + 2 + 2);
        QCOMPARE(lblRemark(toolTip)->height(), 3 * toolTip.fontMetrics().lineSpacing()
                                                   - toolTip.fontMetrics().leading());
    }

    void aVeryLongRemarkWrapsWithinTheLimit()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("10:00"), QStringLiteral("Steuerberater"), longRemark());
        toolTip.Resize();
        QCOMPARE(toolTip.width(), 381 + 2);
        const QLabel *remark = lblRemark(toolTip);
        QCOMPARE(remark->width(), 381);
        QVERIFY(remark->wordWrap());
        QVERIFY(remark->height() > 5 * toolTip.fontMetrics().height()); // four paragraphs, the last wrapped
        QCOMPARE(remark->heightForWidth(remark->width()), remark->height()); // QLabel agrees: nothing cut
        QCOMPARE(toolTip.height(), FirstLineHeight + remark->height() + 2);
    }

    void anEmptyRemarkGivesOneLine()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("10:00"), QStringLiteral("Friseur"), QString());
        toolTip.Resize();
        QCOMPARE(lblRemark(toolTip)->height(), 0);
        QCOMPARE(toolTip.height(), FirstLineHeight + 2);
    }

    void aLongTextIsClampedAt381()
    {
        ctlToolTip toolTip;
        fill(toolTip, QString(), QStringLiteral("Jahreshauptversammlung des Kleingartenvereins "
                                                "„Grüne Aue“ mit Neuwahl des gesamten Vorstands"),
             QString());
        toolTip.Resize();
        QVERIFY(captionWidth(toolTip, toolTip.Text()) + 37 >= 382);
        QCOMPARE(toolTip.width(), 381 + 2);
        QCOMPARE(toolTip.Text().size(), 92); // the caption stays whole; only the drawing is elided
    }

    void aShortTextOnAWideDayTakesTheDayWidth_data()
    {
        QTest::addColumn<int>("minWidth");
        QTest::addColumn<int>("normalWidth");
        QTest::addColumn<int>("expected");
        QTest::newRow("MinWidth") << 150 << 150 << 150;
        QTest::newRow("NormalWidth is smaller") << 150 << 148 << 148;
        QTest::newRow("NormalWidth is larger") << 150 << 200 << 150;
        QTest::newRow("narrow day") << 20 << 18 << -1; // the content's own width
    }
    void aShortTextOnAWideDayTakesTheDayWidth()
    {
        QFETCH(int, minWidth);
        QFETCH(int, normalWidth);
        QFETCH(int, expected);
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("12:00"), QStringLiteral("Essen"), QStringLiteral("Kantine"));
        toolTip.setMinWidth(qint16(minWidth));
        toolTip.setNormalWidth(qint16(normalWidth));
        toolTip.Resize();
        if (expected < 0)
            expected = captionWidth(toolTip, QStringLiteral("Essen")) + 37;
        QCOMPARE(toolTip.width(), expected + 2);
        QCOMPARE(lblRemark(toolTip)->width(), expected);
    }

    void theWidthTakesPriorityOverTheDayAt382()
    {
        ctlToolTip toolTip;
        fill(toolTip, QString(), QString(QStringLiteral("Langer Termintext ")).repeated(6), QString());
        toolTip.setMinWidth(500);
        toolTip.setNormalWidth(500);
        toolTip.Resize();
        QCOMPARE(toolTip.width(), 381 + 2); // w >= 382 clamps before MinWidth is looked at
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
    }

    void aSizeChangeRunsTheComputation()
    {
        QWidget control;
        control.resize(600, 400);
        ctlToolTip toolTip(&control);
        fill(toolTip, QStringLiteral("10:00"), QStringLiteral("Friseur"), QString());
        toolTip.Resize();
        const QSize computed = toolTip.size();
        control.show();
        toolTip.show();
        toolTip.resize(500, 300);
        QCOMPARE(toolTip.size(), computed);

        // An overflow inside the resize event is not thrown out of it.
        toolTip.setText(QString(4000, QLatin1Char('W')));
        toolTip.resize(200, 200);
        QCOMPARE(toolTip.size(), QSize(200, 200));
    }

    void coloursFillTheirAreasAndNotify()
    {
        QWidget control;
        ctlToolTip toolTip(&control);
        QSignalSpy notified(&toolTip, &ctlToolTip::PropertyChanged);
        fill(toolTip, QStringLiteral("10:00"), QStringLiteral("Friseur"), QStringLiteral("Waschen"));
        toolTip.setMinWidth(200);
        toolTip.setNormalWidth(200);
        toolTip.setToolTipBackColor1(kvOleColor::FromRgb(0xF0, 0xE0, 0xA0));
        toolTip.setToolTipBackColor2(kvOleColor::FromRgb(0xA0, 0xC0, 0xF0));
        QCOMPARE(notified.count(), 2);
        QCOMPARE(notified.at(0).at(0).toString(), QStringLiteral("ToolTipBackColor1"));
        QCOMPARE(notified.at(1).at(0).toString(), QStringLiteral("ToolTipBackColor2"));
        QCOMPARE(toolTip.ToolTipBackColor1(), kvOleColor::FromRgb(0xF0, 0xE0, 0xA0));
        toolTip.Resize();
        toolTip.show();
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

    void theDefaultFirstLineIsTheInfoBackground()
    {
        ctlToolTip toolTip;
        fill(toolTip, QStringLiteral("10:00"), QStringLiteral("Friseur"), QString());
        toolTip.Resize();
        const QImage image = toolTip.grab().toImage();
        QCOMPARE(image.pixelColor(2, 2), toolTip.palette().color(QPalette::ToolTipBase));
    }

    void aClickIsReported()
    {
        QWidget control;
        ctlToolTip toolTip(&control);
        fill(toolTip, QStringLiteral("10:00"), QStringLiteral("Friseur"), QStringLiteral("Waschen"));
        toolTip.Resize();
        control.show();
        toolTip.show();
        QSignalSpy clicked(&toolTip, &ctlToolTip::Click);
        QTest::mouseClick(lblRemark(toolTip), Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
    }

    void gallery_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("remark");
        QTest::addColumn<int>("minWidth");
        QTest::newRow("short") << QStringLiteral("short") << QStringLiteral("09:30")
                               << QStringLiteral("Zahnarzt") << QStringLiteral("Bonusheft mitnehmen") << 120;
        QTest::newRow("wide day") << QStringLiteral("wide-day") << QStringLiteral("12:00")
                                  << QStringLiteral("Mittagessen") << QStringLiteral("Kantine") << 180;
        QTest::newRow("long remark") << QStringLiteral("long-remark") << QStringLiteral("10:00")
                                     << QStringLiteral("Steuerberater") << longRemark() << 120;
        QTest::newRow("long text") << QStringLiteral("long-text") << QStringLiteral("18:30")
                                   << QStringLiteral("Jahreshauptversammlung des Kleingartenvereins "
                                                     "„Grüne Aue“ mit Neuwahl des gesamten Vorstands")
                                   << QStringLiteral("Vereinsheim, Am Weiher 3") << 120;
        QTest::newRow("continued, no remark") << QStringLiteral("continued") << QStringLiteral("<--")
                                              << QStringLiteral("Urlaub an der Ostsee") << QString() << 120;
    }
    void gallery()
    {
        QFETCH(QString, name);
        QFETCH(QString, time);
        QFETCH(QString, text);
        QFETCH(QString, remark);
        QFETCH(int, minWidth);
        QWidget control;
        QPalette palette = control.palette();
        palette.setColor(QPalette::Window, Qt::white);
        control.setPalette(palette);
        control.setAutoFillBackground(true);
        ctlToolTip toolTip(&control);
        fill(toolTip, time, text, remark);
        toolTip.setMinWidth(qint16(minWidth));
        toolTip.setNormalWidth(qint16(minWidth));
        toolTip.Resize();
        toolTip.move(8, 8);
        control.resize(toolTip.width() + 16, toolTip.height() + 16);
        control.show();
        toolTip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&control));
        QVERIFY(lblTime(toolTip)->fontMetrics().horizontalAdvance(time) + 2 <= 35);
        QVERIFY(control.grab().toImage().save(
            QStringLiteral("%1/ctlToolTip-%2.png").arg(galleryFolder(), name)));
    }
};

QTEST_MAIN(tst_ctlToolTip)
#include "tst_ctlToolTip.moc"
