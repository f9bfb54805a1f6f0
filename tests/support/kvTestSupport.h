#pragma once

#include "kvRuntimeError.h"

#include <QDir>
#include <QString>

#include <functional>

//! The error number \a operation throws as a kvRuntimeError (its description to \a description), or 0.
inline int errorNumber(const std::function<void()> &operation, QString *description = nullptr)
{
    try {
        operation();
    } catch (const kvRuntimeError &error) {
        if (description)
            *description = error.description();
        return error.number();
    }
    return 0;
}

//! Where tests save their PNGs: $KV_TEST_OUTPUT (set by CTest), else the temp folder.
inline QString galleryFolder()
{
    const QString folder = qEnvironmentVariable("KV_TEST_OUTPUT", QDir::tempPath());
    QDir().mkpath(folder);
    return folder;
}
