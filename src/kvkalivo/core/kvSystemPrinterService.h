#pragma once

#include "kvPrinterService.h"

/*!
    \file kvSystemPrinterService.h
    \brief kvSystemPrinterService, the printer service's real implementation.
*/

/*!
    \brief The real printer: QPrintDialog to choose the printer and its settings, then a
    preview of the pages (dialog "kvPrintPreview", a QPrintPreviewWidget with "Drucken" and
    "Abbrechen"). Cancelling either prints nothing and returns false.

    The preview is a dialog of its own rather than QPrintPreviewDialog because the latter's
    print button asks for the printer a second time on Linux.
*/
class KVKALIVO_TESTS_EXPORT kvSystemPrinterService : public kvPrinterService
{
public:
    //! The print dialog, then the preview; false when either is cancelled.
    bool Print(QWidget *parent, const Job &job) override;

    //! The objectName of the preview dialog, for findChild() and tests.
    static constexpr const char *PreviewObjectName = "kvPrintPreview";
};
