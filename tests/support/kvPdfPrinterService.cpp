#include "kvPdfPrinterService.h"

#include <QFile>
#include <QPrinter>

bool kvPdfPrinterService::Print(QWidget *, const Job &job)
{
    m_calls.append({job.DocumentName, job.PageLayout});
    if (m_cancelled)
        return false;
    if (m_filePath.isEmpty())
        throw PrinterError(QStringLiteral("keine Ausgabedatei"));
    try {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(m_filePath);
        printer.setDocName(job.DocumentName);
        printer.setPageLayout(job.PageLayout);
        job.Pages(printer);
        if (printer.printerState() == QPrinter::Error)
            throw PrinterError(m_filePath);
    } catch (...) {
        QFile::remove(m_filePath);
        throw;
    }
    return true;
}
