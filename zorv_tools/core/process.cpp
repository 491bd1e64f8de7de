#include "zorv_tools/core/process.h"

#include "zorv_tools/core/internal/process_id.h"

namespace zorv {

int pid() {
    return internal::process_id();
}

}  // namespace zorv
