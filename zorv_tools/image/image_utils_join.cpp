#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <utility>
#include <vector>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/image/Opencv_io.h"
#include "zorv_tools/image/image_utils.h"
#include "zorv_tools/image/internal/four_to_three.h"

namespace zorv {

namespace {

using internal::as_size;
using internal::extent;

extent size_of(const cv::Mat& image) {
    return {image.cols, image.rows};
}

extent size_side_by_side(const extent& first, const extent& second) {
    return {first.width + second.width, std::max(first.height, second.height)};
}

extent size_on_top(const extent& first, const extent& second) {
    return {std::max(first.width, second.width), first.height + second.height};
}

/// Area of the 4:3 frame around a picture.
std::uint64_t framed_area(const extent& picture) {
    const extent frame = internal::four_to_three(picture);
    return static_cast<std::uint64_t>(frame.width) * static_cast<std::uint64_t>(frame.height);
}

bool side_by_side_wastes_less(const extent& first, const extent& second) {
    return framed_area(size_side_by_side(first, second)) < framed_area(size_on_top(first, second));
}

/// A picture that is planned and not yet drawn: where each image of it lies. Joins of joins thus copy each pixel
/// once, however many there are.
struct layout {
    struct place {
        const cv::Mat* image;
        std::int64_t x;
        std::int64_t y;
    };

    layout() = default;
    explicit layout(const cv::Mat& image) : size(size_of(image)), places{{&image, 0, 0}} {}

    extent size;
    std::vector<place> places;
};

layout join(layout first, const layout& second, const extent& size, const extent& first_corner,
            const extent& second_corner) {
    for (layout::place& place : first.places) {
        place.x += first_corner.width;
        place.y += first_corner.height;
    }
    for (const layout::place& place : second.places) {
        first.places.push_back({place.image, place.x + second_corner.width, place.y + second_corner.height});
    }
    first.size = size;
    return first;
}

layout join_side_by_side(layout first, const layout& second, bool centre) {
    const extent size = size_side_by_side(first.size, second.size);
    const auto row = [&](const extent& part) { return centre ? (size.height - part.height) / 2 : 0; };
    const extent first_corner{0, row(first.size)};
    const extent second_corner{first.size.width, row(second.size)};
    return join(std::move(first), second, size, first_corner, second_corner);
}

layout join_on_top(layout first, const layout& second, bool centre) {
    const extent size = size_on_top(first.size, second.size);
    const auto column = [&](const extent& part) { return centre ? (size.width - part.width) / 2 : 0; };
    const extent first_corner{column(first.size), 0};
    const extent second_corner{column(second.size), first.size.height};
    return join(std::move(first), second, size, first_corner, second_corner);
}

layout join_closer(layout first, const layout& second, bool centre) {
    return side_by_side_wastes_less(first.size, second.size)
               ? join_side_by_side(std::move(first), second, centre)
               : join_on_top(std::move(first), second, centre);
}

cv::Mat draw(const layout& picture, bool fit_4_3) {
    const extent size = fit_4_3 ? internal::four_to_three(picture.size) : picture.size;
    const std::int64_t left = (size.width - picture.size.width) / 2;
    const std::int64_t top = (size.height - picture.size.height) / 2;

    cv::Mat drawn(as_size(size.height), as_size(size.width), CV_8UC3);
    std::size_t covered = 0;
    for (const layout::place& place : picture.places) {
        covered += place.image->type() == CV_8UC3 ? place.image->total() : 0;
    }
    if (covered != drawn.total()) {
        drawn = cv::Scalar(0, 0, 0, 0);
    }
    for (const layout::place& place : picture.places) {
        cv::Mat part = drawn(cv::Rect(static_cast<int>(left + place.x), static_cast<int>(top + place.y),
                                      place.image->cols, place.image->rows));
        // An image of another type gets a buffer of its own here, and its place stays black.
        place.image->copyTo(part);
    }
    if (fit_4_3 && drawn.empty()) {
        convert_res(drawn, drawn.cols, drawn.rows);  // OpenCV's own word on a picture without pixels
    }
    return drawn;
}

struct grid {
    std::size_t columns = 0;
    std::size_t rows = 0;
};

/// The grid closest to 4:3; none where no grid has an error below the start value.
grid closest_grid(const std::vector<cv::Mat>& images) {
    const std::size_t count = images.size();
    grid closest;
    float least_error = 100000.0f;
    for (std::size_t columns = 1; columns < count; ++columns) {
        const auto rows =
            static_cast<std::size_t>(std::ceil(static_cast<float>(count) / static_cast<float>(columns)));
        std::vector<int> widths(columns, 0);
        extent size;
        for (std::size_t row = 0; row < rows; ++row) {
            int tallest = 0;
            for (std::size_t i = row * columns; i < std::min((row + 1) * columns, count); ++i) {
                widths[i % columns] = std::max(widths[i % columns], images[i].cols);
                tallest = std::max(tallest, images[i].rows);
            }
            size.height += tallest;
        }
        for (const int width : widths) {
            size.width += width;
        }
        const float excess = static_cast<float>(size.width) / static_cast<float>(size.height) - 1.3333334f;
        const auto error = static_cast<float>(std::fabs(static_cast<double>(excess)));
        if (error < least_error) {
            least_error = error;
            closest = {columns, rows};
        }
    }
    return closest;
}

// The two ways to join a list are written for any kind of picture: for layouts, and for images joined one by one.

template <class Picture, class SideBySide, class OnTop>
Picture join_grid(const std::vector<Picture>& pictures, const grid& shape, SideBySide side_by_side,
                  OnTop on_top) {
    Picture result;
    for (std::size_t row = 0; row < shape.rows; ++row) {
        Picture line;
        const std::size_t end = std::min((row + 1) * shape.columns, pictures.size());
        for (std::size_t i = row * shape.columns; i < end; ++i) {
            line = side_by_side(std::move(line), pictures[i]);
        }
        result = on_top(std::move(result), line);
    }
    return result;
}

/// `join_pair(first, second, last)` joins two pictures; `last` is true for the join that gives the result.
template <class Picture, class JoinPair>
Picture join_rounds(std::vector<Picture> pictures, JoinPair join_pair) {
    while (pictures.size() > 1) {
        const bool last = pictures.size() == 2;
        std::vector<Picture> next;
        for (std::size_t i = 0; i + 1 < pictures.size(); i += 2) {
            next.push_back(join_pair(std::move(pictures[i]), pictures[i + 1], last));
        }
        if (pictures.size() % 2 == 1) {
            next.push_back(std::move(pictures.back()));
        }
        pictures = std::move(next);
    }
    return pictures.at(0);
}

std::vector<layout> layouts_of(const std::vector<cv::Mat>& images) {
    return {images.begin(), images.end()};
}

}  // namespace

const cv::Mat join_images_on_top(const cv::Mat& first, const cv::Mat& second, bool centre, bool fit_4_3) {
    try {
        return draw(join_on_top(layout(first), layout(second), centre), fit_4_3);
    }
    ZORV_ADD_FRAME("")
}

const cv::Mat join_images_side_by_side(const cv::Mat& first, const cv::Mat& second, bool centre,
                                       bool fit_4_3) {
    try {
        return draw(join_side_by_side(layout(first), layout(second), centre), fit_4_3);
    }
    ZORV_ADD_FRAME("")
}

const cv::Mat join_images(const cv::Mat& first, const cv::Mat& second, bool centre, bool fit_4_3) {
    try {
        return side_by_side_wastes_less(size_of(first), size_of(second))
                   ? join_images_side_by_side(first, second, centre, fit_4_3)
                   : join_images_on_top(first, second, centre, fit_4_3);
    }
    ZORV_ADD_FRAME("")
}

const cv::Mat join_images_ordered(const std::vector<cv::Mat>& images, bool centre, bool fit_4_3) {
    try {
        const grid shape = closest_grid(images);
        if (shape.columns > 0) {
            try {
                return draw(join_grid(
                                layouts_of(images), shape,
                                [=](layout line, const layout& image) {
                                    return join_side_by_side(std::move(line), image, centre);
                                },
                                [=](layout result, const layout& line) {
                                    return join_on_top(std::move(result), line, centre);
                                }),
                            fit_4_3);
            } catch (const std::exception&) {
                // Joined one by one below, so that the report names the join that fails.
            }
        }
        cv::Mat result = join_grid(
            images, shape,
            [=](const cv::Mat& line, const cv::Mat& image) {
                return join_images_side_by_side(line, image, centre, false);
            },
            [=](const cv::Mat& joined, const cv::Mat& line) {
                return join_images_on_top(joined, line, centre, false);
            });
        if (fit_4_3) {
            const extent fitted = internal::four_to_three(size_of(result));
            convert_res(result, as_size(fitted.width), as_size(fitted.height));
        }
        return result;
    }
    ZORV_ADD_FRAME("")
}

const cv::Mat join_images_unordered(const std::vector<cv::Mat>& images, bool, bool fit_4_3) {
    try {
        if (images.size() == 1) {
            return images[0];
        }
        try {
            return draw(join_rounds(layouts_of(images),
                                    [](layout first, const layout& second, bool) {
                                        return join_closer(std::move(first), second, true);
                                    }),
                        fit_4_3);
        } catch (const std::exception&) {
            // Joined one by one below, so that the report names the join that fails.
        }
        return join_rounds(images, [=](const cv::Mat& first, const cv::Mat& second, bool last) {
            return join_images(first, second, true, last && fit_4_3);
        });
    }
    ZORV_ADD_FRAME("")
}

void image_title(cv::Mat& image, const std::string& title, int font_face, double font_scale,
                 cv::Scalar_<double> colour) {  // NOLINT(performance-unnecessary-value-param)
    constexpr int thickness = 1;
    int baseline = 0;
    const cv::Size text = cv::getTextSize(title, font_face, font_scale, thickness, &baseline);
    if (text.width >= image.cols || text.height >= image.rows) {
        std::cerr << "Warning: in image_utils::image_title() : title has size of " << text
                  << " but image only has size of " << cv::Size(image.cols, image.rows) << std::endl;
    }
    const cv::Point position(image.cols / 2 - text.width / 2, text.height + 10);
    cv::putText(image, title, position, font_face, font_scale, colour, thickness, cv::LINE_8, false);
}

}  // namespace zorv
