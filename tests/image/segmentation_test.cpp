#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/image/images.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/image/image_utils.h"

namespace zorv {
namespace {

const std::shared_ptr<IplConvKernel> square_kernel(cvCreateStructuringElementEx(3, 3, 1, 1, CV_SHAPE_RECT,
                                                                                nullptr),
                                                   [](IplConvKernel* kernel) {
                                                       cvReleaseStructuringElement(&kernel);
                                                   });

TEST(ThresholdImagePair, KeepsTheBandOfDepthInBothImages) {
    const struct {
        int low, high;
        std::vector<int> kept;
    } cases[] = {
        {10, 20, {0, 0, 0, 11, 20, 0, 0, 0}},       {-5, 1, {0, 1, 0, 0, 0, 0, 0, 0}},
        {0, 300, {0, 1, 10, 11, 20, 21, 254, 255}}, {253, 254, {0, 0, 0, 0, 0, 0, 254, 0}},
        {254, 1000, {0, 0, 0, 0, 0, 0, 0, 255}},    {255, 1000, {0, 0, 0, 0, 0, 0, 0, 0}},
        {20, 10, {0, 0, 0, 0, 0, 0, 0, 0}},         {-9, -1, {0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        for (const int i : {1, 3, 4, 6}) {
            SCOPED_TRACE(testing::Message() << c.low << " " << c.high << " " << i);
            test_image depth({{0, 1, 10, 11, 20, 21, 254, 255}});
            test_image app(8, 1, i == 6 ? IPL_DEPTH_64F : IPL_DEPTH_8U, i == 6 ? 3 : i, 99.0);
            const cv::Scalar pixel = cvGet2D(app, 0, 0);
            cvSetImageROI(depth, cvRect(2, 0, 1, 1));
            cvSetImageROI(app, cvRect(3, 0, 1, 1));
            threshold_image_pair(c.high, c.low, app, depth, nullptr, 1);
            EXPECT_EQ(depth.bytes(), byte_rows{c.kept});
            cvResetImageROI(depth);
            cvResetImageROI(app);
            for (int x = 0; x < 8; ++x) {
                const bool kept = cvGetReal2D(depth, 0, x) > 0.0;
                EXPECT_EQ(cv::Scalar(cvGet2D(app, 0, x)), kept ? pixel : cv::Scalar());
            }
        }
    }
}

TEST(ThresholdImagePair, AKernelClosesHolesForTheAppearanceAlone) {
    const auto square = [](int x, int y) { return x > 2 && x < 8 && y > 2 && y < 8 ? 100 : 0; };
    const auto at_hole = [](int x, int y) { return x == 5 && y == 5; };
    test_image depth(12, 12, [&](int x, int y) { return at_hole(x, y) ? 240 : square(x, y); });
    test_image app(12, 12, IPL_DEPTH_8U, 1, 100.0);
    threshold_image_pair(110, 90, app, depth, square_kernel.get(), 1);
    EXPECT_EQ(app.bytes(), test_image(12, 12, square).bytes());
    EXPECT_EQ(depth.bytes(),
              test_image(12, 12, [&](int x, int y) { return at_hole(x, y) ? 0 : square(x, y); }).bytes());
}

TEST(ThresholdImagePair, RefusesADepthImageOfSeveralChannels) {
    test_image depth({{1, 2, 3}}, 3);
    test_image app({{5, 6}}, 2);
    stream_capture errors(std::cerr);
    threshold_image_pair(1, 0, app, depth, nullptr, 1);
    EXPECT_EQ(errors.text(),
              "depth image used for thresholding has 3 channels. Function only works for single channel\n"
              "app image passed had 2 channels.\n");
    EXPECT_EQ(depth.bytes(), (byte_rows{{1, 2, 3}}));
    EXPECT_EQ(app.bytes(), (byte_rows{{5, 6}}));
}

cv::Point centre_of(IplImage* image, IplConvKernel* kernel = nullptr, int iterations = 1) {
    cv::Point centre(-1, -1);
    find_object_center(centre.x, centre.y, image, kernel, iterations);
    return centre;
}

TEST(FindObjectCenter, IsTheTruncatedCentroidWithinTheRegion) {
    const struct {
        std::vector<cv::Point> points;
        cv::Point centre;
    } cases[] = {
        {{{4, 3}}, {4, 3}},
        {{{5, 2}, {6, 2}, {6, 3}}, {5, 2}},          // means of 5.66 and 2.33
        {{{4, 3}, {1, 1}, {8, 3}, {4, 6}}, {4, 3}},  // all but the first are outside
        {{{1, 1}}, {3 + 5 / 2, 2 + 3 / 2}},
    };
    for (const auto& c : cases) {
        for (const unsigned int depth : ipl_depths) {
            for (const int channels : {1, 2}) {
                SCOPED_TRACE(testing::Message() << c.points.size() << " " << depth << " " << channels);
                test_image image(10, 8, depth, channels);
                cvSet(image, cvScalar(0, 9));
                for (const cv::Point& point : c.points) {
                    // a low byte of 0, where there are more
                    cvSet2D(image, point.y, point.x, cvScalar((depth & 255) == 8 ? 1 : 256, 0));
                }
                cvSetImageROI(image, cvRect(3, 2, 5, 3));
                EXPECT_EQ(centre_of(image), c.centre);
                EXPECT_EQ(image.region(), cv::Rect(3, 2, 5, 3));
            }
        }
    }
    // the columns add up to more than 32 bits hold
    test_image wide(70000, 2, [](int, int y) { return 7 * y; });
    EXPECT_EQ(centre_of(wide), cv::Point(34999, 1));
    EXPECT_EQ(wide.region(), cv::Rect(0, 0, 70000, 2));
}

TEST(FindObjectCenter, AKernelFillsHolesAndLeavesTheImage) {
    // a gap in a bar moves the centroid of the open image
    test_image image(20, 9,
                     [](int x, int y) { return y == 4 && x >= 4 && x < 12 && (x < 7 || x > 10) ? 3 : 0; });
    const byte_rows before = image.bytes();
    EXPECT_EQ(centre_of(image), cv::Point(6, 4));
    EXPECT_EQ(centre_of(image, square_kernel.get()), cv::Point(6, 4));
    EXPECT_EQ(centre_of(image, square_kernel.get(), 2), cv::Point(7, 4));
    EXPECT_EQ(image.bytes(), before);
}

TEST(RecenterImage, PadsUntilThePointIsTheMiddle) {
    const struct {
        int x, y;
        cv::Size size;
        cv::Point corner;
    } cases[] = {
        {30, 60, {140, 120}, {40, 0}},
        {50, 40, {100, 80}, {0, 0}},
        {99, 0, {198, 160}, {0, 80}},
        {-5, 90, {210, 180}, {110, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.x);
        const auto value = [](int x, int y) { return 1 + (x + y) % 250; };
        test_image image(100, 80, value);
        cvSetImageROI(image, cvRect(1, 1, 2, 2));
        recenter_image(c.x, c.y, image);
        EXPECT_EQ(image.size(), c.size);
        EXPECT_EQ(image.region(), cv::Rect());
        const test_image expected(c.size.width, c.size.height, [&](int x, int y) {
            const cv::Point old = cv::Point(x, y) - c.corner;
            return cv::Rect(0, 0, 100, 80).contains(old) ? value(old.x, old.y) : 0;
        });
        EXPECT_EQ(image.bytes(), expected.bytes());
    }
}

TEST(RecenterImage, KeepsDepthAndChannelsAndTheImageWhereNoneCanBeMade) {
    test_image image(4, 4, IPL_DEPTH_32F, 3, 0.5), flat(10, 1, IPL_DEPTH_8U, 1);
    recenter_image(1, 2, image);
    EXPECT_EQ(image->depth, static_cast<int>(IPL_DEPTH_32F));
    EXPECT_EQ(cvSum(image).val[2], 8.0);
    const IplImage* const kept = image;
    for (const int far : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 90000000}) {
        EXPECT_THROW(recenter_image(far, 2, image), cv::Exception);
        EXPECT_THROW(recenter_image(1, far, image), cv::Exception);
    }
    EXPECT_THROW(recenter_image(100000, 1000, image), cv::Exception);
    EXPECT_EQ(static_cast<IplImage*>(image), kept);
    // small enough as a whole, but with rows that OpenCV cannot count the bits of
    EXPECT_THROW(recenter_image(300000000, 0, flat), cv::Exception);
}

/// A square of depth 100 and side 20, its corner at (60, 30), on a background of another depth.
struct scene {
    scene(int background, const CvRect& region) : depth(100, 80, IPL_DEPTH_8U, 1, background) {
        cv::cvarrToMat(depth)(cv::Rect(60, 30, 20, 20)).setTo(100);
        cvSetImageROI(depth, region);
    }

    test_image app{100, 80, [](int x, int y) { return 1 + (x * 3 + y) % 250; }};
    test_image depth;
};

TEST(SegmentAndRecentre, CutsByDepthAndMovesTheObjectToTheMiddle) {
    for (const int given_depth : {100, 0, -3}) {
        for (IplConvKernel* const kernel : {square_kernel.get(), static_cast<IplConvKernel*>(nullptr)}) {
            // mostly the object, so that the median is its depth
            scene s(200, cvRect(61, 31, 21, 17));
            segment_and_recentre(s.app, s.depth, 0.1, 2.0, 3.0, kernel, 1, given_depth);
            // The square's centroid is (69, 39): its pixels run to 79 and 49.
            EXPECT_EQ(s.app.size(), cv::Size(138, 82));
            EXPECT_EQ(s.depth.size(), cv::Size(138, 82));
            EXPECT_EQ(s.app.region(), cv::Rect(58, 32, 21, 17));
            EXPECT_EQ(s.depth.region(), s.app.region());
            EXPECT_EQ(s.app.bytes()[2 + 39][69], 1 + (69 * 3 + 39) % 250);
            for (IplImage* image : {static_cast<IplImage*>(s.app), static_cast<IplImage*>(s.depth)}) {
                cvResetImageROI(image);
                EXPECT_EQ(cvCountNonZero(image), 400);
            }
        }
    }
}

TEST(SegmentAndRecentre, TruncatesTheBand) {
    // 1.3 times 77 is 100.1: the square stays; the lower end is 53.9, and 54 lies above 53
    for (const auto& [background, left] : {std::pair(53, 400), std::pair(54, 8000)}) {
        scene s(background, cvRect(0, 0, 100, 80));
        segment_and_recentre(s.app, s.depth, 0.3, 1.0, 1.0, nullptr, 1, 77);
        cvResetImageROI(s.depth);
        EXPECT_EQ(cvCountNonZero(s.depth), left);
    }
}

TEST(SegmentAndRecentre, IsNotThresholdedWithoutAnObjectOrWithADepthOfSeveralChannels) {
    scene s(255, cvRect(0, 0, 50, 30));
    const double sum = cvSum(s.app).val[0];
    segment_and_recentre(s.app, s.depth, 0.1, 2.0, 3.0, nullptr, 1, 0);
    // around (37, 29), the centroid of the region widened to 75 by 60
    EXPECT_EQ(s.app.size(), cv::Size(126, 102));
    EXPECT_EQ(s.app.region(), cv::Rect(38, 36, 50, 30));
    cvResetImageROI(s.app);
    EXPECT_EQ(cvSum(s.app).val[0], sum);

    test_image colour(120, 116, IPL_DEPTH_8U, 3, 9.0);
    stream_capture errors(std::cerr);
    segment_and_recentre(s.app, colour, 0.1, 1.0, 1.0, nullptr, 1, 100);
    EXPECT_THAT(errors.text(), testing::HasSubstr("Function only works for single channel\n"));
    EXPECT_EQ(colour.size(), cv::Size(122, 118));
    // 120 by 116 in the middle of the width of the one, 134, and of the height of the other
    EXPECT_EQ(colour.region(), cv::Rect(7, 1, 115, 116));
}

TEST(SegmentAndRecentre, LeavesUsableImagesWhenOpencvRefusesARegion) {
    for (const double factor : {0.0, -2.0, 1e300, std::nan("")}) {
        scene s(200, cvRect(61, 31, 21, 17));
        EXPECT_THROW(segment_and_recentre(s.app, s.depth, 0.1, 1.0, factor, nullptr, 1, 100), cv::Exception);
        EXPECT_EQ(s.app.size(), s.depth.size());
    }
}

/// Width and corner.
using box = std::vector<int>;

box check(IplImage* image, double aspect_ratio, int minimum_width, double width_step) {
    box found{-1, -1, -1};
    centre_surround_check(image, aspect_ratio, found[0], found[1], found[2], minimum_width, width_step);
    return found;
}

/// The same search by counting pixels: the sums of the integral image leave out its first column and row.
box search_by_counting(IplImage* image, double aspect_ratio, int minimum_width, double width_step) {
    const cv::Mat pixels = cv::cvarrToMat(image);
    const auto sum = [&](int x, int y, int width, int height) {
        return 255.0 * cv::countNonZero(pixels(cv::Rect(x + 1, y + 1, width, height)));
    };
    box best{0, 0, 0};
    double best_score = -1.0;
    for (double w = minimum_width; w < pixels.cols && w * aspect_ratio < pixels.rows; w *= width_step) {
        const int bw = static_cast<int>(w), bh = static_cast<int>(w * aspect_ratio);
        const int m = static_cast<int>((std::sqrt(2.0) - 1.0) * 0.5 * bw);
        const int ow = bw + 2 * m, oh = static_cast<int>(ow * aspect_ratio);
        for (int y = m; y - m < pixels.rows - oh; ++y) {
            for (int x = m; x - m < pixels.cols - ow; ++x) {
                if (y + bh >= pixels.rows || y - m + oh >= pixels.rows) {
                    continue;
                }
                const double inside = sum(x, y, bw, bh);
                const double outside = sum(x - m, y - m, ow, oh);
                const double score = inside / (bw * bh) - (outside - inside) / (ow * oh - bw * bh);
                if (score > best_score) {
                    best_score = score;
                    best = {bw, x, y};
                }
            }
        }
    }
    return best;
}

TEST(CentreSurroundCheck, FindsTheBoxThatASearchByCountingFinds) {
    std::mt19937 random(4);
    const struct {
        int width, height;
        double aspect_ratio, step;
        int minimum_width, density;
    } cases[] = {
        {40, 30, 1.0, 1.2, 5, 50},
        {40, 30, 0.75, 1.1, 1, 5},
        {30, 40, 1.6, 1.5, 4, 90},
        {40, 20, 0.3, 1.3, 5, 30},
        {40, 20, 0.21, 1.3, 5, 20},
        {25, 25, 1.0, 2.0, 2, 0},
        {25, 25, 1.0, 2.0, 2, 100},
        {12, 60, 4.0, 1.01, 1, 40},
        {40, 12, 0.1, 1.1, 1, 40},
        // too large, or without an area; the margin of a narrow box is 0, and its ring has none
        {30, 30, 1.0, 2.0, 30, 9},
        {30, 30, 4.0, 2.0, 8, 9},
        {30, 30, std::nan(""), 2.0, 8, 9},
        {30, 30, 0.0, 2.0, 8, 100},
        {4, 4, 1.0, 2.0, 3, 100},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << " " << c.aspect_ratio << " " << c.minimum_width);
        std::uniform_int_distribution<int> percent(0, 99);
        test_image image(c.width, c.height, [&](int, int) { return percent(random) < c.density ? 1 : 0; });
        const byte_rows before = image.bytes();
        EXPECT_EQ(check(image, c.aspect_ratio, c.minimum_width, c.step),
                  search_by_counting(image, c.aspect_ratio, c.minimum_width, c.step));
        EXPECT_EQ(image.bytes(), before);
    }
}

TEST(CentreSurroundCheck, FindsBoxesKnownBeforehand) {
    test_image tall(120, 190, [](int x, int y) {
        return cv::Rect(41, 131, 30, 20).contains({x, y}) ? 60 : 0;
    });
    EXPECT_EQ(check(tall, 2.0 / 3.0, 15, 2.0), (box{30, 40, 130}));
    // where all are equal, the first
    test_image black(60, 60, IPL_DEPTH_8U, 1), white(30, 30, IPL_DEPTH_8U, 1, 1.0);
    EXPECT_EQ(check(black, 1.0, 29, 2.0), (box{29, 6, 6}));
    // upside down, as far as the corners lie inside
    EXPECT_EQ(check(white, -1.5, 8, 2.0), (box{8, 1, 16}));
    test_image colour({{1, 2, 3}}, 3);
    stream_capture errors(std::cerr);
    EXPECT_EQ(check(colour, 1.0, 1, 2.0), (box{0, 0, 0}));
    EXPECT_EQ(errors.text(), "Error image input to integral image creator has 3 and should only have 1.\n");
}

}  // namespace
}  // namespace zorv
