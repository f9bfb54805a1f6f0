#include "kvPdfPrinterService.h"

#include <QFile>
#include <QPrinter>

kvPdfPrinterService::kvPdfPrinterService(const QString &filePath)
    : m_filePath(filePath)
{
}

bool kvPdfPrinterService::Print(QWidget *parent, const Job &job)
{
    m_calls.append({parent, job.DocumentName, job.PageLayout, m_filePath});
    if (m_cancelled)
        return false;
    if (m_filePath.isEmpty())
        throw PrinterError(QStringLiteral("keine Ausgabedatei"));
    try {
        PrintToFile(job);
    } catch (...) {
        QFile::remove(m_filePath);
        throw;
    }
    return true;
}

void kvPdfPrinterService::PrintToFile(const Job &job) const
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_filePath);
    printer.setDocName(job.DocumentName);
    printer.setPageLayout(job.PageLayout);
    job.Pages(printer);
    if (printer.printerState() == QPrinter::Error)
        throw PrinterError(m_filePath);
}
