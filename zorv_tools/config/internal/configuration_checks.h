#pragma once

/// @file
/// What the rows of the catalogue accept. Not-a-number passes none of the tests on numbers.

#include <algorithm>
#include <string>
#include <string_view>

namespace zorv::internal {

template <int bound>
bool at_least(double number) {
    return number >= bound;
}

inline bool above_0(double number) {
    return number > 0;
}
inline bool below_0(double number) {
    return number < 0;
}
inline bool below_1(double number) {
    return number < 1;
}
inline bool between_0_and_1(double number) {
    return number > 0 && number < 1;
}
inline bool from_0_to_1(double number) {
    return number >= 0 && number <= 1;
}
inline bool in_byte_range(double number) {
    return number >= 0 && number <= 255;
}
inline bool is_odd(double number) {
    return static_cast<int>(number) % 2 != 0;
}

/// Exactly one of the words of a list, by case too.
template <const auto& words>
bool one_of(const std::string& text) {
    return std::find(std::begin(words), std::end(words), std::string_view(text)) != std::end(words);
}

/// The last four characters. Throws `std::out_of_range` when there are fewer.
std::string_view tail(const std::string& text);

/// Whether there is a "." among the last four characters.
bool has_extension(const std::string& text);

bool ends_in_txt(const std::string& text);

}  // namespace zorv::internal
