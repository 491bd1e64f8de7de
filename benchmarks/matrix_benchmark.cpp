#include <Eigen/Core>
#include <cstdlib>

#include "benchmarks/compare.h"
#include "zorv_tools/core/matrix.h"

namespace {

void compare_product(int size) {
    zorv::matrix<double> a(size, size);
    zorv::matrix<double> b(size, size);
    Eigen::MatrixXd eigen_a(size, size);
    Eigen::MatrixXd eigen_b(size, size);
    for (int i = 0; i < size; ++i) {
        for (int j = 0; j < size; ++j) {
            const auto row = static_cast<unsigned int>(i);
            const auto col = static_cast<unsigned int>(j);
            a[row][col] = eigen_a(i, j) = 0.5 + i - 0.25 * j;
            b[row][col] = eigen_b(i, j) = 1.5 - i + 0.75 * j;
        }
    }
    // A thousand products a call, so that the call itself does not count.
    const auto ours = [a, b] {
        for (int n = 0; n < 1000; ++n) {
            const zorv::matrix<double> product = a * b;
            benchmark::DoNotOptimize(product[0]);
        }
    };
    const auto peer = [eigen_a, eigen_b] {
        for (int n = 0; n < 1000; ++n) {
            const Eigen::MatrixXd product = eigen_a * eigen_b;
            benchmark::DoNotOptimize(product.data());
        }
    };
    const std::string shape = std::to_string(size) + " by " + std::to_string(size);
    ZORV_COMPARE("matrix<double> product, " + shape + " (Eigen::MatrixXd)", 2.5, ours, peer);
}

}  // namespace

void register_comparisons() {
    compare_product(3);
    compare_product(4);
}
