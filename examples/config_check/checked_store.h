#pragma once

#include <string>
#include <vector>

#include "zorv_tools/config/configuration.h"

/// A store that is filled line by line, so that each warning can be told with its file and line.
class checked_store : public zorv::configuration {
public:
    /// Reads a file and what it imports, by the rules of the library's own reader, and prints each warning to
    /// the standard output. It goes on behind a line at which the library's reader throws.
    void check(const std::string& path);

    /// Prints the keys that differ from their defaults.
    void print_changes() const;
    /// Prints the cameras that the store describes.
    void print_cameras();
    /// How much was refused so far: lines that the store does not hold, or not as they stand, files that cannot
    /// be read, and cameras that cannot be made.
    int refused() const { return refused_; }

private:
    void read_file(const std::string& path, const std::string& place, bool imported);
    void read_line(const std::string& place, const std::string& line);
    void set(const std::string& place, const std::string& name, const std::string& value);
    void refuse(const std::string& place, const std::string& sentence);
    bool holds(const std::string& name, const std::string& value) const;

    /// The files that are being read, each imported by the one before.
    std::vector<std::string> open_;
    int refused_ = 0;
};
