#include "kvScriptedMessageBox.h"

int kvScriptedMessageBox::MsgBox(const QString &prompt, int buttons, const QString &title)
{
    m_calls.append({prompt, buttons, title});
    if (!m_answers.isEmpty())
        return m_answers.dequeue();
    return m_defaultAnswer != 0 ? m_defaultAnswer : DefaultResult(buttons);
}

void kvScriptedMessageBox::Clear()
{
    m_calls.clear();
    m_answers.clear();
}
