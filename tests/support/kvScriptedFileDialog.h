#pragma once

#include "kvFileDialog.h"

#include <QList>
#include <QPointer>
#include <QQueue>
#include <QWidget>

/*!
    \file kvScriptedFileDialog.h
    \brief kvScriptedFileDialog, a scriptable file dialog for tests.
*/

/*!
    \brief A file dialog for tests: records every call and answers with queued paths.

    An empty queue answers an empty string, as a cancelled dialog does.
*/
class kvScriptedFileDialog : public kvFileDialog
{
public:
    //! One GetOpenFileName() call as it was made.
    struct Call
    {
        QPointer<QWidget> parent;  //!< the dialog's parent (null once deleted)
        QString title;             //!< the caption asked for
        QString initialPath;       //!< the start folder or file
        QString vbFilter;          //!< the bar-separated filter, unconverted
    };

    //! Records the call and answers the next queued path, or "" (cancelled) when none is left.
    QString GetOpenFileName(QWidget *parent, const QString &title, const QString &initialPath,
                            const QString &vbFilter) override;

    //! Queues \a path as the answer to a later call; an empty path answers as Cancel.
    void EnqueuePath(const QString &path) { m_paths.enqueue(path); }
    //! Every call so far, oldest first.
    const QList<Call> &Calls() const { return m_calls; }
    //! The number of calls so far.
    int CallCount() const { return int(m_calls.size()); }
    //! Forgets the calls and the queued paths.
    void Clear();

private:
    QList<Call> m_calls;
    QQueue<QString> m_paths;
};
