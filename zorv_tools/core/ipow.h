#pragma once

#include "zorv_tools/core/export.h"

namespace zorv {

/// `base` to the power of `exponent` in wrapping 32-bit arithmetic. A negative exponent divides 1 by the base
/// that many times, each division truncating: 0 for any base but 1 and -1. An exponent of 0 gives 1 for every
/// base. A base of 0 with a negative exponent divides by zero and is not guarded. The time grows with the exponent.
ZORV_TOOLS_EXPORT int ipow(const int& base, const int& exponent);

}  // namespace zorv
