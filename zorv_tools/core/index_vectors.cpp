#include "zorv_tools/core/index_vectors.h"

#include <cstddef>
#include <iostream>
#include <memory>

namespace zorv {

double extract_value(void* data, std::vector<int>* indices, int level) {
    if (level == -1) {
        level = static_cast<int>(indices->size()) - 1;
    }
    // Any other negative level, and any negative index, is far out of range as an unsigned number.
    for (; level != 0; --level) {
        const auto index = static_cast<std::size_t>(indices->at(static_cast<std::size_t>(level)));
        data = static_cast<std::vector<void*>*>(data)->at(index);
    }
    return static_cast<std::vector<double>*>(data)->at(static_cast<std::size_t>(indices->at(0)));
}

bool increment_index_vector(std::vector<int>& index, std::vector<int>& limits, unsigned int start) {
    for (std::size_t position = start;; ++position) {
        if (index.size() != limits.size()) {
            std::cerr << "Error: size of index vector=" << index.size()
                      << " and size of limit vectors=" << limits.size() << " in incremenet index vector."
                      << std::endl;
        }
        if (position == index.size()) {
            return false;
        }
        int& digit = index.at(position);
        if (digit < limits.at(position)) {
            ++digit;
            return true;
        }
        digit = 0;
    }
}

std::vector<double>* linear_interpolate(std::vector<double>* values, double fraction) {
    const std::size_t size = values->size();
    if (size % 2 != 0) {
        std::cerr << "vector passed for interpolation had a size of " << size << ", it must be even."
                  << std::endl;
    }
    auto result = std::make_unique<std::vector<double>>();
    result->reserve(size / 2);
    for (std::size_t i = 0; i < size; i += 2) {
        result->push_back((1.0 - fraction) * values->at(i) + fraction * values->at(i + 1));
    }
    return result.release();
}

}  // namespace zorv
