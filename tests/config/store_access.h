#pragma once

#include <initializer_list>
#include <iostream>
#include <iterator>
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
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            if (parameters[i].name == name) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }

    /// Takes a key of plain kind out of the store.
    void remove(const std::string& name) {
        const auto place = parameters.begin() + index_of(name);
        if (place->kind == param_int) {
            delete static_cast<int*>(place->value);
        } else {
            delete static_cast<void**>(place->value);
        }
        parameters.erase(place);
    }
};

/// Sets the lines, each of the form key=value, and returns what that wrote to `std::cerr`.
inline std::string warnings(zorv::configuration& store, const std::vector<std::string>& lines) {
    const stream_capture errors(std::cerr);
    for (const std::string& line : lines) {
        const std::size_t equals = line.find('=');
        store.set_param(line.substr(0, equals), line.substr(equals + 1));
    }
    return errors.text();
}

template <class T>
T value_of(const zorv::configuration& store, const std::string& key) {
    T value{};
    store.get_param(key, value);
    return value;
}

/// A key's value as text: a plain one printed, a special one only as to whether it is null.
inline std::string text_of(const open_store& store, const std::string& key) {
    const auto& record = store.parameters.at(static_cast<std::size_t>(store.index_of(key)));
    std::ostringstream out;
    switch (record.kind) {
        case zorv::configuration::param_int:
            out << *static_cast<int*>(record.value);
            break;
        case zorv::configuration::param_double:
            out << *static_cast<double*>(record.value);
            break;
        case zorv::configuration::param_bool:
            out << *static_cast<bool*>(record.value);
            break;
        case zorv::configuration::param_string:
            out << *static_cast<std::string*>(record.value);
            break;
        default:
            out << (*static_cast<void**>(record.value) ? "object" : "null");
    }
    return out.str();
}

inline std::vector<std::string> words(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

/// The list of a special key. Null when no line made one.
template <class T>
std::vector<T>* list_of(const zorv::configuration& store, const std::string& key) {
    return value_of<std::vector<T>*>(store, key);
}

inline std::string unrecognised(const std::string& key, const std::string& value) {
    return "WARNING: Attempted to set an unrecognised parameter: \"" + key + "\" to a value of \"" + value +
           "\", check it dosen't belong to a subconfiguration not yet specified.\n";
}

inline std::string repeated(const std::string& key, bool replaces = false) {
    return "WARNING: " + key + " parameter encountered multiple times in config file" +
           (replaces ? " (using new one anyway)\n" : "\n");
}
