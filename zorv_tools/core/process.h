#pragma once

#include "zorv_tools/core/export.h"

namespace zorv {

/// The system's number for this process.
ZORV_TOOLS_EXPORT int pid();

}  // namespace zorv
