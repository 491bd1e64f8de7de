#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "tests/examples/program_test.h"
#include "zorv_tools/config/configuration.h"
#include "zorv_tools/core/rotation.h"
#include "zorv_tools/geometry/Camera.h"

namespace {

const cv::Matx33d camera_matrix(600, 0, 330, 0, 610, 235, 0, 0, 1);
const std::string lens =
    "%YAML:1.0\n---\n"
    "camera_matrix: !!opencv-matrix\n   rows: 3\n   cols: 3\n   dt: d\n"
    "   data: [ 600., 0., 330., 0., 610., 235., 0., 0., 1. ]\n"
    "distortion_coefficients: !!opencv-matrix\n   rows: 5\n   cols: 1\n   dt: d\n"
    "   data: [ 0., 0., 0., 0., 0. ]\n";

/// A camera 13 squares in front of the middle of a board of 9 by 6 inner corners, turned a little.
struct view {
    zorv::matrix<double> world_to_camera;
    std::vector<double> centre = {4.2, 2.4, 0};

    explicit view(const std::vector<double>& quaternion)
        : world_to_camera(zorv::quaternion_to_rot_mat(quaternion)) {}

    cv::Matx33d homography() const {
        cv::Matx33d frame;
        for (int r = 0; r < 3; ++r) {
            const double* const row = world_to_camera[static_cast<unsigned int>(r)];
            frame(r, 0) = row[0];
            frame(r, 1) = row[1];
            frame(r, 2) = (r == 2 ? 13.0 : 0.0) - row[0] * centre[0] - row[1] * centre[1];
        }
        return camera_matrix * frame;
    }

    cv::Point2d project(double x, double y) const {
        const cv::Vec3d p = homography() * cv::Vec3d(x, y, 1);
        return {p[0] / p[2], p[1] / p[2]};
    }

    cv::Mat photograph() const {
        const int side = 48;
        cv::Mat board(9 * side, 12 * side, CV_8UC3, cv::Scalar::all(230));
        for (int row = 0; row < 7; ++row) {
            for (int column = row % 2; column < 10; column += 2) {
                board(cv::Rect((column + 1) * side, (row + 1) * side, side, side)).setTo(20);
            }
        }
        // The inner corner (0, 0) lies between pixels, two squares in.
        const double first = 2 * side - 0.5;
        const cv::Matx33d from_board(1.0 / side, 0, -first / side, 0, 1.0 / side, -first / side, 0, 0, 1);
        cv::Mat picture(480, 640, CV_8UC3, cv::Scalar::all(120));
        cv::Mat smooth;
        cv::GaussianBlur(board, smooth, cv::Size(), 0.7);
        cv::warpPerspective(smooth, picture, homography() * from_board, picture.size(), cv::INTER_LINEAR,
                            cv::BORDER_TRANSPARENT);
        return picture;
    }
};

const view views[] = {view({0.2, 0.1, 0.05, 1}), view({-0.1, 0.22, -0.1, 1})};
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
