#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tests/image/images.h"
#include "tests/support/matchers.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/image/image_utils.h"

namespace zorv {
namespace {

TEST(BinaryImageConvert, ThresholdsEveryElementWhateverTheRegion) {
    for (const int threshold : {-300, -1, 0, 1, 128, 255, 256, 1000}) {
        test_image image({{0, 1, 2, 127, 128, 129}, {254, 255, 0, 3, 200, 1}}, 3);
        byte_rows expected = image.bytes();
        for (auto& row : expected) {
            for (int& value : row) {
                value = value < threshold ? 0 : 255;
            }
        }
        cvSetImageROI(image, cvRect(1, 1, 1, 1));
        binary_image_convert(image, threshold);
        EXPECT_EQ(image.bytes(), expected) << threshold;
        EXPECT_EQ(internal::row_bytes(image, 0)[6], 77) << "behind the row's end";
    }
}

TEST(BinaryImageConvert, RefusesOtherDepths) {
    test_image image(5, 3, IPL_DEPTH_8S, 1, 100.0);
    stream_capture errors(std::cerr);
    binary_image_convert(image, 1);
    EXPECT_EQ(errors.text(),
              "Image input to binary_image_convert was not 8 bit colour depth. (won't take long to code if "
              "necesary)\n");
    EXPECT_EQ(cvSum(image).val[0], 1500.0);
}

TEST(CombineDepthMaps, FillsTheHolesOfTheFirst) {
    test_image first({{240, 241, 241, 241, 255, 0, 255}});
    test_image second({{7, 240, 241, 255, 0, 9, 254}});
    cvSetImageROI(first, cvRect(0, 0, 1, 1));
    combine_depth_maps(first, second);
    EXPECT_EQ(first.bytes(), (byte_rows{{240, 240, 255, 255, 0, 0, 255}}));

    test_image three({{250, 251, 252, 10, 253, 254, 241, 8, 9}}, 3);
    test_image other({{1, 2, 3, 4, 5, 6, 7, 5, 5}}, 3);
    combine_depth_maps(three, other);
    EXPECT_EQ(three.bytes(), (byte_rows{{1, 251, 252, 10, 253, 254, 7, 8, 9}}));
}

TEST(CombineDepthMaps, RefusesMapsThatDoNotMatch) {
    test_image map(3, 2, IPL_DEPTH_8U, 1, 250.0), wide(4, 2, IPL_DEPTH_8U, 1), flat(3, 1, IPL_DEPTH_8U, 1);
    test_image deep(3, 2, IPL_DEPTH_16S, 1), colour(3, 2, IPL_DEPTH_8U, 2), other(4, 1, IPL_DEPTH_16S, 2);
    stream_capture errors(std::cerr);
    for (test_image* second : {&wide, &flat, &deep, &colour, &other}) {
        errors.clear();
        combine_depth_maps(map, *second);
        EXPECT_NE(errors.text(), "");
        EXPECT_EQ(cvSum(map).val[0], 1500.0);
    }
    EXPECT_EQ(errors.text(),
              "The 2 depth maps to be combined do not match: widths=3,4 heights=2,1 depths=8,-2147483632 "
              "nChannels=1,2\n");
}

using range = std::pair<double, double>;

range range_of(const cv::Mat& image) {
    range result(1.0, 2.0);
    image_range(image, result.first, result.second);
    return result;
}

TEST(ImageRange, TakesInAllElementsOfEveryDepth) {
    for (int depth = CV_8U; depth <= CV_64F; ++depth) {
        for (int channels = 1; channels <= 4; ++channels) {
            // a sub-matrix amid values that are out of its range
            const cv::Mat whole(12, 60, CV_MAKETYPE(depth, channels), cv::Scalar::all(-127));
            cv::Mat image = whole(cv::Rect(3, 2, 41, 7));
            cv::randu(image, cv::Scalar::all(-120), cv::Scalar::all(120));
            range expected;
            cv::minMaxLoc(image.clone().reshape(1), &expected.first, &expected.second);
            EXPECT_EQ(range_of(image), expected) << depth << " " << channels;
        }
    }
}

TEST(ImageRange, PassesOverWhatIsNotANumberUnlessItComesFirst) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    cv::Mat_<float> row(1, 40, 1.0f);
    row.colRange(8, 32) = nan;
    row(3) = -2.0f;
    row(35) = 3.0f;
    EXPECT_EQ(range_of(row), range(-2.0, 3.0));
    EXPECT_EQ(range_of(row.t()), range(-2.0, 3.0));
    row(0) = nan;
    EXPECT_TRUE(std::isnan(range_of(row).first) && std::isnan(range_of(row).second));
}

TEST(ImageRange, FailsAsACheckedReadDoes) {
    EXPECT_EQ(range_of(cv::Mat(0, 7, CV_8UC(5))), range(1.0, 2.0));
    EXPECT_EQ(range_of(cv::Mat()), range(1.0, 2.0));
    EXPECT_THROW(range_of(cv::Mat::zeros(2, 2, CV_8UC(5))), exception_l);
    stream_capture errors(std::cerr);
    EXPECT_THROW(range_of(cv::Mat::zeros(2, 2, CV_MAKETYPE(7, 1))), std::logic_error);
}

TEST(ImageNormalise, DividesEachChannelByItsRangeWithoutAShift) {
    cv::Mat one = cv::Mat_<unsigned char>({1, 3}, {100, 150, 200});
    EXPECT_EQ(cv::norm(image_normalise(one), cv::Mat_<double>({1, 3}, {1.0, 1.5, 2.0}), cv::NORM_INF), 0.0);
    EXPECT_EQ(one.at<unsigned char>(0, 0), 100);

    // more rows than are worked on at a time, and more channels than a pixel can be read of
    cv::Mat six(70, 2, CV_16SC(6), cv::Scalar::all(0));
    for (int c = 0; c < 6; ++c) {
        six.ptr<short>(69)[6 + c] = static_cast<short>(-10 * (c + 1));
    }
    const cv::Mat normalised = image_normalise(six);
    ASSERT_EQ(normalised.type(), CV_64FC(6));
    EXPECT_EQ(cv::sum(normalised.reshape(1))[0], -6.0);
    EXPECT_EQ(normalised.ptr<double>(69)[11], -1.0);

    cv::Mat no_rows(0, 5, CV_8UC3), constant(1, 1, CV_32FC1, cv::Scalar(3));
    EXPECT_THROW(image_normalise(no_rows), cv::Exception);
    EXPECT_TRUE(std::isinf(image_normalise(constant).at<double>(0, 0)));
}

/// Takes the sets over from a caller.
struct owned_pyramid {
    ~owned_pyramid() {
        for (auto* set : sets) {
            for (IplImage* image : *set) {
                cvReleaseImage(&image);
            }
            delete set;
        }
    }
    std::vector<std::vector<IplImage*>*> sets;
};

TEST(CreateImagePyramid, SmoothsTheOriginalsAtEachLevel) {
    test_image first(40, 30, [](int x, int y) { return (x * 37 + y * 11) % 256; });
    test_image second(9, 21, IPL_DEPTH_32F, 3, 0.5);
    std::vector<IplImage*> images{first, second};
    owned_pyramid pyramid;
    create_image_pyramid(&images, &pyramid.sets, 3, 2.0);
    ASSERT_EQ(pyramid.sets.size(), 4u);
    for (std::size_t level = 0; level < 4; ++level) {
        ASSERT_EQ(pyramid.sets[level]->size(), 2u);
        for (std::size_t i = 0; i < 2; ++i) {
            cv::Mat expected = cv::cvarrToMat(images[i]).clone();
            if (level > 0) {
                const double sigma = std::sqrt(std::pow(2.0, static_cast<double>(level) - 1.0));
                cv::GaussianBlur(expected, expected, cv::Size(), sigma, 0.0, cv::BORDER_REPLICATE);
            }
            IplImage* const image = (*pyramid.sets[level])[i];
            EXPECT_NE(image, images[i]);
            EXPECT_EQ(cv::norm(cv::cvarrToMat(image), expected, cv::NORM_INF), 0.0) << level;
        }
    }
}

TEST(CreateImagePyramid, UsesTheFirstSetThatIsThereAndKeepsWhatItHasMadeWhenSmoothingFails) {
    owned_pyramid pyramid, failed;
    pyramid.sets.push_back(new std::vector<IplImage*>{cvCreateImage(cvSize(3, 1), IPL_DEPTH_8U, 1)});
    create_image_pyramid(pyramid.sets[0], &pyramid.sets, 1, 2.0);
    ASSERT_EQ(pyramid.sets.size(), 3u);
    EXPECT_EQ(pyramid.sets[0]->size(), 2u);
    EXPECT_EQ(pyramid.sets[1]->size(), 1u);
    EXPECT_TRUE(pyramid.sets[2]->empty());

    // smoothing finds source and result of different sizes
    cvSetImageROI((*pyramid.sets[0])[0], cvRect(0, 0, 2, 1));
    EXPECT_THROW(create_image_pyramid(pyramid.sets[0], &failed.sets, 2, 2.0), cv::Exception);
    ASSERT_EQ(failed.sets.size(), 2u);
    EXPECT_EQ(failed.sets[0]->size(), 2u);
}

TEST(CreateIntegralImage, SumsByColumnThenRow) {
    // sizes on both sides of the tile that is turned at a time
    for (const cv::Size& size : {cv::Size(3, 2), cv::Size(64, 33), cv::Size(67, 31), cv::Size(1, 200)}) {
        test_image image(size.width, size.height, [](int x, int y) { return (x * 31 + y * y) % 256; });
        cv::Mat expected;
        cv::integral(cv::cvarrToMat(image), expected, CV_64F);
        cvSetImageROI(image, cvRect(0, 1, 1, 1));
        const std::unique_ptr<matrix<double>> sums(create_integral_image(image));
        expected = expected(cv::Rect({1, 1}, size)).t();
        std::vector<std::vector<double>> columns;
        for (int x = 0; x < size.width; ++x) {
            columns.push_back(expected.row(x));
        }
        EXPECT_THAT(*sums, matrix_near(columns, 0.0));
    }
}

TEST(CreateIntegralImage, RefusesSeveralChannelsAndIsEmptyWithoutRows) {
    test_image colour({{1, 2, 3}}, 3);
    stream_capture errors(std::cerr);
    EXPECT_EQ(create_integral_image(colour), nullptr);
    EXPECT_EQ(errors.text(), "Error image input to integral image creator has 3 and should only have 1.\n");
    const internal::ipl_image_ptr flat(cvCreateImageHeader(cvSize(4, 0), IPL_DEPTH_8U, 1));
    const std::unique_ptr<matrix<double>> sums(create_integral_image(flat.get()));
    EXPECT_EQ(sums->get_dim1(), 0u);
}

TEST(ImageMedian, IsTheUpperMiddleValueOfTheRegion) {
    const struct {
        byte_rows rows;
        int channels;
        bool ignore_extremes;
        cv::Rect region;
        int median;
    } cases[] = {
        {{{10, 20}}, 1, false, {}, 0},
        {{{40, 10}, {30, 20}}, 1, false, {}, 30},
        {{{10, 255, 20, 0, 30}}, 1, true, {}, 20},
        {{{254, 255, 1, 0, 254}}, 1, true, {}, 254},
        {{{0, 0, 0}, {0, 0, 0}}, 1, true, {}, 0},
        {{{0, 255, 255}}, 1, false, {}, 255},
        {{{5, 1, 6, 2, 7, 3}}, 2, false, {}, 6},
        {{{0, 1, 2, 3}, {10, 11, 12, 13}, {20, 21, 22, 23}, {99, 99, 99, 99}}, 1, false, {2, 0, 2, 3}, 13},
        {{{1, 99, 2, 98, 30, 97, 40, 96, 50, 95}}, 2, false, {2, 0, 3, 1}, 40},
    };
    for (const auto& c : cases) {
        test_image image(c.rows, c.channels);
        if (!c.region.empty()) {
            cvSetImageROI(image, cvRect(c.region));
        }
        EXPECT_EQ(image_median(image, c.ignore_extremes), c.median);
        EXPECT_EQ(image.region(), c.region.empty() ? cv::Rect({0, 0}, image.size()) : c.region);
    }
}

TEST(ConvertRes, LetterboxesToFourByThreeAndScales) {
    const struct {
        cv::Size image, result;
        cv::Rect place;
    } cases[] = {
        {{100, 100}, {133, 100}, {16, 0, 100, 100}},
        {{101, 50}, {101, 75}, {0, 12, 101, 50}},
        {{640, 480}, {320, 240}, {0, 0, 320, 240}},
        {{200, 50}, {100, 75}, {0, 25, 100, 25}},
    };
    for (const auto& c : cases) {
        cv::Mat image(c.image, CV_8UC3, cv::Scalar::all(255)), marks;
        convert_res(image, c.result.width, c.result.height);
        EXPECT_EQ(image.size(), c.result);
        cv::inRange(image, cv::Scalar::all(128), cv::Scalar::all(255), marks);
        EXPECT_EQ(cv::boundingRect(marks), c.place);
        EXPECT_EQ(cv::countNonZero(marks), c.place.area());
    }
    cv::Mat noise(30, 40, CV_8UC3), scaled;
    cv::randu(noise, 0, 256);
    cv::resize(noise, scaled, cv::Size(17, 11), 0.0, 0.0, cv::INTER_LINEAR);
    convert_res(noise, 17, 11);
    EXPECT_EQ(cv::norm(noise, scaled, cv::NORM_INF), 0.0);
    cv::Mat grey(10, 10, CV_8UC1, cv::Scalar(255)), empty;
    convert_res(grey, 8, 6);
    EXPECT_EQ(cv::norm(grey, cv::Mat::zeros(6, 8, CV_8UC3)), 0.0);
    EXPECT_THROW(convert_res(empty, 8, 6), cv::Exception);
}

class ImageRegionCopy : public testing::Test {
protected:
    test_image source{10, 8, [](int x, int y) { return 10 + 10 * y + x; }};
    test_image dest{8, 6, IPL_DEPTH_8U, 1, 5.0};
};

TEST_F(ImageRegionCopy, ClipsBothRegionsByTheRulesInTheirOrder) {
    const struct {
        CvRect source, dest;
        cv::Rect clipped_source, clipped_dest;
    } cases[] = {
        {{1, 1, 4, 3}, {2, 0, 4, 3}, {1, 1, 4, 3}, {2, 0, 4, 3}},
        {{-2, -1, 5, 4}, {0, 0, 5, 4}, {0, 0, 3, 3}, {2, 1, 3, 3}},
        {{7, 6, 9, 9}, {0, 0, 1, 1}, {7, 6, 3, 2}, {0, 0, 3, 2}},
        // the rule for a negative column of the destination moves the source by the destination's row
        {{3, 4, 5, 3}, {-2, 1, 5, 3}, {3, 3, 3, 3}, {0, 1, 3, 3}},
        {{3, 4, 5, 3}, {-2, 0, 5, 3}, {3, 4, 3, 3}, {0, 0, 3, 3}},
        {{3, 1, 5, 3}, {-2, 3, 5, 3}, {3, 0, 3, 1}, {0, 5, 3, 1}},
        {{3, 4, 5, 3}, {1, -2, 5, 3}, {3, 6, 5, 1}, {1, 0, 5, 1}},
        {{3, 4, 5, 3}, {5, 4, 5, 3}, {3, 4, 3, 2}, {5, 4, 3, 2}},
        {{3, 1, 5, 5}, {-1, -2, 5, 5}, {3, 5, 4, 3}, {0, 0, 4, 3}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.clipped_source << " to " << c.clipped_dest);
        CvRect from = c.source, to = c.dest;
        cvResetImageROI(dest);
        image_region_copy(source, dest, from, to);
        EXPECT_EQ(cv::Rect(from), c.clipped_source);
        EXPECT_EQ(cv::Rect(to), c.clipped_dest);
        EXPECT_EQ(source.region(), c.clipped_source);
        EXPECT_EQ(dest.region(), c.clipped_dest);
        const test_image expected(8, 6, [&](int x, int y) {
            const bool inside = c.clipped_dest.contains(cv::Point(x, y));
            return inside ? 10 + 10 * (y - to.y + from.y) + (x - to.x + from.x) : 0;
        });
        EXPECT_EQ(dest.bytes(), expected.bytes());
    }
}

TEST_F(ImageRegionCopy, RefusesARegionBeyondTheImage) {
    CvRect from = cvRect(-3, 9, 2, 2), to = cvRect(0, 0, 2, 2);
    const auto copy = [&] { image_region_copy(source, dest, from, to); };
    EXPECT_THAT(
        copy,
        testing::ThrowsMessage<std::logic_error>(
            "image_region_copy() : Region  (-3,9,2,2)  is completely outside input image (10,8,8,1)\n"));
    EXPECT_EQ(cvCountNonZero(dest), 0);
    from = cvRect(11, 0, 2, 2);
    EXPECT_THROW(copy(), std::logic_error);
    // at the image's very edge the region is clipped until nothing is left, which OpenCV refuses
    from = cvRect(10, 8, 2, 2);
    EXPECT_THROW(copy(), cv::Exception);
    EXPECT_EQ(cv::Rect(from), cv::Rect(10, 8, 0, 0));
    // what leaves the range of an int is clamped
    constexpr int lowest = std::numeric_limits<int>::min(), highest = std::numeric_limits<int>::max();
    from = cvRect(lowest, 0, highest, 1);
    to = cvRect(highest, 0, highest, 1);
    EXPECT_THROW(copy(), cv::Exception);
    EXPECT_EQ(cv::Rect(to), cv::Rect(highest, 0, lowest, 1));
}

}  // namespace
}  // namespace zorv
