#include <algorithm>
#include <cstdint>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "zorv_tools/image/Opencv_io.h"
#include "zorv_tools/image/image_utils.h"
#include "zorv_tools/image/internal/four_to_three.h"
#include "zorv_tools/image/internal/ipl_image.h"

namespace zorv {

namespace {

/// In 64 bits, which no step of the clipping can leave: with them each rule holds at most a few times, and
/// the clipping of any four numbers comes to an end.
struct wide_rect {
    explicit wide_rect(const CvRect& rect) : x(rect.x), y(rect.y), width(rect.width), height(rect.height) {}

    CvRect clamped() const { return cvRect(clamp(x), clamp(y), clamp(width), clamp(height)); }

    std::int64_t x, y, width, height;

private:
    static int clamp(std::int64_t value) {
        return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                         std::numeric_limits<int>::max()));
    }
};

/// Applies the first rule that matches; false when none does. `s` is the region of the source, `d` that of the
/// destination.
bool clip_once(const IplImage& source, const IplImage& dest, wide_rect& s, wide_rect& d) {
    if (s.x < 0) {
        s.width += s.x;
        d.width += s.x;
        d.x -= s.x;
        s.x = 0;
    } else if (s.y < 0) {
        s.height += s.y;
        d.height += s.y;
        d.y -= s.y;
        s.y = 0;
    } else if (s.x + s.width > source.width) {
        d.width = s.width = source.width - s.x;
    } else if (s.y + s.height > source.height) {
        d.height = s.height = source.height - s.y;
    } else if (d.x < 0) {
        d.width += d.x;
        s.width += d.x;
        s.y -= d.y;  // y and not x: the asymmetry with the next rule is part of the behaviour
        d.x = 0;
    } else if (d.y < 0) {
        d.height += d.y;
        s.height += d.y;
        s.y -= d.y;
        d.y = 0;
    } else if (d.x + d.width > dest.width) {
        s.width = d.width = dest.width - d.x;
    } else if (d.y + d.height > dest.height) {
        s.height = d.height = dest.height - d.y;
    } else {
        return false;
    }
    return true;
}

int as_size(std::int64_t value) {
    return static_cast<int>(std::min<std::int64_t>(value, std::numeric_limits<int>::max()));
}

}  // namespace

void convert_res(cv::Mat& image, int width, int height) {
    const internal::extent size = internal::four_to_three({image.cols, image.rows});
    cv::Mat frame(as_size(size.height), as_size(size.width), CV_8UC3, cv::Scalar(0, 0, 0, 0));
    cv::Mat middle =
        frame(cv::Rect((frame.cols - image.cols) / 2, (frame.rows - image.rows) / 2, image.cols, image.rows));
    // An image of another type gets a buffer of its own here, which leaves the frame black.
    image.copyTo(middle);
    cv::resize(frame, image, cv::Size(width, height), 0.0, 0.0, cv::INTER_LINEAR);
}

void image_region_copy(IplImage* source, IplImage* dest, CvRect& source_region, CvRect& dest_region) {
    cvSetZero(dest);
    if (source_region.x > source->width || source_region.y > source->height) {
        std::ostringstream text;
        text << "image_region_copy() : Region " << source_region << " is completely outside input image "
             << *source << std::endl;
        throw std::logic_error(text.str());
    }
    wide_rect from(source_region);
    wide_rect to(dest_region);
    while (clip_once(*source, *dest, from, to)) {
    }
    source_region = from.clamped();
    dest_region = to.clamped();
    cvSetImageROI(source, source_region);
    cvSetImageROI(dest, dest_region);
    cvCopy(source, dest, nullptr);
}

}  // namespace zorv
