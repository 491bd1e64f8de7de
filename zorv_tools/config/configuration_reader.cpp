#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <system_error>
#include <utility>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/config/internal/configuration_key.h"
#include "zorv_tools/core/exception_l.h"

namespace zorv {

namespace {

bool begins_with(const std::string& text, std::string_view start) {
    return text.compare(0, start.size(), start) == 0;
}

/// Some systems open a folder as a stream whose every read fails.
bool open_file(std::ifstream& in, const std::string& path) {
    std::error_code ignored;
    if (!std::filesystem::is_directory(path.c_str(), ignored)) {
        in.open(path.c_str());
    }
    return in.is_open();
}

/// The first word of a line.
std::string_view first_word(const std::string& line) {
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const std::string_view text(line);
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_first_of(blanks, begin) - begin);
}

}  // namespace

configuration::configuration(char* path) : configuration() {
    if (!path) {
        std::cerr << "WARNING: Null char array location passed to config file constructor." << std::endl;
        return;
    }
    read_file(path);
}

configuration::configuration(std::string path) : configuration() {
    read_file(path);
}

void configuration::read_file(const std::string& path) {
    if (path.empty()) {
        std::cerr << "WARNING: Empty string location passed to config file constructor." << std::endl;
        return;
    }
    std::ifstream in;
    if (!open_file(in, path)) {
        std::cerr << "WARNING: Input config file was not opened: " << path << std::endl;
        return;
    }
    configure(in);
}

void configuration::configure(std::ifstream& in) {
    std::string line;
    std::string name;
    std::string value;
    // Counted from 0 on purpose, also in the messages.
    int line_number = 0;
    while (in.is_open() && !in.eof()) {
        // A read that fails before the end of the file would fail for ever; at the end it leaves an empty line.
        if (!std::getline(in, line) && !in.eof()) {
            break;
        }
        const std::string_view word = first_word(line);
        const std::size_t equals = word.find('=');
        if (equals != std::string_view::npos) {
            if (word.find('=', equals + 1) != std::string_view::npos) {
                ZORV_THROW("configuration::configure() : line "
                           << line_number << " contained more than one equals sign: \"" << word << "\"");
            }
            name.assign(word.substr(0, equals));
            value.assign(word.substr(equals + 1));
            set_param(name, value);
        } else if (!word.empty() && word.substr(0, 2) != "//") {
            ZORV_THROW("No equals sign found in config file line " << line_number << ": \"" << word << "\"");
        }
        ++line_number;
    }
    in.close();
}

void configuration::set_param(const std::string& name, const std::string& value) {
    if (begins_with(name, "//")) {
        return;
    }
    const std::size_t position = position_of(name);
    if (name == "import") {
        import_file(value);
        return;
    }
    if (position == parameters.size() && begins_with(name, "__")) {
        // Up to its first NUL, as names are looked for.
        append(name.substr(0, name.find('\0')), std::make_unique<std::string>(), param_string);
    }
    const int index = static_cast<int>(position);
    const internal::key_row* const row = internal::find_key(name);
    if (row && row->chain == internal::half::first) {
        row->set(*row, {*this, parameters, name, value, index, ZORV_HERE});
        return;
    }
    set_second_half(name, value, index);
}

void configuration::set_param2(std::string name, std::string value, int index) {
    set_second_half(name, value, index);
}

void configuration::set_second_half(const std::string& name, const std::string& value, int index) {
    const internal::key_row* const row = internal::find_key(name);
    const internal::setting line = {*this, parameters, name, value, index, ZORV_HERE};
    if (row && row->chain == internal::half::second) {
        row->set(*row, line);
        return;
    }
    // A derived class may have declared such a key with another kind; its cell is then no string.
    if (begins_with(name, "__") && line.record().kind == param_string) {
        line.cell<std::string>() = value;
        return;
    }
    std::cerr << "WARNING: Attempted to set an unrecognised parameter: \"" << name << "\" to a value of \""
              << value << "\", check it dosen't belong to a subconfiguration not yet specified." << std::endl;
}

void configuration::import_file(const std::string& path) {
    std::cout << "Importing additional config file: \"" << path << "\"" << std::endl;
    // As given: relative paths start from the folder of the process, not from that of the importing file.
    std::ifstream in;
    if (!open_file(in, path)) {
        std::cerr << "WARNING: Error opening import file: " << path << std::endl;
        return;
    }
    configure(in);
}

}  // namespace zorv
