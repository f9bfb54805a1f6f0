#pragma once

#include <QApplication>
#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Helpers of the fuzz targets: a widget application for the targets that need one, a check
// that stops the run, and a reader that takes typed pieces from the input.

/*!
    The offscreen QApplication of the targets that load widgets or images; made on first use
    and deleted when the process ends, so that the font database lets go of its memory. The
    objects a target keeps between inputs are made with new and never deleted: their static
    destructors would run after Qt's own globals are gone.
*/
inline void kvFuzzApplication()
{
    static int argc = 1;
    static char name[] = "kvkalivo-fuzz";
    static char *argv[] = {name, nullptr};
    if (QApplication::instance())
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(argc, argv);
    std::atexit([] { delete QApplication::instance(); });
}

//! A property of the code under test that the input broke: report it and let the fuzzer keep the input.
inline void kvFuzzCheck(bool holds, const char *property, const QString &detail = QString())
{
    if (holds)
        return;
    std::fprintf(stderr, "fuzz check failed: %s\n%s\n", property, detail.toUtf8().constData());
    std::abort();
}

//! Takes bytes, numbers and texts from the front of a fuzz input; past its end everything is empty or 0.
class kvFuzzInput
{
public:
    kvFuzzInput(const uint8_t *data, size_t size) : m_data(data), m_size(size) {}

    bool atEnd() const { return m_position >= m_size; }
    uint8_t byte() { return atEnd() ? 0 : m_data[m_position++]; }

    template <typename Number>
    Number number()
    {
        Number value{};
        const size_t length = std::min(sizeof value, m_size - std::min(m_position, m_size));
        std::memcpy(&value, m_data + m_position, length);
        m_position += length;
        return value;
    }

    //! A piece of up to 255 bytes (its length first).
    QByteArray bytes()
    {
        const size_t length = std::min<size_t>(byte(), m_size - std::min(m_position, m_size));
        const QByteArray piece(reinterpret_cast<const char *>(m_data + m_position), qsizetype(length));
        m_position += length;
        return piece;
    }
    QString text() { return QString::fromUtf8(bytes()); }
    //! Everything not yet taken.
    QByteArray rest()
    {
        const size_t start = std::min(m_position, m_size);
        m_position = m_size;
        return QByteArray(reinterpret_cast<const char *>(m_data + start), qsizetype(m_size - start));
    }

private:
    const uint8_t *m_data;
    size_t m_size;
    size_t m_position = 0;
};
