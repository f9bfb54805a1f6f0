#pragma once

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QString>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <ctime>

//! A TCP port on 127.0.0.1 that nothing listens on: bound once by the system, then released.
inline int closedLocalPort()
{
    const int handle = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = 0;
    if (::bind(handle, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0
        && ::getsockname(handle, reinterpret_cast<sockaddr *>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    ::close(handle);
    return port;
}

//! Puts the process in Europe/Berlin; true when 02:30 on 29 March 2026 is no valid local time there.
inline bool useBerlinTime()
{
    qputenv("TZ", "Europe/Berlin");
    ::tzset();
    return !QDateTime(QDate(2026, 3, 29), QTime(2, 30)).isValid();
}

//! The key=value lines of the MariaDB fixture's file named by $KV_MARIADB_INFO; empty, and why in \a problem, without one.
inline QHash<QString, QString> readMariaDbInfo(QString *problem)
{
    QHash<QString, QString> info;
    QFile file(qEnvironmentVariable("KV_MARIADB_INFO"));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly)) {
        *problem = QStringLiteral("no MariaDB info file \"%1\": run through CTest, which starts the server").arg(file.fileName());
        return info;
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (const qsizetype equals = line.indexOf('='); equals > 0)
            info.insert(QString::fromUtf8(line.left(equals)), QString::fromUtf8(line.mid(equals + 1)));
    }
    return info;
}
