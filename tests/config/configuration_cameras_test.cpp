#include <gtest/gtest.h>

#include "tests/config/store_access.h"
#include "tests/support/report.h"

using std::string;
using zorv::configuration;

namespace {

using entries = std::vector<std::vector<double>>;

entries cameras(const configuration& store, const string& key) {
    entries result;
    for (const std::vector<double>* entry : *list_of<std::vector<double>*>(store, key)) {
        result.push_back(*entry);
    }
    return result;
}

const string format = "WARNING: Format incorrect, ";

}  // namespace

TEST(CameraKeys, LinesBecomeEntriesInOrder) {
    const struct {
        string key;
        std::vector<string> values;
        string warning;
        entries expected;
    } cases[] = {
        {"bumblebee_params",
         {"0|1|1.5|2.5|640.9|480.9|0.12x", "0.5|0.5|1|1|1|1|0.25|9"},
         "",
         {{0, 1, 1.5, 2.5, 640, 480, 0.12}, {0.5, 0.5, 1, 1, 1, 1, 0.25}}},
        {"bumblebee_params",
         {"-0.1|0|1|1|1|1|1", "nan|0|1|1|1|1|1", "1|1.01|1|1|1|1|1"},
         "WARNING: x centre not between 0 and 1 : -0.1\nWARNING: x centre not between 0 and 1 : nan\n"
         "WARNING: y centre not between 0 and 1 : 1.01\n",
         {{-0.1}, {0}, {1, 1.01}}},
        {"bumblebee_params",
         {"1|2|3|4|5|6"},
         format + "samples should be entered as \"x_centre|y_centre|x_focal_length_in_pixels|"
                  "y_focal_length_in_pixels|image_width|image_height|baseline\", entered value was: "
                  "\"1|2|3|4|5|6\"\n",
         {{}}},
        {"extrinsic_camera_params",
         {"1|2|3|4|5", "1|2|3|4|5|6|7", "|||||"},
         format +
             "extrinsice camera parameters should be entered as \"euler_z(roll)|euler_x(pitch)|"
             "euler_y(yaw)|x_offset|y_offset|z_offset\" (where clockwise camera rotations are positive), "
             "entered value was: \"1|2|3|4|5\"\n",
         {{}, {1, 2, 3, 4, 5, 6}, {0, 0, 0, 0, 0, 0}}},
        {"extrinsic_camera_params_q",
         {"1|2|3|4|5|6", "1|2|3|4|5|6|7"},
         format + "extrinsice camera parameters (quaternion) should be entered as \"quat_x|quat_y|quat_z|"
                  "quat_w|x_offset|y_offset|z_offset\" (where clockwise camera rotations are positive), "
                  "entered value was: \"1|2|3|4|5|6\"\n",
         {{}, {1, 2, 3, 4, 5, 6, 7}}},
        {"projection_offsets", {"2.5|-1", "|3|4"}, "", {{2.5, -1}, {0, 3}}},
        {"camera_proj_mats",
         {"1|2|3|4|5|6|7|8|9|10|11", "1|2|3|4|5|6|7|8|9|10|11|12", ""},
         "WARNING: When reading camera_proj_mats, should be 12 values, entry was: 1|2|3|4|5|6|7|8|9|10|11\n"
         "WARNING: When reading camera_proj_mats, should be 12 values, entry was: \n",
         {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}}},
        {"camera_space_transform",
         {"1|2|3"},
         "WARNING: When reading camera_space_transform, should be 16 values, entry was: 1|2|3\n",
         {}},
        {"camera_space_transform",
         {"1|0|0|0|0|1|0|0|0|0|1|0|0|0|0|1"},
         "",
         {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}},
    };
    for (const auto& c : cases) {
        configuration store;
        string written;
        for (const string& value : c.values) {
            written += warnings(store, {c.key + "=" + value});
        }
        EXPECT_EQ(written, c.warning);
        entries found = cameras(store, c.key);
        for (std::vector<double>& entry : found) {
            for (double& number : entry) {
                number = number == number ? number : 0;
            }
        }
        EXPECT_EQ(found, c.expected) << c.key << " " << c.values[0];
    }
}

TEST(CameraKeys, OffsetsWithoutSeparatorThrowAndLeaveAnEmptyEntry) {
    configuration store;
    EXPECT_REPORT(
        store.set_param("projection_offsets", "4,5"), "configuration", "configuration::set_param(",
        "Format incorrect, projection_offsets should be entered as \"x_offset|y_offset\". Entered value "
        "was: \"4,5\"");
    EXPECT_EQ(cameras(store, "projection_offsets"), entries{{}});
}
