#include "kvMessageBox.h"

kvMessageBox::~kvMessageBox() = default;

QList<int> kvMessageBox::ButtonResults(int buttons)
{
    switch (buttons & ButtonSetMask) {
    case vbOKCancel:
        return {vbOK, vbCancel};
    case vbAbortRetryIgnore:
        return {vbAbort, vbRetry, vbIgnore};
    case vbYesNoCancel:
        return {vbYes, vbNo, vbCancel};
    case vbYesNo:
        return {vbYes, vbNo};
    case vbRetryCancel:
        return {vbRetry, vbCancel};
    default:
        return {vbOK};
    }
}

int kvMessageBox::DefaultResult(int buttons)
{
    const QList<int> results = ButtonResults(buttons);
    const int index = (buttons & DefaultButtonMask) / vbDefaultButton2;
    // A default that names a button the set does not have falls back to the first button.
    return index < results.size() ? results.at(index) : results.constFirst();
}

int kvMessageBox::EscapeResult(int buttons)
{
    const QList<int> results = ButtonResults(buttons);
    if (results.contains(vbCancel))
        return vbCancel;
    if (results.size() == 1)
        return results.constFirst();
    // Without Cancel, Escape has no answer of its own; Qt's message box takes it as No or
    // Abort, so say so.
    return results.contains(vbNo) ? int(vbNo) : int(vbAbort);
}

int kvMessageBox::Icon(int buttons)
{
    const int icon = buttons & IconMask;
    switch (icon) {
    case vbCritical:
    case vbQuestion:
    case vbExclamation:
    case vbInformation:
        return icon;
    default:
        return 0;
    }
}
