#pragma once

#include <cstring>

namespace zorv::internal {

// Two doubles that a processor adds and multiplies at once, where the compiler has a type for that. The results are
// those of plain doubles, element by element.
#if defined(__GNUC__)
using double_pair = double __attribute__((vector_size(16)));
#else
struct double_pair {
    double values[2];
    double operator[](int i) const { return values[i]; }
    friend double_pair operator+(double_pair a, double_pair b) {
        return {{a.values[0] + b.values[0], a.values[1] + b.values[1]}};
    }
    friend double_pair operator-(double_pair a, double_pair b) {
        return {{a.values[0] - b.values[0], a.values[1] - b.values[1]}};
    }
    friend double_pair operator*(double_pair a, double b) { return {{a.values[0] * b, a.values[1] * b}}; }
    friend double_pair operator*(double a, double_pair b) { return b * a; }
};
#endif

/// The pair that begins at `elements`, which need not be aligned for it.
inline double_pair pair_at(const double* elements) {
    double_pair pair;
    std::memcpy(&pair, elements, sizeof pair);
    return pair;
}

}  // namespace zorv::internal
