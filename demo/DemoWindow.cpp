#include "DemoWindow.h"

#include "DemoDatabase.h"
#include "DemoEventPanel.h"
#include "kvSettingsPropertyBag.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QInputDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>

namespace {

const QString SettingsGroup = QStringLiteral("kvKalivo");

} // namespace

DemoWindow::DemoWindow(std::unique_ptr<DemoDatabase> database, QSettings *settings, const DemoOptions &options,
                       QWidget *parent)
    : QMainWindow(parent)
    , m_database(std::move(database))
    , m_settings(settings)
    , m_sampleAnchor(options.sampleAnchor.isValid() ? options.sampleAnchor : QDate::currentDate())
{
    m_calendar = new kvKalivo(this);
    setCentralWidget(m_calendar);

    // A host reads saved settings; with none saved it starts a new control from its defaults.
    if (HasSavedSettings())
        m_calendar->ReadProperties(kvSettingsPropertyBag(m_settings, SettingsGroup));
    else
        m_calendar->InitProperties();
    m_calendar->setParameterizedSql(true);
    m_calendar->setRecordSource(QLatin1String(DemoDatabase::TableName));
    m_calendar->setConnection(m_database->Connection());
    m_calendar->setPublicHoliday(true);
    if (options.view)
        m_calendar->setView(*options.view);
    if (options.date.isValid())
        m_calendar->setActualDate(options.date);

    CreateEventPanel();
    CreateMenus();
    UpdateTitle();
    resize(1280, 800);
    m_calendar->setFocus(); // the keyboard starts in the calendar
}

DemoWindow::~DemoWindow()
{
    // The control lets go of the connection before the database closes it.
    delete m_calendar;
    m_calendar = nullptr;
}

bool DemoWindow::HasSavedSettings() const
{
    if (!m_settings)
        return false;
    m_settings->beginGroup(SettingsGroup);
    const bool saved = !m_settings->childKeys().isEmpty();
    m_settings->endGroup();
    return saved;
}

void DemoWindow::CreateEventPanel()
{
    m_eventPanel = new DemoEventPanel(m_calendar, this);
    addDockWidget(Qt::RightDockWidgetArea, m_eventPanel);
    // Left alone, the wrapped hint text would make the panel half as wide as the calendar.
    resizeDocks({m_eventPanel}, {m_eventPanel->PreferredWidth()}, Qt::Horizontal);
}

void DemoWindow::CreateMenus()
{
    QMenu *fileMenu = menuBar()->addMenu(QStringLiteral("&Datei"));
    QAction *open = fileMenu->addAction(QStringLiteral("Verbindung ö&ffnen…"), QKeySequence::Open, this,
                                        &DemoWindow::AskForConnection);
    open->setObjectName(QStringLiteral("actionOpenConnection"));
    QAction *refill = fileMenu->addAction(QStringLiteral("Beispieldaten &neu anlegen"), this,
                                          &DemoWindow::AskToRefillSampleData);
    refill->setObjectName(QStringLiteral("actionRefillSampleData"));
    fileMenu->addSeparator();
    fileMenu->addAction(QStringLiteral("&Beenden"), QKeySequence::Quit, this, &QWidget::close);
    QMenu *viewMenu = menuBar()->addMenu(QStringLiteral("&Ansicht"));
    QAction *showEvents = m_eventPanel->toggleViewAction();
    showEvents->setText(QStringLiteral("&Ereignisse"));
    showEvents->setObjectName(QStringLiteral("actionShowEvents"));
    viewMenu->addAction(showEvents);
    QMenu *helpMenu = menuBar()->addMenu(QStringLiteral("&Hilfe"));
    helpMenu->addAction(QStringLiteral("Ü&ber kvKalivo"), this, &DemoWindow::ShowAbout);
}

void DemoWindow::UpdateTitle()
{
    setWindowTitle(QStringLiteral("kvKalivo Demo – %1").arg(m_database->DisplayName()));
}

bool DemoWindow::OpenConnection(const QString &connectionString, QString *error)
{
    // A bare path is taken as an SQLite file.
    const QString text = connectionString.trimmed();
    const QString resolved = text.contains(QLatin1Char('=')) ? text : DemoDatabase::SqliteConnectionString(text);
    auto database = std::make_unique<DemoDatabase>();
    if (!database->Open(resolved, error))
        return false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    DemoData::Summary summary;
    const bool filled = database->FillIfEmpty(m_sampleAnchor, &summary, error);
    QApplication::restoreOverrideCursor();
    if (!filled) {
        *error = QStringLiteral("Die Beispieldaten konnten nicht angelegt werden.\n\n%1").arg(*error);
        return false;
    }
    // The control takes the new connection before the old one closes.
    m_calendar->setConnection(database->Connection());
    m_database = std::move(database);
    m_calendar->Refresh();
    UpdateTitle();
    return true;
}

void DemoWindow::AskForConnection()
{
    bool accepted = false;
    const QString text = QInputDialog::getText(
        this, QStringLiteral("Verbindung öffnen"),
        QStringLiteral("Verbindungszeichenfolge (ADO) oder Pfad einer SQLite-Datei, zum Beispiel\n"
                       "Driver=SQLite3;Database=/home/anna/termine.sqlite\n"
                       "Driver={MySQL ODBC 8.0 Driver};Server=127.0.0.1;Database=termine;Uid=anna;Pwd=…\n"
                       "Provider=SQLOLEDB;Data Source=server;Initial Catalog=termine;User ID=anna;Password=…\n\n"
                       "Fehlt die Tabelle „%1“, wird sie angelegt; ist sie leer, mit Beispieldaten gefüllt.")
            .arg(QLatin1String(DemoDatabase::TableName)),
        QLineEdit::Normal, m_database->ConnectionString(), &accepted);
    if (!accepted || text.trimmed().isEmpty())
        return;
    QString error;
    if (!OpenConnection(text, &error))
        QMessageBox::warning(this, QStringLiteral("Verbindung öffnen"),
                             QStringLiteral("Die Verbindung konnte nicht geöffnet werden:\n%1\n\n%2")
                                 .arg(text.trimmed(), error));
}

void DemoWindow::AskToRefillSampleData()
{
    const QMessageBox::StandardButton answer = QMessageBox::question(
        this, QStringLiteral("Beispieldaten neu anlegen"),
        QStringLiteral("Alle Termine der Tabelle „%1“ löschen und die Beispieldaten neu anlegen?")
            .arg(QLatin1String(DemoDatabase::TableName)),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer != QMessageBox::Yes)
        return;
    QString error;
    DemoData::Summary summary;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool filled = m_database->Refill(m_sampleAnchor, &summary, &error);
    QApplication::restoreOverrideCursor();
    if (!filled)
        QMessageBox::warning(this, QStringLiteral("Beispieldaten neu anlegen"),
                             QStringLiteral("Die Beispieldaten konnten nicht angelegt werden:\n\n%1").arg(error));
    m_calendar->Refresh();
}

void DemoWindow::ShowAbout()
{
    QMessageBox::about(this, QStringLiteral("Über kvKalivo"),
                       QStringLiteral("kvKalivo – Terminkalendar Steuerelement für Qt 6"));
}

void DemoWindow::closeEvent(QCloseEvent *event)
{
    if (m_settings) {
        kvSettingsPropertyBag bag(m_settings, SettingsGroup);
        m_calendar->WriteProperties(bag);
    }
    event->accept();
}
