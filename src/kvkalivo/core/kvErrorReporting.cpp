#include "kvErrorReporting.h"

#include "kvError.h"
#include "kvInt16.h"
#include "kvMessageBox.h"
#include "kvPlatform.h"
#include "kvRuntimeError.h"

#include <exception>

namespace {

bool &threadRaiseErrorEvent()
{
    thread_local bool raise = false;
    return raise;
}

} // namespace

bool kvErrorReporting::RaiseErrorEvent()
{
    return threadRaiseErrorEvent();
}

void kvErrorReporting::setRaiseErrorEvent(bool raise)
{
    threadRaiseErrorEvent() = raise;
}

QString kvErrorReporting::MessageText(int code, const QString &description)
{
    return QStringLiteral("kvKalivo-Fehlercode ") + QString::number(code) + QStringLiteral("\r\n")
        + description;
}

QString kvErrorReporting::MessageTitle()
{
    return QStringLiteral("kvKalivo.ocx");
}

void kvErrorReporting::ShowMessageBox(const QString &text)
{
    kvPlatform::messageBox().MsgBox(text, MessageBoxStyleCritical, MessageTitle());
}

void kvErrorReporting::ReportFromControl(int code, const QString &description,
                                         const RaiseEvent &raiseEvent)
{
    if (RaiseErrorEvent()) {
        kvError &error = kvError::ThreadInstance();
        error.setDescription(description);
        error.setNumber(qint16(code));
        if (raiseEvent)
            raiseEvent(error);
        return;
    }
    ShowMessageBox(MessageText(code, description));
}

void kvErrorReporting::ReportPendingCode(const QString &pendingCode, const RaiseEvent &raiseEvent)
{
    if (RaiseErrorEvent()) {
        ReportFromControl(LeadingNumber(pendingCode), QString(), raiseEvent);
        return;
    }
    ShowMessageBox(QStringLiteral("kvKalivo-Fehlercode ") + pendingCode);
}

int kvErrorReporting::LeadingNumber(const QString &text)
{
    qsizetype digits = 0;
    while (digits < text.size() && text.at(digits).isDigit())
        ++digits;
    return text.left(std::min<qsizetype>(digits, 5)).toInt();
}

void kvErrorReporting::ReportFromDayCell(int code, const QString &description)
{
    if (RaiseErrorEvent())
        return; // a cell cannot raise the control's event, so the failure is swallowed
    ShowMessageBox(MessageText(code, description));
}

void kvErrorReporting::ReportFromEditor(const QString &description)
{
    ShowMessageBox(MessageText(1000, description));
}

qint16 kvErrorReporting::StepCode(int base, int step)
{
    return kvInt16::add(base, step);
}

QString kvErrorReporting::DescribeCurrentException()
{
    try {
        throw;
    } catch (const kvRuntimeError &error) {
        return error.description();
    } catch (const std::exception &error) {
        return QString::fromLocal8Bit(error.what());
    } catch (...) {
        return QStringLiteral("Unbekannter Fehler");
    }
}
