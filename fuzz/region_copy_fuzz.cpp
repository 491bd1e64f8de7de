#include <exception>
#include <stdexcept>

#include "fuzz/input.h"
#include "zorv_tools/image/image_utils.h"

namespace {

/// An `IplImage` on the buffer of a `cv::Mat`, which owns it.
struct image {
    image(FuzzedDataProvider& input, int value)
        : pixels(input.ConsumeIntegralInRange<int>(1, 16), input.ConsumeIntegralInRange<int>(1, 16), CV_8UC1,
                 cv::Scalar(value)),
          header(cvIplImage(pixels)) {}
    ~image() { cvResetImageROI(&header); }

    cv::Mat pixels;
    IplImage header;
};

CvRect rectangle(FuzzedDataProvider& input) {
    const int x = fuzz::around_image(input);
    const int y = fuzz::around_image(input);
    const int width = fuzz::around_image(input);
    return cvRect(x, y, width, fuzz::around_image(input));
}

bool inside(const CvRect& r, const cv::Mat& pixels) {
    return r.x >= 0 && r.y >= 0 && r.width >= 0 && r.height >= 0 && r.x + r.width <= pixels.cols &&
           r.y + r.height <= pixels.rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    image source(input, 1);
    image dest(input, 2);
    for (int y = 0; y < source.pixels.rows; ++y) {
        for (int x = 0; x < source.pixels.cols; ++x) {
            source.pixels.at<unsigned char>(y, x) = static_cast<unsigned char>(1 + 16 * (y % 15) + x % 16);
        }
    }
    const cv::Mat original = source.pixels.clone();
    CvRect from = rectangle(input);
    CvRect to = rectangle(input);
    try {
        zorv::image_region_copy(&source.header, &dest.header, from, to);
    } catch (const std::logic_error&) {
        return 0;
    } catch (const cv::Exception&) {
        return 0;
    }
    // The copy is in its place, all else is black, and the source is as it was.
    fuzz::require(inside(from, source.pixels) && inside(to, dest.pixels));
    cv::Mat expected(dest.pixels.size(), CV_8UC1, cv::Scalar(0));
    // OpenCV may take two empty regions of different sizes for a copy of nothing.
    if (from.width > 0 && from.height > 0) {
        fuzz::require(from.width == to.width && from.height == to.height);
        cv::Mat place = expected(cv::Rect(to.x, to.y, to.width, to.height));
        original(cv::Rect(from.x, from.y, from.width, from.height)).copyTo(place);
    }
    fuzz::require(cv::norm(expected, dest.pixels, cv::NORM_INF) == 0);
    fuzz::require(cv::norm(original, source.pixels, cv::NORM_INF) == 0);
    return 0;
}
