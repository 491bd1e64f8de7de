#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zorv_tools/config/internal/configuration_structured.h"

namespace zorv::internal {

namespace {

constexpr std::string_view mode_words[] = {"train",
                                           "test",
                                           "crossvalidate",
                                           "live",
                                           "pss",
                                           "model_builder",
                                           "model_viewer",
                                           "model_recognition",
                                           "scene_flow_demo",
                                           "scene_flow_viewer",
                                           "trajectory_viewer",
                                           "scene_flow_ml_train",
                                           "colour_constancy_eval",
                                           "cc_noise_eval",
                                           "cc_full_eval"};
constexpr std::string_view feature_words[] = {"lbp", "hog", "hof", "hos"};
constexpr std::string_view classifier_words[] = {"rdf", "nn", "svm", "gp"};
constexpr std::string_view evaluation_words[] = {"clean", "noisy", "outlier"};
constexpr std::string_view tracker_words[] = {"particle_filter", "kalman_filter"};
constexpr std::string_view fitness_words[] = {"fitness_interpolator",
                                              "fitness_function_brightness_consistency",
                                              "fitness_function_patch_ssd",
                                              "fitness_function_learned_bc",
                                              "ff_linear_bc",
                                              "ff_gc",
                                              "ff_linear_gc",
                                              "ff_ofc",
                                              "fitness_function_learned_bc_inverse",
                                              "fitness_function_brightness_consistency_inverse"};
constexpr std::string_view peak_words[] = {"mean", "median", "meanshift"};

constexpr key_row key(std::string_view name, configuration::parameter_kind kind, half chain,
                      repetition repeated, void (*set)(const key_row&, const setting&)) {
    key_row row;
    row.name = name;
    row.kind = kind;
    row.chain = chain;
    row.repeated = repeated;
    row.set = set;
    return row;
}

constexpr key_row flag(std::string_view name, bool default_value, half chain,
                       repetition repeated = repetition::keep_first, flag_wording wording = {}) {
    key_row row = key(name, configuration::param_bool, chain, repeated, set_flag);
    row.number = default_value;
    row.flags = wording;
    return row;
}

constexpr key_row text(std::string_view name, std::string_view default_value, half chain,
                       repetition repeated = repetition::keep_first, text_check check = {}) {
    key_row row = key(name, configuration::param_string, chain, repeated, set_text);
    row.text = default_value;
    row.texts = check;
    return row;
}

constexpr key_row integer(std::string_view name, int default_value, half chain, number_check first = {},
                          number_check second = {}) {
    key_row row = key(name, configuration::param_int, chain, repetition::keep_first, set_integer);
    row.number = default_value;
    row.numbers = {first, second};
    return row;
}

constexpr key_row real(std::string_view name, double default_value, half chain, number_check first = {},
                       number_check second = {}) {
    key_row row = key(name, configuration::param_double, chain, repetition::keep_first, set_real);
    row.number = default_value;
    row.numbers = {first, second};
    return row;
}

constexpr key_row special(std::string_view name, half chain, void (*set)(const key_row&, const setting&),
                          void (*release)(void*), const line_format& format) {
    key_row row = key(name, configuration::param_special, chain, repetition::keep_first, set);
    row.release = release;
    row.format = format;
    return row;
}

/// Special keys of which each line adds an entry.
constexpr key_row growing(std::string_view name, half chain, void (*set)(const key_row&, const setting&),
                          void (*release)(void*), const line_format& format) {
    key_row row = special(name, chain, set, release, format);
    row.repeated = repetition::append;
    return row;
}

constexpr key_row filled_by(std::string_view key, key_row row) {
    row.filled_by = key;
    return row;
}

constexpr key_row replacing(key_row row, const char* warning = nullptr) {
    row.repeated = repetition::replace;
    row.repeat_warning = warning;
    return row;
}

constexpr key_row untested(key_row row) {
    row.repeated = repetition::untested;
    return row;
}

constexpr auto release_doubles = release<std::vector<double>>;
constexpr auto release_floats = release<std::vector<float>>;
constexpr auto release_ints = release<std::vector<int>>;
constexpr auto release_texts = release<std::vector<std::string>>;

constexpr line_format doubles = {"std::vector<double>", "value1|value2|...", "numbers", "0.5|0.25|1"};
constexpr line_format floats = {"std::vector<float>", "value1|value2|...", "numbers", "0.5|0.25|1"};
constexpr line_format texts = {"std::vector<std::string>", "text", "any", "left/of.txt"};
constexpr line_format euler_extrinsics = {
    "std::vector<std::vector<double>*>",
    "euler_z(roll)|euler_x(pitch)|euler_y(yaw)|x_offset|y_offset|z_offset",
    "numbers, the angles in degrees, clockwise camera rotations positive; too few fields leave an empty entry",
    "0|-2.5|10|0.16|0|0"};
constexpr line_format quaternion_extrinsics = {
    "std::vector<std::vector<double>*>", "quat_x|quat_y|quat_z|quat_w|x_offset|y_offset|z_offset",
    "numbers; the quaternion may have any length but 0; too few fields leave an empty entry",
    "0|0|0|1|0.16|0|0"};
constexpr line_format bumblebee_camera = {
    "std::vector<std::vector<double>*>",
    "x_centre|y_centre|x_focal_length_in_pixels|y_focal_length_in_pixels|image_width|image_height|baseline",
    "numbers, the sizes whole; the centres from 0 to 1, in image widths and heights, as the focal lengths are, "
    "whatever their names say; a refused line leaves an entry that is empty or ends with the centre at fault",
    "0.5|0.5|1.2|1.6|640|480|0.12"};
constexpr line_format projection_matrix = {
    "std::vector<std::vector<double>*>", "value1|...|value12",
    "12 numbers, a 3 by 4 matrix row by row; another count leaves no entry",
    "600|0|320|0|0|600|240|0|0|0|1|0"};
constexpr line_format space_transform = {
    "std::vector<std::vector<double>*>", "value1|...|value16",
    "16 numbers, a 4 by 4 matrix row by row; another count leaves no entry",
    "1|0|0|0|0|1|0|0|0|0|1|0|0|0|0|1"};
constexpr line_format pixel_offsets = {
    "std::vector<std::vector<double>*>", "x_offset|y_offset",
    "numbers, in pixels; a value without a separator throws and leaves an empty entry", "12|-4"};
constexpr line_format kernel_format = {
    "IplConvKernel", "cols|rows|anchorx|anchory|shape|iterations|value1...",
    "whole numbers: cols and rows at least 1; anchorx from 1 to cols and anchory from 1 to rows, handed on to "
    "OpenCV, which counts them from 0 and throws for one equal to the size; shape 0 (rectangle), 1 (cross), 2 "
    "(ellipse) or 100 (custom); iterations not 0, kept in closing_iterations; each value but the last below 0 "
    "or above 254, the inverse of what the warning says",
    "3|3|1|1|2|2"};
constexpr line_format haar_format = {
    "std::vector<zorv::haar_setting>",
    "cascade_loc|scale_rate|detections|base_width|base_height|extra_settings",
    "a text; a number not below 0; then whole numbers: detections, base_width and base_height at least 1, "
    "extra_settings from 0 to 15; an entry that is there already is refused",
    "faces.xml|1.1|3|24|24|0"};
constexpr line_format scale_format = {
    "std::vector<zorv::scale>", "(samples,radius,scale_factor)",
    "nothing is refused; warns of another form, a radius or scale_factor not above 0, samples not from 1 to 8 "
    "times the radius, and an entry that is there already",
    "(8,1,1.5)"};
constexpr line_format stereo_format = {
    "std::vector<zorv::stereo_setting>",
    "stereo_mask_size|edge_correlation_on|edge_mask_size|back_and_forth_on|width|height|max_disp|min_disp",
    "whole numbers: stereo_mask_size 1 to 23, edge_mask_size 3 to 11, width 1 to 1024, height 1 to 768, "
    "max_disp 0 to width, min_disp at least 0 and at most max_disp and width less 11, their difference at "
    "most 240; the switches true or false, not 1 or 0; an entry that is there already is refused",
    "7|true|5|false|640|480|64|0"};
constexpr line_format sample_format = {
    "std::vector<zorv::sample>", "location|frame|x1|x2|y1|y2|value1...",
    "a text, then whole numbers: frame at least -1, x1 and y1 at least 0, x2 at least x1, y2 at least y1; then "
    "numbers, below classes if that is above 1, which make up class_vector; warns where there are not "
    "output_parameters of them; give these two keys first",
    "a.avi|-1|0|10|0|10|1"};
constexpr line_format model_size_format = {
    "std::vector<double>", "x_size|x_step|y_size|y_step|z_size|z_step|channels|scale1...",
    "sizes and channels at least 1, steps and scales above 0; a refused line does not count as given",
    "20|0.5|20|0.5|10|1|3|1|2"};
constexpr line_format pose_limits_format = {
    "std::vector<double>", "min_limit1|max_limit1|step1|...",
    "triples, each minimum below its maximum; a refused line does not count as given", "-1|1|0.1|0|90|5"};
constexpr line_format scale_noise_format = {
    "std::vector<double>", "value1|value2|...",
    "numbers, from the fifth on at least 0; a refused line does not count as given", "-1|0|0|0|0.5"};
constexpr line_format covariance_format = {"std::vector<double>", "value1|value2|...",
                                           "numbers; a field that is none throws and leaves those before it",
                                           "1|0|0|1"};
constexpr line_format neighbours_format = {
    "std::vector<int>", "x|y|z",
    "whole numbers; warns where there are not three; a negative one is stored as 0, with a warning", "1|1|0"};
constexpr line_format roi_format = {
    "cv::Rect", "x|y|width|height",
    "whole numbers, x and y at least 0; a refused line leaves a rectangle of zeros and counts as given",
    "10|20|320|240"};
constexpr line_format kernel_lengths_format = {
    "std::vector<int>", "value1|value2|...",
    "whole numbers; a later line makes a new list, the old one stays readable and is never released",
    "3|5|8"};
constexpr line_format txt_path = {"std::vector<std::string>", "text",
                                  "ends in .txt; a value of fewer than four characters throws", "model.txt"};
constexpr line_format sequence_format = {"std::vector<int>", "number",
                                         "a whole number, at least 1; a value that is none throws", "120"};
constexpr line_format pixel_size_format = {"std::vector<std::pair<double, double>>",
                                           "pixel_width|pixel_height", "numbers above 0", "0.004|0.004"};

}  // namespace

// Where a bound and its sentence tell different things, both are meant: the bound decides, and the sentence stays
// the one that users know.
constexpr std::array<key_row, catalogue_size> catalogue = {{
    flag("use_classification_tracker", false, half::first, repetition::keep_first,
         {"WARNING: Unrecognised value for use_classification_tracker: ", ""}),
    flag("use_object_tracker", false, half::first, repetition::keep_first,
         {"WARNING: Unrecognised value for use_object_tracker: ", ""}),
    flag("interpolate", false, half::first, repetition::keep_first,
         {"WARNING: Interpolate parameter not 1,0,true or false: ", ""}),
    flag("uniform", false, half::first, repetition::keep_first,
         {"WARNING: Uniform parameter not 1,0,true or false: ", ""}),
    flag("rotationally_invariant", false, half::first, repetition::keep_first,
         {"WARNING: Rotationally invariant parameter not 1,0,true or false: \"", "\""}),
    flag("sf_do_resampling", true, half::first),
    flag("sf_multiply_prior", false, half::first),
    flag("sf_normalise_weights", true, half::first),
    flag("sf_noise_based_on_weight", true, half::first),
    flag("sf_randomly_spread_missing", false, half::first),
    flag("sf_ray_resampling", true, half::first),
    flag("sf_projection_scoring", false, half::first),
    flag("sf_two_stage_pf", true, half::first),
    flag("sf_smoothness_weighting", false, half::first),
    flag("sf_image_plane", true, half::first),
    flag("sf_inner_noise_loop", false, half::first),
    flag("sf_exponential_cost", true, half::first),
    flag("sf_motion_only", false, half::first),
    flag("sf_propagate_velocities", false, half::first),
    flag("sf_ray_resample_all_cameras", false, half::first),
    flag("sf_interpolate_pixels", false, half::first),
    flag("sf_weight_prev_pos_conformancy", false, half::first),
    flag("sf_no_noise_on_best_per_ray", true, half::first),
    flag("sf_dont_copy_neighbour_rays", false, half::first),
    flag("sf_favour_small_velocs", false, half::first),
    flag("sf_favour_skin_colour", false, half::first),
    flag("sf_forward_and_back", false, half::first),
    flag("sf_forward_est", false, half::first),
    flag("sf_write_traj", false, half::first),
    flag("sf_write_flows", true, half::second),
    flag("deinterlace_input", false, half::first),
    flag("sf_occlusion_aware", false, half::first),
    flag("empty_clusters_at_boundary", false, half::first),
    flag("filter_sf_vals_3d", false, half::first),
    flag("filter_sf_weights_3d", false, half::first),
    flag("filter_sf_2d", false, half::second),
    flag("acc_classifier_averaging", false, half::second),
    flag("spotting_classifier", false, half::second),
    flag("accumulation_classifier", false, half::second),
    flag("sf_ml_holistic_mean", false, half::second, repetition::replace),
    flag("sf_ml_holistic_var", false, half::second, repetition::replace),
    flag("sf_ml_holistic_color_hist", false, half::second, repetition::replace),
    flag("sf_ml_local_mean", false, half::second, repetition::replace),
    flag("sf_ml_local_var", false, half::second, repetition::replace),
    flag("sf_ml_local_color_hist", false, half::second, repetition::replace),
    flag("sf_ml_local_mean_per_view", false, half::second, repetition::replace),
    flag("sf_ml_local_var_per_view", false, half::second, repetition::replace),
    flag("sf_ml_local_ssd", false, half::second, repetition::replace),
    flag("sf_ml_holistic_mean_per_view", false, half::second, repetition::replace),
    flag("sf_ml_holistic_var_per_view", false, half::second, repetition::replace),
    flag("sf_ml_holistic_ssd", false, half::second, repetition::replace),
    flag("sf_ml_pixel_vals", false, half::second, repetition::replace),
    flag("sf_ml_pixel_norm_vals", false, half::second, repetition::replace),
    flag("sf_ml_pixel_mean", false, half::second, repetition::replace),
    flag("sf_ml_pixel_var", false, half::second, repetition::replace),
    flag("sf_ml_pixel_gradient", false, half::second, repetition::replace),
    flag("sf_ml_pixel_gabor", false, half::second, repetition::replace),
    flag("hosf_indie_orie", false, half::second, repetition::replace),
    flag("hosf_proj_flows", false, half::second, repetition::replace),
    flag("hosf_rot_inv", false, half::second, repetition::replace),
    flag("hosf_rot_inv_biggest", false, half::second, repetition::replace),
    flag("sf_ml_dummy", false, half::second, repetition::replace),
    flag("hosf_rot_roll_subregions", false, half::second, repetition::replace),
    flag("sf_ml_cost_and_grad", false, half::second, repetition::replace),
    flag("surface_normal_consistency", false, half::second, repetition::replace),

    text("mode", "", half::first, repetition::replace,
         {one_of(mode_words), "WARNING: unrecognised mode: \"", "\""}),
    text("classifier_file", "", half::first, repetition::replace,
         {has_extension, "WARNING: Classifier file does not have a .xxx extension: ", "", true}),
    text("features", "", half::first, repetition::keep_first,
         {one_of(feature_words), "WARNING: unrecognised features: \"", "\""}),
    text("classifier_type", "", half::first, repetition::keep_first,
         {one_of(classifier_words), "WARNING: unrecognised classifier_type: \"", "\""}),
    text("setup_file_location", "", half::first, repetition::keep_first,
         {ends_in_txt, "WARNING: setup_file_location does not have a .txt extension: "}),
    text("object_tracker_type", "", half::second, repetition::keep_first,
         {one_of(tracker_words), "WARNING: Unrecognised object_tracker_type specified: "}),
    text("object_fitness_type", "", half::second, repetition::keep_first,
         {one_of(fitness_words), "WARNING: Unrecognised object_fitness_type specified: "}),
    text("value_tracker_type", "", half::second, repetition::keep_first,
         {one_of(tracker_words), "WARNING: Unrecognised value_tracker_type specified: "}),
    text("value_fitness_type", "", half::second, repetition::replace,
         {one_of(fitness_words), "WARNING: Unrecognised value_fitness_type specified: "}),
    text("value_peak_extractor", "", half::second, repetition::keep_first,
         {one_of(peak_words),
          "WARNING: value_peak_extractor should be mean, median or meanshift, entered value was: "}),
    text("object_peak_extractor", "", half::second, repetition::keep_first,
         {one_of(peak_words),
          "WARNING: object_peak_extractor should be mean, median or meanshift, entered value was: "}),
    text("object_extractor", "", half::first),
    text("object_detector", "", half::first),
    text("sf_estimator", "", half::first, repetition::replace),
    text("sf_gt_loc", "", half::first),
    text("sf_results_loc", "", half::first, repetition::replace),
    text("cluster_type", "", half::first),
    text("filter_type", "", half::first),
    text("feature_path", "", half::first),
    text("distance_function", "", half::first, repetition::replace),
    text("bootstrapping_feature_input", "", half::first),
    text("sf_ml_classifier_output", "", half::first),
    text("cc_eval_type", "", half::first, repetition::replace,
         {one_of(evaluation_words), "WARNING: unrecognised cc_eval_type: \"",
          "\"\nWARNING: recognised types are clean, noisy and outlier"}),
    text("depth_camera_config", "videos/scene_flow/Kinect/dep_param.txt", half::first),
    text("svm_type", "c", half::first),
    text("svm_kernel", "rbf", half::first),

    integer("classes", -1, half::first,
            {at_least(1), "WARNING: the number of classes was not greater than 0: "}),
    integer("x_subregions", -1, half::first,
            {at_least(1), "WARNING: the number of x subregions was not greater than 0: "}),
    integer("trees", -1, half::second, {at_least(1), "WARNING: Number of trees less than 1: "}),
    integer("y_subregions", -1, half::first,
            {at_least(1), "WARNING: the number of y subregions was not greater than 0: "}),
    filled_by("closing_kernel", integer("closing_iterations", 0, half::none)),
    integer(
        "object_hypothesis_dimensions", 0, half::second,
        {at_least(1), "WARNING: Object_hypothesis_dimensions must be greater than 0, value specified was: "}),
    integer(
        "value_num_particles", 0, half::second,
        {at_least(1), "WARNING: number of value particles should be greater than 0, entered value was: "}),
    integer(
        "object_num_particles", 0, half::second,
        {at_least(1), "WARNING: number of object particles should be greater than 0, entered value was: "}),
    integer(
        "value_hypothesis_dimensions", 0, half::second,
        {at_least(1), "WARNING: value_hypothesis_dimensions must be greater than 0, value specified was: "}),
    replacing(
        integer(
            "output_parameters", 1, half::second,
            {at_least(1), "WARNING: Number of output parameters must be greater than 0, entered value was: ",
             echo::number}),
        "WARNING: output_parameters encountered multiple times in config file (using new one anyway). Ignore this for multi-classifier systems."),
    integer(
        "output_bitmap", -1, half::second,
        {at_least(1),
         "WARNING: output_bitmap must be greater than or equal to 0, and less than128, entered value was: ",
         echo::number}),
    integer("crossvalidation_iterations", 0, half::second,
            {at_least(1),
             "WARNING: crossvalidation_iterations must be greater than or equal to 0, entered value was: ",
             echo::number}),
    integer(
        "classifier_detector_max_scales", 0, half::second,
        {at_least(1),
         "WARNING: classifier_detector_max_scales must be greater than or equal to 0, entered value was: ",
         echo::number}),
    integer("sf_pyramid_levels", 0, half::second,
            {at_least(0),
             "WARNING: sf_pyramid_levels should be greater than or equal to 0, entered value was: "}),
    integer("sf_birth_rate", 0, half::second,
            {at_least(0), "WARNING: sf_birth_rate should not be less than 0, entered value was: "}),
    integer("sf_max_noise_loops", 0, half::second,
            {at_least(0), "WARNING: sf_max_noise_loops should not be less than 0, entered value was: "}),
    integer("sf_gt_pos_kinect_start", 0, half::second,
            {at_least(0), "WARNING: sf_gt_pos_kinect_start should not be less than 0, entered value was: "}),
    integer("sf_patch_size", 3, half::second,
            {at_least(0), "WARNING: sf_patch_size should not be less than 0, entered value was: "}),
    integer("kernel_width", 3, half::second,
            {at_least(1), "WARNING: kernel_width should not be less than 3, entered value was: "},
            {odd_numbers(), "WARNING: kernel_width should be odd, entered value was: "}),
    integer("num_viewpoints", -1, half::second,
            {at_least(1), "WARNING: num_viewpoints should not be less than 1, entered value was: "}),
    integer(
        "image_dep_seg_thresh", 0, half::second,
        {from_to(0, 255),
         "WARNING: image_dep_seg_thresh should not be less than 0 or more than 255, entered value was: "}),
    integer("kmeans_max_iters", 10000, half::second,
            {at_least(1), "WARNING: kmeans_max_iters should not be less than 1, entered value was: "}),
    integer("sf_ml_bootstrap_iters", 1, half::second,
            {at_least(1), "WARNING: sf_ml_bootstrap_iters should not be less than 1, entered value was: "}),
    integer("hosf_azimuth_bins", 4, half::second,
            {at_least(1), "WARNING: hosf_azimuth_bins should not be less than 1, entered value was: "}),
    integer("hosf_altitude_bins", 4, half::second,
            {at_least(1), "WARNING: hosf_altitude_bins should not be less than 1, entered value was: "}),
    integer("hosf_x_cells", 3, half::second,
            {at_least(1), "WARNING: hosf_x_cells should not be less than 1, entered value was: "}),
    integer("hosf_y_cells", 3, half::second,
            {at_least(1), "WARNING: hosf_y_cells should not be less than 1, entered value was: "}),
    replacing(
        integer("hosf_cell_width", 11, half::second,
                {at_least(1), "WARNING: hosf_cell_width should not be less than 1, entered value was: "})),
    replacing(
        integer("hosf_cell_height", 11, half::second,
                {at_least(1), "WARNING: hosf_cell_height should not be less than 1, entered value was: "})),
    integer("svm_crossfolds", 5, half::second,
            {at_least(1), "WARNING: svm_crossfolds should not be less than 1, entered value was: "}),
    integer("svm_grid_iterations", 1, half::second,
            {at_least(1), "WARNING: svm_grid_iterations should not be less than 1, entered value was: "}),
    integer("svm_num_chi2_kernels", 1, half::second,
            {at_least(1), "WARNING: svm_num_chi2_kernels should not be less than 1, entered value was: "}),

    real("dep_seg_thresh", 0, half::first,
         {at_least(0), "WARNING: Invalid value for dep_seg_thresh: ", echo::number}),
    untested(real("x_search_expansion", 1, half::first)),
    untested(real("y_search_expansion", 1, half::first)),
    real("ratio", -1, half::second, {between(0, 1), "WARNING: Ratio not between 0 and 1: "}),
    real("feature_ratio", -1, half::second, {between(0, 1), "WARNING: feature_ratio not between 0 and 1: "}),
    real("training_ratio", 0, half::second,
         {above(0), "WARNING: training_ratio must be greater than 0, and less than 1, entered value was: ",
          echo::number}),
    real("detector_threshold", 0.5, half::second,
         {from_to(0, 1), "WARNING: detector_threshold should be between 0 and 1, entered value was: "}),
    real("sf_pyramid_scale_factor", 0.5, half::second,
         {above(0), "WARNING: sf_pyramid_scale_factor should be greater than 0, entered value was: "}),
    real("brightness_constancy_likelihood_decay", -1, half::second,
         {below(0),
          "WARNING: brightness_constancy_likelihood_decay should be less than 0, entered value was: "}),
    real("frame_interval", 0, half::second,
         {above(0), "WARNING: frame_interval should be greater than 0, entered value was: "}),
    real("trajectory_threshold", 1000, half::second,
         {above(0), "WARNING: trajectory_threshold should be greater than 0, entered value was: "}),
    real("sf_patch_ssd_gate", 100000, half::second,
         {above(0), "WARNING: sf_patch_ssd_gate should be greater than 0, entered value was: "}),
    real("ip_downsampling", 1, half::second,
         {above(0), "WARNING: ip_downsampling should be greater than 0, entered value was: "}),
    real("image_gaussian_noise_stddev", 1, half::second,
         {at_least(0), "WARNING: image_gaussian_noise_stddev should not be negative, entered value was: "}),
    real("image_impulse_noise_level", 0.01, half::second,
         {at_least(0), "WARNING: image_impulse_noise_level should not be negative, entered value was: "}),
    real("kmeans_min_change", 0, half::second,
         {at_least(0), "WARNING: kmeans_min_change should not be negative, entered value was: "}),
    real("sf_ml_training_fraction", 0, half::second,
         {at_least(0), "WARNING: sf_ml_training_fraction should not be negative, entered value was: "},
         {below(1), "WARNING: sf_ml_training_fraction should not be more than 1, entered value was: "}),
    real("bilateral_value_variance", 0, half::second,
         {above(0), "WARNING: bilateral_value_variance should not be negative, entered value was: "}),
    real("sfml_noise_train_sample_rate", 1, half::second,
         {above(0), "WARNING: sfml_noise_train_sample_rate should not be less than 0, entered value was: "}),

    special("closing_kernel", half::first, set_closing_kernel, release_kernel, kernel_format),
    growing("ip_step", half::first, append_text, release_texts, texts),
    growing("haar_setting", half::first, append_haar_setting, release<std::vector<haar_setting>>,
            haar_format),
    growing("scale", half::second, append_scale, release<std::vector<scale>>, scale_format),
    growing("stereo_setting", half::second, append_stereo_setting, release<std::vector<stereo_setting>>,
            stereo_format),
    special("object_particle_upper_bounds", half::second, set_doubles, release_doubles, doubles),
    special("object_particle_lower_bounds", half::second, set_doubles, release_doubles, doubles),
    special("value_particle_upper_bounds", half::second, set_doubles, release_doubles, doubles),
    special("value_particle_lower_bounds", half::second, set_doubles, release_doubles, doubles),
    special("value_dynamics_matrix", half::second, set_doubles, release_doubles, doubles),
    special("object_dynamics_matrix", half::second, set_doubles, release_doubles, doubles),
    growing("sample", half::second, append_sample, release<std::vector<sample>>, sample_format),
    filled_by("sample", special("class_vector", half::none, nullptr, release_doubles, doubles)),
    special("model_size", half::second, set_model_size, release_doubles, model_size_format),
    special("location_noise", half::second, set_doubles, release_doubles, doubles),
    special("scale_noise", half::second, set_scale_noise, release_doubles, scale_noise_format),
    growing("bumblebee_params", half::first, append_bumblebee_params, release_cameras, bumblebee_camera),
    special("classifier_detector_roi", half::second, set_classifier_detector_roi, release_rectangle,
            roi_format),
    special("classifier_detector_neighbours", half::second, set_classifier_detector_neighbours, release_ints,
            neighbours_format),
    special("model_pose_limits", half::second, set_model_pose_limits, release_doubles, pose_limits_format),
    growing("model_loc", half::first, append_model_loc, release_texts, txt_path),
    growing("extrinsic_camera_params", half::first, append_euler_extrinsics, release_cameras,
            euler_extrinsics),
    growing("extrinsic_camera_params_q", half::first, append_quaternion_extrinsics, release_cameras,
            quaternion_extrinsics),
    growing("pixel_sizes", half::first, append_pixel_size, release<std::vector<std::pair<double, double>>>,
            pixel_size_format),
    growing("sf_gt_disp_loc", half::first, append_text, release_texts, texts),
    special("object_noise_level", half::second, set_doubles, release_doubles, doubles),
    special("value_noise_level", half::second, set_doubles, release_doubles, doubles),
    growing("camera_proj_mats", half::second, append_projection_matrix, release_cameras, projection_matrix),
    growing("colour_model_locs", half::first, append_text, release_texts, texts),
    growing("projection_offsets", half::first, append_projection_offsets, release_cameras, pixel_offsets),
    growing("camera_space_transform", half::second, append_space_transform, release_cameras, space_transform),
    special("colour_model_limits", half::second, set_doubles, release_doubles, doubles),
    special("kernel_vals", half::second, set_kernel_vals, release_floats, floats),
    growing("sequence_lengths", half::second, append_sequence_length, release_ints, sequence_format),
    special("kmeans_hierarchy_ratios", half::second, set_floats, release_floats, floats),
    growing("precomputed_of_paths", half::first, append_text, release_texts, texts),
    replacing(special("mahalanobis_covariance", half::second, set_mahalanobis_covariance, release_doubles,
                      covariance_format),
              "WARNING: mahalanobis_covariance already encountered in config. Overwriting"),
    replacing(special("svm_multi_kernel_lengths", half::second, set_svm_multi_kernel_lengths, release_ints,
                      kernel_lengths_format)),
    growing("surface_normal_imgs", half::first, append_text, release_texts, texts),
}};

namespace {

/// The chain knows the empty name, which is declared nowhere: a line "=value" meets the range check of the
/// position unless a derived class declares such a key.
constexpr key_row empty_key = flag("", false, half::second);

constexpr std::size_t slot_count = 1024;
constexpr std::uint8_t free_slot = 255;
static_assert(catalogue_size < free_slot);

constexpr std::size_t slot_of(std::string_view name) {
    std::uint32_t hash = 2166136261u;
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    return (hash ^ (hash >> 15)) % slot_count;
}

/// Positions by the hash of the name, with the next free slot for those that meet. Made by the compiler, so that
/// loading the library sets up nothing.
constexpr std::array<std::uint8_t, slot_count> make_slots() {
    std::array<std::uint8_t, slot_count> slots = {};
    for (std::uint8_t& slot : slots) {
        slot = free_slot;
    }
    for (std::size_t i = 0; i < catalogue_size; ++i) {
        std::size_t slot = slot_of(catalogue[i].name);
        while (slots[slot] != free_slot) {
            slot = (slot + 1) % slot_count;
        }
        slots[slot] = static_cast<std::uint8_t>(i);
    }
    return slots;
}

constexpr std::array<std::uint8_t, slot_count> slots = make_slots();

}  // namespace

std::size_t catalogue_position(std::string_view name) {
    for (std::size_t slot = slot_of(name); slots[slot] != free_slot; slot = (slot + 1) % slot_count) {
        if (catalogue[slots[slot]].name == name) {
            return slots[slot];
        }
    }
    return catalogue_size;
}

const key_row* find_key(std::string_view name) {
    if (name.empty()) {
        return &empty_key;
    }
    const std::size_t position = catalogue_position(name);
    return position < catalogue_size ? &catalogue[position] : nullptr;
}

}  // namespace zorv::internal
