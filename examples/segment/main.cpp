// Cuts an object out of a picture by its depth, moves it to the middle, and shows every step on one sheet.

#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <sstream>
#include <stdexcept>
#include <string>

#include "examples/segment/segmentation.h"
#include "examples/support/options.h"
#include "examples/support/pictures.h"
#include "examples/support/sheet.h"
#include "zorv_tools/config/configuration.h"
#include "zorv_tools/image/Opencv_io.h"
#include "zorv_tools/image/colour_codes.h"

namespace {

constexpr int panel_width = 520;

using zorv::operator<<;  // NOLINT(misc-unused-using-decls): for sizes and rectangles

/// Depth codes of 8 bits, 0 where there is none.
cv::Mat read_depth(const options& given) {
    if (given.given("depth") == given.given("disparity")) {
        throw usage_error("either --depth or --disparity is needed (see --help)");
    }
    cv::Mat depth = read_map(given.text(given.given("depth") ? "depth" : "disparity"));
    if (given.given("disparity") && depth.depth() != CV_8U) {
        // Codes above 240 stand for no measurement.
        cv::normalize(depth, depth, 240.0, 0.0, cv::NORM_INF, CV_8U);
    }
    if (depth.type() != CV_8UC1) {
        throw std::runtime_error("the depth image \"" + given.text("depth") + "\" is not one of 8 bits");
    }
    return depth;
}

cv::Rect read_region(const options& given, const cv::Size& size) {
    if (!given.given("region")) {
        return {cv::Point(), size};
    }
    std::istringstream text(given.text("region"));
    cv::Rect region;
    char comma[3] = {};
    text >> region.x >> comma[0] >> region.y >> comma[1] >> region.width >> comma[2] >> region.height;
    if (!text || !text.eof() || std::string(comma, 3) != ",,,") {
        throw usage_error("option --region needs X,Y,WIDTH,HEIGHT, not \"" + given.text("region") + "\"");
    }
    if (region.empty() || region.x < 0 || region.y < 0 || region.x > size.width - region.width ||
        region.y > size.height - region.height) {
        std::ostringstream sentence;
        sentence << "the region " << region << " is not inside the picture of " << size;
        throw usage_error(sentence.str());
    }
    return region;
}

double number_above(const options& given, const std::string& name, double bound) {
    const double value = given.number(name);
    if (!(value > bound)) {
        std::ostringstream sentence;
        sentence << "option --" << name << " must be above " << bound << ", not " << value;
        throw usage_error(sentence.str());
    }
    return value;
}

/// It owns the kernel.
std::unique_ptr<const zorv::configuration> read_configuration(const options& given) {
    if (!given.given("config")) {
        return std::make_unique<const zorv::configuration>();
    }
    // The store would only warn of a missing file.
    if (!std::filesystem::is_regular_file(given.text("config"))) {
        throw std::runtime_error("cannot read the configuration file \"" + given.text("config") + "\"");
    }
    return std::make_unique<const zorv::configuration>(given.text("config"));
}

void mark(cv::Mat& picture, const segmentation& found, double scale) {
    // Lines that are two pixels wide on the sheet.
    const int thickness = std::max(1, cvRound(2.0 * scale));
    cv::rectangle(picture, found.region, zorv::colour_set(0), thickness);
    cv::rectangle(picture, found.box, zorv::colour_set(8), thickness);
    cv::drawMarker(picture, found.centre, zorv::colour_set(3), cv::MARKER_CROSS, 10 * thickness, thickness);
}

cv::Mat draw_sheet(const cv::Mat& appearance, const cv::Mat& depth, const settings& given,
                   const segmentation& found) {
    cv::Mat input = appearance.clone();
    const double input_scale = static_cast<double>(input.cols) / panel_width;
    cv::rectangle(input, given.region, zorv::colour_set(0), std::max(1, cvRound(2.0 * input_scale)));
    cv::Mat recentred = found.recentred_appearance.clone();
    double largest = 0.0;
    cv::minMaxLoc(depth, nullptr, &largest);
    cv::Mat recentred_depth = as_heat(found.recentred_depth, largest);
    for (cv::Mat* picture : {&recentred, &recentred_depth}) {
        mark(*picture, found, static_cast<double>(picture->cols) / panel_width);
    }
    std::ostringstream heading;
    heading << "Segmentation by depth: code " << found.object_depth << " within "
            << 100.0 * given.depth_tolerance << " per cent";
    return contact_sheet(
        heading.str(),
        {panel(input, "Appearance", panel_width),
         panel(found.thresholded_appearance, "Cut to the band of depth", panel_width),
         panel(recentred, "Recentred on the object", panel_width),
         panel(as_heat(depth, largest), "Depth codes", panel_width),
         panel(as_heat(found.thresholded_depth, largest), "Depth codes of the band", panel_width),
         panel(recentred_depth, "Recentred depth codes", panel_width)},
        {{"Region of interest", zorv::colour_set(0)},
         {"Box of highest contrast to its ring", zorv::colour_set(8)},
         {"Centre of the object", zorv::colour_set(3)}});
}

int segment(const options& given) {
    if (!given.given("app")) {
        throw usage_error("option --app is needed (see --help)");
    }
    const cv::Mat appearance = read_colour_picture(given.text("app"));
    const cv::Mat depth = read_depth(given);
    if (depth.size() != appearance.size()) {
        std::ostringstream sentence;
        sentence << "the depth image is of " << depth.size() << ", but the picture of " << appearance.size();
        throw std::runtime_error(sentence.str());
    }
    settings wanted;
    wanted.region = read_region(given, appearance.size());
    wanted.object_depth = given.integer("object-depth");
    wanted.depth_tolerance = number_above(given, "tolerance", 0.0);
    wanted.width_factor = number_above(given, "width-factor", 0.0);
    wanted.height_factor = number_above(given, "height-factor", 0.0);
    wanted.minimum_width =
        given.given("minimum-width") ? given.integer("minimum-width") : std::max(1, wanted.region.width / 2);
    if (wanted.minimum_width < 1) {
        throw usage_error("option --minimum-width must be at least 1");
    }
    wanted.width_step = number_above(given, "width-step", 1.0);

    const std::unique_ptr<const zorv::configuration> store = read_configuration(given);
    store->get_param("closing_kernel", wanted.kernel);
    store->get_param("closing_iterations", wanted.iterations);

    const auto start = std::chrono::steady_clock::now();
    const segmentation found = segment_object(appearance, depth, wanted);
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;

    std::cout << "object depth: " << found.object_depth << "\n"
              << "recentred images: " << found.recentred_depth.size() << "\n"
              << "region of interest: " << found.region << "\n"
              << "centre: (" << found.centre.x << "," << found.centre.y << ")\n"
              << "box of highest contrast: " << found.box << "\n"
              << "time: " << spent.count() << " s" << std::endl;
    write_picture(given.text("out"), "sheet.png", draw_sheet(appearance, depth, wanted, found));
    std::cout << "written: sheet.png in " << given.text("out") << std::endl;
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    return run_program("segment", [&] {
        options given(
            "segment",
            "Cuts an object out of a picture by its depth, moves it to the middle, and shows every step "
            "on one\nsheet.",
            {{"app", "FILE", "the picture"},
             {"depth", "FILE", "its depth codes, 8 bits a pixel"},
             {"disparity", "FILE", "in place of --depth: its disparities, taken as codes"},
             {"config", "FILE", "configuration with a closing_kernel for holes in the depth"},
             {"region", "X,Y,W,H", "where the object is, roughly; else the whole picture"},
             {"object-depth", "CODE", "depth of the object; 0 for the region's median", "0"},
             {"tolerance", "PART", "half the band of depth, as a part of the object's", "0.1"},
             {"width-factor", "F", "how much wider than the region the object may be", "1.5"},
             {"height-factor", "F", "the same for its height", "1.5"},
             {"minimum-width", "PIXELS", "smallest box to search; else half the region's width"},
             {"width-step", "F", "factor from one width of box to the next", "1.2"},
             {"out", "FOLDER", "where to write sheet.png", "."}});
        return given.parse(argc, argv) ? segment(given) : 0;
    });
}
