#pragma once

#include "kvkalivo_export.h"

#include <QtGlobal>

/*!
    \file kvInt16.h
    \brief kvInt16: checked 16-bit arithmetic (overflow is error 6, never a wrap).
*/

/*!
    \brief Checked arithmetic on the control's Integer (16-bit signed).

    A result outside -32768 .. 32767 is an error, not a wrap: it throws
    kvRuntimeError::overflow() (error 6, "Überlauf").
*/
namespace kvInt16 {

//! \a value as a 16-bit Integer; throws error 6 outside -32768 .. 32767.
KVKALIVO_TESTS_EXPORT qint16 fromInt(long long value);
//! Rounds to the nearest integer, halves to the even neighbour; throws error 6 outside 16 bits.
KVKALIVO_TESTS_EXPORT qint16 fromDouble(double value);

//! \a a + \a b; throws error 6 when the sum does not fit 16 bits.
KVKALIVO_TESTS_EXPORT qint16 add(int a, int b);
//! \a a - \a b; throws error 6 when the difference does not fit 16 bits.
KVKALIVO_TESTS_EXPORT qint16 subtract(int a, int b);
//! \a a * \a b; throws error 6 when the product does not fit 16 bits.
KVKALIVO_TESTS_EXPORT qint16 multiply(int a, int b);
//! Integer division, truncating toward zero; b = 0 throws error 11.
KVKALIVO_TESTS_EXPORT qint16 divide(int a, int b);

} // namespace kvInt16
