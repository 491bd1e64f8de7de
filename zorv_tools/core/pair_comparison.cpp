#include "zorv_tools/core/pair_comparison.h"

namespace zorv {

bool pair_comparison(std::pair<int, double>* first, std::pair<int, double>* second) {
    return first->second < second->second;
}

}  // namespace zorv
