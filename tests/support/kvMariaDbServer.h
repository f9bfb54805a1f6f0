#pragma once

#include "kvDataTestSupport.h"

#include <QHash>
#include <QProcess>
#include <QString>
#include <QStringList>

/*!
    A MariaDB server of the test's own, started and stopped through the fixture script
    (tests/mariadb/mariadb-fixture.sh, named by $KV_MARIADB_FIXTURE), with a data directory
    and a port of its own, so that pausing, killing and restarting it does not disturb the
    shared server of the other tests.
*/
class kvMariaDbServer
{
public:
    //! Starts the server in \a directory; check started() and problem().
    explicit kvMariaDbServer(const QString &directory) : m_directory(directory)
    {
        if (!Run(QStringLiteral("start")))
            return;
        qputenv("KV_MARIADB_INFO", (directory + QStringLiteral("/mariadb.info")).toLocal8Bit());
        m_info = readMariaDbInfo(&m_problem);
    }
    ~kvMariaDbServer() { Run(QStringLiteral("stop")); }

    bool started() const { return !m_info.isEmpty(); }
    QString problem() const { return m_problem; }
    //! The server's connection string, followed by \a options ("Command Timeout=2").
    QString connectionString(const QString &options) const
    {
        return m_info.value(QStringLiteral("connection_string")) + QLatin1Char(';') + options;
    }
    QString generalLogPath() const { return m_info.value(QStringLiteral("general_log")); }
    //! A line of the server's info file: host, port, user, password, database, …
    QString info(const char *key) const { return m_info.value(QString::fromLatin1(key)); }

    bool pause() { return Run(QStringLiteral("pause")); }
    bool resume() { return Run(QStringLiteral("resume")); }
    bool kill() { return Run(QStringLiteral("kill")); }
    bool restart() { return Run(QStringLiteral("restart")); }

private:
    bool Run(const QString &command)
    {
        const QString script = qEnvironmentVariable("KV_MARIADB_FIXTURE");
        if (script.isEmpty()) {
            m_problem = QStringLiteral("KV_MARIADB_FIXTURE is not set: run through CTest");
            return false;
        }
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral("bash"), {script, command, m_directory});
        const bool ok = process.waitForFinished(180000) && process.exitStatus() == QProcess::NormalExit
                        && process.exitCode() == 0;
        if (!ok)
            m_problem = QStringLiteral("mariadb-fixture.sh %1 failed: %2").arg(command, QString::fromLocal8Bit(process.readAll()));
        return ok;
    }

    QString m_directory;
    QHash<QString, QString> m_info;
    QString m_problem;
};
