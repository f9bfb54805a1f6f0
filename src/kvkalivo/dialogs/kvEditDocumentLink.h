#pragma once

#include <QString>

class frmEdit;

/*!
    \brief The document-link row of the appointment editor: the path, the button that chooses
    a file, and the button that opens the document with the program the desktop associates.
*/
class kvEditDocumentLink
{
public:
    explicit kvEditDocumentLink(frmEdit &editor);

    void SetEnabled(bool enabled);
    void cmdDocumentBrowser_Click();
    void cmdOpenDocument_Click();

private:
    bool OpenDocument(const QString &path);

    frmEdit &m_editor;
};
