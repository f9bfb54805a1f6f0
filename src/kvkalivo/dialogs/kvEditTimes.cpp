#include "kvEditTimes.h"

#include "frmEdit.h"
#include "kvFormat.h"
#include "kvRuntimeError.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QSignalBlocker>

namespace {

constexpr int minutesPerDay = 24 * 60;

//! The time \a minutes after midnight, as kv::Format(t, "hh:nn").
QString timeText(int minutes)
{
    return kv::Format(kvDate::fromDays(0).addMinutes(minutes), QStringLiteral("hh:nn"));
}

} // namespace

kvEditTimes::kvEditTimes(frmEdit &editor)
    : m_editor(editor)
{
}

QString kvEditTimes::MidnightText()
{
    return QStringLiteral("00:00");
}

QComboBox *kvEditTimes::CreateTimeBox(const QString &name)
{
    auto *box = new QComboBox(&m_editor);
    box->setObjectName(name);
    auto *edit = new QLineEdit(box);
    MarkTypedCommits(edit, true);
    box->setLineEdit(edit); // the box connects its own reaction to the field here
    MarkTypedCommits(edit, false);
    box->setCompleter(nullptr);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setEditText(MidnightText());
    box->setMaxVisibleItems(12);
    box->installEventFilter(&m_editor);
    return box;
}

/*!
    QComboBox reports "activated" also when typed text that equals a list entry is committed
    (Return, or leaving the box): that is typing, not a pick from the list. The box reacts to
    its text field's two signals between a connection made with \a typing true and one made
    with false, which mark that reaction as typing.
*/
void kvEditTimes::MarkTypedCommits(QLineEdit *edit, bool typing)
{
    for (auto signal : { &QLineEdit::returnPressed, &QLineEdit::editingFinished })
        QObject::connect(edit, signal, &m_editor,
                         [this, typing] { m_committingTypedTime = typing; });
}

// Deliberately appended on every load and never cleared: each use of the reused editor adds
// another 47 entries to both time lists.
void kvEditTimes::AppendTimeLists()
{
    QStringList entries;
    for (int step = 1; step <= frmEdit::TimeListEntries; ++step)
        entries.append(timeText(30 * step));
    for (QComboBox *box : { m_editor.m_cboTimeBegin, m_editor.m_cboTimeEnd }) {
        // Adding to an empty combo box selects its first entry; the box keeps the text it shows.
        const QString text = box->currentText();
        const QSignalBlocker block(box);
        box->addItems(entries);
        box->setEditText(text);
    }
}

void kvEditTimes::SetTimeBoxesEnabled(bool enabled)
{
    // Full day: the system colour for an inactive border; else the window background.
    const QPalette &editorPalette = m_editor.palette();
    const QColor background = enabled ? editorPalette.color(QPalette::Active, QPalette::Base)
                                      : editorPalette.color(QPalette::Active, QPalette::Window);
    for (QComboBox *box : { m_editor.m_cboTimeBegin, m_editor.m_cboTimeEnd }) {
        box->setEnabled(enabled);
        QPalette boxPalette = box->palette();
        for (QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
            boxPalette.setColor(group, QPalette::Base, background);
        box->setPalette(boxPalette);
        box->lineEdit()->setPalette(boxPalette);
    }
}

// An entry chosen from the begin list moves the end time so that the duration is kept.
void kvEditTimes::cboTimeBegin_Click()
{
    const std::optional<int> begin = MinutesOfDay(BeginDateTime());
    const std::optional<int> end = MinutesOfDay(EndDateTime());
    if (!begin || !end)
        return;
    const int minutes = *end - m_editor.m_lastBeginMinutes;
    const int newEnd = ((*begin + minutes) % minutesPerDay + minutesPerDay) % minutesPerDay;
    m_editor.m_cboTimeEnd->setEditText(timeText(newEnd));
    m_editor.m_lastBeginMinutes = *begin;
}

void kvEditTimes::cboTimeEnd_Click()
{
    KeepEndAfterBegin(m_editor.m_cboTimeEnd);
    if (const std::optional<int> begin = MinutesOfDay(BeginDateTime()))
        m_editor.m_lastBeginMinutes = *begin;
}

void kvEditTimes::KeepEndAfterBegin(QComboBox *edited)
{
    if (!EndBeforeBegin())
        return;
    QComboBox *other = edited == m_editor.m_cboTimeBegin ? m_editor.m_cboTimeEnd
                                                         : m_editor.m_cboTimeBegin;
    other->setEditText(edited->currentText());
}

void kvEditTimes::DTPickerBegin_Change()
{
    if (!EndBeforeBegin())
        return;
    {
        const QSignalBlocker block(m_editor.m_dtPickerEnd);
        m_editor.m_dtPickerEnd->setDate(m_editor.m_dtPickerBegin->date());
    }
    KeepEndAfterBegin(m_editor.m_cboTimeBegin);
}

QString kvEditTimes::DateTimeText(const QDateEdit *picker, const QString &timeText)
{
    const QString date = kv::Format(kvDate::fromDate(picker->date()), QStringLiteral("d mmm yyyy"));
    return timeText.isNull() ? date : date + u' ' + timeText;
}

std::optional<kvDate> kvEditTimes::BeginDateTime() const
{
    return kv::CDate(DateTimeText(m_editor.m_dtPickerBegin, m_editor.m_cboTimeBegin->currentText()));
}

std::optional<kvDate> kvEditTimes::EndDateTime() const
{
    return kv::CDate(DateTimeText(m_editor.m_dtPickerEnd, m_editor.m_cboTimeEnd->currentText()));
}

kvDate kvEditTimes::ParsedDateTime(const QDateEdit *picker, const QString &timeText)
{
    const std::optional<kvDate> value = kv::CDate(DateTimeText(picker, timeText));
    if (!value)
        throw kvRuntimeError(13, QStringLiteral("Typen unverträglich"));
    return *value;
}

bool kvEditTimes::EndBeforeBegin() const
{
    const std::optional<kvDate> begin = BeginDateTime();
    const std::optional<kvDate> end = EndDateTime();
    return begin && end && *end < *begin;
}

std::optional<int> kvEditTimes::MinutesOfDay(const std::optional<kvDate> &dateTime)
{
    if (!dateTime)
        return std::nullopt;
    return dateTime->secondsOfDay() / 60;
}
