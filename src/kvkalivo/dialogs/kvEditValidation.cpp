#include "kvEditValidation.h"

#include "frmEdit.h"
#include "kvBeep.h"
#include "kvEditTimes.h"
#include "kvFormat.h"
#include "kvPlatform.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>
#include <QTimer>

namespace {

// The editor's fixed status-bar texts. "gütiges" is deliberate and kept: hosts and their tests
// look for these exact texts.
const QString beginInvalidMessage = QStringLiteral("'Beginnt' hat keine gütiges Datum/Zeit Format!");
const QString endInvalidMessage = QStringLiteral("'Endet' hat keine gütiges Datum/Zeit Format!");
const QString endBeforeBeginMessage =
        QStringLiteral("Das 'Endet'-Datum darf nicht vor dem 'Beginnt'-Datum liegen!");
const QString nameMissingMessage = QStringLiteral("Kontakt/Ereignis fehlt!");
const QString endDateWarning = QStringLiteral("Das eingegebene Datum liegt vor dem Beginn!");
const QString documentErrorMessage =
        QStringLiteral("Beim Öffnen des Dokuments trat ein Fehler auf!");

} // namespace

kvEditValidation::kvEditValidation(frmEdit &editor)
    : m_editor(editor)
{
}

void kvEditValidation::ShowStatusMessage(const QString &text)
{
    m_panelStyle = !text.isEmpty();
    m_editor.m_statusPanel->setText(text);
    m_editor.m_statusPanel->setVisible(m_panelStyle);
    m_editor.m_statusBar->clearMessage();
}

QString kvEditValidation::StatusText() const
{
    return m_panelStyle ? m_editor.m_statusPanel->text() : m_editor.m_statusBar->currentMessage();
}

bool kvEditValidation::cboTimeBegin_Validate()
{
    if (!ValidateTimeBox(m_editor.m_cboTimeBegin, beginInvalidMessage))
        return false;
    m_editor.m_times->KeepEndAfterBegin(m_editor.m_cboTimeBegin);
    return true;
}

bool kvEditValidation::cboTimeEnd_Validate()
{
    if (!ValidateTimeBox(m_editor.m_cboTimeEnd, endInvalidMessage))
        return false;
    m_editor.m_times->KeepEndAfterBegin(m_editor.m_cboTimeEnd);
    return true;
}

//! The common part of both Validate events: refuse an invalid time, else clear the status bar.
bool kvEditValidation::ValidateTimeBox(QComboBox *box, const QString &message)
{
    const QDateEdit *picker =
            box == m_editor.m_cboTimeBegin ? m_editor.m_dtPickerBegin : m_editor.m_dtPickerEnd;
    if (!kv::IsDate(kvEditTimes::DateTimeText(picker, box->currentText()))) {
        kvPlatform::beep().Beep();
        ShowStatusMessage(message);
        RefuseLeaving(box);
        return false;
    }
    ShowStatusMessage(QString());
    return true;
}

// Qt cannot veto a focus change: the focus is put back as soon as the change is done.
void kvEditValidation::RefuseLeaving(QComboBox *box)
{
    QTimer::singleShot(0, box, [this, box] {
        if (!m_editor.isVisible())
            return;
        m_refocusing = true;
        box->setFocus(Qt::OtherFocusReason);
        m_refocusing = false;
        box->lineEdit()->selectAll();
    });
}

void kvEditValidation::DTPickerEnd_Change()
{
    ShowStatusMessage(m_editor.m_times->EndBeforeBegin() ? endDateWarning : QString());
}

// The focus moves first, so that a time box left behind validates before the message is shown.
bool kvEditValidation::CheckBeforeOk()
{
    const std::optional<kvDate> begin = m_editor.m_times->BeginDateTime();
    if (!begin)
        return Fail(m_editor.m_cboTimeBegin, beginInvalidMessage);
    const std::optional<kvDate> end = m_editor.m_times->EndDateTime();
    if (!end)
        return Fail(m_editor.m_cboTimeEnd, endInvalidMessage);
    if (*begin > *end)
        return Fail(m_editor.m_dtPickerEnd, endBeforeBeginMessage);
    if (m_editor.m_txtName->text().isEmpty())
        return Fail(m_editor.m_txtName, nameMissingMessage);
    return true;
}

bool kvEditValidation::Fail(QWidget *focus, const QString &message)
{
    m_refocusing = true;
    focus->setFocus(Qt::OtherFocusReason);
    m_refocusing = false;
    ShowStatusMessage(message);
    return false;
}

void kvEditValidation::ShowDocumentError()
{
    ShowStatusMessage(documentErrorMessage);
}
