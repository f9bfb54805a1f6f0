#pragma once

#include "kvShell.h"

#include <QQueue>
#include <QStringList>

/*!
    \brief A shell for tests: records the paths and answers with scripted result codes.

    ShellExecuteOpen() answers from a queue, then with the default result (Opened unless set);
    OpenWith() answers with its own settable result (true unless set). Nothing is launched.
*/
class KVKALIVO_EXPORT kvScriptedShell : public kvShell
{
public:
    int ShellExecuteOpen(const QString &path) override;
    bool OpenWith(const QString &path) override;

    void EnqueueResult(int result) { m_results.enqueue(result); }
    void SetDefaultResult(int result) { m_defaultResult = result; }
    void SetOpenWithResult(bool result) { m_openWithResult = result; }

    const QStringList &OpenedPaths() const { return m_openedPaths; }
    const QStringList &OpenWithPaths() const { return m_openWithPaths; }
    void Clear();

private:
    QStringList m_openedPaths;
    QStringList m_openWithPaths;
    QQueue<int> m_results;
    int m_defaultResult = Opened;
    bool m_openWithResult = true;
};
