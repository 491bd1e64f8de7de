#pragma once

#include "zorv_tools/core/export.h"

namespace zorv {

/// The number of this process.
ZORV_TOOLS_EXPORT int pid();

}  // namespace zorv
