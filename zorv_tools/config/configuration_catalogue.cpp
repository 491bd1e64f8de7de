#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "zorv_tools/config/internal/configuration_checks.h"
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
                          void (*release)(void*)) {
    key_row row = key(name, configuration::param_special, chain, repetition::keep_first, set);
    row.release = release;
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
         {one_of<mode_words>, "WARNING: unrecognised mode: \"", "\""}),
    text("classifier_file", "", half::first, repetition::replace,
         {has_extension, "WARNING: Classifier file does not have a .xxx extension: ", "", true}),
    text("features", "", half::first, repetition::keep_first,
         {one_of<feature_words>, "WARNING: unrecognised features: \"", "\""}),
    text("classifier_type", "", half::first, repetition::keep_first,
         {one_of<classifier_words>, "WARNING: unrecognised classifier_type: \"", "\""}),
    text("setup_file_location", "", half::first, repetition::keep_first,
         {ends_in_txt, "WARNING: setup_file_location does not have a .txt extension: "}),
    text("object_tracker_type", "", half::second, repetition::keep_first,
         {one_of<tracker_words>, "WARNING: Unrecognised object_tracker_type specified: "}),
    text("object_fitness_type", "", half::second, repetition::keep_first,
         {one_of<fitness_words>, "WARNING: Unrecognised object_fitness_type specified: "}),
    text("value_tracker_type", "", half::second, repetition::keep_first,
         {one_of<tracker_words>, "WARNING: Unrecognised value_tracker_type specified: "}),
    text("value_fitness_type", "", half::second, repetition::replace,
         {one_of<fitness_words>, "WARNING: Unrecognised value_fitness_type specified: "}),
    text("value_peak_extractor", "", half::second, repetition::keep_first,
         {one_of<peak_words>,
          "WARNING: value_peak_extractor should be mean, median or meanshift, entered value was: "}),
    text("object_peak_extractor", "", half::second, repetition::keep_first,
         {one_of<peak_words>,
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
         {one_of<evaluation_words>, "WARNING: unrecognised cc_eval_type: \"",
          "\"\nWARNING: recognised types are clean, noisy and outlier"}),
    text("depth_camera_config", "videos/scene_flow/Kinect/dep_param.txt", half::first),
    text("svm_type", "c", half::first),
    text("svm_kernel", "rbf", half::first),

    integer("classes", -1, half::first,
            {at_least<1>, "WARNING: the number of classes was not greater than 0: "}),
    integer("x_subregions", -1, half::first,
            {at_least<1>, "WARNING: the number of x subregions was not greater than 0: "}),
    integer("trees", -1, half::second, {at_least<1>, "WARNING: Number of trees less than 1: "}),
    integer("y_subregions", -1, half::first,
            {at_least<1>, "WARNING: the number of y subregions was not greater than 0: "}),
    integer("closing_iterations", 0, half::none),
    integer(
        "object_hypothesis_dimensions", 0, half::second,
        {at_least<1>, "WARNING: Object_hypothesis_dimensions must be greater than 0, value specified was: "}),
    integer(
        "value_num_particles", 0, half::second,
        {at_least<1>, "WARNING: number of value particles should be greater than 0, entered value was: "}),
    integer(
        "object_num_particles", 0, half::second,
        {at_least<1>, "WARNING: number of object particles should be greater than 0, entered value was: "}),
    integer(
        "value_hypothesis_dimensions", 0, half::second,
        {at_least<1>, "WARNING: value_hypothesis_dimensions must be greater than 0, value specified was: "}),
    replacing(
        integer(
            "output_parameters", 1, half::second,
            {at_least<1>, "WARNING: Number of output parameters must be greater than 0, entered value was: ",
             echo::number}),
        "WARNING: output_parameters encountered multiple times in config file (using new one anyway). Ignore this for multi-classifier systems."),
    integer(
        "output_bitmap", -1, half::second,
        {at_least<1>,
         "WARNING: output_bitmap must be greater than or equal to 0, and less than128, entered value was: ",
         echo::number}),
    integer("crossvalidation_iterations", 0, half::second,
            {at_least<1>,
             "WARNING: crossvalidation_iterations must be greater than or equal to 0, entered value was: ",
             echo::number}),
    integer(
        "classifier_detector_max_scales", 0, half::second,
        {at_least<1>,
         "WARNING: classifier_detector_max_scales must be greater than or equal to 0, entered value was: ",
         echo::number}),
    integer("sf_pyramid_levels", 0, half::second,
            {at_least<0>,
             "WARNING: sf_pyramid_levels should be greater than or equal to 0, entered value was: "}),
    integer("sf_birth_rate", 0, half::second,
            {at_least<0>, "WARNING: sf_birth_rate should not be less than 0, entered value was: "}),
    integer("sf_max_noise_loops", 0, half::second,
            {at_least<0>, "WARNING: sf_max_noise_loops should not be less than 0, entered value was: "}),
    integer("sf_gt_pos_kinect_start", 0, half::second,
            {at_least<0>, "WARNING: sf_gt_pos_kinect_start should not be less than 0, entered value was: "}),
    integer("sf_patch_size", 3, half::second,
            {at_least<0>, "WARNING: sf_patch_size should not be less than 0, entered value was: "}),
    integer("kernel_width", 3, half::second,
            {at_least<1>, "WARNING: kernel_width should not be less than 3, entered value was: "},
            {is_odd, "WARNING: kernel_width should be odd, entered value was: "}),
    integer("num_viewpoints", -1, half::second,
            {at_least<1>, "WARNING: num_viewpoints should not be less than 1, entered value was: "}),
    integer(
        "image_dep_seg_thresh", 0, half::second,
        {in_byte_range,
         "WARNING: image_dep_seg_thresh should not be less than 0 or more than 255, entered value was: "}),
    integer("kmeans_max_iters", 10000, half::second,
            {at_least<1>, "WARNING: kmeans_max_iters should not be less than 1, entered value was: "}),
    integer("sf_ml_bootstrap_iters", 1, half::second,
            {at_least<1>, "WARNING: sf_ml_bootstrap_iters should not be less than 1, entered value was: "}),
    integer("hosf_azimuth_bins", 4, half::second,
            {at_least<1>, "WARNING: hosf_azimuth_bins should not be less than 1, entered value was: "}),
    integer("hosf_altitude_bins", 4, half::second,
            {at_least<1>, "WARNING: hosf_altitude_bins should not be less than 1, entered value was: "}),
    integer("hosf_x_cells", 3, half::second,
            {at_least<1>, "WARNING: hosf_x_cells should not be less than 1, entered value was: "}),
    integer("hosf_y_cells", 3, half::second,
            {at_least<1>, "WARNING: hosf_y_cells should not be less than 1, entered value was: "}),
    replacing(
        integer("hosf_cell_width", 11, half::second,
                {at_least<1>, "WARNING: hosf_cell_width should not be less than 1, entered value was: "})),
    replacing(
        integer("hosf_cell_height", 11, half::second,
                {at_least<1>, "WARNING: hosf_cell_height should not be less than 1, entered value was: "})),
    integer("svm_crossfolds", 5, half::second,
            {at_least<1>, "WARNING: svm_crossfolds should not be less than 1, entered value was: "}),
    integer("svm_grid_iterations", 1, half::second,
            {at_least<1>, "WARNING: svm_grid_iterations should not be less than 1, entered value was: "}),
    integer("svm_num_chi2_kernels", 1, half::second,
            {at_least<1>, "WARNING: svm_num_chi2_kernels should not be less than 1, entered value was: "}),

    real("dep_seg_thresh", 0, half::first,
         {at_least<0>, "WARNING: Invalid value for dep_seg_thresh: ", echo::number}),
    untested(real("x_search_expansion", 1, half::first)),
    untested(real("y_search_expansion", 1, half::first)),
    real("ratio", -1, half::second, {between_0_and_1, "WARNING: Ratio not between 0 and 1: "}),
    real("feature_ratio", -1, half::second,
         {between_0_and_1, "WARNING: feature_ratio not between 0 and 1: "}),
    real("training_ratio", 0, half::second,
         {above_0, "WARNING: training_ratio must be greater than 0, and less than 1, entered value was: ",
          echo::number}),
    real("detector_threshold", 0.5, half::second,
         {from_0_to_1, "WARNING: detector_threshold should be between 0 and 1, entered value was: "}),
    real("sf_pyramid_scale_factor", 0.5, half::second,
         {above_0, "WARNING: sf_pyramid_scale_factor should be greater than 0, entered value was: "}),
    real("brightness_constancy_likelihood_decay", -1, half::second,
         {below_0,
          "WARNING: brightness_constancy_likelihood_decay should be less than 0, entered value was: "}),
    real("frame_interval", 0, half::second,
         {above_0, "WARNING: frame_interval should be greater than 0, entered value was: "}),
    real("trajectory_threshold", 1000, half::second,
         {above_0, "WARNING: trajectory_threshold should be greater than 0, entered value was: "}),
    real("sf_patch_ssd_gate", 100000, half::second,
         {above_0, "WARNING: sf_patch_ssd_gate should be greater than 0, entered value was: "}),
    real("ip_downsampling", 1, half::second,
         {above_0, "WARNING: ip_downsampling should be greater than 0, entered value was: "}),
    real("image_gaussian_noise_stddev", 1, half::second,
         {at_least<0>, "WARNING: image_gaussian_noise_stddev should not be negative, entered value was: "}),
    real("image_impulse_noise_level", 0.01, half::second,
         {at_least<0>, "WARNING: image_impulse_noise_level should not be negative, entered value was: "}),
    real("kmeans_min_change", 0, half::second,
         {at_least<0>, "WARNING: kmeans_min_change should not be negative, entered value was: "}),
    real("sf_ml_training_fraction", 0, half::second,
         {at_least<0>, "WARNING: sf_ml_training_fraction should not be negative, entered value was: "},
         {below_1, "WARNING: sf_ml_training_fraction should not be more than 1, entered value was: "}),
    real("bilateral_value_variance", 0, half::second,
         {above_0, "WARNING: bilateral_value_variance should not be negative, entered value was: "}),
    real("sfml_noise_train_sample_rate", 1, half::second,
         {above_0, "WARNING: sfml_noise_train_sample_rate should not be less than 0, entered value was: "}),

    special("closing_kernel", half::first, set_closing_kernel, release_kernel),
    special("ip_step", half::first, append_text, release_texts),
    special("haar_setting", half::first, append_haar_setting, release<std::vector<haar_setting>>),
    special("scale", half::second, append_scale, release<std::vector<scale>>),
    special("stereo_setting", half::second, append_stereo_setting, release<std::vector<stereo_setting>>),
    special("object_particle_upper_bounds", half::second, set_doubles, release_doubles),
    special("object_particle_lower_bounds", half::second, set_doubles, release_doubles),
    special("value_particle_upper_bounds", half::second, set_doubles, release_doubles),
    special("value_particle_lower_bounds", half::second, set_doubles, release_doubles),
    special("value_dynamics_matrix", half::second, set_doubles, release_doubles),
    special("object_dynamics_matrix", half::second, set_doubles, release_doubles),
    special("sample", half::second, append_sample, release<std::vector<sample>>),
    special("class_vector", half::none, nullptr, release_doubles),
    special("model_size", half::second, set_model_size, release_doubles),
    special("location_noise", half::second, set_doubles, release_doubles),
    special("scale_noise", half::second, set_scale_noise, release_doubles),
    special("bumblebee_params", half::first, append_bumblebee_params, release_cameras),
    special("classifier_detector_roi", half::second, set_classifier_detector_roi, release_rectangle),
    special("classifier_detector_neighbours", half::second, set_classifier_detector_neighbours, release_ints),
    special("model_pose_limits", half::second, set_model_pose_limits, release_doubles),
    special("model_loc", half::first, append_model_loc, release_texts),
    special("extrinsic_camera_params", half::first, append_euler_extrinsics, release_cameras),
    special("extrinsic_camera_params_q", half::first, append_quaternion_extrinsics, release_cameras),
    special("pixel_sizes", half::first, append_pixel_size, release<std::vector<std::pair<double, double>>>),
    special("sf_gt_disp_loc", half::first, append_text, release_texts),
    special("object_noise_level", half::second, set_doubles, release_doubles),
    special("value_noise_level", half::second, set_doubles, release_doubles),
    special("camera_proj_mats", half::second, append_projection_matrix, release_cameras),
    special("colour_model_locs", half::first, append_text, release_texts),
    special("projection_offsets", half::first, append_projection_offsets, release_cameras),
    special("camera_space_transform", half::second, append_space_transform, release_cameras),
    special("colour_model_limits", half::second, set_doubles, release_doubles),
    special("kernel_vals", half::second, set_kernel_vals, release_floats),
    special("sequence_lengths", half::second, append_sequence_length, release_ints),
    special("kmeans_hierarchy_ratios", half::second, set_floats, release_floats),
    special("precomputed_of_paths", half::first, append_text, release_texts),
    special("mahalanobis_covariance", half::second, set_mahalanobis_covariance, release_doubles),
    replacing(special("svm_multi_kernel_lengths", half::second, set_svm_multi_kernel_lengths, release_ints)),
    special("surface_normal_imgs", half::first, append_text, release_texts),
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
