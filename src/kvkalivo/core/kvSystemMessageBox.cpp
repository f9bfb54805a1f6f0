#include "kvSystemMessageBox.h"

#include "kvModalWindows.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <iterator>

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

//! A result code, its Qt button and its caption, as a German desktop words it.
struct ButtonKind
{
    int result;
    QMessageBox::StandardButton standardButton;
    const char16_t *caption;
};

constexpr ButtonKind buttonKinds[] = {
    {kvMessageBox::vbOK, QMessageBox::Ok, u"OK"},
    {kvMessageBox::vbCancel, QMessageBox::Cancel, u"Abbrechen"},
    {kvMessageBox::vbAbort, QMessageBox::Abort, u"&Abbrechen"},
    {kvMessageBox::vbRetry, QMessageBox::Retry, u"&Wiederholen"},
    {kvMessageBox::vbIgnore, QMessageBox::Ignore, u"&Ignorieren"},
    {kvMessageBox::vbYes, QMessageBox::Yes, u"&Ja"},
    {kvMessageBox::vbNo, QMessageBox::No, u"&Nein"},
};

template <typename Matches>
const ButtonKind *findButton(Matches matches)
{
    const auto found = std::find_if(std::begin(buttonKinds), std::end(buttonKinds), matches);
    return found == std::end(buttonKinds) ? nullptr : found;
}

const ButtonKind *buttonFor(int result)
{
    return findButton([result](const ButtonKind &button) { return button.result == result; });
}

QMessageBox::StandardButton qtButton(int result)
{
    const ButtonKind *button = buttonFor(result);
    return button ? button->standardButton : QMessageBox::NoButton;
}

int vbResult(QMessageBox::StandardButton standardButton, int fallback)
{
    const ButtonKind *button = findButton(
        [standardButton](const ButtonKind &b) { return b.standardButton == standardButton; });
    return button ? button->result : fallback;
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
    for (int result : ButtonResults(buttons)) {
        // The control's own captions, whatever translator the host installed.
        const ButtonKind *button = buttonFor(result);
        box.addButton(button->standardButton)->setText(QString::fromUtf16(button->caption));
    }
    box.setDefaultButton(qtButton(DefaultResult(buttons)));
    box.setEscapeButton(box.button(qtButton(EscapeResult(buttons))));
    kvModalWindows::PrepareToOpen();
    box.exec();

    return vbResult(box.standardButton(box.clickedButton()), EscapeResult(buttons));
}
