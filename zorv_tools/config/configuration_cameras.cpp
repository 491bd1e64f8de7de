#include <iostream>
#include <memory>

#include "zorv_tools/config/internal/configuration_fields.h"
#include "zorv_tools/config/internal/configuration_structured.h"

namespace zorv::internal {

namespace {

using camera_list = std::vector<std::vector<double>*>;

/// Adds an empty entry for one more camera. It is there before the line is looked at, and stays when the line is
/// refused, so that the entries keep their order of cameras.
std::vector<double>& append_camera(const setting& line) {
    camera_list& cameras = line.object_or_new<camera_list>();
    auto values = std::make_unique<std::vector<double>>();
    cameras.push_back(values.get());
    return *values.release();
}

/// Lines with one `double` in each of `count` fields.
void append_doubles(std::size_t count, const char* format_sentence, const setting& line) {
    std::vector<double>& values = append_camera(line);
    const std::vector<std::string> fields = split_fields(line.value, count);
    if (fields.size() < count) {
        warn_format(format_sentence, line);
        return;
    }
    for (const std::string& field : fields) {
        values.push_back(to_double(field));
    }
}

/// A matrix of `count` values; an entry of another size does not stay.
void append_matrix(std::size_t count, const key_row& row, const setting& line) {
    std::vector<double>& values = append_camera(line);
    for (const std::string& field : split_fields(line.value)) {
        values.push_back(to_double(field));
    }
    if (values.size() != count) {
        std::cerr << "WARNING: When reading " << row.name << ", should be " << count
                  << " values, entry was: " << line.value << std::endl;
        camera_list& cameras = *line.object<camera_list>();
        delete cameras.back();
        cameras.pop_back();
    }
}

}  // namespace

void append_bumblebee_params(const key_row&, const setting& line) {
    std::vector<double>& values = append_camera(line);
    const std::vector<std::string> fields = split_fields(line.value, 7);
    if (fields.size() < 7) {
        warn_format(
            "WARNING: Format incorrect, samples should be entered as \"x_centre|y_centre|x_focal_length_in_pixels|y_focal_length_in_pixels|image_width|image_height|baseline\"",
            line);
        return;
    }
    constexpr const char* centre_refusals[] = {"WARNING: x centre not between 0 and 1 : ",
                                               "WARNING: y centre not between 0 and 1 : "};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const bool is_size = i == 4 || i == 5;
        values.push_back(is_size ? to_int(fields[i]) : to_double(fields[i]));
        if (i < 2 && !(values[i] >= 0 && values[i] <= 1)) {
            std::cerr << centre_refusals[i] << values[i] << std::endl;
            return;
        }
    }
}

void append_euler_extrinsics(const key_row&, const setting& line) {
    append_doubles(
        6,
        "WARNING: Format incorrect, extrinsice camera parameters should be entered as \"euler_z(roll)|euler_x(pitch)|euler_y(yaw)|x_offset|y_offset|z_offset\" (where clockwise camera rotations are positive)",
        line);
}

void append_quaternion_extrinsics(const key_row&, const setting& line) {
    append_doubles(
        7,
        "WARNING: Format incorrect, extrinsice camera parameters (quaternion) should be entered as \"quat_x|quat_y|quat_z|quat_w|x_offset|y_offset|z_offset\" (where clockwise camera rotations are positive)",
        line);
}

void append_projection_offsets(const key_row&, const setting& line) {
    std::vector<double>& values = append_camera(line);
    const std::vector<std::string> fields = split_fields(line.value, 2);
    if (fields.size() < 2) {
        throw_exception_l(
            line.caller,
            "Format incorrect, projection_offsets should be entered as \"x_offset|y_offset\". Entered value was: \"" +
                line.value + "\"");
    }
    values = {to_double(fields[0]), to_double(fields[1])};
}

void append_projection_matrix(const key_row& row, const setting& line) {
    append_matrix(12, row, line);
}

void append_space_transform(const key_row& row, const setting& line) {
    append_matrix(16, row, line);
}

void release_cameras(void* object) {
    const std::unique_ptr<camera_list> cameras(static_cast<camera_list*>(object));
    for (const std::vector<double>* values : *cameras) {
        delete values;
    }
}

}  // namespace zorv::internal
