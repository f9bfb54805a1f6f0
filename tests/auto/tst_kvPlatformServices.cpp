// The real desktop services: message box, file dialog, shell and the modal windows they open.
#include "kvSystemFileDialog.h"
#include "kvSystemMessageBox.h"
#include "kvSystemModalRunner.h"
#include "kvSystemPrinterService.h"
#include "kvSystemShell.h"
#include "kvWhenShown.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

Q_DECLARE_METATYPE(std::function<void()>)

namespace {

class UrlRecorder : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> urls;

public slots:
    void open(const QUrl &url) { urls.append(url); }
};

QString touch(const QTemporaryDir &dir, const QString &name)
{
    QFile file(dir.filePath(name));
    return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
}

const QString editorFilter = "Alle Dateien (*.*)|*.*|HTML-Dokumente(*.htm, *.html)|*.htm*|"
                             "Stapelverarbeitungsdateien (*.bat, *.cmd)|*.bat;*.cmd";
const QStringList editorQtFilters = {"Alle Dateien (*)", "HTML-Dokumente (*.htm*)", "Stapelverarbeitungsdateien (*.bat *.cmd)"};

} // namespace

class tst_kvPlatformServices : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QGuiApplication::setApplicationDisplayName("kvKalivo Testhost"); }

    //! The captions stay German whatever translator the host installed (here: "?" for every text).
    void messageBoxes_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("press");   // 0: Escape
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("shown");   // icon, default button, captions, title
        QTest::newRow("question, Yes") << 35 << "Drucken" << int(QMessageBox::Yes) << 6 << "4 Ja: Abbrechen Ja Nein | Drucken";
        QTest::newRow("question, Escape") << 35 << "" << 0 << 2 << "4 Ja: Abbrechen Ja Nein | kvKalivo Testhost";
        QTest::newRow("question, second default") << 35 + 256 << "" << int(QMessageBox::No) << 7
                                                  << "4 Nein: Abbrechen Ja Nein | kvKalivo Testhost";
        QTest::newRow("critical") << 16 << "kvKalivo.ocx" << int(QMessageBox::Ok) << 1 << "3 OK: OK | kvKalivo.ocx";
        QTest::newRow("Abort/Retry/Ignore") << 2 << "" << int(QMessageBox::Retry) << 4
                                            << "0 Abbrechen: Abbrechen Ignorieren Wiederholen | kvKalivo Testhost";
        QTest::newRow("Yes/No, Escape") << 4 << "" << 0 << 7 << "0 Ja: Ja Nein | kvKalivo Testhost";
    }
    void messageBoxes()
    {
        QFETCH(int, style);
        QFETCH(QString, title);
        QFETCH(int, press);
        struct QuestionMarks : QTranslator
        {
            QString translate(const char *, const char *, const char *, int) const override { return "?"; }
            bool isEmpty() const override { return false; }
        } translator;
        QCoreApplication::installTranslator(&translator);
        QString shown;
        whenShown<QMessageBox>([&](QMessageBox *box) {
            QStringList captions;
            for (QAbstractButton *button : box->buttons())
                captions << button->text().remove('&');
            captions.sort();
            shown = QStringLiteral("%1 %2: %3 | %4").arg(int(box->icon())).arg(box->defaultButton()->text().remove('&'),
                                                                             captions.join(' '), box->windowTitle());
            if (press == 0)
                QTest::keyClick(box, Qt::Key_Escape);
            else
                QTest::mouseClick(box->button(QMessageBox::StandardButton(press)), Qt::LeftButton);
        });
        const int result = kvSystemMessageBox().MsgBox("kvKalivo-Fehlercode 600\r\nTabelle fehlt", style, title);
        QCoreApplication::removeTranslator(&translator);
        QTEST(result, "result");
        QTEST(shown, "shown");
    }

    //! A widget that holds the mouse while a modal window opens would get every click.
    void modalWindowsOpenWithTheMouseFree_data()
    {
        QTest::addColumn<std::function<void()>>("open");
        QTest::newRow("message box") << std::function<void()>([] { kvSystemMessageBox().MsgBox("Termin löschen?", 35, {}); });
        QTest::newRow("modal dialog") << std::function<void()>([] {
            QDialog editor;
            kvSystemModalRunner().Exec(editor);
        });
        QTest::newRow("file dialog") << std::function<void()>([] {
            kvSystemFileDialog().GetOpenFileName(nullptr, "Öffnen", QDir::tempPath(), editorFilter);
        });
        QTest::newRow("print dialog") << std::function<void()>([] {
            kvPrinterService::Job job;
            job.Pages = [](QPagedPaintDevice &) {};
            kvSystemPrinterService().Print(nullptr, job);
        });
    }
    void modalWindowsOpenWithTheMouseFree()
    {
        QFETCH(std::function<void()>, open);
        QWidget holder;
        holder.show();
        QVERIFY(QTest::qWaitForWindowExposed(&holder));
        holder.grabMouse();
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

    void filterConversion_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("qtFilter");
        QTest::newRow("spaces around patterns") << "Dokumente| *.doc ; *.rtf " << "Dokumente (*.doc *.rtf)";
        QTest::newRow("trailing separator") << "Textdateien|*.txt|" << "Textdateien (*.txt)";
        QTest::newRow("description without patterns") << "Alles" << "Alles (*)";
        QTest::newRow("parentheses that are no patterns") << "Dokumente (alt)|*.doc" << "Dokumente (alt) (*.doc)";
    }
    void filterConversion()
    {
        QFETCH(QString, filter);
        QTEST(kvFileDialog::ToQtFilter(filter), "qtFilter");
    }

    void fileDialogReturnsTheTypedFileOrNothing()
    {
        QTemporaryDir dir;
        const QString path = touch(dir, "Termin.doc");
        QStringList filters;
        whenShown<QFileDialog>([&](QFileDialog *dialog) {
            filters = dialog->nameFilters();
            dialog->findChild<QLineEdit *>("fileNameEdit")->setText(path);
            static_cast<QDialog *>(dialog)->accept();
        });
        QCOMPARE(kvSystemFileDialog().GetOpenFileName(nullptr, "Öffnen", dir.path(), editorFilter), path);
        QCOMPARE(filters, editorQtFilters);
        whenShown<QFileDialog>([](QFileDialog *dialog) { dialog->reject(); });
        QVERIFY(kvSystemFileDialog().GetOpenFileName(nullptr, "Öffnen", dir.path(), editorFilter).isEmpty());
    }

    void shellResults()
    {
        QTemporaryDir dir;
        const QString path = touch(dir, "Bericht.txt");
        kvSystemShell shell;
        QCOMPARE(shell.ShellExecuteOpen(dir.filePath("fehlt.doc")), 2);
        UrlRecorder recorder;
        QDesktopServices::setUrlHandler("file", &recorder, "open");
        QVERIFY(kvShell::Succeeded(shell.ShellExecuteOpen(path)));
        QCOMPARE(recorder.urls, QList<QUrl>{QUrl::fromLocalFile(path)});
        // A handler that cannot be called makes QDesktopServices fail, as a missing opener does.
        QDesktopServices::setUrlHandler("file", &recorder, "noSuchSlot");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("noSuchSlot"));
        QCOMPARE(shell.ShellExecuteOpen(path), 31);
        QDesktopServices::unsetUrlHandler("file");
        // Without a session bus there is no portal to offer "open with".
        const QByteArray bus = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + dir.filePath("no-bus").toLocal8Bit());
        QVERIFY(!shell.OpenWith(path));
        bus.isNull() ? qunsetenv("DBUS_SESSION_BUS_ADDRESS") : qputenv("DBUS_SESSION_BUS_ADDRESS", bus);
        const QStringList portalCall = kvSystemShell::OpenWithArguments("/tmp/it's here.doc");
        QCOMPARE(portalCall.sliced(portalCall.size() - 2), (QStringList{"'file:///tmp/it\\'s%20here.doc'", "{'ask': <true>}"}));
    }
};

QTEST_MAIN(tst_kvPlatformServices)
#include "tst_kvPlatformServices.moc"
