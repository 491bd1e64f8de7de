#pragma once

/// @file
/// What several functions on `IplImage` share: ownership, the region of interest, rows as bytes.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

#include "zorv_tools/core/opencv_c.h"

namespace zorv::internal {

struct image_release {
    void operator()(IplImage* image) const { cvReleaseImage(&image); }
};

/// An image of our own, released when an exception passes.
using ipl_image_ptr = std::unique_ptr<IplImage, image_release>;

/// A copy with the region of interest that the original has.
inline ipl_image_ptr clone_image(const IplImage* image) {
    return ipl_image_ptr(cvCloneImage(image));
}

/// A new image. A size that an image cannot have is refused here, with an exception of OpenCV's kind: OpenCV's
/// own tests come after it has taken memory for the header, which it then loses.
inline ipl_image_ptr create_image(std::int64_t width, std::int64_t height, int depth, int channels) {
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    // OpenCV counts the bits of a row in 32 bits. Beyond them it would make an image with rows too short for it.
    constexpr std::int64_t most_row_bits = std::numeric_limits<std::uint32_t>::max() - 7;
    const std::int64_t bits_per_pixel = std::int64_t{channels} * (depth & ~static_cast<int>(IPL_DEPTH_SIGN));
    const std::int64_t row_bits = width <= most ? width * bits_per_pixel : most_row_bits + 1;
    const std::int64_t step = ((row_bits + 7) / 8 + 3) & ~std::int64_t{3};
    if (row_bits > most_row_bits || height > most || step * height > most) {
        CV_Error(cv::Error::StsNoMem, "the image is too large");
    }
    ipl_image_ptr image(
        cvCreateImageHeader(cvSize(static_cast<int>(width), static_cast<int>(height)), depth, channels));
    cvCreateData(image.get());
    return image;
}

inline int clamp_to_int(std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

/// The region of interest. An image without one gets one of the whole image, which stays set.
inline CvRect ensure_region(IplImage* image) {
    if (!image->roi) {
        cvSetImageROI(image, cvRect(0, 0, image->width, image->height));
    }
    return cvGetImageROI(image);
}

inline CvRect whole_image(const IplImage* image) {
    return cvRect(0, 0, image->width, image->height);
}

inline unsigned char* row_bytes(const IplImage* image, int y) {
    return reinterpret_cast<unsigned char*>(image->imageData) +
           static_cast<std::ptrdiff_t>(image->widthStep) * y;
}

/// Calls `visit(row, y)` for each row of `region`; `row` is the start of the image's row, in front of column 0.
template <class Visit>
void for_each_row(const IplImage* image, const CvRect& region, Visit visit) {
    for (int y = region.y; y < region.y + region.height; ++y) {
        visit(row_bytes(image, y), y);
    }
}

}  // namespace zorv::internal
