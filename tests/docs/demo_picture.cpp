// Makes the README's picture: renders photographs of a chessboard, has the example program find the cameras in them,
// and scales its sheet down. Nothing in it comes from elsewhere, so that it may be shipped.

#include <algorithm>
#include <iostream>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "tests/support/board_view.h"
#include "tests/support/program.h"

namespace {

/// A table under a wall, lit from above.
cv::Mat room() {
    cv::Mat picture(480, 640, CV_8UC3);
    for (int y = 0; y < picture.rows; ++y) {
        const bool wall = y < 300;
        const double light = wall ? 0.8 - 0.0008 * y : 0.45 + 0.0015 * (y - 300);
        picture.row(y).setTo(light * (wall ? cv::Scalar(170, 160, 150) : cv::Scalar(90, 130, 170)));
    }
    return picture;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: demo_picture BOARD_POSE_PROGRAM PICTURE" << std::endl;
        return 1;
    }
    const temporary_directory folder;
    folder.write("lens.yml", lens);
    const std::vector<std::vector<double>> quaternions = {{0.25, 0.1, 0.05, 1},    {-0.1, 0.3, -0.1, 1},
                                                          {0.3, -0.2, 0.25, 1},    {-0.3, -0.1, 0.1, 1},
                                                          {0.05, -0.35, -0.15, 1}, {-0.35, 0.1, -0.1, 1}};
    std::string photographs;
    for (std::size_t i = 0; i < quaternions.size(); ++i) {
        const std::string path = folder.path("view " + std::to_string(i + 1) + ".png");
        cv::imwrite(path, board_view(quaternions[i]).photograph(room()));
        photographs += " \"" + path + "\"";
    }
    const program_run done = run(argv[1], "--intrinsics " + folder.path("lens.yml") + " --out " +
                                              folder.path("results") + photographs);
    std::cout << done.out;
    if (done.status != 0) {
        std::cerr << done.err;
        return 1;
    }
    cv::Mat sheet = cv::imread(folder.path("results/sheet.png"));
    // Without most of the bars that fit it to 4:3.
    cv::Mat lit;
    cv::cvtColor(sheet, lit, cv::COLOR_BGR2GRAY);
    const cv::Rect used = cv::boundingRect(lit);
    sheet = sheet.rowRange(std::max(used.y - 20, 0), std::min(used.br().y + 20, sheet.rows));
    cv::Mat small;
    cv::resize(sheet, small, cv::Size(960, 960 * sheet.rows / sheet.cols), 0, 0, cv::INTER_AREA);
    return cv::imwrite(argv[2], small, {cv::IMWRITE_PNG_COMPRESSION, 9}) ? 0 : 1;
}
