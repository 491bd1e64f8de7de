#pragma once

#include <ostream>
#include <vector>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/export.h"

namespace zorv {

/// A position in space, in world units, or a position in an image with its disparity (u, v, disparity), in pixels,
/// with three associated values. Three further fields have no operation of their own; they are only carried along.
class ZORV_TOOLS_EXPORT Three_d_point {
public:
    /// All zero.
    Three_d_point() = default;
    /// The position and the three associated values, which come as whole numbers; the other fields are zero.
    Three_d_point(double x_value, double y_value, double z_value, int value0, int value1, int value2)
        : x(x_value), y(y_value), z(z_value), extra0(value0), extra1(value1), extra2(value2) {}
    /// Takes all nine fields.
    Three_d_point(const Three_d_point&) = default;
    virtual ~Three_d_point() = default;

    /// Takes all nine fields.
    Three_d_point& operator=(const Three_d_point&) = default;
    /// Stores the entries in x, y, z and the three associated values, in that order. A shorter vector leaves the
    /// later fields; a longer one throws `exception_l` after all six have been stored.
    Three_d_point& operator=(const std::vector<double>& values);

    /// Adds a vector of three entries to x, y and z. Any other size gives a line on the standard error stream and
    /// leaves the point.
    Three_d_point& operator+=(const std::vector<double>& offset);

    /// @{
    /// x, y, z and the associated values by index 0 to 5; throws `exception_l` for any other index.
    double& operator[](int index) {
        if (index < 0 || index > 5) {
            throw_bad_index(ZORV_HERE, index);
        }
        return this->*field(index);
    }
    double operator[](int index) const {
        if (index < 0 || index > 5) {
            throw_bad_index(ZORV_HERE, index);
        }
        return this->*field(index);
    }
    /// @}

    /// Dot product with a vector of three entries. Any other size gives a line on the standard error stream and
    /// the result -1.0, which a true result may be too.
    double dot_product(const std::vector<double>& other) const;

    double x = 0;          ///< or u
    double y = 0;          ///< or v
    double z = 0;          ///< or the disparity
    double extra0 = 0;     ///< first associated value; the host gives it a meaning
    double extra1 = 0;     ///< second associated value
    double extra2 = 0;     ///< third associated value
    double reserved0 = 0;  ///< only carried along
    double reserved1 = 0;  ///< only carried along
    double reserved2 = 0;  ///< only carried along

private:
    static double Three_d_point::*field(int index) {
        constexpr double Three_d_point::*fields[] = {&Three_d_point::x,      &Three_d_point::y,
                                                     &Three_d_point::z,      &Three_d_point::extra0,
                                                     &Three_d_point::extra1, &Three_d_point::extra2};
        return fields[index];
    }
    [[noreturn]] static void throw_bad_index(const code_location& caller, int index);
};

/// Writes "x,y,z" and, unless the associated values are all exactly 0, all three of them behind it, the last one first
/// on purpose. The numbers have the stream's format. No line end.
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const Three_d_point& point);

}  // namespace zorv
