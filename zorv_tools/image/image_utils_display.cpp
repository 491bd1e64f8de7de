#include <opencv2/highgui.hpp>

#include "zorv_tools/image/image_utils.h"

namespace zorv {

void imagesc(const std::string& window_name, cv::Mat& image) {
    const cv::Mat normalised = image_normalise(image);
    cv::imshow(window_name, normalised);
}

void check_image(cv::Mat& image) {
    const char* const window = "Image check";
    cv::namedWindow(window, cv::WINDOW_AUTOSIZE);
    try {
        imagesc(window, image);
        cv::waitKey(0);
    } catch (...) {
        cv::destroyWindow(window);
        throw;
    }
    cv::destroyWindow(window);
}

void check_image(IplImage* image) {
    cv::Mat header = cv::cvarrToMat(image, false, true, 0);
    check_image(header);
}

}  // namespace zorv
