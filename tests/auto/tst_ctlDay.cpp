#include "ctlDay.h"

#include "kvErrorReporting.h"
#include "kvFaultInjection.h"
#include "kvMemoryPropertyBag.h"
#include "kvOleColor.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"
#include "kvTestSupport.h"

#include <QDir>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>
#include <QWheelEvent>
#include <QtTest>

#include <memory>

namespace {

const kvDate ChristmasEve = kvDate::fromDate(QDate(2025, 12, 24));
constexpr uint HeaderGrey = 0xE0E0E0;

kvDate at(int hour, int minute)
{
    return kvDate::fromDate(QDate(2025, 12, 24), QTime(hour, minute));
}

std::unique_ptr<ctlDay> makeCell(int width, int height, const kvDate &day = ChristmasEve)
{
    auto cell = std::make_unique<ctlDay>();
    cell->resize(width, height);
    cell->Init(day, QString(), QString(), HeaderGrey, 0x000000);
    return cell;
}

void addRow(ctlDay &cell, const QString &text, const kvDate &begin = at(10, 30), qint16 imgId = 0,
            uint backColor = 0xFFFFFF, uint foreColor = 0x000000)
{
    cell.AddDate(1000 + cell.EntriesCount(), begin, begin.addMinutes(60), text,
                 QStringLiteral("Bemerkung"), QString(), imgId, backColor, foreColor);
}

void addRows(ctlDay &cell, int count)
{
    for (int i = 1; i <= count; ++i)
        addRow(cell, QStringLiteral("Termin %1").arg(i), at(8 + i % 10, 0));
}

void showAndWait(ctlDay &cell)
{
    cell.show();
    QVERIFY(QTest::qWaitForWindowExposed(&cell));
}

// Every event of the cell, with its arguments, in the order it was raised.
class EventLog
{
public:
    explicit EventLog(ctlDay &cell)
    {
        QObject::connect(&cell, &ctlDay::DayMouseUp, [this](qint16 b, qint16 s, float x, float y) {
            add(QStringLiteral("DayMouseUp(%1,%2,%3,%4)").arg(b).arg(s).arg(x).arg(y));
        });
        QObject::connect(&cell, &ctlDay::EntryMouseUp,
                         [this](qint16 i, qint16 b, qint16 s, float x, float y) {
            add(QStringLiteral("EntryMouseUp(%1,%2,%3,%4,%5)").arg(i).arg(b).arg(s).arg(x).arg(y));
        });
        QObject::connect(&cell, &ctlDay::EntryDblClick, [this](qint16 i) {
            add(QStringLiteral("EntryDblClick(%1)").arg(i));
        });
        QObject::connect(&cell, &ctlDay::EntryMouseMove,
                         [this](qint16 i, qint32 x, qint32 y, qint32 l, qint32 t, qint32 w, qint32 h) {
            add(pointer(QStringLiteral("EntryMouseMove"), i, x, y, l, t, w, h));
        });
        QObject::connect(&cell, &ctlDay::EntryMouseDown,
                         [this](qint16 i, qint32 x, qint32 y, qint32 l, qint32 t, qint32 w, qint32 h) {
            add(pointer(QStringLiteral("EntryMouseDown"), i, x, y, l, t, w, h));
        });
        QObject::connect(&cell, &ctlDay::DayDblClick, [this] { add(QStringLiteral("DayDblClick()")); });
    }

    QStringList events;
    void clear() { events.clear(); }

private:
    void add(const QString &event) { events.append(event); }
    static QString pointer(const QString &name, qint16 i, qint32 x, qint32 y, qint32 l, qint32 t,
                           qint32 w, qint32 h)
    {
        return QStringLiteral("%1(%2,%3,%4,%5,%6,%7,%8)").arg(name).arg(i).arg(x).arg(y).arg(l)
            .arg(t).arg(w).arg(h);
    }
};

void sendMouse(ctlDay &cell, QEvent::Type type, QPointF pos, Qt::MouseButton button,
               Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QMouseEvent event(type, pos, cell.mapToGlobal(pos), button, buttons, modifiers);
    QCoreApplication::sendEvent(&cell, &event);
}

} // namespace

class tst_ctlDay : public QObject
{
    Q_OBJECT

private:
    kvScriptedMessageBox m_messageBox;
    std::unique_ptr<kvScopedService<kvScriptedMessageBox>> m_installed;

private slots:
    void init()
    {
        m_messageBox.Clear();
        m_installed = std::make_unique<kvScopedService<kvScriptedMessageBox>>(m_messageBox);
        kvErrorReporting::setRaiseErrorEvent(false);
    }

    void cleanup()
    {
        QCOMPARE(m_messageBox.CallCount(), 0);
        m_installed.reset();
        kvFaultInjection::Disarm();
    }

    // --- Construction, Init, AddDate -----------------------------------------------------------

    void constructionDefaults()
    {
        ctlDay cell;
        QCOMPARE(cell.BackColor(), 0xFFFFFFu);
        QCOMPARE(cell.DayHeaderColor2(), 0x8000000Au);
        QCOMPARE(cell.DayHeaderForeColor(), 0u);
        QCOMPARE(cell.TodayHeaderColor(), 0u);
        QVERIFY(!cell.IsActualDay());
        QVERIFY(!cell.BorderVisible());
        QCOMPARE(cell.EntriesCount(), 0);
        QCOMPARE(cell.ActiveEntryIndex(), qint16(0));
        QCOMPARE(cell.ctlEntryArray().Count(), 1);
        QVERIFY(!cell.ctlEntryArray()(0)->Visible());
        QCOMPARE(cell.imgDateImageCount(), 1);
        QCOMPARE(cell.imgDateImage(0).Geometry.width(), 16);
        QVERIFY(!cell.imgDateImage(0).Visible);
        QCOMPARE(cell.VScroll()->objectName(), QStringLiteral("VScroll"));
        QCOMPARE(cell.findChild<QScrollBar *>(QStringLiteral("VScroll")), cell.VScroll());
        QCOMPARE(cell.findChild<ctlEntry *>(QStringLiteral("ctlHeader")), &cell.ctlHeader());
        QVERIFY(cell.VScroll()->isHidden());
        QCOMPARE(ctlDay::DefaultBackColor, 0xFFFFFFu);
        QCOMPARE(ctlDay::DefaultDayHeaderColor2, 0x8000000Au);
        QCOMPARE(ctlDay::DefaultDayHeaderForeColor, 0u);
        QCOMPARE(ctlDay::DefaultTodayHeaderColor, 0u);
    }

    void initShowsTheDayNumberInTheHeader()
    {
        const auto cell = makeCell(180, 120, kvDate::fromDate(QDate(2025, 3, 5)));
        const ctlEntry &header = cell->ctlHeader();
        QCOMPARE(cell->datDay(), kvDate::fromDate(QDate(2025, 3, 5)));
        QCOMPARE(header.Time(), QStringLiteral("5"));
        QCOMPARE(header.DateID(), 0);
        QCOMPARE(header.Listindex(), qint16(0));
        QCOMPARE(header.geometry(), QRect(0, 0, 180, 15));
        QVERIFY(header.Visible());
        QCOMPARE(header.BackColor(), HeaderGrey);
        QCOMPARE(cell->HeaderBackColor(), HeaderGrey);
        QCOMPARE(cell->HeaderForeColor(), 0u);
    }

    void rowsFollowEachOtherInTheOrderOfTheCalls()
    {
        const auto cell = makeCell(180, 120);
        addRow(*cell, QStringLiteral("Zahnarzt"), at(14, 0));
        addRow(*cell, QStringLiteral("Frühstück"), at(8, 0));
        addRow(*cell, QStringLiteral("Kino"), at(20, 15));
        QCOMPARE(cell->EntriesCount(), 3);
        QCOMPARE(cell->ctlEntryArray().Count(), 4);
        const QStringList texts{QStringLiteral("Zahnarzt"), QStringLiteral("Frühstück"), QStringLiteral("Kino")};
        const QStringList times{QStringLiteral("14:00"), QStringLiteral("08:00"), QStringLiteral("20:15")};
        for (int i = 1; i <= 3; ++i) {
            const ctlEntry *row = cell->Entries(qint16(i));
            QCOMPARE(row->Text(), texts.at(i - 1));
            QCOMPARE(row->Time(), times.at(i - 1));
            QCOMPARE(row->Listindex(), qint16(i));
            QCOMPARE(row->geometry(), QRect(0, 15 * i, 180, 15));
            QVERIFY(row->Visible());
            QCOMPARE(row, cell->ctlEntryArray()(i));
        }
    }

    void midnightRowShowsNoTime()
    {
        const auto cell = makeCell(180, 120);
        addRow(*cell, QStringLiteral("Urlaub"), at(0, 0));
        QCOMPARE(cell->Entries(1)->lblTime().Caption, QString());
        QCOMPARE(cell->Entries(1)->Time(), QString());
    }

    void continuedRowShowsTheMarker()
    {
        const auto cell = makeCell(180, 120);
        addRow(*cell, QStringLiteral("Messe Frankfurt"), at(0, 0));
        cell->Entries(1)->setIsContinuedDate(false);
        QCOMPARE(cell->Entries(1)->Time(), QStringLiteral("<--"));
    }

    void separatorUnderEveryRowButTheLast()
    {
        const auto cell = makeCell(180, 120);
        addRow(*cell, QStringLiteral("eins"));
        QVERIFY(!cell->Entries(1)->ShowLineSeperator());
        addRow(*cell, QStringLiteral("zwei"));
        QVERIFY(cell->Entries(1)->ShowLineSeperator());
        QVERIFY(!cell->Entries(2)->ShowLineSeperator());
        addRow(*cell, QStringLiteral("drei"));
        QVERIFY(cell->Entries(1)->ShowLineSeperator());
        QVERIFY(cell->Entries(2)->ShowLineSeperator());
        QVERIFY(!cell->Entries(3)->ShowLineSeperator());
        QVERIFY(!cell->ctlHeader().ShowLineSeperator());
    }

    // --- VScroll -------------------------------------------------------------------------------

    void cellWithoutRowsNeverShowsTheScrollBar()
    {
        const auto cell = makeCell(180, 100);
        showAndWait(*cell);
        QVERIFY(!cell->VScroll()->isVisible());
        cell->resize(181, 10); // lower than its header
        QVERIFY(!cell->VScroll()->isVisible());
        addRows(*cell, 8);
        QVERIFY(cell->VScroll()->isVisible());
        cell->ClearDates();
        QVERIFY(!cell->VScroll()->isVisible());
        QCOMPARE(cell->VScroll()->maximum(), 0);
        cell->resize(180, 100);
        QVERIFY(!cell->VScroll()->isVisible());
    }

    void scrollingWithAnUnsetCollectionHidesTheBar()
    {
        const auto cell = makeCell(180, 100);
        showAndWait(*cell);
        QScrollBar *bar = cell->VScroll();
        bar->setMaximum(3);
        bar->show();
        bar->setValue(1);
        QVERIFY(!bar->isVisible());
    }

    void sixthRowOfAHundredPixelCellShowsTheScrollBar()
    {
        const auto cell = makeCell(180, 100);
        showAndWait(*cell);
        addRows(*cell, 5);
        QVERIFY(!cell->VScroll()->isVisible());
        addRow(*cell, QStringLiteral("sechs"));
        cell->resize(181, 100); // Resize: every row 16 pixels
        for (int i = 1; i <= 6; ++i) {
            QCOMPARE(cell->Entries(qint16(i))->Height(), 16);
            QCOMPARE(cell->Entries(qint16(i))->Top(), 15 + (i - 1) * 16);
        }
        QCOMPARE(cell->Entries(6)->geometry().bottom() + 1, 111);
        QCOMPARE(cell->VScroll()->maximum(), 1);
        QVERIFY(cell->VScroll()->isVisible());
        const int barWidth = cell->VScroll()->width();
        QCOMPARE(cell->VScroll()->geometry(), QRect(181 - barWidth, 15, barWidth, 100 - 16 - 1));

        addRow(*cell, QStringLiteral("sieben"));
        QCOMPARE(cell->VScroll()->maximum(), 2);
        cell->resize(180, 100);
        QCOMPARE(cell->VScroll()->maximum(), 2);
    }

    void addDateCountsRowsBelowTheVisibleArea()
    {
        const auto cell = makeCell(180, 100);
        addRows(*cell, 5); // 15-pixel rows: the fifth ends at 90
        QCOMPARE(cell->VScroll()->maximum(), 0);
        addRow(*cell, QStringLiteral("sechs")); // ends at 105
        QCOMPARE(cell->VScroll()->maximum(), 1);
        QVERIFY(!cell->VScroll()->isHidden());
        addRow(*cell, QStringLiteral("sieben"));
        QCOMPARE(cell->VScroll()->maximum(), 2);
    }

    void resizeMakesEveryRowSixteenPixels()
    {
        const auto cell = makeCell(180, 200);
        addRows(*cell, 3);
        QCOMPARE(cell->Entries(1)->Height(), 15);
        showAndWait(*cell);
        QCOMPARE(cell->Entries(1)->Height(), 15); // showing is no resize
        cell->resize(150, 200);
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(cell->Entries(qint16(i))->geometry(), QRect(0, 15 + (i - 1) * 16, 150, 16));
        }
        QCOMPARE(cell->ctlHeader().geometry(), QRect(0, 0, 150, 15));
        QVERIFY(!cell->VScroll()->isVisible());
    }

    void scrollingMovesTheRowsByWholeRows()
    {
        const auto cell = makeCell(180, 100);
        addRows(*cell, 8);
        showAndWait(*cell);
        cell->resize(181, 100); // Resize: 16-pixel rows
        QCOMPARE(cell->VScroll()->maximum(), 3);
        cell->VScroll()->setValue(2);
        for (int i = 1; i <= 8; ++i)
            QCOMPARE(cell->Entries(qint16(i))->Top(), (i - 1) * 16 + 15 - 2 * 16);
        cell->VScroll()->setValue(0);
        QCOMPARE(cell->Entries(1)->Top(), 15);
    }

    // The wheel over the rows scrolls as over the bar: a row a notch, within the bar's range.
    void wheelOverTheRowsScrollsByWholeRows_data()
    {
        QTest::addColumn<int>("startValue");
        QTest::addColumn<int>("notches");
        QTest::addColumn<int>("expectedValue");
        QTest::newRow("one notch down") << 0 << -1 << 1;
        QTest::newRow("one notch up") << 2 << 1 << 1;
        QTest::newRow("up at the top") << 0 << 1 << 0;
        QTest::newRow("down past the end") << 0 << -20 << 9;
    }

    void wheelOverTheRowsScrollsByWholeRows()
    {
        QFETCH(int, startValue);
        QFETCH(int, notches);
        QFETCH(int, expectedValue);
        const auto cell = makeCell(180, 200);
        addRows(*cell, 20);
        showAndWait(*cell);
        cell->resize(181, 200); // Resize: 16-pixel rows, the 12th to the 20th below the cell
        QCOMPARE(cell->VScroll()->maximum(), 9);
        cell->VScroll()->setValue(startValue);
        const QPointF overRow(40, cell->Entries(3)->Top() + 5);
        for (int notch = 0; notch < std::abs(notches); ++notch) {
            QWheelEvent wheel(overRow, cell->mapToGlobal(overRow), QPoint(),
                              QPoint(0, notches < 0 ? -120 : 120), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(cell.get(), &wheel);
        }
        QCOMPARE(cell->VScroll()->value(), expectedValue);
        QCOMPARE(cell->Entries(1)->Top(), 15 - expectedValue * 16);
    }

    // A row selected by the keyboard is scrolled wholly into view, below the header.
    void selectedRowIsScrolledIntoView()
    {
        const auto cell = makeCell(180, 200);
        addRows(*cell, 20);
        showAndWait(*cell);
        cell->resize(181, 200);
        for (qint16 index : {12, 20, 3, 1}) {
            cell->SelectEntry(index);
            QCOMPARE(cell->FocusEntryIndex(), index);
            QCOMPARE(cell->ActiveEntryIndex(), index);
            const int top = cell->Entries(index)->Top();
            QVERIFY2(top >= 15 && top + 16 <= 200, qPrintable(QString::number(index)));
        }
    }

    // --- Colours and properties ----------------------------------------------------------------

    void isTodayFalseKeepsTheTodayColourUntilDayHeaderColor2()
    {
        const auto cell = makeCell(180, 120);
        cell->setDayHeaderColor2(0x808080);
        cell->setTodayHeaderColor(0xC0C0FF);
        cell->setIsToday(true);
        QCOMPARE(cell->ctlHeader().BackColor(), 0xC0C0FFu);
        cell->setIsToday(false);
        QCOMPARE(cell->ctlHeader().BackColor(), 0xC0C0FFu);
        cell->setDayHeaderColor2(0xE0E0E0);
        QCOMPARE(cell->ctlHeader().BackColor(), 0xE0E0E0u);
    }

    void propertyWritesNotify()
    {
        ctlDay cell;
        QSignalSpy changes(&cell, &ctlDay::PropertyChanged);
        cell.setBackColor(0x00FFFF);
        cell.setDayHeaderColor2(0x808080);
        cell.setDayHeaderForeColor(0x0000FF);
        cell.setTodayHeaderColor(0xC0C0FF);
        cell.setIsActualDay(true);
        QStringList names;
        for (const QList<QVariant> &change : changes)
            names.append(change.at(0).toString());
        QCOMPARE(names, (QStringList{QStringLiteral("BackColor"), QStringLiteral("DayHeaderColor2"),
                                     QStringLiteral("DayHeaderForeColor"), QStringLiteral("TodayHeaderColor"),
                                     QStringLiteral("IsActualDay")}));
        QCOMPARE(cell.ctlHeader().BackColor(), 0x808080u);
        QCOMPARE(cell.ctlHeader().ForeColor(), 0x0000FFu);
        QVERIFY(cell.ctlHeader().IsActualDay());
        QVERIFY(cell.ctlHeader().lblTime().Bold);
    }

    void holidayHeaderIsRedAndBoldWhenNotTheActualDay()
    {
        const auto cell = makeCell(180, 120, kvDate::fromDate(QDate(2025, 12, 25)));
        cell->setIsActualDay(false);
        cell->setPublicHolidayName(QStringLiteral("1. Weihnachtstag"));
        QCOMPARE(cell->PublicHolidayName(), QStringLiteral("1. Weihnachtstag"));
        const ctlEntry::Label &day = cell->ctlHeader().lblTime();
        QCOMPARE(day.Caption, QStringLiteral("25"));
        QVERIFY(day.Bold);
        QCOMPARE(day.ForeColor, 255u);

        const QImage image = cell->grab().toImage();
        bool red = false;
        for (int x = 0; x < 35 && !red; ++x) {
            for (int y = 0; y < 14 && !red; ++y)
                red = image.pixelColor(x, y).rgb() == qRgb(255, 0, 0);
        }
        QVERIFY(red);
    }

    void holidayNameIsTheDayNumbersHoverText()
    {
        const auto cell = makeCell(180, 120, kvDate::fromDate(QDate(2025, 12, 25)));
        cell->setPublicHolidayName(QStringLiteral("1. Weihnachtstag"));
        showAndWait(*cell);
        QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), cell->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(cell.get(), &help);
        QCOMPARE(QToolTip::text(), QStringLiteral("1. Weihnachtstag"));
        QToolTip::hideText();
    }

    void borderShrinksTheInnerArea()
    {
        const auto cell = makeCell(180, 120);
        addRow(*cell, QStringLiteral("Zahnarzt"));
        cell->setBorderVisible(true);
        QVERIFY(cell->BorderVisible());
        QCOMPARE(cell->contentsRect(), QRect(1, 1, 178, 118));
        QCOMPARE(cell->ctlHeader().Width(), 178);
        QCOMPARE(cell->Entries(1)->geometry(), QRect(0, 15, 178, 16));
        cell->setBorderVisible(false);
        QCOMPARE(cell->Entries(1)->Width(), 180);
    }

    void propertyBagKeys()
    {
        ctlDay cell;
        kvMemoryPropertyBag bag;
        cell.WriteProperties(bag);
        QVERIFY(bag.Keys().isEmpty());

        cell.setBackColor(0xF0F0F0);
        cell.setDayHeaderColor2(0x808080);
        cell.setIsActualDay(true);
        cell.setTodayHeaderColor(0xC0C0FF); // set by the grid, not persisted
        cell.WriteProperties(bag);
        QCOMPARE(bag.Keys(), (QStringList{QStringLiteral("BackColor"), QStringLiteral("DayHeaderColor2"),
                                          QStringLiteral("IsActualDay")}));

        ctlDay copy;
        copy.ReadProperties(bag);
        QCOMPARE(copy.BackColor(), 0xF0F0F0u);
        QCOMPARE(copy.DayHeaderColor2(), 0x808080u);
        QVERIFY(copy.IsActualDay());
        QCOMPARE(copy.ctlHeader().BackColor(), 0x808080u);

        kvMemoryPropertyBag empty;
        ctlDay fresh;
        fresh.ReadProperties(empty);
        QCOMPARE(fresh.BackColor(), 0xFFFFFFu);
        QCOMPARE(fresh.DayHeaderColor2(), 0x8000000Au);
        QVERIFY(!fresh.IsActualDay());
    }

    // --- Icons ---------------------------------------------------------------------------------

    void onlyPositiveImageIdsAddIcons()
    {
        const auto cell = makeCell(300, 120);
        addRow(*cell, QStringLiteral("ohne"), at(9, 0), 0);
        addRow(*cell, QStringLiteral("negativ"), at(10, 0), -3);
        QCOMPARE(cell->imgDateImageCount(), 1);
        addRow(*cell, QStringLiteral("mit"), at(11, 0), 11);
        QCOMPARE(cell->imgDateImageCount(), 2);
        QCOMPARE(cell->imgDateImage(1).Geometry.left(), 200 + 1 * 16);
        QVERIFY(cell->imgDateImage(1).Visible);
        QVERIFY(!cell->imgDateImage(1).Picture.isNull());
    }

    void iconPositionsDoNotDependOnWhichRowsCarryThem()
    {
        const auto first = makeCell(300, 120);
        addRow(*first, QStringLiteral("a"), at(9, 0), 11);
        addRow(*first, QStringLiteral("b"), at(10, 0), 0);
        addRow(*first, QStringLiteral("c"), at(11, 0), 23);
        const auto second = makeCell(300, 120);
        addRow(*second, QStringLiteral("a"), at(9, 0), 0);
        addRow(*second, QStringLiteral("b"), at(10, 0), 11);
        addRow(*second, QStringLiteral("c"), at(11, 0), 23);
        QCOMPARE(first->imgDateImageCount(), 3);
        QCOMPARE(second->imgDateImageCount(), 3);
        for (int k = 1; k <= 2; ++k) {
            QCOMPARE(first->imgDateImage(k).Geometry.left(), 200 + k * 16);
            QCOMPARE(second->imgDateImage(k).Geometry, first->imgDateImage(k).Geometry);
        }
        first->resize(320, 120);
        showAndWait(*first);
        QCOMPARE(first->imgDateImage(2).Geometry.left(), 232);
    }

    void imageIdBelowElevenLoadsAnEmptyIcon()
    {
        const auto cell = makeCell(300, 120);
        addRow(*cell, QStringLiteral("a"), at(9, 0), 5);
        addRow(*cell, QStringLiteral("b"), at(10, 0), 11);
        QCOMPARE(cell->imgDateImageCount(), 3);
        QVERIFY(cell->imgDateImage(1).Picture.isNull());
        QCOMPARE(cell->imgDateImage(2).Geometry.left(), 232);
    }

    void missingIconElementFails()
    {
        ctlDay cell;
        QCOMPARE(errorNumber([&] { cell.imgDateImage(1); }), 340);
    }

    // --- ClearDates and Entries ----------------------------------------------------------------

    void clearDatesRemovesRowsAndIcons()
    {
        const auto cell = makeCell(300, 100);
        addRow(*cell, QStringLiteral("a"), at(9, 0), 11);
        addRows(*cell, 7);
        QVERIFY(!cell->VScroll()->isHidden());
        cell->ClearDates();
        QCOMPARE(cell->EntriesCount(), 0);
        QCOMPARE(cell->ctlEntryArray().Count(), 1);
        QCOMPARE(cell->imgDateImageCount(), 1);
        QVERIFY(cell->VScroll()->isHidden());
        QCOMPARE(cell->VScroll()->maximum(), 0);

        addRow(*cell, QStringLiteral("neu"));
        QCOMPARE(cell->Entries(1)->Text(), QStringLiteral("neu"));
        QCOMPARE(cell->Entries(1)->Top(), 15);
        QCOMPARE(cell->ctlEntryArray()(1), cell->Entries(1));
    }

    void entriesFailsForAnIndexNeverAdded()
    {
        const auto cell = makeCell(180, 120);
        QString description;
        QCOMPARE(errorNumber([&] { cell->Entries(1); }, &description), 5);
        QCOMPARE(description, QStringLiteral("Ungültiger Prozeduraufruf oder ungültiges Argument"));
        addRows(*cell, 2);
        QCOMPARE(errorNumber([&] { cell->Entries(3); }), 5);
        QCOMPARE(errorNumber([&] { cell->Entries(0); }), 5);
        QCOMPARE(errorNumber([&] { cell->Entries(-1); }), 5);
        QCOMPARE(errorNumber([&] { cell->Entries(2); }), 0);
        cell->ClearDates();
        QCOMPARE(errorNumber([&] { cell->Entries(1); }), 5);
    }

    // --- Events --------------------------------------------------------------------------------

    void eventsAreDeclaredInTheSpecsOrder()
    {
        const QMetaObject &meta = ctlDay::staticMetaObject;
        const QList<int> order{
            meta.indexOfSignal("DayMouseUp(qint16,qint16,float,float)"),
            meta.indexOfSignal("EntryMouseUp(qint16,qint16,qint16,float,float)"),
            meta.indexOfSignal("EntryDblClick(qint16)"),
            meta.indexOfSignal("EntryMouseMove(qint16,qint32,qint32,qint32,qint32,qint32,qint32)"),
            meta.indexOfSignal("EntryMouseDown(qint16,qint32,qint32,qint32,qint32,qint32,qint32)"),
            meta.indexOfSignal("DayDblClick()"),
        };
        QVERIFY(order.first() >= 0);
        for (qsizetype i = 1; i < order.size(); ++i)
            QVERIFY(order.at(i - 1) < order.at(i));
    }

    void clickOnARowsTextRaisesEntryMouseUp()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell); // 15-pixel rows: row 2 spans y 30 .. 44
        EventLog log(*cell);
        QTest::mouseClick(cell.get(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 36));
        QCOMPARE(log.events, QStringList{QStringLiteral("EntryMouseUp(2,1,0,60,6)")});
        QCOMPARE(cell->ActiveEntryIndex(), qint16(2));
    }

    void pressOnARowsBackgroundRaisesEntryMouseDown()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell);
        EventLog log(*cell);
        // below the labels (y 14 of a 15-pixel row) lies the row's own background
        QTest::mouseClick(cell.get(), Qt::RightButton, Qt::ShiftModifier, QPoint(60, 30 + 14));
        QCOMPARE(log.events, (QStringList{QStringLiteral("EntryMouseDown(2,60,44,0,30,180,15)"),
                                          QStringLiteral("EntryMouseUp(2,2,1,60,14)")}));
    }

    void moveOverARowRaisesEntryMouseMove()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell);
        EventLog log(*cell);
        QTest::mouseMove(cell.get(), QPoint(100, 50));
        QCOMPARE(log.events, QStringList{QStringLiteral("EntryMouseMove(3,100,50,0,45,180,15)")});
        log.clear();
        QTest::mouseMove(cell.get(), QPoint(100, 5));   // header
        QTest::mouseMove(cell.get(), QPoint(100, 100)); // background
        QCOMPARE(log.events, QStringList());
    }

    void positionsAreRoundedHalfToEven()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 2); // 15-pixel rows: row 1 at 15
        EventLog log(*cell);
        sendMouse(*cell, QEvent::MouseMove, QPointF(10.5, 20.5), Qt::NoButton, Qt::NoButton);
        sendMouse(*cell, QEvent::MouseMove, QPointF(11.5, 21.5), Qt::NoButton, Qt::NoButton);
        QCOMPARE(log.events, (QStringList{QStringLiteral("EntryMouseMove(1,10,20,0,15,180,15)"),
                                          QStringLiteral("EntryMouseMove(1,12,22,0,15,180,15)")}));
    }

    void releaseOverTheBackgroundOrHeaderRaisesDayMouseUp()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 2);
        showAndWait(*cell);
        EventLog log(*cell);
        QTest::mouseClick(cell.get(), Qt::RightButton, Qt::ControlModifier | Qt::ShiftModifier,
                          QPoint(90, 100));
        QTest::mouseClick(cell.get(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 7));
        QTest::mouseClick(cell.get(), Qt::MiddleButton, Qt::AltModifier, QPoint(120, 3));
        QCOMPARE(log.events, (QStringList{QStringLiteral("DayMouseUp(2,3,90,100)"),
                                          QStringLiteral("DayMouseUp(1,0,20,7)"),
                                          QStringLiteral("DayMouseUp(4,4,120,3)")}));
    }

    void doubleClicks()
    {
        const auto cell = makeCell(300, 120);
        addRow(*cell, QStringLiteral("eins"), at(9, 0), 11);
        addRows(*cell, 2);
        showAndWait(*cell);
        EventLog log(*cell);
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 36));
        QVERIFY(log.events.contains(QStringLiteral("EntryDblClick(2)")));
        QVERIFY(!log.events.contains(QStringLiteral("DayDblClick()")));
        log.clear();
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 7));
        QCOMPARE(log.events.count(QStringLiteral("DayDblClick()")), 1);
        log.clear();
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
        QCOMPARE(log.events.count(QStringLiteral("DayDblClick()")), 1);
        log.clear();
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(220, 5)); // the icon
        QCOMPARE(log.events, QStringList{QStringLiteral("DayDblClick()")});
    }

    void doubleClickSequenceOnARow()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 2);
        showAndWait(*cell);
        EventLog log(*cell);
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 20));
        log.events.removeIf([](const QString &event) { return event.startsWith(QStringLiteral("EntryMouseMove")); });
        QCOMPARE(log.events, (QStringList{QStringLiteral("EntryMouseUp(1,1,0,60,5)"),
                                          QStringLiteral("EntryDblClick(1)"),
                                          QStringLiteral("EntryMouseUp(1,1,0,60,5)")}));
    }

    void aPressedRowKeepsTheMouse()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell);
        EventLog log(*cell);
        sendMouse(*cell, QEvent::MouseButtonPress, QPointF(60, 29), Qt::LeftButton, Qt::LeftButton);
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 50), Qt::NoButton, Qt::LeftButton);
        sendMouse(*cell, QEvent::MouseButtonRelease, QPointF(60, 100), Qt::LeftButton, Qt::NoButton);
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 50), Qt::NoButton, Qt::NoButton);
        QCOMPARE(log.events, (QStringList{QStringLiteral("EntryMouseDown(1,60,29,0,15,180,15)"),
                                          QStringLiteral("EntryMouseMove(1,60,50,0,15,180,15)"),
                                          QStringLiteral("EntryMouseUp(1,1,0,60,85)"),
                                          QStringLiteral("EntryMouseMove(3,60,50,0,45,180,15)")}));
    }

    void setCaptureRoutesMovesToTheRow()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell);
        EventLog log(*cell);
        cell->SetCapture(1);
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 100), Qt::NoButton, Qt::NoButton);
        cell->ReleaseCapture();
        QVERIFY(QWidget::mouseGrabber() != cell.get());
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 100), Qt::NoButton, Qt::NoButton);
        QCOMPARE(log.events, QStringList{QStringLiteral("EntryMouseMove(1,60,100,0,15,180,15)")});
    }

    void clearDatesWhileARowIsRaisingIsSafe()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell);
        connect(cell.get(), &ctlDay::EntryDblClick, cell.get(), [&cell] {
            cell->ClearDates();
            addRow(*cell, QStringLiteral("neu geladen"));
        });
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 36));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->Text(), QStringLiteral("neu geladen"));
    }

    // --- Failures ------------------------------------------------------------------------------

    void failingMemberRoutineReports200()
    {
        const auto cell = makeCell(180, 120);
        kvFaultInjection::Arm(QStringLiteral("ctlDay.AddDate"), 0, QStringLiteral("Testfehler"));
        addRow(*cell, QStringLiteral("x"));
        QCOMPARE(m_messageBox.CallCount(), 1);
        QCOMPARE(m_messageBox.LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 200\r\nTestfehler"));
        QCOMPARE(m_messageBox.LastCall().title, QStringLiteral("kvKalivo.ocx"));
        QCOMPARE(cell->EntriesCount(), 0);

        cell->SetCapture(9); // no such row
        QCOMPARE(m_messageBox.CallCount(), 2);
        QVERIFY(m_messageBox.LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 200\r\n")));
        m_messageBox.Clear();
    }

    void failureWhileBeingDestroyedReports100()
    {
        auto cell = makeCell(180, 120);
        kvFaultInjection::Arm(QStringLiteral("ctlDay.Terminate"), 0, QStringLiteral("Testfehler"));
        cell.reset();
        QCOMPARE(m_messageBox.CallCount(), 1);
        QCOMPARE(m_messageBox.LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 100\r\nTestfehler"));
        m_messageBox.Clear();
    }

    void failureIsSwallowedWhenTheControlRaisesErrorEvents()
    {
        kvErrorReporting::setRaiseErrorEvent(true);
        const auto cell = makeCell(180, 120);
        kvFaultInjection::Arm(QStringLiteral("ctlDay.AddDate"), 0, QStringLiteral("Testfehler"));
        addRow(*cell, QStringLiteral("x"));
        QCOMPARE(m_messageBox.CallCount(), 0);
        kvErrorReporting::setRaiseErrorEvent(false);
    }

    // --- Gallery -------------------------------------------------------------------------------

    void gallery_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QStringLiteral("empty");
        QTest::newRow("three-rows") << QStringLiteral("three-rows");
        QTest::newRow("three-rows-icons") << QStringLiteral("three-rows-icons");
        QTest::newRow("eight-rows") << QStringLiteral("eight-rows");
        QTest::newRow("long-texts") << QStringLiteral("long-texts");
        QTest::newRow("continued") << QStringLiteral("continued");
        QTest::newRow("holiday") << QStringLiteral("holiday");
        QTest::newRow("today") << QStringLiteral("today");
        QTest::newRow("actual-day") << QStringLiteral("actual-day");
    }

    void gallery()
    {
        QFETCH(QString, name);
        const bool icons = name == QLatin1String("three-rows-icons");
        const kvDate day = kvDate::fromDate(QDate(2025, 12, name == QLatin1String("holiday") ? 25 : 17));
        auto cell = std::make_unique<ctlDay>();
        // Icons start at x 216 (Part 3.2), so only a wide cell shows them.
        cell->resize(icons ? 300 : 180, 120);
        cell->setDayHeaderColor2(kvOleColor::FromSystemColor(kvOleColor::Menu));
        cell->Init(day, QString(), QString(), kvOleColor::FromSystemColor(kvOleColor::Menu), 0x000000);

        if (name.startsWith(QLatin1String("three-rows"))) {
            addRow(*cell, QStringLiteral("Frühstück mit Anna"), at(8, 0), icons ? 11 : 0);
            addRow(*cell, QStringLiteral("Zahnarzt Dr. Müller"), at(14, 30), icons ? 23 : 0);
            addRow(*cell, QStringLiteral("Weihnachtsfeier"), at(18, 0), icons ? 35 : 0, 0xC0FFC0);
        } else if (name == QLatin1String("eight-rows")) {
            const QStringList texts{QStringLiteral("Teambesprechung"), QStringLiteral("Kundentermin"),
                                    QStringLiteral("Mittagessen"), QStringLiteral("Telefonkonferenz"),
                                    QStringLiteral("Angebot schreiben"), QStringLiteral("Sport"),
                                    QStringLiteral("Einkaufen"), QStringLiteral("Abendessen")};
            for (int i = 0; i < texts.size(); ++i)
                addRow(*cell, texts.at(i), at(8 + i * 1, i % 2 ? 30 : 0));
        } else if (name == QLatin1String("long-texts")) {
            addRow(*cell, QStringLiteral("Besprechung mit der Geschäftsleitung über das Budget 2026"), at(9, 0));
            addRow(*cell, QStringLiteral("Jahreshauptversammlung des Kleingartenvereins"), at(19, 30));
            addRow(*cell, QStringLiteral("Kurz"), at(21, 0));
        } else if (name == QLatin1String("continued")) {
            addRow(*cell, QStringLiteral("Skiurlaub in Österreich"), at(0, 0), 0, 0xC0E0FF);
            cell->Entries(1)->setIsContinuedDate(true);
            addRow(*cell, QStringLiteral("Geburtstag Oma"), at(0, 0));
            addRow(*cell, QStringLiteral("Elternabend"), at(19, 0));
        } else if (name == QLatin1String("holiday")) {
            cell->setPublicHolidayName(QStringLiteral("1. Weihnachtstag"));
            addRow(*cell, QStringLiteral("Gänsebraten bei Familie Schmidt"), at(12, 30));
        } else if (name == QLatin1String("today")) {
            cell->setTodayHeaderColor(0xC0C0FF);
            cell->setIsToday(true);
            addRow(*cell, QStringLiteral("Heute: Projektabgabe"), at(16, 0));
        } else if (name == QLatin1String("actual-day")) {
            cell->setIsActualDay(true);
            cell->setBorderVisible(true);
            addRow(*cell, QStringLiteral("Ausgewählter Tag"), at(10, 0));
        }
        showAndWait(*cell);

        const QString file = QDir(galleryFolder()).filePath(QStringLiteral("ctlDay-%1.png").arg(name));
        QVERIFY(cell->grab().save(file));
        qInfo("%s", qPrintable(file));
    }
};

QTEST_MAIN(tst_ctlDay)
#include "tst_ctlDay.moc"
