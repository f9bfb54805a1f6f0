#include "kvScriptedShell.h"

int kvScriptedShell::ShellExecuteOpen(const QString &)
{
    return m_results.isEmpty() ? int(Opened) : m_results.dequeue();
}

bool kvScriptedShell::OpenWith(const QString &path)
{
    m_openWithPaths.append(path);
    return true;
}
