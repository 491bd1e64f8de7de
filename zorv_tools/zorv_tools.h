#pragma once

/// @file
/// Every public header of the library.

#include "zorv_tools/core/IO_helpers.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/ipow.h"
#include "zorv_tools/core/matrix.h"
#include "zorv_tools/core/near.h"
#include "zorv_tools/core/opencv_c.h"
#include "zorv_tools/core/tensor.h"
#include "zorv_tools/core/truncate.h"
#include "zorv_tools/geometry/Transform_estimator.h"
#include "zorv_tools/geometry/opengv_wrapper.h"
