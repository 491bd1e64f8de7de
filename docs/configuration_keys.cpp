// Prints the table of all configuration keys, as markdown, from the catalogue that the store itself works by.

#include <iostream>
#include <string>

#include "zorv_tools/config/internal/configuration_key.h"

namespace {

using zorv::configuration;
using zorv::internal::key_row;

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

void print_default(const key_row& row) {
    if (row.kind == configuration::param_bool) {
        std::cout << (row.number != 0 ? "true" : "false");
    } else if (row.kind == configuration::param_string) {
        std::cout << row.text;
    } else if (row.kind == configuration::param_special) {
        std::cout << "null";
    } else {
        std::cout << row.number;
    }
}

/// The repetition policy of a special key is its setter's own.
const char* repetition_of(const key_row& row) {
    if (row.chain == zorv::internal::half::none) {
        return "set by another key's line";
    }
    if (row.kind == configuration::param_special) {
        return "see configuration.md";
    }
    switch (row.repeated) {
        case zorv::internal::repetition::keep_first:
            return "the first stays";
        case zorv::internal::repetition::replace:
            return "the last wins, with a warning";
        default:
            return "the last wins";
    }
}

/// A bound and the sentence about it may tell different things, and the bound decides: so numbers are tried out.
void print_accepted(const key_row& row) {
    if (row.kind == configuration::param_bool) {
        std::cout << "0, 1, false, true";
    } else if (row.texts.refusal) {
        std::cout << "not all; warns: `" << row.texts.refusal << "`";
    } else if (row.numbers[0].accepts) {
        std::cout << "of -1, 0, 0.5, 1, 2, 255, 256 takes:";
        for (const double number : {-1.0, 0.0, 0.5, 1.0, 2.0, 255.0, 256.0}) {
            const bool whole = number == static_cast<int>(number);
            bool accepted = whole || row.kind == configuration::param_double;
            for (const auto& check : row.numbers) {
                accepted = accepted && (!check.accepts || check.accepts(number));
            }
            if (accepted) {
                std::cout << " " << number;
            }
        }
    } else {
        std::cout << (row.kind == configuration::param_special ? "see configuration.md" : "any");
    }
}

}  // namespace

int main() {
    std::cout << "# All configuration keys\n\n"
              << "| Key | Kind | Default | Accepted | Repeated |\n|---|---|---|---|---|\n";
    for (const key_row& row : zorv::internal::catalogue) {
        std::cout << "| `" << row.name << "` | " << kind_of(row) << " | ";
        print_default(row);
        std::cout << " | ";
        print_accepted(row);
        std::cout << " | " << repetition_of(row) << " |\n";
    }
    return 0;
}
