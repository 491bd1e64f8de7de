#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <opencv2/highgui.hpp>
#include <sstream>
#include <string>
#include <thread>

#include "tests/image/images.h"
#include "zorv_tools/image/image_utils.h"

namespace zorv {
namespace {

std::string output_of(const std::string& command) {
    std::string output;
    FILE* const pipe = popen((command + " 2>/dev/null").c_str(), "r");
    if (!pipe) {
        return output;
    }
    std::array<char, 256> part{};
    while (std::fgets(part.data(), static_cast<int>(part.size()), pipe)) {
        output += part.data();
    }
    pclose(pipe);
    return output;
}

/// The number by which the X server knows the window with that title; empty if there is none on the screen.
std::string find_window(const std::string& title) {
    std::istringstream ids(output_of("xdotool search --onlyvisible --name '^" + title + "$'"));
    std::string id;
    ids >> id;
    return id;
}

std::string wait_for_window(const std::string& title) {
    std::string id;
    for (int i = 0; i < 200 && id.empty(); ++i) {
        id = find_window(title);
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    return id;
}

/// Lets the toolkit act on what was asked of it, which some do only while keys are waited for.
bool gone(const std::string& title) {
    for (int i = 0; i < 200 && !find_window(title).empty(); ++i) {
        cv::waitKey(10);
    }
    return find_window(title).empty();
}

class Display : public testing::Test {
protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY")) {
            GTEST_SKIP() << "there is no display";
        }
        ASSERT_NE(output_of("xdotool version"), "") << "xdotool is needed";
    }
};

/// Presses a key in the window once it is there, and again until it is gone, since a window that has just come up
/// can miss one. Tells when the first was pressed.
std::chrono::steady_clock::time_point press_key(const std::string& title) {
    const std::string id = wait_for_window(title);
    if (id.empty()) {
        std::fputs("no window to press a key in\n", stderr);
        std::abort();  // the caller waits for a key that nobody will press
    }
    const auto first = std::chrono::steady_clock::now();
    for (int i = 0; i < 50 && find_window(title) == id; ++i) {
        output_of("xdotool mousemove --window " + id + " 20 20");
        output_of("xdotool key --delay 50 space");
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    return first;
}

TEST_F(Display, ImagescShowsTheImageAndDoesNotWait) {
    cv::Mat image(150, 320, CV_8UC3);
    cv::randu(image, cv::Scalar::all(0), cv::Scalar::all(255));
    imagesc("zorv imagesc", image);
    cv::waitKey(100);
    EXPECT_NE(wait_for_window("zorv imagesc"), "");
    cv::destroyWindow("zorv imagesc");
    EXPECT_TRUE(gone("zorv imagesc"));
}

TEST_F(Display, CheckImageWaitsForAKeyAndClosesItsWindow) {
    cv::Mat image(150, 320, CV_8UC3);
    cv::randu(image, cv::Scalar::all(0), cv::Scalar::all(255));
    IplImage header = cvIplImage(image);
    for (const bool old_type : {false, true}) {
        SCOPED_TRACE(old_type);
        auto pressing = std::async(std::launch::async, press_key, "Image check");
        if (old_type) {
            check_image(&header);
        } else {
            check_image(image);
        }
        const auto returned = std::chrono::steady_clock::now();
        // The toolkit acts on the closing only while somebody waits for keys, and the presses end with the window.
        EXPECT_TRUE(gone("Image check"));
        EXPECT_GT(returned, pressing.get());
    }
}

TEST_F(Display, AnImageThatCannotBeShownLeavesNoWindow) {
    cv::Mat empty;
    EXPECT_THROW(check_image(empty), cv::Exception);
    EXPECT_TRUE(gone("Image check"));
}

}  // namespace
}  // namespace zorv
