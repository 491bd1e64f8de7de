#include <gtest/gtest.h>

#include <opencv2/imgcodecs.hpp>
#include <string>

#include "tests/examples/program_test.h"

namespace {

const int width = 64;
const int height = 48;
const std::string intrinsics = "bumblebee_params=0.5|0.5|2|2.5|64|48|0.1\n";
const std::string two_cameras = intrinsics + intrinsics +
                                "extrinsic_camera_params_q=0|0|0|1|0|0|0\n"
                                "extrinsic_camera_params_q=0|0|0|1|0.1|0|0\n";

const std::string common =
    "--config=rig --left left.png --right right.png --disparity=disparity.png --out results ";

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

class StereoWarp : public program_test {
protected:
    StereoWarp() {
        folder.write("rig", two_cameras);
        cv::imwrite("left.png", ramp(0));
        cv::imwrite("right.png", ramp(10));
        cv::Mat disparities(height, width, CV_8U, cv::Scalar(10));
        disparities.at<unsigned char>(20, 30) = 0;
        cv::imwrite("disparity.png", disparities);
    }

    /// Options that replace the common ones.
    static program_run warp(const std::string& more = "") { return run(STEREO_WARP, common + more); }

    static cv::Mat result(const std::string& name) {
        return cv::imread("results/" + name, cv::IMREAD_UNCHANGED);
    }
};

// Everything but the pixels seen by the left camera alone and the one of unknown disparity is found again.
TEST_F(StereoWarp, PaintsTheLeftViewOutOfTheRightPicture) {
    const program_run done = warp();
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
    cv::imwrite("brighter.png", ramp(10) + cv::Scalar(0, 3, 0));
    const program_run done = warp("--right brighter.png");
    // One channel of three is off by 3: 10 log10(255 * 255 / 3).
    EXPECT_NE(done.out.find("peak signal-to-noise ratio: 43.3596 dB"), std::string::npos) << done.out;
}

// Half a column further: the step tells the kernels apart, of which one overshoots, if not beyond white.
TEST_F(StereoWarp, SamplesBetweenPixelsWithTheChosenKernel) {
    cv::Mat step(height, width, CV_8UC3, cv::Scalar::all(90));
    step.colRange(32, width).setTo(cv::Scalar::all(250));
    cv::imwrite("step.png", step);
    const struct {
        const char* options;
        int before, middle, after;
    } rows[] = {{"--disparity-offset 0.5", 80, 170, 255}, {"--disparity-offset 0.5 --linear", 90, 170, 250}};
    for (const auto& row : rows) {
        ASSERT_EQ(warp(std::string("--right step.png ") + row.options).status, 0);
        const cv::Mat painted = result("painted.png");
        EXPECT_EQ(painted.at<cv::Vec3b>(5, 41)[1], row.before) << row.options;
        EXPECT_EQ(painted.at<cv::Vec3b>(5, 42)[1], row.middle) << row.options;
        EXPECT_EQ(painted.at<cv::Vec3b>(5, 43)[1], row.after) << row.options;
        // Nothing is known of this one, and the offset makes it no disparity.
        EXPECT_EQ(result("mask.png").at<unsigned char>(20, 30), 0);
    }
}

TEST_F(StereoWarp, OneLineForEachMistake) {
    const auto twice = [](const std::string& line) { return line + "\n" + line + "\n"; };
    folder.write("one_camera", intrinsics);
    folder.write("no_rig", "no equals sign\n");
    folder.write("text.png", "not a picture");
    folder.write("wider", twice("bumblebee_params=0.5|0.5|2|2.5|65|48|0.1"));
    folder.write("higher", twice("bumblebee_params=0.5|0.5|2|2.5|64|49|0.1"));
    folder.write("matrices", twice("camera_proj_mats=1|0|0|0|0|1|0|0|0|0|1|0") +
                                 twice("camera_space_transform=1|0|0|0|0|1|0|0|0|0|1|0|0|0|0|1") +
                                 twice("projection_offsets=0|0"));
    cv::imwrite("small.png", ramp(0)(cv::Rect(0, 0, 20, 10)));
    expect_mistakes(STEREO_WARP, common,
                    {{"--config none", "cannot read the rig file"},
                     {"--config no_rig", "No equals sign found in config file line 0"},
                     {"--config one_camera", "describes 1 camera(s)"},
                     {"--config wider", "images of 65 by 48 pixels"},
                     {"--config higher", "images of 64 by 49 pixels"},
                     {"--config matrices", "camera uses proj mats"},
                     {"--left none", "cannot read the picture"},
                     {"--right text.png", "is not a picture"},
                     {"--right small.png", "the right photograph is 20 by 10 pixels"},
                     {"--disparity small.png", "the disparity map is 20 by 10 pixels"},
                     {"--disparity-offset x", "needs a number"},
                     {"--out rig", "cannot write"},
                     {"--linear=1", "option --linear takes no value"},
                     {"--sideways", "unknown option --sideways"}});
    EXPECT_EQ(run(STEREO_WARP, "").err, "stereo_warp: option --config is needed (see --help)\n");
}

}  // namespace
