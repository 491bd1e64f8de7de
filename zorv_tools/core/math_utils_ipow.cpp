#include "zorv_tools/core/ipow.h"

namespace zorv {

int ipow(const int& base, const int& exponent) {
    // Unsigned, since a signed product that wraps is undefined.
    unsigned int product = 1;
    for (int i = 0; i < exponent; ++i) {
        product *= static_cast<unsigned int>(base);
    }
    int result = static_cast<int>(product);
    for (int i = exponent; i < 0; ++i) {
        result /= base;
    }
    return result;
}

}  // namespace zorv
