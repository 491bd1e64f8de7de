#pragma once

/// @file
/// OpenCV's C interface (`IplImage`, `IplConvKernel`, `CvRect` and the functions that begin with `cv`). It comes
/// in here and nowhere else: OpenCV 5 has dropped it, and a port will start from this file.

#include <opencv2/core/core_c.h>
#include <opencv2/imgproc/imgproc_c.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
