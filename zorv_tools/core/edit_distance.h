#pragma once

#include <string>

#include "zorv_tools/core/export.h"

namespace zorv {

/// How many bytes have to be inserted, deleted or substituted to make one string of the other.
ZORV_TOOLS_EXPORT int levenshtein(const std::string& first, const std::string& second);

}  // namespace zorv
