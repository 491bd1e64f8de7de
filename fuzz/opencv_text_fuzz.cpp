#include <algorithm>
#include <exception>
#include <initializer_list>
#include <sstream>
#include <stdexcept>
#include <string>

#include "fuzz/input.h"
#include "zorv_tools/image/Opencv_io.h"

// An input is a text, read as each of the types.

namespace {

constexpr int untouched = 77;

template <class Type>
void read_fields(const std::string& text, std::initializer_list<int Type::*> fields) {
    std::istringstream in(text);
    Type value;
    for (int Type::*field : fields) {
        value.*field = untouched;
    }
    try {
        zorv::operator>>(in, value);
    } catch (const std::logic_error&) {
    }
    // A reader clears fields from the first on and stops; it never stores a number.
    bool cleared = true;
    for (int Type::*field : fields) {
        fuzz::require(value.*field == untouched || (cleared && value.*field == 0));
        cleared = value.*field == 0;
    }
    std::ostringstream form;
    zorv::operator<<(form, value);
    fuzz::require(form.str().find('(') != std::string::npos);
}

void read_matrix(const std::string& text) {
    constexpr int largest = 64;
    int rows = 0;
    int cols = 0;
    std::istringstream sizes(text);
    sizes >> rows >> cols;
    if (rows > largest || cols > largest) {
        return;
    }
    std::istringstream in(text);
    cv::Mat matrix(1, 1, CV_64FC1, cv::Scalar(0));
    try {
        zorv::operator>>(in, matrix);
        fuzz::require(matrix.type() == CV_64FC1 && matrix.rows == rows && matrix.cols == cols);
    } catch (const cv::Exception&) {
        fuzz::require(rows <= 0 || cols <= 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = FuzzedDataProvider(data, size).ConsumeRemainingBytesAsString();
    read_fields<CvRect>(text, {&CvRect::x, &CvRect::y, &CvRect::width, &CvRect::height});
    read_fields<IplImage>(text,
                          {&IplImage::width, &IplImage::height, &IplImage::depth, &IplImage::nChannels});
    read_fields<cv::Rect>(text, {&cv::Rect::x, &cv::Rect::y, &cv::Rect::width, &cv::Rect::height});
    read_fields<cv::Size>(text, {&cv::Size::width, &cv::Size::height});
    read_matrix(text);
    return 0;
}
