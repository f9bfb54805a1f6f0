#pragma once

#include "kvkalivo_export.h"

#include <QList>
#include <QString>

/*!
    \brief The message box service: VB's MsgBox with its style and result codes.

    The control's logic asks kvPlatform::messageBox() instead of showing a QMessageBox, so that
    tests can script the answers (kvScriptedMessageBox). The real one is kvSystemMessageBox.
*/
class KVKALIVO_EXPORT kvMessageBox
{
public:
    //! VB's button styles; a style is the sum of one button set, one icon and one default button.
    enum Style {
        vbOKOnly = 0,
        vbOKCancel = 1,
        vbAbortRetryIgnore = 2,
        vbYesNoCancel = 3,
        vbYesNo = 4,
        vbRetryCancel = 5,
        vbCritical = 16,
        vbQuestion = 32,
        vbExclamation = 48,
        vbInformation = 64,
        vbDefaultButton1 = 0,
        vbDefaultButton2 = 256,
        vbDefaultButton3 = 512
    };

    //! VB's result codes: the button that was pressed.
    enum Result {
        vbOK = 1,
        vbCancel = 2,
        vbAbort = 3,
        vbRetry = 4,
        vbIgnore = 5,
        vbYes = 6,
        vbNo = 7
    };

    static constexpr int ButtonSetMask = 0x7;
    static constexpr int IconMask = 0x70;
    static constexpr int DefaultButtonMask = 0x300;

    virtual ~kvMessageBox();

    /*!
        Shows \a prompt with the buttons and icon of \a buttons (a Style sum) and returns the
        Result of the button pressed. An empty \a title means the application's display name.
    */
    virtual int MsgBox(const QString &prompt, int buttons, const QString &title) = 0;

    //! The results of the buttons of \a buttons, in the order they are shown.
    static QList<int> ButtonResults(int buttons);
    //! The result of the default button (the one Enter presses).
    static int DefaultResult(int buttons);
    //! The result that Escape or the close box gives: Cancel where there is one.
    static int EscapeResult(int buttons);
    //! The icon part of \a buttons: 0, vbCritical, vbQuestion, vbExclamation or vbInformation.
    static int Icon(int buttons);
};
