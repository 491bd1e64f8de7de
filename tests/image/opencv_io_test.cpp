#include <gmock/gmock.h>

#include <functional>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/report.h"
#include "zorv_tools/image/Opencv_io.h"

namespace zorv {
namespace {

IplImage header_of(int width, int height, int depth, int channels) {
    IplImage image = cvIplImage();
    image.width = width;
    image.height = height;
    image.depth = depth;
    image.nChannels = channels;
    return image;
}

TEST(OpencvIo, WritesEachTypeInItsForm) {
    std::ostringstream out;
    out << cvRect(1, -2, 3, 4) << "|" << cv::Rect(1, -2, 3, 4) << "|" << cv::Size(640, 480) << "|"
        << header_of(640, 480, 8, 3) << "|" << header_of(1, 2, static_cast<int>(IPL_DEPTH_8S), 1);
    EXPECT_EQ(out.str(), " (1,-2,3,4) |(1,-2,3,4)|(640,480)|(640,480,8,3)|(1,2,-2147483640,1)");
}

struct reading {
    std::vector<int> fields;
    std::string error;
    std::string rest;
};

/// What reading `text` into a value whose fields are 7, 8, 9, 10 leaves.
template <class T>
reading read(const std::string& text, T value, const std::function<std::vector<int>(const T&)>& fields) {
    std::istringstream in(text);
    reading result;
    try {
        in >> value;
    } catch (const std::logic_error& e) {
        result.error = e.what();
    }
    result.fields = fields(value);
    in.clear();
    std::getline(in, result.rest, '\0');
    return result;
}

reading read_cv_rect(const std::string& text) {
    return read<cv::Rect>(text, {7, 8, 9, 10}, [](const cv::Rect& r) {
        return std::vector<int>{r.x, r.y, r.width, r.height};
    });
}

reading read_rect(const std::string& text) {
    return read<CvRect>(text, cvRect(7, 8, 9, 10), [](const CvRect& r) {
        return std::vector<int>{r.x, r.y, r.width, r.height};
    });
}

reading read_image(const std::string& text) {
    return read<IplImage>(text, header_of(7, 8, 9, 10), [](const IplImage& i) {
        return std::vector<int>{i.width, i.height, i.depth, i.nChannels};
    });
}

reading read_size(const std::string& text) {
    return read<cv::Size>(text, {7, 8}, [](const cv::Size& s) {
        return std::vector<int>{s.width, s.height};
    });
}

TEST(OpencvIo, ReadersCheckTheTextAndZeroTheFields) {
    const std::vector<int> old{7, 8, 9, 10}, zeros{0, 0, 0, 0};
    struct {
        reading (*read)(const std::string&);
        std::string text;
        std::vector<int> fields;
        std::string error;
        std::string rest;
    } const cases[] = {
        {read_cv_rect, "(10,20,30,40)", zeros, "", ""},
        {read_image, "\n ( 1 , 2,3 ,4 ) x", zeros, "", " x"},
        {read_rect, "(1,2,3,4,5)", zeros, "", "5)"},
        {read_rect, ")(1,2,3,4)", old, "CvRect input operator : first char was ) not (\n", "(1,2,3,4)"},
        {read_image, "[1,2,3,4)", old, "IplImage input operator : first char was [ not (\n", "1,2,3,4)"},
        {read_cv_rect,
         "(1,-2,3,4)",
         {0, 8, 9, 10},
         "cv::Rect input operator : non numeric character - found when processing param 1 (only integers are "
         "allowed)\n",
         "2,3,4)"},
        {read_image,
         "(1)2,3,\xe9",
         {0, 0, 0, 10},
         "IplImage input operator : non numeric character \xe9 found when processing param 3 (only integers are "
         "allowed)\n",
         ""},
        // a size reads four fields as well, of which the last two are dropped
        {read_size, "(640,480),,8", {0, 0}, "", "8"},
        {read_size, "(640,480)", {0, 0}, "", ""},
        {read_size,
         "(640,480) x",
         {0, 0},
         "cv::Size input operator : non numeric character x found when processing param 2 (only integers are "
         "allowed)\n",
         ""},
        // an early end is no failure; a separator at the very end counts twice, a digit does not
        {read_cv_rect, "", old, "cv::Rect input operator : first char was   not (\n", ""},
        {read_cv_rect, "(", old, "", ""},
        {read_cv_rect, "(1", old, "", ""},
        {read_cv_rect, "(1,22", {0, 8, 9, 10}, "", ""},
        {read_cv_rect, "(1,", {0, 0, 9, 10}, "", ""},
        {read_cv_rect, "(1,2)", {0, 0, 0, 10}, "", ""},
        {read_size, "  \n ", {7, 8}, "cv::Size input operator : first char was   not (\n", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const reading result = c.read(c.text);
        EXPECT_EQ(result.fields, c.fields);
        EXPECT_EQ(result.error, c.error);
        EXPECT_EQ(result.rest, c.rest);
    }
}

TEST(OpencvIo, ReadersFollowTheStreamsStateAndFlags) {
    std::istringstream bad("x");
    bad.setstate(std::ios::eofbit);
    cv::Size size(7, 8);
    EXPECT_NO_THROW(bad >> size);
    EXPECT_EQ(size, cv::Size(7, 8));
    std::istringstream blanks(" (1, 2)");
    blanks >> std::noskipws;
    EXPECT_THROW(blanks >> size, std::logic_error);
    EXPECT_EQ(size, cv::Size(0, 8));
}

TEST(OpencvIo, ReadsAMatrixOfDoubles) {
    cv::Mat matrix(1, 1, CV_64FC1, cv::Scalar(5.0));
    std::istringstream in("2 3 1 2 3 4 5 6.5 7");
    in >> matrix;
    ASSERT_EQ(matrix.size(), cv::Size(3, 2));
    EXPECT_EQ(cv::norm(matrix, cv::Mat_<double>({2, 3}, {1, 2, 3, 4, 5, 6.5}), cv::NORM_INF), 0.0);
    int next = 0;
    EXPECT_TRUE(in >> next);
    EXPECT_EQ(next, 7);

    // where the stream ends, the resized values stay
    std::istringstream early("1 2 8");
    matrix = cv::Mat(1, 1, CV_64FC1, cv::Scalar(5.0));
    early >> matrix;
    EXPECT_EQ(cv::norm(matrix, cv::Mat_<double>({1, 2}, {8, 5}), cv::NORM_INF), 0.0);
}

TEST(OpencvIo, ReadsIntoASubMatrixOfTheSameSize) {
    cv::Mat whole = cv::Mat::zeros(4, 4, CV_64FC1);
    cv::Mat part = whole(cv::Rect(1, 1, 2, 2));
    std::istringstream in("2 2 1 2 3 4");
    in >> part;
    EXPECT_EQ(whole.at<double>(2, 1), 3.0);
    EXPECT_EQ(cv::countNonZero(whole), 4);
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
