#pragma once

#include <ostream>
#include <sstream>
#include <string>

/// Collects what is written to a stream (`std::cerr`, `std::cout`) for as long as it lives.
class stream_capture {
public:
    explicit stream_capture(std::ostream& stream) : stream_(stream), old_(stream.rdbuf(buffer_.rdbuf())) {}
    ~stream_capture() { stream_.rdbuf(old_); }
    stream_capture(const stream_capture&) = delete;
    stream_capture& operator=(const stream_capture&) = delete;

    std::string text() const { return buffer_.str(); }
    void clear() { buffer_.str(""); }

private:
    std::ostringstream buffer_;
    std::ostream& stream_;
    std::streambuf* old_;
};
