#pragma once

#include "kvPrinterService.h"

/*!
    \brief The real printer: QPrintDialog to choose the printer and its settings, then a
    preview of the pages (dialog "kvPrintPreview", a QPrintPreviewWidget with "Drucken" and
    "Abbrechen"). Cancelling either prints nothing and returns false.

    The preview is a dialog of its own rather than QPrintPreviewDialog because the latter's
    print button asks for the printer a second time on Linux.
*/
class KVKALIVO_EXPORT kvSystemPrinterService : public kvPrinterService
{
public:
    bool Print(QWidget *parent, const Job &job) override;

    static constexpr const char *PreviewObjectName = "kvPrintPreview";
};
