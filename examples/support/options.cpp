#include "examples/support/options.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace {

/// The innermost sentence of a report, or the first line of any other text.
std::string one_line(const std::string& text) {
    const std::string mark = "Details: ";
    const std::size_t found = text.rfind(mark);
    const std::size_t start = found == std::string::npos ? 0 : found + mark.size();
    return text.substr(start, text.find('\n', start) - start);
}

}  // namespace

options::options(std::string program, std::string summary, std::vector<option> table, std::string operands)
    : program_(std::move(program)),
      summary_(std::move(summary)),
      table_(std::move(table)),
      operand_help_(std::move(operands)) {}

bool options::parse(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--help") {
            print_help();
            return false;
        }
        if (argument.compare(0, 2, "--") != 0) {
            if (operand_help_.empty()) {
                throw usage_error("unexpected argument \"" + argument + "\" (see --help)");
            }
            operands_.push_back(argument);
            continue;
        }
        const std::size_t equals = argument.find('=');
        const bool has_value = equals != std::string::npos;
        const std::string name = argument.substr(2, has_value ? equals - 2 : equals);
        const option& found = find(name);
        if (found.value.empty()) {
            if (has_value) {
                throw usage_error("option --" + name + " takes no value");
            }
            given_[name] = "";
        } else if (has_value) {
            given_[name] = argument.substr(equals + 1);
        } else if (i + 1 < argc) {
            given_[name] = argv[++i];
        } else {
            throw usage_error("option --" + name + " needs a value");
        }
    }
    return true;
}

bool options::given(const std::string& name) const {
    return given_.count(name) != 0;
}

std::string options::text(const std::string& name) const {
    const auto found = given_.find(name);
    return found != given_.end() ? found->second : find(name).default_value;
}

double options::number(const std::string& name) const {
    const std::string value = text(name);
    std::size_t used = 0;
    double result = 0;
    try {
        result = std::stod(value, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != value.size()) {
        throw usage_error("option --" + name + " needs a number, not \"" + value + "\"");
    }
    return result;
}

int options::integer(const std::string& name) const {
    const std::string value = text(name);
    std::size_t used = 0;
    int result = 0;
    try {
        result = std::stoi(value, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != value.size()) {
        throw usage_error("option --" + name + " needs a whole number, not \"" + value + "\"");
    }
    return result;
}

const option& options::find(const std::string& name) const {
    const auto found =
        std::find_if(table_.begin(), table_.end(), [&](const option& o) { return o.name == name; });
    if (found == table_.end()) {
        throw usage_error("unknown option --" + name + " (see --help)");
    }
    return *found;
}

void options::print_help() const {
    std::cout << "Usage: " << program_ << " [options]" << (operand_help_.empty() ? "" : " " + operand_help_)
              << "\n\n"
              << summary_ << "\n\nOptions:\n";
    std::vector<option> rows = table_;
    rows.push_back({"help", "", "print this text"});
    for (const option& o : rows) {
        std::string left = "  --" + o.name + (o.value.empty() ? "" : " " + o.value);
        left.resize(std::max<std::size_t>(left.size() + 2, 30), ' ');
        std::cout << left << o.help;
        if (!o.default_value.empty()) {
            std::cout << " (default: " << o.default_value << ")";
        }
        std::cout << "\n";
    }
}

int run_program(const std::string& program, const std::function<int()>& body) {
    try {
        return body();
    } catch (const std::exception& e) {
        std::cerr << program << ": " << one_line(e.what()) << std::endl;
    } catch (const std::string& e) {
        std::cerr << program << ": " << e << std::endl;
    } catch (const char* e) {
        std::cerr << program << ": " << e << std::endl;
    }
    return 1;
}
