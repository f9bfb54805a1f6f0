// Numbered error reporting: a message box or the Error event, with the step codes of each place.
#include "kvError.h"
#include "kvErrorReporting.h"
#include "kvFaultInjection.h"
#include "kvKalivo.h"
#include "kvRuntimeError.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"
#include "kvTestSupport.h"

#include <QtTest>

#include <thread>

namespace {

//! The Error events of one control, as "number: description".
struct ErrorLog : QStringList
{
    explicit ErrorLog(kvKalivo &control)
    {
        QObject::connect(&control, &kvKalivo::Error, &control, [this](kvError &error) {
            append(QStringLiteral("%1: %2").arg(error.Number()).arg(error.Description()));
        });
    }
};

} // namespace

class tst_kvErrorReporting : public QObject
{
    Q_OBJECT

private:
    kvScriptedMessageBox m_box;
    std::unique_ptr<kvScopedService<kvScriptedMessageBox>> m_installed;

    QString lastPrompt() const { return m_box.CallCount() ? m_box.LastCall().prompt : QString(); }

private slots:
    void initTestCase() { m_installed = std::make_unique<kvScopedService<kvScriptedMessageBox>>(m_box); }

    void init()
    {
        m_box.Clear();
        kvErrorReporting::setRaiseErrorEvent(false);
        kvFaultInjection::Disarm();
    }

    //! The editor's failures show a box even with RaiseErrorEvent (the day cells' are in tst_ctlDay).
    void editorFailuresAlwaysShowABox()
    {
        kvKalivo control;
        ErrorLog errors(control);
        control.setRaiseErrorEvent(true);
        kvErrorReporting::ReportFromEditor("Typen unverträglich");
        QCOMPARE(lastPrompt(), QStringLiteral("kvKalivo-Fehlercode 1000\r\nTypen unverträglich"));
        QCOMPARE(m_box.LastCall().title, QStringLiteral("kvKalivo.ocx"));
        QCOMPARE(m_box.LastCall().buttons, 16);
        QCOMPARE(errors, QStringList());
    }

    void pendingCodeReportsWithoutDescription()
    {
        kvErrorReporting::setRaiseErrorEvent(true);
        kvError::ThreadInstance().setDescription("old");
        QStringList raised;
        kvErrorReporting::ReportPendingCode("12-9\r\nÜberlauf", [&raised](kvError &error) {
            raised << QStringLiteral("%1: %2").arg(error.Number()).arg(error.Description());
        });
        QCOMPARE(raised, QStringList{"12: "});   // the number is the code's leading digits
        QCOMPARE(m_box.CallCount(), 0);
    }

    void raiseErrorEventSwitchesEveryControlOfTheThread()
    {
        kvKalivo first;
        kvKalivo second;
        ErrorLog errors(second);
        first.setRaiseErrorEvent(true);
        QVERIFY(second.RaiseErrorEvent());
        kvFaultInjection::Arm("ArrangeGrid", 0, "Testfehler");
        second.Refresh();
        QCOMPARE(errors, QStringList{"900: Testfehler"});
        QCOMPARE(m_box.CallCount(), 0);
        bool otherThreadSees = true;
        std::thread other([&otherThreadSees] { otherThreadSees = kvErrorReporting::RaiseErrorEvent(); });
        other.join();
        QVERIFY(!otherThreadSees);
    }

    void gridArrangementStepCodes_data()
    {
        QTest::addColumn<int>("stage");
        QTest::addColumn<int>("code");
        QTest::newRow("beginning") << 0 << 900;
        QTest::newRow("tenth stage") << 10 << 910;
    }
    void gridArrangementStepCodes()
    {
        QFETCH(int, stage);
        QFETCH(int, code);
        kvKalivo control;
        kvFaultInjection::Arm("ArrangeGrid", stage, "Testfehler");
        control.Refresh();
        QCOMPARE(lastPrompt(), QStringLiteral("kvKalivo-Fehlercode %1\r\nTestfehler").arg(code));
        control.setRaiseErrorEvent(true);
        ErrorLog errors(control);
        kvFaultInjection::Arm("ArrangeGrid", stage, "Testfehler");
        control.Refresh();
        QCOMPARE(errors, QStringList{QStringLiteral("%1: Testfehler").arg(code)});
        QCOMPARE(m_box.CallCount(), 1);
    }

    //! A control wider than 16-bit pixel arithmetic overflows while arranging its cells.
    void overflowInTheArrangementIsReportedNotThrown()
    {
        kvKalivo control;
        control.resize(40000, 300);
        control.Refresh();
        QCOMPARE(m_box.CallCount(), 1);
        QCOMPARE(lastPrompt(), QStringLiteral("kvKalivo-Fehlercode 903\r\nÜberlauf"));
        QCOMPARE(errorNumber([] { kvErrorReporting::StepCode(32767, 1); }), 6);
    }

    //! Errors of the library and std::exception keep their own words (tst_kvCalendarPrinter, tst_ctlDay).
    void anUnknownExceptionIsDescribedAsSuch()
    {
        QString description;
        try {
            throw 42;
        } catch (...) {
            description = kvErrorReporting::DescribeCurrentException();
        }
        QCOMPARE(description, QStringLiteral("Unbekannter Fehler"));
    }
};

QTEST_MAIN(tst_kvErrorReporting)
#include "tst_kvErrorReporting.moc"
