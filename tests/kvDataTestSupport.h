#pragma once

#include <QDate>
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
