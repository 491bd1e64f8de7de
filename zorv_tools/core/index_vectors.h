#pragma once

/// @file
/// Walking nested vectors with a vector of indices, counting through such vectors, and interpolating pairs.

#include <vector>

#include "zorv_tools/core/export.h"

namespace zorv {

/// One number out of a tree of vectors: `data` is a `std::vector<void*>` of the next level, and so on down to a
/// `std::vector<double>`. Index `level` chooses in the outermost vector, index 0 the number; a level of -1 stands
/// for the last index. An index or a level that is out of range throws `std::out_of_range`. The types of the levels
/// are taken on trust, and nothing is owned.
ZORV_TOOLS_EXPORT double extract_value(void* data, std::vector<int>* indices, int level);

/// Counts on by one, the digit at `start` being the lowest; a digit runs from 0 to its limit, inclusive. False
/// when the count has run out; all digits from `start` on are 0 then. Digits below `start` stay. The states are thus
/// as many as the product of each limit plus 1. Vectors of different sizes are reported on the standard error stream
/// at each digit that is looked at; limits that are too short, and a start beyond the end, throw
/// `std::out_of_range`.
ZORV_TOOLS_EXPORT bool increment_index_vector(std::vector<int>& index, std::vector<int>& limits,
                                              unsigned int start);

/// A new vector, which the caller deletes, with the linear interpolation between the two values of each pair (0 and
/// 1, 2 and 3, ...): the first of them at a `fraction` of 0 and the second at 1; others extrapolate. An odd count is
/// reported on the standard error stream and throws `std::out_of_range`.
ZORV_TOOLS_EXPORT std::vector<double>* linear_interpolate(std::vector<double>* values, double fraction);

}  // namespace zorv
