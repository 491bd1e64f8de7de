#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "zorv_tools/subtitle/Subtitle.h"

using track = std::vector<zorv::Subtitle>;

/// The good blocks before the first bad one, and the library's report on that (empty if all are good).
struct reading {
    track blocks;
    std::string report;
};

/// Reads to the end of `in` or to the first block that cannot be read.
reading read_track(std::istream& in, double frame_rate);

/// Looks for the first block that has no text form, such as one of 100 hours, and takes it for the first bad one.
void check_text_forms(reading& input);

/// Moves all times by `seconds`, to the nearest millisecond. Times before the start of the video become 0, and blocks
/// that lie wholly before it are dropped.
void shift(track& blocks, double seconds);

void drop_below(track& blocks, double confidence);

/// One line for each block: number, first and last frame, times, confidence and text.
void print(const track& blocks, std::ostream& out);

/// Throws `std::runtime_error` where the file cannot be written.
void write_track(const track& blocks, const std::string& path);
