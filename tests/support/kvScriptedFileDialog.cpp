#include "kvScriptedFileDialog.h"

QString kvScriptedFileDialog::GetOpenFileName(QWidget *, const QString &title, const QString &, const QString &vbFilter)
{
    m_calls.append({title, vbFilter});
    return m_paths.isEmpty() ? QString() : m_paths.dequeue();
}
