#include "ctlDay.h"

#include "kvErrorReporting.h"
#include "kvFaultInjection.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"
#include "kvTestSupport.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

#include <memory>

namespace {

kvDate at(int hour, int minute)
{
    return kvDate::fromDate(QDate(2025, 12, 24), QTime(hour, minute));
}

std::unique_ptr<ctlDay> makeCell(int width, int height)
{
    auto cell = std::make_unique<ctlDay>();
    cell->resize(width, height);
    cell->Init(kvDate::fromDate(QDate(2025, 12, 24)), QString(), QString(), 0xE0E0E0, 0x000000);
    return cell;
}

void addRow(ctlDay &cell, const QString &text, const kvDate &begin = at(10, 30), qint16 imgId = 0)
{
    cell.AddDate(1000 + cell.EntriesCount(), begin, begin.addMinutes(60), text,
                 QStringLiteral("Bemerkung"), QString(), imgId, 0xFFFFFF, 0x000000);
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

// Twenty shown rows of 16 pixels (after a resize), the 12th to the 20th below the cell.
std::unique_ptr<ctlDay> scrolledCell()
{
    auto cell = makeCell(180, 200);
    addRows(*cell, 20);
    showAndWait(*cell);
    cell->resize(181, 200);
    return cell;
}

template <typename... Arguments>
auto recorder(QStringList &events, const char *name)
{
    return [&events, name](Arguments... arguments) {
        QStringList parts;
        (parts << ... << QString::number(arguments));
        events << QStringLiteral("%1(%2)").arg(QLatin1String(name), parts.join(QLatin1Char(',')));
    };
}

// Every event of the cell, with its arguments, in the order it was raised.
struct EventLog
{
    explicit EventLog(ctlDay &cell)
    {
        using P = qint32;
        QObject::connect(&cell, &ctlDay::DayMouseUp, recorder<qint16, qint16, float, float>(events, "DayMouseUp"));
        QObject::connect(&cell, &ctlDay::EntryMouseUp, recorder<qint16, qint16, qint16, float, float>(events, "EntryMouseUp"));
        QObject::connect(&cell, &ctlDay::EntryDblClick, recorder<qint16>(events, "EntryDblClick"));
        QObject::connect(&cell, &ctlDay::EntryMouseMove, recorder<qint16, P, P, P, P, P, P>(events, "EntryMouseMove"));
        QObject::connect(&cell, &ctlDay::EntryMouseDown, recorder<qint16, P, P, P, P, P, P>(events, "EntryMouseDown"));
        QObject::connect(&cell, &ctlDay::DayDblClick, recorder<>(events, "DayDblClick"));
    }
    QStringList events;
};

void sendMouse(ctlDay &cell, QEvent::Type type, QPointF pos, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, pos, cell.mapToGlobal(pos), button, buttons, Qt::NoModifier);
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

    // Rows follow each other in the order of the calls; from the sixth in a 100-pixel cell the
    // bar shows, and a resize makes every row 16 pixels.
    void rowsAndTheScrollBar()
    {
        const auto cell = makeCell(180, 100);
        showAndWait(*cell);
        addRow(*cell, QStringLiteral("Zahnarzt"), at(14, 0));
        addRow(*cell, QStringLiteral("Frühstück"), at(8, 0));
        addRow(*cell, QStringLiteral("Kino"), at(20, 15));
        const QStringList texts{QStringLiteral("Zahnarzt"), QStringLiteral("Frühstück"), QStringLiteral("Kino")};
        const QStringList times{QStringLiteral("14:00"), QStringLiteral("08:00"), QStringLiteral("20:15")};
        for (int i = 1; i <= 3; ++i) {
            const ctlEntry *row = cell->Entries(qint16(i));
            QCOMPARE(row->Text(), texts.at(i - 1));
            QCOMPARE(row->Time(), times.at(i - 1));
            QCOMPARE(row->Listindex(), qint16(i));
            QCOMPARE(row->geometry(), QRect(0, 15 * i, 180, 15));
            QVERIFY(row->Visible());
            QCOMPARE(row->ShowLineSeperator(), i < 3); // a separator under every row but the last
        }
        QVERIFY(!cell->ctlHeader().ShowLineSeperator());
        addRows(*cell, 2);
        QVERIFY(!cell->VScroll()->isVisible());
        addRow(*cell, QStringLiteral("sechs"));
        cell->resize(181, 100);
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
        const auto cell = scrolledCell();
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

    // A selected row is scrolled wholly into view, below the header.
    void selectedRowIsScrolledIntoView()
    {
        const auto cell = scrolledCell();
        for (qint16 index : {12, 20, 3, 1}) {
            cell->SelectEntry(index);
            QCOMPARE(cell->FocusEntryIndex(), index);
            QCOMPARE(cell->ActiveEntryIndex(), index);
            const int top = cell->Entries(index)->Top();
            QVERIFY2(top >= 15 && top + 16 <= 200, qPrintable(QString::number(index)));
        }
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

    // The grid writes BorderVisible on every arrangement: the value a cell has leaves it as it
    // is, scrolled where the user left it.
    void rewritingBorderVisibleKeepsTheCellAsItIs()
    {
        const auto cell = scrolledCell();
        cell->VScroll()->setValue(3);
        const QRect row = cell->Entries(5)->geometry();
        cell->setBorderVisible(false);
        QCOMPARE(cell->VScroll()->value(), 3);
        QCOMPARE(cell->Entries(5)->geometry(), row);
    }

    // Every positive ImageID adds an icon at 200 + k * 16, whichever rows carry them; an ID
    // below 11 adds an empty one. ClearDates leaves the first icon and hides the bar.
    void iconsAndClearDates()
    {
        const auto cell = makeCell(300, 100);
        addRow(*cell, QStringLiteral("ohne"), at(9, 0), 0);
        addRow(*cell, QStringLiteral("negativ"), at(10, 0), -3);
        QCOMPARE(cell->imgDateImageCount(), 1);
        addRow(*cell, QStringLiteral("mit"), at(11, 0), 11);
        addRow(*cell, QStringLiteral("leer"), at(12, 0), 5);
        QCOMPARE(cell->imgDateImageCount(), 3);
        QCOMPARE(cell->imgDateImage(1).Geometry.left(), 216);
        QVERIFY(cell->imgDateImage(1).Visible);
        QVERIFY(!cell->imgDateImage(1).Picture.isNull());
        QCOMPARE(cell->imgDateImage(2).Geometry.left(), 232);
        QVERIFY(cell->imgDateImage(2).Picture.isNull());
        cell->resize(320, 100);
        showAndWait(*cell);
        QCOMPARE(cell->imgDateImage(2).Geometry.left(), 232);
        addRows(*cell, 4);
        QVERIFY(!cell->VScroll()->isHidden());
        cell->ClearDates();
        QCOMPARE(cell->EntriesCount(), 0);
        QCOMPARE(cell->imgDateImageCount(), 1);
        QVERIFY(cell->VScroll()->isHidden());
        QCOMPARE(cell->VScroll()->maximum(), 0);
        addRow(*cell, QStringLiteral("neu"));
        QCOMPARE(cell->Entries(1)->Text(), QStringLiteral("neu"));
        QCOMPARE(cell->Entries(1)->Top(), 15);
    }

    // A refill reuses the rows the cell has: they come back as new, with nothing of before.
    void clearDatesKeepsTheRowsForTheNextFill()
    {
        const auto cell = makeCell(300, 100);
        addRows(*cell, 3);
        cell->Entries(3)->setIsContinuedDate(true);
        const QPointer<ctlEntry> second = cell->Entries(2);
        cell->SelectEntry(2);
        cell->ClearDates();
        QVERIFY_THROWS_EXCEPTION(kvRuntimeError, cell->Entries(1));
        QCOMPARE(cell->ActiveEntryIndex(), 0); // its row is gone
        addRow(*cell, QStringLiteral("eins"));
        addRow(*cell, QStringLiteral("zwei"), at(11, 15));
        addRow(*cell, QStringLiteral("drei"), at(12, 0));
        QVERIFY(second && cell->Entries(2) == second);
        QCOMPARE(second->Text(), QStringLiteral("zwei"));
        QCOMPARE(second->Time(), QStringLiteral("11:15"));
        QVERIFY(!cell->Entries(3)->IsContinuedDate());
        QCOMPARE(cell->Entries(3)->Time(), QStringLiteral("12:00"));
        QVERIFY(!cell->Entries(3)->ShowLineSeperator());
        cell->ClearDates();
        addRow(*cell, QStringLiteral("eins"));
        QCOMPARE(cell->EntriesCount(), 1);
        QVERIFY(!cell->Entries(1)->ShowLineSeperator());
    }

    // A row gets its ctlEntry when first needed; made late, after the cell was laid out,
    // scrolled or given more rows, it is what it would have been if AddDate had made it.
    void rowsMadeLateMatchRowsMadeAtOnce_data()
    {
        QTest::addColumn<bool>("resize");
        QTest::addColumn<int>("scrollValue");
        QTest::addColumn<int>("rowsAddedAfter");
        QTest::newRow("as added") << false << 0 << 0;
        QTest::newRow("resized") << true << 0 << 0;
        QTest::newRow("resized and scrolled") << true << 4 << 0;
        QTest::newRow("added after scrolling") << true << 4 << 3;
    }
    void rowsMadeLateMatchRowsMadeAtOnce()
    {
        QFETCH(bool, resize);
        QFETCH(int, scrollValue);
        QFETCH(int, rowsAddedAfter);
        const auto early = makeCell(180, 100);
        const auto late = makeCell(180, 100);
        const auto add = [&](int count) {
            for (int i = 0; i < count; ++i) {
                const kvDate begin = at(i % 3 == 0 ? 0 : 7 + i % 12, 5 * (i % 12));
                for (ctlDay *cell : {early.get(), late.get()})
                    addRow(*cell, QStringLiteral("Termin %1").arg(cell->EntriesCount() + 1), begin);
                early->Entries(qint16(early->EntriesCount())); // made at once
            }
        };
        add(12);
        for (ctlDay *cell : {early.get(), late.get()}) {
            if (resize)
                cell->resize(181, 100);
            cell->VScroll()->setValue(scrollValue);
        }
        add(rowsAddedAfter);
        QCOMPARE(late->EntriesCount(), early->EntriesCount());
        QCOMPARE(late->VScroll()->maximum(), early->VScroll()->maximum());
        for (qint16 i = late->EntriesCount(); i >= 1; --i) { // the last first: nothing made in order
            const ctlEntry *made = late->Entries(i);
            const ctlEntry *expected = early->Entries(i);
            QCOMPARE(made->geometry(), expected->geometry());
            QCOMPARE(made->Text(), expected->Text());
            QCOMPARE(made->Time(), expected->Time());
            QCOMPARE(made->lblText().Caption, expected->lblText().Caption);
            QCOMPARE(made->ShowLineSeperator(), expected->ShowLineSeperator());
            QCOMPARE(made->Listindex(), i);
            QVERIFY(made->Visible());
        }
    }

    // After a busy day the cell keeps for reuse only the rows it can show or the next fill
    // has, and lets go of the others once back in the event loop: a reload from a row's own
    // double click must not delete the row under its signal.
    void clearDatesLetsGoOfTheRowsOfABusyDay()
    {
        const auto cell = makeCell(180, 100);
        addRows(*cell, 300);
        for (qint16 i = 1; i <= 300; ++i)
            cell->Entries(i); // read, as printing does: every row made
        QCOMPARE(cell->ctlEntryArray().UBound(), 300);
        const QPointer<ctlEntry> reused = cell->Entries(40);
        const QPointer<ctlEntry> surplus = cell->Entries(41);
        connect(cell.get(), &ctlDay::EntryDblClick, cell.get(), [&cell] {
            cell->ClearDates();
            addRows(*cell, 40);
        });
        showAndWait(*cell);
        cell->SelectEntry(300);
        const QPoint overLastRow(60, cell->Entries(300)->Top() + 5);
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, overLastRow);
        QCOMPARE(cell->EntriesCount(), 40);
        QCoreApplication::sendPostedEvents(cell.get(), QEvent::MetaCall);
        QVERIFY(reused && cell->Entries(40) == reused);
        QVERIFY(!surplus);
        QCOMPARE(cell->ctlEntryArray().UBound(), 40);
    }

    void entriesFailsForAnIndexNeverAdded()
    {
        const auto cell = makeCell(180, 120);
        QString description;
        QCOMPARE(errorNumber([&] { cell->Entries(1); }, &description), 5);
        QCOMPARE(description, QStringLiteral("Ungültiger Prozeduraufruf oder ungültiges Argument"));
        addRows(*cell, 2);
        for (qint16 index : {3, 0, -1})
            QCOMPARE(errorNumber([&] { cell->Entries(index); }), 5);
        QCOMPARE(errorNumber([&] { cell->Entries(2); }), 0);
        cell->ClearDates();
        QCOMPARE(errorNumber([&] { cell->Entries(1); }), 5);
        QCOMPARE(errorNumber([&] { cell->imgDateImage(1); }), 340);
    }

    // Which event a click raises depends on where it is released: a row's text, a row's own
    // background below its labels (which also raises EntryMouseDown), the header or the cell.
    void clicksRaiseTheEventOfWhatLiesBelow_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QPoint>("point");
        QTest::addColumn<QStringList>("events");
        QTest::newRow("row text") << int(Qt::LeftButton) << 0 << QPoint(60, 36)
                                  << QStringList{"EntryMouseUp(2,1,0,60,6)"};
        QTest::newRow("row background") << int(Qt::RightButton) << int(Qt::ShiftModifier) << QPoint(60, 44)
                                        << QStringList{"EntryMouseDown(2,60,44,0,30,180,15)", "EntryMouseUp(2,2,1,60,14)"};
        QTest::newRow("cell") << int(Qt::RightButton) << int(Qt::ControlModifier | Qt::ShiftModifier)
                              << QPoint(90, 100) << QStringList{"DayMouseUp(2,3,90,100)"};
        QTest::newRow("header") << int(Qt::MiddleButton) << int(Qt::AltModifier) << QPoint(120, 3)
                                << QStringList{"DayMouseUp(4,4,120,3)"};
    }
    void clicksRaiseTheEventOfWhatLiesBelow()
    {
        QFETCH(int, button);
        QFETCH(int, modifiers);
        QFETCH(QPoint, point);
        QFETCH(QStringList, events);
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell); // 15-pixel rows: row 2 spans y 30 .. 44
        EventLog log(*cell);
        QTest::mouseClick(cell.get(), Qt::MouseButton(button), Qt::KeyboardModifiers(modifiers), point);
        QCOMPARE(log.events, events);
    }

    // A double click on a row raises EntryDblClick, elsewhere DayDblClick; a handler may reload the cell.
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
        log.events.clear();
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 7));
        QCOMPARE(log.events.count(QStringLiteral("DayDblClick()")), 1);
        log.events.clear();
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 100));
        QCOMPARE(log.events.count(QStringLiteral("DayDblClick()")), 1);
        log.events.clear();
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(220, 5)); // the icon
        QCOMPARE(log.events, QStringList{QStringLiteral("DayDblClick()")});
        connect(cell.get(), &ctlDay::EntryDblClick, cell.get(), [&cell] {
            cell->ClearDates();
            addRow(*cell, QStringLiteral("neu geladen"));
        });
        QTest::mouseDClick(cell->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(60, 36));
        QCOMPARE(cell->EntriesCount(), 1);
        QCOMPARE(cell->Entries(1)->Text(), QStringLiteral("neu geladen"));
    }

    // A pressed row keeps the mouse until released; SetCapture routes moves to its row until
    // ReleaseCapture; capturing a missing row reports 200.
    void rowsCaptureTheMouse()
    {
        const auto cell = makeCell(180, 120);
        addRows(*cell, 3);
        showAndWait(*cell);
        EventLog log(*cell);
        sendMouse(*cell, QEvent::MouseButtonPress, QPointF(60, 29), Qt::LeftButton, Qt::LeftButton);
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 50), Qt::NoButton, Qt::LeftButton);
        sendMouse(*cell, QEvent::MouseButtonRelease, QPointF(60, 100), Qt::LeftButton, Qt::NoButton);
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 50), Qt::NoButton, Qt::NoButton);
        cell->SetCapture(1);
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 100), Qt::NoButton, Qt::NoButton);
        cell->ReleaseCapture();
        QVERIFY(QWidget::mouseGrabber() != cell.get());
        sendMouse(*cell, QEvent::MouseMove, QPointF(60, 100), Qt::NoButton, Qt::NoButton);
        QCOMPARE(log.events, (QStringList{QStringLiteral("EntryMouseDown(1,60,29,0,15,180,15)"),
                                          QStringLiteral("EntryMouseMove(1,60,50,0,15,180,15)"),
                                          QStringLiteral("EntryMouseUp(1,1,0,60,85)"),
                                          QStringLiteral("EntryMouseMove(3,60,50,0,45,180,15)"),
                                          QStringLiteral("EntryMouseMove(1,60,100,0,15,180,15)")}));
        cell->SetCapture(9);
        QCOMPARE(m_messageBox.CallCount(), 1);
        QVERIFY(m_messageBox.LastCall().prompt.startsWith(QStringLiteral("kvKalivo-Fehlercode 200\r\n")));
        m_messageBox.Clear();
    }

    // A failure inside the cell is reported as 200 (a member routine) or 100 (while being
    // destroyed), unless the control raises error events instead.
    void failuresAreReportedWithTheirCode_data()
    {
        QTest::addColumn<QString>("site");
        QTest::addColumn<bool>("raiseErrorEvent");
        QTest::addColumn<QString>("prompt");
        QTest::newRow("AddDate") << "ctlDay.AddDate" << false << "kvKalivo-Fehlercode 200\r\nTestfehler";
        QTest::newRow("Terminate") << "ctlDay.Terminate" << false << "kvKalivo-Fehlercode 100\r\nTestfehler";
        QTest::newRow("raised as an event") << "ctlDay.AddDate" << true << "";
    }
    void failuresAreReportedWithTheirCode()
    {
        QFETCH(QString, site);
        QFETCH(bool, raiseErrorEvent);
        QFETCH(QString, prompt);
        kvErrorReporting::setRaiseErrorEvent(raiseErrorEvent);
        auto cell = makeCell(180, 120);
        kvFaultInjection::Arm(site, 0, QStringLiteral("Testfehler"));
        addRow(*cell, QStringLiteral("x"));
        QCOMPARE(cell->EntriesCount(), site.endsWith(QLatin1String("AddDate")) ? 0 : 1);
        cell.reset();
        QCOMPARE(m_messageBox.CallCount(), prompt.isEmpty() ? 0 : 1);
        if (!prompt.isEmpty()) {
            QCOMPARE(m_messageBox.LastCall().prompt, prompt);
            QCOMPARE(m_messageBox.LastCall().title, QStringLiteral("kvKalivo.ocx"));
        }
        m_messageBox.Clear();
    }
};

QTEST_MAIN(tst_ctlDay)
#include "tst_ctlDay.moc"
