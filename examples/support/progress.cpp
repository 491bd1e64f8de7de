#include "examples/support/progress.h"

#include <algorithm>
#include <iostream>
#include <utility>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

bool error_stream_is_a_terminal() {
#ifdef _WIN32
    return _isatty(2) != 0;
#else
    return isatty(2) != 0;
#endif
}

}  // namespace

progress_line::progress_line(std::string what, long total)
    : what_(std::move(what)), total_(std::max(total, 1L)), shown_(error_stream_is_a_terminal()) {}

progress_line::~progress_line() {
    if (shown_) {
        std::cerr << "\r" << what_ << " 100%" << std::endl;
    }
}

void progress_line::update(long done) {
    if (!shown_) {
        return;
    }
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < std::chrono::milliseconds(100)) {
        return;
    }
    last_ = now;
    std::cerr << "\r" << what_ << " " << 100 * done / total_ << "%" << std::flush;
}
