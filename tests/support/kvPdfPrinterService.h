#pragma once

#include "kvPrinterService.h"

#include <QList>

/*!
    \brief A printer for tests: prints every job straight into a PDF file, without a dialog,
    and records the calls.

    With SetCancelled(true) it answers like a user who cancels: nothing is written and Print
    returns false. A failing job leaves no file behind.
*/
class kvPdfPrinterService : public kvPrinterService
{
public:
    //! One Print() call as it was made.
    struct Call
    {
        QString DocumentName;    //!< the job's document name
        QPageLayout PageLayout;  //!< the job's page layout
    };

    //! A printer that writes into \a filePath.
    explicit kvPdfPrinterService(const QString &filePath = QString()) : m_filePath(filePath) {}
    //! Records the call and writes the job into FilePath(), unless set to cancel; throws 482 without a FilePath().
    bool Print(QWidget *parent, const Job &job) override;
    //! The PDF file a job is written to; an existing file is replaced.
    QString FilePath() const { return m_filePath; }
    //! True: every Print() answers as a cancelling user (nothing written, false).
    void SetCancelled(bool cancelled) { m_cancelled = cancelled; }
    //! Every Print() call so far, oldest first.
    const QList<Call> &Calls() const { return m_calls; }
    //! The number of Print() calls so far.
    int CallCount() const { return int(m_calls.size()); }

private:
    QString m_filePath;
    bool m_cancelled = false;
    QList<Call> m_calls;
};
