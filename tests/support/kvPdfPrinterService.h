#pragma once

#include "kvPrinterService.h"

#include <QList>
#include <QPointer>
#include <QWidget>

/*!
    \file kvPdfPrinterService.h
    \brief kvPdfPrinterService, a printer service that writes PDF files without asking.
*/

/*!
    \brief A printer for tests and batch use: prints every job straight into a PDF file,
    without a dialog, and records the calls.

    The device is a QPrinter in PDF format at high resolution, the device a user gets with
    "Print to file (PDF)". With SetCancelled(true) it answers like a user who cancels: nothing
    is written and Print returns false. A failing job leaves no file behind.
*/
class kvPdfPrinterService : public kvPrinterService
{
public:
    //! One Print() call as it was made.
    struct Call
    {
        QPointer<QWidget> Parent;  //!< the parent passed (null once deleted)
        QString DocumentName;      //!< the job's document name
        QPageLayout PageLayout;    //!< the job's page layout
        QString FilePath;          //!< the file it was printed to (the FilePath() of the time)
    };

    //! A printer that writes into \a filePath.
    explicit kvPdfPrinterService(const QString &filePath = QString());

    //! Records the call and writes the job into FilePath(), unless set to cancel; throws 482 without a FilePath().
    bool Print(QWidget *parent, const Job &job) override;

    //! The PDF file the next job is written to; an existing file is replaced.
    QString FilePath() const { return m_filePath; }
    //! Sets the PDF file the next job is written to.
    void SetFilePath(const QString &filePath) { m_filePath = filePath; }
    //! True: every Print() answers as a cancelling user (nothing written, false).
    void SetCancelled(bool cancelled) { m_cancelled = cancelled; }

    //! Every Print() call so far, oldest first.
    const QList<Call> &Calls() const { return m_calls; }
    //! The number of Print() calls so far.
    int CallCount() const { return int(m_calls.size()); }
    //! Forgets the recorded calls.
    void Clear() { m_calls.clear(); }

private:
    void PrintToFile(const Job &job) const;

    QString m_filePath;
    bool m_cancelled = false;
    QList<Call> m_calls;
};
