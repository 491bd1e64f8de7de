#pragma once

#include <ostream>
#include <string>

#include "zorv_tools/core/export.h"

namespace zorv {

/// A stretch of one video frame that stands for one training sample: the box from (x1, y1) to (x2, y2), in
/// pixels, of frame `frame` of the file `location`. A frame of -1 means that no single frame is meant. The ranges
/// told here are those that the configuration store takes.
struct sample {
    std::string location;  ///< path of the video; not looked at
    int frame = 0;         ///< counted by the host: -1 or more
    int x1 = 0;            ///< left: 0 or more
    int x2 = 0;            ///< right: `x1` or more
    int y1 = 0;            ///< top: 0 or more
    int y2 = 0;            ///< bottom: `y1` or more
};

/// Writes "sample=" and location, frame, x1, x2, y1 and y2 with "|" between them, in the form that a configuration
/// file takes but for the values at the end of such a line. The numbers are decimal whatever the stream is set to.
/// No line end.
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const sample& record);

}  // namespace zorv
