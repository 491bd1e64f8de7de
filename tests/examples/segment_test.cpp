#include <gtest/gtest.h>

#include <algorithm>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"

namespace {

const cv::Rect object(70, 30, 31, 21);

class Segment : public testing::Test {
protected:
    Segment() {
        cv::Mat app(90, 120, CV_8UC3, cv::Scalar(40, 120, 200));
        cv::Mat depth(90, 120, CV_8U, cv::Scalar(200));
        depth(object).setTo(100);
        depth.at<unsigned char>(object.y + 10, object.x + 4) = 0;
        cv::imwrite(folder.path("app.png"), app);
        cv::imwrite(folder.path("depth.png"), depth);
        cv::Mat deep;
        depth.convertTo(deep, CV_16U, 100.0);
        cv::imwrite(folder.path("deep.png"), deep);
        folder.write("closing", "closing_kernel=3|3|1|1|0|1\n");
    }

    program_run segment(const std::string& app, const std::string& more) const {
        return run(SEGMENT, "--app " + folder.path(app) + " --out " + folder.path("results") + " " + more);
    }
    std::string depth(const std::string& name = "depth.png") const {
        return "--depth=" + folder.path(name) + " ";
    }

    temporary_directory folder;
};

TEST_F(Segment, FindsTheObjectAndWritesOneSheet) {
    for (const std::string& source :
         {depth() + "--config " + folder.path("closing"), "--disparity " + folder.path("deep.png")}) {
        const program_run done = segment("app.png", source + " --region 72,31,24,18 --minimum-width 24");
        ASSERT_EQ(done.status, 0) << done.err;
        EXPECT_EQ(done.err, "");
        // Codes that come from 16 bits are scaled to 240. The object's centre (85,40) becomes the middle.
        for (const std::string& line :
             {std::string("object depth: ") + (source.find("deep") == std::string::npos ? "100\n" : "120\n"),
              std::string("recentred images: (170,100)\n"),
              std::string("region of interest: (73,41,24,18)\n"), std::string("centre: (8"),
              std::string("box of highest contrast: (")}) {
            EXPECT_NE(done.out.find(line), std::string::npos) << line << done.out;
        }
        const cv::Mat sheet = cv::imread(folder.path("results/sheet.png"));
        ASSERT_FALSE(sheet.empty());
        EXPECT_TRUE(sheet.rows == 3 * sheet.cols / 4 || sheet.cols == 4 * sheet.rows / 3) << sheet.size();
        // The picture is there three times, mostly cut away in two of them; boxes and words have their colours.
        const cv::Scalar colours[] = {{40, 120, 200}, {0, 179, 255}, {142, 118, 246}, {215, 189, 166}};
        for (const cv::Scalar& colour : colours) {
            cv::Mat marks;
            cv::inRange(sheet, colour, colour, marks);
            EXPECT_GT(cv::countNonZero(marks), colour == colours[0] ? 100000 : 100) << colour;
        }
    }
}

TEST_F(Segment, OneLineForEachMistake) {
    cv::imwrite(folder.path("small.png"), cv::Mat(10, 20, CV_8U, cv::Scalar(3)));
    folder.write("no_assignment", "closing kernel\n");
    const struct {
        std::string app, more, part;
    } rows[] = {
        {"none", depth(), "cannot read the picture"},
        {"app.png", depth("small.png"), "the depth image is of (20,10), but the picture of (120,90)"},
        {"app.png", depth("deep.png"), "is not one of 8 bits"},
        {"app.png", "", "either --depth or --disparity is needed"},
        {"app.png", depth() + "--region 1,2,3", "needs X,Y,WIDTH,HEIGHT"},
        {"app.png", depth() + "--region 100,80,21,10", "the region (100,80,21,10) is not inside the picture"},
        {"app.png", depth() + "--config " + folder.path("none"), "cannot read the configuration file"},
        {"app.png", depth() + "--config " + folder.path("no_assignment"), "No equals sign found"},
        {"app.png", depth() + "--width-step 1", "--width-step must be above 1, not 1"},
        {"app.png", depth() + "--width-factor nan", "--width-factor must be above 0"},
        {"app.png", depth() + "--minimum-width 0", "--minimum-width must be at least 1"},
        {"app.png", depth() + "--out " + folder.path("closing"), "cannot write"},
    };
    for (const auto& row : rows) {
        const program_run failed = segment(row.app, row.more);
        EXPECT_EQ(failed.status, 1) << row.part;
        EXPECT_NE(failed.err.find(row.part), std::string::npos) << failed.err;
        EXPECT_EQ(failed.err.rfind("segment: ", 0), 0u) << failed.err;
        EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << failed.err;
    }
    EXPECT_EQ(run(SEGMENT, "").err, "segment: option --app is needed (see --help)\n");
    EXPECT_EQ(run(SEGMENT, "--help").status, 0);
}

}  // namespace
