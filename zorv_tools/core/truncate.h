#pragma once

#include <limits>

namespace zorv {

/// `value` as an `Int`, truncated toward zero. A value that does not fit, or is not a number, gives the
/// smallest value of `Int`: a plain conversion would be undefined there.
template <class Int>
inline Int truncate_to(double value) {
    constexpr double smallest = static_cast<double>(std::numeric_limits<Int>::min());
    // One beyond the largest value. It is a power of two and so exact, which the largest value itself is not.
    // NOLINTNEXTLINE(bugprone-integer-division): halves that are whole again when doubled
    constexpr double beyond = 2.0 * static_cast<double>(std::numeric_limits<Int>::max() / 2 + 1);
    // What lies less than one below the smallest value would be cut to that value, which is the answer anyway.
    return value >= smallest && value < beyond ? static_cast<Int>(value) : std::numeric_limits<Int>::min();
}

}  // namespace zorv
