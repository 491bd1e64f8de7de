#pragma once

#include <cmath>

namespace zorv {

/// The library's tolerance for doubles: true where the two differ by at most 0.0001, the bound included.
/// Something that is not a number is near nothing.
inline bool is_near(double a, double b) {
    return std::abs(a - b) <= 0.0001;
}

}  // namespace zorv
