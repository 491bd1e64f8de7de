#pragma once

/// @file
/// Fields of a line's value and the numbers in them.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zorv::internal {

/// The integer at the start of `text`, 0 when there is none; beyond the range of `int` it is the nearest end of
/// that range. (What `atoi` does there differs from one system to the next.)
int to_int(const std::string& text);

/// The number at the start of `text` as the C runtime reads it, 0 when there is none.
double to_double(const std::string& text);

/// The first `count` fields of `text`; what stands behind the last separator looked for belongs to the last
/// field. Fewer than `count` when there are not enough separators.
std::vector<std::string> split_fields(const std::string& text, std::size_t count, char separator = '|');

/// All fields of `text`, at least one.
std::vector<std::string> split_fields(const std::string& text);

}  // namespace zorv::internal
