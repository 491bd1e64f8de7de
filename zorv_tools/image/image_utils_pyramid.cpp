#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <vector>

#include "zorv_tools/image/image_utils.h"
#include "zorv_tools/image/internal/ipl_image.h"

namespace zorv {

namespace {

using image_list = std::vector<IplImage*>;

// The place is made first, so that nothing is lost where there is no memory for it.

void append_set(std::vector<image_list*>& pyramid) {
    auto set = std::make_unique<image_list>();
    pyramid.push_back(nullptr);
    pyramid.back() = set.release();
}

void append_image(image_list& set, internal::ipl_image_ptr image) {
    set.push_back(nullptr);
    set.back() = image.release();
}

double power(double base, unsigned int exponent) {
    double result = 1.0;
    for (; exponent > 0; exponent /= 2) {
        if (exponent % 2 == 1) {
            result *= base;
        }
        base *= base;
    }
    return result;
}

}  // namespace

void create_image_pyramid(std::vector<IplImage*>* images, std::vector<std::vector<IplImage*>*>* pyramid,
                          const unsigned int& levels, const double& scale) {
    // A copy of the list, which may itself be the first set of the pyramid and then grows.
    const image_list originals(*images);
    append_set(*pyramid);
    for (const IplImage* image : originals) {
        append_image(*(*pyramid)[0], internal::clone_image(image));
    }
    for (unsigned int level = 0; level < levels; ++level) {
        const double sigma = std::sqrt(power(scale, level));
        append_set(*pyramid);
        for (const IplImage* image : originals) {
            internal::ipl_image_ptr smoothed =
                internal::create_image(image->width, image->height, image->depth, image->nChannels);
            cvSmooth(image, smoothed.get(), CV_GAUSSIAN, 0, 0, sigma, 0.0);
            append_image(*(*pyramid)[std::size_t{level} + 1], std::move(smoothed));
        }
    }
}

matrix<double>* create_integral_image(IplImage* image) {
    if (image->nChannels != 1) {
        std::cerr << "Error image input to integral image creator has " << image->nChannels
                  << " and should only have 1." << std::endl;
        return nullptr;
    }
    auto integral = std::make_unique<matrix<double>>();
    integral->set_size(image->width, image->height);

    // The image runs along rows and the result along columns. A tile is turned around in a small buffer, so that
    // both are walked in their own direction. Sums of bytes are exact in a double, in whatever order.
    constexpr std::size_t tile = 32;
    std::array<std::int32_t, tile * tile> turned;
    const auto width = static_cast<std::size_t>(image->width);
    const auto height = static_cast<std::size_t>(image->height);
    const std::vector<double> nothing(height, 0.0);
    for (std::size_t left = 0; left < width; left += tile) {
        const std::size_t cols = std::min(tile, width - left);
        std::array<double, tile> above{};
        for (std::size_t top = 0; top < height; top += tile) {
            const std::size_t rows = std::min(tile, height - top);
            std::array<std::int32_t, tile> running{};
            for (std::size_t y = 0; y < rows; ++y) {
                const unsigned char* row = internal::row_bytes(image, static_cast<int>(top + y)) + left;
                for (std::size_t x = 0; x < cols; ++x) {
                    running[x] += row[x];
                    turned[x * tile + y] = running[x];
                }
            }
            for (std::size_t x = 0; x < cols; ++x) {
                const auto column = static_cast<unsigned int>(left + x);
                double* sums = (*integral)[column] + top;
                const double* before = column == 0 ? &nothing[top] : (*integral)[column - 1] + top;
                for (std::size_t y = 0; y < rows; ++y) {
                    sums[y] = before[y] + above[x] + turned[x * tile + y];
                }
                above[x] += running[x];
            }
        }
    }
    return integral.release();
}

int image_median(IplImage* image, bool ignore_extremes) {
    const CvRect region = internal::ensure_region(image);
    // Values are bytes, so counting them sorts them. Neighbours are counted apart: they are often equal, and one
    // count would wait for the other.
    using histogram = std::array<std::size_t, 256>;
    std::array<histogram, 4> parts{};
    const auto width = static_cast<std::size_t>(region.width);
    const auto channels = static_cast<std::size_t>(image->nChannels);
    internal::for_each_row(image, region, [&](const unsigned char* row, int) {
        const unsigned char* pixel = row + static_cast<std::size_t>(region.x) * channels;
        for (std::size_t x = 0; x < width; ++x) {
            ++parts[x % 4][pixel[x * channels]];
        }
    });
    histogram counts{};
    std::size_t total = 0;
    for (std::size_t value = 0; value < counts.size(); ++value) {
        if (ignore_extremes && (value == 0 || value > 254)) {
            continue;
        }
        counts[value] = parts[0][value] + parts[1][value] + parts[2][value] + parts[3][value];
        total += counts[value];
    }
    if (total < 3) {
        return 0;
    }
    std::size_t below = 0;
    int median = 0;
    while ((below += counts[static_cast<std::size_t>(median)]) <= total / 2) {
        ++median;
    }
    return median;
}

}  // namespace zorv
