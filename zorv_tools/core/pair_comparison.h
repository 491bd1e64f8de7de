#pragma once

#include <utility>

#include "zorv_tools/core/export.h"

namespace zorv {

/// Whether the score of `first` is strictly the smaller one: the order of an ascending sort of (index, score) pairs by
/// score. The index plays no part. Scores that are not a number have no order, and upset a sort.
ZORV_TOOLS_EXPORT bool pair_comparison(std::pair<int, double>* first, std::pair<int, double>* second);

}  // namespace zorv
