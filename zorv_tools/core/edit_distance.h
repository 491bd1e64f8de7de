#pragma once

#include <string>

#include "zorv_tools/core/export.h"

namespace zorv {

/// How many bytes have to be inserted, deleted or substituted to make one string of the other (V. Levenshtein,
/// Binary codes capable of correcting deletions, insertions and reversals, 1966). Upper and lower case differ, and a
/// character of several bytes counts as these.
ZORV_TOOLS_EXPORT int levenshtein(const std::string& first, const std::string& second);

}  // namespace zorv
