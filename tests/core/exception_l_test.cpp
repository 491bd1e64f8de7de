#include "zorv_tools/core/exception_l.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <type_traits>

#include "tests/support/report.h"

namespace {

using zorv::exception_l;
using action = void (*)();

void inner() {
    ZORV_THROW("value " << 7 << " is bad");
}

void foreign() {
    throw std::runtime_error("foreign text");
}

void negative() {
    throw exception_l("text", -5);
}

void middle(action thrower) {
    try {
        thrower();
    }
    ZORV_ADD_FRAME("in the middle")
}

void outer(action thrower) {
    try {
        middle(thrower);
    }
    ZORV_ADD_FRAME("")
}

exception_l caught(void (*function)(action), action thrower) {
    try {
        function(thrower);
    } catch (const exception_l& e) {
        return e;
    }
    return exception_l();
}

/// Takes the first three lines off `text`. They begin with this many tabs, and are returned without.
std::string take_frame(std::string& text, std::size_t tabs) {
    std::istringstream lines(text);
    std::string frame;
    for (int i = 0; i < 3; ++i) {
        std::string line;
        std::getline(lines, line);
        EXPECT_EQ(line.find_first_not_of('\t'), tabs) << line;
        frame += line.substr(std::min(tabs, line.size())) + "\n";
    }
    text.erase(0, frame.size() + 3 * tabs);
    return frame;
}

}  // namespace

TEST(ExceptionL, HoldsMessageAndDepth) {
    EXPECT_STREQ(exception_l().what(), "No message");
    EXPECT_EQ(exception_l().depth(), 0);
    const exception_l original(std::string("before\0after", 12), 2);
    const exception_l copy(original);
    EXPECT_STREQ(copy.what(), "before");
    EXPECT_NE(copy.what(), original.what());
    EXPECT_EQ(copy.depth(), 2);
    static_assert(!std::is_copy_assignable_v<exception_l>);
}

TEST(ExceptionL, EachFrameIsIndentedOnceMore) {
    const exception_l e = caught(outer, inner);
    EXPECT_EQ(e.depth(), 2);
    std::string text = e.what();
    const std::string file = "exception_l_test";
    EXPECT_TRUE(is_report(take_frame(text, 2), file, "outer(", ""));
    EXPECT_TRUE(is_report(take_frame(text, 1), file, "middle(", "in the middle"));
    EXPECT_TRUE(is_report(take_frame(text, 0), file, "inner()", "value 7 is bad"));
    // One line end for each frame that was added closes the report.
    EXPECT_EQ(text, "\n\n");
}

TEST(ExceptionL, FramesWithoutTabs) {
    const struct {
        action thrower;
        int depth, next_depth;
        std::string rest;
    } cases[] = {{foreign, 0, 1, "foreign text\n"}, {negative, -4, -3, "text\n"}};
    for (const auto& c : cases) {
        const exception_l e = caught(middle, c.thrower);
        EXPECT_EQ(e.depth(), c.depth);
        std::string text = e.what();
        EXPECT_TRUE(is_report(take_frame(text, 0), "exception_l_test", "middle(", "in the middle"));
        EXPECT_EQ(text, c.rest);
        EXPECT_EQ(caught(outer, c.thrower).depth(), c.next_depth);
    }
}
