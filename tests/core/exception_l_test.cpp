#include "zorv_tools/core/exception_l.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

#include "tests/support/report.h"

namespace {

using zorv::exception_l;

void inner(bool foreign) {
    if (foreign) {
        throw std::runtime_error("foreign text");
    }
    ZORV_THROW("value " << 7 << " is bad");
}

void middle(bool foreign) {
    try {
        inner(foreign);
    }
    ZORV_ADD_FRAME("in the middle")
}

void outer(bool foreign) {
    try {
        middle(foreign);
    }
    ZORV_ADD_FRAME("")
}

/// The first `count` lines of `text`, which loses them.
std::string cut_lines(std::string& text, int count) {
    std::size_t end = 0;
    for (int i = 0; i < count; ++i) {
        end = text.find('\n', end) + 1;
    }
    const std::string head = text.substr(0, end);
    text.erase(0, end);
    return head;
}

std::string without_tabs(const std::string& text, int tabs) {
    std::string result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.find_first_not_of('\t'), static_cast<std::size_t>(tabs)) << line;
        result += line.substr(static_cast<std::size_t>(tabs)) + "\n";
    }
    return result;
}

exception_l caught(void (*action)(bool), bool foreign) {
    try {
        action(foreign);
    } catch (const exception_l& e) {
        return e;
    }
    return exception_l();
}

}  // namespace

TEST(ExceptionL, HoldsMessageAndDepth) {
    EXPECT_STREQ(exception_l().what(), "No message");
    EXPECT_EQ(exception_l().depth(), 0);
    EXPECT_EQ(exception_l("text", 3).depth(), 3);

    const exception_l original(std::string("before\0after", 12), 2);
    const exception_l copy(original);
    EXPECT_STREQ(copy.what(), "before");
    EXPECT_NE(copy.what(), original.what());
    EXPECT_EQ(copy.depth(), 2);
    static_assert(!std::is_copy_assignable_v<exception_l>);
}

TEST(ExceptionL, FreshReportHasThreeLines) {
    EXPECT_REPORT(inner(false), "exception_l_test", "inner(bool)", "value 7 is bad");
}

TEST(ExceptionL, EachFrameIsIndentedOnceMore) {
    const exception_l e = caught(outer, false);
    EXPECT_EQ(e.depth(), 2);
    std::string text = e.what();
    EXPECT_TRUE(is_report(without_tabs(cut_lines(text, 3), 2), "exception_l_test", "outer(bool)", ""));
    EXPECT_TRUE(
        is_report(without_tabs(cut_lines(text, 3), 1), "exception_l_test", "middle(bool)", "in the middle"));
    EXPECT_TRUE(
        is_report(without_tabs(cut_lines(text, 3), 0), "exception_l_test", "inner(bool)", "value 7 is bad"));
    // One line end for each frame that was added closes the report.
    EXPECT_EQ(text, "\n\n");
}

TEST(ExceptionL, ForeignExceptionStartsAtDepthZero) {
    exception_l e = caught(middle, true);
    EXPECT_EQ(e.depth(), 0);
    std::string text = e.what();
    EXPECT_TRUE(is_report(cut_lines(text, 3), "exception_l_test", "middle(bool)", "in the middle"));
    EXPECT_EQ(text, "foreign text\n");
    EXPECT_EQ(caught(outer, true).depth(), 1);
}

TEST(ExceptionL, NegativeDepthHasNoTabs) {
    try {
        try {
            throw exception_l("text", -5);
        }
        ZORV_ADD_FRAME("frame")
    } catch (const exception_l& e) {
        EXPECT_EQ(e.depth(), -4);
        std::string text = e.what();
        EXPECT_TRUE(is_report(cut_lines(text, 3), "exception_l_test", "TestBody", "frame"));
        EXPECT_EQ(text, "text\n");
    }
}
