#pragma once

/// @file
/// Stable colours by index, for drawing many objects.
///
/// A colour has OpenCV's order: blue, green, red, and a fourth element of 0. Components are whole numbers from 0 to
/// 255. An index outside a set throws `exception_l`.

#include <opencv2/core/types.hpp>

#include "zorv_tools/core/export.h"

namespace zorv {

/// Unpacks 0xRRGGBB; the top byte is ignored, and no value is refused.
ZORV_TOOLS_EXPORT cv::Scalar_<double> UIntToColor(unsigned int colour);

/// The default set, which is `colour_set_max_contrast`.
ZORV_TOOLS_EXPORT cv::Scalar_<double> colour_set(int index);

/// 20 colours (0 to 19), in an order that makes neighbours look as different as possible.
ZORV_TOOLS_EXPORT cv::Scalar_<double> colour_set_max_contrast(int index);

/// 9 plainer colours (0 to 8).
ZORV_TOOLS_EXPORT cv::Scalar_<double> colour_set_optimised(int index);

}  // namespace zorv
