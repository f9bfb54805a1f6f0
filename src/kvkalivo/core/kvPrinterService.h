#pragma once

#include "kvRuntimeError.h"
#include "kvkalivo_export.h"

#include <QPageLayout>
#include <QString>

#include <functional>

class QPagedPaintDevice;
class QWidget;

/*!
    \file kvPrinterService.h
    \brief kvPrinterService, the printer service behind kvKalivo::PrintCalendar().
*/

/*!
    \brief The printer service: sends the pages of a print job to a printer.

    The real one is kvSystemPrinterService (print dialog, then a preview); tests use
    kvPdfPrinterService, which prints into a PDF file without asking.
*/
class KVKALIVO_TESTS_EXPORT kvPrinterService
{
public:
    //! Paints every page on \a device (QPainter on it, newPage() between pages).
    using Render = std::function<void(QPagedPaintDevice &device)>;

    //! What to print.
    struct Job
    {
        QString DocumentName;            //!< the name the print queue shows
        QPageLayout PageLayout = A4Landscape();  //!< the device has it before Pages runs
        Render Pages;                    //!< paints the pages; may run more than once
    };

    virtual ~kvPrinterService();

    /*!
        Prints \a job; \a parent owns the dialogs. Returns true when the pages went out and
        false when the user cancelled, which is no failure. Pages may run more than once
        (a preview and the printout). Throws what Pages throws, and kvRuntimeError 482
        "Druckerfehler" when the device fails.
    */
    virtual bool Print(QWidget *parent, const Job &job) = 0;

    //! The error number of a failure of the printer ("Druckerfehler").
    static constexpr int PrinterErrorNumber = 482;

    //! A4 landscape with 10 mm margins.
    static QPageLayout A4Landscape();
    //! 482 "Druckerfehler", followed by \a detail when given.
    static kvRuntimeError PrinterError(const QString &detail = QString());
};
