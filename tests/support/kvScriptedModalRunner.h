#pragma once

#include "kvModalRunner.h"

#include <QQueue>
#include <QStringList>

#include <functional>

class QDialog;

/*!
    \brief A modal runner for tests: each Exec() runs the next queued action instead of an
    event loop.

    The dialog is shown modally while its action runs; the action fills fields, presses buttons
    and returns the result code, which Exec() sets on the dialog and returns. A dialog still
    visible afterwards is hidden. With an empty queue the dialog is not shown and the result
    is QDialog::Rejected, as if the user had cancelled.
*/
class kvScriptedModalRunner : public kvModalRunner
{
public:
    //! Plays the user on the shown dialog and returns its result code (QDialog::Accepted, ...).
    using Action = std::function<int(QDialog &)>;

    //! Records \a dialog's name and runs the next queued action on it.
    int Exec(QDialog &dialog) override;
    //! Queues \a action for a later Exec().
    void Enqueue(Action action) { m_actions.enqueue(std::move(action)); }
    //! The queued actions not used yet.
    int PendingActions() const { return int(m_actions.size()); }
    //! An action that calls the dialog's reject(), as Cancel, Escape or the close box do.
    static Action Reject();
    //! The objectNames of the dialogs run so far, in order.
    const QStringList &DialogNames() const { return m_dialogNames; }
    //! The number of Exec() calls so far.
    int ExecCount() const { return int(m_dialogNames.size()); }
    //! Forgets the queued actions and the recorded dialog names.
    void Clear();

private:
    QQueue<Action> m_actions;
    QStringList m_dialogNames;
};
