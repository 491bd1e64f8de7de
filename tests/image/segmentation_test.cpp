#include <gmock/gmock.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/image/images.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/image/image_utils.h"

namespace zorv {
namespace {

using internal::ipl_image_ptr;
using rows = std::vector<std::vector<int>>;

struct kernel_release {
    void operator()(IplConvKernel* kernel) const { cvReleaseStructuringElement(&kernel); }
};
using kernel_ptr = std::unique_ptr<IplConvKernel, kernel_release>;

kernel_ptr square_kernel() {
    return kernel_ptr(cvCreateStructuringElementEx(3, 3, 1, 1, CV_SHAPE_RECT, nullptr));
}

TEST(ThresholdImagePair, KeepsTheBandOfDepthInBothImages) {
    const rows depths{{0, 1, 10, 11, 20, 21, 254, 255}};
    struct {
        int low, high;
        rows kept;
    } const cases[] = {
        {10, 20, {{0, 0, 0, 11, 20, 0, 0, 0}}},       {-5, 1, {{0, 1, 0, 0, 0, 0, 0, 0}}},
        {0, 300, {{0, 1, 10, 11, 20, 21, 254, 255}}}, {253, 254, {{0, 0, 0, 0, 0, 0, 254, 0}}},
        {254, 1000, {{0, 0, 0, 0, 0, 0, 0, 255}}},    {255, 1000, {{0, 0, 0, 0, 0, 0, 0, 0}}},
        {20, 10, {{0, 0, 0, 0, 0, 0, 0, 0}}},         {-9, -1, {{0, 0, 0, 0, 0, 0, 0, 0}}},
    };
    for (const auto& c : cases) {
        for (const int channels : {1, 3, 4}) {
            SCOPED_TRACE(testing::Message() << c.low << " " << c.high << " " << channels);
            const ipl_image_ptr depth_owner = bytes_image(depths);
            const ipl_image_ptr app_owner = bytes_image(
                {std::vector<int>(depths[0].size() * static_cast<std::size_t>(channels), 99)}, channels);
            IplImage* depth = depth_owner.get();
            IplImage* app = app_owner.get();
            cvSetImageROI(depth, cvRect(2, 0, 1, 1));
            cvSetImageROI(app, cvRect(3, 0, 1, 1));
            threshold_image_pair(c.high, c.low, app, depth, nullptr, 1);
            EXPECT_EQ(depth, depth_owner.get());
            EXPECT_EQ(app, app_owner.get());
            EXPECT_EQ(bytes_of(depth), c.kept);
            rows expected(1);
            for (const int value : c.kept[0]) {
                expected[0].insert(expected[0].end(), static_cast<std::size_t>(channels), value ? 99 : 0);
            }
            EXPECT_EQ(bytes_of(app), expected);
        }
    }
}

TEST(ThresholdImagePair, CutsAllBytesOfDeepPixels) {
    const ipl_image_ptr depth_owner = bytes_image({{50, 5}, {5, 50}});
    const ipl_image_ptr app_owner(cvCreateImage(cvSize(2, 2), IPL_DEPTH_64F, 3));
    IplImage* depth = depth_owner.get();
    IplImage* app = app_owner.get();
    cvSet(app, cvScalarAll(0.1));
    threshold_image_pair(60, 40, app, depth, nullptr, 1);
    const cv::Mat cut = cv::cvarrToMat(app);
    EXPECT_EQ(cut.at<cv::Vec3d>(0, 0), cv::Vec3d(0.1, 0.1, 0.1));
    EXPECT_EQ(cut.at<cv::Vec3d>(1, 0), cv::Vec3d(0, 0, 0));
    EXPECT_EQ(cv::countNonZero(cut.reshape(1)), 6);
}

TEST(ThresholdImagePair, AKernelClosesHolesForTheAppearanceAlone) {
    const kernel_ptr kernel = square_kernel();
    const auto value = [](int x, int y) { return x > 2 && x < 8 && y > 2 && y < 8 ? 100 : 0; };
    const ipl_image_ptr depth_owner =
        bytes_image(12, 12, [&](int x, int y) { return x == 5 && y == 5 ? 240 : value(x, y); });
    const ipl_image_ptr app_owner = bytes_image(12, 12, [](int, int) { return 200; });
    IplImage* depth = depth_owner.get();
    IplImage* app = app_owner.get();
    threshold_image_pair(110, 90, app, depth, kernel.get(), 1);
    EXPECT_EQ(bytes_of(depth), bytes_of(bytes_image(12, 12, [&](int x, int y) {
                                            return x == 5 && y == 5 ? 0 : value(x, y);
                                        }).get()));
    EXPECT_EQ(bytes_of(app),
              bytes_of(bytes_image(12, 12, [&](int x, int y) { return 2 * value(x, y); }).get()));
}

TEST(ThresholdImagePair, RefusesADepthImageOfSeveralChannels) {
    const ipl_image_ptr depth_owner = bytes_image({{1, 2, 3}}, 3);
    const ipl_image_ptr app_owner = bytes_image({{5, 6}}, 2);
    IplImage* depth = depth_owner.get();
    IplImage* app = app_owner.get();
    stream_capture errors(std::cerr);
    threshold_image_pair(1, 0, app, depth, nullptr, 1);
    EXPECT_EQ(errors.text(),
              "depth image used for thresholding has 3 channels. Function only works for single channel\n"
              "app image passed had 2 channels.\n");
    EXPECT_EQ(bytes_of(depth), (rows{{1, 2, 3}}));
    EXPECT_EQ(bytes_of(app), (rows{{5, 6}}));
}

std::vector<int> centre_of(IplImage* image, IplConvKernel* kernel = nullptr) {
    int x = -1, y = -1;
    find_object_center(x, y, image, kernel, 1);
    return {x, y};
}

TEST(FindObjectCenter, IsTheTruncatedCentroidWithinTheRegion) {
    // one pixel, three of them (a mean of 5.66 and 2.33), and one outside the region
    struct {
        std::vector<cv::Point> points;
        std::vector<int> centre;
    } const cases[] = {
        {{{4, 3}}, {4, 3}},
        {{{5, 2}, {6, 2}, {6, 3}}, {5, 2}},
        {{{4, 3}, {1, 1}, {8, 3}, {4, 6}}, {4, 3}},
        {{{1, 1}}, {3 + 5 / 2, 2 + 3 / 2}},
        {{}, {3 + 5 / 2, 2 + 3 / 2}},
    };
    const unsigned int depths[] = {IPL_DEPTH_8U, IPL_DEPTH_16S, IPL_DEPTH_32S, IPL_DEPTH_32F, IPL_DEPTH_64F};
    for (const auto& c : cases) {
        for (const unsigned int depth : depths) {
            for (const int channels : {1, 2}) {
                SCOPED_TRACE(testing::Message() << c.points.size() << " " << depth << " " << channels);
                const ipl_image_ptr image(cvCreateImage(cvSize(10, 8), static_cast<int>(depth), channels));
                cvSet(image.get(), cvScalar(0, 9));
                for (const cv::Point& point : c.points) {
                    cvSet2D(image.get(), point.y, point.x, cvScalar(depth == IPL_DEPTH_16S ? 256 : 1, 0));
                }
                cvSetImageROI(image.get(), cvRect(3, 2, 5, 3));
                EXPECT_EQ(centre_of(image.get()), c.centre);
                EXPECT_EQ(region_of(image.get()), (std::vector<int>{3, 2, 5, 3}));
            }
        }
    }
}

TEST(FindObjectCenter, SetsTheWholeImageAsRegionAndCountsLongRows) {
    const ipl_image_ptr image =
        bytes_image(10000, 2, [](int x, int y) { return y == 1 && x >= 9000 ? 7 : 0; });
    EXPECT_EQ(centre_of(image.get()), (std::vector<int>{9499, 1}));
    EXPECT_EQ(region_of(image.get()), (std::vector<int>{0, 0, 10000, 2}));
}

TEST(FindObjectCenter, AKernelFillsHolesAndLeavesTheImage) {
    const kernel_ptr kernel = square_kernel();
    // a gap in a bar moves the centroid of the open image
    const ipl_image_ptr image =
        bytes_image(20, 9, [](int x, int y) { return y == 4 && x >= 4 && x < 12 && x != 10 ? 3 : 0; });
    const auto before = bytes_of(image.get());
    EXPECT_EQ(centre_of(image.get()), (std::vector<int>{7, 4}));
    cvSet2D(image.get(), 4, 9, cvScalarAll(0));
    EXPECT_EQ(centre_of(image.get()), (std::vector<int>{6, 4}));
    EXPECT_EQ(centre_of(image.get(), kernel.get()), (std::vector<int>{7, 4}));
    cvSet2D(image.get(), 4, 9, cvScalarAll(3));
    EXPECT_EQ(bytes_of(image.get()), before);
}

TEST(RecenterImage, PadsUntilThePointIsTheMiddle) {
    struct {
        int x, y;
        cv::Size size;
        cv::Point corner;
    } const cases[] = {
        {30, 60, {140, 120}, {40, 0}},
        {50, 40, {100, 80}, {0, 0}},
        {99, 0, {198, 160}, {0, 80}},
        {-5, 90, {210, 180}, {110, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.x);
        IplImage* image = bytes_image(100, 80, [](int x, int y) { return 1 + (x + y) % 250; }).release();
        const auto pixels = bytes_of(image);
        cvSetImageROI(image, cvRect(1, 1, 2, 2));
        recenter_image(c.x, c.y, image);
        const ipl_image_ptr owner(image);
        EXPECT_EQ(cv::Size(image->width, image->height), c.size);
        EXPECT_EQ(region_of(image), std::vector<int>());
        const ipl_image_ptr expected = bytes_image(c.size.width, c.size.height, [&](int x, int y) {
            const cv::Point old = cv::Point(x, y) - c.corner;
            return cv::Rect(0, 0, 100, 80).contains(old)
                       ? pixels[static_cast<std::size_t>(old.y)][static_cast<std::size_t>(old.x)]
                       : 0;
        });
        EXPECT_EQ(bytes_of(image), bytes_of(expected.get()));
    }
}

TEST(RecenterImage, KeepsDepthAndChannelsAndTheImageWhereNoneCanBeMade) {
    IplImage* image = cvCreateImage(cvSize(4, 4), IPL_DEPTH_32F, 3);
    cvSet(image, cvScalarAll(0.5));
    recenter_image(1, 2, image);
    const ipl_image_ptr owner(image);
    EXPECT_EQ(image->depth, static_cast<int>(IPL_DEPTH_32F));
    EXPECT_EQ(image->nChannels, 3);
    EXPECT_EQ(cvSum(image).val[2], 8.0);
    for (const int far : {std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 90000000}) {
        EXPECT_THROW(recenter_image(far, 2, image), cv::Exception);
        EXPECT_THROW(recenter_image(1, far, image), cv::Exception);
        EXPECT_EQ(image, owner.get());
    }
}

/// A square of depth 100 and side 20, its corner at (60, 30), on a background of another depth.
struct scene {
    explicit scene(int background)
        : app(bytes_image(100, 80, [](int x, int y) { return 1 + (x * 3 + y) % 250; }).release()),
          depth(bytes_image(100, 80, [=](int x, int y) {
                    return cv::Rect(60, 30, 20, 20).contains(cv::Point(x, y)) ? 100 : background;
                }).release()) {}
    ~scene() {
        cvReleaseImage(&app);
        cvReleaseImage(&depth);
    }

    IplImage* app;
    IplImage* depth;
};

TEST(SegmentAndRecentre, CutsByDepthAndMovesTheObjectToTheMiddle) {
    for (const int given_depth : {100, 0, -3}) {
        for (const bool with_kernel : {false, true}) {
            SCOPED_TRACE(testing::Message() << given_depth << with_kernel);
            const kernel_ptr kernel = with_kernel ? square_kernel() : nullptr;
            scene s(200);
            // mostly the object, so that the median is its depth
            cvSetImageROI(s.depth, cvRect(61, 31, 21, 17));
            segment_and_recentre(s.app, s.depth, 0.1, 2.0, 3.0, kernel.get(), 1, given_depth);
            // The square's centroid is (69, 39): its pixels run to 79 and 49.
            EXPECT_EQ(cv::Size(s.app->width, s.app->height), cv::Size(138, 82));
            EXPECT_EQ(cv::Size(s.depth->width, s.depth->height), cv::Size(138, 82));
            EXPECT_EQ(region_of(s.app), (std::vector<int>{58, 32, 21, 17}));
            EXPECT_EQ(region_of(s.depth), region_of(s.app));
            EXPECT_EQ(cvGet2D(s.app, 2 + 39 - 32, 69 - 58).val[0], 1 + (69 * 3 + 39) % 250);
            cvResetImageROI(s.depth);
            EXPECT_EQ(cvCountNonZero(s.depth), 400);
            cvResetImageROI(s.app);
            EXPECT_EQ(cvCountNonZero(s.app), 400);
        }
    }
}

TEST(SegmentAndRecentre, TheBandIsTruncatedAndIncludesItsUpperEnd) {
    // 1.3 times 77 is 100.1: the square stays; the lower end is 53.9, and 53 is below it
    scene s(53);
    cvSetImageROI(s.depth, cvRect(0, 0, 100, 80));
    segment_and_recentre(s.app, s.depth, 0.3, 1.0, 1.0, nullptr, 1, 77);
    EXPECT_EQ(cvCountNonZero(s.depth), 400);
}

TEST(SegmentAndRecentre, IsNotThresholdedWithoutAnObjectOrWithADepthOfSeveralChannels) {
    scene empty(255);
    cvSet(empty.depth, cvScalarAll(255));
    const double sum = cvSum(empty.app).val[0];
    segment_and_recentre(empty.app, empty.depth, 0.1, 1.0, 1.0, nullptr, 1, 0);
    // the centroid of all pixels is (49, 39)
    EXPECT_EQ(region_of(empty.app), (std::vector<int>{1, 1, 100, 80}));
    cvResetImageROI(empty.app);
    EXPECT_EQ(cvSum(empty.app).val[0], sum);

    scene colour(53);
    cvReleaseImage(&colour.depth);
    colour.depth = cvCreateImage(cvSize(100, 80), IPL_DEPTH_8U, 3);
    cvSet(colour.depth, cvScalar(9, 9, 9));
    cvSetImageROI(colour.depth, cvRect(0, 0, 100, 80));
    stream_capture errors(std::cerr);
    segment_and_recentre(colour.app, colour.depth, 0.1, 1.0, 1.0, nullptr, 1, 100);
    EXPECT_THAT(errors.text(), testing::HasSubstr("Function only works for single channel\n"));
    EXPECT_EQ(colour.depth->width, 102);
}

TEST(SegmentAndRecentre, LeavesUsableImagesWhenOpencvRefusesARegion) {
    scene s(200);
    cvSetImageROI(s.depth, cvRect(61, 31, 21, 17));
    for (const double factor : {0.0, -2.0, 1e300, std::nan("")}) {
        EXPECT_THROW(segment_and_recentre(s.app, s.depth, 0.1, 1.0, factor, nullptr, 1, 100), cv::Exception);
        EXPECT_EQ(s.app->width, s.depth->width);
        cvSetImageROI(s.depth, cvRect(0, 0, s.depth->width, s.depth->height));
    }
}

struct found_box {
    int width = 0, x = 0, y = 0;
};

/// The search as it is told, by counting pixels: the sums of the integral image leave out its first column
/// and row.
found_box search_by_counting(const IplImage* image, double aspect_ratio, int minimum_width,
                             double width_step) {
    const auto pixels = bytes_of(image);
    const auto sum = [&](int left, int top, int right, int bottom) {
        double total = 0.0;
        for (int y = top + 1; y <= bottom; ++y) {
            for (int x = left + 1; x <= right; ++x) {
                total += pixels[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] ? 255.0 : 0.0;
            }
        }
        return total;
    };
    found_box best;
    double best_score = -1.0;
    for (double w = minimum_width; w < image->width && w * aspect_ratio < image->height; w *= width_step) {
        const int bw = static_cast<int>(w), bh = static_cast<int>(w * aspect_ratio);
        const int m = static_cast<int>((std::sqrt(2.0) - 1.0) * 0.5 * bw);
        const int ow = bw + 2 * m, oh = static_cast<int>(ow * aspect_ratio);
        for (int y = m; y - m < image->height - oh; ++y) {
            for (int x = m; x - m < image->width - ow; ++x) {
                if (y + bh >= image->height || y - m + oh >= image->height) {
                    continue;
                }
                const double inside = sum(x, y, x + bw, y + bh);
                const double outside = sum(x - m, y - m, x + ow - m, y + oh - m);
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
    struct {
        int width, height;
        double aspect_ratio, step;
        int minimum_width, density;
    } const cases[] = {
        {40, 30, 1.0, 1.2, 5, 50},  {40, 30, 0.75, 1.1, 1, 5},  {30, 40, 1.6, 1.5, 4, 90},
        {40, 20, 0.3, 1.3, 5, 30},  {40, 20, 0.21, 1.3, 5, 20}, {25, 25, 1.0, 2.0, 2, 0},
        {25, 25, 1.0, 2.0, 2, 100}, {12, 60, 4.0, 1.01, 1, 40}, {40, 12, 0.1, 1.1, 1, 40},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << " " << c.aspect_ratio << " " << c.minimum_width);
        std::uniform_int_distribution<int> percent(0, 99);
        const ipl_image_ptr owner =
            bytes_image(c.width, c.height, [&](int, int) { return percent(random) < c.density ? 1 : 0; });
        const auto before = bytes_of(owner.get());
        const found_box expected = search_by_counting(owner.get(), c.aspect_ratio, c.minimum_width, c.step);
        IplImage* image = owner.get();
        found_box found{-1, -1, -1};
        centre_surround_check(image, c.aspect_ratio, found.width, found.x, found.y, c.minimum_width, c.step);
        EXPECT_EQ(found.width, expected.width);
        EXPECT_EQ(found.x, expected.x);
        EXPECT_EQ(found.y, expected.y);
        EXPECT_EQ(bytes_of(image), before);
    }
}

TEST(CentreSurroundCheck, FindsABrightBox) {
    const ipl_image_ptr owner = bytes_image(
        120, 90, [](int x, int y) { return cv::Rect(41, 31, 30, 20).contains(cv::Point(x, y)) ? 60 : 0; });
    IplImage* image = owner.get();
    found_box found;
    centre_surround_check(image, 2.0 / 3.0, found.width, found.x, found.y, 15, 2.0);
    EXPECT_EQ(found.width, 30);
    EXPECT_EQ(found.x, 40);
    EXPECT_EQ(found.y, 30);
}

TEST(CentreSurroundCheck, HasNoBoxWhereNoneFitsAndTheFirstWhereAllAreEqual) {
    struct {
        ipl_image_ptr image;
        double aspect_ratio;
        int minimum_width;
        std::vector<int> box;
    } const cases[] = {
        {bytes_image(30, 30, [](int, int) { return 0; }), 1.0, 10, {10, 2, 2}},
        {bytes_image(30, 30, [](int, int) { return 0; }), 1.0, 30, {0, 0, 0}},
        {bytes_image(30, 30, [](int, int) { return 0; }), 4.0, 8, {0, 0, 0}},
        {bytes_image(30, 30, [](int, int) { return 1; }), std::nan(""), 8, {0, 0, 0}},
        // neither box nor ring has an area
        {bytes_image(30, 30, [](int, int) { return 1; }), 0.0, 8, {0, 0, 0}},
        {bytes_image(30, 30, [](int, int) { return 1; }), -1.5, 8, {8, 1, 16}},
        // a ring without area: the margin of a narrow box is 0
        {bytes_image(4, 4, [](int, int) { return 1; }), 1.0, 3, {0, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.aspect_ratio);
        IplImage* image = c.image.get();
        found_box found{-1, -1, -1};
        centre_surround_check(image, c.aspect_ratio, found.width, found.x, found.y, c.minimum_width, 2.0);
        EXPECT_EQ((std::vector<int>{found.width, found.x, found.y}), c.box);
    }
    const ipl_image_ptr colour = bytes_image({{1, 2, 3}}, 3);
    IplImage* image = colour.get();
    found_box found{-1, -1, -1};
    stream_capture errors(std::cerr);
    centre_surround_check(image, 1.0, found.width, found.x, found.y, 1, 2.0);
    EXPECT_EQ((std::vector<int>{found.width, found.x, found.y}), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(errors.text(), "Error image input to integral image creator has 3 and should only have 1.\n");
}

}  // namespace
}  // namespace zorv
