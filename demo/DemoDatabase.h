#pragma once

#include <QString>

#include <memory>

class kvConnection;

/*!
    The demo's appointment database: by default an SQLite file, created with its table when
    missing; or any connection string the user gives.
*/
class DemoDatabase
{
public:
    static constexpr const char *TableName = "Termine";

    DemoDatabase();
    ~DemoDatabase();

    static QString DefaultPath();
    static QString SqliteConnectionString(const QString &path);

    //! Opens \a connectionString and creates the appointment table when it is missing.
    bool Open(const QString &connectionString, QString *error);
    kvConnection *Connection() const { return m_connection.get(); }
    //! A short name of the database for the window title.
    QString DisplayName() const;

private:
    bool CreateTableIfMissing(QString *error);

    std::unique_ptr<kvConnection> m_connection;
};
