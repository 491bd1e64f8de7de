#pragma once

#include <ostream>
#include <string>

#include "zorv_tools/core/export.h"

namespace zorv {

/// A stretch of one video frame that stands for one training sample: the box from (x1, y1) to (x2, y2), in
/// pixels, of frame `frame` of the file `location`. A frame of -1 means that no single frame is meant.
struct sample {
    std::string location;  ///< path of the video
    int frame = 0;         ///< counted by the host; -1 for none in particular
    int x1 = 0;            ///< left
    int x2 = 0;            ///< right
    int y1 = 0;            ///< top
    int y2 = 0;            ///< bottom
};

/// Writes "sample=" and the fields with "|" between them, in the form that a configuration file takes but for the
/// values at the end of such a line. No line end.
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const sample& record);

}  // namespace zorv
