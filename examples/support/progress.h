#pragma once

#include <chrono>
#include <string>

/// A line on the standard error stream that tells how far the work is. Nothing is written where that stream is
/// not a terminal.
class progress_line {
public:
    progress_line(std::string what, long total);
    ~progress_line();
    progress_line(const progress_line&) = delete;
    progress_line& operator=(const progress_line&) = delete;

    void update(long done);

private:
    std::string what_;
    long total_;
    bool shown_;
    std::chrono::steady_clock::time_point last_;
};
