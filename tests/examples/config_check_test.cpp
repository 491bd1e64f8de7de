#include <gtest/gtest.h>

#include <string>

#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"

namespace {

TEST(ConfigCheck, TellsWarningsWithTheirPlacesThenKeysAndCameras) {
    const temporary_directory folder;
    const std::string rig = folder.write("rig",
                                         "bumblebee_params=0.5|0.5|1.2|1.6|640|480|0.12\n"
                                         "extrinsic_camera_params_q=0|0|0|1|0|0|0\n");
    const std::string top = folder.write(
        "top", "// settings\n\ntrees=20 of them\nimport=" + rig + "\n__site=hall\ntrees=30\nuniform=maybe\n");
    const program_run done = run(CONFIG_CHECK, top);
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.err, "");
    for (const std::string& part :
         {top + ":6: WARNING: trees", top + ":7: WARNING: ", std::string("  trees = 20\n"),
          std::string("  __site = hall\n"),
          std::string("  bumblebee_params = 0.5|0.5|1.2|1.6|640|480|0.12\n"),
          std::string("cameras: 1\n  0: pinhole, 640 by 480 pixels, baseline 0.12, placed\n")}) {
        EXPECT_NE(done.out.find(part), std::string::npos) << part << done.out;
    }
    EXPECT_EQ(done.out.find("uniform ="), std::string::npos);
    EXPECT_EQ(run(CONFIG_CHECK, rig).status, 0);
}

TEST(ConfigCheck, OnlyWhatIsNotInForceCountsAsRefused) {
    const temporary_directory folder;
    const struct {
        std::string text;
        int status;
        std::string part;
    } rows[] = {
        {"hosf_cell_width=5\nhosf_cell_width=7\n", 0, "hosf_cell_width = 7\n"},
        {"hosf_cell_width=5\nhosf_cell_width=5\n", 0, ":2: WARNING: "},
        {"scale=(99,1,1)\n", 0, "scale = 1 entry\n"},
        {"trees=0\n", 1, ":1: WARNING: "},
        {"sequence_lengths=0\n", 1, ":1: WARNING: "},
        {"bumblebee_params=2|0.5|1|1|640|480|1\n", 1, ":1: WARNING: x centre"},
        {"nobody=1\n", 1, "unrecognised parameter"},
        {"trees\nuniform=1\n", 1, "uniform = true\n"},
        {"trees=1=2\n", 1, ":1: more than one equals sign"},
        {"projection_offsets=4\n", 1, "a program stops here"},
        {"import=" + folder.path("none") + "\n", 1, "cannot read the file"},
        {"import=" + folder.path("file") + "\n", 1, "imports itself"},
    };
    for (const auto& row : rows) {
        const program_run done = run(CONFIG_CHECK, folder.write("file", row.text));
        EXPECT_EQ(done.status, row.status) << row.text << done.out;
        EXPECT_NE(done.out.find(row.part), std::string::npos) << row.text << done.out;
    }
    EXPECT_EQ(run(CONFIG_CHECK, "").err, "config_check: a file is needed (see --help)\n");
}

}  // namespace
