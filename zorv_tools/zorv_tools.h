#pragma once

/// @file
/// Every public header of the library.

/// \namespace zorv
/// All names of the library but those of `polygon_overlap.h`, which are global, and the macros.
///
/// Most classes have a virtual destructor, so that hosts may derive from them. Where nothing else is told, it releases
/// what the object owns and has no other effect.

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/config/parameter_records.h"
#include "zorv_tools/core/IO_helpers.h"
#include "zorv_tools/core/double_pair.h"
#include "zorv_tools/core/edit_distance.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/export.h"
#include "zorv_tools/core/index_vectors.h"
#include "zorv_tools/core/ipow.h"
#include "zorv_tools/core/math_functions.h"
#include "zorv_tools/core/math_utils.h"
#include "zorv_tools/core/matrix.h"
#include "zorv_tools/core/near.h"
#include "zorv_tools/core/opencv_c.h"
#include "zorv_tools/core/pair_comparison.h"
#include "zorv_tools/core/process.h"
#include "zorv_tools/core/random_numbers.h"
#include "zorv_tools/core/rectangles.h"
#include "zorv_tools/core/rotation.h"
#include "zorv_tools/core/sample.h"
#include "zorv_tools/core/std_vector_overloads.h"
#include "zorv_tools/core/tensor.h"
#include "zorv_tools/core/text.h"
#include "zorv_tools/core/truncate.h"
#include "zorv_tools/geometry/Camera.h"
#include "zorv_tools/geometry/Three_d_point.h"
#include "zorv_tools/geometry/Transform_estimator.h"
#include "zorv_tools/geometry/opengv_wrapper.h"
#include "zorv_tools/image/IplImage_overloads.h"
#include "zorv_tools/image/Opencv_io.h"
#include "zorv_tools/image/colour_codes.h"
#include "zorv_tools/image/image_utils.h"
#include "zorv_tools/image/polygon_overlap.h"
#include "zorv_tools/net/Socket.h"
#include "zorv_tools/net/socket_transmission.h"
#include "zorv_tools/subtitle/Subtitle.h"
#include "zorv_tools/subtitle/Timestamp.h"
