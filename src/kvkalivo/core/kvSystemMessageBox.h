#pragma once

#include "kvMessageBox.h"

/*!
    \file kvSystemMessageBox.h
    \brief kvSystemMessageBox, the message box service's real implementation.
*/

/*!
    \brief The real message box: a modal QMessageBox over the application's active window,
    with German buttons ("Ja", "Nein", "Abbrechen", "OK", ...) whatever translator is installed.

    Button sets without Cancel (Yes/No, Abort/Retry/Ignore) have no answer of their own for
    Escape and the close box; Qt's message box still accepts them and answers No or Abort;
    see kvMessageBox::EscapeResult().
*/
class KVKALIVO_TESTS_EXPORT kvSystemMessageBox : public kvMessageBox
{
public:
    int MsgBox(const QString &prompt, int buttons, const QString &title) override;
};
