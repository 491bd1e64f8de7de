#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/support/temporary_directory.h"

/// What a program left behind.
struct program_run {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs a program to its end. `arguments` is what a shell would be given.
inline program_run run(const std::string& program, const std::string& arguments) {
    const temporary_directory folder;
    const std::string command = "\"" + program + "\" " + arguments + " >\"" + folder.path("out") + "\" 2>\"" +
                                folder.path("err") + "\"";
    program_run result;
    result.status = std::system(command.c_str());
#ifndef _WIN32
    result.status = WIFEXITED(result.status) ? WEXITSTATUS(result.status) : -1;
#endif
    const auto text = [&](const char* name) {
        std::ifstream in(folder.path(name));
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    };
    result.out = text("out");
    result.err = text("err");
    return result;
}
