#pragma once

/// @file
/// All the small numeric functions: mathematics, random numbers, index vectors, edit distance, rectangles and the
/// process number.

#include "zorv_tools/core/edit_distance.h"
#include "zorv_tools/core/index_vectors.h"
#include "zorv_tools/core/ipow.h"
#include "zorv_tools/core/math_functions.h"
#include "zorv_tools/core/pair_comparison.h"
#include "zorv_tools/core/process.h"
#include "zorv_tools/core/random_numbers.h"
#include "zorv_tools/core/rectangles.h"
#include "zorv_tools/core/sample.h"
