#pragma once

#include <QMainWindow>

#include <memory>

class kvConnection;
class kvError;
class QLabel;

namespace Ui {
class AppointmentBook;
}

/*!
    The main window: its form (AppointmentBook.ui, made with Qt Designer) holds the kvKalivo
    control, whose table name and view are set there. The window opens the SQLite file on
    the connection it is given and hands that connection to the control.
*/
class AppointmentBook : public QMainWindow
{
    Q_OBJECT

public:
    //! \a connection must outlive the window: the control keeps using it.
    explicit AppointmentBook(kvConnection &connection, QWidget *parent = nullptr);
    ~AppointmentBook() override;

    /*!
        Opens the SQLite file \a path (created when missing), creates the control's table
        (its RecordSource) when missing and connects the control. False with \a error.
    */
    bool OpenDatabase(const QString &path, QString *error);

private:
    QString TableName() const;
    bool TableExists() const;
    void CreateTable();
    void ShowError(const kvError &error);

    std::unique_ptr<Ui::AppointmentBook> m_ui;
    kvConnection &m_connection;
    QLabel *m_databaseLabel;
};
