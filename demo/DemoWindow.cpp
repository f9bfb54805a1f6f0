#include "DemoWindow.h"

#include "DemoDatabase.h"
#include "kvKalivo.h"
#include "kvSettingsPropertyBag.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>

DemoWindow::DemoWindow(DemoDatabase &database, QSettings *settings, QWidget *parent)
    : QMainWindow(parent)
    , m_settings(settings)
{
    setWindowTitle(QStringLiteral("kvKalivo Demo – %1").arg(database.DisplayName()));
    m_calendar = new kvKalivo(this);
    setCentralWidget(m_calendar);

    kvSettingsPropertyBag bag(m_settings, QStringLiteral("kvKalivo"));
    m_calendar->ReadProperties(bag);
    m_calendar->setParameterizedSql(true);
    m_calendar->setRecordSource(QLatin1String(DemoDatabase::TableName));
    m_calendar->setConnection(database.Connection());
    m_calendar->setPublicHoliday(true);

    CreateMenus();
    resize(1280, 800);
}

void DemoWindow::CreateMenus()
{
    QMenu *fileMenu = menuBar()->addMenu(QStringLiteral("&Datei"));
    fileMenu->addAction(QStringLiteral("&Beenden"), QKeySequence::Quit, this, &QWidget::close);
    QMenu *helpMenu = menuBar()->addMenu(QStringLiteral("&Hilfe"));
    helpMenu->addAction(QStringLiteral("Ü&ber kvKalivo"), this, &DemoWindow::ShowAbout);
}

void DemoWindow::ShowAbout()
{
    QMessageBox::about(this, QStringLiteral("Über kvKalivo"),
                       QStringLiteral("kvKalivo – Terminkalendar Steuerelement für Qt 6"));
}

void DemoWindow::closeEvent(QCloseEvent *event)
{
    kvSettingsPropertyBag bag(m_settings, QStringLiteral("kvKalivo"));
    m_calendar->WriteProperties(bag);
    event->accept();
}
