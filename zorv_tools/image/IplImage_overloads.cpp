#include "zorv_tools/image/IplImage_overloads.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "zorv_tools/core/double_pair.h"
#include "zorv_tools/core/truncate.h"

namespace zorv {

namespace {

template <class... Pieces>
std::string sentence(const Pieces&... pieces) {
    std::ostringstream text;
    (text << ... << pieces);
    return text.str();
}

[[noreturn]] void refuse_position(const code_location& here, int x, int y, int width, int height) {
    throw_exception_l(here, sentence("get_pix(): Pixel lookup at (", x, ",", y,
                                     ") but image dimensions are (", width, ",", height, ")"));
}

[[noreturn]] void refuse_channel(const code_location& here, int channel, int channels) {
    throw_exception_l(here, sentence("get_pix(): Pixel lookup from channel ", channel, " but image only has ",
                                     channels, " channels."));
}

/// Kept for the hosts that catch exactly this: a line on the standard error stream, and a plain logic_error.
[[noreturn]] void refuse_depth(const std::string& message) {
    std::cerr << message << std::endl;
    throw std::logic_error(message);
}

template <class T>
struct element_type {
    using type = T;
};

/// Calls `task` with the element_type of a `cv::Mat` depth code, or `otherwise` for a code that has none.
template <class Task, class Otherwise>
auto with_element_type(int depth, const Task& task, const Otherwise& otherwise) {
    switch (depth) {
        case CV_8U:
            return task(element_type<unsigned char>());
        case CV_8S:
            return task(element_type<char>());
        case CV_16U:
            return task(element_type<unsigned short>());
        case CV_16S:
            return task(element_type<short>());
        case CV_32S:
            return task(element_type<int>());
        case CV_32F:
            return task(element_type<float>());
        case CV_64F:
            return task(element_type<double>());
        default:
            return otherwise();
    }
}

template <class T>
double widen(T value) {
    return static_cast<double>(value);
}

/// Plain char is unsigned on some systems; the elements read through it are signed on all.
double widen(char value) {
    return static_cast<double>(static_cast<signed char>(value));
}

constexpr int signed_depth(int bits) {
    return static_cast<int>(IPL_DEPTH_SIGN | static_cast<unsigned>(bits));
}

// The three kinds of depth that an IplImage can have. Every depth that is sent to the first two has an arm
// there, so that their last arms report only a depth that is added to the dispatch and forgotten here.

double float_pix(const IplImage& image, int x, int y, int channel) {
    switch (image.depth) {
        case IPL_DEPTH_32F:
            return widen(get_pix<float>(image, x, y, channel));
        case IPL_DEPTH_64F:
            return widen(get_pix<double>(image, x, y, channel));
        default:
            refuse_depth(sentence("get_pix:: Unrecognised float image depth ", image.depth, '\n'));
    }
}

double signed_pix(const IplImage& image, int x, int y, int channel) {
    switch (image.depth) {
        case signed_depth(8):
            return widen(get_pix<char>(image, x, y, channel));
        case signed_depth(16):
            return widen(get_pix<short>(image, x, y, channel));
        case signed_depth(32):
            return widen(get_pix<int>(image, x, y, channel));
        default:
            refuse_depth(sentence("get_pix:: Unrecognised signed depth ", image.depth, " (",
                                  internal::depth_without_sign(image), " without sign bit)\n"));
    }
}

double unsigned_pix(const IplImage& image, int x, int y, int channel) {
    switch (image.depth) {
        case IPL_DEPTH_8U:
            return widen(get_pix<unsigned char>(image, x, y, channel));
        case IPL_DEPTH_16U:
            return widen(get_pix<unsigned short>(image, x, y, channel));
        default:
            refuse_depth(sentence("get_pix:: Unrecognised unsigned depth ", image.depth, '\n'));
    }
}

/// `value` as an element, truncated and wrapped. Which integer it passes through decides what becomes of values
/// beyond 32 bits: the unsigned types keep the low bits of a 64-bit integer.
template <class T>
T to_element(double value) {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else if constexpr (std::is_same_v<T, unsigned char> || std::is_same_v<T, unsigned short>) {
        return static_cast<T>(truncate_to<std::int64_t>(value));
    } else {
        return static_cast<T>(truncate_to<std::int32_t>(value));
    }
}

/// Largest integer not above `value`, or the smallest int where there is none. Positions inside an image are
/// not negative and need no std::floor, which is a call on processors that lack the instruction.
int floor_to_int(double value) {
    return truncate_to<int>(value < 0 ? std::floor(value) : value);
}

bool is_outside(const cv::Mat& image, int x, int y) {
    return x < 0 || x >= image.cols || y < 0 || y >= image.rows;
}

[[noreturn]] void refuse_sample(const code_location& here, const cv::Mat& image, double x, double y, int ix,
                                int iy) {
    throw_exception_l(
        here, sentence("interp_pix() : the requested position ", x, ",", y, " rounded down to position ", ix,
                       ",", iy, " outside image ", image.cols, ",", image.rows));
}

template <class Value>
Value catmull_rom(Value p0, Value p1, Value p2, Value p3, double t) {
    return p1 + 0.5 * t *
                    ((p2 - p0) + t * (2.0 * p0 - 5.0 * p1 + 4.0 * p2 - p3 + t * (3.0 * (p1 - p2) + p3 - p0)));
}

/// Copies the sixteen pixels around a position near the border, those beyond it replaced by those on it.
template <class T>
void copy_neighbours(const cv::Mat& image, int ix, int iy, int channel, T (&neighbours)[4][4]) {
    const internal::element_grid grid(image);
    for (int i = 0; i < 4; ++i) {
        const int y = std::min(std::max(iy - 1 + i, 0), image.rows - 1);
        for (int j = 0; j < 4; ++j) {
            const int x = std::min(std::max(ix - 1 + j, 0), image.cols - 1);
            neighbours[i][j] = internal::load<T>(grid.address(x, y, channel, sizeof(T)));
        }
    }
}

template <class T>
double sample_cubic(const cv::Mat& image, int ix, int iy, double tx, double ty, int channel) {
    const internal::element_grid grid(image);
    T neighbours[4][4];
    const unsigned char* first = nullptr;
    std::size_t row_stride = grid.row_stride;
    std::size_t column_stride = grid.channels * sizeof(T);
    if (ix >= 1 && ix < image.cols - 2 && iy >= 1 && iy < image.rows - 2) {
        first = grid.address(ix - 1, iy - 1, channel, sizeof(T));
    } else {
        copy_neighbours(image, ix, iy, channel, neighbours);
        first = reinterpret_cast<const unsigned char*>(neighbours);
        row_stride = sizeof(neighbours[0]);
        column_stride = sizeof(T);
    }
    const auto two_rows = [=](const unsigned char* upper) {
        const unsigned char* const lower = upper + row_stride;
        const auto read = [=](std::size_t column) {
            return internal::double_pair{widen(internal::load<T>(upper + column * column_stride)),
                                         widen(internal::load<T>(lower + column * column_stride))};
        };
        return catmull_rom(read(0), read(1), read(2), read(3), tx);
    };
    const internal::double_pair upper = two_rows(first);
    const internal::double_pair lower = two_rows(first + 2 * row_stride);
    return catmull_rom(upper[0], upper[1], lower[0], lower[1], ty);
}

template <class T>
double sample_linear(const cv::Mat& image, int ix, int iy, double fx, double fy, int channel) {
    const int right = std::min(ix + 1, image.cols - 1);
    const int below = std::min(iy + 1, image.rows - 1);
    const internal::element_grid grid(image);
    const auto read = [&](int column, int row) {
        return widen(internal::load<T>(grid.address(column, row, channel, sizeof(T))));
    };
    const double a = read(ix, iy);
    const double b = read(right, iy);
    const double c = read(ix, below);
    const double d = read(right, below);
    return (fx * b + (1 - fx) * a) * (1 - fy) + (fx * d + (1 - fx) * c) * fy;
}

/// Calls `sample` with the image's element_type. The channel and the image are tested here once; if the image
/// cannot be read, a plain read raises the report that the reads of the sample would each have raised.
template <class Sample>
double sample_image(const cv::Mat& image, int ix, int iy, int channel, const Sample& sample) {
    const auto plain_read = [&image, ix, iy, channel] { return get_pix(image, ix, iy, channel); };
    const int channels = image.channels();
    if (channel < 0 || channel >= channels || channels > 4) {
        return plain_read();
    }
    return with_element_type(image.depth(), sample, plain_read);
}

/// Number of bytes from `address` to the end of the buffer that OpenCV allocated for `image`, or `wanted` if
/// that is less or the memory is not OpenCV's.
std::size_t bytes_available(const cv::Mat& image, const unsigned char* address, std::size_t wanted) {
    if (image.u == nullptr) {
        return wanted;
    }
    const unsigned char* end = image.u->data + image.u->size;
    return address < end ? std::min(wanted, static_cast<std::size_t>(end - address)) : 0;
}

/// The block may overlap its target when both images share a buffer.
void copy_row(const cv::Mat& src, int src_row, cv::Mat& dest, int dest_row) {
    const unsigned char* from = src.data + src.step.p[0] * static_cast<std::size_t>(src_row);
    unsigned char* to = dest.data + dest.step.p[0] * static_cast<std::size_t>(dest_row);
    std::memmove(to, from, bytes_available(dest, to, bytes_available(src, from, src.step.p[0])));
}

std::size_t element_size(const cv::Mat& image) {
    return image.dims > 0 ? image.step.p[image.dims - 1] : 0;
}

}  // namespace

void internal::refuse_element(const code_location& here, const cv::Mat& image, int x, int y, int channel,
                              std::size_t size) {
    constexpr std::size_t sizes[] = {1, 1, 2, 2, 4, 4, 8};
    const int channels = image.channels();
    const int depth = image.depth();
    if (x >= image.cols || y >= image.rows || x < 0 || y < 0) {
        refuse_position(here, x, y, image.cols, image.rows);
    }
    if (channel >= channels || channel < 0) {
        refuse_channel(here, channel, channels);
    }
    if (depth > CV_64F) {
        throw_exception_l(here, sentence("Image had unrecognised depth flag ", depth));
    }
    if (sizes[depth] != size) {
        throw_exception_l(here, sentence("Template parameter had size of ", size,
                                         " bytes, but image depth specified ", sizes[depth]));
    }
    throw_exception_l(
        here, sentence("get_pix<template> : number of image channels was not 1-4, value was : ", channels));
}

void internal::refuse_element(const code_location& here, const IplImage& image, int x, int y, int channel,
                              std::size_t size) {
    const int depth = depth_without_sign(image);
    if (depth != static_cast<int>(8 * size)) {
        throw_exception_l(here,
                          sentence("get_pix(): Pixel lookup for image was passed type with size ", 8 * size,
                                   " but image has depth ", image.depth, " (", depth, " without sign bit)"));
    }
    if (x >= image.width || y >= image.height) {
        refuse_position(here, x, y, image.width, image.height);
    }
    refuse_channel(here, channel, image.nChannels);
}

double get_pix(const IplImage& image, const int x, const int y, const int channel) {
    switch (image.depth) {
        case IPL_DEPTH_32F:
        case IPL_DEPTH_64F:
            return float_pix(image, x, y, channel);
        case signed_depth(8):
        case signed_depth(16):
        case signed_depth(32):
            return signed_pix(image, x, y, channel);
        default:
            return unsigned_pix(image, x, y, channel);
    }
}

double get_pix(const cv::Mat& image, const int x, const int y, const int channel) {
    return with_element_type(
        image.depth(),
        [&](auto element) { return widen(get_pix<typename decltype(element)::type>(image, x, y, channel)); },
        [&]() -> double {
            refuse_depth(sentence("get_pix:: Unrecognised cv::Mat depth ", image.depth(), '\n'));
        });
}

void set_pix(cv::Mat& image, const int x, const int y, const cv::Scalar_<double>& value) {
    if (is_outside(image, x, y)) {
        ZORV_THROW("requested position " << x << "," << y << " was outside image " << image.cols << ","
                                         << image.rows);
    }
    const code_location here = ZORV_HERE;
    with_element_type(
        image.depth(),
        [&](auto element) {
            using T = typename decltype(element)::type;
            for (int channel = 0; channel < image.channels(); ++channel) {
                get_pix<T>(image, x, y, channel) = to_element<T>(value[channel]);
            }
        },
        [&] { throw_exception_l(here, sentence("Unrecognised cv::Mat depth ", image.depth())); });
}

double interp_pix(const cv::Mat& image, const double x, const double y, const int channel) {
    const int ix = floor_to_int(x);
    const int iy = floor_to_int(y);
    if (is_outside(image, ix, iy)) {
        refuse_sample(ZORV_HERE, image, x, y, ix, iy);
    }
    const double tx = x - ix;
    const double ty = y - iy;
    return sample_image(image, ix, iy, channel, [&image, ix, iy, tx, ty, channel](auto element) {
        return sample_cubic<typename decltype(element)::type>(image, ix, iy, tx, ty, channel);
    });
}

double interp_pix_linear(const cv::Mat& image, const double x, const double y, const int channel) {
    // Not rounded down as in interp_pix: a position just left of or above the image extrapolates.
    const int ix = truncate_to<int>(x);
    const int iy = truncate_to<int>(y);
    if (is_outside(image, ix, iy)) {
        refuse_sample(ZORV_HERE, image, x, y, ix, iy);
    }
    const double tx = x - ix;
    const double ty = y - iy;
    return sample_image(image, ix, iy, channel, [&image, ix, iy, tx, ty, channel](auto element) {
        return sample_linear<typename decltype(element)::type>(image, ix, iy, tx, ty, channel);
    });
}

void get_rows(const cv::Mat& src, cv::Mat& dest, const int xScale, const int yScale, const bool odd_field) {
    if (src.rows != static_cast<std::int64_t>(yScale) * dest.rows) {
        ZORV_THROW("zorv_utils::get_rows() : yScale : " << yScale << " and sizes don't align." << src.rows
                                                        << " " << dest.rows);
    }
    if (src.cols != static_cast<std::int64_t>(dest.cols) * xScale) {
        ZORV_THROW("zorv_utils::get_rows() : xScale : " << xScale << " and sizes don't align." << src.cols
                                                        << " " << dest.cols);
    }
    if (element_size(src) != element_size(dest)) {
        ZORV_THROW("zorv_utils::get_rows() : Src and Dest are different element sizes.");
    }
    const int first = odd_field ? 1 : 0;
    // A frame without a row of the field is no failure, whatever its yScale.
    if (xScale != 1 || (yScale != 1 && yScale != 2 && first < src.rows)) {
        ZORV_THROW("zorv_utils::get_rows() : Haven't implemented this yet!");
    }
    for (int row = first; row < src.rows; row += 2) {
        if (yScale == 2) {
            copy_row(src, row, dest, row / 2);
        } else {
            copy_row(src, row, dest, row);
            copy_row(src, row, dest, odd_field ? row - 1 : row + 1);
        }
    }
}

void get_rows(const IplImage* src, IplImage* dest, const int xScale, const int yScale, const bool odd_field) {
    const cv::Mat src_header = cv::cvarrToMat(src, false, true, 0);
    cv::Mat dest_header = cv::cvarrToMat(dest, false, true, 0);
    get_rows(src_header, dest_header, xScale, yScale, odd_field);
}

}  // namespace zorv
