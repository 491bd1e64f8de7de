#include "examples/board_pose/drawing.h"

#include <opencv2/imgproc.hpp>

namespace {

// Drawing functions take positions in sixteenths of a pixel.
constexpr int shift = 4;

bool see(const zorv::Camera& camera, const cv::Point3d& point, cv::Point& position) {
    double u = 0;
    double v = 0;
    double disparity = 0;
    camera.project(point.x, point.y, point.z, u, v, disparity);
    position = cv::Point(cvRound(u * (1 << shift)), cvRound(v * (1 << shift)));
    return disparity > 0;
}

}  // namespace

std::vector<cv::Point3d> cube_corners(const cv::Size& board, const cv::Point3d& above) {
    const int side = 2;
    // Whole squares, so that the cube stands on corners of the board.
    const int column = (board.width - 1 - side) / 2;
    const int row = (board.height - 1 - side) / 2;
    const double left = column;
    const double top = row;
    const double height = above.z < 0 ? -side : side;
    std::vector<cv::Point3d> corners;
    for (double z : {0.0, height}) {
        corners.insert(
            corners.end(),
            {{left, top, z}, {left + side, top, z}, {left + side, top + side, z}, {left, top + side, z}});
    }
    return corners;
}

void draw_scene(cv::Mat& picture, const zorv::Camera& camera, const std::vector<cv::Point3d>& points,
                const std::vector<cv::Point3d>& cube) {
    cv::Point a;
    cv::Point b;
    for (const cv::Point3d& point : points) {
        if (see(camera, point, a)) {
            cv::circle(picture, a, 4 << shift, corner_colour, 1, cv::LINE_AA, shift);
        }
    }
    const auto draw_edge = [&](std::size_t from, std::size_t to, const cv::Scalar& colour) {
        if (see(camera, cube[from], a) && see(camera, cube[to], b)) {
            cv::line(picture, a, b, colour, 2, cv::LINE_AA, shift);
        }
    };
    for (std::size_t i = 0; i < 4; ++i) {
        draw_edge(i, (i + 1) % 4, cube_colour);
        draw_edge(i, i + 4, cube_colour);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        draw_edge(4 + i, 4 + (i + 1) % 4, top_colour);
    }
}
