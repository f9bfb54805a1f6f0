#pragma once

#include "kvkalivo_export.h"

#include <QList>
#include <QString>

/*!
    \file kvMessageBox.h
    \brief kvMessageBox, the message box service, and its style and result codes.
*/

/*!
    \brief The message box service: MsgBox() with numeric style and result codes.

    The control's logic asks kvPlatform::messageBox() instead of showing a QMessageBox, so that
    tests can script the answers (kvScriptedMessageBox). The real one is kvSystemMessageBox.
*/
class KVKALIVO_TESTS_EXPORT kvMessageBox
{
public:
    //! The styles; a style is the sum of one button set, one icon and one default button.
    enum Style {
        vbOKOnly = 0,           //!< button set: OK
        vbOKCancel = 1,         //!< button set: OK, Cancel
        vbAbortRetryIgnore = 2, //!< button set: Abort, Retry, Ignore
        vbYesNoCancel = 3,      //!< button set: Yes, No, Cancel (the control's questions: style 35)
        vbYesNo = 4,            //!< button set: Yes, No
        vbRetryCancel = 5,      //!< button set: Retry, Cancel
        vbCritical = 16,        //!< icon: critical stop (the control's error reports: style 16)
        vbQuestion = 32,        //!< icon: question mark
        vbExclamation = 48,     //!< icon: warning
        vbInformation = 64,     //!< icon: information
        vbDefaultButton1 = 0,   //!< the first button is the default
        vbDefaultButton2 = 256, //!< the second button is the default
        vbDefaultButton3 = 512  //!< the third button is the default
    };

    //! The result codes: the button that was pressed.
    enum Result {
        vbOK = 1,     //!< OK
        vbCancel = 2, //!< Cancel, or Escape where there is a Cancel button
        vbAbort = 3,  //!< Abort
        vbRetry = 4,  //!< Retry
        vbIgnore = 5, //!< Ignore
        vbYes = 6,    //!< Yes
        vbNo = 7      //!< No
    };

    //! The bits of a style that choose the button set (vbOKOnly .. vbRetryCancel).
    static constexpr int ButtonSetMask = 0x7;
    //! The bits of a style that choose the icon (vbCritical .. vbInformation).
    static constexpr int IconMask = 0x70;
    //! The bits of a style that choose the default button.
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
