#pragma once

#include "zorv_tools/core/export.h"
#include "zorv_tools/core/opencv_c.h"

namespace zorv {

/// @{
/// The rectangle of the given size whose middle is the given pixel; of an even size, the larger part lies to the
/// left and above: a width of 4 about column 10 is columns 8 to 11.
ZORV_TOOLS_EXPORT const cv::Rect centred_rect(const cv::Point& centre, const cv::Size& size);
ZORV_TOOLS_EXPORT const cv::Rect centred_rect(int x, int y, int width, int height);
/// @}

/// Whether more than `fraction` of the area of `first` is covered by `second`. The measure is one-sided on purpose:
/// exchanging the two may change the answer. False where `first` has no area. Neither pointer may be null; the area
/// must fit an `int`, beyond which it wraps.
ZORV_TOOLS_EXPORT bool check_rect_overlap(CvRect* first, CvRect* second, double fraction);

}  // namespace zorv
