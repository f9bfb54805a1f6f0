#pragma once

#include <QObject>

/*!
    \file kvModalWindows.h
    \brief kvModalWindows: announces each modal window before it opens and frees the mouse for it.
*/

/*!
    \brief Announces each modal window of the thread before it opens, and frees the mouse for it.

    A widget that still holds the mouse (QWidget::grabMouse()) when a modal window opens gets
    every click, and the modal window gets none: its buttons look dead while the keyboard
    still works. The real services (kvSystemMessageBox, kvSystemModalRunner,
    kvSystemFileDialog, kvSystemPrinterService) call PrepareToOpen() just before they show
    their window; a host that installs its own service should do the same.
*/
class kvModalWindows : public QObject
{
    Q_OBJECT

public:
    //! The calling thread's instance.
    static kvModalWindows &ThreadInstance();

    /*!
        Emits opening() on the thread's instance, then ends the mouse grab that a widget
        may still hold.
    */
    static void PrepareToOpen();

Q_SIGNALS:
    //! A modal window is about to open: whatever holds the mouse lets go of it now.
    void opening();

private:
    kvModalWindows() = default;
};
