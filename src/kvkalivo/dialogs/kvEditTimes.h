#pragma once

#include "kvDate.h"

#include <QString>

#include <optional>

class QComboBox;
class QDateEdit;
class QLineEdit;
class frmEdit;

/*!
    \brief The begin and end times of the appointment editor: the two time boxes and their
    ever-growing half-hour lists, the rules that keep the end after the begin, and the date and
    time the pickers and boxes combine to.
*/
class kvEditTimes
{
public:
    explicit kvEditTimes(frmEdit &editor);

    //! The text of a time box before the first load.
    static QString MidnightText();

    //! A time box that neither completes nor adds what is typed to its list.
    QComboBox *CreateTimeBox(const QString &name);
    //! True while a time box commits typed text, which QComboBox also reports as activated.
    bool CommittingTypedTime() const { return m_committingTypedTime; }

    //! Adds another 47 half-hour entries to both lists; each load of the editor does.
    void AppendTimeLists();
    void SetTimeBoxesEnabled(bool enabled);

    // The reactions to the user's changes
    void cboTimeBegin_Click();
    void cboTimeEnd_Click();
    void DTPickerBegin_Change();
    //! After \a edited was validated: an end before the begin takes the time of \a edited.
    void KeepEndAfterBegin(QComboBox *edited);

    //! kv::Format(picker value, "d mmm yyyy") & " " & time text; the date alone for a null time.
    static QString DateTimeText(const QDateEdit *picker, const QString &timeText);
    std::optional<kvDate> BeginDateTime() const;
    std::optional<kvDate> EndDateTime() const;
    //! kv::CDate() on the combined text; an unreadable text is error 13 "Typen unverträglich".
    static kvDate ParsedDateTime(const QDateEdit *picker, const QString &timeText);
    bool EndBeforeBegin() const;
    static std::optional<int> MinutesOfDay(const std::optional<kvDate> &dateTime);

private:
    void MarkTypedCommits(QLineEdit *edit, bool typing);

    frmEdit &m_editor;
    bool m_committingTypedTime = false;
};
