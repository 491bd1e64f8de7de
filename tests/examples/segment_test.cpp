#include <gtest/gtest.h>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "tests/examples/program_test.h"

namespace {

const std::string common = "--app app.png --out results ";
const std::string depth = "--depth=depth.png ";
const std::string disparity = "--disparity deep.png ";

/// An object in front of a wall, with stripes of unknown depth.
class Segment : public program_test {
protected:
    Segment() {
        cv::Mat codes(90, 120, CV_8U, cv::Scalar(200));
        codes(cv::Rect(70, 30, 31, 21)).setTo(100);
        for (int x = 70; x < 100; x += 5) {
            codes(cv::Rect(x, 30, 3, 21)).setTo(0);
        }
        cv::imwrite("depth.png", codes);
        codes.convertTo(codes, CV_16U, 100.0);
        cv::imwrite("deep.png", codes);
        cv::imwrite("app.png", cv::Mat(90, 120, CV_8UC3, cv::Scalar(40, 120, 200)));
        folder.write("closing", "closing_kernel=3|3|1|1|0|1\n");
    }
};

TEST_F(Segment, FindsTheObjectAndWritesOneSheet) {
    const std::string close = " --region 72,31,24,18 ";
    const struct {
        std::string options, object_depth, size, region, centre, box;
        int pixels;
    } rows[] = {
        {depth + close + "--minimum-width 24 --config closing", "100", "(176,100)", "(76,41,24,18)",
         "(88,49)", "(72,39,28,21)", 200000},
        {depth + close + "--width-factor 1.2 --height-factor 1.8", "100", "(166,100)", "(71,41,23,17)",
         "(82,49)", "(72,39,12,9)", 200000},
        {depth + close + "--object-depth 200 --tolerance 0.2", "200", "(160,100)", "(68,41,24,18)", "(68,49)",
         "(77,9,42,31)", 450000},
        {disparity + "--region 60,20,60,70", "240", "(162,92)", "(51,11,60,70)", "(79,46)", "(89,48,30,35)",
         450000},
    };
    for (const auto& row : rows) {
        const program_run done = run(SEGMENT, common + row.options);
        ASSERT_EQ(done.status, 0) << done.err;
        EXPECT_EQ(done.err, "");
        EXPECT_EQ(done.out.substr(0, done.out.find("time: ")),
                  "object depth: " + row.object_depth + "\nrecentred images: " + row.size +
                      "\nregion of interest: " + row.region + "\ncentre: " + row.centre +
                      "\nbox of highest contrast: " + row.box + "\n")
            << row.options;
        const cv::Mat sheet = cv::imread("results/sheet.png");
        ASSERT_FALSE(sheet.empty());
        EXPECT_TRUE(sheet.rows == 3 * sheet.cols / 4 || sheet.cols == 4 * sheet.rows / 3) << sheet.size();
        // The picture is there three times, cut in two of them; boxes and words have their colours.
        const cv::Scalar colours[] = {{40, 120, 200}, {0, 179, 255}, {142, 118, 246}, {215, 189, 166}};
        for (const cv::Scalar& colour : colours) {
            cv::Mat marks;
            cv::inRange(sheet, colour, colour, marks);
            EXPECT_GT(cv::countNonZero(marks), colour == colours[0] ? row.pixels : 100) << colour;
        }
    }
}

TEST_F(Segment, OneLineForEachMistake) {
    cv::imwrite("small.png", cv::Mat(10, 20, CV_8U, cv::Scalar(3)));
    folder.write("no_assignment", "closing kernel\n");
    expect_mistakes(SEGMENT, common,
                    {{"--depth small.png", "the depth image is of (20,10), but the picture of (120,90)"},
                     {"--depth deep.png", "is not one of 8 bits"},
                     {"", "either --depth or --disparity is needed"},
                     {depth + disparity, "either --depth or --disparity is needed"},
                     {depth + "--region 1,2,3", "needs X,Y,WIDTH,HEIGHT"},
                     {depth + "--region 1,2,3,4x", "needs X,Y,WIDTH,HEIGHT"},
                     {depth + "--region 100,80,21,10", "the region (100,80,21,10) is not inside the picture"},
                     {depth + "--region 100,80,20,11", "the region (100,80,20,11) is not inside the picture"},
                     {depth + "--config none", "cannot read the configuration file"},
                     {depth + "--config no_assignment", "No equals sign found"},
                     {depth + "--width-step 1", "--width-step must be above 1, not 1"},
                     {depth + "--width-factor nan", "--width-factor must be above 0"},
                     {depth + "--minimum-width 0", "--minimum-width must be at least 1"},
                     {depth + "operand", "unexpected argument \"operand\""}});
    EXPECT_EQ(run(SEGMENT, "").err, "segment: option --app is needed (see --help)\n");
}

}  // namespace
