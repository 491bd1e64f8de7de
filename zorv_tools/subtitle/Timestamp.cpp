#include "zorv_tools/subtitle/Timestamp.h"

#include <cmath>
#include <string>
#include <string_view>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/truncate.h"
#include "zorv_tools/subtitle/internal/numbers.h"
#include "zorv_tools/subtitle/internal/white_space.h"

namespace zorv {

namespace {

/// Product in 32 bits, which wraps for times that no clock shows.
int wrapping_product(int a, int b) {
    return static_cast<int>(static_cast<unsigned int>(a) * static_cast<unsigned int>(b));
}

}  // namespace

double Timestamp::total_seconds() const {
    return ((hours + 0.0) * 60 + minutes) * 60 + seconds + milliseconds / 1000.0;
}

void Timestamp::input_seconds(double total) {
    hours = truncate_to<int>(std::floor(total / 3600.0));
    double rest = total - wrapping_product(hours, 3600);
    minutes = truncate_to<int>(std::floor(rest / 60.0));
    rest -= wrapping_product(minutes, 60);
    seconds = truncate_to<int>(std::floor(rest));
    rest -= seconds;
    milliseconds = truncate_to<int>(rest * 1000.0);
}

int Timestamp::get_frame(double fps) const {
    return truncate_to<int>(total_seconds() * fps);
}

bool Timestamp::operator<(const Timestamp& other) const {
    return total_seconds() < other.total_seconds();
}

std::istream& operator>>(std::istream& in, Timestamp& time) {
    if (!in.good()) {
        ZORV_THROW("Timestamp >> operator : passed stream was not good");
    }
    std::string token;
    internal::skip_white_space(in);
    in >> token;
    internal::skip_white_space(in);

    const std::size_t first_colon = token.find(':');
    if (first_colon == std::string::npos) {
        ZORV_THROW("Timestamp >> operator : first_colon not found in text block \"" << token << "\"");
    }
    const std::size_t second_colon = token.find(':', first_colon + 1);
    if (second_colon == std::string::npos) {
        ZORV_THROW("Timestamp >> operator : second_colon not found in text block \"" << token << "\"");
    }
    const std::size_t comma = token.find(',', second_colon + 1);
    if (comma == std::string::npos) {
        ZORV_THROW("Timestamp >> operator : comma not found in text block \"" << token << "\"");
    }

    const std::string_view text = token;
    try {
        internal::read_int(text.substr(0, first_colon), time.hours);
        internal::read_int(text.substr(first_colon + 1, second_colon - first_colon - 1), time.minutes);
        internal::read_int(text.substr(second_colon + 1, comma - second_colon - 1), time.seconds);
        internal::read_int(text.substr(comma + 1), time.milliseconds);
    } catch (const std::exception& e) {
        // A fresh report that quotes the old one, not a further frame of it.
        ZORV_THROW("Timestamp::operator>> : an error occured reading substrings. Error message=" << e.what());
    }
    return in;
}

std::ostream& operator<<(std::ostream& out, const Timestamp& time) {
    if (!out.good()) {
        ZORV_THROW("Timestamp << operator : passed stream was not good");
    }
    if (time.hours > 99) {
        ZORV_THROW("Timestamp::operator<< : hours must be 2 digits long, the specified timestamp has "
                   << time.hours << " hours, which is too large.");
    }
    // All fields become text before the first is written, so that a bad one leaves the stream as it was.
    const std::string milliseconds = internal::padded(time.milliseconds, 3);
    const std::string seconds = internal::padded(time.seconds, 2);
    const std::string minutes = internal::padded(time.minutes, 2);
    const std::string hours = internal::padded(time.hours, 2);
    return out << hours << ":" << minutes << ":" << seconds << "," << milliseconds;
}

}  // namespace zorv
