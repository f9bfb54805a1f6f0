#pragma once

#include "kvkalivo_export.h"

#include <QDialog>

/*!
    \brief Part 5.2: the icon picker. One instance per thread, created on first use and
    hidden between uses; every kvKalivo of the thread shares it.
*/
class KVKALIVO_EXPORT frmPicSelector : public QDialog
{
    Q_OBJECT

public:
    //! The thread's picker, created hidden on first use (Part 1.1, Initialize step 3).
    static frmPicSelector &ThreadInstance();
    static bool HasThreadInstance();

    //! The folder the icons were last loaded from (IconPath of the controls).
    QString IconFolder() const { return m_iconFolder; }
    //! Loads the icons of \a folder (Part 5.2, loadPics).
    void loadPics(const QString &folder);

private:
    frmPicSelector();

    QString m_iconFolder;
};
