#pragma once

#include "kvMessageBox.h"

#include <QQueue>

//! A message box for tests: records every call and answers from a queue, then with the style's default button.
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

    //! Records the call and answers the next queued result, else the style's default button.
    int MsgBox(const QString &prompt, int buttons, const QString &title) override;
    //! Queues \a result (a kvMessageBox::Result) as the answer to a later call.
    void EnqueueAnswer(int result) { m_answers.enqueue(result); }
    //! The number of calls so far.
    int CallCount() const { return int(m_calls.size()); }
    //! The last call; a default Call when there was none.
    Call LastCall() const { return m_calls.isEmpty() ? Call() : m_calls.constLast(); }
    //! Forgets the calls and the queued answers.
    void Clear();

private:
    QList<Call> m_calls;
    QQueue<int> m_answers;
};
