#pragma once

#include <QByteArray>
#include <QDate>
#include <QFile>
#include <QHash>
#include <QString>
#include <QDateTime>
#include <QTime>
#include <QtGlobal>

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

/*!
    Puts the process in Europe/Berlin, where the clocks jump from 02:00 to 03:00 on
    29 March 2026, so that a date test sees any shift a local-time conversion would make.
    Returns whether 02:30 that night is indeed no valid local time.
*/
inline bool useBerlinTime()
{
    qputenv("TZ", "Europe/Berlin");
    ::tzset();
    return !QDateTime(QDate(2026, 3, 29), QTime(2, 30)).isValid();
}

/*!
    The details of the throwaway MariaDB server of the CTest fixture "MariaDB": the key=value
    lines of the file named by $KV_MARIADB_INFO. Empty when the variable or the file is missing
    (the server is not running); \a problem then says why.
*/
inline QHash<QString, QString> readMariaDbInfo(QString *problem)
{
    QHash<QString, QString> info;
    const QString path = qEnvironmentVariable("KV_MARIADB_INFO");
    if (path.isEmpty()) {
        *problem = QStringLiteral("KV_MARIADB_INFO is not set: run through CTest, which starts the MariaDB fixture");
        return info;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *problem = QStringLiteral("no MariaDB info file %1: the server is not running").arg(path);
        return info;
    }
    for (const QByteArray &line : file.readAll().split('\n')) {
        const qsizetype equals = line.indexOf('=');
        if (equals > 0)
            info.insert(QString::fromUtf8(line.left(equals)), QString::fromUtf8(line.mid(equals + 1)));
    }
    return info;
}
