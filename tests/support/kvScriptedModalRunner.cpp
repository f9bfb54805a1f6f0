#include "kvScriptedModalRunner.h"

#include <QDialog>

int kvScriptedModalRunner::Exec(QDialog &dialog)
{
    m_dialogNames.append(dialog.objectName());
    if (m_actions.isEmpty())
        return QDialog::Rejected;
    const Action action = m_actions.dequeue();
    const bool wasShowModal = dialog.testAttribute(Qt::WA_ShowModal);
    dialog.setAttribute(Qt::WA_ShowModal, true);
    dialog.setResult(0);
    dialog.show();
    const int result = action(dialog);
    if (dialog.isVisible())
        dialog.hide();
    dialog.setAttribute(Qt::WA_ShowModal, wasShowModal);
    dialog.setResult(result);
    return result;
}

kvScriptedModalRunner::Action kvScriptedModalRunner::Reject()
{
    return [](QDialog &dialog) {
        dialog.reject();
        return dialog.result();
    };
}

void kvScriptedModalRunner::Clear()
{
    m_actions.clear();
    m_dialogNames.clear();
}
