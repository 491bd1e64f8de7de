#pragma once

#include <istream>

namespace zorv::internal {

/// Skips white space whatever the stream's flags. A stream that has come to its end is left alone: trying to skip
/// there would make it a failed one.
inline void skip_white_space(std::istream& in) {
    if (in.good()) {
        in >> std::ws;
    }
}

}  // namespace zorv::internal
