#include "zorv_tools/subtitle/internal/numbers.h"

#include <cstddef>
#include <sstream>

#include "zorv_tools/core/IO_helpers.h"

namespace zorv::internal {

namespace {

/// Whether `text` is nothing but digits, and few enough for any number of them to fit.
bool plain_int(std::string_view text, int& value) {
    if (text.empty() || text.size() > 9) {
        return false;
    }
    int result = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return false;
        }
        result = 10 * result + (c - '0');
    }
    value = result;
    return true;
}

}  // namespace

void read_int(std::string_view text, int& value) {
    if (!plain_int(text, value)) {
        i_helper(std::string(text), value);
    }
}

void read_int(std::istream& in, int& value) {
    std::string word;
    in >> word;
    if (!plain_int(word, value)) {
        std::istringstream again(word);
        again.imbue(in.getloc());
        i_helper(again, value);
    }
}

std::string padded(int value, int digits) {
    std::string text(static_cast<std::size_t>(digits), '0');
    int rest = value;
    for (auto place = text.rbegin(); place != text.rend() && rest > 0; ++place, rest /= 10) {
        *place = static_cast<char>('0' + rest % 10);
    }
    return rest == 0 ? text : int_to_str(value, digits);
}

}  // namespace zorv::internal
