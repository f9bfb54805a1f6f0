// Part 1.3: error reporting.
#include "kvAppointmentStore.h"
#include "kvAppointmentTable.h"
#include "kvConnection.h"
#include "kvError.h"
#include "kvErrorReporting.h"
#include "kvFaultInjection.h"
#include "kvKalivo.h"
#include "kvRuntimeError.h"
#include "kvScopedService.h"
#include "kvScriptedMessageBox.h"

#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

#include <thread>

namespace {

// A control on a real SQLite table whose legacy UPDATE text SQLite refuses ("T.[Name] = ...").
struct ControlOnSqlite
{
    ControlOnSqlite()
    {
        connection.Open(QStringLiteral("Driver=SQLite3;Database=%1").arg(folder.filePath(QStringLiteral("t.db"))));
        kvAppointmentTable::Create(connection, QStringLiteral("Termine"));
        control.setRecordSource(QStringLiteral("Termine"));
        control.setConnection(&connection);
    }
    void updateAppointment()
    {
        const kvDate begin = kvDate::fromDate(QDate(2026, 11, 23), QTime(14, 30));
        control.findChild<kvAppointmentStore *>()->UpdateAppointment(
            1, begin, begin.addMinutes(60), QStringLiteral("Zahnarzt"), QString(), QString(), 0);
    }
    // What SQLite itself says about the legacy UPDATE text.
    QString enginesDescription()
    {
        QSqlQuery query(connection.Database());
        query.exec(QStringLiteral("UPDATE Termine SET Termine.[Name] = 'x' WHERE (((Termine.DateID)=1))"));
        return query.lastError().databaseText();
    }
    QTemporaryDir folder;
    kvConnection connection;
    kvKalivo control;
};

// Counts the Error events of one control (QSignalSpy cannot copy a kvError& argument).
class ErrorCounter
{
public:
    explicit ErrorCounter(kvKalivo &control)
    {
        QObject::connect(&control, &kvKalivo::Error, &control, [this](kvError &) { ++m_count; });
    }
    int count() const { return m_count; }

private:
    int m_count = 0;
};

} // namespace

class tst_kvErrorReporting : public QObject
{
    Q_OBJECT

private:
    kvScriptedMessageBox m_messageBox;
    std::unique_ptr<kvScopedService<kvScriptedMessageBox>> m_installed;

private slots:
    void initTestCase()
    {
        m_installed = std::make_unique<kvScopedService<kvScriptedMessageBox>>(m_messageBox);
    }

    void init()
    {
        m_messageBox.Clear();
        kvErrorReporting::setRaiseErrorEvent(false);
        kvFaultInjection::Disarm();
    }

    void errorObjectProperties()
    {
        kvError error;
        error.setDescription(QStringLiteral("Überlauf"));
        error.setNumber(910);
        QCOMPARE(error.Description(), QStringLiteral("Überlauf"));
        QCOMPARE(error.Number(), qint16(910));
        QVERIFY(error.setProperty("Number", 600));
        QCOMPARE(error.property("Number").toInt(), 600);
        QCOMPARE(error.property("Description").toString(), QStringLiteral("Überlauf"));
    }

    void messageFormat()
    {
        QCOMPARE(kvErrorReporting::MessageText(600, QStringLiteral("no such table: Termine")),
                 QStringLiteral("kvKalivo-Fehlercode 600\r\nno such table: Termine"));
        QCOMPARE(kvErrorReporting::MessageTitle(), QStringLiteral("kvKalivo.ocx"));
    }

    // Edge case: with RaiseErrorEvent False a failing database update shows one message box
    // whose first line is "kvKalivo-Fehlercode 600" and whose second line is the database's
    // own description.
    void databaseFailureShowsOneMessageBox()
    {
        ControlOnSqlite calendar;
        const QString description = calendar.enginesDescription();
        QVERIFY(!description.isEmpty());
        ErrorCounter errors(calendar.control);
        m_messageBox.Clear();
        calendar.updateAppointment();
        QCOMPARE(m_messageBox.CallCount(), 1);
        const QStringList lines = m_messageBox.LastCall().prompt.split(QStringLiteral("\r\n"));
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines.at(0), QStringLiteral("kvKalivo-Fehlercode 600"));
        QCOMPARE(lines.at(1), description);
        QCOMPARE(m_messageBox.LastCall().title, QStringLiteral("kvKalivo.ocx"));
        QCOMPARE(m_messageBox.LastCall().buttons, 16);
        QCOMPARE(errors.count(), 0);
    }

    // Edge case: with RaiseErrorEvent True the same failure raises Error once with Number 600
    // and the database's description, and shows no box.
    void databaseFailureRaisesTheErrorEvent()
    {
        ControlOnSqlite calendar;
        const QString description = calendar.enginesDescription();
        calendar.control.setRaiseErrorEvent(true);
        QList<std::pair<int, QString>> received;
        kvError *receivedObject = nullptr;
        connect(&calendar.control, &kvKalivo::Error, this, [&](kvError &error) {
            received.append({error.Number(), error.Description()});
            receivedObject = &error;
        });
        m_messageBox.Clear();
        calendar.updateAppointment();
        QCOMPARE(received.size(), 1);
        QCOMPARE(received.at(0).first, 600);
        QCOMPARE(received.at(0).second, description);
        QCOMPARE(receivedObject, &kvError::ThreadInstance());
        QCOMPARE(m_messageBox.CallCount(), 0);
    }

    // Edge case: with RaiseErrorEvent True a failure inside a day cell produces neither a box
    // nor an event.
    void dayCellFailureIsSwallowedWhileRaisingEvents()
    {
        kvKalivo control;
        ErrorCounter errors(control);
        control.setRaiseErrorEvent(true);
        kvErrorReporting::ReportFromDayCell(200, QStringLiteral("Überlauf"));
        kvErrorReporting::ReportFromDayCell(100, QStringLiteral("Überlauf"));
        QCOMPARE(m_messageBox.CallCount(), 0);
        QCOMPARE(errors.count(), 0);
        control.setRaiseErrorEvent(false);
        kvErrorReporting::ReportFromDayCell(200, QStringLiteral("Überlauf"));
        QCOMPARE(m_messageBox.CallCount(), 1);
        QCOMPARE(m_messageBox.LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 200\r\nÜberlauf"));
    }

    void editorFailureAlwaysShowsTheBox()
    {
        kvErrorReporting::setRaiseErrorEvent(true);
        kvErrorReporting::ReportFromEditor(QStringLiteral("Typen unverträglich"));
        QCOMPARE(m_messageBox.CallCount(), 1);
        QCOMPARE(m_messageBox.LastCall().prompt,
                 QStringLiteral("kvKalivo-Fehlercode 1000\r\nTypen unverträglich"));
        QCOMPARE(m_messageBox.LastCall().buttons, 16);
    }

    void pendingCodeReportsWithoutDescription()
    {
        kvErrorReporting::ReportPendingCode(QStringLiteral("12-5\r\nno such table: Termine"), {});
        QCOMPARE(m_messageBox.LastCall().prompt,
                 QStringLiteral("kvKalivo-Fehlercode 12-5\r\nno such table: Termine"));

        kvErrorReporting::setRaiseErrorEvent(true);
        kvError::ThreadInstance().setDescription(QStringLiteral("old"));
        int raised = 0;
        kvErrorReporting::ReportPendingCode(QStringLiteral("12-9\r\nÜberlauf"), [&raised](kvError &error) {
            ++raised;
            QCOMPARE(error.Number(), qint16(12)); // VB's Val of the code text
            QCOMPARE(error.Description(), QString());
        });
        QCOMPARE(raised, 1);
        QCOMPARE(m_messageBox.CallCount(), 1);
    }

    // Edge case: RaiseErrorEvent on one control switches every control of the thread.
    void raiseErrorEventSwitchesEveryControlOfTheThread()
    {
        kvKalivo first;
        kvKalivo second;
        ErrorCounter secondErrors(second);
        first.setRaiseErrorEvent(true);
        QVERIFY(second.RaiseErrorEvent());
        kvFaultInjection::Arm(QStringLiteral("ArrangeGrid"), 0, QStringLiteral("Testfehler"));
        second.Refresh();
        QCOMPARE(secondErrors.count(), 1);
        QCOMPARE(m_messageBox.CallCount(), 0);

        bool otherThreadSees = true;
        std::thread other([&otherThreadSees] { otherThreadSees = kvErrorReporting::RaiseErrorEvent(); });
        other.join();
        QVERIFY(!otherThreadSees);
    }

    // Edge case: a failure at the very beginning of the grid arrangement reports 900; one at
    // its tenth stage reports 910.
    void gridArrangementStepCodes_data()
    {
        QTest::addColumn<int>("stage");
        QTest::addColumn<int>("code");
        QTest::newRow("beginning") << 0 << 900;
        QTest::newRow("weekday captions") << 5 << 905;
        QTest::newRow("week column") << 7 << 907;
        QTest::newRow("toolbar and captions") << 8 << 908;
        QTest::newRow("tenth stage") << 10 << 910;
    }
    void gridArrangementStepCodes()
    {
        QFETCH(int, stage);
        QFETCH(int, code);
        kvKalivo control;
        kvFaultInjection::Arm(QStringLiteral("ArrangeGrid"), stage, QStringLiteral("Testfehler"));
        control.Refresh();
        QCOMPARE(m_messageBox.CallCount(), 1);
        QCOMPARE(m_messageBox.LastCall().prompt,
                 QStringLiteral("kvKalivo-Fehlercode %1\r\nTestfehler").arg(code));

        control.setRaiseErrorEvent(true);
        ErrorCounter errors(control);
        kvFaultInjection::Arm(QStringLiteral("ArrangeGrid"), stage, QStringLiteral("Testfehler"));
        control.Refresh();
        QCOMPARE(errors.count(), 1);
        QCOMPARE(kvError::ThreadInstance().Number(), qint16(code));
        QCOMPARE(kvError::ThreadInstance().Description(), QStringLiteral("Testfehler"));
        QCOMPARE(m_messageBox.CallCount(), 1);
    }

    // A real failure: a control wider than 16-bit pixels overflows the cell-width arithmetic.
    void overflowInTheArrangementIsReportedNotThrown()
    {
        kvKalivo control;
        control.resize(40000, 300);
        control.Refresh();
        QCOMPARE(m_messageBox.CallCount(), 1);
        QCOMPARE(m_messageBox.LastCall().prompt, QStringLiteral("kvKalivo-Fehlercode 903\r\nÜberlauf"));
    }

    void stepCodesAreChecked16BitSums()
    {
        QCOMPARE(kvErrorReporting::StepCode(900, 10), qint16(910));
        QCOMPARE(kvErrorReporting::StepCode(13, 7), qint16(20));
        QCOMPARE(kvErrorReporting::StepCode(1500, 0), qint16(1500));
        bool overflowed = false;
        try {
            kvErrorReporting::StepCode(32767, 1);
        } catch (const kvRuntimeError &error) {
            overflowed = error.number() == 6;
        }
        QVERIFY(overflowed);
    }

    void describesEveryKindOfException()
    {
        auto describe = [](auto thrower) {
            try {
                thrower();
            } catch (...) {
                return kvErrorReporting::DescribeCurrentException();
            }
            return QString();
        };
        QCOMPARE(describe([] { throw kvRuntimeError(6, QStringLiteral("Überlauf")); }),
                 QStringLiteral("Überlauf"));
        QCOMPARE(describe([] { throw std::runtime_error("disk full"); }), QStringLiteral("disk full"));
        QCOMPARE(describe([] { throw 42; }), QStringLiteral("Unbekannter Fehler"));
    }
};

QTEST_MAIN(tst_kvErrorReporting)
#include "tst_kvErrorReporting.moc"
