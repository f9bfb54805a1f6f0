#include "kvSystemPrinterService.h"

#include "kvModalWindows.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QVBoxLayout>

#include <exception>

namespace {

constexpr QSize PreviewSize(1000, 720);

/*!
    Runs the job's Pages for the preview and the printout. An exception must not unwind
    through Qt's signal dispatch, so it is kept and the dialog closed; Print rethrows it.
*/
class PreviewRun
{
public:
    PreviewRun(QPrinter &printer, const kvPrinterService::Job &job, QWidget *parent)
        : m_printer(printer), m_job(job), m_dialog(parent)
    {
        m_dialog.setObjectName(QLatin1String(kvSystemPrinterService::PreviewObjectName));
        m_dialog.setWindowTitle(QStringLiteral("Druckvorschau – ") + job.DocumentName);
        m_dialog.resize(PreviewSize);
        m_preview = new QPrintPreviewWidget(&printer, &m_dialog);
        m_preview->setObjectName(QStringLiteral("Preview"));
        m_preview->fitInView();
        QObject::connect(m_preview, &QPrintPreviewWidget::paintRequested,
                         [this](QPrinter *device) { RenderOn(*device); });
        AddButtons();
    }

    bool Exec()
    {
        kvModalWindows::PrepareToOpen();
        const int result = m_dialog.exec();
        if (m_failure)
            std::rethrow_exception(m_failure);
        return result == QDialog::Accepted;
    }

private:
    void AddButtons()
    {
        auto *buttons = new QDialogButtonBox(&m_dialog);
        QPushButton *print = buttons->addButton(QStringLiteral("Drucken"), QDialogButtonBox::AcceptRole);
        print->setObjectName(QStringLiteral("cmdPrint"));
        buttons->addButton(QStringLiteral("Abbrechen"), QDialogButtonBox::RejectRole)
            ->setObjectName(QStringLiteral("cmdCancel"));
        QObject::connect(buttons, &QDialogButtonBox::accepted, [this] { PrintAndClose(); });
        QObject::connect(buttons, &QDialogButtonBox::rejected, &m_dialog, &QDialog::reject);
        auto *layout = new QVBoxLayout(&m_dialog);
        layout->addWidget(m_preview, 1);
        layout->addWidget(buttons);
    }

    void RenderOn(QPrinter &device)
    {
        if (m_failure)
            return;
        try {
            m_job.Pages(device);
        } catch (...) {
            m_failure = std::current_exception();
            // queued: the first preview is painted while exec() shows the dialog, before its loop runs
            QMetaObject::invokeMethod(&m_dialog, &QDialog::reject, Qt::QueuedConnection);
        }
    }

    void PrintAndClose()
    {
        m_preview->print();
        if (!m_failure && m_printer.printerState() == QPrinter::Error)
            m_failure = std::make_exception_ptr(kvPrinterService::PrinterError());
        if (m_failure)
            m_dialog.reject();
        else
            m_dialog.accept();
    }

    QPrinter &m_printer;
    const kvPrinterService::Job &m_job;
    QDialog m_dialog;
    QPrintPreviewWidget *m_preview = nullptr;
    std::exception_ptr m_failure;
};

} // namespace

bool kvSystemPrinterService::Print(QWidget *parent, const Job &job)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(job.DocumentName);
    printer.setPageLayout(job.PageLayout);

    QPrintDialog chooser(&printer, parent);
    chooser.setWindowTitle(QStringLiteral("Drucken – ") + job.DocumentName);
    kvModalWindows::PrepareToOpen();
    if (chooser.exec() != QDialog::Accepted)
        return false;

    PreviewRun preview(printer, job, parent);
    return preview.Exec();
}
