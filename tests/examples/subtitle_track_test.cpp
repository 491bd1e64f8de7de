#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tests/examples/program_test.h"

namespace {

using SubtitleTrack = program_test;

const std::string contents(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

const std::string track =
    "1\n00:00:01,000 --> 00:00:02,300\n[0.9] one\n"
    "2\n00:00:03,000 --> 00:00:04,000\n[0.2] two\n"
    "3\n00:59:59,500 --> 01:00:00,000\n[0.8] three\n";

TEST_F(SubtitleTrack, ShiftsDropsPrintsAndWrites) {
    folder.write("in", track);
    const std::pair<std::string, std::string> cases[] = {
        {"", track},
        {"--min-confidence 0.9 --shift 0.001", "1\n00:00:01,001 --> 00:00:02,301\n[0.9] one\n"},
        {"--min-confidence 0.5 --shift=-2",
         "1\n00:00:00,000 --> 00:00:00,300\n[0.9] one\n3\n00:59:57,500 --> 00:59:58,000\n[0.8] three\n"},
        {"--shift -4.1", "3\n00:59:55,400 --> 00:59:55,900\n[0.8] three\n"},
    };
    for (const auto& [options, written] : cases) {
        const program_run done = run(SUBTITLE_TRACK, "in --output=again=1 " + options);
        EXPECT_EQ(done.status, 0) << done.err;
        EXPECT_EQ(contents("again=1"), written) << options;
    }
    EXPECT_EQ(run(SUBTITLE_TRACK, "- --rate 25 --min-confidence 0.9 <in").out,
              "    1  frames     25 to     57  00:00:01,000 --> 00:00:02,300  [0.9] one\n");
}

TEST_F(SubtitleTrack, GoodBlocksBeforeABadOneAreKept) {
    const std::pair<std::string, std::string> cases[] = {
        {"4\n00:00:05,000 -> 00:00:06,000\n[0.5] x\n",
         "failed to find arrow (-->)  between timestamps. Instead found \"->\""},
        {"4\n00:00:05,000 --> 100:00:00,000\n[0.5] x\n",
         "the specified timestamp has 100 hours, which is too large."},
    };
    for (const auto& [bad, sentence] : cases) {
        folder.write("in", track + bad + track + "5 and so on");
        const program_run done = run(SUBTITLE_TRACK, "in --output again");
        EXPECT_EQ(done.status, 1);
        EXPECT_NE(done.err.find("Details: "), std::string::npos) << done.err;
        EXPECT_NE(done.err.find(sentence + "\n"), std::string::npos) << done.err;
        EXPECT_NE(done.out.find("three"), std::string::npos) << done.out;
        EXPECT_EQ(contents("again"), track);
    }
}

TEST_F(SubtitleTrack, OneLineForEachMistake) {
    folder.write("in", track);
    const std::string send = "--output again --send ";
    expect_mistakes(SUBTITLE_TRACK, "in ",
                    {{send + "127.0.0.1:65536", "\"65536\" is no port number"},
                     {send + "127.0.0.1:0", "\"0\" is no port number"},
                     {send + "127.0.0.1", "--send needs HOST:PORT"},
                     {send + ":4000", "--send needs HOST:PORT"},
                     {"--send 127.0.0.1:4000", "option --send needs --output"},
                     {"--output none/again", "cannot write"},
                     {"in", "only one track can be read"},
                     {"--rate 25x", "option --rate needs a number, not \"25x\""},
                     {"--rate", "option --rate needs a value"}});
    EXPECT_EQ(run(SUBTITLE_TRACK, "none").err, "subtitle_track: cannot read \"none\"\n");
    // Port 1 is for a service of old that nobody runs. The library tells of it first, and then the program.
    const program_run refused = run(SUBTITLE_TRACK, "in " + send + "127.0.0.1:1");
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("was not sent to its end"), std::string::npos) << refused.err;
}

}  // namespace
