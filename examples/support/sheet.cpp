#include "examples/support/sheet.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "zorv_tools/image/image_utils.h"

namespace {

const cv::Scalar white(255, 255, 255, 0);
constexpr int font = cv::FONT_HERSHEY_DUPLEX;
constexpr int margin = 10;

/// A black strip with the words in its middle.
cv::Mat strip(const std::string& words, int width, double scale, const cv::Scalar& colour) {
    int baseline = 0;
    const cv::Size text = cv::getTextSize(words, font, scale, 1, &baseline);
    // A title has 10 rows above it.
    cv::Mat drawn(text.height + baseline + 2 * 10, std::max(width, text.width + 2 * margin), CV_8UC3,
                  cv::Scalar::all(0));
    zorv::image_title(drawn, words, font, scale, colour);
    return drawn;
}

}  // namespace

cv::Mat as_colour(const cv::Mat& picture) {
    cv::Mat bytes;
    picture.convertTo(bytes, CV_8U, picture.depth() == CV_64F ? 255.0 : 1.0);
    if (bytes.channels() == 1) {
        cv::cvtColor(bytes, bytes, cv::COLOR_GRAY2BGR);
    }
    return bytes;
}

cv::Mat as_heat(const cv::Mat& map, double largest) {
    cv::Mat scaled, heat;
    map.convertTo(scaled, CV_8U, 255.0 / largest);
    cv::applyColorMap(scaled, heat, cv::COLORMAP_INFERNO);
    heat.setTo(cv::Scalar::all(0), map == 0);
    return heat;
}

cv::Mat panel(const cv::Mat& picture, const std::string& title, int width) {
    cv::Mat scaled;
    const double scale = static_cast<double>(width) / picture.cols;
    const cv::Size size(width, std::max(1, cvRound(picture.rows * scale)));
    cv::resize(as_colour(picture), scaled, size, 0, 0, scale < 1 ? cv::INTER_AREA : cv::INTER_LINEAR);
    // A frame shows how far a picture with black borders reaches.
    cv::copyMakeBorder(scaled, scaled, 1, 1, 1, 1, cv::BORDER_CONSTANT, cv::Scalar::all(90));
    const cv::Mat titled = zorv::join_images_on_top(strip(title, width, 0.7, white), scaled, true, false);
    cv::Mat framed;
    cv::copyMakeBorder(titled, framed, 0, margin, margin, margin, cv::BORDER_CONSTANT);
    return framed;
}

cv::Mat contact_sheet(const std::string& heading, const std::vector<cv::Mat>& panels,
                      const std::vector<std::pair<std::string, cv::Scalar>>& legend) {
    cv::Mat sheet = zorv::join_images_ordered(panels, true, false);
    cv::Mat words;
    for (const auto& [text, colour] : legend) {
        words = zorv::join_images_side_by_side(words, strip(text, 0, 0.7, colour), true, false);
    }
    sheet = zorv::join_images_on_top(strip(heading, sheet.cols, 1.0, white), sheet, true, false);
    return zorv::join_images_on_top(sheet, words, true, true);
}
