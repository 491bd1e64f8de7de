#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"

/// Runs programs in a folder of its own.
class program_test : public testing::Test {
protected:
    program_test() : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder.path());
    }
    ~program_test() override { std::filesystem::current_path(before_); }

    /// Runs a program with the arguments of each row behind the common ones. Each must end it with status 1 and one
    /// line on the error stream, which begins with the program's name and holds the row's words.
    static void expect_mistakes(const std::string& program, const std::string& common,
                                const std::vector<std::pair<std::string, std::string>>& rows) {
        const std::string name = std::filesystem::path(program).filename().string();
        for (const auto& [arguments, words] : rows) {
            const program_run failed = run(program, common + arguments);
            EXPECT_EQ(failed.status, 1) << arguments;
            EXPECT_EQ(failed.err.rfind(name + ": ", 0), 0u) << failed.err;
            EXPECT_NE(failed.err.find(words), std::string::npos) << words << "\n" << failed.err;
            EXPECT_EQ(std::count(failed.err.begin(), failed.err.end(), '\n'), 1) << failed.err;
        }
        const program_run help = run(program, "--help");
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.out.rfind("Usage: " + name + " [options]", 0), 0u) << help.out;
        EXPECT_NE(help.out.find("\n  --out"), std::string::npos) << help.out;
        EXPECT_NE(help.out.find("\n  --help  "), std::string::npos) << help.out;
    }

    const temporary_directory folder;

private:
    const std::filesystem::path before_;
};
