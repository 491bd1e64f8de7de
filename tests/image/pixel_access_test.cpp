#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/image/images.h"
#include "tests/support/allocations.h"
#include "tests/support/report.h"
#include "tests/support/stream_capture.h"
#include "zorv_tools/image/IplImage_overloads.h"

namespace zorv {
namespace {

const std::string file = "IplImage_overloads";

/// Random elements seen through a window, so that a row's stride is not its width.
cv::Mat random_image(int cols, int rows, int type) {
    cv::Mat whole(rows + 2, cols + 3, type);
    cv::RNG(20).fill(whole, cv::RNG::UNIFORM, -300, 300);
    return whole(cv::Rect(2, 1, cols, rows));
}

std::string text_of(int x, int y) {
    return std::to_string(x) + "," + std::to_string(y);
}

std::string position_failure(int x, int y, int width, int height) {
    return "get_pix(): Pixel lookup at (" + text_of(x, y) + ") but image dimensions are (" +
           text_of(width, height) + ")";
}

std::string channel_failure(int channel, int channels) {
    return "get_pix(): Pixel lookup from channel " + std::to_string(channel) + " but image only has " +
           std::to_string(channels) + " channels.";
}

const std::string five_channels = "get_pix<template> : number of image channels was not 1-4, value was : 5";

template <class T>
class PixelOfType : public testing::Test {};
using element_types = testing::Types<char, unsigned char, short, unsigned short, int, float, double>;
// The last argument, which may be empty, has to be there for clang.
TYPED_TEST_SUITE(PixelOfType, element_types, );

// The elements of every depth are read as raw bits where the sizes agree, and refused where they do not.
TYPED_TEST(PixelOfType, IsReadFromElementsOfItsSizeAlone) {
    using T = TypeParam;
    const std::string size = std::to_string(sizeof(T)), size_in_bits = std::to_string(8 * sizeof(T));
    for (const unsigned int depth : ipl_depths) {
        for (int channels = 1; channels <= 4; ++channels) {
            SCOPED_TRACE(testing::Message() << depth << " " << channels);
            test_image ipl(5, 4, depth, channels);
            cv::Mat image = cv::cvarrToMat(ipl);
            const cv::Mat& constant = image;
            cv::randu(image, -300, 300);
            cvSetImageROI(ipl, cvRect(1, 1, 2, 2));
            const int c = channels - 1;
            const std::string bits = std::to_string(depth & 255);
            if (bits == size_in_bits) {
                const T* const expected = image.ptr<T>(3) + 2 * channels + c;
                EXPECT_EQ(&get_pix<T>(image, 2, 3, c), expected);
                for (const T value : {get_pix<T>(constant, 2, 3, c), get_pix<T>(*ipl, 2, 3, c)}) {
                    EXPECT_EQ(std::memcmp(&value, expected, sizeof(T)), 0);
                }
            } else {
                const std::string sentence = "Template parameter had size of " + size +
                                             " bytes, but image depth specified " +
                                             std::to_string(image.elemSize1());
                EXPECT_REPORT(get_pix<T>(constant, 2, 3, c), file, "get_pix(const cv::Mat", sentence);
                EXPECT_REPORT(get_pix<T>(image, 2, 3, c), file, "get_pix(cv::Mat", sentence);
                EXPECT_REPORT(get_pix<T>(*ipl, 9, 9, 9), file, "get_pix(const IplImage",
                              "get_pix(): Pixel lookup for image was passed type with size " + size_in_bits +
                                  " but image has depth " + std::to_string(ipl->depth) + " (" + bits +
                                  " without sign bit)");
            }
        }
    }
}

const cv::Point outside_six_by_four[] = {{6, 0}, {0, 4}, {-1, 0}, {0, -1}};

TEST(GetPix, MatReportsTheFirstFault) {
    const cv::Mat three = random_image(6, 4, CV_8UC3);
    const cv::Mat five = random_image(6, 4, CV_8UC(5));
    for (const cv::Point& p : outside_six_by_four) {
        const std::string sentence = position_failure(p.x, p.y, 6, 4);
        EXPECT_REPORT(get_pix<char>(three, p.x, p.y, 0), file, "get_pix", sentence);
        EXPECT_REPORT(get_pix<double>(three, p.x, p.y, 9), file, "get_pix", sentence);
    }
    for (const int channel : {-1, 3}) {
        EXPECT_REPORT(get_pix<char>(three, 0, 0, channel), file, "get_pix", channel_failure(channel, 3));
        EXPECT_REPORT(get_pix<double>(three, 0, 0, channel), file, "get_pix", channel_failure(channel, 3));
    }
    EXPECT_REPORT(get_pix<short>(five, 0, 0, 0), file, "get_pix",
                  "Template parameter had size of 2 bytes, but image depth specified 1");
    EXPECT_REPORT(get_pix<char>(five, 0, 0, 4), file, "get_pix", five_channels);
    EXPECT_REPORT(get_pix<char>(cv::Mat(), 0, 0, 0), file, "get_pix", position_failure(0, 0, 0, 0));
    const int sizes[] = {2, 2, 2};
    EXPECT_REPORT(get_pix<char>(cv::Mat(3, sizes, CV_8U), 0, 0, 0), file, "get_pix",
                  position_failure(0, 0, -1, -1));
}

TEST(GetPix, IplImageTestsOnlyUpperBounds) {
    test_image image(8, 3, [](int x, int y) { return 8 * y + x; });
    EXPECT_EQ(get_pix<char>(*image, -1, 1, 0), 7);
    EXPECT_EQ(get_pix<char>(*image, 3, 2, -2), 17);
    EXPECT_EQ(get_pix(*image, 7, 1, -9), 6);
    for (const int channel : {0, 5}) {
        EXPECT_REPORT(get_pix<char>(*image, 8, 0, channel), file, "get_pix", position_failure(8, 0, 8, 3));
        EXPECT_REPORT(get_pix(*image, 0, 3, channel), file, "get_pix", position_failure(0, 3, 8, 3));
    }
    EXPECT_REPORT(get_pix<char>(*image, 0, 0, 1), file, "get_pix", channel_failure(1, 1));
}

TEST(GetPix, WidensByTheImagesOwnType) {
    // what each depth makes of bytes that are all 200
    const double widened[] = {200, -56, 51400, -14136, -926365496, -411206.25, -4.3180364477547035e+42};
    for (int i = 0; i < 7; ++i) {
        test_image image(2, 2, ipl_depths[i], 2);
        std::memset(image->imageData, 200, static_cast<std::size_t>(image->imageSize));
        EXPECT_EQ(get_pix(*image, 1, 1, 1), widened[i]);
        EXPECT_EQ(get_pix(cv::cvarrToMat(image), 1, 1, 1), widened[i]);
    }
}

/// `action` writes `message` and a further line end to the error stream and throws it as a logic_error.
void expect_refused(const std::function<void()>& action, const std::string& message) {
    stream_capture errors(std::cerr);
    EXPECT_THAT(action, testing::ThrowsMessage<std::logic_error>(message));
    EXPECT_EQ(errors.text(), message + "\n");
}

TEST(GetPix, UnknownDepthsAreLogicErrors) {
    test_image image(2, 2, IPL_DEPTH_8U, 1);
    for (const unsigned int depth : {0u, 1u, 24u, IPL_DEPTH_SIGN | 24u, IPL_DEPTH_SIGN | 64u}) {
        image->depth = static_cast<int>(depth);
        expect_refused([&] { get_pix(*image, 9, 9, 9); },
                       "get_pix:: Unrecognised unsigned depth " + std::to_string(image->depth) + "\n");
    }
}

// The code behind the known ones: half floats in OpenCV 4, a user's type in OpenCV 3.
TEST(PixelAccess, DepthCodeSeven) {
    cv::Mat image = cv::Mat(3, 3, CV_16S, cv::Scalar(0));
    image.flags = (image.flags & ~CV_MAT_DEPTH_MASK) | 7;
    const std::string bare = "get_pix:: Unrecognised cv::Mat depth 7\n";
    expect_refused([&] { get_pix(image, 9, 9, 9); }, bare);
    expect_refused([&] { interp_pix(image, 1.5, 1.5, 9); }, bare);
    expect_refused([&] { interp_pix_linear(image, 1.5, 1.5, 0); }, bare);
    EXPECT_REPORT(get_pix<short>(image, 1, 1, 0), file, "get_pix", "Image had unrecognised depth flag 7");
    EXPECT_REPORT(set_pix(image, 1, 1, 5), file, "set_pix", "Unrecognised cv::Mat depth 7");
    EXPECT_EQ(std::vector<short>(image.ptr<short>(0), image.ptr<short>(2) + 3), std::vector<short>(9, 0));
}

TEST(SetPix, TruncatesAndWraps) {
    const double two_to_32 = 4294967296.0, least = -2147483648.0, nan = std::nan("");
    const struct {
        int depth;
        std::vector<std::pair<double, double>> values;
    } cases[] = {{CV_8U, {{300.7, 44}, {-1, 255}, {-0.9, 0}, {two_to_32 + 5, 5}, {nan, 0}}},
                 {CV_8S, {{200.9, -56}, {two_to_32 + 5, 0}}},
                 {CV_16U, {{-1.5, 65535}, {4 * two_to_32 + 9, 9}, {1e30, 0}}},
                 {CV_16S, {{40000.5, -25536}, {-1e10, 0}}},
                 {CV_32S, {{-7.9, -7}, {3e9, least}, {nan, least}}},
                 {CV_32F, {{0.1, static_cast<double>(0.1f)}}},
                 {CV_64F, {{0.1, 0.1}}}};
    for (const auto& c : cases) {
        for (const auto& [value, element] : c.values) {
            SCOPED_TRACE(testing::Message() << c.depth << " " << value);
            cv::Mat image(2, 3, CV_MAKETYPE(c.depth, 4), cv::Scalar::all(1));
            set_pix(image, 2, 1, cv::Scalar(2, value, 4, 5));
            const double expected[] = {2, element, 4, 5};
            for (int channel = 0; channel < 4; ++channel) {
                EXPECT_EQ(get_pix(image, 2, 1, channel), expected[channel]);
                EXPECT_EQ(get_pix(image, 1, 1, channel), 1);
            }
        }
    }
}

TEST(SetPix, RefusesBeforeItWrites) {
    cv::Mat image(4, 6, CV_8UC(5));
    image.setTo(0);
    EXPECT_REPORT(set_pix(image, 0, 0, cv::Scalar::all(9)), file, "get_pix", five_channels);
    EXPECT_EQ(cv::countNonZero(image.reshape(1)), 0);
    for (const cv::Point& p : outside_six_by_four) {
        EXPECT_REPORT(set_pix(image, p.x, p.y, 9), file, "set_pix",
                      "requested position " + text_of(p.x, p.y) + " was outside image 6,4");
    }
}

double cubic(const double (&p)[4], double t) {
    return p[1] + 0.5 * t *
                      ((p[2] - p[0]) +
                       t * (2 * p[0] - 5 * p[1] + 4 * p[2] - p[3] + t * (3 * (p[1] - p[2]) + p[3] - p[0])));
}

/// A single read, of the pixel on the border in place of one beyond it.
double read(const cv::Mat& image, int x, int y, int channel) {
    return get_pix(image, std::clamp(x, 0, image.cols - 1), std::clamp(y, 0, image.rows - 1), channel);
}

double cubic_by_reads(const cv::Mat& image, double x, double y, int channel) {
    const int ix = static_cast<int>(x), iy = static_cast<int>(y);
    double column[4], row[4];
    for (int j = 0; j < 4; ++j) {
        for (int i = 0; i < 4; ++i) {
            row[i] = read(image, ix - 1 + i, iy - 1 + j, channel);
        }
        column[j] = cubic(row, x - ix);
    }
    return cubic(column, y - iy);
}

double linear_by_reads(const cv::Mat& image, double x, double y, int channel) {
    const int ix = static_cast<int>(x), iy = static_cast<int>(y);
    const double fx = x - ix, fy = y - iy;
    const auto row = [&](int j) {
        return fx * read(image, ix + 1, j, channel) + (1 - fx) * read(image, ix, j, channel);
    };
    return row(iy) * (1 - fy) + row(iy + 1) * fy;
}

// To the bit, at every kind of border: sizes from one pixel on, positions up to just before the next pixel.
TEST(Sampling, IsTheArithmeticOfSingleReads) {
    const double fractions[] = {0.0, 0.3, 0.5, 1 - 1e-9};
    const int sizes[][2] = {{1, 1}, {1, 5}, {2, 3}, {3, 2}, {4, 4}, {7, 6}};
    for (int depth = CV_8U; depth <= CV_64F; ++depth) {
        for (int i = 0; i < 24; ++i) {
            const int channels = i % 4 + 1;
            const cv::Mat image =
                random_image(sizes[i / 4][0], sizes[i / 4][1], CV_MAKETYPE(depth, channels));
            SCOPED_TRACE(testing::Message() << depth << " " << channels << " " << image.size());
            for (int j = 0; j < image.cols * image.rows * 16; ++j) {
                const double x = j / 16 % image.cols + fractions[j % 4];
                const double y = j / 16 / image.cols + fractions[j / 4 % 4];
                const int c = j % channels;
                ASSERT_EQ(interp_pix(image, x, y, c), cubic_by_reads(image, x, y, c)) << x << "," << y;
                ASSERT_EQ(interp_pix_linear(image, x, y, c), linear_by_reads(image, x, y, c))
                    << x << "," << y;
            }
        }
    }
}

TEST(Sampling, ValuesKnownBeforehand) {
    const cv::Mat edge = (cv::Mat_<unsigned char>(1, 6) << 0, 0, 0, 255, 255, 255);
    EXPECT_EQ(interp_pix(edge, 3.5, 0, 0), 255 + 255.0 / 16);
    const cv::Mat ramp = (cv::Mat_<float>(2, 2) << 10, 20, 30, 40);
    EXPECT_EQ(interp_pix_linear(ramp, 0.5, 0.25, 0), 20);
    EXPECT_EQ(interp_pix_linear(ramp, -0.5, -0.5, 0), -5);
}

TEST(Sampling, RefusesPositionsAndChannels) {
    const cv::Mat image = random_image(6, 4, CV_8UC2);
    const struct {
        double x, y;
        std::string position, floored, truncated;
    } cases[] = {{-0.25, 1, "-0.25,1", "-1,1", ""},
                 {1, -0.25, "1,-0.25", "1,-1", ""},
                 {-1.5, 0, "-1.5,0", "-2,0", "-1,0"},
                 {6, 0.5, "6,0.5", "6,0", "6,0"},
                 {0, 4, "0,4", "0,4", "0,4"},
                 {0, 1234567, "0,1.23457e+06", "0,1234567", "0,1234567"},
                 {1e300, 0, "1e+300,0", "-2147483648,0", "-2147483648,0"},
                 {std::nan(""), 0, "nan,0", "-2147483648,0", "-2147483648,0"}};
    for (const auto& c : cases) {
        const std::string head =
            "interp_pix() : the requested position " + c.position + " rounded down to position ";
        EXPECT_REPORT(interp_pix(image, c.x, c.y, 9), file, "interp_pix(",
                      head + c.floored + " outside image 6,4");
        if (!c.truncated.empty()) {
            EXPECT_REPORT(interp_pix_linear(image, c.x, c.y, 9), file, "interp_pix_linear(",
                          head + c.truncated + " outside image 6,4");
        }
    }
    for (const auto sample : {interp_pix, interp_pix_linear}) {
        for (const int channel : {-1, 2}) {
            EXPECT_REPORT(sample(image, 1.5, 1.5, channel), file, "get_pix(const cv::Mat",
                          channel_failure(channel, 2));
        }
        EXPECT_REPORT(sample(random_image(6, 4, CV_32FC(5)), 1.5, 1.5, 4), file, "get_pix(const cv::Mat",
                      five_channels);
    }
}

TEST(PixelAccess, AllocatesNothing) {
    test_image ipl(6, 4, IPL_DEPTH_8U, 3);
    cv::Mat image = cv::cvarrToMat(ipl);
    const cv::Mat& constant = image;
    double sum = 0;
    const auto use_each = [&] {
        sum += get_pix<unsigned char>(image, 1, 2, 0) + get_pix<char>(constant, 1, 2, 0);
        sum += get_pix(image, 1, 2, 0) + get_pix(*ipl, 1, 2, 0);
        sum += interp_pix(image, 1.5, 0.5, 0) + interp_pix_linear(image, 1.5, 0.5, 0);
        set_pix(image, 1, 2, cv::Scalar::all(sum));
    };
    EXPECT_EQ(count_allocations(use_each), 0u);
}

TEST(GetRows, PacksOrDoublesAField) {
    const struct {
        int y_scale;
        bool odd;
        std::vector<int> rows;
    } cases[] = {{2, false, {0, 2, 4}},
                 {2, true, {1, 3, 5}},
                 {1, false, {0, 0, 2, 2, 4, 4}},
                 {1, true, {1, 1, 3, 3, 5, 5}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.y_scale << " " << c.odd);
        const int height = 6 / c.y_scale;
        test_image frame(3, 6, [](int x, int y) { return 10 * x + y; });
        test_image dest(3, height, IPL_DEPTH_8U, 1), other(3, height, IPL_DEPTH_8U, 1);
        cv::Mat header = cv::cvarrToMat(other);
        get_rows(frame, dest, 1, c.y_scale, c.odd);
        get_rows(cv::cvarrToMat(frame), header, 1, c.y_scale, c.odd);
        const test_image expected(3, height,
                                  [&](int x, int y) { return 10 * x + c.rows[static_cast<std::size_t>(y)]; });
        EXPECT_EQ(dest.bytes(), expected.bytes());
        EXPECT_EQ(other.bytes(), expected.bytes());
    }
}

TEST(GetRows, RefusesWithTheTargetUntouched) {
    const std::string unfinished = "Haven't implemented this yet!";
    const struct {
        cv::Size src, dest;
        int dest_type, x_scale, y_scale;
        std::string sentence;
    } cases[] = {{{3, 6}, {3, 5}, CV_8U, 9, 1, "yScale : 1 and sizes don't align.6 5"},
                 {{3, 6}, {2, 3}, CV_8U, 1, 2, "xScale : 1 and sizes don't align.3 2"},
                 {{3, 6}, {3, 3}, CV_8UC2, 1, 2, "Src and Dest are different element sizes."},
                 {{0, 6}, {0, 0}, CV_8U, 0, 0, "yScale : 0 and sizes don't align.6 0"},
                 {{6, 6}, {3, 3}, CV_8U, 2, 2, unfinished},
                 {{3, 6}, {3, 2}, CV_8U, 1, 3, unfinished},
                 {{0, 0}, {0, 0}, CV_8U, 2, 7, unfinished}};
    for (const auto& c : cases) {
        cv::Mat dest(c.dest, c.dest_type, cv::Scalar::all(0));
        EXPECT_REPORT(get_rows(cv::Mat(c.src, CV_8U, cv::Scalar(9)), dest, c.x_scale, c.y_scale, true), file,
                      "get_rows(const cv::Mat", "zorv_utils::get_rows() : " + c.sentence);
        EXPECT_EQ(cv::countNonZero(dest.reshape(1)), 0);
    }
    cv::Mat empty;
    EXPECT_NO_THROW(get_rows(cv::Mat(), empty, 1, 7, false));
}

// Rows are copied by the stride of the source. Over the host's own memory that reaches beyond a narrower
// target; a buffer of OpenCV's is not overrun on either side.
TEST(GetRows, CopiesWholeStridesWithinTheBuffers) {
    using bytes = std::vector<unsigned char>;
    cv::Mat whole(4, 8, CV_8U);
    std::iota(whole.begin<unsigned char>(), whole.end<unsigned char>(), static_cast<unsigned char>(0));
    const cv::Mat src = whole(cv::Rect(5, 0, 3, 4));
    // a buffer that ends early, to see what lies behind it
    cv::Mat buffer(1, 12, CV_8U, cv::Scalar(99));
    buffer.u->size = 6;
    cv::Mat owned = buffer.colRange(0, 6).reshape(1, 2);
    get_rows(src, owned, 1, 2, true);
    EXPECT_EQ(bytes(buffer), (bytes{13, 14, 15, 29, 30, 31, 99, 99, 99, 99, 99, 99}));

    bytes memory(12, 99);
    cv::Mat foreign(2, 3, CV_8U, memory.data());
    get_rows(src, foreign, 1, 2, true);
    EXPECT_EQ(memory, (bytes{13, 14, 15, 29, 30, 31, 19, 20, 99, 99, 99, 99}));

    // the even field of an odd number of rows goes on behind the last one
    const cv::Mat odd = (cv::Mat_<unsigned char>(3, 2) << 0, 1, 2, 3, 4, 5);
    bytes taller(10, 99);
    for (cv::Mat dest : {cv::Mat(3, 2, CV_8U), cv::Mat(3, 2, CV_8U, taller.data())}) {
        get_rows(odd, dest, 1, 1, false);
        EXPECT_EQ(bytes(dest.data, dest.data + 6), (bytes{0, 1, 0, 1, 4, 5}));
    }
    EXPECT_EQ(taller, (bytes{0, 1, 0, 1, 4, 5, 4, 5, 99, 99}));
}

}  // namespace
}  // namespace zorv
