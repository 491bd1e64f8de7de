#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/support/report.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/image/IplImage_overloads.h"

namespace {

const std::string file = "IplImage_overloads";
const int depths[] = {CV_8U, CV_8S, CV_16U, CV_16S, CV_32S, CV_32F, CV_64F};

/// Random elements seen through a window, so that a row's stride is not its width.
cv::Mat random_image(int cols, int rows, int type) {
    cv::Mat whole(rows + 2, cols + 3, type);
    cv::RNG(20).fill(whole, cv::RNG::UNIFORM, -300, 300);
    return whole(cv::Rect(2, 1, cols, rows));
}

std::shared_ptr<IplImage> ipl_image(int width, int height, int depth, int channels) {
    return std::shared_ptr<IplImage>(cvCreateImage(cvSize(width, height), depth, channels),
                                     [](IplImage* image) { cvReleaseImage(&image); });
}

std::string lookup_failure(int x, int y, int width, int height) {
    return "get_pix(): Pixel lookup at (" + std::to_string(x) + "," + std::to_string(y) +
           ") but image dimensions are (" + std::to_string(width) + "," + std::to_string(height) + ")";
}

template <class T>
class PixelOfType : public testing::Test {};
using element_types = testing::Types<char, unsigned char, short, unsigned short, int, float, double>;
// The last argument, which may be empty, has to be there for clang.
TYPED_TEST_SUITE(PixelOfType, element_types, );

// The elements of every depth are read as raw bits where the sizes agree, and refused where they do not.
TYPED_TEST(PixelOfType, MatElementsByTheirSizeAlone) {
    using T = TypeParam;
    for (const int depth : depths) {
        for (int channels = 1; channels <= 4; ++channels) {
            cv::Mat image = random_image(5, 4, CV_MAKETYPE(depth, channels));
            const cv::Mat& constant = image;
            const int c = channels - 1;
            if (image.elemSize1() == sizeof(T)) {
                const auto* expected = image.ptr<T>(3) + 2 * channels + c;
                EXPECT_EQ(std::memcmp(&zorv::get_pix<T>(image, 2, 3, c), expected, sizeof(T)), 0);
                EXPECT_EQ(&zorv::get_pix<T>(image, 2, 3, c), expected);
                const T value = zorv::get_pix<T>(constant, 2, 3, c);
                EXPECT_EQ(std::memcmp(&value, expected, sizeof(T)), 0) << depth << "," << channels;
            } else {
                const std::string sentence = "Template parameter had size of " + std::to_string(sizeof(T)) +
                                             " bytes, but image depth specified " +
                                             std::to_string(image.elemSize1());
                EXPECT_REPORT(zorv::get_pix<T>(constant, 2, 3, c), file, "get_pix(const cv::Mat", sentence);
                EXPECT_REPORT(zorv::get_pix<T>(image, 2, 3, c), file, "get_pix(cv::Mat", sentence);
            }
        }
    }
}

TYPED_TEST(PixelOfType, IplImageElementsByTheirSizeAlone) {
    using T = TypeParam;
    const int ipl_depths[] = {IPL_DEPTH_8U,
                              static_cast<int>(IPL_DEPTH_8S),
                              IPL_DEPTH_16U,
                              static_cast<int>(IPL_DEPTH_16S),
                              static_cast<int>(IPL_DEPTH_32S),
                              IPL_DEPTH_32F,
                              IPL_DEPTH_64F};
    for (const int depth : ipl_depths) {
        const auto image = ipl_image(5, 4, depth, 3);
        const int bits = depth & 255;
        T value = static_cast<T>(-7);
        if (bits == 8 * sizeof(T)) {
            std::memcpy(image->imageData + 3 * image->widthStep + (2 * 3 + 1) * static_cast<int>(sizeof(T)),
                        &value, sizeof(T));
            cvSetImageROI(image.get(), cvRect(1, 1, 2, 2));
            EXPECT_EQ(zorv::get_pix<T>(*image, 2, 3, 1), value) << depth;
        } else {
            EXPECT_REPORT(zorv::get_pix<T>(*image, 9, 9, 9), file, "get_pix(const IplImage",
                          "get_pix(): Pixel lookup for image was passed type with size " +
                              std::to_string(8 * sizeof(T)) + " but image has depth " +
                              std::to_string(depth) + " (" + std::to_string(bits) + " without sign bit)");
        }
    }
}

TEST(GetPix, MatReportsTheFirstFault) {
    const cv::Mat three = random_image(6, 4, CV_8UC3);
    const cv::Mat five = random_image(6, 4, CV_8UC(5));
    const int positions[][2] = {{6, 0}, {0, 4}, {-1, 0}, {0, -1}};
    for (const auto& p : positions) {
        EXPECT_REPORT(zorv::get_pix<double>(three, p[0], p[1], 9), file, "get_pix",
                      lookup_failure(p[0], p[1], 6, 4));
    }
    for (const int channel : {-1, 3}) {
        EXPECT_REPORT(zorv::get_pix<double>(three, 0, 0, channel), file, "get_pix",
                      "get_pix(): Pixel lookup from channel " + std::to_string(channel) +
                          " but image only has 3 channels.");
    }
    EXPECT_REPORT(zorv::get_pix<short>(five, 0, 0, 0), file, "get_pix",
                  "Template parameter had size of 2 bytes, but image depth specified 1");
    EXPECT_REPORT(zorv::get_pix<char>(five, 0, 0, 4), file, "get_pix",
                  "get_pix<template> : number of image channels was not 1-4, value was : 5");
    EXPECT_REPORT(zorv::get_pix<char>(cv::Mat(), 0, 0, 0), file, "get_pix", lookup_failure(0, 0, 0, 0));
    const int sizes[] = {2, 2, 2};
    EXPECT_REPORT(zorv::get_pix<char>(cv::Mat(3, sizes, CV_8U), 0, 0, 0), file, "get_pix",
                  lookup_failure(0, 0, -1, -1));
}

TEST(GetPix, IplImageTestsOnlyUpperBounds) {
    const auto image = ipl_image(8, 3, IPL_DEPTH_8U, 1);
    for (int i = 0; i < 24; ++i) {
        image->imageData[i] = static_cast<char>(i);
    }
    EXPECT_EQ(zorv::get_pix<char>(*image, -1, 1, 0), 7);
    EXPECT_EQ(zorv::get_pix<char>(*image, 3, 2, -2), 17);
    EXPECT_EQ(zorv::get_pix(*image, 7, 1, -9), 6);
    EXPECT_REPORT(zorv::get_pix<char>(*image, 8, 0, 5), file, "get_pix", lookup_failure(8, 0, 8, 3));
    EXPECT_REPORT(zorv::get_pix(*image, 0, 3, 0), file, "get_pix", lookup_failure(0, 3, 8, 3));
    EXPECT_REPORT(zorv::get_pix<char>(*image, 0, 0, 1), file, "get_pix",
                  "get_pix(): Pixel lookup from channel 1 but image only has 1 channels.");
}

// 200 in every byte, so that each depth shows how it widens.
TEST(GetPix, WidensByTheImagesOwnType) {
    const double of_float = -411206.25;
    struct row {
        int mat_depth;
        int ipl_depth;
        double expected;
    };
    double of_double = 0;
    std::memset(&of_double, 200, sizeof of_double);
    const row rows[] = {{CV_8U, IPL_DEPTH_8U, 200},
                        {CV_8S, static_cast<int>(IPL_DEPTH_8S), -56},
                        {CV_16U, IPL_DEPTH_16U, 51400},
                        {CV_16S, static_cast<int>(IPL_DEPTH_16S), -14136},
                        {CV_32S, static_cast<int>(IPL_DEPTH_32S), -926365496},
                        {CV_32F, IPL_DEPTH_32F, of_float},
                        {CV_64F, IPL_DEPTH_64F, of_double}};
    for (const row& r : rows) {
        cv::Mat image(2, 2, CV_MAKETYPE(r.mat_depth, 2));
        std::memset(image.data, 200, image.total() * image.elemSize());
        EXPECT_EQ(zorv::get_pix(image, 1, 1, 1), r.expected) << r.mat_depth;
        const auto ipl = ipl_image(2, 2, r.ipl_depth, 2);
        std::memset(ipl->imageData, 200, static_cast<std::size_t>(ipl->imageSize));
        EXPECT_EQ(zorv::get_pix(*ipl, 1, 1, 1), r.expected) << r.ipl_depth;
    }
}

/// Whether `action` writes `message` and a further line end to the error stream and throws it as a logic_error.
testing::AssertionResult refuses_depth(const std::function<void()>& action, const std::string& message) {
    stream_capture errors(std::cerr);
    try {
        action();
    } catch (const std::logic_error& e) {
        if (e.what() == message && errors.text() == message + "\n") {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << e.what() << "after" << errors.text();
    }
    return testing::AssertionFailure() << "nothing was thrown";
}

TEST(GetPix, UnknownDepthsAreLogicErrors) {
    for (const int depth :
         {0, 1, 24, static_cast<int>(IPL_DEPTH_SIGN | 24u), static_cast<int>(IPL_DEPTH_SIGN | 64u)}) {
        const auto image = ipl_image(2, 2, IPL_DEPTH_8U, 1);
        image->depth = depth;
        EXPECT_TRUE(refuses_depth([&] { zorv::get_pix(*image, 9, 9, 9); },
                                  "get_pix:: Unrecognised unsigned depth " + std::to_string(depth) + "\n"));
    }
}

// The code behind the known ones: half floats in OpenCV 4, a user's type in OpenCV 3.
TEST(PixelAccess, DepthCodeSeven) {
    cv::Mat image = cv::Mat(3, 3, CV_16S, cv::Scalar(0));
    image.flags = (image.flags & ~CV_MAT_DEPTH_MASK) | 7;
    const std::string bare = "get_pix:: Unrecognised cv::Mat depth 7\n";
    EXPECT_TRUE(refuses_depth([&] { zorv::get_pix(image, 9, 9, 9); }, bare));
    EXPECT_TRUE(refuses_depth([&] { zorv::interp_pix(image, 1.5, 1.5, 9); }, bare));
    EXPECT_TRUE(refuses_depth([&] { zorv::interp_pix_linear(image, 1.5, 1.5, 0); }, bare));
    EXPECT_REPORT(zorv::get_pix<short>(image, 1, 1, 0), file, "get_pix",
                  "Image had unrecognised depth flag 7");
    EXPECT_REPORT(zorv::set_pix(image, 1, 1, 5), file, "set_pix", "Unrecognised cv::Mat depth 7");
    EXPECT_EQ(std::vector<short>(image.ptr<short>(0), image.ptr<short>(2) + 3), std::vector<short>(9, 0));
}

TEST(SetPix, TruncatesAndWraps) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct row {
        int depth;
        double value;
        double expected;
    };
    const row rows[] = {{CV_8U, 300.7, 44},
                        {CV_8U, -1, 255},
                        {CV_8U, -0.9, 0},
                        {CV_8U, 4294967296.0 + 5, 5},
                        {CV_8U, nan, 0},
                        {CV_8S, 200.9, -56},
                        {CV_8S, 4294967296.0 + 5, 0},
                        {CV_16U, -1.5, 65535},
                        {CV_16U, 65536.0 * 65536 * 4 + 9, 9},
                        {CV_16U, 1e30, 0},
                        {CV_16S, 40000.5, -25536},
                        {CV_16S, -1e10, 0},
                        {CV_32S, -7.9, -7},
                        {CV_32S, 3e9, -2147483648.0},
                        {CV_32S, nan, -2147483648.0},
                        {CV_32F, 0.1, static_cast<double>(0.1f)},
                        {CV_64F, 0.1, 0.1}};
    for (const row& r : rows) {
        cv::Mat image(2, 3, CV_MAKETYPE(r.depth, 4), cv::Scalar::all(1));
        zorv::set_pix(image, 2, 1, cv::Scalar(2, r.value, 4, 5));
        const double expected[] = {2, r.expected, 4, 5};
        for (int c = 0; c < 4; ++c) {
            EXPECT_EQ(zorv::get_pix(image, 2, 1, c), expected[c]) << r.depth << " " << r.value;
            EXPECT_EQ(zorv::get_pix(image, 1, 1, c), 1);
        }
    }
}

TEST(SetPix, RefusesBeforeItWrites) {
    cv::Mat image(2, 3, CV_8UC(5), cv::Scalar::all(0));
    image.setTo(0);
    EXPECT_REPORT(zorv::set_pix(image, 0, 0, cv::Scalar::all(9)), file, "get_pix",
                  "get_pix<template> : number of image channels was not 1-4, value was : 5");
    EXPECT_EQ(cv::countNonZero(image.reshape(1)), 0);
    const int positions[][2] = {{3, 0}, {0, 2}, {-1, 0}, {0, -1}};
    for (const auto& p : positions) {
        EXPECT_REPORT(zorv::set_pix(image, p[0], p[1], 9), file, "set_pix",
                      "requested position " + std::to_string(p[0]) + "," + std::to_string(p[1]) +
                          " was outside image 3,2");
    }
}

double cubic(const std::vector<double>& p, double t) {
    return p[1] + 0.5 * t *
                      ((p[2] - p[0]) +
                       t * (2 * p[0] - 5 * p[1] + 4 * p[2] - p[3] + t * (3 * (p[1] - p[2]) + p[3] - p[0])));
}

/// The sixteen reads one by one, each case at the border on its own.
double cubic_by_reads(const cv::Mat& image, double x, double y, int channel) {
    const int ix = static_cast<int>(std::floor(x));
    const int iy = static_cast<int>(std::floor(y));
    std::vector<double> column;
    for (int r = iy - 1; r <= iy + 2; ++r) {
        const int row = r < 0 ? 0 : r > image.rows - 1 ? image.rows - 1 : r;
        const auto pixel = [&](int i) { return zorv::get_pix(image, i, row, channel); };
        const double p1 = pixel(ix);
        const double p0 = ix == 0 ? p1 : pixel(ix - 1);
        const double p2 = ix == image.cols - 1 ? p1 : pixel(ix + 1);
        const double p3 = ix == image.cols - 1 ? p1 : ix == image.cols - 2 ? p2 : pixel(ix + 2);
        column.push_back(cubic({p0, p1, p2, p3}, x - ix));
    }
    return cubic(column, y - iy);
}

double linear_by_reads(const cv::Mat& image, double x, double y, int channel) {
    const int ix = static_cast<int>(x);
    const int iy = static_cast<int>(y);
    const bool last_column = ix == image.cols - 1;
    const bool last_row = iy == image.rows - 1;
    const auto pixel = [&](int i, int j) { return zorv::get_pix(image, i, j, channel); };
    const double a = pixel(ix, iy);
    const double b = last_column ? a : pixel(ix + 1, iy);
    const double c = last_row ? a : pixel(ix, iy + 1);
    const double d = last_column ? c : last_row ? b : pixel(ix + 1, iy + 1);
    const double fx = x - ix;
    const double fy = y - iy;
    return (fx * b + (1 - fx) * a) * (1 - fy) + (fx * d + (1 - fx) * c) * fy;
}

// To the bit, at every kind of border: sizes from one pixel on, positions up to just before the next pixel.
TEST(Sampling, IsTheArithmeticOfSingleReads) {
    const double fractions[] = {0.0, 0.3, 0.5, 1 - 1e-9};
    const int sizes[][2] = {{1, 1}, {1, 5}, {2, 3}, {3, 2}, {4, 4}, {7, 6}};
    for (const int depth : depths) {
        for (int channels = 1; channels <= 4; ++channels) {
            for (const auto& size : sizes) {
                const cv::Mat image = random_image(size[0], size[1], CV_MAKETYPE(depth, channels));
                for (int i = 0; i < image.cols * image.rows * 16; ++i) {
                    const double x = i / 16 % image.cols + fractions[i % 4];
                    const double y = i / 16 / image.cols + fractions[i / 4 % 4];
                    const int c = i % channels;
                    ASSERT_EQ(zorv::interp_pix(image, x, y, c), cubic_by_reads(image, x, y, c))
                        << depth << " " << image.size << " at " << x << "," << y;
                    ASSERT_EQ(zorv::interp_pix_linear(image, x, y, c), linear_by_reads(image, x, y, c))
                        << depth << " " << image.size << " at " << x << "," << y;
                }
            }
        }
    }
}

TEST(Sampling, ValuesKnownBeforehand) {
    const cv::Mat edge = (cv::Mat_<unsigned char>(1, 6) << 0, 0, 0, 255, 255, 255);
    EXPECT_EQ(zorv::interp_pix(edge, 3.5, 0, 0), 255 + 255.0 / 16);
    EXPECT_EQ(zorv::interp_pix(edge, 2.5, 0.75, 0), 127.5);
    EXPECT_EQ(zorv::interp_pix(edge, 3, 0, 0), 255);
    const cv::Mat ramp = (cv::Mat_<float>(2, 2) << 10, 20, 30, 40);
    EXPECT_EQ(zorv::interp_pix_linear(ramp, 0.5, 0.25, 0), 20);
    EXPECT_EQ(zorv::interp_pix_linear(ramp, -0.5, -0.5, 0), -5);
}

TEST(Sampling, RefusesPositionsAndChannels) {
    const cv::Mat image = random_image(6, 4, CV_8UC2);
    const auto refused = [](const std::string& position, const std::string& rounded) {
        return "interp_pix() : the requested position " + position + " rounded down to position " + rounded +
               " outside image 6,4";
    };
    struct row {
        double x, y;
        std::string position, floored, truncated;
    };
    const row rows[] = {{-0.25, 1, "-0.25,1", "-1,1", ""},
                        {1, -0.25, "1,-0.25", "1,-1", ""},
                        {-1.5, 0, "-1.5,0", "-2,0", "-1,0"},
                        {6, 0.5, "6,0.5", "6,0", "6,0"},
                        {0, 1234567, "0,1.23457e+06", "0,1234567", "0,1234567"},
                        {1e300, 0, "1e+300,0", "-2147483648,0", "-2147483648,0"},
                        {std::nan(""), 0, "nan,0", "-2147483648,0", "-2147483648,0"}};
    for (const row& r : rows) {
        EXPECT_REPORT(zorv::interp_pix(image, r.x, r.y, 9), file, "interp_pix(",
                      refused(r.position, r.floored));
        if (!r.truncated.empty()) {
            EXPECT_REPORT(zorv::interp_pix_linear(image, r.x, r.y, 9), file, "interp_pix_linear(",
                          refused(r.position, r.truncated));
        }
    }
    for (const auto sample : {zorv::interp_pix, zorv::interp_pix_linear}) {
        for (const int channel : {-1, 2}) {
            EXPECT_REPORT(sample(image, 1.5, 1.5, channel), file, "get_pix(const cv::Mat",
                          "get_pix(): Pixel lookup from channel " + std::to_string(channel) +
                              " but image only has 2 channels.");
        }
        EXPECT_REPORT(sample(random_image(6, 4, CV_32FC(5)), 1.5, 1.5, 4), file, "get_pix(const cv::Mat",
                      "get_pix<template> : number of image channels was not 1-4, value was : 5");
    }
}

TEST(PixelAccess, AllocatesNothing) {
    cv::Mat image = random_image(6, 4, CV_8UC3);
    const cv::Mat& constant = image;
    const auto ipl = ipl_image(6, 4, IPL_DEPTH_8U, 3);
    double sum = 0;
    EXPECT_EQ(count_allocations([&] {
                  sum +=
                      zorv::get_pix<unsigned char>(image, 1, 2, 0) + zorv::get_pix<char>(constant, 1, 2, 0);
                  sum += zorv::get_pix(image, 1, 2, 0) + zorv::get_pix(*ipl, 1, 2, 0);
                  sum += zorv::interp_pix(image, 1.5, 0.5, 0) + zorv::interp_pix_linear(image, 1.5, 0.5, 0);
                  zorv::set_pix(image, 1, 2, cv::Scalar::all(sum));
              }),
              0u);
}

cv::Mat numbered_rows(int rows, int cols = 3) {
    cv::Mat image(rows, cols, CV_8U);
    for (int r = 0; r < rows; ++r) {
        image.row(r).setTo(r);
    }
    return image;
}

std::vector<int> first_column(const cv::Mat& image) {
    std::vector<int> values;
    for (int r = 0; r < image.rows; ++r) {
        values.push_back(zorv::get_pix<unsigned char>(image, 0, r, 0));
    }
    return values;
}

TEST(GetRows, PacksOrDoublesAField) {
    const cv::Mat frame = numbered_rows(6);
    struct row {
        int y_scale;
        bool odd;
        std::vector<int> expected;
    };
    const row rows[] = {{2, false, {0, 2, 4}},
                        {2, true, {1, 3, 5}},
                        {1, false, {0, 0, 2, 2, 4, 4}},
                        {1, true, {1, 1, 3, 3, 5, 5}}};
    for (const row& r : rows) {
        cv::Mat dest(6 / r.y_scale, 3, CV_8U, cv::Scalar(99));
        zorv::get_rows(frame, dest, 1, r.y_scale, r.odd);
        EXPECT_EQ(first_column(dest), r.expected) << r.y_scale << r.odd;

        const auto ipl_src = ipl_image(3, 6, IPL_DEPTH_8U, 1);
        const auto ipl_dest = ipl_image(3, 6 / r.y_scale, IPL_DEPTH_8U, 1);
        cv::Mat(frame).copyTo(cv::cvarrToMat(ipl_src.get()));
        zorv::get_rows(ipl_src.get(), ipl_dest.get(), 1, r.y_scale, r.odd);
        EXPECT_EQ(first_column(cv::cvarrToMat(ipl_dest.get())), r.expected) << r.y_scale << r.odd;
    }
}

TEST(GetRows, RefusesWithTheTargetUntouched) {
    const std::string head = "zorv_utils::get_rows() : ";
    struct row {
        cv::Mat src, dest;
        int x_scale, y_scale;
        std::string sentence;
    };
    const cv::Mat six = numbered_rows(6);
    const row rows[] = {
        {six, numbered_rows(5), 9, 1, "yScale : 1 and sizes don't align.6 5"},
        {six, numbered_rows(3, 2), 1, 2, "xScale : 1 and sizes don't align.3 2"},
        {six, cv::Mat(3, 3, CV_16U, cv::Scalar(0)), 1, 2, "Src and Dest are different element sizes."},
        {cv::Mat(6, 0, CV_8U), cv::Mat(), 0, 0, "yScale : 0 and sizes don't align.6 0"},
        {numbered_rows(6, 6), numbered_rows(3), 2, 2, "Haven't implemented this yet!"},
        {six, numbered_rows(2), 1, 3, "Haven't implemented this yet!"}};
    for (const row& r : rows) {
        cv::Mat dest = r.dest.clone();
        EXPECT_REPORT(zorv::get_rows(r.src, dest, r.x_scale, r.y_scale, true), file, "get_rows(const cv::Mat",
                      head + r.sentence);
        EXPECT_EQ(cv::norm(dest, r.dest, cv::NORM_INF), 0);
    }
    cv::Mat empty;
    EXPECT_NO_THROW(zorv::get_rows(cv::Mat(), empty, 1, 7, false));
    EXPECT_REPORT(zorv::get_rows(cv::Mat(), empty, 2, 7, false), file, "get_rows",
                  head + "Haven't implemented this yet!");
}

// Rows are copied by the stride of the source. Over the host's own memory that reaches beyond a narrower
// target; a buffer of OpenCV's is not overrun on either side.
TEST(GetRows, CopiesWholeStridesWithinTheBuffers) {
    cv::Mat whole(4, 8, CV_8U);
    for (int i = 0; i < 32; ++i) {
        whole.data[i] = static_cast<unsigned char>(i);
    }
    const cv::Mat src = whole(cv::Rect(5, 0, 3, 4));

    cv::Mat owned(2, 3, CV_8U, cv::Scalar(99));
    zorv::get_rows(src, owned, 1, 2, true);
    EXPECT_EQ(std::vector<int>(owned.data, owned.data + 6), (std::vector<int>{13, 14, 15, 29, 30, 31}));

    std::vector<unsigned char> memory(12, 99);
    cv::Mat foreign(2, 3, CV_8U, memory.data());
    zorv::get_rows(src, foreign, 1, 2, false);
    EXPECT_EQ(memory, (std::vector<unsigned char>{5, 6, 7, 21, 22, 23, 24, 25, 26, 27, 28, 99}));

    const cv::Mat odd = numbered_rows(3);
    cv::Mat same(3, 3, CV_8U, cv::Scalar(99));
    zorv::get_rows(odd, same, 1, 1, false);
    EXPECT_EQ(first_column(same), (std::vector<int>{0, 0, 2}));
    std::vector<unsigned char> taller(15, 99);
    cv::Mat with_gap(3, 3, CV_8U, taller.data());
    zorv::get_rows(odd, with_gap, 1, 1, false);
    EXPECT_EQ(std::vector<int>(taller.begin() + 6, taller.end()),
              (std::vector<int>{2, 2, 2, 2, 2, 2, 99, 99, 99}));
}

}  // namespace
