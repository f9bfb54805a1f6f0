#include "kvSystemMessageBox.h"

#include "kvModalWindows.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {

QMessageBox::Icon qtIcon(int buttons)
{
    switch (kvMessageBox::Icon(buttons)) {
    case kvMessageBox::vbCritical:
        return QMessageBox::Critical;
    case kvMessageBox::vbQuestion:
        return QMessageBox::Question;
    case kvMessageBox::vbExclamation:
        return QMessageBox::Warning;
    case kvMessageBox::vbInformation:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QMessageBox::StandardButton qtButton(int result)
{
    switch (result) {
    case kvMessageBox::vbOK:
        return QMessageBox::Ok;
    case kvMessageBox::vbCancel:
        return QMessageBox::Cancel;
    case kvMessageBox::vbAbort:
        return QMessageBox::Abort;
    case kvMessageBox::vbRetry:
        return QMessageBox::Retry;
    case kvMessageBox::vbIgnore:
        return QMessageBox::Ignore;
    case kvMessageBox::vbYes:
        return QMessageBox::Yes;
    case kvMessageBox::vbNo:
        return QMessageBox::No;
    default:
        return QMessageBox::NoButton;
    }
}

int vbResult(QMessageBox::StandardButton button, int fallback)
{
    switch (button) {
    case QMessageBox::Ok:
        return kvMessageBox::vbOK;
    case QMessageBox::Cancel:
        return kvMessageBox::vbCancel;
    case QMessageBox::Abort:
        return kvMessageBox::vbAbort;
    case QMessageBox::Retry:
        return kvMessageBox::vbRetry;
    case QMessageBox::Ignore:
        return kvMessageBox::vbIgnore;
    case QMessageBox::Yes:
        return kvMessageBox::vbYes;
    case QMessageBox::No:
        return kvMessageBox::vbNo;
    default:
        return fallback;
    }
}

// The control's captions, as a German desktop words them, whatever translator the host installed.
QString germanCaption(int result)
{
    switch (result) {
    case kvMessageBox::vbOK:
        return QStringLiteral("OK");
    case kvMessageBox::vbCancel:
        return QStringLiteral("Abbrechen");
    case kvMessageBox::vbAbort:
        return QStringLiteral("&Abbrechen");
    case kvMessageBox::vbRetry:
        return QStringLiteral("&Wiederholen");
    case kvMessageBox::vbIgnore:
        return QStringLiteral("&Ignorieren");
    case kvMessageBox::vbYes:
        return QStringLiteral("&Ja");
    case kvMessageBox::vbNo:
        return QStringLiteral("&Nein");
    default:
        return QString();
    }
}

QString windowTitle(const QString &title)
{
    return title.isEmpty() ? QGuiApplication::applicationDisplayName() : title;
}

} // namespace

int kvSystemMessageBox::MsgBox(const QString &prompt, int buttons, const QString &title)
{
    QString text = prompt;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));

    QMessageBox box(qtIcon(buttons), windowTitle(title), text, QMessageBox::NoButton,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    for (int result : ButtonResults(buttons))
        box.addButton(qtButton(result))->setText(germanCaption(result));
    box.setDefaultButton(qtButton(DefaultResult(buttons)));
    box.setEscapeButton(box.button(qtButton(EscapeResult(buttons))));
    kvModalWindows::PrepareToOpen();
    box.exec();

    return vbResult(box.standardButton(box.clickedButton()), EscapeResult(buttons));
}
