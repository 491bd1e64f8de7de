#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <type_traits>
#include <vector>

#include "zorv_tools/core/truncate.h"
#include "zorv_tools/image/image_utils.h"
#include "zorv_tools/image/internal/ipl_image.h"

namespace zorv {

namespace {

/// Bytes above `low` and up to `high`, both of which may lie beyond a byte.
class depth_band {
public:
    depth_band(int low, int high)
        : first_(static_cast<unsigned char>(std::min(std::max(low, 0), 254) + 1)),
          last_(static_cast<unsigned char>(std::clamp(high, 0, 255))),
          empty_(low >= 255 || last_ < first_) {}

    /// 255 for each byte within the band and 0 for the others.
    void mark(const unsigned char* bytes, std::size_t count, unsigned char* marks) const {
        const unsigned char first = first_;
        const auto span = static_cast<unsigned char>(last_ - first_);
        const unsigned char within = empty_ ? 0 : 255;
        for (std::size_t i = 0; i < count; ++i) {
            marks[i] = static_cast<unsigned char>(bytes[i] - first) <= span ? within : 0;
        }
    }

private:
    unsigned char first_;
    unsigned char last_;
    bool empty_;
};

/// Clears the pixels whose mark is 0. Only a count known to the compiler makes for a fast inner loop, and
/// one and three bytes a pixel are what images mostly have.
template <class Bytes>
void keep_marked(unsigned char* pixels, Bytes bytes_per_pixel, const unsigned char* marks,
                 std::size_t count) {
    for (std::size_t x = 0; x < count; ++x) {
        for (std::size_t i = 0; i < bytes_per_pixel; ++i) {
            pixels[x * bytes_per_pixel + i] &= marks[x];
        }
    }
}

/// Clears the pixels of `image`, in all channels, where `mask` is outside the band.
void cut(IplImage* image, const IplImage* mask, const depth_band& band) {
    const CvRect common =
        cvRect(0, 0, std::min(image->width, mask->width), std::min(image->height, mask->height));
    const auto width = static_cast<std::size_t>(common.width);
    const auto bytes_per_pixel =
        static_cast<std::size_t>(image->nChannels) * (static_cast<std::size_t>(image->depth & 255) / 8);
    std::vector<unsigned char> marks(width);
    internal::for_each_row(image, common, [&](unsigned char* row, int y) {
        band.mark(internal::row_bytes(mask, y), width, marks.data());
        if (bytes_per_pixel == 1) {
            keep_marked(row, std::integral_constant<std::size_t, 1>(), marks.data(), width);
        } else if (bytes_per_pixel == 3) {
            keep_marked(row, std::integral_constant<std::size_t, 3>(), marks.data(), width);
        } else {
            keep_marked(row, bytes_per_pixel, marks.data(), width);
        }
    });
}

/// The closing of the pixels of `image` that are not 0, within its region of interest.
internal::ipl_image_ptr close_image(const IplImage* image, IplConvKernel* kernel, int iterations) {
    internal::ipl_image_ptr binary = internal::clone_image(image);
    IplImage* pixels = binary.get();
    binary_image_convert(pixels, 1);
    internal::ipl_image_ptr closed = internal::clone_image(image);
    cvMorphologyEx(binary.get(), closed.get(), nullptr, kernel, CV_MOP_CLOSE, iterations);
    return closed;
}

struct pixel_sums {
    double count = 0.0;
    double x = 0.0;
    double y = 0.0;

    template <class T>
    void add_row(const T* row, std::size_t channels, const CvRect& region, int y_of_row) {
        // Short stretches have sums that fit 32 bits, of which the processor adds several at a time.
        constexpr int stretch = 4096;
        std::int64_t in_row = 0;
        std::int64_t columns = 0;
        for (int start = 0; start < region.width; start += stretch) {
            const int left = region.x + start;
            const int length = std::min(stretch, region.width - start);
            const T* pixel = row + static_cast<std::size_t>(left) * channels;
            int found = 0;
            int offsets = 0;
            for (int i = 0; i < length; ++i) {
                const int set = pixel[static_cast<std::size_t>(i) * channels] != T(0);
                found += set;
                offsets += set * i;
            }
            in_row += found;
            columns += offsets + std::int64_t{left} * found;
        }
        count += static_cast<double>(in_row);
        x += static_cast<double>(columns);
        y += static_cast<double>(y_of_row * in_row);
    }
};

template <class T>
pixel_sums sum_as(const IplImage* image, const CvRect& region) {
    pixel_sums sums;
    const auto channels = static_cast<std::size_t>(image->nChannels);
    internal::for_each_row(image, region, [&](const unsigned char* row, int y) {
        if (channels == 1) {
            sums.add_row(reinterpret_cast<const T*>(row), 1, region, y);
        } else {
            sums.add_row(reinterpret_cast<const T*>(row), channels, region, y);
        }
    });
    return sums;
}

/// Sums over the pixels of the region whose first channel is not 0, in coordinates of the whole image.
pixel_sums sum_pixels(const IplImage* image, const CvRect& region) {
    switch (static_cast<unsigned int>(image->depth)) {
        case IPL_DEPTH_16U:
        case IPL_DEPTH_16S:
            return sum_as<std::uint16_t>(image, region);
        case IPL_DEPTH_32S:
            return sum_as<std::int32_t>(image, region);
        case IPL_DEPTH_32F:
            return sum_as<float>(image, region);
        case IPL_DEPTH_64F:
            return sum_as<double>(image, region);
        default:
            return sum_as<unsigned char>(image, region);
    }
}

struct padding {
    std::int64_t size;
    std::int64_t offset;
};

/// Along one axis: the size that has `point` in its middle, and where the old image begins in it.
padding pad_around(std::int64_t point, std::int64_t size) {
    const std::int64_t behind = size - point;
    if (point > behind) {
        return {2 * point, 0};
    }
    return {2 * behind, behind - point};
}

/// `start` moved by half of what an extent of `size` grows by.
int widened_start(int start, int size, double factor) {
    return internal::clamp_to_int(std::int64_t{start} + truncate_to<int>((factor - 1.0) * size * -0.5));
}

int centred_start(int size, int part) {
    return internal::clamp_to_int((std::int64_t{size} - part) / 2);
}

/// A box of one size and the ring around it.
struct surround {
    surround(double width, double aspect_ratio)
        : box_width(truncate_to<int>(width)),
          box_height(truncate_to<int>(width * aspect_ratio)),
          margin(truncate_to<int>((std::sqrt(2.0) - 1.0) * 0.5 * static_cast<double>(box_width))),
          outer_width(box_width + 2 * margin),
          // The outer box keeps the ratio, so that the margins below and above need not be `margin`.
          outer_height(truncate_to<int>(static_cast<double>(outer_width) * aspect_ratio)),
          box_area(box_width * box_height),
          ring_area(outer_width * outer_height - box_area) {}

    std::int64_t box_width, box_height, margin, outer_width, outer_height, box_area, ring_area;
};

/// The best box so far.
struct box {
    double score = -1.0;
    int width = 0;
    int x = 0;
    int y = 0;
};

/// Tries the boxes of one size at all positions. Columns of the integral image are contiguous, so the positions
/// are walked column by column, and the best of each row is kept for an order by rows afterwards.
class box_search {
public:
    explicit box_search(const matrix<double>& integral)
        : integral_(integral),
          width_(integral.get_dim1()),
          height_(integral.get_dim2()),
          scores_(integral.get_dim2()),
          columns_(integral.get_dim2()) {}

    void try_size(const surround& size, box& best) {
        // Rows of which all corners lie inside; with flat boxes the box itself can reach out below.
        const std::int64_t first = std::max({size.margin, -size.box_height, size.margin - size.outer_height});
        const std::int64_t end =
            std::min({height_ - size.outer_height + size.margin, height_ - size.box_height, height_});
        if (first >= end) {
            return;
        }
        std::fill(scores_.begin() + first, scores_.begin() + end, best.score);
        std::fill(columns_.begin() + first, columns_.begin() + end, no_column);
        for (std::int64_t x = size.margin; x - size.margin < width_ - size.outer_width; ++x) {
            try_column(size, x, first, end);
        }
        for (std::int64_t y = first; y < end; ++y) {
            const double score = scores_[static_cast<std::size_t>(y)];
            const double column = columns_[static_cast<std::size_t>(y)];
            if (column != no_column && score > best.score) {
                best = {score, static_cast<int>(size.box_width), static_cast<int>(column),
                        static_cast<int>(y)};
            }
        }
    }

private:
    // Kept as doubles beside the scores, so that both are chosen by the same comparison.
    static constexpr double no_column = -1.0;

    const double* column(std::int64_t x, std::int64_t row) const {
        return integral_[static_cast<unsigned int>(x)] + row;
    }

    void try_column(const surround& size, std::int64_t x, std::int64_t first, std::int64_t end) {
        const double* const left = column(x, first);
        const double* const right = column(x + size.box_width, first);
        const double* const outer_left = column(x - size.margin, first);
        const double* const outer_right = column(x + size.outer_width - size.margin, first);
        double* const scores = &scores_[static_cast<std::size_t>(first)];
        double* const columns = &columns_[static_cast<std::size_t>(first)];
        const std::int64_t below = size.box_height;
        const std::int64_t outer_above = -size.margin;
        const std::int64_t outer_below = size.outer_height - size.margin;
        const auto box_area = static_cast<double>(size.box_area);
        const auto ring_area = static_cast<double>(size.ring_area);
        const auto here = static_cast<double>(x);
        // Scores go through a buffer of their own: the compiler then sees that they overwrite nothing that it
        // still has to read, and computes several at a time.
        constexpr std::int64_t at_a_time = 64;
        std::array<double, at_a_time> found;
        for (std::int64_t start = 0; start < end - first; start += at_a_time) {
            const std::int64_t count = std::min(at_a_time, end - first - start);
            for (std::int64_t i = 0; i < count; ++i) {
                const std::int64_t y = start + i;
                const double inside = right[y + below] - right[y] - left[y + below] + left[y];
                const double outside = outer_right[y + outer_below] - outer_right[y + outer_above] -
                                       outer_left[y + outer_below] + outer_left[y + outer_above];
                found[static_cast<std::size_t>(i)] = inside / box_area - (outside - inside) / ring_area;
            }
            for (std::int64_t i = 0; i < count; ++i) {
                // Not a number where a ring has no area; that compares false.
                const double score = found[static_cast<std::size_t>(i)];
                const bool better = score > scores[start + i];
                scores[start + i] = better ? score : scores[start + i];
                columns[start + i] = better ? here : columns[start + i];
            }
        }
    }

    const matrix<double>& integral_;
    std::int64_t width_;
    std::int64_t height_;
    std::vector<double> scores_;
    std::vector<double> columns_;
};

}  // namespace

void threshold_image_pair(int high, int low, IplImage*& app_image, IplImage*& depth_image,
                          IplConvKernel* kernel, int iterations) {
    if (depth_image->nChannels != 1) {
        std::cerr << "depth image used for thresholding has " << depth_image->nChannels
                  << " channels. Function only works for single channel" << std::endl;
        std::cerr << "app image passed had " << app_image->nChannels << " channels." << std::endl;
        return;
    }
    const depth_band kept(low, high);
    cut(depth_image, depth_image, kept);
    if (kernel) {
        // What the closing adds lies above any depth of the band.
        const internal::ipl_image_ptr closed = close_image(depth_image, kernel, iterations);
        cut(app_image, closed.get(), depth_band(low, 255));
    } else {
        cut(app_image, depth_image, kept);
    }
}

void find_object_center(int& x, int& y, IplImage* image, IplConvKernel* kernel, int iterations) {
    const CvRect region = internal::ensure_region(image);
    const internal::ipl_image_ptr closed = kernel ? close_image(image, kernel, iterations) : nullptr;
    const pixel_sums sums = sum_pixels(closed ? closed.get() : image, region);
    if (sums.count > 0.0) {
        x = truncate_to<int>(sums.x / sums.count);
        y = truncate_to<int>(sums.y / sums.count);
    } else {
        x = region.width / 2 + region.x;
        y = region.height / 2 + region.y;
    }
}

void recenter_image(int x, int y, IplImage*& image) {
    cvResetImageROI(image);
    const padding across = pad_around(x, image->width);
    const padding down = pad_around(y, image->height);
    internal::ipl_image_ptr padded =
        internal::create_image(across.size, down.size, image->depth, image->nChannels);
    cvSetZero(padded.get());
    cvSetImageROI(padded.get(), cvRect(static_cast<int>(across.offset), static_cast<int>(down.offset),
                                       image->width, image->height));
    cvCopy(image, padded.get(), nullptr);
    cvResetImageROI(padded.get());
    cvReleaseImage(&image);
    image = padded.release();
}

void segment_and_recentre(IplImage*& app_image, IplImage*& depth_image, double depth_tolerance,
                          double width_factor, double height_factor, IplConvKernel* kernel, int iterations,
                          int object_depth) {
    if (object_depth <= 0) {
        object_depth = image_median(depth_image, true);
    }
    const CvRect region = cvGetImageROI(depth_image);
    if (object_depth != 0) {
        threshold_image_pair(truncate_to<int>((1.0 + depth_tolerance) * object_depth),
                             truncate_to<int>((1.0 - depth_tolerance) * object_depth), app_image, depth_image,
                             kernel, iterations);
    }
    const CvRect widened = cvRect(widened_start(region.x, region.width, width_factor),
                                  widened_start(region.y, region.height, height_factor),
                                  truncate_to<int>(region.width * width_factor),
                                  truncate_to<int>(region.height * height_factor));
    cvSetImageROI(depth_image, widened);

    int x = 0;
    int y = 0;
    find_object_center(x, y, depth_image, kernel, iterations);
    recenter_image(x, y, app_image);
    recenter_image(x, y, depth_image);

    const int width = truncate_to<int>(widened.width / width_factor);
    const int height = truncate_to<int>(widened.height / height_factor);
    const CvRect centred = cvRect(centred_start(app_image->width, width),
                                  centred_start(depth_image->height, height), width, height);
    cvSetImageROI(app_image, centred);
    cvSetImageROI(depth_image, centred);
}

void centre_surround_check(IplImage*& image, double aspect_ratio, int& best_width, int& best_x, int& best_y,
                           int minimum_width, double width_step) {
    internal::ipl_image_ptr binary = internal::clone_image(image);
    IplImage* pixels = binary.get();
    binary_image_convert(pixels, 1);
    const std::unique_ptr<const matrix<double>> integral(create_integral_image(pixels));
    binary.reset();

    box best;
    if (integral) {
        box_search search(*integral);
        for (double width = minimum_width; width < image->width && width * aspect_ratio < image->height;
             width *= width_step) {
            const surround size(width, aspect_ratio);
            if (image->height - size.outer_height > 0) {
                search.try_size(size, best);
            }
        }
    }
    best_width = best.width;
    best_x = best.x;
    best_y = best.y;
}

}  // namespace zorv
