#include "frmPicSelector.h"

#include <QCoreApplication>
#include <QPointer>

namespace {

QPointer<frmPicSelector> &threadPicker()
{
    thread_local QPointer<frmPicSelector> picker;
    return picker;
}

} // namespace

frmPicSelector::frmPicSelector()
{
    setObjectName(QStringLiteral("frmPicSelector"));
    setWindowTitle(QStringLiteral("Symbol auswählen"));
    setModal(true);
}

frmPicSelector &frmPicSelector::ThreadInstance()
{
    QPointer<frmPicSelector> &picker = threadPicker();
    if (!picker) {
        picker = new frmPicSelector;
        // A top-level dialog without a parent: the application tears it down at exit.
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, picker, &QObject::deleteLater);
    }
    return *picker;
}

bool frmPicSelector::HasThreadInstance()
{
    return !threadPicker().isNull();
}

void frmPicSelector::loadPics(const QString &folder)
{
    m_iconFolder = folder;
}
