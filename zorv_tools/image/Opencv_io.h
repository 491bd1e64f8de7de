#pragma once

/// @file
/// Text forms of OpenCV's sizes, rectangles and image headers.
///
/// `cv::Rect` is "(x,y,width,height)", `cv::Size` "(width,height)" and the header of an `IplImage`
/// "(width,height,depth,channels)", the depth as a signed number. `CvRect` is written as `cv::Rect` with a blank
/// in front and one behind.
///
/// The readers of these types check the text and set the fields to 0; they do not deliver its numbers, which is meant.
/// White space is passed over. Each reads four fields and stops behind the fourth separator, "," or ")", so that of a
/// size goes on reading behind its ")". A character that does not belong, a minus sign included, throws
/// `std::logic_error` (not `exception_l`), with the fields before it set. A stream that is not good is left alone; one
/// that ends early ends the reader, and the fields not reached keep their values, save that a separator at the very
/// end counts twice.
///
/// OpenCV has writers of its own for some of these types in its namespace: within `zorv`, or with its operators
/// brought in by `using`, those of this header are chosen.

#include <istream>
#include <ostream>

#include "zorv_tools/core/export.h"
#include "zorv_tools/core/opencv_c.h"

namespace zorv {

/// Writes " (x,y,width,height) ".
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const CvRect& rect);
/// Writes the header, "(width,height,depth,channels)"; no pixels.
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const IplImage& image);
/// Writes "(x,y,width,height)".
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const cv::Rect_<int>& rect);
/// Writes "(width,height)".
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const cv::Size_<int>& size);

/// Checks the text of a rectangle and sets the fields to 0.
ZORV_TOOLS_EXPORT std::istream& operator>>(std::istream& in, CvRect& rect);
/// Checks the text of a header and sets width, height, depth and channels to 0; the pixels stay as they are.
ZORV_TOOLS_EXPORT std::istream& operator>>(std::istream& in, IplImage& image);
/// Checks the text of a rectangle and sets the fields to 0.
ZORV_TOOLS_EXPORT std::istream& operator>>(std::istream& in, cv::Rect_<int>& rect);
/// Checks the text of a size and sets the fields to 0. Then goes on reading behind the ")": to two further
/// separators, which store nothing, or to the end of the stream; anything but digits on the way throws.
ZORV_TOOLS_EXPORT std::istream& operator>>(std::istream& in, cv::Size_<int>& size);

/// Reads rows, columns and then all values in row-major order, separated by white space, into a matrix that must
/// be `CV_64FC1` (else `exception_l`) and not empty; it is resized by `cv::resize`, which throws `cv::Exception` for
/// an empty one and for a size that is not above 0. Values that the stream does not hold stay what the resizing made
/// of them. There is no writer in this form.
ZORV_TOOLS_EXPORT std::istream& operator>>(std::istream& in, cv::Mat& matrix);

}  // namespace zorv
