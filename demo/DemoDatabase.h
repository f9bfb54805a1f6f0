#pragma once

#include <QSqlDatabase>
#include <QString>

//! The demo's own appointment database: an SQLite file, created with its table when missing.
class DemoDatabase
{
public:
    static constexpr const char *TableName = "Termine";

    static QString DefaultPath();

    //! Opens (and creates when missing) the file; false with \a error on failure.
    bool Open(const QString &path, QString *error);
    QSqlDatabase Connection() const;
    QString Path() const { return m_path; }

private:
    bool CreateTableIfMissing(QString *error);

    QString m_connectionName = QStringLiteral("kvkalivo-demo");
    QString m_path;
};
