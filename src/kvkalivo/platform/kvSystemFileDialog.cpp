#include "kvSystemFileDialog.h"

#include <QFileDialog>

QString kvSystemFileDialog::GetOpenFileName(QWidget *parent, const QString &title,
                                            const QString &initialPath, const QString &vbFilter)
{
    return QFileDialog::getOpenFileName(parent, title, initialPath, ToQtFilter(vbFilter));
}
