#include "zorv_tools/core/sample.h"

#include <string>

namespace zorv {

std::ostream& operator<<(std::ostream& out, const sample& record) {
    out << "sample=" << record.location;
    for (const int field : {record.frame, record.x1, record.x2, record.y1, record.y2}) {
        // In decimal, whatever base or grouping the stream is set to.
        out << "|" << std::to_string(field);
    }
    return out;
}

}  // namespace zorv
