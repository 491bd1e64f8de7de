#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/stream_capture.h"
#include "zorv_tools/config/configuration.h"

/// A store that shows what derived classes can reach.
class open_store : public zorv::configuration {
public:
    using configuration::add_param;
    using configuration::configure;
    using configuration::initialise;
    using configuration::parameters;
    using configuration::set_param2;

    int index_of(const std::string& name) const {
        const auto place = std::find_if(parameters.begin(), parameters.end(),
                                        [&](const parameter& record) { return record.name == name; });
        return static_cast<int>(place - parameters.begin());
    }

    /// Takes a key whose cell is a `Cell` out of the store.
    template <class Cell>
    void remove(const std::string& name) {
        const auto place = parameters.begin() + index_of(name);
        delete static_cast<Cell*>(place->value);
        parameters.erase(place);
    }
};

using texts = std::vector<std::string>;

/// What stands between the separators.
inline texts split(const std::string& text, const std::string& separator) {
    texts result;
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find(separator, begin)) != std::string::npos;) {
        result.push_back(text.substr(begin, end - begin));
        begin = end + separator.size();
    }
    result.push_back(text.substr(begin));
    return result;
}

/// The lines that the library wrote, without the "WARNING: " of each. A line that has none gets "bare: ".
inline texts sentences(const std::string& written) {
    EXPECT_TRUE(written.empty() || written.back() == '\n') << written;
    const std::string mark = "WARNING: ";
    texts result;
    std::istringstream lines(written);
    for (std::string line; std::getline(lines, line);) {
        result.push_back(line.rfind(mark, 0) == 0 ? line.substr(mark.size()) : "bare: " + line);
    }
    return result;
}

/// Sets lines of the form key=value, or just value for one more of the same key, and returns the sentences that this
/// wrote to `std::cerr`.
inline texts warnings(zorv::configuration& store, const texts& lines) {
    const stream_capture errors(std::cerr);
    std::string key;
    for (const std::string& line : lines) {
        const std::size_t value = line.find('=') + 1;  // 0 without a key
        key = value > 0 ? line.substr(0, value - 1) : key;
        store.set_param(key, line.substr(value));
    }
    return sentences(errors.text());
}

inline std::string unrecognised(const std::string& key, const std::string& value) {
    return "Attempted to set an unrecognised parameter: \"" + key + "\" to a value of \"" + value +
           "\", check it dosen't belong to a subconfiguration not yet specified.";
}

inline std::string repeated(const std::string& key, bool replaces = false) {
    return key + " parameter encountered multiple times in config file" +
           (replaces ? " (using new one anyway)" : "");
}

template <class T>
T value_of(const zorv::configuration& store, const std::string& key) {
    T value{};
    store.get_param(key, value);
    return value;
}
