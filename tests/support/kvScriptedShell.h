#pragma once

#include "kvShell.h"

#include <QQueue>
#include <QStringList>

/*!
    \file kvScriptedShell.h
    \brief kvScriptedShell, a scriptable shell for tests.
*/

/*!
    \brief A shell for tests: records the paths and answers with scripted result codes.

    ShellExecuteOpen() answers from a queue, then with the default result (Opened unless set);
    OpenWith() answers with its own settable result (true unless set). Nothing is launched.
*/
class kvScriptedShell : public kvShell
{
public:
    //! Records \a path and answers the next queued result, else the default result.
    int ShellExecuteOpen(const QString &path) override;
    //! Records \a path and answers the open-with result.
    bool OpenWith(const QString &path) override;

    //! Queues \a result (a kvShell::Result or any ShellExecute code) for a later ShellExecuteOpen().
    void EnqueueResult(int result) { m_results.enqueue(result); }
    //! The answer when the queue is empty (Opened unless set).
    void SetDefaultResult(int result) { m_defaultResult = result; }
    //! What OpenWith() answers (true unless set).
    void SetOpenWithResult(bool result) { m_openWithResult = result; }

    //! The paths passed to ShellExecuteOpen(), oldest first.
    const QStringList &OpenedPaths() const { return m_openedPaths; }
    //! The paths passed to OpenWith(), oldest first.
    const QStringList &OpenWithPaths() const { return m_openWithPaths; }
    //! Forgets the recorded paths and the queued results; the settable results stay.
    void Clear();

private:
    QStringList m_openedPaths;
    QStringList m_openWithPaths;
    QQueue<int> m_results;
    int m_defaultResult = Opened;
    bool m_openWithResult = true;
};
