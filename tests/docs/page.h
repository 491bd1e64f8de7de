#pragma once

/// @file
/// The fenced blocks of a documentation page, which the tests hold against the library.

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

struct page_block {
    std::string label;
    std::vector<std::string> lines;
    int line_number = 0;

    std::string text() const {
        std::string all;
        for (const std::string& line : lines) {
            all += line + "\n";
        }
        return all;
    }
};

inline std::string page_path(const std::string& name) {
    return std::string(ZORV_TEST_SOURCE_ROOT) + "/" + name;
}

inline std::vector<page_block> read_blocks(const std::string& name) {
    std::ifstream in(page_path(name));
    if (!in) {
        throw std::runtime_error("no page " + name);
    }
    std::vector<page_block> blocks;
    bool inside = false;
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (line.compare(0, 3, "```") == 0) {
            inside = !inside;
            if (inside) {
                blocks.push_back({line.substr(3), {}, number});
            }
        } else if (inside) {
            blocks.back().lines.push_back(line);
        }
    }
    return blocks;
}

/// Whether two texts are the same line by line, "..." in the expected one standing for anything on its line.
inline bool matches(const std::string& expected, const std::string& actual) {
    const std::size_t gap = expected.find("...");
    if (gap == std::string::npos) {
        return expected == actual;
    }
    const std::string start = expected.substr(0, gap);
    if (actual.compare(0, gap, start) != 0) {
        return false;
    }
    for (std::size_t end = gap; end <= actual.size(); ++end) {
        if (matches(expected.substr(gap + 3), actual.substr(end))) {
            return true;
        }
        if (end < actual.size() && actual[end] == '\n') {
            return false;
        }
    }
    return false;
}
