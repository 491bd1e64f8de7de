#include "zorv_tools/subtitle/Subtitle.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>

#include "tests/support/report.h"
#include "zorv_tools/core/exception_l.h"

namespace {

const std::string times = "00:00:01,000 --> 00:00:02,500 ";

/// Counts the flushes of a stream.
struct flush_count : std::stringbuf {
    int sync() override { return ++flushes, 0; }
    int flushes = 0;
};

TEST(Subtitle, BlockIsThreeFlushedLinesAndGrowsABlankEachCycle) {
    zorv::Subtitle subtitle(25);
    std::istringstream in("12 00:01:02,500 --> 00:01:04,000 [0.87] hello");
    for (const std::string blanks : {"  ", "   "}) {
        in >> subtitle;
        flush_count buffer;
        std::ostream out(&buffer);
        // Notation and precision stay as the block needed them.
        out << std::scientific << subtitle << 2.25;
        EXPECT_EQ(buffer.str(), "12\n00:01:02,500 --> 00:01:04,000\n[0.9]" + blanks + "hello\n2.2");
        EXPECT_EQ(buffer.flushes, 3);
        in.clear();
        in.str(buffer.str());
    }
    EXPECT_EQ(subtitle.frame_rate, 25);
}

TEST(Subtitle, FramesAreTruncatedAtTheRateOfTheVideo) {
    zorv::Subtitle subtitle;
    subtitle.start.seconds = 10;
    subtitle.end.seconds = -1;
    EXPECT_EQ(subtitle.start_frame(), 239);
    EXPECT_EQ(subtitle.end_frame(), -23);
}

TEST(Subtitle, ReaderTakesAnyWhiteSpaceAndKeepsTheRestOfTheLine) {
    const std::tuple<std::string, std::string, float> cases[] = {
        {"\n\n7\n\n00:00:01,000\n-->\t00:00:02,500\n\n[0.25]\n", "", 0.25F},
        {"7 " + times + "[1.5] two words \r\nrest", " two words \r", 1.5F},
        {"7x " + times + "[0.9x]\ttab\n", "\ttab", 0.9F},
        {"7 " + times + "[-2]  [x]", "  [x]", -2},
    };
    for (const auto& [block, text, confidence] : cases) {
        std::istringstream in(block);
        in >> std::noskipws;
        zorv::Subtitle subtitle;
        in >> subtitle;
        EXPECT_EQ(subtitle.number, 7);
        EXPECT_EQ(subtitle.start.seconds, 1);
        EXPECT_EQ(subtitle.end.milliseconds, 500);
        EXPECT_EQ(subtitle.confidence, confidence) << block;
        EXPECT_EQ(subtitle.text, text);
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
    EXPECT_EQ(subtitle.confidence, 0.3F);
    EXPECT_EQ(subtitle.text, " b");
    EXPECT_TRUE(in.fail());
    EXPECT_REPORT(in >> subtitle, "IO_helpers", "i_helper",
                  "i_helper(stream) : reading in failed, when reading value of \"\"");
}

TEST(Subtitle, ReaderReportsWhatStandsInTheWrongPlace) {
    const std::string start = "Subtitle >> operator : ";
    const std::string arrow = start + "failed to find arrow (-->)  between timestamps. Instead found \"";
    const std::string opening = start + "expected \"[\" before confidence. instead found \"";
    const std::string closing = start + "expected \"]\" after confidence. instead found \"";
    const std::string value = start + "confidence value read was \"";
    const std::string number = "i_helper(stream) : reading in failed, when reading value of \"";
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"IO_helpers", "x1 " + times, number + "x1\""},
        {"Timestamp", "1 \n", "Timestamp >> operator : passed stream was not good"},
        {"Timestamp", "1 00:00:01,000 --> ", "Timestamp >> operator : passed stream was not good"},
        {"Subtitle", "1 00:00:01,000-->00:00:02,000 [0.5] x", arrow + "[0.5]\""},
        {"Subtitle", "1 00:00:01,000 ", arrow + "\""},
        {"Subtitle", "1 00:00:01,000 -->> 00:00:02,000", arrow + "-->>\""},
        {"Subtitle", "1 " + times + "\nhello", opening + "104\""},
        {"Subtitle", "1 " + times, opening + "-1\""},
        {"Subtitle", "1 " + times + "\xff", opening + "255\""},
        {"Subtitle", "1 " + times + "[0.9]word x", closing + "r\""},
        {"Subtitle", "1 " + times + "[9 ]", closing + "[\""},
        {"Subtitle", "1 " + times + "[ 0.9 ]", closing + "\""},
        {"Subtitle", "1 " + times + "[]", value + "\" which is not a float"},
        {"Subtitle", "1 " + times + "[x1] y", value + "x1\" which is not a float"},
    };
    zorv::Subtitle subtitle;
    subtitle.text = "old";
    for (const auto& [file, block, sentence] : cases) {
        subtitle.confidence = 1;
        std::istringstream in(block);
        EXPECT_REPORT(in >> subtitle, file, file[0] == 'I' ? "i_helper" : "operator>>", sentence) << block;
    }
    // What stands before the bad place has been set.
    EXPECT_EQ(subtitle.number, 1);
    EXPECT_EQ(subtitle.end.milliseconds, 500);
    EXPECT_EQ(subtitle.confidence, 0);
    EXPECT_EQ(subtitle.text, "old");
}

TEST(Subtitle, WriterLeavesAPartialBlockWhereATimeCannotBeWritten) {
    zorv::Subtitle subtitle;
    subtitle.end.hours = 100;
    std::ostringstream out;
    EXPECT_THROW(out << subtitle, zorv::exception_l);
    EXPECT_EQ(out.str(), "0\n00:00:00,000 --> ");
    out.setstate(std::ios::eofbit);
    EXPECT_REPORT(out << subtitle, "Subtitle", "operator<<",
                  "Subtitle << operator : stream passed was not good");
}

}  // namespace
