#pragma once

#include "kvFileDialog.h"

/*!
    \file kvSystemFileDialog.h
    \brief kvSystemFileDialog, the file dialog service's real implementation.
*/

//! The real file-open dialog: QFileDialog::getOpenFileName() with the converted filter.
class KVKALIVO_TESTS_EXPORT kvSystemFileDialog : public kvFileDialog
{
public:
    QString GetOpenFileName(QWidget *parent, const QString &title, const QString &initialPath,
                            const QString &vbFilter) override;
};
