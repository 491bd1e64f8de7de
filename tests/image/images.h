#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "zorv_tools/image/internal/ipl_image.h"

using byte_rows = std::vector<std::vector<int>>;

/// Every depth of an `IplImage`, at the place of its code in a `cv::Mat`.
constexpr unsigned int ipl_depths[] = {IPL_DEPTH_8U,  IPL_DEPTH_8S,  IPL_DEPTH_16U, IPL_DEPTH_16S,
                                       IPL_DEPTH_32S, IPL_DEPTH_32F, IPL_DEPTH_64F};

/// An `IplImage` of a test, which functions may replace.
class test_image {
public:
    /// Unsigned bytes in rows that are padded with 77.
    explicit test_image(const byte_rows& rows, int channels = 1)
        : test_image(static_cast<int>(rows[0].size()) / channels, static_cast<int>(rows.size()), IPL_DEPTH_8U,
                     channels) {
        for (int y = 0; y < image_->height; ++y) {
            unsigned char* row = zorv::internal::row_bytes(image_, y);
            std::fill(row, row + image_->widthStep, static_cast<unsigned char>(77));
            std::copy(rows[static_cast<std::size_t>(y)].begin(), rows[static_cast<std::size_t>(y)].end(),
                      row);
        }
    }
    /// One channel of bytes, each from its position.
    test_image(int width, int height, const std::function<int(int, int)>& value)
        : test_image(width, height, IPL_DEPTH_8U, 1) {
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                zorv::internal::row_bytes(image_, y)[x] = static_cast<unsigned char>(value(x, y));
            }
        }
    }
    test_image(int width, int height, unsigned int depth, int channels, double value = 0.0)
        : image_(cvCreateImage(cvSize(width, height), static_cast<int>(depth), channels)) {
        cvSet(image_, cvScalarAll(value));
    }
    ~test_image() { cvReleaseImage(&image_); }
    test_image(const test_image&) = delete;
    test_image& operator=(const test_image&) = delete;

    operator IplImage*&() { return image_; }
    IplImage* operator->() { return image_; }

    /// The elements, whatever the region of interest.
    byte_rows bytes() const {
        byte_rows rows;
        for (int y = 0; y < image_->height; ++y) {
            const unsigned char* row = zorv::internal::row_bytes(image_, y);
            rows.emplace_back(row, row + image_->width * image_->nChannels);
        }
        return rows;
    }
    cv::Size size() const { return {image_->width, image_->height}; }
    /// Empty where none is set.
    cv::Rect region() const { return image_->roi ? cv::Rect(cvGetImageROI(image_)) : cv::Rect(); }

private:
    IplImage* image_;
};
