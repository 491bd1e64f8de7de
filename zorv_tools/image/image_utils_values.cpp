#include <algorithm>
#include <cstddef>
#include <iostream>
#include <type_traits>
#include <vector>

#include "zorv_tools/image/IplImage_overloads.h"
#include "zorv_tools/image/image_utils.h"
#include "zorv_tools/image/internal/ipl_image.h"

namespace zorv {

namespace {

/// Depth codes above this one stand for no measurement.
constexpr int deepest_code = 240;
constexpr unsigned char no_measurement = 255;

inline unsigned char fill_hole(unsigned char code, unsigned char other) {
    const unsigned char filling = other > deepest_code ? no_measurement : other;
    return code > deepest_code ? filling : code;
}

/// Lets `low` and `high` take in `count` values. A value that is not a number compares with none and so changes
/// neither.
template <class T>
void widen_range(const T* values, std::size_t count, T& low, T& high) {
    std::size_t i = 0;
    // Comparisons of floating-point numbers may not be reordered, so the compiler needs to see several that
    // do not depend on each other; of integers it makes as many as it likes.
    if constexpr (std::is_floating_point_v<T>) {
        constexpr std::size_t lanes = 32 / sizeof(T);
        T lows[lanes], highs[lanes];
        std::fill_n(lows, lanes, low);
        std::fill_n(highs, lanes, high);
        for (; i + lanes <= count; i += lanes) {
            for (std::size_t k = 0; k < lanes; ++k) {
                const T value = values[i + k];
                lows[k] = value < lows[k] ? value : lows[k];
                highs[k] = value > highs[k] ? value : highs[k];
            }
        }
        for (std::size_t k = 0; k < lanes; ++k) {
            low = lows[k] < low ? lows[k] : low;
            high = highs[k] > high ? highs[k] : high;
        }
    }
    for (; i < count; ++i) {
        low = values[i] < low ? values[i] : low;
        high = values[i] > high ? values[i] : high;
    }
}

template <class T>
void range_as(const cv::Mat& image, double& minimum, double& maximum) {
    T low = *image.ptr<T>(0);
    T high = low;
    const auto row_length = static_cast<std::size_t>(image.cols) * static_cast<std::size_t>(image.channels());
    for (int y = 0; y < image.rows; ++y) {
        widen_range(image.ptr<T>(y), row_length, low, high);
    }
    minimum = static_cast<double>(low);
    maximum = static_cast<double>(high);
}

/// What the values of one channel span.
struct span {
    double minimum = 0.0;
    double maximum = 0.0;
};

span span_of(const cv::Mat& channel) {
    span values;
    image_range(channel, values.minimum, values.maximum);
    return values;
}

/// The channel divided by its range, as doubles.
void divide_by_range(const cv::Mat& channel, const span& values, cv::Mat& divided) {
    channel.convertTo(divided, CV_64F, 1.0, -values.minimum);
    // Starts from the image again, not from the shifted values: the result does not begin at 0. This is meant,
    // and so is the conversion above that it overwrites.
    channel.convertTo(divided, CV_64F, 1.0 / (values.maximum - values.minimum), 0.0);
}

}  // namespace

void binary_image_convert(IplImage*& image, int threshold) {
    if (image->depth != static_cast<int>(IPL_DEPTH_8U)) {
        std::cerr
            << "Image input to binary_image_convert was not 8 bit colour depth. (won't take long to code if "
               "necesary)"
            << std::endl;
        return;
    }
    // Compared as bytes; no byte reaches a threshold beyond 255.
    const auto limit = static_cast<unsigned char>(std::clamp(threshold, 0, 255));
    const unsigned char reached = threshold > 255 ? 0 : 255;
    const auto row_length =
        static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->nChannels);
    internal::for_each_row(image, internal::whole_image(image), [=](unsigned char* row, int) {
        for (std::size_t i = 0; i < row_length; ++i) {
            row[i] = row[i] >= limit ? reached : 0;
        }
    });
}

void combine_depth_maps(IplImage* depth_map, IplImage* second_map) {
    if (depth_map->width != second_map->width || depth_map->height != second_map->height ||
        depth_map->depth != second_map->depth || depth_map->nChannels != second_map->nChannels) {
        std::cerr << "The 2 depth maps to be combined do not match: widths=" << depth_map->width << ","
                  << second_map->width << " heights=" << depth_map->height << "," << second_map->height
                  << " depths=" << depth_map->depth << "," << second_map->depth
                  << " nChannels=" << depth_map->nChannels << "," << second_map->nChannels << std::endl;
        return;
    }
    const auto width = static_cast<std::size_t>(depth_map->width);
    const auto channels = static_cast<std::size_t>(depth_map->nChannels);
    internal::for_each_row(depth_map, internal::whole_image(depth_map), [=](unsigned char* row, int y) {
        const unsigned char* other = internal::row_bytes(second_map, y);
        if (channels == 1) {
            for (std::size_t x = 0; x < width; ++x) {
                row[x] = fill_hole(row[x], other[x]);
            }
        } else {
            for (std::size_t x = 0; x < width; ++x) {
                row[x * channels] = fill_hole(row[x * channels], other[x * channels]);
            }
        }
    });
}

void image_range(const cv::Mat& image, double& minimum, double& maximum) {
    if (image.rows <= 0 || image.cols <= 0) {
        return;
    }
    // One checked read stands for those of all elements: the checks of type and channels are the same for each.
    minimum = maximum = get_pix(image, 0, 0, 0);
    switch (image.depth()) {
        case CV_8U:
            return range_as<unsigned char>(image, minimum, maximum);
        case CV_8S:
            return range_as<signed char>(image, minimum, maximum);
        case CV_16U:
            return range_as<unsigned short>(image, minimum, maximum);
        case CV_16S:
            return range_as<short>(image, minimum, maximum);
        case CV_32S:
            return range_as<int>(image, minimum, maximum);
        case CV_32F:
            return range_as<float>(image, minimum, maximum);
        default:
            return range_as<double>(image, minimum, maximum);
    }
}

cv::Mat image_normalise(cv::Mat& image) {
    if (image.channels() == 1) {
        cv::Mat normalised;
        divide_by_range(image, span_of(image), normalised);
        return normalised;
    }
    std::vector<cv::Mat> channels;
    cv::split(image, channels);
    if (channels.empty()) {
        cv::Mat none;
        cv::merge(channels, none);  // OpenCV's own word on an image without pixels
    }
    std::vector<span> spans;
    spans.reserve(channels.size());
    for (const cv::Mat& channel : channels) {
        spans.push_back(span_of(channel));
    }
    // Some rows at a time, so that the doubles of one channel never fill the memory of a whole image.
    constexpr int rows_at_a_time = 32;
    cv::Mat normalised(image.rows, image.cols, CV_64FC(image.channels()));
    std::vector<cv::Mat> parts(channels.size());
    for (int top = 0; top < image.rows; top += rows_at_a_time) {
        const cv::Range rows(top, std::min(top + rows_at_a_time, image.rows));
        for (std::size_t c = 0; c < channels.size(); ++c) {
            divide_by_range(channels[c].rowRange(rows), spans[c], parts[c]);
        }
        cv::merge(parts, normalised.rowRange(rows));
    }
    return normalised;
}

}  // namespace zorv
