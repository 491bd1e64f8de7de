#include "zorv_tools/core/IO_helpers.h"

#include "zorv_tools/core/ipow.h"

namespace zorv {

std::string int_to_str(int value) {
    try {
        std::string text;
        i_helper(value, text);
        return text;
    }
    ZORV_ADD_FRAME("")
}

std::string int_to_str(int value, int digits) {
    if (value >= ipow(10, digits)) {
        ZORV_THROW("zorv_utils::int_to_str() : input number "
                   << value << " is too large to be represented by " << digits << " as requested.");
    }
    std::string text;
    for (int i = digits - 1; i >= 0; --i) {
        // From 10 to the power of 32 on, the wrapped power is 0; such a digit is 0 like any other beyond the
        // number's length.
        const int power = ipow(10, i);
        std::string digit;
        i_helper(power == 0 ? 0 : (value / power) % 10, digit);
        text += digit;
    }
    return text;
}

void default_val(int& value) {
    value = 0;
}

void default_val(float& value) {
    value = 0;
}

void default_val(double& value) {
    value = 0;
}

}  // namespace zorv
