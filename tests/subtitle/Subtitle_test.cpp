#include "zorv_tools/subtitle/Subtitle.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/report.h"
#include "zorv_tools/core/exception_l.h"

namespace {

const std::string times = "00:00:01,000 --> 00:00:02,500 ";

const std::string text_of(const zorv::Subtitle& subtitle) {
    std::ostringstream out;
    out << subtitle;
    return out.str();
}

const zorv::Subtitle read(const std::string& text) {
    std::istringstream in(text);
    zorv::Subtitle subtitle;
    in >> subtitle;
    return subtitle;
}

/// Counts the flushes of a stream.
struct flush_count : std::stringbuf {
    int sync() override { return ++flushes, 0; }
    int flushes = 0;
};

TEST(Subtitle, BlockIsThreeFlushedLinesAndGrowsABlankEachCycle) {
    zorv::Subtitle subtitle(25);
    subtitle.number = 12;
    subtitle.start.input_seconds(62.5);
    subtitle.end.input_seconds(64);
    subtitle.confidence = 0.87F;
    subtitle.text = "hello, world";
    flush_count buffer;
    std::ostream out(&buffer);
    out << subtitle;
    EXPECT_EQ(buffer.str(), "12\n00:01:02,500 --> 00:01:04,000\n[0.9] hello, world\n");
    EXPECT_EQ(buffer.flushes, 3);

    const zorv::Subtitle back = read(buffer.str());
    EXPECT_EQ(back.number, 12);
    EXPECT_EQ(back.confidence, 0.9F);
    EXPECT_EQ(back.text, " hello, world");
    EXPECT_EQ(back.frame_rate, 23.976);
    EXPECT_EQ(text_of(back), "12\n00:01:02,500 --> 00:01:04,000\n[0.9]  hello, world\n");
}

TEST(Subtitle, WriterLeavesFixedNotationWithOneDecimalOnTheStream) {
    std::ostringstream out;
    out << std::scientific;
    zorv::Subtitle subtitle;
    subtitle.confidence = -2;
    out << subtitle << 2.25;
    EXPECT_EQ(out.str(), "0\n00:00:00,000 --> 00:00:00,000\n[-2.0] \n2.2");
}

TEST(Subtitle, FramesAreTruncatedAtTheRateOfTheVideo) {
    zorv::Subtitle subtitle;
    subtitle.start.seconds = 10;
    subtitle.end.seconds = -1;
    EXPECT_EQ(subtitle.start_frame(), 239);
    EXPECT_EQ(subtitle.end_frame(), -23);
}

TEST(Subtitle, ReaderTakesAnyWhiteSpaceAndKeepsTheRestOfTheLine) {
    const struct {
        std::string block, text;
        float confidence;
    } cases[] = {
        {"\n\n7\n\n00:00:01,000\n-->\t00:00:02,500\n\n[0.25]\n", "", 0.25F},
        {"7 " + times + "[1.5] two words \r\nrest", " two words \r", 1.5F},
        {"7x " + times + "[0.9x]\ttab\n", "\ttab", 0.9F},
        {"7 " + times + "[-2]  [x]", "  [x]", -2},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.block);
        in >> std::noskipws;
        zorv::Subtitle subtitle;
        in >> subtitle;
        EXPECT_EQ(subtitle.number, 7);
        EXPECT_EQ(subtitle.start.seconds, 1);
        EXPECT_EQ(subtitle.end.milliseconds, 500);
        EXPECT_EQ(subtitle.confidence, c.confidence) << c.block;
        EXPECT_EQ(subtitle.text, c.text);
        EXPECT_FALSE(in.fail());
    }
}

TEST(Subtitle, BlocksFollowEachOtherToTheEndOfTheStream) {
    std::istringstream in("1 " + times + "[0.1] a\n\n2 " + times + "[0.2] b\n3 " + times + "[0.3]");
    zorv::Subtitle subtitle;
    in >> subtitle >> subtitle;
    EXPECT_EQ(subtitle.text, " b");
    EXPECT_TRUE(in.good());
    // With nothing behind the confidence there is no line to take: the old text stays.
    in >> subtitle;
    EXPECT_EQ(subtitle.number, 3);
    EXPECT_EQ(subtitle.confidence, 0.3F);
    EXPECT_EQ(subtitle.text, " b");
    EXPECT_TRUE(in.fail());
    EXPECT_REPORT(in >> subtitle, "IO_helpers", "i_helper",
                  "i_helper(stream) : reading in failed, when reading value of \"\"");
}

TEST(Subtitle, ReaderReportsWhatStandsInTheWrongPlace) {
    const std::string opening = "Subtitle >> operator : expected \"[\" before confidence. instead found \"";
    const std::string closing = "Subtitle >> operator : expected \"]\" after confidence. instead found \"";
    const std::string arrow =
        "Subtitle >> operator : failed to find arrow (-->)  between timestamps. Instead found \"";
    const std::string value = "Subtitle >> operator : confidence value read was \"";
    const struct {
        std::string block, sentence;
    } cases[] = {
        {"1 00:00:01,000-->00:00:02,000 [0.5] x", arrow + "[0.5]\""},
        {"1 00:00:01,000 ", arrow + "\""},
        {"1 00:00:01,000 -> 00:00:02,000", arrow + "->\""},
        {"1 " + times + "\nhello", opening + "104\""},
        {"1 " + times, opening + "-1\""},
        {"1 " + times + "\xff", opening + "255\""},
        {"1 " + times + "[0.9]word x", closing + "r\""},
        {"1 " + times + "[ 0.9 ]", closing + "\""},
        {"1 " + times + "[]", value + "\" which is not a float"},
        {"1 " + times + "[x1] y", value + "x1\" which is not a float"},
    };
    for (const auto& c : cases) {
        EXPECT_REPORT(read(c.block), "Subtitle", "operator>>", c.sentence) << c.block;
    }
    EXPECT_REPORT(read("x1 " + times), "IO_helpers", "i_helper",
                  "i_helper(stream) : reading in failed, when reading value of \"x1\"");
    EXPECT_REPORT(read("1 \n"), "Timestamp", "operator>>",
                  "Timestamp >> operator : passed stream was not good");
    EXPECT_REPORT(read("1 12"), "Timestamp", "operator>>",
                  "Timestamp >> operator : first_colon not found in text block \"12\"");
}

TEST(Subtitle, FailedReadKeepsTheFieldsBeforeIt) {
    std::istringstream in("5 " + times + "[x] new text");
    zorv::Subtitle subtitle;
    subtitle.text = "old";
    subtitle.confidence = 1;
    EXPECT_THROW(in >> subtitle, zorv::exception_l);
    EXPECT_EQ(subtitle.number, 5);
    EXPECT_EQ(subtitle.end.seconds, 2);
    EXPECT_EQ(subtitle.confidence, 0);
    EXPECT_EQ(subtitle.text, "old");
    EXPECT_EQ(in.peek(), ' ');
}

TEST(Subtitle, WriterLeavesAPartialBlockWhereATimeCannotBeWritten) {
    zorv::Subtitle subtitle;
    subtitle.end.hours = 100;
    std::ostringstream out;
    EXPECT_REPORT(
        out << subtitle, "Timestamp", "operator<<",
        "Timestamp::operator<< : hours must be 2 digits long, the specified timestamp has 100 hours, which is too large.");
    EXPECT_EQ(out.str(), "0\n00:00:00,000 --> ");
    out.setstate(std::ios::failbit);
    EXPECT_REPORT(out << subtitle, "Subtitle", "operator<<",
                  "Subtitle << operator : stream passed was not good");
}

}  // namespace
