#pragma once

#include "kvModalRunner.h"

#include <QList>
#include <QPointer>
#include <QQueue>
#include <QStringList>

#include <functional>

class QDialog;

/*!
    \brief A modal runner for tests: each Exec() runs the next queued action instead of an
    event loop.

    The dialog is shown modally while its action runs, so that show and activation code runs
    as it would under exec(); the action fills fields, presses buttons and returns the result
    code, which Exec() sets on the dialog and returns. A dialog still visible afterwards is
    hidden. With an empty queue the dialog is recorded but not shown, and the result is
    QDialog::Rejected, as if the user had cancelled.
*/
class KVKALIVO_EXPORT kvScriptedModalRunner : public kvModalRunner
{
public:
    using Action = std::function<int(QDialog &)>;

    int Exec(QDialog &dialog) override;

    void Enqueue(Action action) { m_actions.enqueue(std::move(action)); }
    int PendingActions() const { return int(m_actions.size()); }

    //! An action that calls the dialog's accept(), as the OK button does.
    static Action Accept();
    //! An action that calls the dialog's reject(), as Cancel, Escape or the close box do.
    static Action Reject();

    //! The dialogs run so far (null where a dialog has been deleted since).
    const QList<QPointer<QDialog>> &Dialogs() const { return m_dialogs; }
    //! The objectNames of the dialogs run so far, in order.
    const QStringList &DialogNames() const { return m_dialogNames; }
    int ExecCount() const { return int(m_dialogs.size()); }
    void Clear();

private:
    int Run(QDialog &dialog, const Action &action);

    QQueue<Action> m_actions;
    QList<QPointer<QDialog>> m_dialogs;
    QStringList m_dialogNames;
};
