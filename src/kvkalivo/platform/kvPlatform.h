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
    \brief The services through which the control reaches message boxes, the shell, the file
    dialog, the beep, the clock, modal dialogs and the printer.

    Each accessor returns the service installed on the calling thread, or the real one
    (kvSystemMessageBox, ...) when none is installed. Installing takes a non-owning pointer;
    nullptr restores the real service. Tests usually install with kvScopedService.
*/
class KVKALIVO_EXPORT kvPlatform
{
public:
    static kvMessageBox &messageBox();
    static kvShell &shell();
    static kvFileDialog &fileDialog();
    static kvBeep &beep();
    static kvClock &clock();
    static kvModalRunner &modalRunner();
    static kvPrinterService &printerService();

    static void setMessageBox(kvMessageBox *service);
    static void setShell(kvShell *service);
    static void setFileDialog(kvFileDialog *service);
    static void setBeep(kvBeep *service);
    static void setClock(kvClock *service);
    static void setModalRunner(kvModalRunner *service);
    static void setPrinterService(kvPrinterService *service);

    //! Installs \a service and returns the one installed before (nullptr: the real one).
    static kvMessageBox *exchange(kvMessageBox *service);
    static kvShell *exchange(kvShell *service);
    static kvFileDialog *exchange(kvFileDialog *service);
    static kvBeep *exchange(kvBeep *service);
    static kvClock *exchange(kvClock *service);
    static kvModalRunner *exchange(kvModalRunner *service);
    static kvPrinterService *exchange(kvPrinterService *service);
};
