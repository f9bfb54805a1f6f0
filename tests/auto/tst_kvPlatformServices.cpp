#include "kvCountingBeep.h"
#include "kvFixedClock.h"
#include "kvPlatform.h"
#include "kvScopedService.h"
#include "kvScriptedFileDialog.h"
#include "kvScriptedMessageBox.h"
#include "kvScriptedModalRunner.h"
#include "kvScriptedShell.h"
#include "kvSystemBeep.h"
#include "kvSystemClock.h"
#include "kvSystemFileDialog.h"
#include "kvSystemMessageBox.h"
#include "kvSystemModalRunner.h"
#include "kvSystemPrinterService.h"
#include "kvSystemShell.h"
#include "kvWhenShown.h"

#include <QtTest>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include <functional>
#include <thread>
#include <type_traits>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::function<void()>)

namespace {

struct SeenMessageBox
{
    bool seen = false;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QString title;
    QString text;
    QWidget *parent = nullptr;
};

void recordAndPress(QMessageBox *box, SeenMessageBox &seen, QMessageBox::StandardButton press)
{
    seen.seen = true;
    seen.icon = box->icon();
    seen.buttons = box->standardButtons();
    seen.defaultButton = box->standardButton(box->defaultButton());
    seen.title = box->windowTitle();
    seen.text = box->text();
    seen.parent = box->parentWidget();
    if (press == QMessageBox::Escape)
        QTest::keyClick(box, Qt::Key_Escape);
    else
        QTest::mouseClick(box->button(press), Qt::LeftButton);
}

class UrlRecorder : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public slots:
    void open(const QUrl &url) { urls.append(url); }
};

QString createFile(const QTemporaryDir &dir, const QString &name)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write("kvKalivo");
    return path;
}

const QString editorFilter = u"Alle Dateien (*.*)|*.*|"
                           u"Word-Dokumente (*.doc)|*.doc|"
                           u"HTML-Dokumente(*.htm, *.html)|*.htm*|"
                           u"Excel-Dokumente (*.xls)|*.xls|"
                           u"Textdateien (*.txt)|*.txt|"
                           u"Rich Text Format(*.rtf)|*.rtf|"
                           u"Stapelverarbeitungsdateien (*.bat, *.cmd)|*.bat;*.cmd"_s;

const QStringList editorQtFilters = {u"Alle Dateien (*)"_s,
                                   u"Word-Dokumente (*.doc)"_s,
                                   u"HTML-Dokumente (*.htm*)"_s,
                                   u"Excel-Dokumente (*.xls)"_s,
                                   u"Textdateien (*.txt)"_s,
                                   u"Rich Text Format (*.rtf)"_s,
                                   u"Stapelverarbeitungsdateien (*.bat *.cmd)"_s};

} // namespace

class tst_kvPlatformServices : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QGuiApplication::setApplicationDisplayName(u"kvKalivo Testhost"_s);
    }

    // --- message box ---------------------------------------------------------------------

    void messageBoxStyleHelpers()
    {
        QCOMPARE(kvMessageBox::ButtonResults(35), QList<int>({6, 7, 2}));
        QCOMPARE(kvMessageBox::ButtonResults(16), QList<int>({1}));
        QCOMPARE(kvMessageBox::ButtonResults(kvMessageBox::vbRetryCancel), QList<int>({4, 2}));
        QCOMPARE(kvMessageBox::DefaultResult(35), int(kvMessageBox::vbYes));
        QCOMPARE(kvMessageBox::DefaultResult(35 + kvMessageBox::vbDefaultButton2), int(kvMessageBox::vbNo));
        QCOMPARE(kvMessageBox::DefaultResult(35 + kvMessageBox::vbDefaultButton3), int(kvMessageBox::vbCancel));
        QCOMPARE(kvMessageBox::DefaultResult(kvMessageBox::vbYesNo + kvMessageBox::vbDefaultButton3), int(kvMessageBox::vbYes));
        QCOMPARE(kvMessageBox::EscapeResult(35), int(kvMessageBox::vbCancel));
        QCOMPARE(kvMessageBox::EscapeResult(16), int(kvMessageBox::vbOK));
        QCOMPARE(kvMessageBox::EscapeResult(kvMessageBox::vbYesNo), int(kvMessageBox::vbNo));
        QCOMPARE(kvMessageBox::Icon(35), int(kvMessageBox::vbQuestion));
        QCOMPARE(kvMessageBox::Icon(16), int(kvMessageBox::vbCritical));
        QCOMPARE(kvMessageBox::Icon(kvMessageBox::vbOKCancel), 0);
    }

    void scriptedMessageBoxRecordsAndAnswers()
    {
        kvScriptedMessageBox box;
        box.EnqueueAnswer(kvMessageBox::vbNo);
        QCOMPARE(box.MsgBox(u"Kalendar drucken?"_s, 35, QString()), 7);
        QCOMPARE(box.MsgBox(u"Kalendar drucken?"_s, 35, QString()), 6);   // Enter: the default button
        QCOMPARE(box.MsgBox(u"kvKalivo-Fehlercode 600"_s, 16, u"kvKalivo.ocx"_s), 1);
        box.SetDefaultAnswer(kvMessageBox::vbCancel);
        QCOMPARE(box.MsgBox(u"Kalendar drucken?"_s, 35, QString()), 2);

        QCOMPARE(box.CallCount(), 4);
        QCOMPARE(box.Calls().at(0).prompt, u"Kalendar drucken?"_s);
        QCOMPARE(box.Calls().at(0).buttons, 35);
        QVERIFY(box.Calls().at(0).title.isEmpty());
        QCOMPARE(box.Calls().at(2).title, u"kvKalivo.ocx"_s);
        QCOMPARE(box.LastCall().buttons, 35);
        box.Clear();
        QCOMPARE(box.CallCount(), 0);
    }

    void systemMessageBoxQuestionAnswersYes()
    {
        SeenMessageBox seen;
        whenShown<QMessageBox>([&seen](QMessageBox *box) { recordAndPress(box, seen, QMessageBox::Yes); });
        const int result = kvSystemMessageBox().MsgBox(u"Kalendar drucken?"_s, 35, u"Drucken"_s);

        QVERIFY(seen.seen);
        QCOMPARE(result, 6);
        QCOMPARE(seen.icon, QMessageBox::Question);
        QCOMPARE(seen.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        QCOMPARE(seen.defaultButton, QMessageBox::Yes);
        QCOMPARE(seen.title, u"Drucken"_s);
        QCOMPARE(seen.text, u"Kalendar drucken?"_s);
    }

    void systemMessageBoxAnswersNo()
    {
        SeenMessageBox seen;
        whenShown<QMessageBox>([&seen](QMessageBox *box) { recordAndPress(box, seen, QMessageBox::No); });
        QCOMPARE(kvSystemMessageBox().MsgBox(u"Kalendar drucken?"_s, 35, QString()), 7);
        QVERIFY(seen.seen);
    }

    void systemMessageBoxEscapeGivesCancel()
    {
        SeenMessageBox seen;
        whenShown<QMessageBox>([&seen](QMessageBox *box) { recordAndPress(box, seen, QMessageBox::Escape); });
        QCOMPARE(kvSystemMessageBox().MsgBox(u"Kalendar drucken?"_s, 35, QString()), 2);
        QVERIFY(seen.seen);
    }

    void systemMessageBoxCriticalOk()
    {
        SeenMessageBox seen;
        whenShown<QMessageBox>([&seen](QMessageBox *box) { recordAndPress(box, seen, QMessageBox::Ok); });
        const int result = kvSystemMessageBox().MsgBox(u"kvKalivo-Fehlercode 600\r\nTabelle fehlt"_s, 16,
                                                       u"kvKalivo.ocx"_s);
        QVERIFY(seen.seen);
        QCOMPARE(result, 1);
        QCOMPARE(seen.icon, QMessageBox::Critical);
        QCOMPARE(seen.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(seen.title, u"kvKalivo.ocx"_s);
        QCOMPARE(seen.text, u"kvKalivo-Fehlercode 600\nTabelle fehlt"_s);
    }

    // The control speaks German whatever translator the host installed (here: one that
    // answers every text with "?").
    void systemMessageBoxButtonsAreGerman_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QStringList>("captions");
        QTest::newRow("question, Yes/No/Cancel") << 35 << QStringList{u"Ja"_s, u"Nein"_s, u"Abbrechen"_s};
        QTest::newRow("critical, OK") << 16 << QStringList{u"OK"_s};
        QTest::newRow("OK/Cancel") << int(kvMessageBox::vbOKCancel) << QStringList{u"OK"_s, u"Abbrechen"_s};
        QTest::newRow("Abort/Retry/Ignore") << int(kvMessageBox::vbAbortRetryIgnore)
                                            << QStringList{u"Abbrechen"_s, u"Wiederholen"_s, u"Ignorieren"_s};
        QTest::newRow("Yes/No") << int(kvMessageBox::vbYesNo) << QStringList{u"Ja"_s, u"Nein"_s};
        QTest::newRow("Retry/Cancel") << int(kvMessageBox::vbRetryCancel)
                                      << QStringList{u"Wiederholen"_s, u"Abbrechen"_s};
    }

    void systemMessageBoxButtonsAreGerman()
    {
        QFETCH(int, style);
        QFETCH(QStringList, captions);
        struct QuestionMarks : QTranslator
        {
            QString translate(const char *, const char *, const char *, int) const override { return u"?"_s; }
            bool isEmpty() const override { return false; }
        } translator;
        QCoreApplication::installTranslator(&translator);
        QStringList shown;
        whenShown<QMessageBox>([&](QMessageBox *box) {
            for (QAbstractButton *button : box->buttons())
                shown << button->text().remove(u'&');
            box->reject();
        });
        kvSystemMessageBox().MsgBox(u"Termin <09:00 Teambesprechung> löschen?"_s, style, QString());
        QCoreApplication::removeTranslator(&translator);
        shown.sort();
        captions.sort();
        QCOMPARE(shown, captions);
    }

    void systemMessageBoxEmptyTitleIsTheApplicationsTitle()
    {
        SeenMessageBox seen;
        whenShown<QMessageBox>([&seen](QMessageBox *box) { recordAndPress(box, seen, QMessageBox::Cancel); });
        QCOMPARE(kvSystemMessageBox().MsgBox(u"Kalendar drucken?"_s, 35, QString()), 2);
        QCOMPARE(seen.title, u"kvKalivo Testhost"_s);
    }

    void systemMessageBoxIsParentedToTheActiveWindow()
    {
        QWidget host;
        host.show();
        QApplication::setActiveWindow(&host);
        QVERIFY(QTest::qWaitForWindowActive(&host));

        SeenMessageBox seen;
        whenShown<QMessageBox>([&seen](QMessageBox *box) { recordAndPress(box, seen, QMessageBox::Ok); });
        QCOMPARE(kvSystemMessageBox().MsgBox(u"Hinweis"_s, kvMessageBox::vbInformation, QString()), 1);
        QCOMPARE(seen.parent, &host);
        QCOMPARE(seen.icon, QMessageBox::Information);
    }

    // A widget that holds the mouse while a modal window opens gets every click, and the
    // window none: its buttons look dead while the keyboard still works.
    void realServicesOpenTheirWindowsWithTheMouseFree_data()
    {
        QTest::addColumn<std::function<void()>>("open");
        QTest::newRow("message box") << std::function<void()>([] {
            kvSystemMessageBox().MsgBox(u"Termin <09:00 Teambesprechung> löschen?"_s, 35, QString());
        });
        QTest::newRow("modal dialog") << std::function<void()>([] {
            QDialog editor;
            kvSystemModalRunner().Exec(editor);
        });
        QTest::newRow("file dialog") << std::function<void()>([] {
            kvSystemFileDialog().GetOpenFileName(nullptr, u"Öffnen"_s, QDir::tempPath(), editorFilter);
        });
        QTest::newRow("print dialog") << std::function<void()>([] {
            kvPrinterService::Job job;
            job.DocumentName = u"kvKalivo"_s;
            job.Pages = [](QPagedPaintDevice &) {};
            kvSystemPrinterService().Print(nullptr, job);
        });
    }

    void realServicesOpenTheirWindowsWithTheMouseFree()
    {
        QFETCH(std::function<void()>, open);
        QWidget holder;
        holder.show();
        QVERIFY(QTest::qWaitForWindowExposed(&holder));
        holder.grabMouse();
        QCOMPARE(QWidget::mouseGrabber(), &holder);

        bool seen = false;
        QWidget *grabberWhileOpen = &holder;
        whenShown<QDialog>([&](QDialog *dialog) {
            seen = true;
            grabberWhileOpen = QWidget::mouseGrabber();
            dialog->done(QDialog::Rejected);
        });
        open();
        QVERIFY(seen);
        QCOMPARE(grabberWhileOpen, nullptr);
    }

    // --- file dialog ---------------------------------------------------------------------

    void filterConversion_data()
    {
        QTest::addColumn<QString>("vbFilter");
        QTest::addColumn<QString>("qtFilter");
        QTest::newRow("brief's example") << u"Beschreibung|*.doc|Alle Dateien|*.*"_s
                                         << u"Beschreibung (*.doc);;Alle Dateien (*)"_s;
        QTest::newRow("several patterns") << u"Dokumente|*.doc;*.rtf"_s << u"Dokumente (*.doc *.rtf)"_s;
        QTest::newRow("spaces around patterns") << u"Dokumente| *.doc ; *.rtf "_s << u"Dokumente (*.doc *.rtf)"_s;
        QTest::newRow("the editor's filter") << editorFilter << editorQtFilters.join(u";;"_s);
        QTest::newRow("trailing separator") << u"Textdateien|*.txt|"_s << u"Textdateien (*.txt)"_s;
        QTest::newRow("description without patterns") << u"Alles"_s << u"Alles (*)"_s;
        QTest::newRow("parentheses that are no patterns") << u"Dokumente (alt)|*.doc"_s
                                                          << u"Dokumente (alt) (*.doc)"_s;
        QTest::newRow("empty") << QString() << QString();
    }

    void filterConversion()
    {
        QFETCH(QString, vbFilter);
        QFETCH(QString, qtFilter);
        QCOMPARE(kvFileDialog::ToQtFilter(vbFilter), qtFilter);
    }

    void qtReadsTheConvertedPatterns()
    {
        QFileDialog dialog;
        dialog.setNameFilter(kvFileDialog::ToQtFilter(editorFilter));
        QCOMPARE(dialog.nameFilters(), editorQtFilters);
    }

    void systemFileDialogReturnsTheChosenFile()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = createFile(dir, u"Termin.doc"_s);
        QVERIFY(!path.isEmpty());

        QString title;
        QStringList filters;
        QString directory;
        whenShown<QFileDialog>([&](QFileDialog *dialog) {
            title = dialog->windowTitle();
            filters = dialog->nameFilters();
            directory = dialog->directory().absolutePath();
            // Typed, as a user does: selectFile() depends on the file model having loaded.
            auto *fileName = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
            if (!fileName) {
                dialog->reject();
                return;
            }
            fileName->setText(path);
            static_cast<QDialog *>(dialog)->accept();   // QFileDialog::accept() is protected
        });
        const QString chosen = kvSystemFileDialog().GetOpenFileName(nullptr, u"Öffnen"_s, dir.path(), editorFilter);

        QCOMPARE(chosen, path);
        QCOMPARE(title, u"Öffnen"_s);
        QCOMPARE(filters, editorQtFilters);
        QCOMPARE(directory, QDir(dir.path()).absolutePath());
    }

    void systemFileDialogCancelledIsEmpty()
    {
        bool seen = false;
        whenShown<QFileDialog>([&seen](QFileDialog *dialog) {
            seen = true;
            dialog->reject();
        });
        QVERIFY(kvSystemFileDialog().GetOpenFileName(nullptr, u"Öffnen"_s, QDir::tempPath(), editorFilter).isEmpty());
        QVERIFY(seen);
    }

    void scriptedFileDialogRecordsAndAnswers()
    {
        kvScriptedFileDialog dialog;
        QWidget parent;
        dialog.EnqueuePath(u"/tmp/Termin.doc"_s);
        QCOMPARE(dialog.GetOpenFileName(&parent, u"Öffnen"_s, u"/tmp"_s, editorFilter), u"/tmp/Termin.doc"_s);
        QVERIFY(dialog.GetOpenFileName(nullptr, u"Öffnen"_s, QString(), editorFilter).isEmpty());

        QCOMPARE(dialog.CallCount(), 2);
        QCOMPARE(dialog.Calls().at(0).parent.data(), &parent);
        QCOMPARE(dialog.Calls().at(0).title, u"Öffnen"_s);
        QCOMPARE(dialog.Calls().at(0).initialPath, u"/tmp"_s);
        QCOMPARE(dialog.Calls().at(0).vbFilter, editorFilter);
        QVERIFY(dialog.Calls().at(1).parent.isNull());
    }

    // --- shell ---------------------------------------------------------------------------

    void systemShellMissingFileIsFileNotFound()
    {
        kvSystemShell shell;
        QCOMPARE(shell.ShellExecuteOpen(u"/nonexistent/kvKalivo/Termin.doc"_s), 2);
        QCOMPARE(shell.ShellExecuteOpen(QString()), 2);
        QVERIFY(!shell.OpenWith(u"/nonexistent/kvKalivo/Termin.doc"_s));
        QVERIFY(!kvShell::Succeeded(kvShell::FileNotFound));
        QVERIFY(kvShell::Succeeded(kvShell::Opened));
    }

    void systemShellOpensThroughTheDesktopServices()
    {
        QTemporaryDir dir;
        const QString path = createFile(dir, u"Bericht.txt"_s);
        UrlRecorder recorder;
        QDesktopServices::setUrlHandler(u"file"_s, &recorder, "open");
        const int result = kvSystemShell().ShellExecuteOpen(path);
        QDesktopServices::unsetUrlHandler(u"file"_s);

        QVERIFY(kvShell::Succeeded(result));
        QCOMPARE(recorder.urls, QList<QUrl>({QUrl::fromLocalFile(path)}));
    }

    void systemShellWithoutAnOpenerIsNoAssociation()
    {
        QTemporaryDir dir;
        const QString path = createFile(dir, u"Bericht.xyz"_s);
        UrlRecorder recorder;
        // A handler that cannot be called makes QDesktopServices::openUrl() fail, as no opener does.
        QDesktopServices::setUrlHandler(u"file"_s, &recorder, "noSuchSlot");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"noSuchSlot"_s));
        const int result = kvSystemShell().ShellExecuteOpen(path);
        QDesktopServices::unsetUrlHandler(u"file"_s);

        QCOMPARE(result, 31);
    }

    void systemOpenWithFailsCleanlyWithoutAPortal()
    {
        QTemporaryDir dir;
        const QString path = createFile(dir, u"Bericht.txt"_s);
        const QByteArray bus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + dir.filePath(u"no-bus"_s).toLocal8Bit());
        const bool offered = kvSystemShell().OpenWith(path);
        if (bus.isNull())
            qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        else
            qputenv("DBUS_SESSION_BUS_ADDRESS", bus);
        QVERIFY(!offered);
    }

    void openWithAsksThePortalToChoose()
    {
        const QStringList arguments = kvSystemShell::OpenWithArguments(u"/tmp/it's here.doc"_s);
        QCOMPARE(arguments.first(), u"call"_s);
        QVERIFY(arguments.contains(u"org.freedesktop.portal.OpenURI.OpenURI"_s));
        QCOMPARE(arguments.at(arguments.size() - 2), u"'file:///tmp/it\\'s%20here.doc'"_s);
        QCOMPARE(arguments.last(), u"{'ask': <true>}"_s);
    }

    void scriptedShellRecordsAndAnswers()
    {
        kvScriptedShell shell;
        shell.EnqueueResult(kvShell::NoAssociation);
        QCOMPARE(shell.ShellExecuteOpen(u"a.doc"_s), 31);
        QCOMPARE(shell.ShellExecuteOpen(u"b.doc"_s), int(kvShell::Opened));
        shell.SetDefaultResult(kvShell::FileNotFound);
        QCOMPARE(shell.ShellExecuteOpen(u"c.doc"_s), 2);
        QVERIFY(shell.OpenWith(u"a.doc"_s));
        shell.SetOpenWithResult(false);
        QVERIFY(!shell.OpenWith(u"b.doc"_s));

        QCOMPARE(shell.OpenedPaths(), QStringList({u"a.doc"_s, u"b.doc"_s, u"c.doc"_s}));
        QCOMPARE(shell.OpenWithPaths(), QStringList({u"a.doc"_s, u"b.doc"_s}));
    }

    // --- beep and clock ------------------------------------------------------------------

    void countingBeepCountsThroughThePlatform()
    {
        kvCountingBeep beep;
        kvScopedService installed(beep);
        kvPlatform::beep().Beep();
        kvPlatform::beep().Beep();
        QCOMPARE(beep.Count(), 2);
        beep.Reset();
        QCOMPARE(beep.Count(), 0);
    }

    void systemBeepBeeps()
    {
        QVERIFY(dynamic_cast<kvSystemBeep *>(&kvPlatform::beep()));
        kvPlatform::beep().Beep();
    }

    void systemClockReadsTheWallClock()
    {
        const kvSystemClock clock;
        const kvDate before = kvDate::fromDateTime(QDateTime::currentDateTime());
        const kvDate now = clock.Now();
        const kvDate today = clock.Today();
        const kvDate after = kvDate::fromDateTime(QDateTime::currentDateTime());

        QVERIFY(before <= now);
        QVERIFY(now <= after);
        QCOMPARE(today.secondsOfDay(), 0);
        QCOMPARE(today.time(), QTime(0, 0));
        QVERIFY(today == before.dateOnly() || today == after.dateOnly());
    }

    void fixedClockShowsWhatItWasSetTo()
    {
        kvFixedClock clock(kvDate::fromDate(QDate(2024, 3, 31), QTime(14, 5)));
        kvScopedService installed(clock);
        QCOMPARE(kvPlatform::clock().Now(), kvDate::fromDate(QDate(2024, 3, 31), QTime(14, 5)));
        QCOMPARE(kvPlatform::clock().Today(), kvDate::fromDate(QDate(2024, 3, 31)));
        clock.SetNow(kvDate::fromDate(QDate(2026, 3, 29), QTime(2, 30)));
        QCOMPARE(kvPlatform::clock().Now().time(), QTime(2, 30));
        QCOMPARE(kvPlatform::clock().Today().date(), QDate(2026, 3, 29));
    }

    // --- modal runner --------------------------------------------------------------------

    void systemModalRunnerRunsTheDialog()
    {
        QDialog dialog;
        whenShown<QDialog>([](QDialog *shown) { shown->accept(); });
        QCOMPARE(kvSystemModalRunner().Exec(dialog), int(QDialog::Accepted));
    }

    void scriptedModalRunnerRunsTheScript()
    {
        QDialog dialog;
        dialog.setObjectName(u"frmEdit"_s);
        auto *name = new QLineEdit(&dialog);
        auto *ok = new QPushButton(u"OK"_s, &dialog);
        connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);

        kvScriptedModalRunner runner;
        bool visibleWhileRunning = false;
        bool modalWhileRunning = false;
        runner.Enqueue([&](QDialog &shown) {
            visibleWhileRunning = shown.isVisible();
            modalWhileRunning = shown.isModal() || shown.testAttribute(Qt::WA_ShowModal);
            name->setText(u"Zahnarzt"_s);
            QTest::mouseClick(ok, Qt::LeftButton);
            return shown.result();
        });
        QSignalSpy accepted(&dialog, &QDialog::accepted);

        QCOMPARE(runner.Exec(dialog), int(QDialog::Accepted));
        QVERIFY(visibleWhileRunning);
        QVERIFY(modalWhileRunning);
        QVERIFY(!dialog.isVisible());
        QVERIFY(!dialog.testAttribute(Qt::WA_ShowModal));
        QCOMPARE(accepted.count(), 1);
        QCOMPARE(name->text(), u"Zahnarzt"_s);
        QCOMPARE(runner.ExecCount(), 1);
        QCOMPARE(runner.Dialogs().at(0).data(), &dialog);
        QCOMPARE(runner.DialogNames(), QStringList({u"frmEdit"_s}));
    }

    void scriptedModalRunnerHelpersAndEmptyQueue()
    {
        QDialog dialog;
        QSignalSpy rejected(&dialog, &QDialog::rejected);
        kvScriptedModalRunner runner;
        runner.Enqueue(kvScriptedModalRunner::Accept());
        runner.Enqueue(kvScriptedModalRunner::Reject());
        runner.Enqueue([](QDialog &) { return 2; });

        QCOMPARE(runner.Exec(dialog), int(QDialog::Accepted));
        QCOMPARE(runner.Exec(dialog), int(QDialog::Rejected));
        QCOMPARE(rejected.count(), 1);
        QCOMPARE(runner.Exec(dialog), 2);
        QCOMPARE(dialog.result(), 2);
        QVERIFY(!dialog.isVisible());

        QCOMPARE(runner.PendingActions(), 0);
        QCOMPARE(runner.Exec(dialog), int(QDialog::Rejected));
        QVERIFY(!dialog.isVisible());
        QCOMPARE(runner.ExecCount(), 4);
    }

    // --- registry ------------------------------------------------------------------------

    void platformDefaultsToTheRealServices()
    {
        QVERIFY(dynamic_cast<kvSystemMessageBox *>(&kvPlatform::messageBox()));
        QVERIFY(dynamic_cast<kvSystemShell *>(&kvPlatform::shell()));
        QVERIFY(dynamic_cast<kvSystemFileDialog *>(&kvPlatform::fileDialog()));
        QVERIFY(dynamic_cast<kvSystemBeep *>(&kvPlatform::beep()));
        QVERIFY(dynamic_cast<kvSystemClock *>(&kvPlatform::clock()));
        QVERIFY(dynamic_cast<kvSystemModalRunner *>(&kvPlatform::modalRunner()));
    }

    void settersInstallAndNullRestores()
    {
        kvScriptedMessageBox messageBox;
        kvScriptedShell shell;
        kvScriptedFileDialog fileDialog;
        kvCountingBeep beep;
        kvFixedClock clock;
        kvScriptedModalRunner runner;
        kvPlatform::setMessageBox(&messageBox);
        kvPlatform::setShell(&shell);
        kvPlatform::setFileDialog(&fileDialog);
        kvPlatform::setBeep(&beep);
        kvPlatform::setClock(&clock);
        kvPlatform::setModalRunner(&runner);
        QCOMPARE(&kvPlatform::messageBox(), &messageBox);
        QCOMPARE(&kvPlatform::shell(), &shell);
        QCOMPARE(&kvPlatform::fileDialog(), &fileDialog);
        QCOMPARE(&kvPlatform::beep(), &beep);
        QCOMPARE(&kvPlatform::clock(), &clock);
        QCOMPARE(&kvPlatform::modalRunner(), &runner);

        kvPlatform::setMessageBox(nullptr);
        kvPlatform::setShell(nullptr);
        kvPlatform::setFileDialog(nullptr);
        kvPlatform::setBeep(nullptr);
        kvPlatform::setClock(nullptr);
        kvPlatform::setModalRunner(nullptr);
        platformDefaultsToTheRealServices();
    }

    void scopedServicesNestAndRestore()
    {
        static_assert(std::is_same_v<kvScopedService<kvScriptedMessageBox>::Service, kvMessageBox>);
        static_assert(std::is_same_v<kvScopedService<kvFixedClock>::Service, kvClock>);

        kvScriptedMessageBox outer;
        kvScriptedMessageBox inner;
        {
            kvScopedService installedOuter(outer);
            QCOMPARE(&kvPlatform::messageBox(), &outer);
            {
                kvScopedService installedInner(inner);
                QCOMPARE(&kvPlatform::messageBox(), &inner);
                kvPlatform::messageBox().MsgBox(u"innen"_s, 0, QString());
            }
            QCOMPARE(&kvPlatform::messageBox(), &outer);
            kvPlatform::messageBox().MsgBox(u"außen"_s, 0, QString());
        }
        QVERIFY(dynamic_cast<kvSystemMessageBox *>(&kvPlatform::messageBox()));
        QCOMPARE(inner.LastCall().prompt, u"innen"_s);
        QCOMPARE(outer.LastCall().prompt, u"außen"_s);
    }

    void servicesAreThreadWide()
    {
        kvFixedClock clock(kvDate::fromDate(QDate(2024, 1, 1)));
        kvScopedService installed(clock);
        bool otherThreadHasTheRealClock = false;
        bool otherThreadCanInstall = false;
        std::thread other([&]() {
            otherThreadHasTheRealClock = dynamic_cast<kvSystemClock *>(&kvPlatform::clock()) != nullptr;
            kvFixedClock own;
            kvScopedService ownInstalled(own);
            otherThreadCanInstall = &kvPlatform::clock() == &own;
        });
        other.join();
        QVERIFY(otherThreadHasTheRealClock);
        QVERIFY(otherThreadCanInstall);
        QCOMPARE(&kvPlatform::clock(), &clock);
    }
};

QTEST_MAIN(tst_kvPlatformServices)
#include "tst_kvPlatformServices.moc"
