#pragma once

/// @file
/// Element-wise arithmetic in place on `std::vector`, for any arithmetic element type. The two vectors must be of
/// one size; otherwise `exception_l` is thrown and the left one is unchanged.

#include <cstddef>
#include <vector>

#include "zorv_tools/core/exception_l.h"

namespace zorv {

/// Adds each element of `rhs` to that of `lhs` at the same place. `lhs` and `rhs` may be one vector.
template <class T>
std::vector<T>& operator+=(std::vector<T>& lhs, const std::vector<T>& rhs) {
    if (lhs.size() != rhs.size()) {
        ZORV_THROW("std_vector_overloads::operator+=(std::vector) : vec1 had size "
                   << lhs.size() << " but vec2 had size " << rhs.size());
    }
    for (std::size_t i = 0; i < lhs.size(); ++i) {
        lhs[i] = static_cast<T>(lhs[i] + rhs[i]);
    }
    return lhs;
}

/// Subtracts each element of `rhs` from that of `lhs` at the same place. The report about sizes does not begin with
/// the function's name, unlike that of the addition; that is meant.
template <class T>
std::vector<T>& operator-=(std::vector<T>& lhs, const std::vector<T>& rhs) {
    if (lhs.size() != rhs.size()) {
        // Without the function's name in front, unlike the sentence above; that is meant.
        ZORV_THROW("vec1 had size " << lhs.size() << " but vec2 had size " << rhs.size());
    }
    for (std::size_t i = 0; i < lhs.size(); ++i) {
        lhs[i] = static_cast<T>(lhs[i] - rhs[i]);
    }
    return lhs;
}

}  // namespace zorv
