#pragma once

/// @file
/// The command line of the example programs: a table of options, `--name value` or `--name=value`, and
/// `--help`.

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

struct option {
    std::string name;
    /// What the value stands for in the help, such as FILE; empty for an option that takes no value.
    std::string value;
    std::string help;
    std::string default_value = "";
};

/// A command line that does not fit the table.
struct usage_error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class options {
public:
    /// `operands` names, for the help, the arguments that are not options; where it is empty there may be none.
    options(std::string program, std::string summary, std::vector<option> table, std::string operands = "");

    /// False where `--help` was asked for and has been printed to the standard output. Throws `usage_error`.
    bool parse(int argc, char** argv);

    /// Whether the option stood on the command line.
    bool given(const std::string& name) const;
    /// The option's text, or its default.
    std::string text(const std::string& name) const;
    /// The same as a number; throws `usage_error` where it is none.
    double number(const std::string& name) const;
    int integer(const std::string& name) const;
    const std::vector<std::string>& operands() const { return operands_; }

private:
    const option& find(const std::string& name) const;
    void print_help() const;

    std::string program_;
    std::string summary_;
    std::vector<option> table_;
    std::string operand_help_;
    std::map<std::string, std::string> given_;
    std::vector<std::string> operands_;
};

/// Runs `body` and returns its exit status. An exception becomes one line on the standard error stream (of a
/// report of the library, its innermost sentence) and the status 1.
int run_program(const std::string& program, const std::function<int()>& body);
