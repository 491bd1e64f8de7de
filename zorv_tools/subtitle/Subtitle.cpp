#include "zorv_tools/subtitle/Subtitle.h"

#include <iomanip>
#include <sstream>

#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/subtitle/internal/numbers.h"
#include "zorv_tools/subtitle/internal/white_space.h"

namespace zorv {

Subtitle::Subtitle(double frames_per_second) : frame_rate(frames_per_second) {}

int Subtitle::start_frame() const {
    return start.get_frame(frame_rate);
}

int Subtitle::end_frame() const {
    return end.get_frame(frame_rate);
}

std::istream& operator>>(std::istream& in, Subtitle& subtitle) {
    internal::skip_white_space(in);
    internal::read_int(in, subtitle.number);

    internal::skip_white_space(in);
    in >> subtitle.start;

    // The reader of a time leaves no white space behind it.
    std::string token;
    in >> token;
    internal::skip_white_space(in);
    if (token != "-->") {
        ZORV_THROW("Subtitle >> operator : failed to find arrow (-->)  between timestamps. Instead found \""
                   << token << "\"");
    }

    in >> subtitle.end;
    const int next = in.peek();
    if (next != '[') {
        ZORV_THROW("Subtitle >> operator : expected \"[\" before confidence. instead found \"" << next
                                                                                               << "\"");
    }
    in >> token;
    if (token.back() != ']') {
        // The last character but one is shown, not the one that should have been the bracket.
        const std::string shown = token.size() < 2 ? "" : token.substr(token.size() - 2, 1);
        ZORV_THROW("Subtitle >> operator : expected \"]\" after confidence. instead found \"" << shown
                                                                                              << "\"");
    }
    const std::string value = token.substr(1, token.size() - 2);
    std::stringstream stream(value);
    stream >> subtitle.confidence;
    if (stream.fail()) {
        ZORV_THROW("Subtitle >> operator : confidence value read was \"" << value
                                                                         << "\" which is not a float");
    }
    // The blank behind the bracket is not skipped: it becomes the first character of the text.
    std::getline(in, subtitle.text);
    return in;
}

std::ostream& operator<<(std::ostream& out, const Subtitle& subtitle) {
    if (!out.good()) {
        ZORV_THROW("Subtitle << operator : stream passed was not good");
    }
    out << subtitle.number << std::endl;
    out << subtitle.start << " --> " << subtitle.end << std::endl;
    // Hosts find the notation and the precision still set afterwards.
    out << "[" << std::fixed << std::setprecision(1) << subtitle.confidence << "] " << subtitle.text
        << std::endl;
    return out;
}

}  // namespace zorv
