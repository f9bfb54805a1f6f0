#pragma once

#include "kvShell.h"

#include <QQueue>
#include <QStringList>

//! A shell for tests: ShellExecuteOpen() answers from a queue, then Opened; OpenWith() records and answers true.
class kvScriptedShell : public kvShell
{
public:
    //! The next queued result, else Opened; nothing is launched.
    int ShellExecuteOpen(const QString &path) override;
    //! Records \a path and answers true.
    bool OpenWith(const QString &path) override;
    //! Queues \a result (a kvShell::Result or any ShellExecute code) for a later ShellExecuteOpen().
    void EnqueueResult(int result) { m_results.enqueue(result); }
    //! The paths passed to OpenWith(), oldest first.
    const QStringList &OpenWithPaths() const { return m_openWithPaths; }

private:
    QStringList m_openWithPaths;
    QQueue<int> m_results;
};
