#include "kvPlatform.h"

#include "kvSystemBeep.h"
#include "kvSystemClock.h"
#include "kvSystemFileDialog.h"
#include "kvSystemMessageBox.h"
#include "kvSystemModalRunner.h"
#include "kvSystemPrinterService.h"
#include "kvSystemShell.h"

#include <utility>

namespace {

thread_local kvMessageBox *installedMessageBox = nullptr;
thread_local kvShell *installedShell = nullptr;
thread_local kvFileDialog *installedFileDialog = nullptr;
thread_local kvBeep *installedBeep = nullptr;
thread_local kvClock *installedClock = nullptr;
thread_local kvModalRunner *installedModalRunner = nullptr;
thread_local kvPrinterService *installedPrinterService = nullptr;

template <typename Real, typename Service>
Service &current(Service *installed)
{
    if (installed)
        return *installed;
    static thread_local Real real;
    return real;
}

} // namespace

kvMessageBox &kvPlatform::messageBox()
{
    return current<kvSystemMessageBox>(installedMessageBox);
}

kvShell &kvPlatform::shell()
{
    return current<kvSystemShell>(installedShell);
}

kvFileDialog &kvPlatform::fileDialog()
{
    return current<kvSystemFileDialog>(installedFileDialog);
}

kvBeep &kvPlatform::beep()
{
    return current<kvSystemBeep>(installedBeep);
}

kvClock &kvPlatform::clock()
{
    return current<kvSystemClock>(installedClock);
}

kvModalRunner &kvPlatform::modalRunner()
{
    return current<kvSystemModalRunner>(installedModalRunner);
}

kvPrinterService &kvPlatform::printerService()
{
    return current<kvSystemPrinterService>(installedPrinterService);
}

void kvPlatform::setMessageBox(kvMessageBox *service)
{
    installedMessageBox = service;
}

void kvPlatform::setShell(kvShell *service)
{
    installedShell = service;
}

void kvPlatform::setFileDialog(kvFileDialog *service)
{
    installedFileDialog = service;
}

void kvPlatform::setBeep(kvBeep *service)
{
    installedBeep = service;
}

void kvPlatform::setClock(kvClock *service)
{
    installedClock = service;
}

void kvPlatform::setModalRunner(kvModalRunner *service)
{
    installedModalRunner = service;
}

void kvPlatform::setPrinterService(kvPrinterService *service)
{
    installedPrinterService = service;
}

kvMessageBox *kvPlatform::exchange(kvMessageBox *service)
{
    return std::exchange(installedMessageBox, service);
}

kvShell *kvPlatform::exchange(kvShell *service)
{
    return std::exchange(installedShell, service);
}

kvFileDialog *kvPlatform::exchange(kvFileDialog *service)
{
    return std::exchange(installedFileDialog, service);
}

kvBeep *kvPlatform::exchange(kvBeep *service)
{
    return std::exchange(installedBeep, service);
}

kvClock *kvPlatform::exchange(kvClock *service)
{
    return std::exchange(installedClock, service);
}

kvModalRunner *kvPlatform::exchange(kvModalRunner *service)
{
    return std::exchange(installedModalRunner, service);
}

kvPrinterService *kvPlatform::exchange(kvPrinterService *service)
{
    return std::exchange(installedPrinterService, service);
}
