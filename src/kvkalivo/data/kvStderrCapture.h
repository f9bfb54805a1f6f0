#pragma once

#include <QString>

/*!
    \brief Collects what is written to the process's standard error while it lives.

    Some ODBC drivers (MDBTools) report a failed connect only on stderr, not through ODBC
    diagnostics; kvConnection captures it around Open to put the driver's own words into the
    error. Everything captured is written on to the real stderr afterwards, so nothing is lost.
    It redirects file descriptor 2 of the whole process: use it only briefly, on the GUI thread.
*/
class kvStderrCapture
{
public:
    kvStderrCapture();
    ~kvStderrCapture();
    kvStderrCapture(const kvStderrCapture &) = delete;
    kvStderrCapture &operator=(const kvStderrCapture &) = delete;

    //! Ends the capture (once) and returns the text, also passed on to the real stderr.
    QString Finish();

private:
    int m_savedDescriptor = -1;
    int m_captureDescriptor = -1;
    QString m_text;
};
