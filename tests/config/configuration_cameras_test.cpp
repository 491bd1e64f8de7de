#include "tests/config/value_text.h"
#include "tests/support/report.h"

using cameras = std::vector<std::vector<double>*>;

TEST(CameraKeys, LinesBecomeEntriesInOrder) {
    expect_lines<cameras>(R"(
        bumblebee_params=0|1|1.5|2.5|640.9|480.9|0.12x ; 1|0|1|1|1|1|2|9 => [[0 1 1.5 2.5 640 480 0.12] [1 0 1 1 1 1 2]]
        bumblebee_params=-0.1|0|1|1|1|1|1 => [[-0.1]] ! x centre not between 0 and 1 : -0.1
        bumblebee_params=nan|0|1|1|1|1|1 => [[nan]] ! x centre not between 0 and 1 : nan
        bumblebee_params=1|1.01|1|1|1|1|1 => [[1 1.01]] ! y centre not between 0 and 1 : 1.01
        extrinsic_camera_params=1|2|3|4|5|6|7 ; ||||| => [[1 2 3 4 5 6] [0 0 0 0 0 0]]
        extrinsic_camera_params_q=1|2|3|4|5|6|7 => [[1 2 3 4 5 6 7]]
        projection_offsets=2.5|-1 ; |3|4 => [[2.5 -1] [0 3]]
        camera_proj_mats=1|2|3|4|5|6|7|8|9|10|11|12 => [[1 2 3 4 5 6 7 8 9 10 11 12]]
        camera_space_transform=1|2|3|4|5|6|7|8|9|10|11|12|13|14|15|16 => [[1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16]]
        bumblebee_params=1|2|3|4|5|6 => [[]] ! Format incorrect, samples should be entered as "x_centre|y_centre|x_focal_length_in_pixels|y_focal_length_in_pixels|image_width|image_height|baseline", entered value was: "1|2|3|4|5|6"
        extrinsic_camera_params=1|2|3|4|5 => [[]] ! Format incorrect, extrinsice camera parameters should be entered as "euler_z(roll)|euler_x(pitch)|euler_y(yaw)|x_offset|y_offset|z_offset" (where clockwise camera rotations are positive), entered value was: "1|2|3|4|5"
        extrinsic_camera_params_q=1|2|3|4|5|6 => [[]] ! Format incorrect, extrinsice camera parameters (quaternion) should be entered as "quat_x|quat_y|quat_z|quat_w|x_offset|y_offset|z_offset" (where clockwise camera rotations are positive), entered value was: "1|2|3|4|5|6"
        camera_proj_mats=1|2 ; 1|2|3|4|5|6|7|8|9|10|11|12 ; 3 => [[1 2 3 4 5 6 7 8 9 10 11 12]] ! When reading camera_proj_mats, should be 12 values, entry was: 1|2 ! When reading camera_proj_mats, should be 12 values, entry was: 3
        camera_proj_mats=1|2|3|4|5|6|7|8|9|10|11|12| => [] ! When reading camera_proj_mats, should be 12 values, entry was: 1|2|3|4|5|6|7|8|9|10|11|12|
        camera_space_transform=1|2|3|4|5|6|7|8|9|10|11|12|13|14|15 => [] ! When reading camera_space_transform, should be 16 values, entry was: 1|2|3|4|5|6|7|8|9|10|11|12|13|14|15
    )");
}

TEST(CameraKeys, OffsetsWithoutSeparatorThrowAndLeaveAnEmptyEntry) {
    zorv::configuration store;
    EXPECT_REPORT(
        store.set_param("projection_offsets", "4,5"), "configuration", "configuration::set_param(",
        "Format incorrect, projection_offsets should be entered as \"x_offset|y_offset\". Entered value "
        "was: \"4,5\"");
    EXPECT_EQ(object_text<cameras>(store, "projection_offsets"), "[[]]");
}
