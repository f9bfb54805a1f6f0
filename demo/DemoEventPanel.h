#pragma once

#include "DemoHostEvent.h"

#include <QDockWidget>
#include <QList>
#include <QPointer>

#include <functional>
#include <utility>

class DemoAppointmentWriter;
class QCheckBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class kvError;
class kvKalivo;

/*!
    The demo's "Ereignisse" panel: it handles the host events of the control (DateNew,
    DateChange, DateDelete, Edit, Error and PropertyChanged) the way a host does and lists them
    as they arrive, with their arguments, newest at the bottom.

    Its check boxes switch the control's RaiseDatabaseEvents, RaiseEditEvent and
    RaiseErrorEvent (both ways), and whether the host answers with bCancel = True. With
    RaiseDatabaseEvents the control writes nothing itself, so unless it cancels the panel
    writes the appointment into the control's connection, as a host is expected to, and the
    control's reload then shows the row. For Edit it notes where a host would show its own
    editor.
*/
class DemoEventPanel : public QDockWidget
{
    Q_OBJECT

public:
    explicit DemoEventPanel(kvKalivo *calendar, QWidget *parent = nullptr);

    //! The events listed so far, oldest first.
    const QList<DemoHostEvent> &Events() const { return m_events; }
    void Clear();

    //! Narrow enough to leave the calendar most of the window, wide enough for an argument row.
    int PreferredWidth() const;

private:
    using Write = std::function<QString(DemoAppointmentWriter &)>;
    using Response = std::pair<DemoHostEvent::Outcome, QString>;

    QWidget *CreateContents();
    QWidget *CreateSwitches();
    QWidget *CreateLog();
    QWidget *CreateFooter();
    QCheckBox *AddSwitch(QWidget *box, const QString &name, const QString &toolTip);
    void BindSwitches();
    void ConnectEvents();
    void SyncSwitch(const QString &propertyName);

    void OnDateNew(QDateTime &begin, QDateTime &end, QString &name, QString &remark, QString &document,
                   qint16 &imageId, bool &bCancel);
    void OnDateChange(qint32 &dateId, QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                      QString &document, qint16 &imageId, bool &bCancel);
    void OnDateDelete(qint32 &dateId, QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                      QString &document, bool &bCancel);
    void OnEdit(qint32 &dateId, QDateTime &begin, QDateTime &end, QString &name, QString &remark,
                qint16 &imageId, QString &document, qint16 &action, bool &bCancel);
    void OnError(kvError &error);
    void OnPropertyChanged(const QString &propertyName);

    //! Cancels when the switch says so, else lets the host \a write; sets \a bCancel accordingly.
    Response Respond(bool &bCancel, const Write &write) const;
    void Append(DemoHostEvent event);
    QTreeWidgetItem *AddItem(const DemoHostEvent &event);
    void UpdateCount();

    QPointer<kvKalivo> m_calendar;
    QCheckBox *m_raiseDatabaseEvents = nullptr;
    QCheckBox *m_raiseEditEvent = nullptr;
    QCheckBox *m_raiseErrorEvent = nullptr;
    QCheckBox *m_cancel = nullptr;
    QCheckBox *m_logPropertyChanged = nullptr;
    QTreeWidget *m_log = nullptr;
    QLabel *m_count = nullptr;
    QList<DemoHostEvent> m_events;
};
