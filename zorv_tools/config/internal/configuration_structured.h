#pragma once

/// @file
/// Setters and releasers of the special keys. A setter serves all keys that share its format.

#include <iostream>

#include "zorv_tools/config/internal/configuration_key.h"

namespace zorv::internal {

// Lists of numbers with one line each.
void set_doubles(const key_row& row, const setting& line);
void set_floats(const key_row& row, const setting& line);
void set_kernel_vals(const key_row& row, const setting& line);
void set_svm_multi_kernel_lengths(const key_row& row, const setting& line);
void set_mahalanobis_covariance(const key_row& row, const setting& line);
void set_scale_noise(const key_row& row, const setting& line);
void set_model_size(const key_row& row, const setting& line);
void set_model_pose_limits(const key_row& row, const setting& line);
void set_classifier_detector_neighbours(const key_row& row, const setting& line);
void set_classifier_detector_roi(const key_row& row, const setting& line);

// Lists that grow by one entry a line.
void append_text(const key_row& row, const setting& line);
void append_model_loc(const key_row& row, const setting& line);
void append_sequence_length(const key_row& row, const setting& line);
void append_pixel_size(const key_row& row, const setting& line);
void append_scale(const key_row& row, const setting& line);
void append_stereo_setting(const key_row& row, const setting& line);
void append_haar_setting(const key_row& row, const setting& line);
void append_sample(const key_row& row, const setting& line);

// One camera a line.
void append_bumblebee_params(const key_row& row, const setting& line);
void append_euler_extrinsics(const key_row& row, const setting& line);
void append_quaternion_extrinsics(const key_row& row, const setting& line);
void append_projection_offsets(const key_row& row, const setting& line);
void append_projection_matrix(const key_row& row, const setting& line);
void append_space_transform(const key_row& row, const setting& line);

void set_closing_kernel(const key_row& row, const setting& line);

template <class T>
void release(void* object) {
    delete static_cast<T*>(object);
}
void release_rectangle(void* object);
void release_cameras(void* object);
void release_kernel(void* object);

/// Warns that the value has not the form of its key: `sentence` tells the form.
void warn_format(const char* sentence, const setting& line);

/// Writes the sentence and what was given unless that is in order.
template <class T>
bool accept(bool in_order, const char* sentence, const T& given) {
    if (!in_order) {
        std::cerr << sentence << given << std::endl;
    }
    return in_order;
}

}  // namespace zorv::internal
