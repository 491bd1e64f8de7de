#pragma once

/// @file
/// Two doubles that are worked on at once. Each is rounded as a double of its own would be, so that arithmetic
/// on pairs gives the same bits as on single values; it only takes half as many instructions where the
/// processor has them.

#if defined(__SSE2__) || defined(_M_X64)
#define ZORV_HAS_SSE2
#include <emmintrin.h>
#endif

namespace zorv {
namespace internal {

#ifdef ZORV_HAS_SSE2

struct double_pair {
    explicit double_pair(__m128d both) : lanes(both) {}
    double_pair(double first, double second) : lanes(_mm_set_pd(second, first)) {}

    double first() const { return _mm_cvtsd_f64(lanes); }
    double second() const { return _mm_cvtsd_f64(_mm_unpackhi_pd(lanes, lanes)); }

    __m128d lanes;
};

inline double_pair operator+(double_pair a, double_pair b) {
    return double_pair(_mm_add_pd(a.lanes, b.lanes));
}
inline double_pair operator-(double_pair a, double_pair b) {
    return double_pair(_mm_sub_pd(a.lanes, b.lanes));
}
inline double_pair operator*(double a, double_pair b) {
    return double_pair(_mm_mul_pd(_mm_set1_pd(a), b.lanes));
}

#else

struct double_pair {
    double_pair(double first, double second) : lanes{first, second} {}

    double first() const { return lanes[0]; }
    double second() const { return lanes[1]; }

    double lanes[2];
};

inline double_pair operator+(double_pair a, double_pair b) {
    return double_pair(a.lanes[0] + b.lanes[0], a.lanes[1] + b.lanes[1]);
}
inline double_pair operator-(double_pair a, double_pair b) {
    return double_pair(a.lanes[0] - b.lanes[0], a.lanes[1] - b.lanes[1]);
}
inline double_pair operator*(double a, double_pair b) {
    return double_pair(a * b.lanes[0], a * b.lanes[1]);
}

#endif

}  // namespace internal
}  // namespace zorv
