#include <numeric>
#include <vector>

#include "fuzz/input.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/image/image_utils.h"

namespace {

cv::Mat random_image(FuzzedDataProvider& input) {
    constexpr int largest = 40;
    const int rows = input.ConsumeIntegralInRange<int>(0, largest);
    const int cols = input.ConsumeIntegralInRange<int>(0, largest);
    const int type = input.ConsumeIntegralInRange<int>(0, 7) == 0 ? CV_8UC1 : CV_8UC3;
    const int grey = input.ConsumeIntegralInRange<int>(1, 255);
    return cv::Mat(rows, cols, type, cv::Scalar::all(grey));
}

/// What a picture shows of images: those of another type stay black.
double brightness(const cv::Mat& image) {
    return image.type() == CV_8UC3 ? cv::sum(image)[1] : 0;
}

/// Padding is black and no image covers another, so a picture is as bright as its images together.
template <class Join>
void check(double expected, Join join) {
    cv::Mat picture;
    try {
        picture = join();
    } catch (const zorv::exception_l&) {
        // Nothing but a picture without pixels is refused.
        fuzz::require(expected == 0);
        return;
    }
    fuzz::require(brightness(picture) == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool centre = input.ConsumeBool();
    const bool fit = input.ConsumeBool();
    std::vector<cv::Mat> images(input.ConsumeIntegralInRange<std::size_t>(0, 9));
    for (cv::Mat& image : images) {
        image = random_image(input);
    }
    const double all =
        std::accumulate(images.begin(), images.end(), 0.0,
                        [](double sum, const cv::Mat& image) { return sum + brightness(image); });

    // Fewer than two images make no grid.
    check(images.size() < 2 ? 0 : all, [&] { return zorv::join_images_ordered(images, centre, fit); });
    if (!images.empty()) {
        check(all, [&] { return zorv::join_images_unordered(images, centre, fit); });
    }
    if (images.size() >= 2) {
        const double pair = brightness(images[0]) + brightness(images[1]);
        check(pair, [&] { return zorv::join_images(images[0], images[1], centre, fit); });
        check(pair, [&] { return zorv::join_images_on_top(images[0], images[1], centre, fit); });
        check(pair, [&] { return zorv::join_images_side_by_side(images[0], images[1], centre, fit); });
    }
    return 0;
}
