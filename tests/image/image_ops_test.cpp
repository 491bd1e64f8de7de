#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <stdexcept>
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
        SCOPED_TRACE(threshold);
        test_image image({{0, 1, 2, 127, 128, 129}, {254, 255, 0, 3, 200, 1}}, 3);
        byte_rows expected = image.bytes();
        for (auto& row : expected) {
            for (int& value : row) {
                value = value < threshold ? 0 : 255;
            }
        }
        cvSetImageROI(image, cvRect(1, 1, 1, 1));
        binary_image_convert(image, threshold);
        EXPECT_EQ(image.bytes(), expected);
        EXPECT_EQ(internal::row_bytes(image, 0)[6], 77);
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
    test_image map(3, 2, IPL_DEPTH_8U, 1, 250.0);
    test_image wide(4, 2, IPL_DEPTH_8U, 1), flat(3, 1, IPL_DEPTH_8U, 1);
    test_image colour(3, 2, IPL_DEPTH_8U, 2), deep(3, 2, IPL_DEPTH_16S, 1);
    stream_capture errors(std::cerr);
    for (IplImage* second : {static_cast<IplImage*>(wide), static_cast<IplImage*>(flat),
                             static_cast<IplImage*>(colour), static_cast<IplImage*>(deep)}) {
        combine_depth_maps(map, second);
        EXPECT_EQ(cvSum(map).val[0], 1500.0);
    }
    const std::string head = "The 2 depth maps to be combined do not match: widths=3,";
    EXPECT_EQ(errors.text(), head + "4 heights=2,2 depths=8,8 nChannels=1,1\n" + head +
                                 "3 heights=2,1 depths=8,8 nChannels=1,1\n" + head +
                                 "3 heights=2,2 depths=8,8 nChannels=1,2\n" + head +
                                 "3 heights=2,2 depths=8,-2147483632 nChannels=1,1\n");
}

TEST(ImageRange, TakesInAllElementsOfEveryDepth) {
    for (int depth = CV_8U; depth <= CV_64F; ++depth) {
        for (int channels = 1; channels <= 4; ++channels) {
            SCOPED_TRACE(testing::Message() << depth << " " << channels);
            // a sub-matrix amid values that are out of its range
            cv::Mat values(7, 41, CV_MAKETYPE(depth, channels));
            cv::randu(values, cv::Scalar::all(-120), cv::Scalar::all(120));
            cv::Mat image = cv::Mat(12, 60, values.type(), cv::Scalar::all(-127))(cv::Rect(3, 2, 41, 7));
            values.copyTo(image);
            double lowest = 0.0, highest = 0.0, minimum = 0.0, maximum = 0.0;
            cv::minMaxLoc(values.reshape(1), &lowest, &highest);
            image_range(image, minimum, maximum);
            EXPECT_EQ(minimum, lowest);
            EXPECT_EQ(maximum, highest);
        }
    }
}

TEST(ImageRange, PassesOverWhatIsNotANumberUnlessItComesFirst) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    double minimum = 0.0, maximum = 0.0;
    image_range(cv::Mat_<float>({10, 1}, {1, nan, 3, nan, -2, nan, nan, nan, nan, 2}), minimum, maximum);
    EXPECT_EQ(minimum, -2.0);
    EXPECT_EQ(maximum, 3.0);
    image_range(cv::Mat_<double>({1, 10}, {nan, 1, 2, 3, 4, 5, 6, 7, 8, 9}), minimum, maximum);
    EXPECT_TRUE(std::isnan(minimum) && std::isnan(maximum));
}

TEST(ImageRange, FailsAsACheckedReadDoes) {
    double minimum = 1.0, maximum = 2.0;
    image_range(cv::Mat(0, 7, CV_8UC(5)), minimum, maximum);
    image_range(cv::Mat(), minimum, maximum);
    EXPECT_EQ(minimum, 1.0);
    EXPECT_EQ(maximum, 2.0);
    EXPECT_THROW(image_range(cv::Mat::zeros(2, 2, CV_8UC(5)), minimum, maximum), exception_l);
    stream_capture errors(std::cerr);
    EXPECT_THROW(image_range(cv::Mat::zeros(2, 2, CV_MAKETYPE(7, 1)), minimum, maximum), std::logic_error);
}

TEST(ImageRange, ReachesRowsBeyondTwoGigabytes) {
    const std::size_t step = std::size_t{3} << 30;
    const std::unique_ptr<unsigned char[]> memory(new (std::nothrow) unsigned char[step + 1]);
    if (!memory) {
        GTEST_SKIP() << "needs 3 GB of address space";
    }
    memory[0] = 5;
    memory[step] = 9;
    double minimum = 0.0, maximum = 0.0;
    image_range(cv::Mat(2, 1, CV_8UC1, memory.get(), step), minimum, maximum);
    EXPECT_EQ(minimum, 5.0);
    EXPECT_EQ(maximum, 9.0);
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

    cv::Mat no_rows(0, 5, CV_8UC3);
    EXPECT_THROW(image_normalise(no_rows), cv::Exception);
    cv::Mat constant(1, 1, CV_32FC1, cv::Scalar(3));
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
    owned_pyramid pyramid;
    pyramid.sets.push_back(new std::vector<IplImage*>{cvCreateImage(cvSize(3, 1), IPL_DEPTH_8U, 1)});
    create_image_pyramid(pyramid.sets[0], &pyramid.sets, 0, 2.0);
    ASSERT_EQ(pyramid.sets.size(), 2u);
    EXPECT_EQ(pyramid.sets[0]->size(), 2u);
    EXPECT_TRUE(pyramid.sets[1]->empty());

    owned_pyramid failed;
    std::vector<IplImage*> images(*pyramid.sets[0]);
    cvSetImageROI(images[0], cvRect(0, 0, 2, 1));  // smoothing finds source and result of different sizes
    EXPECT_THROW(create_image_pyramid(&images, &failed.sets, 2, 2.0), cv::Exception);
    ASSERT_EQ(failed.sets.size(), 2u);
    EXPECT_EQ(failed.sets[0]->size(), 2u);
}

TEST(CreateIntegralImage, SumsByColumnThenRow) {
    test_image small({{1, 2, 3}, {10, 20, 255}});
    cvSetImageROI(small, cvRect(1, 0, 1, 1));
    const std::unique_ptr<matrix<double>> sums(create_integral_image(small));
    EXPECT_THAT(*sums, matrix_near(std::vector<std::vector<double>>{{1, 11}, {3, 33}, {6, 291}}, 0.0));

    // sizes on both sides of the tile that is turned at a time
    for (const cv::Size& size : {cv::Size(64, 33), cv::Size(67, 31), cv::Size(1, 200)}) {
        test_image image(size.width, size.height, [](int x, int y) { return (x * 31 + y * y) % 256; });
        cv::Mat expected;
        cv::integral(cv::cvarrToMat(image), expected, CV_64F);
        const std::unique_ptr<matrix<double>> integral(create_integral_image(image));
        for (int x = 0; x < size.width; ++x) {
            for (int y = 0; y < size.height; ++y) {
                ASSERT_EQ((*integral)[static_cast<unsigned int>(x)][y], expected.at<double>(y + 1, x + 1));
            }
        }
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
        int median;
    } cases[] = {
        {{{10, 20}}, 1, false, 0},
        {{{40, 10}, {30, 20}}, 1, false, 30},
        {{{10, 255, 20, 0, 30}}, 1, true, 20},
        {{{254, 255, 1, 0, 254}}, 1, true, 254},
        {{{0, 0, 0}, {0, 0, 0}}, 1, true, 0},
        {{{0, 255, 255}}, 1, false, 255},
        {{{5, 99, 6, 98, 7, 97}}, 2, false, 6},
    };
    for (const auto& c : cases) {
        test_image image(c.rows, c.channels);
        EXPECT_EQ(image_median(image, c.ignore_extremes), c.median);
        EXPECT_EQ(image.region(), cv::Rect(cv::Point(), image.size()));
    }
    test_image image(9, 8, [](int x, int y) { return 10 * y + x; });
    cvSetImageROI(image, cvRect(6, 5, 3, 3));
    EXPECT_EQ(image_median(image, false), 67);
    EXPECT_EQ(image.region(), cv::Rect(6, 5, 3, 3));
    test_image pairs({{1, 99, 2, 98, 30, 97, 40, 96, 50, 95}}, 2);
    cvSetImageROI(pairs, cvRect(2, 0, 3, 1));
    EXPECT_EQ(image_median(pairs, false), 40);
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
        cv::Mat image(c.image, CV_8UC3, cv::Scalar::all(255));
        convert_res(image, c.result.width, c.result.height);
        EXPECT_EQ(image.size(), c.result);
        cv::Mat marks;
        cv::inRange(image, cv::Scalar::all(128), cv::Scalar::all(255), marks);
        EXPECT_EQ(cv::boundingRect(marks), c.place);
        EXPECT_EQ(cv::countNonZero(marks), c.place.area());
    }
    cv::Mat noise(9, 12, CV_8UC3), scaled;
    cv::randu(noise, cv::Scalar::all(0), cv::Scalar::all(255));
    cv::resize(noise, scaled, cv::Size(17, 11), 0.0, 0.0, cv::INTER_LINEAR);
    convert_res(noise, 17, 11);
    EXPECT_EQ(cv::norm(noise, scaled, cv::NORM_INF), 0.0);
    cv::Mat grey(10, 10, CV_8UC1, cv::Scalar(255)), empty;
    convert_res(grey, 8, 6);
    EXPECT_EQ(cv::norm(grey, cv::Mat::zeros(6, 8, CV_8UC3)), 0.0);
    EXPECT_THROW(convert_res(empty, 8, 6), cv::Exception);
}

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

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
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source.x << " " << c.dest.x << " " << c.dest.y);
        CvRect from = c.source;
        CvRect to = c.dest;
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
    CvRect to = cvRect(0, 0, 2, 2);
    CvRect from = cvRect(-3, 9, 2, 2);
    try {
        image_region_copy(source, dest, from, to);
        ADD_FAILURE();
    } catch (const std::logic_error& e) {
        EXPECT_STREQ(
            e.what(),
            "image_region_copy() : Region  (-3,9,2,2)  is completely outside input image (10,8,8,1)\n");
    }
    EXPECT_EQ(cvCountNonZero(dest), 0);
    // at the image's very edge the region is clipped until nothing is left, which OpenCV refuses
    from = cvRect(10, 8, 2, 2);
    EXPECT_THROW(image_region_copy(source, dest, from, to), cv::Exception);
    EXPECT_EQ(cv::Rect(from), cv::Rect(10, 8, 0, 0));
}

TEST_F(ImageRegionCopy, EndsForAnyNumbersAndShowsThemClamped) {
    CvRect from = cvRect(lowest, 0, highest, 1);
    CvRect to = cvRect(highest, 0, highest, 1);
    EXPECT_THROW(image_region_copy(source, dest, from, to), cv::Exception);
    EXPECT_EQ(cv::Rect(to), cv::Rect(highest, 0, lowest, 1));

    std::mt19937 random(3);
    const int choices[] = {lowest, lowest + 1, -9, -1, 0, 1, 5, 8, 20, highest - 1, highest};
    const auto any = [&] { return choices[std::uniform_int_distribution<std::size_t>(0, 10)(random)]; };
    int copied = 0;
    for (int i = 0; i < 20000; ++i) {
        from = cvRect(any(), any(), any(), any());
        to = cvRect(any(), any(), any(), any());
        try {
            image_region_copy(source, dest, from, to);
            ++copied;
            ASSERT_EQ(source.region(), cv::Rect(from));
            ASSERT_EQ(dest.region(), cv::Rect(to));
        } catch (const std::exception&) {
        }
        cvResetImageROI(source);
        cvResetImageROI(dest);
    }
    EXPECT_GT(copied, 100);
}

}  // namespace
}  // namespace zorv
