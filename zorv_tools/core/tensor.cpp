#include "zorv_tools/core/tensor.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "zorv_tools/core/near.h"

namespace zorv {

namespace {

/// True where the sizes multiply to `count`. No step can overflow: the product stops growing beyond `count`.
bool has_product(const std::vector<int>& sizes, std::size_t count) {
    if (std::any_of(sizes.begin(), sizes.end(), [](int size) { return size < 0; })) {
        return false;
    }
    if (std::find(sizes.begin(), sizes.end(), 0) != sizes.end()) {
        return count == 0;
    }
    std::size_t product = 1;
    for (const int size : sizes) {
        if (product > count / static_cast<std::size_t>(size)) {
            return false;
        }
        product *= static_cast<std::size_t>(size);
    }
    return product == count;
}

}  // namespace

tensor<double>::tensor(const std::vector<int>& shape, const std::vector<double>& elements)
    : dims(static_cast<int>(shape.size())), sizes(shape), last_index(static_cast<int>(elements.size()) - 1) {
    if (!has_product(shape, elements.size()) ||
        elements.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw std::invalid_argument("tensor : the number of values is not the product of the sizes");
    }
    values = std::shared_ptr<double[]>(new double[elements.size()]);
    std::copy(elements.begin(), elements.end(), values.get());
}

tensor<double>::tensor(const tensor& other) = default;
tensor<double>& tensor<double>::operator=(const tensor& other) = default;
tensor<double>::~tensor() = default;

const std::vector<int> tensor<double>::get_sizes() const {
    return std::vector<int>(sizes.begin(), sizes.begin() + dims);
}

bool tensor<double>::operator==(const tensor& other) const {
    return sizes == other.get_sizes() &&
           std::equal(values.get(), values.get() + last_index + 1, other.values.get(), is_near);
}

}  // namespace zorv
