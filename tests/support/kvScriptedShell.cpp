#include "kvScriptedShell.h"

int kvScriptedShell::ShellExecuteOpen(const QString &path)
{
    m_openedPaths.append(path);
    return m_results.isEmpty() ? m_defaultResult : m_results.dequeue();
}

bool kvScriptedShell::OpenWith(const QString &path)
{
    m_openWithPaths.append(path);
    return m_openWithResult;
}

void kvScriptedShell::Clear()
{
    m_openedPaths.clear();
    m_openWithPaths.clear();
    m_results.clear();
}
