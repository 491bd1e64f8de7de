#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "tests/support/board_view.h"
#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"
#include "zorv_tools/config/configuration.h"
#include "zorv_tools/core/rotation.h"
#include "zorv_tools/geometry/Camera.h"

namespace {

class BoardPose : public testing::Test {
protected:
    BoardPose() {
        folder.write("lens.yml", lens);
        for (std::size_t i = 0; i < views.size(); ++i) {
            cv::imwrite(photograph(i), views[i].photograph());
        }
    }

    std::string photograph(std::size_t i) const { return folder.path("view" + std::to_string(i) + ".png"); }

    program_run find(const std::string& photographs, const std::string& more = "") const {
        return run(BOARD_POSE, "--intrinsics " + folder.path("lens.yml") + " --out " +
                                   folder.path("results") + " " + more + " " + photographs);
    }

    temporary_directory folder;
    const std::vector<board_view> views = {board_view({0.2, 0.1, 0.05, 1}),
                                           board_view({-0.1, 0.22, -0.1, 1})};
};

TEST_F(BoardPose, FindsTheCamerasAndHandsThemOver) {
    const program_run done = find(photograph(0) + " " + photograph(1));
    ASSERT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(done.err, "");

    // Cameras read from the file see the board's corners where they were painted, to a small part of a pixel.
    zorv::configuration settings(folder.path("results/cameras.txt"));
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
        const cv::Mat drawn = cv::imread(folder.path("results/view" + std::to_string(i) + ".png"));
        cv::Mat top;
        cv::inRange(drawn, cv::Scalar(0, 130, 245), cv::Scalar(10, 150, 255), top);
        EXPECT_GT(cv::countNonZero(top), 100);
    }
    EXPECT_NE(done.out.find("by 62 points: no element differs"), std::string::npos) << done.out;
    EXPECT_FALSE(cv::imread(folder.path("results/sheet.png")).empty());
}

TEST_F(BoardPose, GoesOnAfterAPhotographWithoutABoard) {
    cv::imwrite(folder.path("grey.png"), cv::Mat(480, 640, CV_8UC3, cv::Scalar::all(90)));
    const program_run done = find(folder.path("grey.png") + " " + photograph(1));
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.err, "");
    EXPECT_EQ(done.out.rfind("grey.png: no board found\n", 0), 0u) << done.out;
    EXPECT_NE(done.out.find("\nview1.png"), std::string::npos) << done.out;
    EXPECT_FALSE(cv::imread(folder.path("results/sheet.png")).empty());
}

TEST_F(BoardPose, OneLineForEachMistake) {
    folder.write("text", "not a picture");
    folder.write("flat.yml", "%YAML:1.0\n---\ncamera_matrix: 3\n");
    cv::imwrite(folder.path("small.png"), cv::Mat(100, 200, CV_8UC3, cv::Scalar::all(3)));
    const struct {
        std::string photographs, more, part;
    } rows[] = {
        {"", "", "at least one photograph is needed"},
        {folder.path("none"), "", "cannot read the picture"},
        {folder.path("text"), "", "is not a picture"},
        {folder.path("small.png"), "", "no pose was found in any photograph"},
        {photograph(0) + " " + folder.path("small.png"), "",
         "is not of the size of the photographs before it"},
        {photograph(0), "--intrinsics " + folder.path("none"), "cannot read the intrinsics file"},
        {photograph(0), "--intrinsics " + folder.path("text"), "needs a 3 by 3 \"camera_matrix\""},
        {photograph(0), "--intrinsics " + folder.path("flat.yml"), "needs a 3 by 3 \"camera_matrix\""},
        {photograph(0), "--rows x", "needs a whole number"},
        {photograph(0), "--columns 2", "at least 3 columns"},
        {photograph(0), "--out " + folder.path("text"), "cannot write"},
    };
    for (const auto& row : rows) {
        const program_run failed = find(row.photographs, row.more);
        EXPECT_EQ(failed.status, 1) << row.part;
        EXPECT_NE(failed.err.find(row.part), std::string::npos) << failed.err;
        EXPECT_EQ(failed.err.rfind("board_pose: ", 0), 0u) << failed.err;
        EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << failed.err;
    }
    EXPECT_EQ(run(BOARD_POSE, "").err, "board_pose: option --intrinsics is needed (see --help)\n");
    const program_run help = run(BOARD_POSE, "--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.rfind("Usage: board_pose [options] PHOTOGRAPH...\n", 0), 0u) << help.out;
}

}  // namespace
