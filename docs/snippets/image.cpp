//! [program]
#include <iostream>
#include <string>
#include <vector>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/image/IplImage_overloads.h"
#include "zorv_tools/image/colour_codes.h"
#include "zorv_tools/image/image_utils.h"

int main() {
    // A ramp, twice as steep along x as along y.
    cv::Mat ramp(48, 64, CV_8UC1);
    for (int y = 0; y < ramp.rows; ++y) {
        for (int x = 0; x < ramp.cols; ++x) {
            zorv::get_pix<unsigned char>(ramp, x, y, 0) = static_cast<unsigned char>(2 * x + y);
        }
    }

    // A value between the pixels; position x, y, then the channel.
    const double value = zorv::interp_pix(ramp, 10.5, 20.25, 0);
    std::cout << "value " << value << std::endl;

    // A position outside the image throws, with a report of where.
    bool refused = false;
    try {
        zorv::interp_pix(ramp, 64, 20, 0);
    } catch (const zorv::exception_l& e) {
        refused = std::string(e.what()).find("Details: ") != std::string::npos;
    }

    // Three pictures on one sheet of the ratio 4:3.
    const std::vector<cv::Mat> pictures = {cv::Mat(90, 160, CV_8UC3, zorv::colour_set(0)),
                                           cv::Mat(90, 160, CV_8UC3, zorv::colour_set(1)),
                                           cv::Mat(90, 160, CV_8UC3, zorv::colour_set(2))};
    const cv::Mat sheet = zorv::join_images_ordered(pictures, true, true);
    std::cout << "sheet of " << sheet.cols << " by " << sheet.rows << std::endl;
    return value == 41.25 && refused && sheet.cols * 3 == sheet.rows * 4 ? 0 : 1;
}
//! [program]
