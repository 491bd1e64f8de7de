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

using internal::ipl_image_ptr;

ipl_image_ptr image_of_depth(unsigned int depth, int channels = 1) {
    ipl_image_ptr image(cvCreateImage(cvSize(5, 3), static_cast<int>(depth), channels));
    cvSet(image.get(), cvScalarAll(100));
    return image;
}

TEST(BinaryImageConvert, ThresholdsEveryElementWhateverTheRegion) {
    for (const int threshold : {-300, -1, 0, 1, 128, 255, 256, 1000}) {
        SCOPED_TRACE(threshold);
        const ipl_image_ptr owner = bytes_image({{0, 1, 2, 127, 128, 129}, {254, 255, 0, 3, 200, 1}}, 3);
        auto expected = bytes_of(owner.get());
        for (auto& row : expected) {
            for (int& value : row) {
                value = value < threshold ? 0 : 255;
            }
        }
        cvSetImageROI(owner.get(), cvRect(1, 1, 1, 1));
        IplImage* image = owner.get();
        binary_image_convert(image, threshold);
        EXPECT_EQ(image, owner.get());
        EXPECT_EQ(bytes_of(image), expected);
        EXPECT_EQ(internal::row_bytes(image, 0)[6], 77);
    }
}

TEST(BinaryImageConvert, RefusesOtherDepths) {
    for (const unsigned int depth :
         {unsigned{IPL_DEPTH_8S}, unsigned{IPL_DEPTH_16U}, unsigned{IPL_DEPTH_32F}}) {
        const ipl_image_ptr owner = image_of_depth(depth);
        const ipl_image_ptr before = internal::clone_image(owner.get());
        IplImage* image = owner.get();
        stream_capture errors(std::cerr);
        binary_image_convert(image, 1);
        EXPECT_EQ(
            errors.text(),
            "Image input to binary_image_convert was not 8 bit colour depth. (won't take long to code if "
            "necesary)\n");
        EXPECT_EQ(cv::norm(cv::cvarrToMat(image), cv::cvarrToMat(before.get()), cv::NORM_INF), 0.0);
    }
}

TEST(CombineDepthMaps, FillsTheHolesOfTheFirst) {
    const ipl_image_ptr first = bytes_image({{240, 241, 241, 241, 255, 0, 255}});
    const ipl_image_ptr second = bytes_image({{7, 240, 241, 255, 0, 9, 254}});
    cvSetImageROI(first.get(), cvRect(0, 0, 1, 1));
    combine_depth_maps(first.get(), second.get());
    EXPECT_EQ(bytes_of(first.get()), (std::vector<std::vector<int>>{{240, 240, 255, 255, 0, 0, 255}}));

    const ipl_image_ptr three = bytes_image({{250, 251, 252, 10, 253, 254}}, 3);
    const ipl_image_ptr other = bytes_image({{1, 2, 3, 4, 5, 6}}, 3);
    combine_depth_maps(three.get(), other.get());
    EXPECT_EQ(bytes_of(three.get()), (std::vector<std::vector<int>>{{1, 251, 252, 10, 253, 254}}));
}

TEST(CombineDepthMaps, RefusesMapsThatDoNotMatch) {
    const ipl_image_ptr map = bytes_image({{250, 250, 250}, {250, 250, 250}});
    const auto before = bytes_of(map.get());
    const ipl_image_ptr wide = bytes_image({{1, 1, 1, 1}, {1, 1, 1, 1}});
    const ipl_image_ptr flat = bytes_image({{1, 1, 1}});
    const ipl_image_ptr colour = bytes_image({{1, 1, 1, 1, 1, 1}, {1, 1, 1, 1, 1, 1}}, 2);
    const ipl_image_ptr deep(cvCreateImage(cvSize(3, 2), static_cast<int>(IPL_DEPTH_16S), 1));
    const std::string head = "The 2 depth maps to be combined do not match: widths=3,";
    struct {
        IplImage* second;
        std::string numbers;
    } const cases[] = {
        {wide.get(), "4 heights=2,2 depths=8,8 nChannels=1,1\n"},
        {flat.get(), "3 heights=2,1 depths=8,8 nChannels=1,1\n"},
        {colour.get(), "3 heights=2,2 depths=8,8 nChannels=1,2\n"},
        {deep.get(), "3 heights=2,2 depths=8,-2147483632 nChannels=1,1\n"},
    };
    for (const auto& c : cases) {
        stream_capture errors(std::cerr);
        combine_depth_maps(map.get(), c.second);
        EXPECT_EQ(errors.text(), head + c.numbers);
        EXPECT_EQ(bytes_of(map.get()), before);
    }
}

TEST(ImageRange, TakesInAllElementsOfEveryDepth) {
    std::mt19937 random(2);
    for (int depth = CV_8U; depth <= CV_64F; ++depth) {
        for (int channels = 1; channels <= 4; ++channels) {
            SCOPED_TRACE(testing::Message() << depth << " " << channels);
            // a sub-matrix amid values that are out of its range
            cv::Mat whole(12, 60, CV_MAKETYPE(depth, channels));
            cv::randu(whole, cv::Scalar::all(-120), cv::Scalar::all(120));
            cv::Mat image = whole(cv::Rect(3, 2, 41, 7));
            cv::Mat flat = image.reshape(1).clone();
            double lowest = 0.0, highest = 0.0, minimum = 0.0, maximum = 0.0;
            cv::minMaxLoc(flat, &lowest, &highest);
            whole = cv::Scalar::all(-127);
            flat.reshape(channels).copyTo(image);
            image_range(image, minimum, maximum);
            EXPECT_EQ(minimum, lowest);
            EXPECT_EQ(maximum, highest);
        }
    }
}

TEST(ImageRange, KeepsExtremesAndPassesOverWhatIsNotANumber) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    struct {
        std::vector<double> values;
        double minimum, maximum;
    } const cases[] = {
        {{1, nan, 3, nan, -2, nan, nan, nan, nan, 2}, -2, 3},
        {{5, infinity, -infinity, nan}, -infinity, infinity},
        {{nan, 1, 2, 3, 4, 5, 6, 7, 8, 9}, nan, nan},
        {{-0.5}, -0.5, -0.5},
    };
    for (const auto& c : cases) {
        cv::Mat doubles(static_cast<int>(c.values.size()), 1, CV_64F, const_cast<double*>(c.values.data()));
        cv::Mat floats;
        doubles.reshape(1, 1).convertTo(floats, CV_32F);
        for (const cv::Mat& image : {doubles, floats}) {
            double minimum = 0.0, maximum = 0.0;
            image_range(image, minimum, maximum);
            EXPECT_TRUE(minimum == c.minimum || (std::isnan(minimum) && std::isnan(c.minimum)));
            EXPECT_TRUE(maximum == c.maximum || (std::isnan(maximum) && std::isnan(c.maximum)));
        }
    }
    double minimum = 0.0, maximum = 0.0;
    image_range((cv::Mat_<int>(1, 2) << std::numeric_limits<int>::min(), std::numeric_limits<int>::max()),
                minimum, maximum);
    EXPECT_EQ(minimum, -2147483648.0);
    EXPECT_EQ(maximum, 2147483647.0);
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
    cv::Mat one = (cv::Mat_<unsigned char>(1, 3) << 100, 150, 200);
    const cv::Mat normalised = image_normalise(one);
    EXPECT_EQ(cv::norm(normalised, cv::Mat_<double>({1, 3}, {1.0, 1.5, 2.0}), cv::NORM_INF), 0.0);
    EXPECT_EQ(one.at<unsigned char>(0, 0), 100);

    cv::Mat six(1, 2, CV_16SC(6), cv::Scalar::all(0));
    for (int c = 0; c < 6; ++c) {
        six.ptr<short>(0)[6 + c] = static_cast<short>(-10 * (c + 1));
    }
    const cv::Mat channels = image_normalise(six);
    ASSERT_EQ(channels.type(), CV_64FC(6));
    for (int c = 0; c < 6; ++c) {
        EXPECT_EQ(channels.ptr<double>(0)[c], 0.0);
        EXPECT_EQ(channels.ptr<double>(0)[6 + c], -1.0);
    }

    cv::Mat constant(1, 1, CV_32FC1, cv::Scalar(3));
    EXPECT_TRUE(std::isinf(image_normalise(constant).at<double>(0, 0)));
}

TEST(CreateImagePyramid, SmoothsTheOriginalsAtEachLevel) {
    const ipl_image_ptr first = bytes_image(40, 30, [](int x, int y) { return (x * 37 + y * 11) % 256; });
    const ipl_image_ptr second(cvCreateImage(cvSize(9, 21), IPL_DEPTH_32F, 3));
    cvSet(second.get(), cvScalar(0.5, 2, -3));
    std::vector<IplImage*> images{first.get(), second.get()};
    std::vector<std::vector<IplImage*>*> pyramid;
    create_image_pyramid(&images, &pyramid, 3, 2.0);
    ASSERT_EQ(pyramid.size(), 4u);
    EXPECT_EQ(images, (std::vector<IplImage*>{first.get(), second.get()}));
    for (std::size_t level = 0; level < pyramid.size(); ++level) {
        SCOPED_TRACE(level);
        ASSERT_EQ(pyramid[level]->size(), 2u);
        for (std::size_t i = 0; i < images.size(); ++i) {
            const ipl_image_ptr image((*pyramid[level])[i]);
            cv::Mat expected = cv::cvarrToMat(images[i]).clone();
            if (level > 0) {
                const double sigma = std::sqrt(std::pow(2.0, static_cast<double>(level) - 1.0));
                cv::GaussianBlur(cv::cvarrToMat(images[i]), expected, cv::Size(), sigma, 0.0,
                                 cv::BORDER_REPLICATE);
            }
            EXPECT_NE(image.get(), images[i]);
            EXPECT_EQ(cv::norm(cv::cvarrToMat(image.get()), expected, cv::NORM_INF), 0.0);
        }
        delete pyramid[level];
    }
}

TEST(CreateImagePyramid, ClonesGoIntoTheFirstSetThatIsThere) {
    const ipl_image_ptr image = bytes_image({{1, 2, 3}});
    std::vector<IplImage*> old_set{image.get()};
    std::vector<std::vector<IplImage*>*> pyramid{&old_set};
    create_image_pyramid(&old_set, &pyramid, 0, 2.0);
    ASSERT_EQ(pyramid.size(), 2u);
    ASSERT_EQ(old_set.size(), 2u);
    EXPECT_TRUE(pyramid[1]->empty());
    const ipl_image_ptr clone(old_set[1]);
    EXPECT_EQ(bytes_of(clone.get()), bytes_of(image.get()));
    delete pyramid[1];
}

TEST(CreateImagePyramid, KeepsWhatItHasMadeWhenSmoothingFails) {
    const ipl_image_ptr image = bytes_image({{1, 2, 3}});
    cvSetImageROI(image.get(), cvRect(0, 0, 2, 1));  // smoothing finds source and result of different sizes
    std::vector<IplImage*> images{image.get()};
    std::vector<std::vector<IplImage*>*> pyramid;
    EXPECT_THROW(create_image_pyramid(&images, &pyramid, 2, 2.0), cv::Exception);
    ASSERT_EQ(pyramid.size(), 2u);
    ASSERT_EQ(pyramid[0]->size(), 1u);
    EXPECT_TRUE(pyramid[1]->empty());
    const ipl_image_ptr clone((*pyramid[0])[0]);
    delete pyramid[0];
    delete pyramid[1];
}

TEST(CreateIntegralImage, SumsByColumnThenRow) {
    const ipl_image_ptr small = bytes_image({{1, 2, 3}, {10, 20, 255}});
    cvSetImageROI(small.get(), cvRect(1, 0, 1, 1));
    const std::unique_ptr<matrix<double>> sums(create_integral_image(small.get()));
    EXPECT_THAT(*sums, matrix_near(std::vector<std::vector<double>>{{1, 11}, {3, 33}, {6, 291}}, 0.0));

    // sizes on both sides of the tile that is turned at a time
    for (const cv::Size& size : {cv::Size(64, 65), cv::Size(130, 63), cv::Size(1, 200)}) {
        const ipl_image_ptr image =
            bytes_image(size.width, size.height, [](int x, int y) { return (x * 31 + y * y) % 256; });
        cv::Mat expected;
        cv::integral(cv::cvarrToMat(image.get()), expected, CV_64F);
        const std::unique_ptr<matrix<double>> integral(create_integral_image(image.get()));
        for (int x = 0; x < size.width; ++x) {
            for (int y = 0; y < size.height; ++y) {
                ASSERT_EQ((*integral)[static_cast<unsigned int>(x)][y], expected.at<double>(y + 1, x + 1));
            }
        }
    }
}

TEST(CreateIntegralImage, RefusesSeveralChannelsAndIsEmptyWithoutRows) {
    const ipl_image_ptr colour = bytes_image({{1, 2, 3}}, 3);
    stream_capture errors(std::cerr);
    EXPECT_EQ(create_integral_image(colour.get()), nullptr);
    EXPECT_EQ(errors.text(), "Error image input to integral image creator has 3 and should only have 1.\n");
    IplImage* const flat = cvCreateImageHeader(cvSize(4, 0), IPL_DEPTH_8U, 1);
    const ipl_image_ptr owner(flat);
    const std::unique_ptr<matrix<double>> sums(create_integral_image(flat));
    EXPECT_EQ(sums->get_dim1(), 0u);
}

TEST(ImageMedian, IsTheUpperMiddleValueOfTheRegion) {
    struct {
        std::vector<std::vector<int>> rows;
        int channels;
        bool ignore_extremes;
        int median;
    } const cases[] = {
        {{{10, 20}}, 1, false, 0},
        {{{40, 10}, {30, 20}}, 1, false, 30},
        {{{10, 255, 20, 0, 30}}, 1, true, 20},
        {{{254, 255, 1, 0, 254}}, 1, true, 254},
        {{{0, 0, 0}, {0, 0, 0}}, 1, true, 0},
        {{{0, 255, 255}}, 1, false, 255},
        {{{5, 99, 6, 98, 7, 97}}, 2, false, 6},
    };
    for (const auto& c : cases) {
        const ipl_image_ptr image = bytes_image(c.rows, c.channels);
        EXPECT_EQ(image_median(image.get(), c.ignore_extremes), c.median);
        EXPECT_EQ(region_of(image.get()), (std::vector<int>{0, 0, image->width, image->height}));
    }
    const ipl_image_ptr image = bytes_image(9, 8, [](int x, int y) { return 10 * y + x; });
    cvSetImageROI(image.get(), cvRect(6, 5, 3, 3));
    EXPECT_EQ(image_median(image.get(), false), 67);
    EXPECT_EQ(region_of(image.get()), (std::vector<int>{6, 5, 3, 3}));
}

TEST(ConvertRes, LettersboxesToFourByThreeAndScales) {
    struct {
        cv::Size image, result;
        cv::Rect place;
    } const cases[] = {
        {{100, 100}, {133, 100}, {16, 0, 100, 100}}, {{101, 50}, {101, 75}, {0, 12, 101, 50}},
        {{640, 480}, {320, 240}, {0, 0, 320, 240}},  {{200, 50}, {100, 75}, {0, 25, 100, 25}},
        {{40, 30}, {80, 20}, {0, 0, 80, 20}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.image);
        cv::Mat image(c.image, CV_8UC3, cv::Scalar::all(255));
        convert_res(image, c.result.width, c.result.height);
        EXPECT_EQ(image.type(), CV_8UC3);
        EXPECT_EQ(image.size(), c.result);
        cv::Mat marks;
        cv::inRange(image, cv::Scalar::all(128), cv::Scalar::all(255), marks);
        EXPECT_EQ(cv::boundingRect(marks), c.place);
        EXPECT_EQ(cv::countNonZero(marks), c.place.area());
    }
}

TEST(ConvertRes, OtherTypesComeOutBlackAndBadSizesAreOpencvs) {
    cv::Mat grey(10, 10, CV_8UC1, cv::Scalar(255));
    convert_res(grey, 8, 6);
    EXPECT_EQ(grey.type(), CV_8UC3);
    EXPECT_EQ(grey.size(), cv::Size(8, 6));
    EXPECT_EQ(cv::countNonZero(grey.reshape(1)), 0);
    cv::Mat empty;
    EXPECT_THROW(convert_res(empty, 8, 6), cv::Exception);
    EXPECT_THROW(convert_res(grey, 0, 6), cv::Exception);
}

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

TEST(ImageRegionCopy, ClipsBothRegionsByTheRulesInTheirOrder) {
    struct {
        CvRect source, dest, clipped_source, clipped_dest;
    } const cases[] = {
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
        const ipl_image_ptr source = bytes_image(10, 8, [](int x, int y) { return 10 + 10 * y + x; });
        const ipl_image_ptr dest = bytes_image(8, 6, [](int, int) { return 5; });
        CvRect from = c.source;
        CvRect to = c.dest;
        image_region_copy(source.get(), dest.get(), from, to);
        EXPECT_EQ(numbers(from), numbers(c.clipped_source));
        EXPECT_EQ(numbers(to), numbers(c.clipped_dest));
        EXPECT_EQ(region_of(source.get()), numbers(from));
        EXPECT_EQ(region_of(dest.get()), numbers(to));
        const ipl_image_ptr expected = bytes_image(8, 6, [&](int x, int y) {
            const bool inside = cv::Rect(to).contains(cv::Point(x, y));
            return inside ? 10 + 10 * (y - to.y + from.y) + (x - to.x + from.x) : 0;
        });
        EXPECT_EQ(bytes_of(dest.get()), bytes_of(expected.get()));
    }
}

TEST(ImageRegionCopy, RefusesARegionBeyondTheImage) {
    const ipl_image_ptr source = bytes_image(10, 8, [](int, int) { return 1; });
    const ipl_image_ptr dest = bytes_image(8, 6, [](int, int) { return 5; });
    CvRect to = cvRect(0, 0, 2, 2);
    for (const auto& [x, y] : {std::pair(11, 2), std::pair(-3, 9)}) {
        CvRect from = cvRect(x, y, 2, 2);
        try {
            image_region_copy(source.get(), dest.get(), from, to);
            ADD_FAILURE();
        } catch (const std::logic_error& e) {
            std::ostringstream expected;
            expected << "image_region_copy() : Region  (" << x << "," << y
                     << ",2,2)  is completely outside input image (10,8,8,1)\n";
            EXPECT_EQ(std::string(e.what()), expected.str());
        }
        EXPECT_EQ(bytes_of(dest.get())[0][0], 0);
    }
    // at the image's very edge the region is clipped until nothing is left, which OpenCV refuses
    CvRect edge = cvRect(10, 2, 2, 2);
    EXPECT_THROW(image_region_copy(source.get(), dest.get(), edge, to), cv::Exception);
    EXPECT_EQ(numbers(edge), (std::vector<int>{10, 2, 0, 2}));
}

TEST(ImageRegionCopy, EndsForAnyNumbersAndShowsThemClamped) {
    const ipl_image_ptr source = bytes_image(10, 8, [](int, int) { return 1; });
    const ipl_image_ptr dest = bytes_image(8, 6, [](int, int) { return 5; });
    CvRect from = cvRect(lowest, 0, highest, 1);
    CvRect to = cvRect(highest, 0, highest, 1);
    EXPECT_THROW(image_region_copy(source.get(), dest.get(), from, to), cv::Exception);
    EXPECT_EQ(numbers(to), (std::vector<int>{highest, 0, lowest, 1}));

    std::mt19937 random(3);
    const int choices[] = {lowest, lowest + 1, -9, -1, 0, 1, 5, 8, 20, highest - 1, highest};
    std::uniform_int_distribution<std::size_t> choose(0, std::size(choices) - 1);
    const auto any_rect = [&] {
        return cvRect(choices[choose(random)], choices[choose(random)], choices[choose(random)],
                      choices[choose(random)]);
    };
    int copied = 0;
    for (int i = 0; i < 20000; ++i) {
        CvRect s = any_rect();
        CvRect d = any_rect();
        try {
            image_region_copy(source.get(), dest.get(), s, d);
            ++copied;
            ASSERT_TRUE(s.x >= 0 && s.y >= 0 && s.x + s.width <= 10 && s.y + s.height <= 8);
            ASSERT_TRUE(d.x >= 0 && d.y >= 0 && d.x + d.width <= 8 && d.y + d.height <= 6);
        } catch (const std::logic_error&) {
        } catch (const cv::Exception&) {
        }
        cvResetImageROI(source.get());
        cvResetImageROI(dest.get());
    }
    EXPECT_GT(copied, 100);
}

}  // namespace
}  // namespace zorv
