#include "zorv_tools/core/exception_l.h"

#include <algorithm>
#include <cstddef>

namespace zorv {

namespace {

const std::string report(const code_location& location, const std::string& sentence, int tabs,
                         const char* cause) {
    // A host may have built the exception with any depth; a negative one has no tabs.
    const std::string indent(static_cast<std::size_t>(std::max(tabs, 0)), '\t');
    std::ostringstream text;
    text << indent << location.file << "(" << location.line << ")\n"
         << indent << location.function << "\n"
         << indent << "Details: " << sentence;
    if (cause) {
        text << "\n" << cause;
    }
    text << std::endl;
    return text.str();
}

}  // namespace

exception_l::exception_l() : exception_l("No message", 0) {}

exception_l::exception_l(const std::string& message, int depth)
    : message_(std::make_unique<std::string>(message)), depth_(depth) {}

exception_l::exception_l(const exception_l& other)
    : std::exception(other), message_(std::make_unique<std::string>(other.what())), depth_(other.depth_) {}

exception_l::~exception_l() = default;

// Private, so only the class itself could call it; not safe against self-assignment, since the old string goes
// first.
exception_l& exception_l::operator=(const exception_l& other) {  // NOLINT(bugprone-unhandled-self-assignment)
    message_.reset();
    message_ = std::make_unique<std::string>(other.what());
    depth_ = other.depth_;
    return *this;
}

const char* exception_l::what() const noexcept {
    return message_->c_str();
}

int exception_l::depth() const noexcept {
    return depth_;
}

void throw_exception_l(const code_location& location, const std::string& sentence) {
    throw exception_l(report(location, sentence, 0, nullptr), 0);
}

void rethrow_with_frame(const code_location& location, const std::string& sentence,
                        const exception_l& cause) {
    const int depth = cause.depth() + 1;
    throw exception_l(report(location, sentence, depth, cause.what()), depth);
}

void rethrow_with_frame(const code_location& location, const std::string& sentence,
                        const std::exception& cause) {
    throw exception_l(report(location, sentence, 0, cause.what()), 0);
}

}  // namespace zorv
