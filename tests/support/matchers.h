#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <vector>

#include "zorv_tools/core/matrix.h"

/// A `matrix<double>` with the given rows, each element within `tolerance`.
MATCHER_P2(matrix_near, rows, tolerance, "is near the expected matrix") {
    const std::vector<std::vector<double>> expected = rows;
    const std::size_t cols = expected.empty() ? 0 : expected[0].size();
    if (arg.get_dim1() != expected.size() || arg.get_dim2() != cols) {
        *result_listener << "is " << arg.get_dim1() << " by " << arg.get_dim2();
        return false;
    }
    for (unsigned int i = 0; i < expected.size(); ++i) {
        for (unsigned int j = 0; j < cols; ++j) {
            if (!(std::abs(arg[i][j] - expected[i][j]) <= tolerance)) {
                *result_listener << "has " << arg[i][j] << " at " << i << "," << j;
                return false;
            }
        }
    }
    return true;
}
