#include "zorv_tools/core/text.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <locale>

namespace zorv {

namespace {

/// Replaces the `find` that stands at `position`, if there is one; its position, or -1.
int replace_at(std::string& text, std::size_t position, const std::string& find,
               const std::string& replacement) {
    if (position == std::string::npos) {
        return -1;
    }
    text.replace(position, find.size(), replacement);
    return static_cast<int>(position);
}

}  // namespace

// A negative start becomes a position behind any text: a search forward finds nothing there, one backward begins at
// the end.

int find_and_replace(std::string& text, const std::string& find, const std::string& replacement, int start) {
    return replace_at(text, text.find(find, static_cast<std::size_t>(start)), find, replacement);
}

int rfind_and_replace(std::string& text, const std::string& find, const std::string& replacement, int start) {
    return replace_at(text, text.rfind(find, static_cast<std::size_t>(start)), find, replacement);
}

int find_and_replace_all(std::string& text, const std::string& find, const std::string& replacement) {
    unsigned int count = 0;
    int start = 0;
    for (;;) {
        const int found = find_and_replace(text, find, replacement, start);
        if (found == -1) {
            return static_cast<int>(count);
        }
        // Positions are of 32 bits and wrap.
        start = static_cast<int>(static_cast<unsigned int>(found) +
                                 static_cast<unsigned int>(replacement.size()));
        ++count;
    }
}

void correct_path(std::string& path) {
    std::replace(path.begin(), path.end(), '/', '\\');
}

void strip_nl(std::string& text) {
    const auto is_line_end = [](char c) { return c == '\n' || c == '\r'; };
    text.erase(std::remove_if(text.begin(), text.end(), is_line_end), text.end());
}

const std::string to_lower(const std::string& text) {
    std::string lower = text;
    for (char& c : lower) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return lower;
}

std::vector<std::string> tokenise(const std::string& text) {
    // White space is what a new stream takes for it.
    const std::locale locale;
    const auto& characters = std::use_facet<std::ctype<char>>(locale);
    const char* const end = text.data() + text.size();
    std::vector<std::string> words;
    const char* word = characters.scan_not(std::ctype_base::space, text.data(), end);
    while (word != end) {
        const char* const word_end = characters.scan_is(std::ctype_base::space, word, end);
        words.emplace_back(word, word_end);
        word = characters.scan_not(std::ctype_base::space, word_end, end);
    }
    if (words.empty()) {
        words.emplace_back();
    }
    return words;
}

void get_row_stream(std::istream& in, std::stringstream& row) {
    std::string line;
    std::getline(in, line);
    row.str(line);
    // A stream that was opened at its end would otherwise be written to behind the line.
    row.rdbuf()->pubseekpos(0);
}

void get_line_stream(std::istream& in, std::stringstream& row) {
    get_row_stream(in, row);
}

void dump_nulls(std::istream& in) {
    while (in.peek() == '\0') {
        in.get();
        in >> std::ws;
    }
}

}  // namespace zorv
