// Paints the left view of a stereo pair out of the right photograph, by way of the world: a check of a rig's
// calibration and of a disparity map against what the cameras saw.

#include <chrono>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "examples/stereo_warp/quality.h"
#include "examples/stereo_warp/warp.h"
#include "examples/support/options.h"
#include "examples/support/pictures.h"
#include "examples/support/progress.h"
#include "examples/support/sheet.h"
#include "zorv_tools/config/configuration.h"
#include "zorv_tools/image/IplImage_overloads.h"

namespace {

std::string size_text(int width, int height) {
    return std::to_string(width) + " by " + std::to_string(height);
}

void check_size(const std::string& what, const cv::Mat& picture, const cv::Mat& left) {
    if (picture.size() != left.size()) {
        throw std::runtime_error(what + " is " + size_text(picture.cols, picture.rows) +
                                 " pixels, but the left photograph is " + size_text(left.cols, left.rows));
    }
}

std::vector<zorv::Camera> read_rig(const std::string& path, const cv::Mat& left) {
    // The store would only warn of a missing file.
    if (!std::filesystem::is_regular_file(path)) {
        throw std::runtime_error("cannot read the rig file \"" + path + "\"");
    }
    zorv::configuration settings(path);
    std::vector<zorv::Camera> cameras;
    zorv::create_camera_vector(cameras, settings);
    if (cameras.size() < 2) {
        throw std::runtime_error("the rig file \"" + path + "\" describes " + std::to_string(cameras.size()) +
                                 " camera(s), but two are needed");
    }
    for (zorv::Camera& camera : cameras) {
        if (camera.get_image_width() == 0 && camera.get_image_height() == 0) {
            // A camera given by a projection matrix does not know the size of its images.
            camera.set_resolution(left.cols, left.rows);
        }
        if (camera.get_image_width() != left.cols || camera.get_image_height() != left.rows) {
            throw std::runtime_error("the rig file has images of " +
                                     size_text(camera.get_image_width(), camera.get_image_height()) +
                                     " pixels, but the left photograph is " +
                                     size_text(left.cols, left.rows));
        }
    }
    return cameras;
}

cv::Mat draw_sheet(const cv::Mat& left, const cv::Mat& right, const cv::Mat& disparities,
                   const painted_view& view, const std::string& summary) {
    constexpr int width = 520;
    double largest = 0.0;
    cv::minMaxLoc(disparities, nullptr, &largest);
    return contact_sheet("The left view painted out of the right photograph" + summary,
                         {panel(left, "Left photograph", width), panel(right, "Right photograph", width),
                          panel(as_heat(disparities, largest), "Disparities of the left", width),
                          panel(view.picture, "Painted", width),
                          panel(absolute_difference(view.picture, left, view.landed), "Difference", width),
                          panel(view.landed, "Pixels that landed", width)});
}

int warp(const options& given) {
    for (const char* name : {"config", "left", "right", "disparity"}) {
        if (!given.given(name)) {
            throw usage_error(std::string("option --") + name + " is needed (see --help)");
        }
    }
    const double disparity_offset = given.number("disparity-offset");
    const std::string folder = given.text("out");
    const sampler sample = given.given("linear") ? zorv::interp_pix_linear : zorv::interp_pix;

    const cv::Mat left = read_colour_picture(given.text("left"));
    const cv::Mat right = read_colour_picture(given.text("right"));
    const cv::Mat disparities = read_map(given.text("disparity"));
    check_size("the right photograph", right, left);
    check_size("the disparity map", disparities, left);
    const std::vector<zorv::Camera> cameras = read_rig(given.text("config"), left);
    std::cout << "left " << cameras[0] << "right " << cameras[1];

    const auto start = std::chrono::steady_clock::now();
    painted_view view;
    {
        progress_line line("painting", left.rows);
        view = paint_view(right, disparities, disparity_offset, cameras[0], cameras[1], sample,
                          [&](int rows) { line.update(rows); });
    }
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;

    const int landed = cv::countNonZero(view.landed);
    std::cout << "landed: " << landed << " of " << left.total() << " pixels ("
              << 100.0 * landed / static_cast<double>(left.total()) << " %)\n";
    std::ostringstream summary;
    if (landed > 0) {
        const double ratio = peak_signal_to_noise(view.picture, left, view.landed);
        summary << ": " << ratio << " dB";
        std::cout << "peak signal-to-noise ratio: " << ratio
                  << " dB (the right photograph as it is: " << peak_signal_to_noise(right, left, view.landed)
                  << " dB)\n";
    }
    std::cout << "time: " << spent.count() << " s" << std::endl;

    write_picture(folder, "painted.png", view.picture);
    write_picture(folder, "difference.png", absolute_difference(view.picture, left, view.landed));
    write_picture(folder, "mask.png", view.landed);
    write_picture(folder, "sheet.png", draw_sheet(left, right, disparities, view, summary.str()));
    std::cout << "written: painted.png, difference.png, mask.png and sheet.png in " << folder << std::endl;
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    return run_program("stereo_warp", [&] {
        options given(
            "stereo_warp",
            "Paints the left view of a stereo pair out of the right photograph: each left pixel that has a\n"
            "disparity goes to its world point, and from there into the right photograph.",
            {{"config", "FILE", "the rig, two cameras"},
             {"left", "FILE", "left photograph, to compare with"},
             {"right", "FILE", "right photograph, to paint with"},
             {"disparity", "FILE", "disparity map of the left photograph, 0 where unknown"},
             {"disparity-offset", "PIXELS", "what to add to the map's values", "0"},
             {"linear", "", "sample bilinearly instead of bicubically"},
             {"out", "FOLDER", "where to write painted.png, difference.png, mask.png and sheet.png", "."}});
        return given.parse(argc, argv) ? warp(given) : 0;
    });
}
