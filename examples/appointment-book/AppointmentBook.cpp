#include "AppointmentBook.h"
#include "ui_AppointmentBook.h"

#include <kvKalivo/kvAppointmentTable.h>
#include <kvKalivo/kvConnection.h>
#include <kvKalivo/kvError.h>
#include <kvKalivo/kvKalivo.h>
#include <kvKalivo/kvRuntimeError.h>

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QSqlDatabase>

AppointmentBook::AppointmentBook(kvConnection &connection, QWidget *parent)
    : QMainWindow(parent)
    , m_ui(std::make_unique<Ui::AppointmentBook>())
    , m_connection(connection)
    , m_databaseLabel(new QLabel(this))
{
    m_ui->setupUi(this);
    m_ui->statusbar->addPermanentWidget(m_databaseLabel);
    // Failures of the control arrive as the Error signal instead of a message box.
    m_ui->calendar->setRaiseErrorEvent(true);
    connect(m_ui->calendar, &kvKalivo::Error, this, &AppointmentBook::ShowError);
}

AppointmentBook::~AppointmentBook() = default;

bool AppointmentBook::OpenDatabase(const QString &path, QString *error)
{
    // kvConnection reports failures as kvRuntimeError, with the engine's message.
    try {
        m_connection.Open(QStringLiteral("Driver=SQLite3;Database=") + path);
        if (!TableExists())
            CreateTable();
    } catch (const kvRuntimeError &failure) {
        *error = failure.description();
        return false;
    }
    setWindowTitle(tr("Terminbuch – %1").arg(QFileInfo(path).fileName()));
    const QString file = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    m_databaseLabel->setText(tr("Datenbank: %1").arg(file));
    m_ui->calendar->setConnection(&m_connection);
    return true;
}

QString AppointmentBook::TableName() const
{
    return m_ui->calendar->RecordSource();
}

bool AppointmentBook::TableExists() const
{
    return m_connection.Database().tables().contains(TableName(), Qt::CaseInsensitive);
}

void AppointmentBook::CreateTable()
{
    kvAppointmentTable::Create(m_connection, TableName());
    // A first appointment, so that a new book shows how appointments look.
    const QDateTime begin(QDate::currentDate(), QTime(10, 0));
    const QString insert = QStringLiteral("INSERT INTO %1 (DateBegin, DateEnd, Name, Remark) VALUES (?, ?, ?, ?)");
    m_connection.Execute(insert.arg(TableName()), {begin, begin.addSecs(60 * 60), tr("Willkommen"),
                                                   tr("Ein Doppelklick auf einen Tag legt einen neuen Termin an.")});
}

void AppointmentBook::ShowError(const kvError &error)
{
    // Some failures are reported by their number alone, with an empty Description.
    QString text = tr("kvKalivo-Fehler %1").arg(error.Number());
    if (!error.Description().isEmpty())
        text += QStringLiteral(": ") + error.Description();
    m_ui->statusbar->showMessage(text);
    qWarning().noquote() << "appointment-book:" << text;
}
