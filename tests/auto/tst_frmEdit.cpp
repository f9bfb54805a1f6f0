#include "frmEdit.h"
#include "frmPicSelector.h"
#include "kvCountingBeep.h"
#include "kvFormat.h"
#include "kvScopedService.h"
#include "kvScriptedFileDialog.h"
#include "kvScriptedModalRunner.h"
#include "kvScriptedShell.h"
#include "kvTestSupport.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTabBar>
#include <QToolButton>
#include <QtTest>

#include <memory>

namespace {

using Action = kvScriptedModalRunner::Action;

//! The seven values exchanged with the editor.
struct Appointment
{
    kvDate begin;
    kvDate end;
    QString name;
    QString remark;
    qint16 imageId = 0;
    QString document;
    qint16 action = 0;
};

kvDate at(int year, int month, int day, int hour = 0, int minute = 0)
{
    return kvDate::fromDate(QDate(year, month, day), QTime(hour, minute));
}

frmEdit &editor()
{
    return frmEdit::ThreadInstance();
}

template <typename T>
T *child(const QString &name)
{
    return editor().findChild<T *>(name);
}

QComboBox *timeBegin() { return child<QComboBox>(QStringLiteral("cboTimeBegin")); }
QComboBox *timeEnd() { return child<QComboBox>(QStringLiteral("cboTimeEnd")); }
QPushButton *button(const char *name) { return child<QPushButton>(QString::fromLatin1(name)); }
QLineEdit *lineEdit(const char *name) { return child<QLineEdit>(QString::fromLatin1(name)); }
QPlainTextEdit *remarkBox() { return child<QPlainTextEdit>(QStringLiteral("txtRemark")); }
QLabel *imgIcon() { return child<QLabel>(QStringLiteral("ImgIcon")); }
QCheckBox *fullTime() { return child<QCheckBox>(QStringLiteral("chkFullTime")); }
QString iconTag() { return imgIcon()->property("Tag").toString(); }
bool iconShown()
{
    return !imgIcon()->pixmap().isNull();
}

//! Replaces the text of a time box by typing, as a user would.
void typeTime(QComboBox *box, const QString &text)
{
    box->lineEdit()->clear();
    QTest::keyClicks(box, text);
}

template <typename Edit>
void typeText(Edit *edit, const QString &text)
{
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

//! Brings the shown dialog to the front, so that focus changes happen as for a user.
bool activate(QDialog &dialog)
{
    dialog.activateWindow();
    return QTest::qWaitForWindowActive(&dialog);
}

//! Chooses entry \a text from the list of \a box, as a click in the drop-down list does.
bool pickFromList(QComboBox *box, const QString &text)
{
    const int index = box->findText(text);
    if (index < 0)
        return false;
    box->showPopup();
    QAbstractItemView *view = box->view();
    view->setCurrentIndex(box->model()->index(index, 0));
    QTest::keyClick(view, Qt::Key_Return);
    return box->currentText() == text;
}

int result(QDialog &dialog)
{
    return dialog.result();
}

Action clickOk()
{
    return [](QDialog &dialog) {
        QTest::mouseClick(button("cmdOK"), Qt::LeftButton);
        return result(dialog);
    };
}

//! Runs \a action, then OK.
Action thenOk(std::function<void(QDialog &)> action)
{
    return [action](QDialog &dialog) {
        action(dialog);
        if (dialog.isVisible())
            QTest::mouseClick(button("cmdOK"), Qt::LeftButton);
        return result(dialog);
    };
}

QString saveShot(const QString &name)
{
    const QString path = galleryFolder() + QStringLiteral("/frmEdit-") + name + QStringLiteral(".png");
    return editor().grab().save(path) ? path : QString();
}

} // namespace

class tst_frmEdit : public QObject
{
    Q_OBJECT

private:
    kvScriptedModalRunner m_runner;
    kvCountingBeep m_beep;
    kvScriptedShell m_shell;
    kvScriptedFileDialog m_fileDialog;
    std::unique_ptr<kvScopedService<kvScriptedModalRunner>> m_runnerInstalled;
    std::unique_ptr<kvScopedService<kvCountingBeep>> m_beepInstalled;
    std::unique_ptr<kvScopedService<kvScriptedShell>> m_shellInstalled;
    std::unique_ptr<kvScopedService<kvScriptedFileDialog>> m_fileDialogInstalled;

    //! The edit flow of Part 2.3: Reset, SetDateValues, modal show, GetDateValues.
    //! \a nested are the actions of dialogs the editor opens (the picker), in order.
    Appointment run(const Appointment &in, Action action, Appointment out = {},
                    QList<Action> nested = {})
    {
        frmPicSelector::ThreadInstance().Reset();
        editor().SetDateValues(in.begin, in.end, in.name, in.remark, in.imageId, in.document,
                               in.action);
        m_runner.Enqueue(std::move(action));
        for (Action &next : nested)
            m_runner.Enqueue(std::move(next));
        kvPlatform::modalRunner().Exec(editor());
        out.action = in.action;
        editor().GetDateValues(out.begin, out.end, out.name, out.remark, out.imageId,
                               out.document, out.action);
        return out;
    }

    static Appointment existing()
    {
        return { at(2026, 11, 15, 9, 0), at(2026, 11, 15, 10, 30), QStringLiteral("Zahnarzt"),
                 QStringLiteral("Kontrolle"), 0, QString(), 3 };
    }

    static Appointment sentinel()
    {
        return { at(2000, 1, 1, 1, 1), at(2000, 1, 1, 2, 2), QStringLiteral("unberührt"),
                 QStringLiteral("unberührt"), 99, QStringLiteral("unberührt"), 0 };
    }

    static void verifyUntouched(const Appointment &out)
    {
        const Appointment s = sentinel();
        QCOMPARE(out.begin, s.begin);
        QCOMPARE(out.end, s.end);
        QCOMPARE(out.name, s.name);
        QCOMPARE(out.remark, s.remark);
        QCOMPARE(out.imageId, s.imageId);
        QCOMPARE(out.document, s.document);
    }

private slots:
    void init()
    {
        m_runner.Clear();
        m_beep.Reset();
        m_shell.Clear();
        m_fileDialog.Clear();
        m_runnerInstalled = std::make_unique<kvScopedService<kvScriptedModalRunner>>(m_runner);
        m_beepInstalled = std::make_unique<kvScopedService<kvCountingBeep>>(m_beep);
        m_shellInstalled = std::make_unique<kvScopedService<kvScriptedShell>>(m_shell);
        m_fileDialogInstalled = std::make_unique<kvScopedService<kvScriptedFileDialog>>(m_fileDialog);
    }

    void cleanup()
    {
        QCOMPARE(m_runner.PendingActions(), 0);
        m_runnerInstalled.reset();
        m_beepInstalled.reset();
        m_shellInstalled.reset();
        m_fileDialogInstalled.reset();
    }

    void controlsCarryTheirNamesAndCaptions()
    {
        const QList<QPair<const char *, const char *>> labels = {
            { "Label1", "Kontakt / Ereignis" }, { "Label4", "Beginnt" }, { "Label6", "Endet" },
            { "Label2", "Ganztägig" }, { "Label3", "Bemerkung" },
            { "lblDocument", "Dokumentverknüpfung" }, { "lblIcon", "Icon" }
        };
        for (const auto &[name, caption] : labels) {
            QLabel *label = child<QLabel>(QString::fromLatin1(name));
            QVERIFY2(label, name);
            QCOMPARE(label->text(), QString::fromUtf8(caption));
        }
        const QList<QPair<const char *, const char *>> buttons = {
            { "cmdDocumentBrowser", "..." }, { "cmdOpenDocument", "Öffnen" }, { "cmdEdit", "..." },
            { "cmdDeleteIcon", "" }, { "cmdDelete", "Löschen" }, { "cmdOK", "OK" },
            { "CancelButton", "Abbrechen" }
        };
        for (const auto &[name, caption] : buttons) {
            QVERIFY2(button(name), name);
            QCOMPARE(button(name)->text(), QString::fromUtf8(caption));
        }
        for (const char *name : { "txtName", "txtDocument" })
            QVERIFY2(lineEdit(name), name);
        QVERIFY(remarkBox());
        QCOMPARE(remarkBox()->width(), 377);
        for (QComboBox *box : { timeBegin(), timeEnd() })
            QVERIFY(box && box->isEditable());
        for (const char *name : { "DTPickerBegin", "DTPickerEnd" }) {
            QDateEdit *picker = child<QDateEdit>(QString::fromLatin1(name));
            QVERIFY2(picker && picker->calendarPopup(), name);
        }
        QVERIFY(fullTime());
        QVERIFY(imgIcon());
        QVERIFY(imgIcon()->property("Tag").isValid());
        QVERIFY(child<QStatusBar>(QStringLiteral("StatusBar")));
        QMenu *menu = child<QMenu>(QStringLiteral("Kontextmenü"));
        QVERIFY(menu);
        QCOMPARE(menu->actions().size(), 2);
        QCOMPARE(menu->actions().at(0)->text(), QStringLiteral("Icon ändern..."));
        QCOMPARE(menu->actions().at(0)->objectName(), QStringLiteral("Kontext0"));
        QCOMPARE(menu->actions().at(1)->text(), QStringLiteral("Icon löschen"));
        QCOMPARE(menu->actions().at(1)->objectName(), QStringLiteral("Kontext1"));
    }

    void oneEditorPerThreadKeptBetweenUses()
    {
        frmEdit *first = &editor();
        run(existing(), kvScriptedModalRunner::Reject());
        QVERIFY(!editor().isVisible());
        QCOMPARE(&editor(), first);
        QCOMPARE(m_runner.DialogNames(), QStringList { QStringLiteral("frmEdit") });
    }

    void setDateValuesShowsTheAppointment()
    {
        Appointment in = existing();
        in.document = QStringLiteral("/tmp/brief.txt");
        in.imageId = 23;
        editor().SetDateValues(in.begin, in.end, in.name, in.remark, in.imageId, in.document, 3);
        QCOMPARE(editor().windowTitle(), QStringLiteral("15.11.2026, Sonntag"));
        QCOMPARE(lineEdit("txtName")->text(), QStringLiteral("Zahnarzt"));
        QCOMPARE(remarkBox()->toPlainText(), QStringLiteral("Kontrolle"));
        QCOMPARE(lineEdit("txtDocument")->text(), QStringLiteral("/tmp/brief.txt"));
        QCOMPARE(timeBegin()->currentText(), QStringLiteral("09:00"));
        QCOMPARE(timeEnd()->currentText(), QStringLiteral("10:30"));
        QCOMPARE(child<QDateEdit>(QStringLiteral("DTPickerBegin"))->date(), QDate(2026, 11, 15));
        QCOMPARE(iconTag(), QStringLiteral("23"));
        QCOMPARE(editor().IconListIndex(), qint16(24));
        QVERIFY(iconShown());
        QVERIFY(button("cmdDelete")->isEnabled());
        QVERIFY(!fullTime()->isChecked());
        QVERIFY(timeBegin()->isEnabled() && timeEnd()->isEnabled());
        QCOMPARE(editor().LastBeginTime(), 9 * 60);
    }

    // Edge case: a new appointment comes back with 1 and all values when OK was pressed.
    void newAppointmentReturnsAllValues()
    {
        const Appointment in { at(2026, 11, 15, 14, 0), at(2026, 11, 15, 15, 0),
                               QStringLiteral("Termin"), QStringLiteral("r"), 0,
                               QStringLiteral("d.txt"), 1 };
        const Appointment out = run(in, clickOk(), sentinel());
        QCOMPARE(out.action, qint16(1));
        QCOMPARE(out.begin, in.begin);
        QCOMPARE(out.end, in.end);
        QCOMPARE(out.name, in.name);
        QCOMPARE(out.remark, in.remark);
        QCOMPARE(out.imageId, qint16(0));
        QCOMPARE(out.document, in.document);
    }

    // The flow's new appointment: ActualDate at midnight (full day), empty name.
    void newAppointmentNeedsAName()
    {
        const Appointment in { at(2026, 11, 15), at(2026, 11, 15), {}, {}, 0, {}, 1 };
        bool refused = false;
        QString message;
        bool focusOnName = false;
        const Appointment out = run(in, thenOk([&](QDialog &dialog) {
            activate(dialog);
            QTest::mouseClick(button("cmdOK"), Qt::LeftButton);
            refused = dialog.isVisible();
            message = editor().StatusText();
            focusOnName = QApplication::focusWidget() == lineEdit("txtName");
            QTest::keyClicks(lineEdit("txtName"), QStringLiteral("Urlaub"));
        }));
        QVERIFY(refused);
        QCOMPARE(message, QStringLiteral("Kontakt/Ereignis fehlt!"));
        QVERIFY(focusOnName);
        QCOMPARE(out.action, qint16(1));
        QCOMPARE(out.name, QStringLiteral("Urlaub"));
        QCOMPARE(out.begin, at(2026, 11, 15));
        QCOMPARE(out.end, at(2026, 11, 15));
        QVERIFY(!button("cmdDelete")->isEnabled());
    }

    // Edge case: an unchanged existing appointment gives 0 and leaves the values untouched.
    void unchangedExistingAppointmentGivesNothing()
    {
        const Appointment out = run(existing(), clickOk(), sentinel());
        QCOMPARE(out.action, qint16(0));
        verifyUntouched(out);
    }

    // Edge case: an unchanged full-day appointment counts as changed (1 is not -1).
    void unchangedFullDayAppointmentGivesUpdate()
    {
        const Appointment in { at(2026, 12, 24), at(2026, 12, 27), QStringLiteral("Urlaub"),
                               {}, 0, {}, 3 };
        bool checked = false;
        bool timesDisabled = false;
        const Appointment out = run(in, [&](QDialog &dialog) {
            checked = fullTime()->isChecked();
            timesDisabled = !timeBegin()->isEnabled() && !timeEnd()->isEnabled();
            QTest::mouseClick(button("cmdOK"), Qt::LeftButton);
            return result(dialog);
        }, sentinel());
        QVERIFY(checked);
        QVERIFY(timesDisabled);
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.begin, in.begin);
        QCOMPARE(out.end, in.end);
        QCOMPARE(out.name, in.name);
        QCOMPARE(out.remark, QString());
    }

    void changedFieldGivesUpdate()
    {
        const Appointment out = run(existing(), thenOk([](QDialog &) {
            typeText(remarkBox(), QStringLiteral("Fuellung"));
        }), sentinel());
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.remark, QStringLiteral("Fuellung"));
        QCOMPARE(out.name, QStringLiteral("Zahnarzt"));
        QCOMPARE(out.begin, at(2026, 11, 15, 9, 0));
        QCOMPARE(out.end, at(2026, 11, 15, 10, 30));
    }

    void textsTheUserDidNotChangeComeBackWhole_data()
    {
        QTest::addColumn<QString>("changed");   // the field typed into, or none
        QTest::addColumn<qint16>("action");
        QTest::newRow("nothing changed") << QString() << qint16(0);
        QTest::newRow("begin time changed") << QStringLiteral("cboTimeBegin") << qint16(3);
        QTest::newRow("remark changed") << QStringLiteral("txtRemark") << qint16(3);
    }
    void textsTheUserDidNotChangeComeBackWhole()
    {
        QFETCH(QString, changed);
        QFETCH(qint16, action);
        Appointment in = existing();
        in.name = QString(40'000, u'N');
        in.remark = QStringLiteral("Erste Zeile\r\nzweite\r\n") + QString(1'000'000, u'x');
        in.document = QStringLiteral("/tmp/") + QString(40'000, u'd');
        const Appointment out = run(in, thenOk([&](QDialog &) {
            if (changed == QLatin1String("cboTimeBegin"))
                typeTime(timeBegin(), QStringLiteral("09:30"));
            else if (changed == QLatin1String("txtRemark"))
                typeText(remarkBox(), QStringLiteral("neu"));
        }), sentinel());
        QCOMPARE(out.action, action);
        if (action == 0)
            return verifyUntouched(out);
        QVERIFY(out.name == in.name);
        QVERIFY(out.document == in.document);
        QVERIFY(out.remark == (changed == QLatin1String("txtRemark") ? QStringLiteral("neu") : in.remark));
    }

    void remarkOfSeveralLinesIsEditedOnSeveralLines()
    {
        Appointment in = existing();
        in.remark = QStringLiteral("Kontrolle\r\nBonusheft mitnehmen!");
        int linesShown = 0;
        bool stillOpen = false;
        const Appointment out = run(in, thenOk([&](QDialog &dialog) {
            linesShown = remarkBox()->document()->blockCount();
            const int lineHeight = remarkBox()->fontMetrics().lineSpacing();
            QVERIFY(remarkBox()->viewport()->height() >= 3 * lineHeight);
            remarkBox()->moveCursor(QTextCursor::End);
            QTest::keyClick(remarkBox(), Qt::Key_Return);   // a new line, not OK
            QTest::keyClicks(remarkBox(), QStringLiteral("Rechnung mitbringen"));
            stillOpen = dialog.isVisible();
        }), sentinel());
        QCOMPARE(linesShown, 2);
        QVERIFY(stillOpen);
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.remark, QStringLiteral("Kontrolle\r\nBonusheft mitnehmen!\r\nRechnung mitbringen"));
    }

    // Edge case: Delete gives 2 even after edits; a new appointment cannot be deleted.
    void deleteGivesTwoEvenAfterEdits()
    {
        const Appointment out = run(existing(), [](QDialog &dialog) {
            typeText(lineEdit("txtName"), QStringLiteral("anders"));
            QTest::mouseClick(button("cmdDelete"), Qt::LeftButton);
            return result(dialog);
        }, sentinel());
        QCOMPARE(out.action, qint16(2));
        verifyUntouched(out);

        Appointment fresh = existing();
        fresh.action = 1;
        bool deleteEnabled = true;
        run(fresh, [&](QDialog &dialog) {
            deleteEnabled = button("cmdDelete")->isEnabled();
            QTest::mouseClick(button("CancelButton"), Qt::LeftButton);
            return result(dialog);
        });
        QVERIFY(!deleteEnabled);
    }

    void setDateValuesClearsDeleteRequested()
    {
        run(existing(), [](QDialog &dialog) {
            QTest::mouseClick(button("cmdDelete"), Qt::LeftButton);
            return result(dialog);
        });
        editor().SetDateValues(at(2026, 1, 1, 8, 0), at(2026, 1, 1, 9, 0), QStringLiteral("x"),
                               {}, 0, {}, 3);
        QVERIFY(!editor().DeleteRequested());
    }

    // Edge case: Cancel or the close box gives 0 whatever else happened.
    void cancelAndCloseBoxGiveNothing_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("Abbrechen") << 0;
        QTest::newRow("close box") << 1;
        QTest::newRow("Esc") << 2;
    }

    void cancelAndCloseBoxGiveNothing()
    {
        QFETCH(int, way);
        for (const qint16 action : { qint16(1), qint16(3) }) {
            Appointment in = existing();
            in.action = action;
            const Appointment out = run(in, [way](QDialog &dialog) {
                typeText(lineEdit("txtName"), QStringLiteral("geaendert"));
                QTest::mouseClick(fullTime(), Qt::LeftButton);
                if (way == 0)
                    QTest::mouseClick(button("CancelButton"), Qt::LeftButton);
                else if (way == 1)
                    dialog.close();
                else
                    QTest::keyClick(&dialog, Qt::Key_Escape);
                return result(dialog);
            }, sentinel());
            QCOMPARE(out.action, qint16(0));
            verifyUntouched(out);
            QVERIFY(!editor().isVisible());
            QVERIFY(!editor().Cancelled());
            QVERIFY(frmEdit::HasThreadInstance());
        }
    }

    // Edge case: begin 10:00 and end 10:00 is accepted; end 09:59 is refused.
    void equalBeginAndEndAccepted()
    {
        const Appointment in { at(2026, 11, 16, 10, 0), at(2026, 11, 16, 11, 0),
                               QStringLiteral("Kurz"), {}, 0, {}, 3 };
        const Appointment out = run(in, thenOk([](QDialog &) {
            typeTime(timeEnd(), QStringLiteral("10:00"));
        }));
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.begin, at(2026, 11, 16, 10, 0));
        QCOMPARE(out.end, at(2026, 11, 16, 10, 0));
    }

    void endBeforeBeginRefused()
    {
        const Appointment in { at(2026, 11, 16, 10, 0), at(2026, 11, 16, 11, 0),
                               QStringLiteral("Kurz"), {}, 0, {}, 3 };
        bool refused = false;
        QString message;
        bool focusOnEndDate = false;
        const Appointment out = run(in, [&](QDialog &dialog) {
            activate(dialog);
            timeEnd()->setFocus();
            typeTime(timeEnd(), QStringLiteral("09:59"));
            // Enter presses OK without leaving the box (leaving it would correct the begin).
            QTest::keyClick(timeEnd(), Qt::Key_Return);
            refused = dialog.isVisible();
            message = editor().StatusText();
            focusOnEndDate = QApplication::focusWidget() == child<QDateEdit>(QStringLiteral("DTPickerEnd"));
            QTest::mouseClick(button("CancelButton"), Qt::LeftButton);
            return result(dialog);
        });
        QVERIFY(refused);
        QCOMPARE(message, QStringLiteral("Das 'Endet'-Datum darf nicht vor dem 'Beginnt'-Datum liegen!"));
        QVERIFY(focusOnEndDate);
        QCOMPARE(out.action, qint16(0));
    }

    // Leaving the end box with an end before the begin: the box just left wins.
    void leavingEndBoxMovesBegin()
    {
        QString begin;
        run(existing(), [&](QDialog &dialog) {
            activate(dialog);
            timeEnd()->setFocus();
            typeTime(timeEnd(), QStringLiteral("08:15"));
            QTest::keyClick(timeEnd(), Qt::Key_Tab);
            begin = timeBegin()->currentText();
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(begin, QStringLiteral("08:15"));
        QCOMPARE(m_beep.Count(), 0);
    }

    // Edge case: 25:00 in the begin box beeps, shows the message and keeps the focus.
    void invalidBeginTimeKeepsFocus()
    {
        QString message;
        QString shot;
        QWidget *focusAfter = nullptr;
        run(existing(), [&](QDialog &dialog) {
            activate(dialog);
            timeBegin()->setFocus();
            typeTime(timeBegin(), QStringLiteral("25:00"));
            QTest::keyClick(timeBegin(), Qt::Key_Tab);
            QTest::qWait(20);
            message = editor().StatusText();
            focusAfter = QApplication::focusWidget();
            shot = saveShot(QStringLiteral("validation"));
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(m_beep.Count(), 1);
        QCOMPARE(message, QStringLiteral("'Beginnt' hat keine gütiges Datum/Zeit Format!"));
        QCOMPARE(focusAfter, static_cast<QWidget *>(timeBegin()));
        QVERIFY(!shot.isEmpty());
    }

    void invalidEndTimeKeepsFocus()
    {
        QString message;
        QWidget *focusAfter = nullptr;
        run(existing(), [&](QDialog &dialog) {
            activate(dialog);
            timeEnd()->setFocus();
            typeTime(timeEnd(), QStringLiteral("abc"));
            QTest::keyClick(timeEnd(), Qt::Key_Backtab);
            QTest::qWait(20);
            message = editor().StatusText();
            focusAfter = QApplication::focusWidget();
            // A valid time then clears the message when the box is left.
            typeTime(timeEnd(), QStringLiteral("11:00"));
            QTest::keyClick(timeEnd(), Qt::Key_Tab);
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(m_beep.Count(), 1);
        QCOMPARE(message, QStringLiteral("'Endet' hat keine gütiges Datum/Zeit Format!"));
        QCOMPARE(focusAfter, static_cast<QWidget *>(timeEnd()));
        QCOMPARE(editor().StatusText(), QString());
        QVERIFY(!editor().StatusPanelStyle());
    }

    void okChecksTheTimesFirst()
    {
        QString first;
        QString second;
        run(existing(), [&](QDialog &dialog) {
            timeBegin()->setEditText(QStringLiteral("x"));
            timeEnd()->setEditText(QStringLiteral("y"));
            button("cmdOK")->click();
            first = editor().StatusText();
            timeBegin()->setEditText(QStringLiteral("09:00"));
            button("cmdOK")->click();
            second = editor().StatusText();
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(first, QStringLiteral("'Beginnt' hat keine gütiges Datum/Zeit Format!"));
        QCOMPARE(second, QStringLiteral("'Endet' hat keine gütiges Datum/Zeit Format!"));
    }

    // A typed begin time that matches a list entry is still typed: leaving the box only
    // moves an earlier end up to it; the duration is kept only for a pick from the list.
    void typedBeginTimeOnlyValidates_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("begin");
        QTest::addColumn<QString>("end");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("leaveWith");
        QTest::addColumn<QString>("expectedEnd");
        const auto row = [](const char *name, int action, const char *begin, const char *end,
                            const char *typed, Qt::Key leaveWith, const char *expectedEnd) {
            QTest::newRow(name) << action << QString::fromLatin1(begin) << QString::fromLatin1(end)
                                << QString::fromLatin1(typed) << int(leaveWith)
                                << QString::fromLatin1(expectedEnd);
        };
        row("all day, 18:00, Tab", 3, "00:00", "00:00", "18:00", Qt::Key_Tab, "18:00");
        row("new, 09:00, Tab", 1, "00:00", "00:00", "09:00", Qt::Key_Tab, "09:00");
        row("end still later, Backtab", 3, "09:00", "10:30", "10:00", Qt::Key_Backtab, "10:30");
    }

    void typedBeginTimeOnlyValidates()
    {
        QFETCH(int, action);
        QFETCH(QString, begin);
        QFETCH(QString, end);
        QFETCH(QString, typed);
        QFETCH(int, leaveWith);
        QFETCH(QString, expectedEnd);
        const QTime beginTime = QTime::fromString(begin, QStringLiteral("hh:mm"));
        const QTime endTime = QTime::fromString(end, QStringLiteral("hh:mm"));
        Appointment in = existing();
        in.action = qint16(action);
        in.begin = at(2026, 11, 23, beginTime.hour(), beginTime.minute());
        in.end = at(2026, 11, 23, endTime.hour(), endTime.minute());
        QString endShown;
        int lastBegin = -1;
        run(in, [&](QDialog &dialog) {
            activate(dialog);
            fullTime()->setChecked(false);
            timeBegin()->setFocus();
            typeTime(timeBegin(), typed);
            QTest::keyClick(timeBegin(), Qt::Key(leaveWith));
            endShown = timeEnd()->currentText();
            lastBegin = editor().LastBeginTime();
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(endShown, expectedEnd);
        QCOMPARE(lastBegin, beginTime.hour() * 60 + beginTime.minute()); // as loaded
    }

    // Edge case: with 09:00 to 10:30, picking 11:00 as begin gives end 12:30.
    void pickingBeginKeepsDuration()
    {
        bool picked = false;
        const Appointment out = run(existing(), thenOk([&](QDialog &) {
            picked = pickFromList(timeBegin(), QStringLiteral("11:00"));
        }));
        QVERIFY(picked);
        QCOMPARE(timeEnd()->currentText(), QStringLiteral("12:30"));
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.begin, at(2026, 11, 15, 11, 0));
        QCOMPARE(out.end, at(2026, 11, 15, 12, 30));
    }

    void durationWrapsPastMidnightWithoutChangingTheDate()
    {
        Appointment in = existing();
        in.begin = at(2026, 11, 15, 9, 0);
        in.end = at(2026, 11, 16, 11, 0);
        QString end1;
        QString end2;
        run(in, [&](QDialog &dialog) {
            pickFromList(timeBegin(), QStringLiteral("23:00"));
            end1 = timeEnd()->currentText();
            pickFromList(timeBegin(), QStringLiteral("22:00"));
            end2 = timeEnd()->currentText();
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(end1, QStringLiteral("01:00"));
        QCOMPARE(end2, QStringLiteral("00:00"));
        QCOMPARE(child<QDateEdit>(QStringLiteral("DTPickerEnd"))->date(), QDate(2026, 11, 16));
    }

    void pickingEarlierEndMovesBegin()
    {
        QString begin;
        int last = 0;
        run(existing(), [&](QDialog &dialog) {
            pickFromList(timeEnd(), QStringLiteral("08:00"));
            begin = timeBegin()->currentText();
            last = editor().LastBeginTime();
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(begin, QStringLiteral("08:00"));
        QCOMPARE(last, 8 * 60);
    }

    void datePickersCorrectAndWarn()
    {
        QDate endDate;
        QString endTime;
        QString warning;
        run(existing(), [&](QDialog &dialog) {
            auto *begin = child<QDateEdit>(QStringLiteral("DTPickerBegin"));
            auto *end = child<QDateEdit>(QStringLiteral("DTPickerEnd"));
            timeEnd()->setEditText(QStringLiteral("08:00"));  // end now before begin on one day
            begin->setDate(QDate(2026, 11, 20));
            endDate = end->date();
            endTime = timeEnd()->currentText();
            end->setDate(QDate(2026, 11, 19));
            warning = editor().StatusText();
            end->setDate(QDate(2026, 11, 21));
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(endDate, QDate(2026, 11, 20));
        QCOMPARE(endTime, QStringLiteral("09:00"));
        QCOMPARE(warning, QStringLiteral("Das eingegebene Datum liegt vor dem Beginn!"));
        QCOMPARE(editor().StatusText(), QString());
    }

    // Edge case: with full day checked, both dates come back at 00:00.
    void fullDayReturnsMidnight()
    {
        bool disabled = false;
        const Appointment out = run(existing(), thenOk([&](QDialog &) {
            QTest::mouseClick(fullTime(), Qt::LeftButton);
            disabled = !timeBegin()->isEnabled() && !timeEnd()->isEnabled();
        }));
        QVERIFY(disabled);
        QCOMPARE(timeBegin()->currentText(), QStringLiteral("09:00"));
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.begin, at(2026, 11, 15));
        QCOMPARE(out.end, at(2026, 11, 15));
    }

    void fullDayScreenshot()
    {
        const Appointment in { at(2026, 12, 24), at(2026, 12, 26), QStringLiteral("Weihnachtsurlaub"),
                               QStringLiteral("Bei den Eltern"), 0, {}, 3 };
        QString shot;
        run(in, [&](QDialog &dialog) {
            shot = saveShot(QStringLiteral("fullday"));
            dialog.reject();
            return result(dialog);
        });
        QVERIFY(!shot.isEmpty());
    }

    // Edge case: ImageID 5 shows no icon, returns 5 untouched, 0 after "Icon löschen".
    void imageIdBelowElevenKeptUnlessDeleted()
    {
        Appointment in = existing();
        in.imageId = 5;
        bool shown = true;
        Appointment out = run(in, thenOk([&](QDialog &) {
            shown = iconShown();
            typeText(lineEdit("txtName"), QStringLiteral("Zahnarzt Dr. M"));
        }));
        QVERIFY(!shown);
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.imageId, qint16(5));

        bool menuShown = false;
        out = run(in, thenOk([&](QDialog &dialog) {
            activate(dialog);
            QTest::mouseClick(imgIcon(), Qt::RightButton);
            QMenu *menu = child<QMenu>(QStringLiteral("Kontextmenü"));
            menuShown = menu->isVisible();
            menu->actions().at(1)->trigger();
            menu->hide();
        }));
        QVERIFY(menuShown);
        QCOMPARE(iconTag(), QStringLiteral("0"));
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.imageId, qint16(0));
    }

    void chooseIconThroughThePicker()
    {
        QPoint pickerOffset;
        QPoint expectedOffset;
        const Action choose = [&](QDialog &picker) {
            auto &selector = static_cast<frmPicSelector &>(picker);
            pickerOffset = picker.pos() - editor().pos();
            const QRect icon = imgIcon()->geometry();
            expectedOffset = QPoint(icon.right() + 1 + 5, icon.top() - 3);
            selector.TabStrip()->setCurrentIndex(1);
            for (QToolButton *picture : selector.PicContainer()(2)->findChildren<QToolButton *>()) {
                if (picture->property("Tag").toString() == QStringLiteral("2_3"))
                    picture->click();
            }
            return picker.result();
        };
        const Appointment out = run(existing(), thenOk([](QDialog &) {
            QTest::mouseClick(button("cmdEdit"), Qt::LeftButton);
        }), {}, { choose });
        QCOMPARE(m_runner.DialogNames().last(), QStringLiteral("frmPicSelector"));
        QCOMPARE(pickerOffset, expectedOffset);
        QCOMPARE(iconTag(), QStringLiteral("23"));
        QCOMPARE(editor().IconListIndex(), qint16(24));
        QVERIFY(iconShown());
        QCOMPARE(out.action, qint16(3));
        QCOMPARE(out.imageId, qint16(23));
    }

    void pickerClosedWithoutChoiceKeepsIcon()
    {
        Appointment in = existing();
        in.imageId = 11;
        const Appointment out = run(in, thenOk([](QDialog &) {
            QTest::mouseClick(imgIcon(), Qt::LeftButton);  // a left click chooses too
        }), sentinel(), { kvScriptedModalRunner::Reject() });
        QCOMPARE(m_runner.ExecCount(), 2);
        QCOMPARE(iconTag(), QStringLiteral("11"));
        QVERIFY(iconShown());
        QCOMPARE(out.action, qint16(0));
    }

    void documentBrowserUsesTheSevenPieceFilter()
    {
        m_fileDialog.EnqueuePath(QStringLiteral("/home/anna/Brief.doc"));
        const Appointment out = run(existing(), thenOk([](QDialog &) {
            QTest::mouseClick(button("cmdDocumentBrowser"), Qt::LeftButton);
            QTest::mouseClick(button("cmdDocumentBrowser"), Qt::LeftButton);  // cancelled
        }));
        QCOMPARE(m_fileDialog.CallCount(), 2);
        const kvScriptedFileDialog::Call call = m_fileDialog.Calls().first();
        QCOMPARE(call.title, QStringLiteral("Öffnen"));
        QCOMPARE(call.vbFilter,
                 QStringLiteral("Alle Dateien (*.*)|*.*|Word-Dokumente (*.doc)|*.doc|"
                                "HTML-Dokumente(*.htm, *.html)|*.htm*|Excel-Dokumente (*.xls)|*.xls|"
                                "Textdateien (*.txt)|*.txt|Rich Text Format(*.rtf)|*.rtf|"
                                "Stapelverarbeitungsdateien (*.bat, *.cmd)|*.bat;*.cmd"));
        QCOMPARE(call.parent.data(), static_cast<QWidget *>(&editor()));
        QCOMPARE(out.document, QStringLiteral("/home/anna/Brief.doc"));
    }

    // Edge case: no associated program brings up the chooser; a missing file shows the message.
    void openingTheDocument()
    {
        Appointment in = existing();
        in.document = QStringLiteral("/home/anna/plan.xyz");
        QString afterNoAssociation;
        QString afterMissing;
        QString afterOpened;
        m_shell.EnqueueResult(kvShell::NoAssociation);
        m_shell.EnqueueResult(kvShell::FileNotFound);
        m_shell.EnqueueResult(kvShell::Opened);
        run(in, [&](QDialog &dialog) {
            QTest::mouseClick(button("cmdOpenDocument"), Qt::LeftButton);
            afterNoAssociation = editor().StatusText();
            QTest::mouseClick(button("cmdOpenDocument"), Qt::LeftButton);
            afterMissing = editor().StatusText();
            QTest::mouseClick(button("cmdOpenDocument"), Qt::LeftButton);
            afterOpened = editor().StatusText();
            lineEdit("txtDocument")->clear();
            QTest::mouseClick(button("cmdOpenDocument"), Qt::LeftButton);  // empty: nothing
            dialog.reject();
            return result(dialog);
        });
        QCOMPARE(m_shell.OpenedPaths().size(), 3);
        QCOMPARE(m_shell.OpenWithPaths(), QStringList { in.document });
        QCOMPARE(afterNoAssociation, QString());
        QCOMPARE(afterMissing, QStringLiteral("Beim Öffnen des Dokuments trat ein Fehler auf!"));
        QCOMPARE(afterOpened, QString());
    }

    // Edge case: the lists grow by 47 entries on every load; a second opening shows each twice.
    void timeListsGrowOnEveryLoad()
    {
        editor().QueryUnload(frmEdit::UnloadModeOwner);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!frmEdit::HasThreadInstance());
        QVERIFY(!frmPicSelector::HasThreadInstance());

        QCOMPARE(timeBegin()->currentText(), QStringLiteral("00:00"));
        QCOMPARE(timeBegin()->count(), 0);
        run(existing(), kvScriptedModalRunner::Reject());
        QCOMPARE(timeBegin()->count(), 47);
        QCOMPARE(timeBegin()->itemText(0), QStringLiteral("00:30"));
        QCOMPARE(timeBegin()->itemText(46), QStringLiteral("23:30"));
        QCOMPARE(timeBegin()->findText(QStringLiteral("00:00")), -1);
        QCOMPARE(timeBegin()->currentText(), QStringLiteral("09:00"));
        run(existing(), kvScriptedModalRunner::Reject());
        for (QComboBox *box : { timeBegin(), timeEnd() }) {
            QCOMPARE(box->count(), 94);
            int elevens = 0;
            for (int i = 0; i < box->count(); ++i)
                elevens += box->itemText(i) == QStringLiteral("11:00") ? 1 : 0;
            QCOMPARE(elevens, 2);
        }
        QCOMPARE(timeEnd()->currentText(), QStringLiteral("10:30"));
    }

    void closeBoxHidesAndKeepsTheForm()
    {
        frmEdit *form = &editor();
        QVERIFY(form->QueryUnload(frmEdit::UnloadModeControlMenu));
        QVERIFY(form->Cancelled());
        qint16 action = 3;
        kvDate b, e;
        QString n, r, d;
        qint16 id = 0;
        form->GetDateValues(b, e, n, r, id, d, action);
        QCOMPARE(action, qint16(0));
        QCOMPARE(&editor(), form);
    }

    void screenshots()
    {
        QString shot;
        run({ at(2026, 11, 15), at(2026, 11, 15), {}, {}, 0, {}, 1 }, [&](QDialog &dialog) {
            shot = saveShot(QStringLiteral("new"));
            dialog.reject();
            return result(dialog);
        });
        QVERIFY(!shot.isEmpty());
        Appointment in = existing();
        in.imageId = 23;
        in.remark = QStringLiteral("Kontrolle und Zahnreinigung\nBonusheft mitnehmen!");
        in.document = QStringLiteral("/home/anna/Dokumente/Zahnarzt-Rechnung.pdf");
        run(in, [&](QDialog &dialog) {
            shot = saveShot(QStringLiteral("existing"));
            dialog.reject();
            return result(dialog);
        });
        QVERIFY(!shot.isEmpty());
    }
};

QTEST_MAIN(tst_frmEdit)
#include "tst_frmEdit.moc"
