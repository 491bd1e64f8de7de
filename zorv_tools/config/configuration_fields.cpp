#include "zorv_tools/config/internal/configuration_fields.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace zorv::internal {

int to_int(const std::string& text) {
    const long number = std::strtol(text.c_str(), nullptr, 10);
    constexpr long smallest = std::numeric_limits<int>::min();
    constexpr long largest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, smallest, largest));
}

double to_double(const std::string& text) {
    return std::atof(text.c_str());
}

std::vector<std::string> split_fields(const std::string& text, std::size_t count, char separator) {
    std::vector<std::string> fields;
    std::size_t begin = 0;
    while (fields.size() + 1 < count) {
        const std::size_t end = text.find(separator, begin);
        if (end == std::string::npos) {
            break;
        }
        fields.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    fields.push_back(text.substr(begin));
    return fields;
}

std::vector<std::string> split_fields(const std::string& text) {
    return split_fields(text, std::numeric_limits<std::size_t>::max());
}

}  // namespace zorv::internal
