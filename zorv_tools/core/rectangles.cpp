#include "zorv_tools/core/rectangles.h"

#include <algorithm>
#include <cstdint>

namespace zorv {

namespace {

std::int64_t common_length(std::int64_t start_a, std::int64_t length_a, std::int64_t start_b,
                           std::int64_t length_b) {
    const std::int64_t end = std::min(start_a + length_a, start_b + length_b);
    return std::max<std::int64_t>(end - std::max(start_a, start_b), 0);
}

}  // namespace

const cv::Rect centred_rect(const cv::Point& centre, const cv::Size& size) {
    return centred_rect(centre.x, centre.y, size.width, size.height);
}

const cv::Rect centred_rect(int x, int y, int width, int height) {
    return cv::Rect(x - width / 2, y - height / 2, width, height);
}

bool check_rect_overlap(CvRect* first, CvRect* second, double fraction) {
    const std::int64_t width = common_length(first->x, first->width, second->x, second->width);
    const std::int64_t height = common_length(first->y, first->height, second->y, second->height);
    // The area is a 32-bit number that may wrap; the product is unsigned, since a signed one must not.
    const auto area = static_cast<std::int32_t>(static_cast<std::uint32_t>(first->width) *
                                                static_cast<std::uint32_t>(first->height));
    return static_cast<double>(width * height) / static_cast<double>(area) > fraction;
}

}  // namespace zorv
