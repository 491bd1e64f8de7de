#pragma once

/// @file
/// Every public header of the library.

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/config/parameter_records.h"
#include "zorv_tools/core/IO_helpers.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/export.h"
#include "zorv_tools/core/ipow.h"
#include "zorv_tools/core/matrix.h"
#include "zorv_tools/core/near.h"
#include "zorv_tools/core/opencv_c.h"
#include "zorv_tools/core/rotation.h"
#include "zorv_tools/core/sample.h"
#include "zorv_tools/core/std_vector_overloads.h"
#include "zorv_tools/core/tensor.h"
#include "zorv_tools/core/text.h"
#include "zorv_tools/core/truncate.h"
#include "zorv_tools/geometry/Camera.h"
#include "zorv_tools/geometry/Three_d_point.h"
#include "zorv_tools/image/IplImage_overloads.h"
#include "zorv_tools/image/colour_codes.h"
#include "zorv_tools/net/Socket.h"
#include "zorv_tools/net/socket_transmission.h"
#include "zorv_tools/subtitle/Subtitle.h"
#include "zorv_tools/subtitle/Timestamp.h"
