#pragma once

#include "kvFileDialog.h"

#include <QList>
#include <QPointer>
#include <QQueue>
#include <QWidget>

/*!
    \brief A file dialog for tests: records every call and answers with queued paths.

    An empty queue answers an empty string, as a cancelled dialog does.
*/
class KVKALIVO_EXPORT kvScriptedFileDialog : public kvFileDialog
{
public:
    struct Call
    {
        QPointer<QWidget> parent;
        QString title;
        QString initialPath;
        QString vbFilter;
    };

    QString GetOpenFileName(QWidget *parent, const QString &title, const QString &initialPath,
                            const QString &vbFilter) override;

    void EnqueuePath(const QString &path) { m_paths.enqueue(path); }
    const QList<Call> &Calls() const { return m_calls; }
    int CallCount() const { return int(m_calls.size()); }
    void Clear();

private:
    QList<Call> m_calls;
    QQueue<QString> m_paths;
};
