#include "kvEditFlow.h"

#include "ctlDay.h"
#include "ctlEntry.h"
#include "frmEdit.h"
#include "frmPicSelector.h"
#include "kvAppointmentStore.h"
#include "kvAppointmentValues.h"
#include "kvCellInteraction.h"
#include "kvDayGrid.h"
#include "kvErrorReporting.h"
#include "kvKalivo_p.h"
#include "kvMessageBox.h"
#include "kvModalRunner.h"
#include "kvPlatform.h"
#include "kvSqlTexts.h"

namespace {

constexpr int DeleteQuestionStyle = kvMessageBox::vbYesNoCancel + kvMessageBox::vbQuestion;

} // namespace

kvEditFlow::kvEditFlow(kvKalivoPrivate &d)
    : d(d)
{
}

void kvEditFlow::EditAppointment(Action action)
{
    qint16 step = 0;
    try {
        Steps(action, step);
    } catch (...) {
        d.ReportError(kvErrorReporting::StepCode(13, step), kvErrorReporting::DescribeCurrentException());
    }
}

void kvEditFlow::Steps(Action action, qint16 &step)
{
    step = 1;
    kvAppointmentValues values = Appointment(action);
    bool bCancel = false;
    if (action == Action::Delete) {
        step = 2;
        Write(Action::Delete, values, bCancel);
    } else if (d.settings.RaiseEditEvent) {
        step = 3;
        RaiseEditEvent(action, values, bCancel);
    } else {
        const Action chosen = RunEditor(action, values, step);
        step = 7;
        if (chosen == Action::None)
            return;
        Write(chosen, values, bCancel);
    }
    if (!bCancel)
        d.grid->Reload();
}

kvAppointmentValues kvEditFlow::Appointment(Action action) const
{
    kvAppointmentValues values;
    if (action == Action::New) {
        values.DateBegin = d.settings.ActualDate;
        values.DateEnd = d.settings.ActualDate;
        return values;
    }
    const ctlDay *cell = d.grid->DayCell(d.interaction->SelectedDayIndex());
    const ctlEntry *entry = cell->Entries(cell->ActiveEntryIndex());
    values.DateID = entry->DateID();
    values.DateBegin = entry->datDateBegin();
    values.DateEnd = entry->datDateEnd();
    values.Name = entry->Text();
    values.Remark = entry->Remark();
    values.Document = entry->Document();
    values.ImageID = entry->ImgId();
    return values;
}

void kvEditFlow::RaiseEditEvent(Action action, kvAppointmentValues &values, bool &bCancel)
{
    QDateTime begin = values.DateBegin.toDateTime();
    QDateTime end = values.DateEnd.toDateTime();
    qint16 editAction = qint16(action);
    Q_EMIT d.q->Edit(values.DateID, begin, end, values.Name, values.Remark, values.ImageID,
                     values.Document, editAction, bCancel);
}

kvEditFlow::Action kvEditFlow::RunEditor(Action action, kvAppointmentValues &values, qint16 &step)
{
    step = 4;
    frmPicSelector::ThreadInstance().Reset();
    step = 5;
    frmEdit &editor = frmEdit::ThreadInstance();
    editor.SetOwner(d.q);
    editor.SetDateValues(values.DateBegin, values.DateEnd, values.Name, values.Remark,
                         values.ImageID, values.Document, qint16(action));
    step = 6;
    kvPlatform::modalRunner().Exec(editor);
    qint16 chosen = qint16(action);
    editor.GetDateValues(values.DateBegin, values.DateEnd, values.Name, values.Remark,
                         values.ImageID, values.Document, chosen);
    switch (Action(chosen)) {
    case Action::New:
    case Action::Delete:
    case Action::Change:
        return Action(chosen);
    default:
        return Action::None;
    }
}

void kvEditFlow::Write(Action action, kvAppointmentValues &values, bool &bCancel)
{
    if (d.settings.RaiseDatabaseEvents) {
        RaiseDatabaseEvent(action, values, bCancel);
        return;
    }
    kvAppointmentStore &store = *d.store;
    switch (action) {
    case Action::New:
        store.InsertAppointment(values.DateBegin, values.DateEnd, values.Name, values.Remark,
                                values.Document, values.ImageID);
        break;
    case Action::Delete:
        if (ConfirmDelete(values))
            store.DeleteAppointment(values.DateID);
        else
            bCancel = true;
        break;
    case Action::Change:
        store.UpdateAppointment(values.DateID, values.DateBegin, values.DateEnd, values.Name,
                                values.Remark, values.Document, values.ImageID);
        break;
    case Action::None:
        break;
    }
}

void kvEditFlow::RaiseDatabaseEvent(Action action, kvAppointmentValues &values, bool &bCancel)
{
    QDateTime begin = values.DateBegin.toDateTime();
    QDateTime end = values.DateEnd.toDateTime();
    switch (action) {
    case Action::New:
        Q_EMIT d.q->DateNew(begin, end, values.Name, values.Remark, values.Document, values.ImageID, bCancel);
        break;
    case Action::Delete:
        Q_EMIT d.q->DateDelete(values.DateID, begin, end, values.Name, values.Remark, values.Document, bCancel);
        break;
    case Action::Change:
        Q_EMIT d.q->DateChange(values.DateID, begin, end, values.Name, values.Remark, values.Document,
                               values.ImageID, bCancel);
        break;
    case Action::None:
        return;
    }
    values.DateBegin = kvDate::fromDateTime(begin);
    values.DateEnd = kvDate::fromDateTime(end);
}

bool kvEditFlow::ConfirmDelete(const kvAppointmentValues &values) const
{
    const QString question = kvSqlTexts::DeleteQuestion(values.DateBegin, values.Name);
    return kvPlatform::messageBox().MsgBox(question, DeleteQuestionStyle, QString()) == kvMessageBox::vbYes;
}
