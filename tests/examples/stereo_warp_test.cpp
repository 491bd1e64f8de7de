#include <gtest/gtest.h>

#include <algorithm>
#include <opencv2/imgcodecs.hpp>
#include <string>

#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"

namespace {

const int width = 64;
const int height = 48;
const std::string intrinsics = "bumblebee_params=0.5|0.5|2|2.5|64|48|0.1\n";
const std::string two_cameras = intrinsics + intrinsics +
                                "extrinsic_camera_params_q=0|0|0|1|0|0|0\n"
                                "extrinsic_camera_params_q=0|0|0|1|0.1|0|0\n";

/// A ramp, brighter by 3 for each column, that begins `shift` columns to the left.
cv::Mat ramp(double shift) {
    cv::Mat picture(height, width, CV_8UC3);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double value = 3 * (x + shift);
            picture.at<cv::Vec3b>(y, x) = cv::Vec3b(cv::saturate_cast<unsigned char>(value + 40),
                                                    cv::saturate_cast<unsigned char>(y), 7);
        }
    }
    return picture;
}

class StereoWarp : public testing::Test {
protected:
    StereoWarp() {
        folder.write("rig", two_cameras);
        cv::imwrite(folder.path("left.png"), ramp(0));
        cv::imwrite(folder.path("right.png"), ramp(10));
        cv::Mat disparities(height, width, CV_8U, cv::Scalar(10));
        disparities.at<unsigned char>(20, 30) = 0;
        cv::imwrite(folder.path("disparity.png"), disparities);
    }

    program_run warp(const std::string& config, const std::string& left, const std::string& right,
                     const std::string& disparity, const std::string& more = "") const {
        return run(STEREO_WARP, "--config=" + folder.path(config) + " --left " + folder.path(left) +
                                    " --right " + folder.path(right) + " --disparity=" +
                                    folder.path(disparity) + " --out " + folder.path("results") + " " + more);
    }

    cv::Mat result(const std::string& name) const {
        return cv::imread(folder.path("results/" + name), cv::IMREAD_UNCHANGED);
    }

    temporary_directory folder;
};

// Everything but the pixels seen by the left camera alone and the one of unknown disparity is found again.
TEST_F(StereoWarp, PaintsTheLeftViewOutOfTheRightPicture) {
    const program_run done = warp("rig", "left.png", "right.png", "disparity.png");
    ASSERT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(done.err, "");
    EXPECT_NE(done.out.find("left camera created from specific parameters.\ncentre position=(0.5,0.5)\n"),
              std::string::npos);
    EXPECT_NE(done.out.find("right camera created"), std::string::npos);

    // The outer rows may fall out of the image by rounding.
    const cv::Rect inner(0, 1, width, height - 2);
    cv::Mat landed(height, width, CV_8U, cv::Scalar(255));
    landed(cv::Rect(0, 0, 10, height)).setTo(0);
    landed.at<unsigned char>(20, 30) = 0;
    cv::Mat expected = ramp(0);
    expected.setTo(cv::Scalar::all(0), landed == 0);
    // A position in column 10 may round to either side of the right picture's border.
    const auto differs = [&](const cv::Mat& a, const cv::Mat& b) {
        const cv::Rect certain(11, 1, width - 11, height - 2);
        const cv::Rect unseen(0, 1, 10, height - 2);
        return cv::norm(a(certain), b(certain), cv::NORM_INF) + cv::norm(a(unseen), b(unseen), cv::NORM_INF);
    };
    EXPECT_EQ(differs(result("painted.png"), expected), 0);
    EXPECT_EQ(differs(result("mask.png"), landed), 0);
    EXPECT_EQ(cv::norm(result("difference.png")(inner), cv::NORM_INF), 0);
    EXPECT_NE(done.out.find("peak signal-to-noise ratio: inf dB"), std::string::npos) << done.out;
}

TEST_F(StereoWarp, MeasuresTheError) {
    cv::Mat brighter = ramp(10) + cv::Scalar(0, 3, 0);
    cv::imwrite(folder.path("brighter.png"), brighter);
    const program_run done = warp("rig", "left.png", "brighter.png", "disparity.png");
    // One channel of three is off by 3: 10 log10(255 * 255 / 3).
    EXPECT_NE(done.out.find("peak signal-to-noise ratio: 43.3596 dB"), std::string::npos) << done.out;
}

// Half a column further: the ramp gives 3/2 less with either kernel, and the step at its end tells them apart.
TEST_F(StereoWarp, SamplesBetweenPixelsWithTheChosenKernel) {
    cv::Mat step(height, width, CV_8UC3, cv::Scalar::all(100));
    step.colRange(32, width).setTo(cv::Scalar::all(180));
    cv::imwrite(folder.path("step.png"), step);
    const struct {
        const char* options;
        int before, middle, after;
    } rows[] = {{"--disparity-offset 0.5", 95, 140, 185}, {"--disparity-offset 0.5 --linear", 100, 140, 180}};
    for (const auto& row : rows) {
        ASSERT_EQ(warp("rig", "left.png", "step.png", "disparity.png", row.options).status, 0);
        const cv::Mat painted = result("painted.png");
        EXPECT_EQ(painted.at<cv::Vec3b>(5, 41)[1], row.before) << row.options;
        EXPECT_EQ(painted.at<cv::Vec3b>(5, 42)[1], row.middle) << row.options;
        EXPECT_EQ(painted.at<cv::Vec3b>(5, 43)[1], row.after) << row.options;
    }
}

TEST_F(StereoWarp, OneLineForEachMistake) {
    folder.write("one_camera", intrinsics);
    folder.write("no_rig", "no equals sign\n");
    folder.write("text.png", "not a picture");
    folder.write("other_size",
                 "bumblebee_params=0.5|0.5|2|2.5|65|48|0.1\nbumblebee_params=0.5|0.5|2|2.5|65|48|0.1\n");
    folder.write("matrices",
                 "camera_proj_mats=1|0|0|0|0|1|0|0|0|0|1|0\ncamera_proj_mats=1|0|0|0|0|1|0|0|0|0|1|0\n"
                 "camera_space_transform=1|0|0|0|0|1|0|0|0|0|1|0|0|0|0|1\n"
                 "camera_space_transform=1|0|0|0|0|1|0|0|0|0|1|0|0|0|0|1\n"
                 "projection_offsets=0|0\nprojection_offsets=0|0\n");
    cv::imwrite(folder.path("small.png"), ramp(0)(cv::Rect(0, 0, 20, 10)));
    const struct {
        std::string config, left, right, disparity, more, part;
    } rows[] = {
        {"none", "left.png", "right.png", "disparity.png", "", "cannot read the rig file"},
        {"no_rig", "left.png", "right.png", "disparity.png", "",
         "No equals sign found in config file line 0"},
        {"one_camera", "left.png", "right.png", "disparity.png", "", "describes 1 camera(s)"},
        {"other_size", "left.png", "right.png", "disparity.png", "", "images of 65 by 48 pixels"},
        {"matrices", "left.png", "right.png", "disparity.png", "", "camera uses proj mats"},
        {"rig", "none", "right.png", "disparity.png", "", "cannot read the picture"},
        {"rig", "left.png", "text.png", "disparity.png", "", "is not a picture"},
        {"rig", "left.png", "small.png", "disparity.png", "", "the right photograph is 20 by 10 pixels"},
        {"rig", "left.png", "right.png", "small.png", "", "the disparity map is 20 by 10 pixels"},
        {"rig", "left.png", "right.png", "disparity.png", "--disparity-offset x", "needs a number"},
        {"rig", "left.png", "right.png", "disparity.png", "--out " + folder.path("rig"), "cannot write"},
        {"rig", "left.png", "right.png", "disparity.png", "--sideways", "unknown option --sideways"}};
    for (const auto& row : rows) {
        const program_run failed = warp(row.config, row.left, row.right, row.disparity, row.more);
        EXPECT_EQ(failed.status, 1) << row.part;
        EXPECT_NE(failed.err.find(row.part), std::string::npos) << failed.err;
        EXPECT_EQ(failed.err.rfind("stereo_warp: ", 0), 0u) << failed.err;
        EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << failed.err;
    }
    const program_run nothing_given = run(STEREO_WARP, "");
    EXPECT_EQ(nothing_given.status, 1);
    EXPECT_EQ(nothing_given.err, "stereo_warp: option --config is needed (see --help)\n");
}

TEST_F(StereoWarp, HelpNamesTheOptions) {
    const program_run help = run(STEREO_WARP, "--help");
    EXPECT_EQ(help.status, 0);
    for (const char* option :
         {"config", "left", "right", "disparity", "disparity-offset", "linear", "out", "help"}) {
        EXPECT_NE(help.out.find(std::string("  --") + option + " "), std::string::npos) << option;
    }
}

}  // namespace
