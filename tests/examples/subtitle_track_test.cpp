#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"

namespace {

const std::string program = SUBTITLE_TRACK;

const std::string contents(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

const std::string track =
    "1\n00:00:01,000 --> 00:00:02,300\n[0.9] one\n"
    "2\n00:00:03,000 --> 00:00:04,000\n[0.2] two\n"
    "3\n00:59:59,500 --> 01:00:00,000\n[0.8] three\n";

TEST(SubtitleTrack, ShiftsDropsPrintsAndWrites) {
    const temporary_directory folder;
    const std::string input = folder.write("in", track);
    const std::string output = folder.path("again");
    const struct {
        std::string options, written;
    } cases[] = {
        {"", track},
        {"--min-confidence 0.9 --shift 0.001", "1\n00:00:01,001 --> 00:00:02,301\n[0.9] one\n"},
        {"--min-confidence 0.5 --shift=-2",
         "1\n00:00:00,000 --> 00:00:00,300\n[0.9] one\n3\n00:59:57,500 --> 00:59:58,000\n[0.8] three\n"},
        {"--shift -4.1", "3\n00:59:55,400 --> 00:59:55,900\n[0.8] three\n"},
    };
    for (const auto& c : cases) {
        const program_run done = run(program, input + " --output " + output + " " + c.options);
        EXPECT_EQ(done.status, 0) << done.err;
        EXPECT_EQ(contents(output), c.written) << c.options;
    }
    EXPECT_EQ(run(program, input + " --rate 25 --min-confidence 0.9").out,
              "    1  frames     25 to     57  00:00:01,000 --> 00:00:02,300  [0.9] one\n");
}

TEST(SubtitleTrack, GoodBlocksBeforeABadOneAreKept) {
    const struct {
        std::string bad, sentence;
    } cases[] = {
        {"4\n00:00:05,000 -> 00:00:06,000\n[0.5] x\n",
         "failed to find arrow (-->)  between timestamps. Instead found \"->\""},
        {"4\n00:00:05,000 --> 100:00:00,000\n[0.5] x\n",
         "the specified timestamp has 100 hours, which is too large."},
    };
    for (const auto& c : cases) {
        const temporary_directory folder;
        const std::string output = folder.path("again");
        const program_run done =
            run(program, folder.write("in", track + c.bad + "5 and so on") + " --output " + output);
        EXPECT_EQ(done.status, 1);
        EXPECT_NE(done.err.find("Details: "), std::string::npos) << done.err;
        EXPECT_NE(done.err.find(c.sentence + "\n"), std::string::npos) << done.err;
        EXPECT_NE(done.out.find("three"), std::string::npos) << done.out;
        EXPECT_EQ(contents(output), track);
    }
}

TEST(SubtitleTrack, WhatCannotBeSentIsAnError) {
    const temporary_directory folder;
    const std::string arguments =
        folder.write("in", track) + " --output " + folder.path("again") + " --send ";
    // Port 1 is for a service of old that nobody runs.
    EXPECT_EQ(run(program, arguments + "127.0.0.1:1").status, 1);
    EXPECT_NE(run(program, arguments + "127.0.0.1:65536").err.find("no port number"), std::string::npos);
    EXPECT_NE(run(program, arguments + "127.0.0.1").err.find("HOST:PORT"), std::string::npos);
}

}  // namespace
