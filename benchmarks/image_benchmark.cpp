#include <algorithm>
#include <cmath>
#include <memory>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "benchmarks/compare.h"
#include "zorv_tools/image/image_utils.h"

namespace {

const cv::Size photograph(1282, 1110);
const cv::Size large(7680, 4320);

std::string text_of(const cv::Size& size) {
    return std::to_string(size.width) + " by " + std::to_string(size.height);
}

using ipl_image = std::shared_ptr<IplImage>;

ipl_image random_image(const cv::Size& size, int channels = 1) {
    ipl_image image(cvCreateImage(cvSize(size.width, size.height), IPL_DEPTH_8U, channels),
                    [](IplImage* released) { cvReleaseImage(&released); });
    cv::Mat header = cv::cvarrToMat(image.get());
    cv::randu(header, cv::Scalar::all(0), cv::Scalar::all(256));
    return image;
}

/// 0 where `random` is below `share` per cent, else 200.
ipl_image sparse_image(const cv::Size& size, double share) {
    ipl_image image = random_image(size);
    cv::Mat header = cv::cvarrToMat(image.get());
    cv::threshold(header, header, 255.0 * share, 200.0, cv::THRESH_BINARY);
    return image;
}

void compare_binary_convert(const cv::Size& size) {
    const ipl_image mine = random_image(size);
    const ipl_image other = random_image(size);
    const auto ours = [mine] {
        IplImage* image = mine.get();
        zorv::binary_image_convert(image, 100);
    };
    const auto peer = [other, header = cv::cvarrToMat(other.get())] {
        cv::threshold(header, header, 99.0, 255.0, cv::THRESH_BINARY);
    };
    ZORV_COMPARE("binary_image_convert, " + text_of(size) + " (cv::threshold in place)", 1.1, ours, peer);
}

void compare_combine(const cv::Size& size) {
    // Half of the second map is holes too, so that the first has some left however often it is combined.
    const ipl_image first = random_image(size);
    const ipl_image second = random_image(size);
    cv::Mat other = cv::cvarrToMat(second.get());
    other.setTo(250, other > 127);
    cv::Mat map = cv::cvarrToMat(first.get()).clone();
    const auto ours = [first, second] { zorv::combine_depth_maps(first.get(), second.get()); };
    const auto peer = [second, other, map, holes = cv::Mat(), other_holes = cv::Mat(),
                       filling = cv::Mat()]() mutable {
        cv::compare(other, 240, other_holes, cv::CMP_GT);
        cv::max(other, other_holes, filling);
        cv::compare(map, 240, holes, cv::CMP_GT);
        filling.copyTo(map, holes);
    };
    ZORV_COMPARE("combine_depth_maps, " + text_of(size) + " (cv::compare and masked copyTo)", 0.7, ours,
                 peer);
}

void compare_integral(const cv::Size& size) {
    ipl_image image = random_image(size);
    const auto ours = [image] {
        const std::unique_ptr<zorv::matrix<double>> sums(zorv::create_integral_image(image.get()));
        benchmark::DoNotOptimize((*sums)[0]);
    };
    const auto peer = [image] {
        cv::Mat sums, turned;
        cv::integral(cv::cvarrToMat(image.get()), sums, CV_64F);
        cv::transpose(sums, turned);
        benchmark::DoNotOptimize(turned.data);
    };
    ZORV_COMPARE("create_integral_image, " + text_of(size) + " (cv::integral and cv::transpose)", 1.2, ours,
                 peer);
}

void compare_median(const cv::Size& size) {
    ipl_image image = random_image(size);
    const auto ours = [image] { benchmark::DoNotOptimize(zorv::image_median(image.get(), false)); };
    const cv::Mat header = cv::cvarrToMat(image.get());
    std::vector<unsigned char> values;
    for (int y = 0; y < header.rows; ++y) {
        values.insert(values.end(), header.ptr(y), header.ptr(y) + header.cols);
    }
    const auto peer = [values] {
        std::vector<unsigned char> sorted(values);
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        benchmark::DoNotOptimize(*middle);
    };
    ZORV_COMPARE("image_median, " + text_of(size) + " (std::nth_element)", 0.2, ours, peer);
}

void compare_range(const cv::Size& size, int type, const std::string& name) {
    cv::Mat image(size, type);
    cv::randu(image, cv::Scalar::all(3), cv::Scalar::all(253));
    const auto ours = [image] {
        double minimum = 0.0, maximum = 0.0;
        zorv::image_range(image, minimum, maximum);
        benchmark::DoNotOptimize(minimum + maximum);
    };
    const auto peer = [image] {
        double minimum = 0.0, maximum = 0.0;
        cv::minMaxLoc(image.reshape(1), &minimum, &maximum);
        benchmark::DoNotOptimize(minimum + maximum);
    };
    ZORV_COMPARE("image_range, " + name + ", " + text_of(size) + " (cv::minMaxLoc)", 1.2, ours, peer);
}

void compare_normalise(const cv::Size& size, int type, const std::string& name) {
    cv::Mat image(size, type);
    cv::randu(image, cv::Scalar::all(3), cv::Scalar::all(253));
    const auto ours = [image]() mutable {
        const cv::Mat normalised = zorv::image_normalise(image);
        benchmark::DoNotOptimize(normalised.data);
    };
    const auto peer = [image] {
        cv::Mat normalised;
        cv::normalize(image, normalised, 0.0, 1.0, cv::NORM_MINMAX, CV_64F);
        benchmark::DoNotOptimize(normalised.data);
    };
    ZORV_COMPARE("image_normalise, " + name + ", " + text_of(size) + " (cv::normalize)", 2.0, ours, peer);
}

void compare_threshold_pair(const cv::Size& size) {
    constexpr int low = 60;
    constexpr int high = 180;
    const ipl_image my_depth = random_image(size);
    const ipl_image my_app = random_image(size, 3);
    const auto ours = [my_depth, my_app] {
        IplImage* depth = my_depth.get();
        IplImage* app = my_app.get();
        zorv::threshold_image_pair(high, low, app, depth, nullptr, 1);
    };
    const auto peer = [depth = cv::cvarrToMat(my_depth.get()).clone(),
                       app = cv::cvarrToMat(my_app.get()).clone(), kept = cv::Mat(),
                       cut = cv::Mat()]() mutable {
        cv::inRange(depth, low + 1, high, kept);
        cv::bitwise_not(kept, cut);
        depth.setTo(0, cut);
        app.setTo(0, cut);
    };
    ZORV_COMPARE("threshold_image_pair, " + text_of(size) + " (cv::inRange and masked setTo)", 1.2, ours,
                 peer);
}

void compare_object_center(const cv::Size& size) {
    ipl_image image = sparse_image(size, 0.7);
    const auto ours = [image] {
        int x = 0, y = 0;
        zorv::find_object_center(x, y, image.get(), nullptr, 1);
        benchmark::DoNotOptimize(x + y);
    };
    const auto peer = [image, header = cv::cvarrToMat(image.get())] {
        const cv::Moments moments = cv::moments(header, true);
        benchmark::DoNotOptimize(moments.m10 / moments.m00 + moments.m01 / moments.m00);
    };
    ZORV_COMPARE("find_object_center, " + text_of(size) + " (cv::moments, binary)", 1.0, ours, peer);
}

struct found_box {
    int width = 0, x = 0, y = 0;
};

found_box search_with_opencv(const cv::Mat& image, double aspect_ratio, int minimum_width,
                             double width_step) {
    cv::Mat binary, sums;
    cv::threshold(image, binary, 0.0, 255.0, cv::THRESH_BINARY);
    cv::integral(binary, sums, CV_64F);
    const auto sum = [&](int left, int top, int right, int bottom) {
        return sums.at<double>(bottom + 1, right + 1) - sums.at<double>(top + 1, right + 1) -
               sums.at<double>(bottom + 1, left + 1) + sums.at<double>(top + 1, left + 1);
    };
    found_box best;
    double best_score = -1.0;
    for (double w = minimum_width; w < image.cols && w * aspect_ratio < image.rows; w *= width_step) {
        const int bw = static_cast<int>(w), bh = static_cast<int>(w * aspect_ratio);
        const int m = static_cast<int>((std::sqrt(2.0) - 1.0) * 0.5 * bw);
        const int ow = bw + 2 * m, oh = static_cast<int>(ow * aspect_ratio);
        const double box_area = bw * bh, ring_area = ow * oh - bw * bh;
        for (int y = m; y - m < image.rows - oh; ++y) {
            for (int x = m; x - m < image.cols - ow; ++x) {
                const double inside = sum(x, y, x + bw, y + bh);
                const double outside = sum(x - m, y - m, x + ow - m, y + oh - m);
                const double score = inside / box_area - (outside - inside) / ring_area;
                if (score > best_score) {
                    best_score = score;
                    best = {bw, x, y};
                }
            }
        }
    }
    return best;
}

void compare_surround_check() {
    const cv::Size size(640, 480);
    const ipl_image owner = sparse_image(size, 0.9);
    const cv::Mat header = cv::cvarrToMat(owner.get());
    header(cv::Rect(200, 150, 120, 90)) = 255;
    const auto ours = [owner] {
        IplImage* image = owner.get();
        found_box box;
        zorv::centre_surround_check(image, 0.75, box.width, box.x, box.y, 20, 1.2);
        benchmark::DoNotOptimize(box.width + box.x + box.y);
    };
    const auto peer = [owner, header] {
        const found_box box = search_with_opencv(header, 0.75, 20, 1.2);
        benchmark::DoNotOptimize(box.width + box.x + box.y);
    };
    ZORV_COMPARE("centre_surround_check, " + text_of(size) + " (cv::integral and at)", 1.0, ours, peer);
}

void compare_join() {
    std::vector<cv::Mat> images;
    for (int i = 0; i < 16; ++i) {
        images.emplace_back(480, 640, CV_8UC3);
        cv::randu(images.back(), cv::Scalar::all(0), cv::Scalar::all(256));
    }
    const auto ours = [images] {
        const cv::Mat joined = zorv::join_images_unordered(images, true, true);
        benchmark::DoNotOptimize(joined.data);
    };
    const auto peer = [images] {
        cv::Mat picture(4 * 480, 4 * 640, CV_8UC3), joined;
        for (int i = 0; i < 16; ++i) {
            images[static_cast<std::size_t>(i)].copyTo(picture(cv::Rect(i % 4 * 640, i / 4 * 480, 640, 480)));
        }
        cv::resize(picture, joined, picture.size());
        benchmark::DoNotOptimize(joined.data);
    };
    ZORV_COMPARE("join_images_unordered, 16 images of 640 by 480 (copyTo and cv::resize)", 2.0, ours, peer);
}

}  // namespace

void register_comparisons() {
    for (const cv::Size& size : {photograph, large}) {
        compare_binary_convert(size);
        compare_combine(size);
        compare_integral(size);
        compare_median(size);
        compare_range(size, CV_8UC1, "8-bit, 1 channel");
        compare_range(size, CV_8UC3, "8-bit, 3 channels");
        compare_range(size, CV_64FC1, "double, 1 channel");
        compare_range(size, CV_64FC3, "double, 3 channels");
        compare_normalise(size, CV_8UC1, "8-bit, 1 channel");
        compare_normalise(size, CV_8UC3, "8-bit, 3 channels");
        compare_threshold_pair(size);
        compare_object_center(size);
    }
    compare_surround_check();
    compare_join();
}
