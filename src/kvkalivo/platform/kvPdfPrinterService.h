#pragma once

#include "kvPrinterService.h"

#include <QList>
#include <QPointer>
#include <QWidget>

/*!
    \brief A printer for tests and batch use: prints every job straight into a PDF file,
    without a dialog, and records the calls.

    The device is a QPrinter in PDF format at high resolution, the device a user gets with
    "Print to file (PDF)". With SetCancelled(true) it answers like a user who cancels: nothing
    is written and Print returns false. A failing job leaves no file behind.
*/
class KVKALIVO_EXPORT kvPdfPrinterService : public kvPrinterService
{
public:
    struct Call
    {
        QPointer<QWidget> Parent;
        QString DocumentName;
        QPageLayout PageLayout;
        QString FilePath;
    };

    explicit kvPdfPrinterService(const QString &filePath = QString());

    bool Print(QWidget *parent, const Job &job) override;

    QString FilePath() const { return m_filePath; }
    void SetFilePath(const QString &filePath) { m_filePath = filePath; }
    void SetCancelled(bool cancelled) { m_cancelled = cancelled; }

    const QList<Call> &Calls() const { return m_calls; }
    int CallCount() const { return int(m_calls.size()); }
    void Clear() { m_calls.clear(); }

private:
    void PrintToFile(const Job &job) const;

    QString m_filePath;
    bool m_cancelled = false;
    QList<Call> m_calls;
};
