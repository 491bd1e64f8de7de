#include <cstdint>
#include <sstream>
#include <stdexcept>

#include "zorv_tools/image/Opencv_io.h"
#include "zorv_tools/image/image_utils.h"
#include "zorv_tools/image/internal/four_to_three.h"
#include "zorv_tools/image/internal/ipl_image.h"

namespace zorv {

namespace {

/// A rectangle by axis: first across, then down. In 64 bits, which no step of the clipping can leave: with them
/// each rule holds at most a few times, and the clipping of any four numbers comes to an end.
struct wide_rect {
    explicit wide_rect(const CvRect& rect) : start{rect.x, rect.y}, size{rect.width, rect.height} {}

    CvRect clamped() const {
        return cvRect(internal::clamp_to_int(start[0]), internal::clamp_to_int(start[1]),
                      internal::clamp_to_int(size[0]), internal::clamp_to_int(size[1]));
    }

    std::int64_t start[2];
    std::int64_t size[2];
};

/// Applies the first rule that matches; false when none does. `s` is the region of the source, `d` that of the
/// destination.
bool clip_once(const IplImage& source, const IplImage& dest, wide_rect& s, wide_rect& d) {
    const std::int64_t source_size[] = {source.width, source.height};
    const std::int64_t dest_size[] = {dest.width, dest.height};
    for (const int axis : {0, 1}) {
        if (s.start[axis] < 0) {
            s.size[axis] += s.start[axis];
            d.size[axis] += s.start[axis];
            d.start[axis] -= s.start[axis];
            s.start[axis] = 0;
            return true;
        }
    }
    for (const int axis : {0, 1}) {
        if (s.start[axis] + s.size[axis] > source_size[axis]) {
            d.size[axis] = s.size[axis] = source_size[axis] - s.start[axis];
            return true;
        }
    }
    for (const int axis : {0, 1}) {
        if (d.start[axis] < 0) {
            d.size[axis] += d.start[axis];
            s.size[axis] += d.start[axis];
            s.start[1] -= d.start[1];  // down, also where the rule is about across: this is meant
            d.start[axis] = 0;
            return true;
        }
    }
    for (const int axis : {0, 1}) {
        if (d.start[axis] + d.size[axis] > dest_size[axis]) {
            s.size[axis] = d.size[axis] = dest_size[axis] - d.start[axis];
            return true;
        }
    }
    return false;
}

}  // namespace

void convert_res(cv::Mat& image, int width, int height) {
    const internal::extent size = internal::four_to_three({image.cols, image.rows});
    cv::Mat frame(internal::as_size(size.height), internal::as_size(size.width), CV_8UC3,
                  cv::Scalar(0, 0, 0, 0));
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
