#include "kvEditDocumentLink.h"

#include "frmEdit.h"
#include "kvEditValidation.h"
#include "kvFileDialog.h"
#include "kvPlatform.h"
#include "kvShell.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

QString documentFilter()
{
    return QStringLiteral("Alle Dateien (*.*)|*.*|")
            + QStringLiteral("Word-Dokumente (*.doc)|*.doc|")
            + QStringLiteral("HTML-Dokumente(*.htm, *.html)|*.htm*|")
            + QStringLiteral("Excel-Dokumente (*.xls)|*.xls|")
            + QStringLiteral("Textdateien (*.txt)|*.txt|")
            + QStringLiteral("Rich Text Format(*.rtf)|*.rtf|")
            + QStringLiteral("Stapelverarbeitungsdateien (*.bat, *.cmd)|*.bat;*.cmd");
}

} // namespace

kvEditDocumentLink::kvEditDocumentLink(frmEdit &editor)
    : m_editor(editor)
{
}

void kvEditDocumentLink::SetEnabled(bool enabled)
{
    for (QWidget *control : { static_cast<QWidget *>(m_editor.m_lblDocument),
                              static_cast<QWidget *>(m_editor.m_txtDocument),
                              static_cast<QWidget *>(m_editor.m_cmdDocumentBrowser),
                              static_cast<QWidget *>(m_editor.m_cmdOpenDocument) })
        control->setEnabled(enabled);
}

void kvEditDocumentLink::cmdDocumentBrowser_Click()
{
    // Filter index 1: the first filter, which the service selects by default.
    const QString fileName = kvPlatform::fileDialog().GetOpenFileName(
            &m_editor, QStringLiteral("Öffnen"), QString(), documentFilter());
    if (!fileName.isEmpty())
        m_editor.m_txtDocument->setText(fileName);
}

void kvEditDocumentLink::cmdOpenDocument_Click()
{
    const QString path = m_editor.m_txtDocument->text();
    if (path.isEmpty())
        return;
    if (!OpenDocument(path))
        m_editor.m_validation->ShowDocumentError();
}

// Only "file not found" counts as failure; other error codes pass as success (kept deliberately).
bool kvEditDocumentLink::OpenDocument(const QString &path)
{
    try {
        m_editor.m_validation->ShowStatusMessage(QString());
        const int result = kvPlatform::shell().ShellExecuteOpen(path);
        if (result == kvShell::FileNotFound)
            return false;
        if (result == kvShell::NoAssociation)
            kvPlatform::shell().OpenWith(path);
    } catch (...) {
        // Any other failure is ignored: the document does not open, and nothing is reported.
    }
    return true;
}
