#include "examples/stereo_warp/quality.h"

#include <cmath>

double peak_signal_to_noise(const cv::Mat& picture, const cv::Mat& truth, const cv::Mat& mask) {
    const double squares = cv::norm(picture, truth, cv::NORM_L2SQR, mask);
    const double mean_square = squares / (cv::countNonZero(mask) * picture.channels());
    return 10 * std::log10(255.0 * 255.0 / mean_square);
}

cv::Mat absolute_difference(const cv::Mat& picture, const cv::Mat& truth, const cv::Mat& mask) {
    cv::Mat difference;
    cv::absdiff(picture, truth, difference);
    difference.setTo(cv::Scalar::all(0), mask == 0);
    return difference;
}
