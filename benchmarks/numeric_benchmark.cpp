#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "benchmarks/compare.h"
#include "zorv_tools/core/edit_distance.h"
#include "zorv_tools/core/math_functions.h"

namespace {

int by_two_rows(const std::string& a, const std::string& b) {
    std::vector<int> above(b.size() + 1);
    std::vector<int> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        above[j] = static_cast<int>(j);
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({above[j - 1] + (a[i - 1] != b[j - 1]), above[j] + 1, row[j - 1] + 1});
        }
        std::swap(row, above);
    }
    return above.back();
}

void compare_distance(std::size_t length) {
    std::mt19937 random(2);
    std::string a(length, ' ');
    std::string b(length, ' ');
    for (std::size_t i = 0; i < length; ++i) {
        a[i] = static_cast<char>('a' + random() % 26);
        b[i] = static_cast<char>('a' + random() % 26);
    }
    ZORV_COMPARE("levenshtein, " + std::to_string(length) + " bytes (two rows of std::vector<int>)", 1.0,
                 ([a, b] { benchmark::DoNotOptimize(zorv::levenshtein(a, b)); }),
                 ([a, b] { benchmark::DoNotOptimize(by_two_rows(a, b)); }));
}

}  // namespace

void register_comparisons() {
    compare_distance(100);
    compare_distance(2000);
    const auto ours = [] {
        for (int n = -12; n <= 12; ++n) {
            benchmark::DoNotOptimize(zorv::discrete_gaussian_sample(n, 16));
        }
    };
    const auto peer = [] {
        for (int n = -12; n <= 12; ++n) {
            benchmark::DoNotOptimize(std::cyl_bessel_i(std::abs(n), 16.0) * std::exp(-16.0));
        }
    };
    ZORV_COMPARE("discrete_gaussian_sample, kernel of 25, t = 16 (std::cyl_bessel_i)", 0.7, ours, peer);
}
