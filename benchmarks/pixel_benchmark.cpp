#include <cmath>
#include <opencv2/imgproc.hpp>

#include "benchmarks/compare.h"
#include "zorv_tools/image/IplImage_overloads.h"

namespace {

const cv::Size photograph_size(1282, 1110);

void compare_pixel_reads() {
    cv::Mat image(photograph_size, CV_8U);
    cv::randu(image, 0, 256);
    const auto ours = [image] {
        long sum = 0;
        for (int y = 0; y < image.rows; ++y) {
            for (int x = 0; x < image.cols; ++x) {
                sum += zorv::get_pix<unsigned char>(image, x, y, 0);
            }
        }
        benchmark::DoNotOptimize(sum);
    };
    const auto peer = [image] {
        long sum = 0;
        for (int y = 0; y < image.rows; ++y) {
            for (int x = 0; x < image.cols; ++x) {
                if (x < 0 || y < 0 || x >= image.cols || y >= image.rows) {
                    throw std::out_of_range("position outside the image");
                }
                sum += image.at<unsigned char>(y, x);
            }
        }
        benchmark::DoNotOptimize(sum);
    };
    ZORV_COMPARE("get_pix<unsigned char>, every pixel (cv::Mat::at with a bounds test)", 1.5, ours, peer);
}

template <class Sample>
void compare_samples(const std::string& label, Sample sample, int interpolation) {
    cv::Mat image(photograph_size, CV_32F);
    cv::randu(image, 0.0, 255.0);
    // A slight swirl about the middle, so that the fractions differ from pixel to pixel.
    cv::Mat positions(photograph_size, CV_32FC2);
    for (int y = 0; y < image.rows; ++y) {
        for (int x = 0; x < image.cols; ++x) {
            const double u = x + 3.0 * std::sin(0.01 * y);
            const double v = y + 3.0 * std::sin(0.01 * x);
            positions.at<cv::Vec2f>(y, x) =
                cv::Vec2f(static_cast<float>(std::min(std::max(u, 0.0), image.cols - 1.0)),
                          static_cast<float>(std::min(std::max(v, 0.0), image.rows - 1.0)));
        }
    }
    const cv::Mat target(photograph_size, CV_32F);
    const auto ours = [=] {
        cv::Mat out = target;
        for (int y = 0; y < out.rows; ++y) {
            const cv::Vec2f* position = positions.ptr<cv::Vec2f>(y);
            float* value = out.ptr<float>(y);
            for (int x = 0; x < out.cols; ++x) {
                value[x] = static_cast<float>(sample(image, position[x][0], position[x][1]));
            }
        }
        benchmark::ClobberMemory();
    };
    const auto peer = [=] {
        cv::Mat out = target;
        cv::remap(image, out, positions, cv::noArray(), interpolation, cv::BORDER_REPLICATE);
        benchmark::ClobberMemory();
    };
    ZORV_COMPARE(label, 2.0, ours, peer);
}

}  // namespace

void register_comparisons() {
    compare_pixel_reads();
    compare_samples(
        "interp_pix, a sample at each pixel (cv::remap, INTER_CUBIC)",
        [](const cv::Mat& image, double x, double y) { return zorv::interp_pix(image, x, y, 0); },
        cv::INTER_CUBIC);
    compare_samples(
        "interp_pix_linear, a sample at each pixel (cv::remap, INTER_LINEAR)",
        [](const cv::Mat& image, double x, double y) { return zorv::interp_pix_linear(image, x, y, 0); },
        cv::INTER_LINEAR);
}
