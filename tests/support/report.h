#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

/// Whether `action` throws a fresh `exception_l` (depth 0, three lines) whose file is named `file_stem` or
/// begins with it, whose signature holds `function`, and whose sentence is the one given.
testing::AssertionResult throws_report(const std::function<void()>& action, const std::string& file_stem,
                                       const std::string& function, const std::string& sentence);

/// Whether `text` is a fresh report of three lines, as above. For what stands at the end of a deeper report.
testing::AssertionResult is_report(const std::string& text, const std::string& file_stem,
                                   const std::string& function, const std::string& sentence);

#define EXPECT_REPORT(statement, file_stem, function, sentence) \
    EXPECT_TRUE(throws_report([&] { statement; }, file_stem, function, sentence))
