#pragma once

#include "kvkalivo_export.h"

#include <QtGlobal>

/*!
    \brief Checked arithmetic on the spec's Integer (16-bit signed).

    A result outside -32768 .. 32767 is an error, not a wrap: it throws
    kvRuntimeError::overflow() (VB error 6, "Überlauf").
*/
namespace kvInt16 {

KVKALIVO_EXPORT qint16 fromInt(long long value);
//! VB's CInt: rounds to the nearest integer, halves to the even neighbour.
KVKALIVO_EXPORT qint16 fromDouble(double value);

KVKALIVO_EXPORT qint16 add(int a, int b);
KVKALIVO_EXPORT qint16 subtract(int a, int b);
KVKALIVO_EXPORT qint16 multiply(int a, int b);
//! VB's integer division a \ b, truncating toward zero; b = 0 throws error 11.
KVKALIVO_EXPORT qint16 divide(int a, int b);

} // namespace kvInt16
