#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/support/report.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/image/image_utils.h"

namespace zorv {
namespace {

/// A part of a larger picture that is of another colour.
cv::Mat filled(int width, int height, int value) {
    cv::Mat frame(height + 3, width + 2, CV_8UC3, cv::Scalar(9, 9, 9));
    return frame(cv::Rect(1, 1, width, height)).setTo(cv::Scalar(value, 1, 2));
}

/// The rectangle that pixels of `value` fill; empty if they do not fill one.
cv::Rect place_of(const cv::Mat& picture, int value) {
    cv::Mat marks;
    cv::inRange(picture, cv::Scalar(value, 1, 2), cv::Scalar(value, 1, 2), marks);
    const cv::Rect place = cv::boundingRect(marks);
    return cv::countNonZero(marks) == place.area() ? place : cv::Rect();
}

bool black_elsewhere(const cv::Mat& picture, int images_area) {
    return cv::countNonZero(picture.reshape(1)) == 3 * images_area;
}

bool same(const cv::Mat& first, const cv::Mat& second) {
    return first.size() == second.size() && first.type() == second.type() &&
           (first.empty() || cv::norm(first, second, cv::NORM_INF) == 0.0);
}

using join_function = const cv::Mat (*)(const cv::Mat&, const cv::Mat&, bool, bool);

TEST(JoinImages, PutsEachImageInItsPlace) {
    struct {
        join_function join;
        cv::Size first, second;
        bool centre, fit;
        cv::Size whole;
        cv::Rect first_place, second_place;
    } const cases[] = {
        {join_images_on_top, {10, 4}, {20, 6}, true, false, {20, 10}, {5, 0, 10, 4}, {0, 4, 20, 6}},
        {join_images_on_top, {10, 4}, {20, 6}, false, false, {20, 10}, {0, 0, 10, 4}, {0, 4, 20, 6}},
        {join_images_on_top, {20, 4}, {15, 6}, true, false, {20, 10}, {0, 0, 20, 4}, {2, 4, 15, 6}},
        {join_images_on_top, {10, 4}, {20, 6}, true, true, {20, 15}, {5, 2, 10, 4}, {0, 6, 20, 6}},
        {join_images_side_by_side, {4, 10}, {6, 25}, true, false, {10, 25}, {0, 7, 4, 10}, {4, 0, 6, 25}},
        {join_images_side_by_side, {4, 10}, {6, 25}, false, false, {10, 25}, {0, 0, 4, 10}, {4, 0, 6, 25}},
        {join_images_side_by_side, {4, 10}, {6, 25}, false, true, {33, 25}, {11, 0, 4, 10}, {15, 0, 6, 25}},
        // 20 by 15 beside 26 by 20: side by side
        {join_images, {10, 10}, {10, 10}, false, true, {20, 15}, {0, 2, 10, 10}, {10, 2, 10, 10}},
        // both layouts take 80 by 60: on top
        {join_images, {40, 30}, {40, 30}, true, false, {40, 60}, {0, 0, 40, 30}, {0, 30, 40, 30}},
        {join_images, {39, 30}, {39, 30}, true, false, {78, 30}, {0, 0, 39, 30}, {39, 0, 39, 30}},
        {join_images, {28, 21}, {0, 0}, true, false, {28, 21}, {0, 0, 28, 21}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.first << " " << c.second << " " << c.centre << c.fit);
        const cv::Mat picture = c.join(filled(c.first.width, c.first.height, 100),
                                       filled(c.second.width, c.second.height, 200), c.centre, c.fit);
        EXPECT_EQ(picture.type(), CV_8UC3);
        EXPECT_EQ(picture.size(), c.whole);
        EXPECT_EQ(place_of(picture, 100), c.first_place);
        EXPECT_EQ(place_of(picture, 200), c.second_place);
        EXPECT_TRUE(black_elsewhere(picture, c.first.area() + c.second.area()));
    }
}

TEST(JoinImages, LeavesThePlaceOfAnotherTypeBlack) {
    const cv::Mat grey(20, 10, CV_8UC1, cv::Scalar(255));
    const cv::Mat picture = join_images_side_by_side(grey, filled(10, 20, 100), true, false);
    EXPECT_EQ(place_of(picture, 100), cv::Rect(10, 0, 10, 20));
    EXPECT_TRUE(black_elsewhere(picture, 200));
}

/// The grid by way of pictures that are joined one by one.
cv::Mat joined_by_rows(const std::vector<cv::Mat>& images, std::size_t columns, bool centre) {
    cv::Mat result;
    for (std::size_t start = 0; start < images.size(); start += columns) {
        cv::Mat row;
        for (std::size_t i = start; i < std::min(start + columns, images.size()); ++i) {
            row = join_images_side_by_side(row, images[i], centre, false);
        }
        result = join_images_on_top(result, row, centre, false);
    }
    return result;
}

cv::Mat joined_in_rounds(std::vector<cv::Mat> images, bool fit) {
    while (images.size() > 1) {
        std::vector<cv::Mat> next((images.size() + 1) / 2);
        for (std::size_t i = 0; i < images.size(); i += 2) {
            next[i / 2] = i + 1 < images.size()
                              ? join_images(images[i], images[i + 1], true, images.size() == 2 && fit)
                              : images[i];
        }
        images = next;
    }
    return images[0];
}

TEST(JoinImages, ListsAreJoinedAsIfOneByOne) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> side(0, 40);
    for (int count = 2; count < 20; ++count) {
        SCOPED_TRACE(count);
        std::vector<cv::Mat> images;
        for (int i = 0; i < count; ++i) {
            images.push_back(i == 11 ? cv::Mat(side(random), side(random), CV_32FC1, cv::Scalar(1))
                                     : filled(side(random) + 1, side(random) + 1, 10 + i));
        }
        const bool centre = count % 2 == 0;
        EXPECT_TRUE(same(join_images_unordered(images, !centre, !centre), joined_in_rounds(images, !centre)));
        const cv::Mat grid = join_images_ordered(images, centre, false);
        bool found = false;
        for (std::size_t columns = 1; columns < images.size(); ++columns) {
            found = found || same(grid, joined_by_rows(images, columns, centre));
        }
        EXPECT_TRUE(found);
    }
}

TEST(JoinImagesOrdered, ChoosesTheGridClosestTo4By3) {
    struct {
        std::vector<cv::Size> sizes;
        cv::Size whole;
        cv::Rect last_place;
    } const cases[] = {
        {std::vector<cv::Size>(4, {100, 100}), {300, 200}, {100, 100, 100, 100}},
        {std::vector<cv::Size>(4, {110, 100}), {220, 200}, {110, 100, 110, 100}},
        {std::vector<cv::Size>(16, {40, 30}), {160, 120}, {120, 90, 40, 30}},
        // two images can only lie on top of each other
        {std::vector<cv::Size>(2, {10, 10}), {10, 20}, {0, 10, 10, 10}},
        // a grid of five columns is not tried, however close
        {std::vector<cv::Size>(5, {20, 75}), {80, 150}, {30, 75, 20, 75}},
        // two columns are 30 by 30 and three are 40 by 40: the fewer
        {{{20, 10}, {10, 10}, {10, 20}, {10, 20}}, {30, 30}, {15, 10, 10, 20}},
        // ratios of 1 and 5/3 lie as far from 4:3, save that single precision brings the latter closer
        {{{60, 6}, {30, 24}, {60, 30}}, {90, 54}, {15, 24, 60, 30}},
        // far off, and still closer than the least error to start from
        {std::vector<cv::Size>(2, {150000, 1}), {150000, 2}, {0, 1, 150000, 1}},
        // one column is 30 by 31 and two are 50 by 21
        {{{30, 10}, {20, 20}, {30, 1}}, {30, 31}, {0, 30, 30, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sizes.size());
        std::vector<cv::Mat> images;
        for (std::size_t i = 0; i < c.sizes.size(); ++i) {
            images.push_back(filled(c.sizes[i].width, c.sizes[i].height, static_cast<int>(100 + i)));
        }
        const cv::Mat picture = join_images_ordered(images, true, false);
        EXPECT_EQ(picture.size(), c.whole);
        EXPECT_EQ(place_of(picture, static_cast<int>(99 + images.size())), c.last_place);
    }
    const cv::Mat fitted = join_images_ordered(std::vector<cv::Mat>(4, filled(100, 100, 100)), false, true);
    EXPECT_EQ(fitted.size(), cv::Size(300, 225));
    EXPECT_TRUE(black_elsewhere(fitted, 40000));
}

TEST(JoinImagesOrdered, HasNoGridForFewerThanTwoImagesOrForFlatOnes) {
    for (const std::vector<cv::Mat>& images : {std::vector<cv::Mat>(),
                                               {filled(10, 10, 100)},
                                               std::vector<cv::Mat>(3, cv::Mat(0, 5, CV_8UC3)),
                                               std::vector<cv::Mat>(2, filled(250000, 1, 100))}) {
        EXPECT_TRUE(join_images_ordered(images, true, false).empty());
    }
}

TEST(JoinImagesUnordered, GivesBackASingleImageAsItIs) {
    const cv::Mat image(7, 5, CV_32FC1, cv::Scalar(3));
    const cv::Mat joined = join_images_unordered({image}, true, true);
    EXPECT_EQ(joined.data, image.data);
    EXPECT_EQ(joined.type(), CV_32FC1);
}

TEST(JoinImages, EachJoinAddsItsFrameToAFailure) {
    const int sizes[] = {2, 2, 2};
    const cv::Mat solid(3, sizes, CV_8UC3);  // has neither rows nor columns to join by
    const cv::Mat plain = filled(10, 10, 100);
    const cv::Mat wide(1, 2000000000, CV_8UC1, plain.data);
    const std::vector<cv::Mat> odd_one{plain, solid, plain};
    const std::vector<cv::Mat> empty_pair(2);  // only the fit fails
    const struct {
        std::function<void()> action;
        std::vector<std::string> functions;
    } cases[] = {
        {[&] { join_images_on_top(plain, solid, false, false); }, {"join_images_on_top"}},
        {[&] { join_images_side_by_side(wide, wide, false, false); }, {"join_images_side_by_side"}},
        {[&] { join_images_side_by_side(cv::Mat(), cv::Mat(), false, true); }, {"join_images_side_by_side"}},
        {[&] { join_images(solid, plain, false, false); }, {"join_images(", "join_images_"}},
        {[&] { join_images_unordered(odd_one, false, false); },
         {"join_images_unordered", "join_images(", "join_images_"}},
        {[&] { join_images_unordered(empty_pair, false, true); },
         {"join_images_unordered", "join_images(", "join_images_on_top"}},
        {[&] { join_images_unordered({}, false, false); }, {"join_images_unordered"}},
        {[&] { join_images_ordered(odd_one, true, false); }, {"join_images_ordered", "join_images_"}},
        {[&] { join_images_ordered({plain}, true, true); }, {"join_images_ordered"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.functions[0]);
        try {
            c.action();
            ADD_FAILURE();
        } catch (const exception_l& e) {
            const int depth = static_cast<int>(c.functions.size()) - 1;
            EXPECT_EQ(e.depth(), depth);
            std::string pattern;
            for (int frame = 0; frame <= depth; ++frame) {
                const std::string indent(static_cast<std::size_t>(depth - frame), '\t');
                std::string function = c.functions[static_cast<std::size_t>(frame)];
                if (function.back() == '(') {
                    function.insert(function.size() - 1, "[");
                    function += "]";
                }
                pattern += indent + "[^\n]*image_utils[^\n]*\n" + indent + "[^\n]*" + function + "[^\n]*\n" +
                           indent + "Details: \n";
            }
            EXPECT_THAT(e.what(), testing::ContainsRegex("^" + pattern + "[^\t\n]"));
        }
    }
}

TEST(ImageTitle, IsDrawnAtTheTopMiddleWithAWarningIfItDoesNotFit) {
    int baseline = 0;
    const cv::Size text = cv::getTextSize("A title", cv::FONT_HERSHEY_PLAIN, 1.0, 1, &baseline);
    const cv::Size room(text.width + 1, text.height + 1);
    for (const cv::Size& size : {cv::Size(171, 60), room, room - cv::Size(1, 0), room - cv::Size(0, 1)}) {
        cv::Mat image(size, CV_8UC3, cv::Scalar::all(0));
        stream_capture errors(std::cerr);
        image_title(image, "A title", cv::FONT_HERSHEY_PLAIN, 1.0, cv::Scalar(10, 20, 30));
        std::ostringstream warning;
        warning << "Warning: in image_utils::image_title() : title has size of (" << text.width << ","
                << text.height << ") but image only has size of (" << size.width << "," << size.height
                << ")\n";
        const bool fits = size.width > text.width && size.height > text.height;
        EXPECT_EQ(errors.text(), fits ? "" : warning.str());
        cv::Mat marks;
        cv::inRange(image, cv::Scalar(10, 20, 30), cv::Scalar(10, 20, 30), marks);
        EXPECT_EQ(cv::countNonZero(image.reshape(1)), 3 * cv::countNonZero(marks));
        const cv::Rect drawn = cv::boundingRect(marks);
        EXPECT_NEAR(drawn.x + drawn.width / 2.0, size.width / 2.0, 4.0);
        EXPECT_NEAR(drawn.y, 10, 2.0);
        EXPECT_TRUE(size.height < 60 || std::abs(drawn.br().y - text.height - 10) < 3);
    }
}

}  // namespace
}  // namespace zorv
