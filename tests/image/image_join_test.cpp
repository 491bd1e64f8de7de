#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/stream_capture.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/image/image_utils.h"

namespace zorv {
namespace {

/// A part of a larger picture that is of another colour.
cv::Mat filled(const cv::Size& size, int value) {
    cv::Mat frame(size.height + 3, size.width + 2, CV_8UC3, cv::Scalar(9, 9, 9));
    return frame(cv::Rect({1, 1}, size)).setTo(cv::Scalar(value, 1, 2));
}

/// The rectangle that pixels of `value` fill; empty if they do not fill one.
cv::Rect place_of(const cv::Mat& picture, int value) {
    cv::Mat marks;
    cv::inRange(picture, cv::Scalar(value, 1, 2), cv::Scalar(value, 1, 2), marks);
    const cv::Rect place = cv::boundingRect(marks);
    return cv::countNonZero(marks) == place.area() ? place : cv::Rect();
}

using images = std::vector<cv::Mat>;

using join_function = const cv::Mat (*)(const images&, bool, bool);

template <const cv::Mat (*Join)(const cv::Mat&, const cv::Mat&, bool, bool)>
const cv::Mat pair(const images& two, bool centre, bool fit) {
    return Join(two[0], two[1], centre, fit);
}

constexpr join_function side_by_side = pair<join_images_side_by_side>, on_top = pair<join_images_on_top>,
                        closer = pair<join_images>, ordered = join_images_ordered,
                        unordered = join_images_unordered;
constexpr unsigned int centred = 1, fitted = 2;

TEST(JoinImages, PutsEachImageInItsPlace) {
    using sizes = std::vector<cv::Size>;
    const struct {
        join_function join;
        unsigned int flags;
        sizes of_images;
        cv::Size whole;
        std::vector<cv::Point> corners;
    } cases[] = {
        {on_top, centred, {{10, 4}, {20, 6}}, {20, 10}, {{5, 0}, {0, 4}}},
        {on_top, 0, {{10, 4}, {20, 6}}, {20, 10}, {{0, 0}, {0, 4}}},
        {on_top, centred, {{20, 4}, {15, 6}}, {20, 10}, {{0, 0}, {2, 4}}},
        {on_top, centred | fitted, {{10, 4}, {20, 6}}, {20, 15}, {{5, 2}, {0, 6}}},
        {side_by_side, centred, {{4, 10}, {6, 25}}, {10, 25}, {{0, 7}, {4, 0}}},
        {side_by_side, 0, {{4, 10}, {6, 25}}, {10, 25}, {{0, 0}, {4, 0}}},
        {side_by_side, fitted, {{4, 10}, {6, 25}}, {33, 25}, {{11, 0}, {15, 0}}},
        // 20 by 15 beside 26 by 20: side by side
        {closer, fitted, {{10, 10}, {10, 10}}, {20, 15}, {{0, 2}, {10, 2}}},
        // both layouts take 80 by 60: on top
        {closer, centred, {{40, 30}, {40, 30}}, {40, 60}, {{0, 0}, {0, 30}}},
        {closer, centred, {{39, 30}, {39, 30}}, {78, 30}, {{0, 0}, {39, 0}}},
        {closer, centred, {{28, 21}, {0, 0}}, {28, 21}, {{0, 0}, {0, 0}}},
        {ordered, fitted, sizes(4, {100, 100}), {300, 225}, {{0, 12}, {100, 12}, {200, 12}, {0, 112}}},
        {ordered, centred, sizes(4, {110, 100}), {220, 200}, {{0, 0}, {110, 0}, {0, 100}, {110, 100}}},
        // two images can only lie on top of each other
        {ordered, centred, sizes(2, {10, 10}), {10, 20}, {{0, 0}, {0, 10}}},
        // a grid of as many columns as images is not tried, however close
        {ordered, centred, sizes(3, {20, 45}), {40, 90}, {{0, 0}, {20, 0}, {10, 45}}},
        // two columns are 30 by 30 and three are 40 by 40: the fewer
        {ordered,
         0,
         {{20, 10}, {10, 10}, {10, 20}, {10, 20}},
         {30, 30},
         {{0, 0}, {20, 0}, {0, 10}, {10, 10}}},
        // ratios of 1 and 5/3 lie as far from 4:3, save that single precision brings the latter closer
        {ordered, centred, {{60, 6}, {30, 24}, {60, 30}}, {90, 54}, {{0, 9}, {60, 0}, {15, 24}}},
        // far off, and still closer than the least error to start from
        {ordered, centred, sizes(2, {150000, 1}), {150000, 2}, {{0, 0}, {0, 1}}},
        // one column is 30 by 31 and two are 50 by 21
        {ordered, centred, {{30, 10}, {20, 20}, {30, 1}}, {30, 31}, {{0, 0}, {5, 10}, {0, 30}}},
        // one column is 30 by 32 and two are 40 by 31
        {ordered, centred, {{30, 30}, {10, 1}, {30, 1}}, {40, 31}, {{0, 0}, {30, 14}, {5, 30}}},
        // always centred, and fitted in the last join alone
        {unordered, 0, sizes(3, {10, 10}), {20, 20}, {{0, 0}, {10, 0}, {5, 10}}},
        {unordered, fitted, sizes(5, {10, 10}), {30, 22}, {{0, 1}, {10, 1}, {0, 11}, {10, 11}, {20, 6}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        images list;
        int area = 0;
        for (const cv::Size& size : c.of_images) {
            list.push_back(filled(size, 100 + static_cast<int>(list.size())));
            area += size.area();
        }
        const cv::Mat picture = c.join(list, c.flags & centred, c.flags & fitted);
        EXPECT_EQ(picture.type(), CV_8UC3);
        EXPECT_EQ(picture.size(), c.whole);
        for (std::size_t i = 0; i < list.size(); ++i) {
            EXPECT_EQ(place_of(picture, 100 + static_cast<int>(i)),
                      list[i].empty() ? cv::Rect() : cv::Rect(c.corners[i], list[i].size()));
        }
        EXPECT_EQ(cv::countNonZero(picture.reshape(1)), 3 * area) << "not black elsewhere";
    }
}

TEST(JoinImages, LeavesThePlaceOfAnotherTypeBlack) {
    const cv::Mat grey(20, 10, CV_8UC1, cv::Scalar(255)), colour = filled({10, 20}, 100);
    for (const auto join : {side_by_side, unordered}) {
        const cv::Mat picture = join({grey, colour}, true, false);
        EXPECT_EQ(place_of(picture, 100), cv::Rect(10, 0, 10, 20));
        EXPECT_EQ(cv::countNonZero(picture.reshape(1)), 600);
    }
}

TEST(JoinImagesOrdered, HasNoGridForFewerThanTwoImagesOrForFlatOnes) {
    for (const images& list : {images(), images(1, filled({10, 10}, 100)), images(3, cv::Mat(0, 5, CV_8UC3)),
                               images(2, filled({250000, 1}, 100))}) {
        EXPECT_TRUE(join_images_ordered(list, true, false).empty());
    }
}

TEST(JoinImagesUnordered, GivesBackASingleImageAsItIs) {
    const cv::Mat image(7, 5, CV_32FC1, cv::Scalar(3));
    EXPECT_EQ(join_images_unordered({image}, true, true).data, image.data);
}

TEST(JoinImages, EachJoinAddsItsFrameToAFailure) {
    const int sizes[] = {2, 2, 2};
    const cv::Mat solid(3, sizes, CV_8UC3);  // has neither rows nor columns to join by
    const cv::Mat plain = filled({10, 10}, 100);
    const cv::Mat wide(1, 2000000000, CV_8UC1, plain.data);
    const images empty_pair(2);  // only the fit fails
    const struct {
        join_function join;
        images list;
        unsigned int flags;
        std::vector<std::string> functions;
    } cases[] = {
        {on_top, {plain, solid}, 0, {"join_images_on_top"}},
        {side_by_side, {wide, wide}, 0, {"join_images_side_by_side"}},
        {side_by_side, empty_pair, fitted, {"join_images_side_by_side"}},
        {closer, {solid, plain}, 0, {"join_images(", "join_images_"}},
        {unordered, {plain, solid, plain}, 0, {"join_images_unordered", "join_images(", "join_images_"}},
        {unordered, empty_pair, fitted, {"join_images_unordered", "join_images(", "join_images_on_top"}},
        {unordered, {}, 0, {"join_images_unordered"}},
        {ordered, {plain, solid, plain}, 0, {"join_images_ordered", "join_images_"}},
        {ordered, {plain}, fitted, {"join_images_ordered"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        try {
            c.join(c.list, true, c.flags & fitted);
            ADD_FAILURE();
        } catch (const exception_l& e) {
            EXPECT_EQ(e.depth(), static_cast<int>(c.functions.size()) - 1);
            const std::string text = e.what();
            std::size_t frame = 0;
            for (const std::string& function : c.functions) {
                frame = text.find("image_utils", frame);
                const std::size_t signature = text.find('\n', frame), end = text.find('\n', signature + 1);
                EXPECT_THAT(text.substr(signature, end - signature), testing::HasSubstr(function));
                frame = end;
            }
        }
    }
}

TEST(ImageTitle, IsDrawnAtTheTopMiddleWithAWarningIfItDoesNotFit) {
    int baseline = 0;
    const cv::Size text = cv::getTextSize("A title", cv::FONT_HERSHEY_PLAIN, 1.0, 1, &baseline);
    const cv::Size room(text.width + 1, text.height + 1);
    for (const cv::Size& size : {cv::Size(171, 60), room, room - cv::Size(1, 0), room - cv::Size(0, 1)}) {
        cv::Mat image(size, CV_8UC3, cv::Scalar::all(0)), expected = image.clone();
        stream_capture errors(std::cerr);
        image_title(image, "A title", cv::FONT_HERSHEY_PLAIN, 1.0, cv::Scalar(10, 20, 30));
        std::ostringstream warning;
        warning << "Warning: in image_utils::image_title() : title has size of (" << text.width << ","
                << text.height << ") but image only has size of (" << size.width << "," << size.height
                << ")\n";
        EXPECT_EQ(errors.text(), size == room || size.height == 60 ? "" : warning.str());
        cv::putText(expected, "A title", {size.width / 2 - text.width / 2, text.height + 10},
                    cv::FONT_HERSHEY_PLAIN, 1.0, cv::Scalar(10, 20, 30), 1, cv::LINE_8, false);
        EXPECT_EQ(cv::norm(image, expected, cv::NORM_INF), 0.0);
    }
}

}  // namespace
}  // namespace zorv
