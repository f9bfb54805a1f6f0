#include "frmEdit.h"
#include "frmPicSelector.h"
#include "kvCountingBeep.h"
#include "kvScopedService.h"
#include "kvScriptedFileDialog.h"
#include "kvScriptedModalRunner.h"
#include "kvScriptedShell.h"

#include <QtTest>
#include <QtWidgets>

namespace {

using Action = kvScriptedModalRunner::Action;
using Step = std::function<void(QDialog &)>;

//! The seven values exchanged with the editor.
struct Appointment { kvDate begin, end; QString name, remark; qint16 imageId = 0; QString document; qint16 action = 0; };
//! What QCOMPARE shows of an appointment: the texts by their hash, as they may be a megabyte long.
auto compared(const Appointment &a)
{
    return std::tuple(a.action, a.begin.days(), a.end.days(), qHash(a.name), qHash(a.remark), qHash(a.document), a.imageId);
}

kvDate at(int y, int m, int d, int hour = 0, int minute = 0) { return kvDate::fromDate(QDate(y, m, d), QTime(hour, minute)); }

frmEdit &editor() { return frmEdit::ThreadInstance(); }
template <typename T> T *child(const char *name) { return editor().findChild<T *>(QString::fromUtf8(name)); }
QComboBox *timeBegin() { return child<QComboBox>("cboTimeBegin"); }
QComboBox *timeEnd() { return child<QComboBox>("cboTimeEnd"); }
QPushButton *button(const char *name) { return child<QPushButton>(name); }
QLineEdit *nameBox() { return child<QLineEdit>("txtName"); }
QPlainTextEdit *remarkBox() { return child<QPlainTextEdit>("txtRemark"); }
QLabel *imgIcon() { return child<QLabel>("ImgIcon"); }
bool iconShown() { return !imgIcon()->pixmap().isNull(); }

Appointment existing(qint16 action = 3) { return { at(2026, 11, 15, 9), at(2026, 11, 15, 10, 30), "Zahnarzt", "Kontrolle", 0, {}, action }; }
//! What the caller's variables hold before GetDateValues: they must stay so unless it writes them.
Appointment sentinel() { return { at(2000, 1, 1, 1, 1), at(2000, 1, 1, 2, 2), "unberührt", "unberührt", 99, "unberührt", 0 }; }

void typeTime(QComboBox *box, const QString &text) { box->setFocus(), box->lineEdit()->clear(), QTest::keyClicks(box, text); }
template <typename Edit> void typeText(Edit *edit, const QString &text) { edit->selectAll(), QTest::keyClicks(edit, text); }

//! Chooses entry \a text from the list of \a box, as a click in the drop-down list does.
bool pickFromList(QComboBox *box, const QString &text)
{
    box->showPopup();
    box->view()->setCurrentIndex(box->model()->index(box->findText(text), 0));
    QTest::keyClick(box->view(), Qt::Key_Return);
    return box->currentText() == text;
}

//! Runs \a step on the shown, active editor, then clicks \a leave; Cancel if it is still open.
Action then(Step step, const QString &leave = QStringLiteral("CancelButton"))
{
    return [step, leave](QDialog &dialog) {
        dialog.activateWindow();
        if (!QTest::qWaitForWindowActive(&dialog))
            qWarning("The editor did not become active");
        step(dialog);
        for (const QString &name : { leave, QStringLiteral("CancelButton") })
            if (dialog.isVisible() && !name.isEmpty())
                QTest::mouseClick(editor().findChild<QPushButton *>(name), Qt::LeftButton);
        return dialog.result();
    };
}

Step typed(const char *box, const char *text, Qt::Key leave)
{
    return [=](QDialog &) { typeTime(child<QComboBox>(box), QString::fromLatin1(text)), QTest::keyClick(child<QComboBox>(box), leave); };
}

} // namespace

Q_DECLARE_METATYPE(Appointment)
Q_DECLARE_METATYPE(Step)

//! The services the editor reaches, scripted, installed while one test runs.
struct EditorServices
{
    kvScriptedModalRunner runner;
    kvCountingBeep beep;
    kvScriptedShell shell;
    kvScriptedFileDialog fileDialog;
    kvScopedService<kvScriptedModalRunner> installedRunner { runner };
    kvScopedService<kvCountingBeep> installedBeep { beep };
    kvScopedService<kvScriptedShell> installedShell { shell };
    kvScopedService<kvScriptedFileDialog> installedFileDialog { fileDialog };
};

class tst_frmEdit : public QObject
{
    Q_OBJECT

    std::optional<EditorServices> m_services;

    //! The control's edit flow; \a nested are the actions of the dialogs the editor opens (the picker).
    Appointment run(const Appointment &in, const Action &action, const QList<Action> &nested = {})
    {
        frmPicSelector::ThreadInstance().Reset();
        editor().SetDateValues(in.begin, in.end, in.name, in.remark, in.imageId, in.document, in.action);
        for (const Action &next : QList<Action> { action } + nested)
            m_services->runner.Enqueue(next);
        kvPlatform::modalRunner().Exec(editor());
        Appointment out = sentinel();
        out.action = in.action;   // GetDateValues reads the action it was loaded with
        editor().GetDateValues(out.begin, out.end, out.name, out.remark, out.imageId, out.document, out.action);
        return out;
    }

private slots:
    void init() { m_services.emplace(); }
    void cleanup() { const int pending = m_services->runner.PendingActions(); m_services.reset(); QCOMPARE(pending, 0); }

    // What comes back: the action (0 nothing, 1 insert, 2 delete, 3 update) and, for 1 and 3 only,
    // the values; texts the user did not type into come back whole, line breaks as CR LF. Picking a
    // begin keeps the duration, wrapping past midnight without changing the date; any other change
    // only keeps the end from lying before the begin.
    void result_data()
    {
        QTest::addColumn<Appointment>("in");
        QTest::addColumn<Step>("step");
        QTest::addColumn<QString>("leave");
        QTest::addColumn<Appointment>("out");
        Appointment fresh = existing(1), lines = existing(), fullDay = existing(), huge = existing();
        lines.remark = QStringLiteral("Kontrolle\r\nBonusheft mitnehmen!");
        fullDay.begin = at(2026, 12, 24), fullDay.end = at(2026, 12, 27);
        huge.name = QString(40'000, u'N');
        huge.remark = QStringLiteral("Erste Zeile\r\nzweite\r\n") + QString(1'000'000, u'x');
        huge.document = QStringLiteral("/tmp/") + QString(40'000, u'd');
        const auto with = [](Appointment a, auto change) { change(a); return a; };
        const auto times = [](Appointment a, kvDate begin, kvDate end) { a.begin = begin, a.end = end; return a; };
        const Appointment nothing = sentinel(), deleted = with(sentinel(), [](Appointment &a) { a.action = 2; });
        const Step none = [](QDialog &) {};
        const Step edit = [](QDialog &) {
            typeText(nameBox(), QStringLiteral("geaendert"));
            QTest::mouseClick(child<QCheckBox>("chkFullTime"), Qt::LeftButton);
        };
        QTest::newRow("new") << fresh << none << "cmdOK" << fresh;
        QTest::newRow("unchanged") << existing() << none << "cmdOK" << nothing;
        QTest::newRow("unchanged full day") << fullDay << none << "cmdOK" << fullDay;
        QTest::newRow("long texts unchanged") << huge << none << "cmdOK" << nothing;
        QTest::newRow("long texts, remark typed") << huge << Step([](QDialog &) { typeText(remarkBox(), QStringLiteral("neu")); })
                                                  << "cmdOK" << with(huge, [](Appointment &a) { a.remark = QStringLiteral("neu"); });
        QTest::newRow("remark line added") << lines << Step([](QDialog &) {
            QCOMPARE(remarkBox()->document()->blockCount(), 2);
            remarkBox()->moveCursor(QTextCursor::End);
            QTest::keyClick(remarkBox(), Qt::Key_Return);   // a new line, not OK
            QTest::keyClicks(remarkBox(), QStringLiteral("Rechnung mitbringen"));
        }) << "cmdOK" << with(lines, [](Appointment &a) { a.remark += QStringLiteral("\r\nRechnung mitbringen"); });
        QTest::newRow("full day checked") << existing() << Step([](QDialog &) {
            QTest::mouseClick(child<QCheckBox>("chkFullTime"), Qt::LeftButton);
        }) << "cmdOK" << times(existing(), at(2026, 11, 15), at(2026, 11, 15));
        QTest::newRow("end equal to begin") << existing() << typed("cboTimeEnd", "09:00", Qt::Key_Tab) << "cmdOK"
                                            << times(existing(), at(2026, 11, 15, 9), at(2026, 11, 15, 9));
        const auto picked = [](const char *box, const char *text) {
            return Step([=](QDialog &) { QVERIFY(pickFromList(child<QComboBox>(box), QString::fromLatin1(text))); });
        };
        const Appointment allDay = times(existing(), at(2026, 11, 23), at(2026, 11, 23));
        const Appointment overnight = times(existing(), at(2026, 11, 15, 9), at(2026, 11, 16, 11));
        QTest::newRow("begin picked") << existing() << picked("cboTimeBegin", "11:00") << "cmdOK"
                                      << times(existing(), at(2026, 11, 15, 11), at(2026, 11, 15, 12, 30));
        QTest::newRow("begin picked, past midnight") << overnight << picked("cboTimeBegin", "23:00") << "cmdOK"
                                                     << times(existing(), at(2026, 11, 15, 23), at(2026, 11, 16, 1));
        QTest::newRow("end picked before begin") << existing() << picked("cboTimeEnd", "08:00") << "cmdOK"
                                                 << times(existing(), at(2026, 11, 15, 8), at(2026, 11, 15, 8));
        QTest::newRow("begin typed, all day") << allDay << Step([](QDialog &d) {
            child<QCheckBox>("chkFullTime")->setChecked(false);
            typed("cboTimeBegin", "18:00", Qt::Key_Tab)(d);
        }) << "cmdOK" << times(existing(), at(2026, 11, 23, 18), at(2026, 11, 23, 18));
        QTest::newRow("begin typed, end later") << existing() << typed("cboTimeBegin", "10:00", Qt::Key_Backtab) << "cmdOK"
                                                << times(existing(), at(2026, 11, 15, 10), at(2026, 11, 15, 10, 30));
        QTest::newRow("end typed before begin") << existing() << typed("cboTimeEnd", "08:15", Qt::Key_Tab) << "cmdOK"
                                                << times(existing(), at(2026, 11, 15, 8, 15), at(2026, 11, 15, 8, 15));
        QTest::newRow("begin date past end") << existing() << Step([](QDialog &) {
            timeEnd()->setEditText(QStringLiteral("08:00"));
            child<QDateEdit>("DTPickerBegin")->setDate(QDate(2026, 11, 20));
        }) << "cmdOK" << times(existing(), at(2026, 11, 20, 9), at(2026, 11, 20, 9));
        QTest::newRow("edited, Löschen") << existing() << edit << "cmdDelete" << deleted;
        for (const Appointment &in : { existing(), fresh }) {
            const QByteArray kind = in.action == 1 ? "new" : "existing";
            QTest::newRow(kind + ", Abbrechen") << in << edit << "CancelButton" << nothing;
            QTest::newRow(kind + ", close box") << in << Step([=](QDialog &d) { edit(d); d.close(); }) << "" << nothing;
            QTest::newRow(kind + ", Esc") << in << Step([=](QDialog &d) { edit(d); QTest::keyClick(&d, Qt::Key_Escape); })
                                          << "" << nothing;
        }
    }
    void result()
    {
        QFETCH(Appointment, in);
        QFETCH(Step, step);
        QFETCH(QString, leave);
        QFETCH(Appointment, out);
        frmEdit *before = &editor();
        const Appointment back = run(in, then(step, leave));
        QCOMPARE(compared(back), compared(out));
        QCOMPARE(&editor(), before);   // hidden, not destroyed
        QVERIFY(!editor().isVisible() && !editor().Cancelled());
        QCOMPARE(button("cmdDelete")->isEnabled(), in.action == 3);
        QCOMPARE(m_services->beep.Count(), 0);
    }

    // Faults are refused where they are made: a beep for a time box left with what is no time,
    // a message in the status bar, the focus on the faulty field, and OK refused.
    void validation_data()
    {
        QTest::addColumn<Step>("step");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("focus");
        QTest::addColumn<int>("beeps");
        const auto okWith = [](const char *name, const char *begin, const char *end) {
            return Step([=](QDialog &) {
                nameBox()->setText(name), timeBegin()->setEditText(begin), timeEnd()->setEditText(end), button("cmdOK")->click();
            });
        };
        const QString beginBad = QStringLiteral("'Beginnt' hat keine gütiges Datum/Zeit Format!");
        const QString endBad = QStringLiteral("'Endet' hat keine gütiges Datum/Zeit Format!");
        QTest::newRow("OK without name") << okWith("", "09:00", "10:00") << "Kontakt/Ereignis fehlt!" << "txtName" << 0;
        QTest::newRow("OK, both times bad") << okWith("A", "x", "y") << beginBad << "" << 0;
        QTest::newRow("OK, end bad") << okWith("A", "09:00", "y") << endBad << "" << 0;
        QTest::newRow("Return, end before begin") << Step([](QDialog &) {
            typeTime(timeEnd(), QStringLiteral("08:59"));
            QTest::keyClick(timeEnd(), Qt::Key_Return);   // OK without leaving the box
        }) << "Das 'Endet'-Datum darf nicht vor dem 'Beginnt'-Datum liegen!" << "DTPickerEnd" << 0;
        QTest::newRow("begin 25:00, Tab") << typed("cboTimeBegin", "25:00", Qt::Key_Tab) << beginBad << "cboTimeBegin" << 1;
        QTest::newRow("end abc, Backtab") << typed("cboTimeEnd", "abc", Qt::Key_Backtab) << endBad << "cboTimeEnd" << 1;
        QTest::newRow("end date before begin") << Step([](QDialog &) {
            child<QDateEdit>("DTPickerEnd")->setDate(QDate(2026, 11, 14));
        }) << "Das eingegebene Datum liegt vor dem Beginn!" << "" << 0;
    }
    void validation()
    {
        QFETCH(Step, step);
        QFETCH(QString, message);
        QFETCH(QString, focus);
        QFETCH(int, beeps);
        QString shown, focused;
        const Appointment out = run(existing(), then([&](QDialog &dialog) {
            step(dialog);
            QTest::qWait(20);
            QVERIFY(dialog.isVisible());
            shown = editor().StatusText();
            focused = QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
            if (auto *box = qobject_cast<QComboBox *>(QApplication::focusWidget())) {
                typed(qPrintable(box->objectName()), "09:30", Qt::Key_Tab)(dialog);   // a valid time clears the message
                QCOMPARE(editor().StatusText(), QString());
            }
        }));
        QCOMPARE(shown, message);
        if (!focus.isEmpty())
            QCOMPARE(focused, focus);
        QCOMPARE(m_services->beep.Count(), beeps);
        QCOMPARE(out.action, qint16(0));
    }

    // The lists gain their 47 half hours on every load, so a second opening shows each twice.
    void timeListsGrowOnEveryLoad()
    {
        editor().QueryUnload(frmEdit::UnloadModeOwner);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!frmEdit::HasThreadInstance() && !frmPicSelector::HasThreadInstance());
        QCOMPARE(timeBegin()->count(), 0);
        run(existing(), then([](QDialog &) {}));
        QCOMPARE(timeBegin()->count(), 47);
        QCOMPARE(timeBegin()->itemText(0) + timeBegin()->itemText(46), QStringLiteral("00:3023:30"));
        run(existing(), then([](QDialog &) {}));
        for (QComboBox *box : { timeBegin(), timeEnd() }) {
            QCOMPARE(box->count(), 94);
            QCOMPARE(box->findText(QStringLiteral("11:00")), 21);
            QCOMPARE(box->itemText(21 + 47), QStringLiteral("11:00"));
        }
    }

    // ImageIDs below 11 show no picture but are kept; the context menu deletes, the picker chooses,
    // a picker closed without a choice keeps the icon.
    void icon()
    {
        Appointment in = existing();
        in.imageId = 5;
        Appointment out = run(in, then([](QDialog &) { typeText(nameBox(), "Dr. M"); QVERIFY(!iconShown()); }, "cmdOK"));
        QCOMPARE(out.imageId, qint16(5));
        out = run(in, then([](QDialog &) {
            QTest::mouseClick(imgIcon(), Qt::RightButton);
            QVERIFY(child<QMenu>("Kontextmenü")->isVisible());
            child<QAction>("Kontext1")->trigger();
            child<QMenu>("Kontextmenü")->hide();
        }, "cmdOK"));
        QCOMPARE(out.imageId, qint16(0));
        const Action choose = [](QDialog &picker) {
            auto &selector = static_cast<frmPicSelector &>(picker);
            selector.TabStrip()->setCurrentIndex(1);
            for (QToolButton *picture : selector.PicContainer()(2)->findChildren<QToolButton *>())
                if (picture->property("Tag").toString() == QStringLiteral("2_3"))
                    picture->click();
            return picker.result();
        };
        out = run(existing(), then([](QDialog &) { QTest::mouseClick(button("cmdEdit"), Qt::LeftButton); }, "cmdOK"), { choose });
        QCOMPARE(out.imageId, qint16(23));
        QCOMPARE(editor().IconListIndex(), qint16(24));
        in.imageId = 11;
        out = run(in, then([](QDialog &) { QTest::mouseClick(imgIcon(), Qt::LeftButton); }, "cmdOK"), { kvScriptedModalRunner::Reject() });
        QCOMPARE(out.action, qint16(0));
        QCOMPARE(imgIcon()->property("Tag").toString(), QStringLiteral("11"));
        QVERIFY(iconShown());
    }

    void document()
    {
        m_services->fileDialog.EnqueuePath(QStringLiteral("/home/anna/Brief.doc"));
        m_services->shell.EnqueueResult(kvShell::NoAssociation);
        m_services->shell.EnqueueResult(kvShell::FileNotFound);
        QStringList messages;
        const Appointment out = run(existing(), then([&](QDialog &) {
            QTest::mouseClick(button("cmdDocumentBrowser"), Qt::LeftButton);
            QTest::mouseClick(button("cmdDocumentBrowser"), Qt::LeftButton);   // cancelled: the path stays
            for (int i = 0; i < 2; ++i)
                QTest::mouseClick(button("cmdOpenDocument"), Qt::LeftButton), messages << editor().StatusText();
        }, "cmdOK"));
        QCOMPARE(m_services->fileDialog.Calls().first().title, QStringLiteral("Öffnen"));
        QCOMPARE(m_services->fileDialog.Calls().first().vbFilter,
                 QStringLiteral("Alle Dateien (*.*)|*.*|Word-Dokumente (*.doc)|*.doc|HTML-Dokumente(*.htm, *.html)|*.htm*|"
                                "Excel-Dokumente (*.xls)|*.xls|Textdateien (*.txt)|*.txt|Rich Text Format(*.rtf)|*.rtf|"
                                "Stapelverarbeitungsdateien (*.bat, *.cmd)|*.bat;*.cmd"));
        QCOMPARE(out.document, QStringLiteral("/home/anna/Brief.doc"));
        QCOMPARE(m_services->shell.OpenWithPaths(), QStringList { out.document });   // no program: the chooser
        QCOMPARE(messages, (QStringList { QString(), QStringLiteral("Beim Öffnen des Dokuments trat ein Fehler auf!") }));
    }

    // At its smallest every control lies inside the editor; what it gains when enlarged goes to
    // the name, the remark and the document path.
    void layoutFitsAndGrows()
    {
        run(existing(), then([](QDialog &dialog) {
            dialog.resize(dialog.minimumSize());
            QCoreApplication::processEvents();
            for (QWidget *control : dialog.findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
                QVERIFY2(!control->isVisible() || dialog.rect().contains(control->geometry()), qPrintable(control->objectName()));
            QVERIFY(remarkBox()->width() >= frmEdit::RemarkWidth);
            const QSize remark = remarkBox()->size();
            const int name = nameBox()->width();
            dialog.resize(dialog.size() + QSize(200, 150));
            QCoreApplication::processEvents();
            QCOMPARE(remarkBox()->size(), remark + QSize(200, 150));
            QCOMPARE(nameBox()->width(), name + 200);
            QVERIFY(button("CancelButton")->geometry().right() > dialog.width() - 30);
        }));
    }
};

QTEST_MAIN(tst_frmEdit)
#include "tst_frmEdit.moc"
