#pragma once

#include "kvMessageBox.h"

#include <QQueue>

/*!
    \brief A message box for tests: records every call and answers from a queue.

    When the queue is empty it answers with the default answer if one was set, otherwise
    with the default button of the style, as if the user had pressed Enter.
*/
class KVKALIVO_EXPORT kvScriptedMessageBox : public kvMessageBox
{
public:
    struct Call
    {
        QString prompt;
        int buttons = 0;
        QString title;
    };

    int MsgBox(const QString &prompt, int buttons, const QString &title) override;

    void EnqueueAnswer(int result) { m_answers.enqueue(result); }
    //! The answer when the queue is empty; 0 means the style's default button.
    void SetDefaultAnswer(int result) { m_defaultAnswer = result; }
    int PendingAnswers() const { return int(m_answers.size()); }

    const QList<Call> &Calls() const { return m_calls; }
    int CallCount() const { return int(m_calls.size()); }
    //! The last call; a default Call when there was none.
    Call LastCall() const { return m_calls.isEmpty() ? Call() : m_calls.constLast(); }
    void Clear();

private:
    QList<Call> m_calls;
    QQueue<int> m_answers;
    int m_defaultAnswer = 0;
};
