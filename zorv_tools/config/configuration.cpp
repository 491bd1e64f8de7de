#include "zorv_tools/config/configuration.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "zorv_tools/config/internal/configuration_key.h"

namespace zorv {

// The constructors delegate, so that the destructor runs, and releases the cells, when a later step throws.
configuration::configuration(undeclared) {}

configuration::configuration() : configuration(undeclared()) {
    configuration::initialise();
}

configuration::configuration(const configuration&) {}

configuration& configuration::operator=(const configuration&) {
    return *this;
}

configuration::~configuration() {
    for (parameter& record : parameters) {
        clear_param(record);
    }
}

void configuration::initialise() {
    // The catalogue has no duplicates, so on an empty store there is nothing to compare with.
    const bool fresh = parameters.empty();
    if (fresh) {
        parameters.reserve(internal::catalogue_size);
    }
    for (const internal::key_row& row : internal::catalogue) {
        std::string name(row.name);
        if (!fresh && reject_duplicate(name)) {
            continue;
        }
        switch (row.kind) {
            case param_int:
                append(std::move(name), std::make_unique<int>(static_cast<int>(row.number)), row.kind);
                break;
            case param_double:
                append(std::move(name), std::make_unique<double>(row.number), row.kind);
                break;
            case param_bool:
                append(std::move(name), std::make_unique<bool>(row.number != 0), row.kind);
                break;
            case param_string:
                append(std::move(name), std::make_unique<std::string>(row.text), row.kind);
                break;
            case param_special:
                append(std::move(name), std::make_unique<void*>(nullptr), row.kind);
                break;
        }
    }
}

bool configuration::reject_duplicate(const std::string& name) const {
    const bool found = std::any_of(parameters.begin(), parameters.end(),
                                   [&name](const parameter& record) { return record.name == name; });
    if (found) {
        // The letter is meant: no position is printed.
        std::cerr << "Matching parameter named \"" << name << "\" found at position i during add."
                  << std::endl;
    }
    return found;
}

/// Names are looked for up to their first NUL. Returns the record count when there is none of that name.
std::size_t configuration::position_of(const std::string& name) const {
    const std::string_view key(name.c_str());
    const std::size_t declared = internal::catalogue_position(key);
    if (declared < parameters.size() && parameters[declared].name == key) {
        return declared;
    }
    // What is not in the catalogue was declared later, and stands behind it.
    for (std::size_t i = parameters.size(); i-- > 0;) {
        if (parameters[i].name == key) {
            return i;
        }
    }
    return parameters.size();
}

const void* configuration::find_value(const std::string& name) const {
    const std::size_t position = position_of(name);
    if (position == parameters.size()) {
        std::cerr << "Couldn't get parameter " << name << std::endl;
        return nullptr;
    }
    return parameters[position].value;
}

void configuration::clear_param(parameter& record) {
    switch (record.kind) {
        case param_int:
            delete static_cast<int*>(record.value);
            break;
        case param_double:
            delete static_cast<double*>(record.value);
            break;
        case param_bool:
            delete static_cast<bool*>(record.value);
            break;
        case param_string:
            delete static_cast<std::string*>(record.value);
            break;
        case param_special: {
            // The name alone tells the type of the object, and whether there is one to be read: the cell of an
            // unknown key may be gone already.
            const internal::key_row* row = internal::find_key(record.name);
            if (!row || !row->release) {
                std::cerr << "WARNING: Unrecognised special parameter, unsure how to clear: " << record.name
                          << std::endl;
                break;
            }
            void** const cell = static_cast<void**>(record.value);
            if (*cell) {
                row->release(*cell);
            }
            delete cell;
            break;
        }
    }
}

}  // namespace zorv
