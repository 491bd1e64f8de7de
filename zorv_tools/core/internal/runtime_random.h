#pragma once

/// @file
/// The random source of the Windows runtime: whole numbers from 0 to 32767, seeded with a time in seconds.

#include <cstdlib>
#include <ctime>

namespace zorv::internal {

#ifdef _WIN32

inline int runtime_random() {
    return std::rand();
}

inline void seed_runtime_random() {
    std::srand(static_cast<unsigned int>(_time64(nullptr)));
}

#else

inline int runtime_random() {
    // The upper bits: the lower ones of some generators repeat early.
    return std::rand() / (RAND_MAX / 32768 + 1);
}

inline void seed_runtime_random() {
    std::srand(static_cast<unsigned int>(std::time(nullptr)));
}

#endif

}  // namespace zorv::internal
