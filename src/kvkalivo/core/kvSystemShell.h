#pragma once

#include "kvShell.h"

#include <QStringList>

/*!
    \file kvSystemShell.h
    \brief kvSystemShell, the shell service's real implementation.
*/

/*!
    \brief The real shell: QDesktopServices for "open", the desktop portal's chooser for "open with".

    ShellExecuteOpen() answers FileNotFound for a path that does not exist and NoAssociation when
    the desktop has no way to open it (QDesktopServices::openUrl() fails). On Linux the desktop's
    launcher runs on its own, so a type without a program found only by the launcher is reported
    by the desktop, not here.

    OpenWith() asks the XDG desktop portal (org.freedesktop.portal.OpenURI with "ask") through
    \c gdbus, which GNOME, KDE and most Debian desktops provide; it returns false when gdbus,
    the session bus or the portal is missing, and true once the portal took the request.
*/
class KVKALIVO_TESTS_EXPORT kvSystemShell : public kvShell
{
public:
    int ShellExecuteOpen(const QString &path) override;
    bool OpenWith(const QString &path) override;

    //! The gdbus arguments that ask the portal to offer a choice of program for \a path.
    static QStringList OpenWithArguments(const QString &path);
};
