// SPDX-License-Identifier: MIT
#ifndef UTILS_NUMBERS_H
#define UTILS_NUMBERS_H

#include <cmath>
#include <limits>

/// Arithmetic that ends at the limits of its type where the plain one would be undefined: hosts and
/// events may bring any number.
namespace bounded {

/// The whole part of @p v; NaN gives 0.
inline int truncate(double v)
{
    constexpr int lowest = std::numeric_limits<int>::min();
    constexpr int highest = std::numeric_limits<int>::max();
    if (std::isnan(v))
        return 0;
    return v <= lowest ? lowest : v >= highest ? highest : int(v);
}

/// The whole number nearest to @p v, the upper one of two; NaN gives 0.
inline int round(double v)
{
    return truncate(std::floor(v + 0.5));
}

/// @p a + @p b.
template <typename T> T sum(T a, T b)
{
    T result;
    if (!__builtin_add_overflow(a, b, &result))
        return result;
    return b < 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
}

/// @p a - @p b.
template <typename T> T difference(T a, T b)
{
    T result;
    if (!__builtin_sub_overflow(a, b, &result))
        return result;
    return b > 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
}

} // namespace bounded

#endif
