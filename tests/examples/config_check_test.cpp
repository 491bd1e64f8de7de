#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/support/program.h"
#include "tests/support/temporary_directory.h"

using std::string;
using testing::HasSubstr;

namespace {

TEST(ConfigCheck, TellsWarningsWithTheirPlacesThenKeysAndCameras) {
    const temporary_directory folder;
    const string rig = folder.write("rig",
                                    "bumblebee_params=0.5|0.5|1.2|1.6|640|480|0.12\n"
                                    "extrinsic_camera_params_q=0|0|0|1|0|0|0\ntrees=1");
    const string top = folder.write(
        "top", "// settings\n\ntrees=20 of them\nimport=" + rig + "\n__site=\x1b[1m\nuniform=maybe\n");
    const string next = folder.write("next", "\ntrees=2\nimport=absent\n");
    const program_run done = run(CONFIG_CHECK, top + " " + next + " none");
    EXPECT_EQ(done.status, 1);
    EXPECT_EQ(done.err, "");
    const string repeated = "WARNING: trees parameter encountered multiple times in config file\n";
    EXPECT_EQ(done.out,
              rig + ":3: " + repeated + top +
                  ":6: WARNING: Uniform parameter not 1,0,true or false: maybe\n" + next + ":2: " + repeated +
                  next +
                  ":3: import of \"absent\": cannot read the file; it is looked for from the folder that the "
                  "program runs in\n"
                  "none: cannot read the file\n"
                  "keys that differ from their defaults:\n"
                  "  trees = 20\n"
                  "  bumblebee_params = 0.5|0.5|1.2|1.6|640|480|0.12\n"
                  "  extrinsic_camera_params_q = 0|0|0|1|0|0|0\n"
                  "  __site = ?[1m\n"
                  "cameras: 1\n  0: pinhole, 640 by 480 pixels, baseline 0.12, placed\n"
                  "refused: 5\n");
}

TEST(ConfigCheck, ShowsValuesAsTheFileGivesThem) {
    const struct {
        string line, shown;
    } rows[] = {
        {"scale=(8,1,1.5)", ""},
        {"scale=(4,2.25,0.1)", ""},
        {"stereo_setting=7|true|5|false|640|480|64|3", ""},
        {"haar_setting=a.xml|1.1|3|20|21|15", ""},
        {"sample=a.avi|-1|1|10|2|11|0.5", "sample = a.avi|-1|1|10|2|11"},
        {"closing_kernel=3|2|2|1|1|4", "closing_kernel = 3|2|2|1|1|0|0|1|1|1|1"},
        {"classifier_detector_roi=1|2|3|4", ""},
        {"pixel_sizes=0.1|0.2", ""},
        {"kernel_vals=0.1|0.70000005", ""},
        {"ip_step=a|b", ""},
        {"ip_step=c", ""},
        {"sequence_lengths=5", ""},
        {"classifier_detector_neighbours=1|2|3", ""},
        {"model_pose_limits=1|2.0000001|1", ""},
        {"ratio=0.123456789012", ""},
        {"interpolate=1", "interpolate = true"},
    };
    string text, shown;
    const temporary_directory folder;
    for (const auto& row : rows) {
        text += row.line + "\n";
    }
    const program_run done = run(CONFIG_CHECK, folder.write("file", text));
    EXPECT_EQ(done.status, 0) << done.out;
    for (const auto& row : rows) {
        const std::size_t equals = row.line.find('=');
        const string same = row.line.substr(0, equals) + " = " + row.line.substr(equals + 1);
        EXPECT_THAT(done.out, HasSubstr("\n  " + (row.shown.empty() ? same : row.shown) + "\n"));
    }
    const string large = folder.write("large", "closing_kernel=8|8|1|1|0|1\n");
    EXPECT_THAT(run(CONFIG_CHECK, large).out, HasSubstr("|1|1|... (64 values)\n"));
}

TEST(ConfigCheck, OnlyWhatIsNotInForceCountsAsRefused) {
    const temporary_directory folder;
    const string sample = "sample=a|0|0|0|0|0|1";
    const string empty = folder.write("empty", "");
    const struct {
        string text;
        int refused;
        string part;
    } rows[] = {
        {"hosf_cell_width=5\nhosf_cell_width=7\n", 0, "hosf_cell_width = 7\n"},
        {"hosf_cell_width=5\nhosf_cell_width=0\n", 1, "hosf_cell_width = 5\n"},
        {"output_parameters=2\noutput_parameters=3\n", 0, ":2: WARNING: "},
        {"ratio=0.12345671\nratio=0.12345672\n", 1, "ratio = 0.12345671\n"},
        {"model_size=1|1|1|1|1|1|1|1\nmodel_size=1|1|1|1|1|1|1|1\n", 0, ":2: WARNING: "},
        {"model_size=1|1|1|1|1|1|1|1\nmodel_size=1|1|1|1|1|1|1|2\n", 1, ":2: WARNING: "},
        {"setup_file_location=a.txt\nsetup_file_location=b\n", 1, "setup_file_location = a.txt\n"},
        {"classifier_file=a.long\n", 0, "classifier_file = a.long\n"},
        {"mahalanobis_covariance=1\nmahalanobis_covariance=2\n", 0, "mahalanobis_covariance = 2\n"},
        {"mahalanobis_covariance=x\n", 1, "defaults:\ncameras: 0\n"},
        {"setup_file_location=b\n", 1, "; a program stops here: \"setup_file_location=b\"\n"},
        {"svm_multi_kernel_lengths=1\nsvm_multi_kernel_lengths=2\n", 0, "svm_multi_kernel_lengths = 2\n"},
        {"classifier_detector_neighbours=1|2\n", 0, ":1: WARNING: "},
        {"classifier_detector_neighbours=1|-2|3\n", 1, "classifier_detector_neighbours = 1|0|3\n"},
        {"classifier_detector_neighbours=1|-2|3\nclassifier_detector_neighbours=1|-2|3\n", 2, ":2: "},
        {"scale=(0,-1,0)\n", 0, "scale = (0,-1,0)\n"},
        {"scale=8,1,1.5\n", 1, "scale = (0,1,1)\n"},
        {"haar_setting=a|1|1|1|1|0\nhaar_setting=a|1|1|1|1|0\n", 0, ":2: WARNING: "},
        {sample + "|2\n", 0, ":1: 2 parameters in sample"},
        {"classes=2\n" + sample + "|2\n", 1, "sample = a|0|0|0|0|0\n"},
        {"trees=0\n", 1, "defaults:\ncameras: 0\n"},
        {"sequence_lengths=0\n", 1, ":1: WARNING: "},
        {"bumblebee_params=2|0.5|1|1|640|480|1\n", 2, "cameras: an entry has fewer values than"},
        {"nobody=1\n//nobody=1\n", 1, "unrecognised parameter"},
        {"trees\nuniform=1\n", 1, "uniform = true\n"},
        {"trees=1=2\n", 1, ":1: more than one equals sign; a program stops here: \"trees=1=2\"\n"},
        {"import=" + folder.path("none") + "\n", 1, ":1: import of \"" + folder.path("none")},
        {"import=" + folder.path() + "\n", 1, ": cannot read the file\n"},
        {"import=" + empty + "\nimport=" + empty + "\n", 0, "cameras: 0"},
        {"\nimport=" + folder.path("file") + "\n", 1, ":2: import of \"" + folder.path("file")},
    };
    for (const auto& row : rows) {
        const program_run done = run(CONFIG_CHECK, folder.write("file", row.text));
        EXPECT_EQ(done.status, row.refused > 0 ? 1 : 0) << row.text;
        EXPECT_THAT(done.out, HasSubstr("\nrefused: " + std::to_string(row.refused) + "\n")) << row.text;
        EXPECT_THAT(done.out, HasSubstr(row.part)) << row.text;
    }
    EXPECT_EQ(run(CONFIG_CHECK, "").err, "config_check: a file is needed (see --help)\n");
    const program_run help = run(CONFIG_CHECK, "--help none");
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("exit status is 1"));
}

}  // namespace
