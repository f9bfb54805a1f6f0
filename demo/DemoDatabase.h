#pragma once

#include "DemoData.h"

#include <QDate>
#include <QString>

#include <memory>

class kvConnection;

/*!
    The demo's appointment database: by default an SQLite file, created with its table when
    missing; or any connection string the user gives. An empty table gets the sample calendar
    (DemoData).
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
    QString ConnectionString() const;
    //! A short name of the database for the window title.
    QString DisplayName() const;
    /*!
        Where the sample appointments' documents are written: "Dokumente" beside an SQLite
        file, else in the demo's data folder.
    */
    QString DocumentFolder() const;

    /*!
        Fills the table with the sample calendar around \a anchor when it holds no row, and
        tells in \a summary what was inserted (nothing when the table had rows). False with
        \a error on failure.
    */
    bool FillIfEmpty(QDate anchor, DemoData::Summary *summary, QString *error);
    //! Deletes every row of the table and fills it anew; false with \a error on failure.
    bool Refill(QDate anchor, DemoData::Summary *summary, QString *error);

private:
    bool CreateTableIfMissing(QString *error);

    std::unique_ptr<kvConnection> m_connection;
};
