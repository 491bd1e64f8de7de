// Finds the pose of the camera in photographs of a chessboard, shows it by a cube that stands on the board, and
// sets it beside the pose that OpenCV finds.

#include <cmath>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <limits>
#include <stdexcept>

#include "examples/board_pose/board.h"
#include "examples/board_pose/drawing.h"
#include "examples/board_pose/pose.h"
#include "examples/support/options.h"
#include "examples/support/pictures.h"
#include "examples/support/progress.h"
#include "examples/support/sheet.h"
#include "zorv_tools/geometry/Transform_estimator.h"

namespace {

struct solved_photograph {
    std::string name;
    observation seen;
    std::size_t solutions;
    pose by_upnp;
    pose by_solve_pnp;
};

/// Root of the mean squared distance, in pixels, between corners and their projections; infinite where the
/// camera does not see one of them.
double reprojection_error(const zorv::Camera& camera, const std::vector<cv::Point3d>& world,
                          const std::vector<cv::Point2d>& image) {
    double squares = 0;
    for (std::size_t i = 0; i < world.size(); ++i) {
        double u = 0;
        double v = 0;
        double disparity = 0;
        camera.project(world[i].x, world[i].y, world[i].z, u, v, disparity);
        if (!(disparity > 0)) {
            return std::numeric_limits<double>::infinity();
        }
        squares += std::pow(u - image[i].x, 2) + std::pow(v - image[i].y, 2);
    }
    return std::sqrt(squares / static_cast<double>(world.size()));
}

std::vector<cv::Point3d> cube_for(const cv::Size& board, const pose& camera) {
    return cube_corners(board, {camera.translation[0], camera.translation[1], camera.translation[2]});
}

std::vector<solved_photograph> solve(const std::vector<std::string>& paths, const lens& optics,
                                     const cv::Size& board) {
    std::vector<solved_photograph> solved;
    const std::vector<cv::Point3d> world = board_corners(board);
    cv::Size size;
    progress_line line("looking for the board", static_cast<long>(paths.size()));
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const cv::Mat photograph = read_colour_picture(paths[i]);
        if (i > 0 && photograph.size() != size) {
            throw std::runtime_error("\"" + paths[i] + "\" is not of the size of the photographs before it");
        }
        size = photograph.size();
        const std::string name = std::filesystem::path(paths[i]).filename().string();
        observation seen = observe_board(photograph, optics, board);
        if (seen.corners.empty()) {
            std::cout << name << ": no board found\n";
        } else if (upnp_result found = pose_by_upnp(seen.corners, world, optics.camera_matrix);
                   found.solutions == 0) {
            std::cout << name << ": no pose found\n";
        } else {
            pose other = pose_by_solve_pnp(seen.corners, world, optics.camera_matrix);
            solved.push_back({name, std::move(seen), found.solutions, found.best, other});
        }
        line.update(static_cast<long>(i + 1));
    }
    if (solved.empty()) {
        throw std::runtime_error("no pose was found in any photograph");
    }
    return solved;
}

/// Estimates the transform from the second photograph's camera frame to the first's out of points in both, and
/// prints how far it is from that of the two poses. The board alone is flat and would leave the transform open.
void compare_frames(const solved_photograph& first, const solved_photograph& second,
                    const zorv::Camera& first_camera, const zorv::Camera& second_camera,
                    const cv::Size& board) {
    std::vector<cv::Point3d> points = board_corners(board);
    const std::vector<cv::Point3d> cube = cube_for(board, first.by_upnp);
    points.insert(points.end(), cube.begin(), cube.end());
    const auto in_frame = [&](const zorv::Camera& camera) {
        std::vector<std::vector<double>> result;
        for (const cv::Point3d& p : points) {
            std::vector<double> q = {p.x, p.y, p.z};
            camera.apply_extrinsic(q[0], q[1], q[2]);
            result.push_back(q);
        }
        return result;
    };
    const zorv::matrix<double> estimated =
        zorv::Transform_estimator().estimate_transform(in_frame(first_camera), in_frame(second_camera));
    const zorv::matrix<double> expected = frame_to_frame(second.by_upnp, first.by_upnp);
    double largest = 0;
    for (unsigned int r = 0; r < 4; ++r) {
        for (unsigned int c = 0; c < 4; ++c) {
            largest = std::max(largest, std::abs(estimated[r][c] - expected[r][c]));
        }
    }
    std::cout << "transform from the camera frame of " << second.name << " to that of " << first.name
              << ", by " << points.size()
              << " points: no element differs from that of the poses by more than " << std::setprecision(2)
              << std::defaultfloat << largest << std::endl;
}

int find_poses(const options& given) {
    if (!given.given("intrinsics")) {
        throw usage_error("option --intrinsics is needed (see --help)");
    }
    if (given.operands().empty()) {
        throw usage_error("at least one photograph is needed (see --help)");
    }
    const cv::Size board(given.integer("columns"), given.integer("rows"));
    if (board.width < 3 || board.height < 3) {
        throw usage_error("a board needs at least 3 columns and 3 rows of inner corners");
    }
    const std::string folder = given.text("out");
    const lens optics = read_lens(given.text("intrinsics"));
    std::vector<solved_photograph> photographs = solve(given.operands(), optics, board);
    const cv::Size size = photographs[0].seen.picture.size();

    std::vector<pose> poses;
    std::vector<pose> other_poses;
    for (const solved_photograph& p : photographs) {
        poses.push_back(p.by_upnp);
        other_poses.push_back(p.by_solve_pnp);
    }
    std::error_code ignored;  // A folder that is not there is told of when the first file is written.
    std::filesystem::create_directories(folder, ignored);
    const auto file = [&](const std::string& name) {
        return (std::filesystem::path(folder) / name).string();
    };
    const std::vector<zorv::Camera> cameras =
        cameras_through_file(file("cameras.txt"), poses, optics.camera_matrix, size);
    const std::vector<zorv::Camera> other_cameras =
        cameras_through_file(file("cameras_solvepnp.txt"), other_poses, optics.camera_matrix, size);

    const std::vector<cv::Point3d> world = board_corners(board);
    std::cout << "photograph     solutions  error (px): upnp  solvePnP  apart: degrees  squares\n"
              << std::fixed;
    std::vector<cv::Mat> panels;
    for (std::size_t i = 0; i < photographs.size(); ++i) {
        solved_photograph& p = photographs[i];
        std::cout << std::left << std::setw(15) << p.name << std::right << std::setw(9) << p.solutions
                  << std::setprecision(4) << std::setw(18)
                  << reprojection_error(cameras[i], world, p.seen.corners) << std::setw(10)
                  << reprojection_error(other_cameras[i], world, p.seen.corners) << std::setw(16)
                  << angle_between(p.by_upnp, p.by_solve_pnp) << std::setw(9)
                  << distance_between(p.by_upnp, p.by_solve_pnp) << "\n";
        draw_scene(p.seen.picture, cameras[i], world, cube_for(board, p.by_upnp));
        write_picture(folder, std::filesystem::path(p.name).stem().string() + ".png", p.seen.picture);
        panels.push_back(panel(p.seen.picture, p.name, 400));
    }
    // A grid of one is none.
    write_picture(
        folder, "sheet.png",
        panels.size() == 1
            ? panels[0]
            : contact_sheet(
                  "A cube on the board, by the poses of upnp", panels,
                  {{"corners as projected", corner_colour}, {"cube", cube_colour}, {"its top", top_colour}}));
    if (photographs.size() > 1) {
        compare_frames(photographs[0], photographs[1], cameras[0], cameras[1], board);
    }
    std::cout << "written: the cameras, a picture for each photograph and sheet.png in " << folder
              << std::endl;
    return photographs.size() == given.operands().size() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    return run_program("board_pose", [&] {
        options given(
            "board_pose",
            "Finds where the camera stood in photographs of a chessboard, all of one size and taken\n"
            "with one lens, and draws a cube on the board. The status is 1 if one was not solved.",
            {{"intrinsics", "FILE", "the lens, as OpenCV's calibration writes it (YAML or XML)"},
             {"columns", "NUMBER", "inner corners in a row of the board", "9"},
             {"rows", "NUMBER", "inner corners in a column of the board", "6"},
             {"out", "FOLDER", "where to write the cameras and the pictures", "."}},
            "PHOTOGRAPH...");
        return given.parse(argc, argv) ? find_poses(given) : 0;
    });
}
