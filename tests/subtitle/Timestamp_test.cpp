#include "zorv_tools/subtitle/Timestamp.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>

#include "tests/support/report.h"
#include "zorv_tools/core/exception_l.h"

namespace {

using fields = std::array<int, 4>;
constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();

const fields fields_of(const zorv::Timestamp& time) {
    return {time.hours, time.minutes, time.seconds, time.milliseconds};
}

const zorv::Timestamp time_of(const fields& f) {
    zorv::Timestamp time;
    time.hours = f[0];
    time.minutes = f[1];
    time.seconds = f[2];
    time.milliseconds = f[3];
    return time;
}

TEST(Timestamp, LooseFormsAreReadAndWrittenStrictly) {
    const std::tuple<std::string, fields, std::string> cases[] = {
        {"1:2:3,0004", {1, 2, 3, 4}, "01:02:03,004"},
        {"99:99:99,999", {99, 99, 99, 999}, "99:99:99,999"},
        {"12x:30y:+4,5.9", {12, 30, 4, 5}, "12:30:04,005"},
        {"-1:-2:3,-4", {-1, -2, 3, -4}, "0-1:0-2:03,00-4"},
        {"0000000001:000000000059:1,1:2,3", {1, 59, 1, 1}, "01:59:01,001"},
    };
    for (const auto& [text, expected, written] : cases) {
        std::istringstream in(" \n\t" + text + " \n next");
        in >> std::noskipws;
        zorv::Timestamp time;
        in >> time;
        EXPECT_EQ(fields_of(time), expected) << text;
        EXPECT_EQ(in.peek(), 'n') << text;
        std::ostringstream out;
        out << time;
        EXPECT_EQ(out.str(), written);
    }
}

TEST(Timestamp, ReaderNamesTheFirstMissingPart) {
    const std::string start = "Timestamp >> operator : ";
    const std::pair<std::string, std::string> cases[] = {
        {"1,2 ", "first_colon not found in text block \"1,2\""},
        {" ", "first_colon not found in text block \"\""},
        {"1:2,3", "second_colon not found in text block \"1:2,3\""},
        {"1,0:2,0:3.5", "comma not found in text block \"1,0:2,0:3.5\""},
        // Read once, the last word leaves the stream at its end but not failed.
        {"1:2:3,4", "passed stream was not good"},
    };
    for (const auto& [text, sentence] : cases) {
        std::istringstream in(text);
        zorv::Timestamp time;
        EXPECT_REPORT(in >> time >> time, "Timestamp", "operator>>", start + sentence);
        EXPECT_EQ(in.fail(), text == " ") << sentence;
    }
}

TEST(Timestamp, BadPieceIsQuotedInAFreshReportAndKeepsEarlierFields) {
    const std::tuple<std::string, std::string, fields> cases[] = {
        {"a:2:3,4", "a", {0, 7, 7, 7}},
        {"1::3,4", "", {1, 7, 7, 7}},
        {"1:2:3,", "", {1, 2, 3, 7}},
        {"1:2:9999999999,4", "9999999999", {1, 2, largest, 7}},
    };
    const std::string mark =
        "Details: Timestamp::operator>> : an error occured reading substrings. Error message=";
    for (const auto& [text, piece, left] : cases) {
        zorv::Timestamp time = time_of({7, 7, 7, 7});
        std::istringstream in(text);
        try {
            in >> time;
            ADD_FAILURE() << text;
        } catch (const zorv::exception_l& e) {
            EXPECT_EQ(e.depth(), 0);
            const std::string report = e.what();
            const std::size_t quoted = report.find(mark) + mark.size();
            EXPECT_TRUE(
                is_report(report.substr(quoted, report.size() - quoted - 1), "IO_helpers", "i_helper",
                          "i_helper(string) : reading in failed, when reading value of \"" + piece + "\""));
        }
        EXPECT_EQ(fields_of(time), left) << text;
    }
}

TEST(Timestamp, WriterRefusesWhatDoesNotFitAndWritesNothing) {
    const std::string hours =
        "Timestamp::operator<< : hours must be 2 digits long, the specified timestamp has ";
    const std::string number = "zorv_utils::int_to_str() : input number ";
    const std::string digits = " is too large to be represented by ";
    const struct {
        fields time;
        std::string file, function, sentence;
    } cases[] = {
        {{100, 100, 100, 1000}, "Timestamp", "operator<<", hours + "100 hours, which is too large."},
        {{99, 101, 102, 1000}, "IO_helpers", "int_to_str", number + "1000" + digits + "3 as requested."},
        {{99, 101, 102, 999}, "IO_helpers", "int_to_str", number + "102" + digits + "2 as requested."},
        {{99, 101, 99, 999}, "IO_helpers", "int_to_str", number + "101" + digits + "2 as requested."},
    };
    std::ostringstream out;
    for (const auto& c : cases) {
        EXPECT_REPORT(out << time_of(c.time), c.file, c.function, c.sentence);
    }
    EXPECT_EQ(out.str(), "");
    out.setstate(std::ios::eofbit);
    EXPECT_REPORT(out << zorv::Timestamp(), "Timestamp", "operator<<",
                  "Timestamp << operator : passed stream was not good");
}

TEST(Timestamp, SecondsAreTruncatedToMilliseconds) {
    const std::pair<double, fields> cases[] = {
        {3723.5, {1, 2, 3, 500}},
        {1.001, {0, 0, 1, 0}},
        {2.3, {0, 0, 2, 299}},
        {-1.5, {-1, 59, 58, 500}},
        {std::numeric_limits<double>::quiet_NaN(), {smallest, smallest, smallest, smallest}},
        // 600000 hours, whose product with 3600 wraps around at 32 bits.
        {2160000000.0, {600000, 71582788, smallest, smallest}},
    };
    for (const auto& [total, expected] : cases) {
        zorv::Timestamp time;
        time.input_seconds(total);
        EXPECT_EQ(fields_of(time), expected) << total;
    }
}

TEST(Timestamp, ConvertsToSecondsAndFramesAndCompares) {
    EXPECT_DOUBLE_EQ(time_of({1, 2, 3, 45}).total_seconds(), 3723.045);
    const zorv::Timestamp minute = time_of({0, 1, 0, 0});
    const zorv::Timestamp sixty = time_of({0, 0, 60, 0});
    EXPECT_FALSE(minute < sixty || sixty < minute);
    EXPECT_TRUE(time_of({0, 2, 0, -1}) < time_of({0, 0, 120, 0}));
    EXPECT_TRUE(minute < time_of({largest, 0, 0, 0}));
}

}  // namespace
