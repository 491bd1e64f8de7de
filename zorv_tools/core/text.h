#pragma once

/// @file
/// Editing strings, and reading streams line by line. None of these report errors.

#include <istream>
#include <sstream>
#include <string>
#include <vector>

#include "zorv_tools/core/export.h"

namespace zorv {

/// Replaces the first `find` at or behind the byte `start`; its position, or -1 where there is none and the text
/// stays. A `start` that is negative or behind the end finds nothing.
ZORV_TOOLS_EXPORT int find_and_replace(std::string& text, const std::string& find,
                                       const std::string& replacement, int start);

/// Replaces the last `find` that begins at the byte `start` or before it; its position, or -1 where there is none and
/// the text stays. A negative `start` searches from the very end.
ZORV_TOOLS_EXPORT int rfind_and_replace(std::string& text, const std::string& find,
                                        const std::string& replacement, int start);

/// Replaces each `find` and returns their number. What has been put in is not searched again. `find` must not be
/// empty: an empty one is found for ever.
ZORV_TOOLS_EXPORT int find_and_replace_all(std::string& text, const std::string& find,
                                           const std::string& replacement);

/// Turns each "/" into "\", also on systems whose paths have none.
ZORV_TOOLS_EXPORT void correct_path(std::string& path);

/// Removes all "\n" and "\r", also those inside the text.
ZORV_TOOLS_EXPORT void strip_nl(std::string& text);

/// A copy in lower case, each byte by the C library's locale. Letters that take several bytes in UTF-8 stay.
ZORV_TOOLS_EXPORT const std::string to_lower(const std::string& text);

/// The words between white space, which is what the global locale takes for it. A text without a word gives one empty
/// word, never an empty vector.
ZORV_TOOLS_EXPORT std::vector<std::string> tokenise(const std::string& text);

/// Reads one line and loads it without its "\n" into `row`, to be read from its beginning. Where there is no further
/// line, `in` fails and `row` is empty. The state flags of `row` stay: a caller that has read it to its end clears
/// them.
ZORV_TOOLS_EXPORT void get_row_stream(std::istream& in, std::stringstream& row);

/// The same as `get_row_stream`.
ZORV_TOOLS_EXPORT void get_line_stream(std::istream& in, std::stringstream& row);

/// Skips NUL bytes, and the white space behind each. Sets the state that a peek at the end of a stream sets.
ZORV_TOOLS_EXPORT void dump_nulls(std::istream& in);

}  // namespace zorv
