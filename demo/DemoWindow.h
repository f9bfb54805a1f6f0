#pragma once

#include <QMainWindow>

class DemoDatabase;
class QSettings;
class kvKalivo;

//! The demo host: a main window with the calendar control on it, as a host application has.
class DemoWindow : public QMainWindow
{
    Q_OBJECT

public:
    DemoWindow(DemoDatabase &database, QSettings *settings, QWidget *parent = nullptr);

    kvKalivo *Calendar() const { return m_calendar; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void CreateMenus();
    void ShowAbout();

    kvKalivo *m_calendar = nullptr;
    QSettings *m_settings = nullptr;
};
