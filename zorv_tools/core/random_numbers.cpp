#include "zorv_tools/core/random_numbers.h"

#include <cmath>

#include "zorv_tools/core/internal/runtime_random.h"

namespace zorv {

namespace {

bool seeded = false;

}  // namespace

double rand_frac() {
    if (!seeded) {
        internal::seed_runtime_random();
        seeded = true;
    }
    return (internal::runtime_random() + 1.0) / 32769.0;
}

double rand_frac_gauss() {
    double u;
    double s;
    do {
        // Never 0, since a draw is never 0.5; so s is not 0 either.
        u = 2 * rand_frac() - 1;
        const double v = 2 * rand_frac() - 1;
        s = v * v + u * u;
    } while (s >= 1.0);
    return std::sqrt(std::log(s) * -2.0 / s) * u;
}

double rand_val_gauss(const double& minimum, const double& maximum, double half_range) {
    const double value = (rand_frac_gauss() + half_range) * (maximum - minimum) / (2 * half_range) + minimum;
    if (value < minimum) {
        return minimum;
    }
    return value > maximum ? maximum : value;
}

}  // namespace zorv
