#pragma once

#include "kvMessageBox.h"

#include <QQueue>

/*!
    \file kvScriptedMessageBox.h
    \brief kvScriptedMessageBox, a scriptable message box for tests.
*/

/*!
    \brief A message box for tests: records every call and answers from a queue.

    When the queue is empty it answers with the default answer if one was set, otherwise
    with the default button of the style, as if the user had pressed Enter.
*/
class kvScriptedMessageBox : public kvMessageBox
{
public:
    //! One MsgBox() call as it was made.
    struct Call
    {
        QString prompt;   //!< the text shown
        int buttons = 0;  //!< the style sum (kvMessageBox::Style)
        QString title;    //!< the title asked for; empty means the application's name
    };

    //! Records the call and answers the next queued result (see the class description).
    int MsgBox(const QString &prompt, int buttons, const QString &title) override;

    //! Queues \a result (a kvMessageBox::Result) as the answer to a later call.
    void EnqueueAnswer(int result) { m_answers.enqueue(result); }
    //! The answer when the queue is empty; 0 means the style's default button.
    void SetDefaultAnswer(int result) { m_defaultAnswer = result; }
    //! The queued answers not used yet.
    int PendingAnswers() const { return int(m_answers.size()); }

    //! Every call so far, oldest first.
    const QList<Call> &Calls() const { return m_calls; }
    //! The number of calls so far.
    int CallCount() const { return int(m_calls.size()); }
    //! The last call; a default Call when there was none.
    Call LastCall() const { return m_calls.isEmpty() ? Call() : m_calls.constLast(); }
    //! Forgets the calls and the queued answers; the default answer stays.
    void Clear();

private:
    QList<Call> m_calls;
    QQueue<int> m_answers;
    int m_defaultAnswer = 0;
};
