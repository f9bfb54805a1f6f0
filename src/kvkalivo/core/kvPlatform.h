#pragma once

#include "kvkalivo_export.h"

class kvBeep;
class kvClock;
class kvFileDialog;
class kvMessageBox;
class kvModalRunner;
class kvPrinterService;
class kvShell;

/*!
    \file kvPlatform.h
    \brief kvPlatform: the services through which the control reaches the desktop, per thread.
*/

/*!
    \brief The services through which the control reaches message boxes, the shell, the file
    dialog, the beep, the clock, modal dialogs and the printer.

    Each accessor returns the service installed on the calling thread, or the real one
    (kvSystemMessageBox, ...) when none is installed. Installing takes a non-owning pointer;
    nullptr restores the real service. Tests usually install with kvScopedService.
*/
class KVKALIVO_TESTS_EXPORT kvPlatform
{
public:
    //! Message boxes: the error reports, the delete and print questions (kvSystemMessageBox).
    static kvMessageBox &messageBox();
    //! Opening linked documents from the editor (kvSystemShell).
    static kvShell &shell();
    //! The editor's "choose a document" dialog (kvSystemFileDialog).
    static kvFileDialog &fileDialog();
    //! The editor's beep at an invalid time (kvSystemBeep).
    static kvBeep &beep();
    //! "Today" and "now": the current-day marking, the "Today" button, a new control's ActualDate (kvSystemClock).
    static kvClock &clock();
    //! Modal dialogs: the appointment editor and the icon picker (kvSystemModalRunner).
    static kvModalRunner &modalRunner();
    //! Printing (PrintCalendar) (kvSystemPrinterService).
    static kvPrinterService &printerService();

    //! Installs \a service as this thread's message box; nullptr restores kvSystemMessageBox.
    static void setMessageBox(kvMessageBox *service);
    //! Installs \a service as this thread's shell; nullptr restores kvSystemShell.
    static void setShell(kvShell *service);
    //! Installs \a service as this thread's file dialog; nullptr restores kvSystemFileDialog.
    static void setFileDialog(kvFileDialog *service);
    //! Installs \a service as this thread's beep; nullptr restores kvSystemBeep.
    static void setBeep(kvBeep *service);
    //! Installs \a service as this thread's clock; nullptr restores kvSystemClock.
    static void setClock(kvClock *service);
    //! Installs \a service as this thread's modal runner; nullptr restores kvSystemModalRunner.
    static void setModalRunner(kvModalRunner *service);
    //! Installs \a service as this thread's printer; nullptr restores kvSystemPrinterService.
    static void setPrinterService(kvPrinterService *service);

    //! Installs \a service and returns the one installed before (nullptr: the real one).
    static kvMessageBox *exchange(kvMessageBox *service);
    //! \overload
    static kvShell *exchange(kvShell *service);
    //! \overload
    static kvFileDialog *exchange(kvFileDialog *service);
    //! \overload
    static kvBeep *exchange(kvBeep *service);
    //! \overload
    static kvClock *exchange(kvClock *service);
    //! \overload
    static kvModalRunner *exchange(kvModalRunner *service);
    //! \overload
    static kvPrinterService *exchange(kvPrinterService *service);
};
