#pragma once

/// @file
/// Checked access to single pixels of `IplImage` and `cv::Mat`, sub-pixel sampling on top of it, and the
/// extraction of one field of an interlaced frame.
///
/// A position is x (column) first, y (row) second, then the channel, all counted from 0; row 0 is the first row
/// of the image's data. `roi` and `origin` of an `IplImage` are ignored, save by `get_rows`. Every read and write
/// tests what it is given and reports a failure with its numbers; on success nothing is allocated. No function
/// keeps any state, so that several threads may read one image.

#include <cstddef>
#include <cstring>

#include <opencv2/core.hpp>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/export.h"
#include "zorv_tools/core/opencv_c.h"

namespace zorv {

namespace internal {

constexpr unsigned depth_bit(int depth_code) {
    return 1u << depth_code;
}

/// The `cv::Mat` depth codes, one bit for each, whose elements `get_pix<T>` takes. The size of an element alone
/// decides, not its sign or kind. No depth stands for a type that `get_pix` does not know.
template <class T>
inline constexpr unsigned accepted_depths = 0;
template <>
inline constexpr unsigned accepted_depths<char> = depth_bit(CV_8U) | depth_bit(CV_8S);
template <>
inline constexpr unsigned accepted_depths<unsigned char> = accepted_depths<char>;
template <>
inline constexpr unsigned accepted_depths<short> = depth_bit(CV_16U) | depth_bit(CV_16S);
template <>
inline constexpr unsigned accepted_depths<unsigned short> = accepted_depths<short>;
template <>
inline constexpr unsigned accepted_depths<int> = depth_bit(CV_32S) | depth_bit(CV_32F);
template <>
inline constexpr unsigned accepted_depths<float> = accepted_depths<int>;
template <>
inline constexpr unsigned accepted_depths<double> = depth_bit(CV_64F);

/// `depth` of an `IplImage` without the bit that marks signed elements.
inline int depth_without_sign(const IplImage& image) {
    return image.depth & 0x7fffffff;
}

// The tests below only say yes or no, so that the compiler can place them in a caller's loop. What was wrong is
// found out again, in the order that counts for the report, by refuse_element.

template <class T>
inline bool has_element(const cv::Mat& image, int x, int y, int channel) {
    const int channels = image.channels();
    // What does not depend on the position is one value, which a compiler can move out of a caller's loop.
    const bool type_fits = (channel < channels) & (channel >= 0) & (channels <= 4) &
                           (((accepted_depths<T> >> image.depth()) & 1u) != 0);
    return type_fits && x < image.cols && y < image.rows && x >= 0 && y >= 0;
}

/// Negative positions and channels pass: they reach what lies before the row, and that is meant.
template <class T>
inline bool has_element(const IplImage& image, int x, int y, int channel) {
    return depth_without_sign(image) == static_cast<int>(8 * sizeof(T)) && x < image.width &&
           y < image.height && channel < image.nChannels;
}

/// Where the elements of a `cv::Mat` lie. To be taken before a position is tested: a compiler then knows that
/// the fields are read in any case, and moves the reads out of a caller's loop.
struct element_grid {
    explicit element_grid(const cv::Mat& image)
        : data(image.data),
          row_stride(image.step.p[0]),
          channels(static_cast<std::size_t>(image.channels())) {}

    unsigned char* address(int x, int y, int channel, std::size_t size) const {
        const std::size_t column = static_cast<std::size_t>(x);
        // With the usual single channel told apart, a loop along a row has a constant stride.
        const std::size_t index =
            channels == 1 ? column : column * channels + static_cast<std::size_t>(channel);
        return data + row_stride * static_cast<std::size_t>(y) + index * size;
    }

    unsigned char* data;
    std::size_t row_stride;
    std::size_t channels;
};

inline const char* element_address(const IplImage& image, int x, int y, int channel, std::size_t size) {
    const std::ptrdiff_t index = static_cast<std::ptrdiff_t>(image.nChannels) * x + channel;
    return image.imageData + static_cast<std::ptrdiff_t>(image.widthStep) * y +
           index * static_cast<std::ptrdiff_t>(size);
}

/// Reads a `T` from memory that may hold elements of another kind, at any alignment.
template <class T>
inline T load(const void* address) {
    T value;
    std::memcpy(&value, address, sizeof(T));
    return value;
}

/// Reports for `here` why `has_element` said no. `size` is that of an element, in bytes.
[[noreturn]] ZORV_TOOLS_EXPORT void refuse_element(const code_location& here, const cv::Mat& image, int x,
                                                   int y, int channel, std::size_t size);
[[noreturn]] ZORV_TOOLS_EXPORT void refuse_element(const code_location& here, const IplImage& image, int x,
                                                   int y, int channel, std::size_t size);

}  // namespace internal

/// One element of an image, its bits taken as a `T`: char, unsigned char, short, unsigned short, int, float or
/// double. Only the size of the element is tested, so that `get_pix<int>` on a float image gives the float's
/// bits. Throws `exception_l` when the size differs, or when x, y or the channel is too large. Negative
/// positions and channels are not tested here, unlike in the `cv::Mat` forms: they reach what lies before the row,
/// which is meant, and the host answers for them.
template <class T>
const T get_pix(const IplImage& image, const int x, const int y, const int channel) {
    static_assert(internal::accepted_depths<T> != 0, "get_pix cannot read elements of this type");
    if (!internal::has_element<T>(image, x, y, channel)) {
        internal::refuse_element(ZORV_HERE, image, x, y, channel, sizeof(T));
    }
    return internal::load<T>(internal::element_address(image, x, y, channel, sizeof(T)));
}

/// As above, with negative positions and channels refused too. Throws `exception_l` also for an image of more
/// than four channels.
template <class T>
const T get_pix(const cv::Mat& image, const int x, const int y, const int channel) {
    static_assert(internal::accepted_depths<T> != 0, "get_pix cannot read elements of this type");
    const internal::element_grid grid(image);
    if (!internal::has_element<T>(image, x, y, channel)) {
        internal::refuse_element(ZORV_HERE, image, x, y, channel, sizeof(T));
    }
    return internal::load<T>(grid.address(x, y, channel, sizeof(T)));
}

/// The element itself, for writing; valid as long as the image's data. Tests and reports are those of the form
/// that returns a value.
template <class T>
T& get_pix(cv::Mat& image, const int x, const int y, const int channel) {
    static_assert(internal::accepted_depths<T> != 0, "get_pix cannot read elements of this type");
    const internal::element_grid grid(image);
    if (!internal::has_element<T>(image, x, y, channel)) {
        internal::refuse_element(ZORV_HERE, image, x, y, channel, sizeof(T));
    }
    return *reinterpret_cast<T*>(grid.address(x, y, channel, sizeof(T)));
}

/// @{
/// One element by the image's own type, widened to double. Throws as `get_pix<T>` does on that kind of image. A depth
/// that has no such type is written to the standard error stream and thrown as `std::logic_error`, not as
/// `exception_l`.
ZORV_TOOLS_EXPORT double get_pix(const IplImage& image, const int x, const int y, const int channel);
ZORV_TOOLS_EXPORT double get_pix(const cv::Mat& image, const int x, const int y, const int channel);
/// @}

/// Writes all channels of a pixel. Values are truncated toward zero and then wrap to the element's size; nothing
/// saturates or is rounded: 300.7 becomes 44 in an 8-bit image, and -1 becomes 255. Throws `exception_l`, with
/// the image unchanged, for a position outside the image, more than four channels or an unknown depth.
ZORV_TOOLS_EXPORT void set_pix(cv::Mat& image, const int x, const int y, const cv::Scalar_<double>& value);

/// Bicubic sample at (x, y), whole numbers being the centres of pixels: the cubic convolution of Catmull and Rom
/// (a = -1/2; R. Keys, Cubic convolution interpolation for digital image processing, 1981), first along four rows
/// and then down their results. Neighbours beyond the border are those on it. The result is not limited to the range
/// of the image's type: it may overshoot at edges. (x, y) rounded down must lie inside the image, else `exception_l`
/// is thrown; otherwise throws as the `get_pix` that returns double.
ZORV_TOOLS_EXPORT double interp_pix(const cv::Mat& image, const double x, const double y, const int channel);

/// Bilinear sample at (x, y), with the border and the reports of `interp_pix`, whose name these bear. The position is
/// truncated toward zero, not rounded down, on purpose: one between -1 and 0 is accepted and extrapolates.
ZORV_TOOLS_EXPORT double interp_pix_linear(const cv::Mat& image, const double x, const double y,
                                           const int channel);

/// Takes the odd (1, 3, 5, ...) or the even (0, 2, 4, ...) rows of an interlaced frame. `dest` is allocated by
/// the host, `xScale` times narrower and `yScale` times lower than `src`, with elements of the same size.
/// `xScale` must be 1. With a `yScale` of 2 the field is packed; with 1 each of its rows is written to both rows
/// of the pair. Throws `exception_l`, with `dest` unchanged, when sizes do not fit or a scale is not supported. A
/// frame without a row of the field gives nothing.
///
/// Each row is copied as one block of the source's row stride, `src.step[0]` bytes, whatever the stride of
/// `dest`. The block ends early where a buffer that OpenCV allocated for a `cv::Mat` ends; memory of the host's
/// is trusted to be large enough. With a `yScale` of 1, the even field and an odd number of rows, a row beyond
/// the last one of `dest` is written: give frames with an even number of rows.
ZORV_TOOLS_EXPORT void get_rows(const cv::Mat& src, cv::Mat& dest, const int xScale, const int yScale,
                                const bool odd_field);
/// The same for an `IplImage`; of one with a region of interest, for that region.
ZORV_TOOLS_EXPORT void get_rows(const IplImage* src, IplImage* dest, const int xScale, const int yScale,
                                const bool odd_field);

}  // namespace zorv
