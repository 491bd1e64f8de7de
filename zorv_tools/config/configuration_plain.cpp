#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <type_traits>

#include "zorv_tools/config/internal/configuration_fields.h"
#include "zorv_tools/config/internal/configuration_key.h"

namespace zorv::internal {

namespace {

/// A value other than the default counts as given before, however it came there; there is no flag.
template <class T>
bool open_for_setting(const key_row& row, const T& current, const T& default_value) {
    return current == default_value || allow_repetition(row);
}

/// The last four characters. Throws `std::out_of_range` when there are fewer.
std::string_view tail(const std::string& text) {
    if (text.size() < 4) {
        throw std::out_of_range("invalid string position");
    }
    return std::string_view(text).substr(text.size() - 4);
}

template <class T>
void set_number(const key_row& row, const setting& line, T (*convert)(const std::string&)) {
    T& cell = line.cell<T>();
    if (!open_for_setting(row, cell, static_cast<T>(row.number))) {
        return;
    }
    const T number = convert(line.value);
    for (const number_check& check : row.numbers) {
        if (check.refusal && !check.range.contains(number)) {
            std::cerr << check.refusal;
            if (check.shown == echo::number) {
                std::cerr << number << std::endl;
            } else {
                std::cerr << line.value << std::endl;
            }
            return;
        }
    }
    cell = number;
}

}  // namespace

parameter& setting::record_at(std::size_t position) const {
    if (position >= parameters.size()) {
        throw std::out_of_range("invalid vector<T> subscript");
    }
    return parameters[position];
}

std::size_t setting::find_other(const char* key) const {
    std::size_t position = 0;
    while (position < parameters.size() && parameters[position].name != key) {
        ++position;
    }
    if (position == parameters.size()) {
        std::cerr << "WARNING: Parameter " << key
                  << " was not found in parameters vector, it must not have been initialised." << std::endl;
    }
    return position;
}

bool allow_repetition(const key_row& row) {
    if (row.repeated == repetition::untested) {
        return true;
    }
    const bool replaces = row.repeated == repetition::replace;
    if (row.repeat_warning) {
        std::cerr << row.repeat_warning << std::endl;
    } else {
        std::cerr << "WARNING: " << row.name << " parameter encountered multiple times in config file"
                  << (replaces ? " (using new one anyway)" : "") << std::endl;
    }
    return replaces;
}

void set_flag(const key_row& row, const setting& line) {
    bool& cell = line.cell<bool>();
    if (!open_for_setting(row, cell, row.number != 0)) {
        return;
    }
    const bool is_true = line.value == "1" || line.value == "true";
    if (is_true || line.value == "0" || line.value == "false") {
        cell = is_true;
    } else if (row.flags.refusal) {
        std::cerr << row.flags.refusal << line.value << row.flags.closing << std::endl;
    } else {
        std::cerr << "WARNING: " << row.name << " parameter not 1,0,true or false: \"" << line.value << "\""
                  << std::endl;
    }
}

void set_integer(const key_row& row, const setting& line) {
    set_number<int>(row, line, to_int);
}

void set_real(const key_row& row, const setting& line) {
    set_number<double>(row, line, to_double);
}

void set_text(const key_row& row, const setting& line) {
    std::string& cell = line.cell<std::string>();
    if (!open_for_setting(row, std::string_view(cell), row.text)) {
        return;
    }
    const text_check& check = row.texts;
    if (!check.rule.accepts(line.value)) {
        std::cerr << check.refusal << line.value << check.closing << std::endl;
        if (!check.stores_refused) {
            return;
        }
    }
    cell = line.value;
}

bool text_rule::accepts(const std::string& text) const {
    switch (form) {
        case text_form::word:
            return std::find(words, words + word_count, std::string_view(text)) != words + word_count;
        case text_form::extension:
            return tail(text).find('.') != std::string_view::npos;
        case text_form::txt:
            return tail(text) == ".txt";
        default:
            return true;
    }
}

}  // namespace zorv::internal
