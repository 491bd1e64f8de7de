#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <opencv2/highgui.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <thread>

#include "zorv_tools/image/image_utils.h"

namespace zorv {
namespace {

using std::chrono::milliseconds;

std::string output_of(const std::string& command) {
    std::string output;
    std::array<char, 256> part{};
    if (FILE* const pipe = popen((command + " 2>/dev/null").c_str(), "r")) {
        while (std::fgets(part.data(), static_cast<int>(part.size()), pipe)) {
            output += part.data();
        }
        pclose(pipe);
    }
    return output;
}

/// The number by which the X server knows the window with that title; empty if there is none on the screen.
std::string find_window(const std::string& title) {
    const std::string ids = output_of("xdotool search --onlyvisible --name '^" + title + "$'");
    const std::string id = ids.substr(0, ids.find('\n'));
    // The search takes capitals and small letters for the same.
    return output_of("xdotool getwindowname " + id) == title + "\n" ? id : "";
}

/// Lets the toolkit act on what was asked of it, which some do only while keys are waited for.
bool gone(const std::string& title) {
    for (int i = 0; i < 200 && !find_window(title).empty(); ++i) {
        cv::waitKey(10);
    }
    return find_window(title).empty();
}

/// What is on the screen; empty if its colours are not of 8 bits each.
cv::Mat screen_pixels() {
    xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const int width = screen->width_in_pixels, height = screen->height_in_pixels;
    const auto request = xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0,
                                       screen->width_in_pixels, screen->height_in_pixels, ~0u);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
        xcb_get_image_reply(server, request, nullptr), std::free);
    cv::Mat pixels;
    if (image && image->depth == 24) {
        cv::cvtColor(cv::Mat(height, width, CV_8UC4, xcb_get_image_data(image.get())), pixels,
                     cv::COLOR_BGRA2BGR);
    }
    xcb_disconnect(server);
    return pixels;
}

/// Whether the window comes up and shows `picture`, save for rounding, amid what the toolkit puts around it.
bool shows(const std::string& title, const cv::Mat& picture) {
    for (int i = 0; i < 100; ++i) {
        const cv::Mat pixels = find_window(title).empty() ? cv::Mat() : screen_pixels();
        if (!pixels.empty()) {
            cv::Mat differences;
            cv::Point best;
            cv::matchTemplate(pixels, picture, differences, cv::TM_SQDIFF);
            cv::minMaxLoc(differences, nullptr, nullptr, &best);
            if (cv::norm(pixels(cv::Rect(best, picture.size())), picture, cv::NORM_INF) <= 1.0) {
                return true;
            }
        }
        std::this_thread::sleep_for(milliseconds(50));
    }
    return false;
}

/// Presses a key in the window a while after it shows `picture`, and again until it is gone, since a window that has
/// just come up can miss one. Tells whether it came to show the picture.
bool press_key(const std::string& title, const cv::Mat& picture) {
    const bool seen = shows(title, picture);
    std::this_thread::sleep_for(milliseconds(1000));
    const std::string id = find_window(title);
    if (id.empty()) {
        std::fputs("there is no window to press a key in, or it has not waited for one\n", stderr);
        std::abort();  // the caller may wait for a key that nobody will press
    }
    for (int i = 0; i < 50 && find_window(title) == id; ++i) {
        output_of("xdotool mousemove --window " + id + " 20 20 key --delay 50 space");
        std::this_thread::sleep_for(milliseconds(200));
    }
    return seen;
}

class Display : public testing::Test {
protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY")) {
            GTEST_SKIP() << "there is no display";
        }
        ASSERT_NE(output_of("xdotool version"), "") << "xdotool is needed";
        paint({20, 30, 100, 50}, {50, 0, 80}, {255, 0, 128});
        paint({200, 60, 80, 40}, {25, 100, 40}, {128, 255, 64});
        paint({140, 110, 60, 40}, {0, 0, 200}, {0, 0, 255});
    }
    void paint(const cv::Rect& place, const cv::Scalar& colour, const cv::Scalar& shown) {
        image(place).setTo(colour);
        on_screen(place).setTo(shown);
    }

    // Each channel is divided by its range and not shifted: blue by 50, green by 100, red (from 40 on) by 160.
    cv::Mat image{150, 320, CV_8UC3, cv::Scalar(0, 0, 40)};
    cv::Mat on_screen{150, 320, CV_8UC3, cv::Scalar(0, 0, 64)};
};

TEST_F(Display, ImagescShowsTheScaledImageAndDoesNotWait) {
    imagesc("zorv imagesc", image);
    auto seen = std::async(std::launch::async, shows, "zorv imagesc", on_screen);
    while (seen.wait_for(milliseconds(0)) != std::future_status::ready) {
        cv::waitKey(10);
    }
    EXPECT_TRUE(seen.get());
    cv::destroyWindow("zorv imagesc");
    EXPECT_TRUE(gone("zorv imagesc"));
}

TEST_F(Display, CheckImageShowsTheScaledImageUntilAKeyIsPressed) {
    IplImage header = cvIplImage(image);
    for (const bool old_type : {false, true}) {
        SCOPED_TRACE(old_type);
        auto pressing = std::async(std::launch::async, press_key, "Image check", on_screen);
        old_type ? check_image(&header) : check_image(image);
        // The toolkit acts on the closing only while somebody waits for keys, and the presses end with the window.
        EXPECT_TRUE(gone("Image check"));
        EXPECT_TRUE(pressing.get());
    }
}

TEST_F(Display, AnImageThatCannotBeShownLeavesNoWindow) {
    cv::Mat empty;
    EXPECT_THROW(check_image(empty), cv::Exception);
    EXPECT_TRUE(gone("Image check"));
}

}  // namespace
}  // namespace zorv
