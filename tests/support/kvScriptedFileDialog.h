#pragma once

#include "kvFileDialog.h"

#include <QList>
#include <QQueue>

//! A file dialog for tests: records every call and answers with queued paths, then "" as Cancel does.
class kvScriptedFileDialog : public kvFileDialog
{
public:
    //! One GetOpenFileName() call as it was made.
    struct Call
    {
        QString title;     //!< the caption asked for
        QString vbFilter;  //!< the bar-separated filter, unconverted
    };

    //! Records the call and answers the next queued path, or "" (cancelled) when none is left.
    QString GetOpenFileName(QWidget *parent, const QString &title, const QString &initialPath,
                            const QString &vbFilter) override;
    //! Queues \a path as the answer to a later call; an empty path answers as Cancel.
    void EnqueuePath(const QString &path) { m_paths.enqueue(path); }
    //! Every call so far, oldest first.
    const QList<Call> &Calls() const { return m_calls; }

private:
    QList<Call> m_calls;
    QQueue<QString> m_paths;
};
