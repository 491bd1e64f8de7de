#include "zorv_tools/image/Opencv_io.h"

#include <array>
#include <cctype>
#include <sstream>
#include <stdexcept>
#include <string>

#include "zorv_tools/core/exception_l.h"

namespace zorv {

namespace {

/// Where the numbers of a text form go; a null place stores nothing.
using fields = std::array<int*, 4>;

std::istream& read_fields(std::istream& in, const std::string& reader, const fields& targets) {
    if (!in.good()) {
        return in;
    }
    char opening = ' ';
    in >> std::ws >> opening;
    if (opening != '(') {
        std::ostringstream text;
        text << reader << " : first char was " << opening << " not (" << std::endl;
        throw std::logic_error(text.str());
    }
    // A failed extraction leaves the character as it was, so that a separator at the very end counts twice. The
    // start value is one that a stream which ends behind the bracket passes over.
    char c = '0';
    std::size_t field = 0;
    while (in.good() && field < targets.size()) {
        in >> c;
        if (c == ',' || c == ')') {
            // The digits are checked and not kept, on purpose: each field read becomes 0.
            if (targets[field]) {
                *targets[field] = 0;
            }
            ++field;
        } else if (!std::isdigit(static_cast<unsigned char>(c))) {
            std::ostringstream text;
            text << reader << " : non numeric character " << c << " found when processing param " << field
                 << " (only integers are allowed)" << std::endl;
            throw std::logic_error(text.str());
        }
    }
    return in;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const CvRect& rect) {
    // The blanks are part of the form: messages that hold a rectangle rely on them.
    return out << " (" << rect.x << "," << rect.y << "," << rect.width << "," << rect.height << ") ";
}

std::ostream& operator<<(std::ostream& out, const IplImage& image) {
    return out << "(" << image.width << "," << image.height << "," << image.depth << "," << image.nChannels
               << ")";
}

std::ostream& operator<<(std::ostream& out, const cv::Rect_<int>& rect) {
    return out << "(" << rect.x << "," << rect.y << "," << rect.width << "," << rect.height << ")";
}

std::ostream& operator<<(std::ostream& out, const cv::Size_<int>& size) {
    return out << "(" << size.width << "," << size.height << ")";
}

std::istream& operator>>(std::istream& in, CvRect& rect) {
    return read_fields(in, "CvRect input operator", {&rect.x, &rect.y, &rect.width, &rect.height});
}

std::istream& operator>>(std::istream& in, IplImage& image) {
    return read_fields(in, "IplImage input operator",
                       {&image.width, &image.height, &image.depth, &image.nChannels});
}

std::istream& operator>>(std::istream& in, cv::Rect_<int>& rect) {
    return read_fields(in, "cv::Rect input operator", {&rect.x, &rect.y, &rect.width, &rect.height});
}

std::istream& operator>>(std::istream& in, cv::Size_<int>& size) {
    return read_fields(in, "cv::Size input operator", {&size.width, &size.height, nullptr, nullptr});
}

std::istream& operator>>(std::istream& in, cv::Mat& matrix) {
    if (matrix.type() != CV_64FC1) {
        ZORV_THROW("operator>> cv::Mat : mat type was not doubles, instead it was " << matrix.type()
                                                                                    << std::endl);
    }
    int rows = 0;
    int cols = 0;
    in >> rows >> cols;
    cv::resize(matrix, matrix, cv::Size(cols, rows), 0.0, 0.0, cv::INTER_LINEAR);
    for (int y = 0; y < matrix.rows; ++y) {
        double* row = matrix.ptr<double>(y);
        for (int x = 0; x < matrix.cols; ++x) {
            in >> row[x];
        }
    }
    return in;
}

}  // namespace zorv
