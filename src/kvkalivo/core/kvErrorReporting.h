#pragma once

#include "kvkalivo_export.h"

#include <QString>

#include <functional>

class kvError;

/*!
    \file kvErrorReporting.h
    \brief kvErrorReporting: the two ways a failure is reported, and the RaiseErrorEvent switch.
*/

/*!
    \brief How the control reports a failure, and the thread-wide RaiseErrorEvent switch.

    A failing routine catches its failure and calls one of the Report functions with its code;
    the description comes from DescribeCurrentException() inside the catch block.
*/
class KVKALIVO_TESTS_EXPORT kvErrorReporting
{
public:
    //! Emits the control's \c Error signal with the filled-in thread-wide kvError.
    using RaiseEvent = std::function<void(kvError &)>;

    //! The message box style of a report: the critical icon (16) with the OK button only.
    static constexpr int MessageBoxStyleCritical = 16;

    //! The thread-wide switch behind every control's \c RaiseErrorEvent (default False).
    static bool RaiseErrorEvent();
    //! Switches the reporting of every control of the calling thread; not persisted.
    static void setRaiseErrorEvent(bool raise);

    //! "kvKalivo-Fehlercode " + code + CR LF + description.
    static QString MessageText(int code, const QString &description);
    //! The message box's title: "kvKalivo.ocx".
    static QString MessageTitle();

    //! A routine of the main control failed: the Error event when RaiseErrorEvent, else the message box.
    static void ReportFromControl(int code, const QString &description, const RaiseEvent &raiseEvent);
    /*!
        FillGrid's pending code, a text such as "12-5" CR LF description from the per-day load:
        the Error event with an empty Description and the number the code text begins with, or
        the message box "kvKalivo-Fehlercode " followed by the code text alone.
    */
    static void ReportPendingCode(const QString &pendingCode, const RaiseEvent &raiseEvent);
    //! A day cell failed (codes 100, 200): swallowed when RaiseErrorEvent, else the message box.
    static void ReportFromDayCell(int code, const QString &description);
    //! The editor dialog failed (code 1000): always the message box.
    static void ReportFromEditor(const QString &description);

    //! Base + step, added as checked 16-bit integers: the code of a routine's failing step.
    static qint16 StepCode(int base, int step);

    //! The description of the exception being handled; call it inside a catch block only.
    static QString DescribeCurrentException();

private:
    static void ShowMessageBox(const QString &text);
    static int LeadingNumber(const QString &text);
};
