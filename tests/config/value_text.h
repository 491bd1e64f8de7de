#pragma once

#include <type_traits>
#include <utility>

#include "tests/config/store_access.h"
#include "zorv_tools/core/opencv_c.h"

/// @file
/// Values of the store as text: numbers with more digits than a `float` has, fields in the order of the file format,
/// lists in brackets.

template <class... Fields>
std::string joined(const Fields&... fields) {
    std::ostringstream out;
    out.precision(15);
    out << std::boolalpha;
    const char* separator = "";
    ((out << separator << fields, separator = "|"), ...);
    return out.str();
}

template <class T>
std::string text(const T& value) {
    return joined(value);
}
inline std::string text(const std::pair<double, double>& size) {
    return joined(size.first, size.second);
}
inline std::string text(const zorv::scale& s) {
    return joined(s.samples, s.radius, s.scale_factor);
}
inline std::string text(const zorv::stereo_setting& s) {
    return joined(s.stereo_mask_size, s.edge_correlation_on, s.edge_mask_size, s.back_and_forth_on, s.width,
                  s.height, s.max_disp, s.min_disp);
}
inline std::string text(const zorv::haar_setting& h) {
    return joined(h.cascade_loc, h.scale_rate, h.detections, h.base_width, h.base_height, h.extra_settings);
}
inline std::string text(const zorv::sample& s) {
    return joined(s.location, s.frame, s.x1, s.x2, s.y1, s.y2);
}
template <class T>
std::string text(const std::vector<T>& list) {
    std::string result;
    for (const T& entry : list) {
        result += result.empty() ? "" : " ";
        if constexpr (std::is_pointer_v<T>) {
            result += text(*entry);
        } else {
            result += text(entry);
        }
    }
    return "[" + result + "]";
}
inline std::string text(const IplConvKernel& k) {
    return joined(k.nCols, k.nRows, k.anchorX, k.anchorY) +
           text(std::vector<int>(k.values, k.values + k.nCols * k.nRows));
}

/// The object of a special key.
template <class Object>
std::string object_text(const zorv::configuration& store, const std::string& key) {
    const Object* const object = value_of<Object*>(store, key);
    return object ? text(*object) : "null";
}

/// The value of a plain key; of a special one, whether it has an object.
inline std::string plain_text(const open_store& store, const std::string& key) {
    const int kind = store.parameters.at(static_cast<std::size_t>(store.index_of(key))).kind;
    return kind == zorv::configuration::param_int      ? text(value_of<int>(store, key))
           : kind == zorv::configuration::param_double ? text(value_of<double>(store, key))
           : kind == zorv::configuration::param_bool   ? text(value_of<bool>(store, key))
           : kind == zorv::configuration::param_string ? value_of<std::string>(store, key)
           : value_of<void*>(store, key)               ? "object"
                                                       : "null";
}

/// A table of cases, one a line, each with a store of its own:
///     key=value ; value => object ! sentence ! sentence
/// Left of the arrow stand the lines that the store is given; right of it the object that the last key, or
/// `other_key`, then has, and the warnings.
template <class Object>
void expect_lines(const std::string& table, const std::string& other_key = "") {
    for (const std::string& row : split(table, "\n")) {
        const std::size_t indent = row.find_first_not_of(' ');
        if (indent == std::string::npos) {
            continue;
        }
        const texts sides = split(row.substr(indent), " => ");
        zorv::configuration store;
        texts outcome = warnings(store, split(sides[0], " ; "));
        const std::size_t begin = sides[0].rfind(' ', sides[0].rfind('=')) + 1;
        const std::string last_key = sides[0].substr(begin, sides[0].rfind('=') - begin);
        outcome.insert(outcome.begin(), object_text<Object>(store, other_key.empty() ? last_key : other_key));
        EXPECT_EQ(outcome, split(sides.at(1), " ! ")) << row;
    }
}
