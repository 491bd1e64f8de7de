#pragma once

#include <functional>
#include <vector>

#include "zorv_tools/image/internal/ipl_image.h"

/// An image of unsigned bytes with the given rows of elements; its rows are padded, and the padding is 77.
inline zorv::internal::ipl_image_ptr bytes_image(const std::vector<std::vector<int>>& rows,
                                                 int channels = 1) {
    const int width = static_cast<int>(rows.at(0).size()) / channels;
    zorv::internal::ipl_image_ptr image(
        cvCreateImage(cvSize(width, static_cast<int>(rows.size())), IPL_DEPTH_8U, channels));
    for (int y = 0; y < image->height; ++y) {
        unsigned char* row = zorv::internal::row_bytes(image.get(), y);
        std::fill(row, row + image->widthStep, static_cast<unsigned char>(77));
        for (std::size_t i = 0; i < rows[static_cast<std::size_t>(y)].size(); ++i) {
            row[i] = static_cast<unsigned char>(rows[static_cast<std::size_t>(y)][i]);
        }
    }
    return image;
}

/// One channel, each element from its position.
inline zorv::internal::ipl_image_ptr bytes_image(int width, int height,
                                                 const std::function<int(int, int)>& value) {
    std::vector<std::vector<int>> rows(static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            rows[static_cast<std::size_t>(y)].push_back(value(x, y));
        }
    }
    return bytes_image(rows);
}

/// The rows of elements of an 8-bit image, whatever its region of interest.
inline std::vector<std::vector<int>> bytes_of(const IplImage* image) {
    std::vector<std::vector<int>> rows;
    for (int y = 0; y < image->height; ++y) {
        const unsigned char* row = zorv::internal::row_bytes(image, y);
        rows.emplace_back(row, row + image->width * image->nChannels);
    }
    return rows;
}

inline std::vector<int> region_of(const IplImage* image) {
    if (!image->roi) {
        return {};
    }
    return {image->roi->xOffset, image->roi->yOffset, image->roi->width, image->roi->height};
}

inline std::vector<int> numbers(const CvRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}
