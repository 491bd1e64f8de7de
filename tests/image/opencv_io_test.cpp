#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/support/report.h"
#include "zorv_tools/image/Opencv_io.h"

namespace zorv {
namespace {

TEST(OpencvIo, WritesEachTypeInItsForm) {
    std::ostringstream out;
    out << cvRect(1, -2, 3, 4) << "|" << cv::Rect(1, -2, 3, 4) << "|" << cv::Size(640, 480) << "|"
        << cvIplImage(cv::Mat(2, 1, CV_8SC3));
    EXPECT_EQ(out.str(), " (1,-2,3,4) |(1,-2,3,4)|(640,480)|(1,2,-2147483640,3)");
}

/// What reading `text` into `value` leaves of it, the error, and the rest of the stream.
template <class T>
std::string read(const std::string& text, T value) {
    std::istringstream in(text);
    std::string error, rest;
    try {
        in >> value;
    } catch (const std::logic_error& e) {
        error = e.what();
    }
    in.clear();
    std::getline(in, rest, '\0');
    std::ostringstream result;
    result << value << "|" << error << "|" << rest;
    return result.str();
}

TEST(OpencvIo, ReadersCheckTheTextAndZeroTheFields) {
    const auto rect = [](const std::string& text) { return read(text, cvRect(7, 8, 9, 10)); };
    const auto cv_rect = [](const std::string& text) { return read(text, cv::Rect(7, 8, 9, 10)); };
    const auto size = [](const std::string& text) { return read(text, cv::Size(7, 8)); };
    const auto image = [](const std::string& text) { return read(text, cvIplImage(cv::Mat(8, 7, CV_8UC3))); };
    const std::string first = " input operator : first char was ";
    const auto stray = [](const std::string& character, int field) {
        return " input operator : non numeric character " + character + " found when processing param " +
               std::to_string(field) + " (only integers are allowed)\n|";
    };
    EXPECT_EQ(cv_rect("(10,20,30,40)"), "(0,0,0,0)||");
    EXPECT_EQ(image("\n ( 1 , 2,3 ,4 ) x"), "(0,0,0,0)|| x");
    EXPECT_EQ(rect("(1,2,3,4,5)"), " (0,0,0,0) ||5)");
    EXPECT_EQ(rect(")(1,2,3,4)"), " (7,8,9,10) |CvRect" + first + ") not (\n|(1,2,3,4)");
    EXPECT_EQ(image("[1,2,3,4)"), "(7,8,8,3)|IplImage" + first + "[ not (\n|1,2,3,4)");
    EXPECT_EQ(cv_rect("(1,-2,3,4)"), "(0,8,9,10)|cv::Rect" + stray("-", 1) + "2,3,4)");
    EXPECT_EQ(image("(1)2,3,\xe9"), "(0,0,0,3)|IplImage" + stray("\xe9", 3));
    EXPECT_EQ(rect("(1)2\n x"), " (0,8,9,10) |CvRect" + stray("x", 1));
    // a size reads four fields as well, of which the last two are dropped
    EXPECT_EQ(size("(640,480),,8"), "(0,0)||8");
    EXPECT_EQ(size("(640,x"), "(0,8)|cv::Size" + stray("x", 1));
    EXPECT_EQ(size("(640,480) x"), "(0,0)|cv::Size" + stray("x", 2));
    // an early end is no failure; a separator at the very end counts twice, a digit does not
    EXPECT_EQ(cv_rect(""), "(7,8,9,10)|cv::Rect" + first + "  not (\n|");
    EXPECT_EQ(size("  \n "), "(7,8)|cv::Size" + first + "  not (\n|");
    EXPECT_EQ(cv_rect("("), "(7,8,9,10)||");
    EXPECT_EQ(cv_rect("(1,22"), "(0,8,9,10)||");
    EXPECT_EQ(cv_rect("(1,"), "(0,0,9,10)||");
    EXPECT_EQ(cv_rect("(1,2)"), "(0,0,0,10)||");
}

TEST(OpencvIo, ReadersFollowTheStreamsStateAndFlags) {
    std::istringstream in(" (1, 2)");
    cv::Size size(7, 8);
    in.setstate(std::ios::eofbit);
    EXPECT_NO_THROW(in >> size);
    EXPECT_EQ(size, cv::Size(7, 8));
    in.clear();
    EXPECT_THROW(in >> std::noskipws >> size, std::logic_error);
    EXPECT_EQ(size, cv::Size(0, 8));
}

TEST(OpencvIo, ReadsAMatrixOfDoubles) {
    cv::Mat whole(4, 4, CV_64FC1, cv::Scalar(5.0)), matrix = whole(cv::Rect(1, 1, 2, 2));
    std::istringstream in("2 2 1 2 3 4.5 2 3 1 2 3 4 5 6.5 1 4 8");
    in >> matrix;
    EXPECT_EQ(whole.at<double>(2, 1), 3.0) << "a size that is kept keeps the buffer";
    EXPECT_EQ(cv::sum(whole)[0], 5.0 * 12 + 10.5);
    in >> matrix;
    EXPECT_EQ(cv::norm(matrix, cv::Mat_<double>({2, 3}, {1, 2, 3, 4, 5, 6.5}), cv::NORM_INF), 0.0);
    // where the stream ends, the resized values stay
    matrix = cv::Mat_<double>({1, 2}, {0, 4});
    in >> matrix;
    EXPECT_EQ(cv::norm(matrix, cv::Mat_<double>({1, 4}, {8, 1, 3, 4}), cv::NORM_INF), 0.0);
}

TEST(OpencvIo, RefusesOtherMatricesAndSizes) {
    std::istringstream in("1 1 1");
    cv::Mat floats(1, 1, CV_32FC1), pairs(1, 1, CV_64FC2), empty(0, 0, CV_64FC1), one(1, 1, CV_64FC1);
    const std::string sentence = "operator>> cv::Mat : mat type was not doubles, instead it was ";
    EXPECT_REPORT(in >> floats, "Opencv_io", "operator>>", sentence + "5\n");
    EXPECT_REPORT(in >> pairs, "Opencv_io", "operator>>", sentence + "14\n");
    EXPECT_THROW(in >> empty, cv::Exception);
    for (const char* text : {"", "0 3", "x 2", "2 -1 5"}) {
        std::istringstream sizes(text);
        EXPECT_THROW(sizes >> one, cv::Exception) << text;
    }
}

}  // namespace
}  // namespace zorv
