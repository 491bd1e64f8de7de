#pragma once

/// @file
/// Shortcuts for whole numbers in front of the conversions by stream. A track holds many thousands of small plain
/// numbers, and making a stream for each takes several times as long as all else. Whatever is not a small plain number
/// goes the common way, with its results and its reports.

#include <istream>
#include <string>
#include <string_view>

namespace zorv::internal {

/// The whole number that `text` begins with. Throws as the string form of `i_helper` does.
void read_int(std::string_view text, int& value);

/// The whole number that the next word of `in` begins with. Throws as the stream form of `i_helper` does.
void read_int(std::istream& in, int& value);

/// The text of `int_to_str(value, digits)`. Throws as that does.
std::string padded(int value, int digits);

}  // namespace zorv::internal
