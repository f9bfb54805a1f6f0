#include "kvScriptedFileDialog.h"

QString kvScriptedFileDialog::GetOpenFileName(QWidget *parent, const QString &title,
                                              const QString &initialPath, const QString &vbFilter)
{
    m_calls.append({parent, title, initialPath, vbFilter});
    return m_paths.isEmpty() ? QString() : m_paths.dequeue();
}

void kvScriptedFileDialog::Clear()
{
    m_calls.clear();
    m_paths.clear();
}
