#pragma once

#include "kvKalivo.h"

#include <QDate>
#include <QMainWindow>

#include <memory>
#include <optional>

class DemoDatabase;
class DemoEventPanel;
class QSettings;

//! What the command line asks of the demo window.
struct DemoOptions
{
    std::optional<kvKalivo::kvView> view;   //!< --view; unset: as saved (or the control's default)
    QDate date;                             //!< --date; invalid: as saved (or today)
    QDate sampleAnchor;                     //!< the sample calendar is made around this day
};

/*!
    The demo host: a main window with the calendar control on it, as a host application has.
    It owns the database the control is connected to and can switch to another one
    ("Datei" → "Verbindung öffnen…"). The "Ereignisse" panel beside the calendar handles and
    lists the control's host events ("Ansicht" hides it). With \a settings the control's properties are read
    from them at the start (a new control's defaults while none are saved) and written back on
    close; without, the control starts fresh and nothing is saved (--screenshot).
*/
class DemoWindow : public QMainWindow
{
    Q_OBJECT

public:
    DemoWindow(std::unique_ptr<DemoDatabase> database, QSettings *settings, const DemoOptions &options,
               QWidget *parent = nullptr);
    ~DemoWindow() override;

    kvKalivo *Calendar() const { return m_calendar; }
    DemoDatabase &Database() const { return *m_database; }
    DemoEventPanel *EventPanel() const { return m_eventPanel; }

    //! Connects the control to \a connectionString (or an SQLite file path); false with \a error.
    bool OpenConnection(const QString &connectionString, QString *error);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    bool HasSavedSettings() const;
    void CreateEventPanel();
    void CreateMenus();
    void AskForConnection();
    void AskToRefillSampleData();
    void ShowAbout();
    void UpdateTitle();

    std::unique_ptr<DemoDatabase> m_database;
    kvKalivo *m_calendar = nullptr;
    DemoEventPanel *m_eventPanel = nullptr;
    QSettings *m_settings = nullptr;
    QDate m_sampleAnchor;
};
