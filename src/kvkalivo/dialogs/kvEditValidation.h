#pragma once

#include <QString>

class QComboBox;
class QWidget;
class frmEdit;

/*!
    \brief Checks what the user entered in the appointment editor and says what is wrong on its
    status line: an unreadable begin or end time keeps the focus in its box, an end before the
    begin and a missing name stop OK.
*/
class kvEditValidation
{
public:
    explicit kvEditValidation(frmEdit &editor);

    //! Shows \a text in the status line; an empty text clears it.
    void ShowStatusMessage(const QString &text);
    //! The first panel's text in panel style, else the simple text.
    QString StatusText() const;
    //! True while the status bar is in panel style (a message is shown).
    bool PanelStyle() const { return m_panelStyle; }
    //! True while the focus is put back into a control, so that no time box validates.
    bool Refocusing() const { return m_refocusing; }

    bool cboTimeBegin_Validate();
    bool cboTimeEnd_Validate();
    //! Warns, without refusing, of an end date before the begin.
    void DTPickerEnd_Change();
    //! The checks OK makes, in order; the first that fails moves the focus and shows its message.
    bool CheckBeforeOk();
    void ShowDocumentError();

private:
    bool ValidateTimeBox(QComboBox *box, const QString &message);
    void RefuseLeaving(QComboBox *box);
    bool Fail(QWidget *focus, const QString &message);

    frmEdit &m_editor;
    bool m_panelStyle = false;
    bool m_refocusing = false;
};
