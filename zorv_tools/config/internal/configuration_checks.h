#pragma once

/// @file
/// What the rows of the catalogue accept, as data: the setters test by it, and the documentation's table of all keys
/// is written from it.

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

namespace zorv::internal {

/// A range of numbers. Not-a-number lies in none.
struct number_range {
    double lower = -std::numeric_limits<double>::infinity();
    bool with_lower = true;
    double upper = std::numeric_limits<double>::infinity();
    bool with_upper = true;
    /// Of the range, the odd whole numbers alone.
    bool odd = false;

    constexpr bool contains(double number) const {
        return (with_lower ? number >= lower : number > lower) &&
               (with_upper ? number <= upper : number < upper) && (!odd || static_cast<int>(number) % 2 != 0);
    }
};

constexpr number_range at_least(double bound) {
    number_range range;
    range.lower = bound;
    return range;
}

constexpr number_range above(double bound) {
    number_range range = at_least(bound);
    range.with_lower = false;
    return range;
}

constexpr number_range below(double bound) {
    number_range range;
    range.upper = bound;
    range.with_upper = false;
    return range;
}

/// Without the bounds.
constexpr number_range between(double lower, double upper) {
    return {lower, false, upper, false};
}

/// With the bounds.
constexpr number_range from_to(double lower, double upper) {
    return {lower, true, upper, true};
}

constexpr number_range odd_numbers() {
    number_range range;
    range.odd = true;
    return range;
}

enum class text_form {
    any,
    /// Exactly one of the words of a list, by case too.
    word,
    /// There is a "." among the last four characters.
    extension,
    /// The last four characters are ".txt".
    txt
};

struct text_rule {
    text_form form = text_form::any;
    const std::string_view* words = nullptr;
    std::size_t word_count = 0;

    /// Throws `std::out_of_range` where the form looks at the last four characters and there are fewer.
    bool accepts(const std::string& text) const;
};

template <std::size_t count>
constexpr text_rule one_of(const std::string_view (&words)[count]) {
    return {text_form::word, words, count};
}

constexpr text_rule has_extension = {text_form::extension};
constexpr text_rule ends_in_txt = {text_form::txt};

}  // namespace zorv::internal
