#include "kvScriptedMessageBox.h"

int kvScriptedMessageBox::MsgBox(const QString &prompt, int buttons, const QString &title)
{
    m_calls.append({prompt, buttons, title});
    return m_answers.isEmpty() ? DefaultResult(buttons) : m_answers.dequeue();
}

void kvScriptedMessageBox::Clear()
{
    m_calls.clear();
    m_answers.clear();
}
