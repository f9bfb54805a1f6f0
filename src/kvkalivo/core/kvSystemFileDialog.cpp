#include "kvSystemFileDialog.h"

#include "kvModalWindows.h"

#include <QFileDialog>

QString kvSystemFileDialog::GetOpenFileName(QWidget *parent, const QString &title,
                                            const QString &initialPath, const QString &vbFilter)
{
    kvModalWindows::PrepareToOpen();
    return QFileDialog::getOpenFileName(parent, title, initialPath, ToQtFilter(vbFilter));
}
