#include "kvStderrCapture.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

kvStderrCapture::kvStderrCapture()
{
    std::fflush(stderr);
    QByteArray path = QFile::encodeName(QDir::tempPath() + QStringLiteral("/kvStderrCapture.XXXXXX"));
    m_captureDescriptor = ::mkstemp(path.data());
    if (m_captureDescriptor < 0)
        return;
    ::unlink(path.constData());
    m_savedDescriptor = ::dup(STDERR_FILENO);
    if (m_savedDescriptor >= 0 && ::dup2(m_captureDescriptor, STDERR_FILENO) >= 0)
        return;
    if (m_savedDescriptor >= 0)
        ::close(m_savedDescriptor);
    ::close(m_captureDescriptor);
    m_captureDescriptor = -1;
}

kvStderrCapture::~kvStderrCapture()
{
    Finish();
}

QString kvStderrCapture::Finish()
{
    if (m_captureDescriptor < 0)
        return m_text;
    std::fflush(stderr);
    ::dup2(m_savedDescriptor, STDERR_FILENO);
    ::close(m_savedDescriptor);
    QByteArray bytes;
    char buffer[4096];
    ::lseek(m_captureDescriptor, 0, SEEK_SET);
    for (ssize_t count; (count = ::read(m_captureDescriptor, buffer, sizeof buffer)) > 0;)
        bytes.append(buffer, count);
    ::close(m_captureDescriptor);
    m_captureDescriptor = -1;
    if (!bytes.isEmpty() && ::write(STDERR_FILENO, bytes.constData(), size_t(bytes.size())) < 0) {
        // Nothing more can be done when stderr itself fails.
    }
    m_text = QString::fromLocal8Bit(bytes).trimmed();
    return m_text;
}
