#pragma once

/// @file
/// Values from text and text from values, through string streams. All conversions throw `exception_l` when the
/// text does not begin with a value of the type; what follows the value is not looked at ("12abc" is 12). A
/// failed conversion leaves in the output what the stream extraction left there. Types are any that streams read
/// and write. The helpers for strings and lines (`text.h`) come in with this header.

#include <istream>
#include <sstream>
#include <string>
#include <type_traits>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/export.h"
#include "zorv_tools/core/text.h"

namespace zorv {

namespace internal {

template <class T>
inline bool extract(const std::string& text, T& value) {
    std::stringstream stream;
    stream << text;
    stream >> value;
    return !stream.fail();
}

/// Text and streams have forms of `i_helper` of their own, which a template for any type would otherwise hide
/// from literals and from derived streams.
template <class T>
using enable_general_form =
    std::enable_if_t<!std::is_convertible_v<const T&, std::string> && !std::is_base_of_v<std::istream, T>>;

}  // namespace internal

/// String form: the value at the start of `text`.
template <class T>
void i_helper(const std::string& text, T& value) {
    if (!internal::extract(text, value)) {
        ZORV_THROW("i_helper(string) : reading in failed, when reading value of \"" << text << "\"");
    }
}

/// General form: writes `input` to a stream and reads `output` back from it.
template <class T, class U, class = internal::enable_general_form<T>>
void i_helper(const T& input, U& output) {
    std::stringstream stream;
    stream << input;
    stream >> output;
    if (stream.fail()) {
        ZORV_THROW("i_helper(general) : reading in failed, when reading value of \"" << input << "\"");
    }
}

/// Stream form: takes one word from `in`, which is consumed whether or not it holds a value.
template <class T>
void i_helper(std::istream& in, T& value) {
    std::string word;
    in >> word;
    if (!internal::extract(word, value)) {
        ZORV_THROW("i_helper(stream) : reading in failed, when reading value of \"" << word << "\"");
    }
}

/// Decimal text of `value`.
ZORV_TOOLS_EXPORT std::string int_to_str(int value);

/// Decimal text of `value` with leading zeros, `digits` groups long: 7 with 3 digits is "007". Throws
/// `exception_l` for a value of 10 to the power of `digits` or more. That power is the one of `ipow`, which wraps:
/// `digits` is meant to be from 0 to 9, and 10 refuse 2000000000 already.
///
/// Negative values pass on purpose, whatever their length. Each of their digits has a sign of its own where it is
/// not 0, and digits beyond the groups are lost: -7 with 3 digits is "00-7", and -100 with 2 is "00".
ZORV_TOOLS_EXPORT std::string int_to_str(int value, int digits);

/// @{
/// Sets the value to 0, the one that elements of a new matrix have.
ZORV_TOOLS_EXPORT void default_val(int& value);
ZORV_TOOLS_EXPORT void default_val(float& value);
ZORV_TOOLS_EXPORT void default_val(double& value);
/// @}

}  // namespace zorv
