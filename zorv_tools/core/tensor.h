#pragma once

#include <memory>
#include <vector>

#include "zorv_tools/core/export.h"

namespace zorv {

/// Array of any number of dimensions. There is one of doubles.
template <class T>
class tensor;

/// A shape with a flat array of doubles, to be read and compared. Copies share the values, which live as long as the
/// last of them; the count of sharers is safe across threads.
template <>
class ZORV_TOOLS_EXPORT tensor<double> {
public:
    /// Copies both vectors. Throws `std::invalid_argument` unless there are as many values as the product of the
    /// sizes, which is 1 where there are no sizes, and for a negative size.
    tensor(const std::vector<int>& sizes, const std::vector<double>& values);
    /// Shares the values of `other`.
    tensor(const tensor& other);
    /// Shares the values of `other` from now on; what this object held goes with its last sharer.
    tensor& operator=(const tensor& other);
    virtual ~tensor();

    /// The element at a flat index, which is not tested.
    double operator[](int index) const { return values[index]; }
    /// One extent for each dimension, as given to the constructor.
    const std::vector<int> get_sizes() const;
    /// True where the sizes are the same and all elements differ by at most 0.0001, the bound included. Elements
    /// that are not a number equal nothing.
    bool operator==(const tensor& other) const;

private:
    int dims;
    std::vector<int> sizes;
    /// Comparison runs up to this index, inclusive; -1 when there is no element.
    int last_index;
    std::shared_ptr<double[]> values;
};

}  // namespace zorv
