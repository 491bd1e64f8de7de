#pragma once

#include <cstdint>
#include <limits>

namespace zorv::internal {

/// Width and height in 64 bits: the sum of two sizes, or four times one, need not fit an `int`.
struct extent {
    std::int64_t width = 0;
    std::int64_t height = 0;
};

/// A side as OpenCV takes it. One that does not fit an `int` comes out negative, which OpenCV refuses.
inline int as_size(std::int64_t side) {
    return side > std::numeric_limits<int>::max() ? -1 : static_cast<int>(side);
}

/// The frame of the ratio 4:3 around a picture. It keeps the side that would otherwise have to shrink, and the
/// other one is truncated.
inline extent four_to_three(const extent& picture) {
    if (3 * picture.width > 4 * picture.height) {
        return {picture.width, 3 * picture.width / 4};
    }
    return {4 * picture.height / 3, picture.height};
}

}  // namespace zorv::internal
