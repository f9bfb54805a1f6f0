#pragma once

#include "kvFileDialog.h"

//! The real file-open dialog: QFileDialog::getOpenFileName() with the converted filter.
class KVKALIVO_EXPORT kvSystemFileDialog : public kvFileDialog
{
public:
    QString GetOpenFileName(QWidget *parent, const QString &title, const QString &initialPath,
                            const QString &vbFilter) override;
};
