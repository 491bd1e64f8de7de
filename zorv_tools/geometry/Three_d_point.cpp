#include "zorv_tools/geometry/Three_d_point.h"

#include <cstddef>
#include <iostream>
#include <sstream>

namespace zorv {

Three_d_point& Three_d_point::operator=(const std::vector<double>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        (*this)[static_cast<int>(i)] = values[i];
    }
    return *this;
}

Three_d_point& Three_d_point::operator+=(const std::vector<double>& offset) {
    if (offset.size() != 3) {
        std::cerr << "Can't call += on a 3d point a Vector not of 3 dimensions, attempted Vector had size "
                  << offset.size() << std::endl;
        return *this;
    }
    x += offset[0];
    y += offset[1];
    z += offset[2];
    return *this;
}

double Three_d_point::dot_product(const std::vector<double>& other) const {
    if (other.size() != 3) {
        std::cerr << "Can't do a dot product of a 3d point with a vector of size :" << other.size()
                  << std::endl;
        return -1.0;
    }
    return other[1] * y + x * other[0] + other[2] * z;
}

void Three_d_point::throw_bad_index(const code_location& caller, int index) {
    std::ostringstream sentence;
    sentence << "Three_d_point::operator[] : passed index of " << index << " but only values 0-5 are valid.";
    throw_exception_l(caller, sentence.str());
}

std::ostream& operator<<(std::ostream& out, const Three_d_point& point) {
    out << point.x << "," << point.y << "," << point.z;
    if (point.extra0 != 0 || point.extra1 != 0 || point.extra2 != 0) {
        // Last value first; that is meant.
        out << "," << point.extra2 << "," << point.extra1 << "," << point.extra0;
    }
    return out;
}

}  // namespace zorv
