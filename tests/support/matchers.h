#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <vector>

#include "zorv_tools/core/matrix.h"

using row_list = std::vector<std::vector<double>>;

/// A matrix of these rows, of which there is at least one.
inline zorv::matrix<double> to_matrix(const row_list& rows) {
    zorv::matrix<double> m(static_cast<int>(rows.size()), static_cast<int>(rows[0].size()));
    for (unsigned int i = 0; i < rows.size(); ++i) {
        m.set_row(i, rows[i]);
    }
    return m;
}

inline row_list to_rows(const zorv::matrix<double>& m) {
    row_list rows;
    for (unsigned int i = 0; i < m.get_dim1(); ++i) {
        rows.emplace_back(m[i], m[i] + m.get_dim2());
    }
    return rows;
}

/// A `matrix<double>` with the given rows, each element within `tolerance`.
MATCHER_P2(matrix_near, rows, tolerance, "is near the expected matrix") {
    const row_list expected = rows;
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
