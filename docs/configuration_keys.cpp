// Writes the table of all configuration keys, as markdown, from the catalogue that the store itself works by. With a
// page, compares it with what stands between the page's two markers, or (--update) puts it there.

#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

#include "zorv_tools/config/internal/configuration_key.h"

namespace {

using zorv::configuration;
using zorv::internal::key_row;
using zorv::internal::number_range;
using zorv::internal::repetition;
using zorv::internal::text_form;

/// As code. A separator in a cell of a table needs a backslash, which readers of markdown take away again in text
/// but not all of them between backticks.
std::string code(std::string_view text) {
    if (text.find('|') == std::string_view::npos) {
        return "`" + std::string(text) + "`";
    }
    std::string result = "<code>";
    for (const char c : text) {
        result += c == '|' ? "\\|" : std::string(1, c);
    }
    return result + "</code>";
}

std::string kind_of(const key_row& row) {
    switch (row.kind) {
        case configuration::param_int:
            return "integer";
        case configuration::param_double:
            return "number";
        case configuration::param_bool:
            return "boolean";
        case configuration::param_string:
            return "text";
        default:
            return "special";
    }
}

std::string default_of(const key_row& row) {
    std::ostringstream out;
    if (row.kind == configuration::param_bool) {
        out << (row.number != 0 ? "true" : "false");
    } else if (row.kind == configuration::param_string) {
        out << (row.text.empty() ? "empty" : code(row.text));
    } else if (row.kind == configuration::param_special) {
        out << "null";
    } else {
        out << row.number;
    }
    return out.str();
}

/// What the ranges of a key have in common.
number_range common_range(const key_row& row) {
    number_range common;
    for (const auto& check : row.numbers) {
        if (!check.refusal) {
            continue;
        }
        if (check.range.lower > common.lower) {
            common.lower = check.range.lower;
            common.with_lower = check.range.with_lower;
        }
        if (check.range.upper < common.upper) {
            common.upper = check.range.upper;
            common.with_upper = check.range.with_upper;
        }
        common.odd = common.odd || check.range.odd;
    }
    return common;
}

std::string numbers_of(const key_row& row) {
    const number_range range = common_range(row);
    std::ostringstream out;
    const bool has_lower = std::isfinite(range.lower);
    const bool has_upper = std::isfinite(range.upper);
    if (has_lower && has_upper && range.with_lower && range.with_upper) {
        out << range.lower << " to " << range.upper;
    } else {
        if (has_lower) {
            out << (range.with_lower ? "at least " : "above ") << range.lower;
        }
        if (has_upper) {
            out << (has_lower ? " and " : "") << (range.with_upper ? "at most " : "below ") << range.upper;
        }
        if (!has_lower && !has_upper) {
            out << "any";
        }
    }
    out << (range.odd ? ", odd" : "");
    return out.str();
}

std::string texts_of(const key_row& row) {
    std::string words;
    switch (row.texts.rule.form) {
        case text_form::word:
            for (std::size_t i = 0; i < row.texts.rule.word_count; ++i) {
                words += (i == 0 ? "" : ", ") + code(row.texts.rule.words[i]);
            }
            return words;
        case text_form::extension:
            words = "a `.` among the last four characters";
            break;
        case text_form::txt:
            words = "ends in `.txt`";
            break;
        default:
            return "any";
    }
    return words + (row.texts.stores_refused ? ", but others are stored too, with a warning" : "") +
           "; fewer than four characters throw";
}

std::string accepted_by(const key_row& row) {
    std::string text = row.filled_by.empty() ? "" : "filled by the lines of " + code(row.filled_by);
    if (row.kind == configuration::param_special) {
        if (text.empty()) {
            text =
                code(row.format.form) + ": " + row.format.accepted + ". Example: " + code(row.format.example);
        }
        return text + ". Lends " + code(row.format.lends);
    }
    if (!text.empty()) {
        return text;
    }
    if (row.kind == configuration::param_bool) {
        return "`0`, `1`, `false`, `true`";
    }
    return row.kind == configuration::param_string ? texts_of(row) : numbers_of(row);
}

std::string repetition_of(const key_row& row) {
    if (!row.filled_by.empty()) {
        return "";
    }
    switch (row.repeated) {
        case repetition::keep_first:
            return "keeps";
        case repetition::replace:
            return "replaces";
        case repetition::append:
            return "adds";
        default:
            return "replaces silently";
    }
}

std::string table() {
    std::string text = "| Key | Kind | Default | Again | Accepted |\n|---|---|---|---|---|\n";
    for (const key_row& row : zorv::internal::catalogue) {
        text += "| " + code(row.name) + " | " + kind_of(row) + " | " + default_of(row) + " | " +
                repetition_of(row) + " | " + accepted_by(row) + " |\n";
    }
    return text;
}

/// Where the table of a page begins, and how long it is.
struct place {
    std::size_t begin;
    std::size_t length;
};

place find_table(const std::string& page) {
    const std::string opening = "<!-- The table is written by the target update_configuration_keys. -->\n\n";
    const std::string closing = "\n<!-- End of the table. -->";
    const std::size_t begin = page.find(opening);
    const std::size_t end = page.find(closing);
    if (begin == std::string::npos || end == std::string::npos || end < begin + opening.size()) {
        throw std::runtime_error("the page lacks the markers of the table");
    }
    return {begin + opening.size(), end - begin - opening.size()};
}

int work_on(const std::string& path, bool update) {
    std::ifstream in(path, std::ios::binary);
    std::string page(std::istreambuf_iterator<char>(in), {});
    const place old = find_table(page);
    const std::string current = table();
    if (page.compare(old.begin, old.length, current) == 0) {
        return 0;
    }
    if (!update) {
        std::cerr << path << ": the table of keys is not that of the catalogue; build the target "
                  << "update_configuration_keys" << std::endl;
        return 1;
    }
    page.replace(old.begin, old.length, current);
    return std::ofstream(path, std::ios::binary) << page ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 1) {
            std::cout << table();
            return 0;
        }
        const bool update = argc == 3 && std::string(argv[1]) == "--update";
        if (argc == 2 || update) {
            return work_on(argv[argc - 1], update);
        }
        std::cerr << "usage: configuration_keys [[--update] PAGE]" << std::endl;
    } catch (const std::exception& e) {
        std::cerr << e.what() << std::endl;
    }
    return 1;
}
