#pragma once

/// @file
/// What several functions on `IplImage` share: ownership, the region of interest, rows as bytes.

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
    const std::int64_t bits_per_pixel = std::int64_t{channels} * (depth & ~static_cast<int>(IPL_DEPTH_SIGN));
    const std::int64_t step = width <= most ? (width * bits_per_pixel / 8 + 1 + 3) : most + 1;
    if (step > most || height > most || step * height > most) {
        CV_Error(cv::Error::StsNoMem, "the image is too large");
    }
    ipl_image_ptr image(
        cvCreateImageHeader(cvSize(static_cast<int>(width), static_cast<int>(height)), depth, channels));
    cvCreateData(image.get());
    return image;
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
