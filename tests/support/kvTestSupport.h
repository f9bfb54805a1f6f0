#pragma once

#include "kvRuntimeError.h"

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
