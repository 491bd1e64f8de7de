#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/imgcodecs.hpp>
#include <string>

#include "tests/examples/program_test.h"
#include "tests/support/board_view.h"
#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/Camera.h"

namespace {

const board_view views[] = {board_view({0.2, 0.1, 0.05, 1}), board_view({-0.1, 0.22, -0.1, 1})};
const std::string common = "--intrinsics lens.yml --out results ";

class BoardPose : public program_test {
protected:
    BoardPose() {
        folder.write("lens.yml", lens);
        cv::imwrite("view0.png", views[0].photograph());
        cv::imwrite("view1.png", views[1].photograph());
    }
};

TEST_F(BoardPose, FindsTheCamerasAndHandsThemOver) {
    EXPECT_EQ(run(BOARD_POSE, common + "view0.png").status, 0);
    // One panel is the sheet itself: 400 pixels with a line and a margin on either side.
    EXPECT_EQ(cv::imread("results/sheet.png").cols, 422);
    // A photograph without a board is told of and passed over.
    cv::imwrite("grey.png", cv::Mat(480, 640, CV_8UC3, cv::Scalar::all(90)));
    const program_run done = run(BOARD_POSE, common + "grey.png view0.png view1.png");
    ASSERT_EQ(done.status, 1) << done.err;
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(done.out.rfind("grey.png: no board found\n", 0), 0u) << done.out;

    // Cameras read from the file see the board's corners where they were painted, to a small part of a pixel.
    zorv::configuration settings(std::string("results/cameras.txt"));
    std::vector<zorv::Camera> cameras;
    zorv::create_camera_vector(cameras, settings);
    ASSERT_EQ(cameras.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        for (int corner = 0; corner < 54; ++corner) {
            // The board looks the same from its other end, so its corners may be counted from there.
            double nearest = 1000;
            const cv::Point2d there = views[i].project(corner % 9, corner / 9);
            for (int other : {corner, 53 - corner}) {
                double u = 0, v = 0, disparity = 0;
                cameras[i].project(other % 9, other / 9, 0, u, v, disparity);
                nearest = std::min(nearest, std::hypot(u - there.x, v - there.y));
            }
            EXPECT_LT(nearest, 0.1) << "corner " << corner;
        }
        // The camera is on the side that the cube stands on, seen from which the board is not mirrored.
        EXPECT_LT(cameras[i].get_extrinsics()[6], -8);
        const std::string row = "\nview" + std::to_string(i) + ".png";
        EXPECT_NE(done.out.find(row), std::string::npos) << done.out;
        const cv::Mat drawn = cv::imread("results/view" + std::to_string(i) + ".png");
        // An edge of the cube's top, which is orange on grey.
        double u = 0, v = 0, disparity = 0;
        cameras[i].project(4, 1, -2, u, v, disparity);
        const auto edge = drawn.at<cv::Vec3b>(cvRound(v), cvRound(u));
        EXPECT_GT(edge[2] - edge[0], 150);
    }
    const std::string words = "by 62 points: no element differs from that of the poses by more than ";
    ASSERT_NE(done.out.find(words), std::string::npos) << done.out;
    EXPECT_LT(std::stod(done.out.substr(done.out.find(words) + words.size())), 1e-9) << done.out;
    EXPECT_FALSE(cv::imread("results/sheet.png").empty());
}

TEST_F(BoardPose, OneLineForEachMistake) {
    folder.write("text", "not a picture");
    folder.write("flat.yml", "%YAML:1.0\n---\ncamera_matrix: 3\n");
    cv::imwrite("small.png", cv::Mat(100, 200, CV_8UC3, cv::Scalar::all(3)));
    folder.write("no_distortion.yml", lens.substr(0, lens.find("distortion")));
    expect_mistakes(BOARD_POSE, common,
                    {{"", "at least one photograph is needed"},
                     {"small.png", "no pose was found in any photograph"},
                     {"view0.png small.png", "is not of the size of the photographs before it"},
                     {"view0.png --intrinsics none", "cannot read the intrinsics file"},
                     {"view0.png --intrinsics text", "needs a 3 by 3 \"camera_matrix\""},
                     {"view0.png --intrinsics flat.yml", "needs a 3 by 3 \"camera_matrix\""},
                     {"view0.png --intrinsics no_distortion.yml", "and \"distortion_coefficients\""},
                     {"view0.png --rows x", "needs a whole number"},
                     {"view0.png --columns 2", "at least 3 columns"},
                     {"view0.png --out text", "cannot write"}});
    EXPECT_EQ(run(BOARD_POSE, "").err, "board_pose: option --intrinsics is needed (see --help)\n");
}

}  // namespace
