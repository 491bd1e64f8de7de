#include "zorv_tools/core/text.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using words = std::vector<std::string>;

TEST(FindAndReplace, OnceFromAStart) {
    const struct {
        bool backward;
        std::string text, find, replacement;
        int start, position;
        std::string result;
    } cases[] = {
        {false, "abcabc", "b", "x", 2, 4, "abcaxc"}, {false, "abcabc", "bc", "", 1, 1, "aabc"},
        {false, "abc", "d", "x", 0, -1, "abc"},      {false, "abc", "a", "x", 4, -1, "abc"},
        {false, "abc", "a", "x", -1, -1, "abc"},     {false, "abc", "", "x", 3, 3, "abcx"},
        {false, "abc", "", "x", 4, -1, "abc"},       {true, "abcabc", "b", "x", -1, 4, "abcaxc"},
        {true, "abcabc", "b", "x", 3, 1, "axcabc"},  {true, "abcabc", "bc", "long", 4, 4, "abcalong"},
        {true, "abc", "c", "x", 1, -1, "abc"},       {true, "abc", "", "x", 2, 2, "abxc"},
        {true, "abc", "", "x", 9, 3, "abcx"},
    };
    for (const auto& c : cases) {
        std::string text = c.text;
        const auto replace = c.backward ? zorv::rfind_and_replace : zorv::find_and_replace;
        EXPECT_EQ(replace(text, c.find, c.replacement, c.start), c.position) << c.result << c.start;
        EXPECT_EQ(text, c.result);
    }
}

TEST(FindAndReplaceAll, DoesNotSearchWhatItPutIn) {
    const struct {
        std::string text, find, replacement, result;
        int count;
    } cases[] = {
        {"aaa", "a", "aa", "aaaaaa", 3},
        {"aaaaa", "aa", "", "a", 2},
        {"abab", "ba", "b", "abb", 1},
        {"", "a", "b", "", 0},
    };
    for (const auto& c : cases) {
        std::string text = c.text;
        EXPECT_EQ(zorv::find_and_replace_all(text, c.find, c.replacement), c.count);
        EXPECT_EQ(text, c.result);
    }
}

TEST(Text, PathsLineEndsAndCase) {
    std::string path = "/a/b\\c/";
    zorv::correct_path(path);
    EXPECT_EQ(path, "\\a\\b\\c\\");
    std::string text = "\ra\r\nb\n\nc\r";
    zorv::strip_nl(text);
    EXPECT_EQ(text, "abc");
    EXPECT_EQ(zorv::to_lower("ABC-xYz\xC4\0Q"s), "abc-xyz\xC4\0q"s);
}

TEST(Tokenise, WordsBetweenWhiteSpace) {
    EXPECT_EQ(zorv::tokenise("  one two\tthree\r\n\v\f"), (words{"one", "two", "three"}));
    EXPECT_EQ(zorv::tokenise("one\0 two"s), (words{"one\0"s, "two"}));
    EXPECT_EQ(zorv::tokenise(""), words{""});
    EXPECT_EQ(zorv::tokenise(" \n"), words{""});
}

TEST(RowStream, LoadsOneLineAndLeavesTheFlags) {
    for (const auto get : {zorv::get_row_stream, zorv::get_line_stream}) {
        std::istringstream in("1 2\n\n3");
        std::stringstream row("old contents, longer than any line",
                              std::ios::in | std::ios::out | std::ios::ate);
        std::string first;
        std::string second;
        row >> first;
        get(in, row);
        row >> first >> second;
        EXPECT_EQ(first + second, "12");
        get(in, row);
        EXPECT_TRUE(row.eof());
        EXPECT_EQ(row.str(), "");
        get(in, row);
        row.clear();
        row << 4;
        EXPECT_EQ(row.str(), "4");
        get(in, row);
        EXPECT_TRUE(in.fail());
        EXPECT_EQ(row.str(), "");
    }
}

TEST(DumpNulls, SkipsNulsAndTheWhiteSpaceBehindThem) {
    const std::pair<std::string, std::string> cases[] = {
        {"\0\0abc"s, "abc"}, {"\0 \n\0 abc\0"s, "abc\0"s}, {" \0abc"s, " \0abc"s}, {"\0 "s, ""}, {"", ""}};
    for (const auto& [text, rest] : cases) {
        std::istringstream in(text);
        zorv::dump_nulls(in);
        EXPECT_EQ(in.eof(), rest.empty());
        in.clear();
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), rest);
    }
}

}  // namespace
