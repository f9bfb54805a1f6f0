#include "kvPrinterService.h"

#include <QMarginsF>
#include <QPageSize>

kvPrinterService::~kvPrinterService() = default;

QPageLayout kvPrinterService::A4Landscape()
{
    return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                       QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
}

kvRuntimeError kvPrinterService::PrinterError(const QString &detail)
{
    QString description = QStringLiteral("Druckerfehler");
    if (!detail.isEmpty())
        description += QStringLiteral(": ") + detail;
    return kvRuntimeError(PrinterErrorNumber, description);
}
