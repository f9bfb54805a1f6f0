#include "kvInt16.h"

#include "kvRuntimeError.h"

#include <cmath>
#include <limits>

namespace kvInt16 {

qint16 fromInt(long long value)
{
    if (value < std::numeric_limits<qint16>::min() || value > std::numeric_limits<qint16>::max())
        throw kvRuntimeError::overflow();
    return qint16(value);
}

qint16 fromDouble(double value)
{
    if (!std::isfinite(value))
        throw kvRuntimeError::overflow();
    double rounded = std::floor(value + 0.5);
    if (rounded - value == 0.5 && std::fmod(rounded, 2.0) != 0.0)
        rounded -= 1.0;
    if (rounded < std::numeric_limits<qint16>::min() || rounded > std::numeric_limits<qint16>::max())
        throw kvRuntimeError::overflow();
    return qint16(rounded);
}

qint16 add(int a, int b)
{
    return fromInt(static_cast<long long>(a) + b);
}

qint16 subtract(int a, int b)
{
    return fromInt(static_cast<long long>(a) - b);
}

qint16 multiply(int a, int b)
{
    return fromInt(static_cast<long long>(a) * b);
}

qint16 divide(int a, int b)
{
    if (b == 0)
        throw kvRuntimeError::divisionByZero();
    return fromInt(static_cast<long long>(a) / b);
}

} // namespace kvInt16
