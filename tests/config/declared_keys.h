#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "tests/config/store_access.h"
#include "zorv_tools/core/text.h"

/// What the tests expect of one key of the store.
struct declared_key {
    std::string name;
    int kind;
    /// f: a key of the first half of the chain, n: without a branch, r: the last line of the key wins, u: without a warning.
    std::string flags;
    std::string default_text;
};

/// All keys in their order.
inline std::vector<declared_key> declared_keys() {
    using zorv::configuration;
    // Kind, usual default and keys, each as name, name:flags or name:flags:default.
    const std::tuple<int, const char*, const char*> tables[] = {
        {configuration::param_bool, "false",
         R"(use_classification_tracker:f use_object_tracker:f interpolate:f uniform:f rotationally_invariant:f
            sf_do_resampling:f:true sf_multiply_prior:f sf_normalise_weights:f:true
            sf_noise_based_on_weight:f:true sf_randomly_spread_missing:f sf_ray_resampling:f:true
            sf_projection_scoring:f sf_two_stage_pf:f:true sf_smoothness_weighting:f sf_image_plane:f:true
            sf_inner_noise_loop:f sf_exponential_cost:f:true sf_motion_only:f sf_propagate_velocities:f
            sf_ray_resample_all_cameras:f sf_interpolate_pixels:f sf_weight_prev_pos_conformancy:f
            sf_no_noise_on_best_per_ray:f:true sf_dont_copy_neighbour_rays:f sf_favour_small_velocs:f
            sf_favour_skin_colour:f sf_forward_and_back:f sf_forward_est:f sf_write_traj:f sf_write_flows::true
            deinterlace_input:f sf_occlusion_aware:f empty_clusters_at_boundary:f filter_sf_vals_3d:f
            filter_sf_weights_3d:f filter_sf_2d acc_classifier_averaging spotting_classifier
            accumulation_classifier sf_ml_holistic_mean:r sf_ml_holistic_var:r sf_ml_holistic_color_hist:r
            sf_ml_local_mean:r sf_ml_local_var:r sf_ml_local_color_hist:r sf_ml_local_mean_per_view:r
            sf_ml_local_var_per_view:r sf_ml_local_ssd:r sf_ml_holistic_mean_per_view:r
            sf_ml_holistic_var_per_view:r sf_ml_holistic_ssd:r sf_ml_pixel_vals:r sf_ml_pixel_norm_vals:r
            sf_ml_pixel_mean:r sf_ml_pixel_var:r sf_ml_pixel_gradient:r sf_ml_pixel_gabor:r hosf_indie_orie:r
            hosf_proj_flows:r hosf_rot_inv:r hosf_rot_inv_biggest:r sf_ml_dummy:r hosf_rot_roll_subregions:r
            sf_ml_cost_and_grad:r surface_normal_consistency:r)"},
        {configuration::param_string, "",
         R"(mode:fr classifier_file:fr features:f classifier_type:f setup_file_location:f object_tracker_type
            object_fitness_type value_tracker_type value_fitness_type:r value_peak_extractor
            object_peak_extractor object_extractor:f object_detector:f sf_estimator:fr sf_gt_loc:f
            sf_results_loc:fr cluster_type:f filter_type:f feature_path:f distance_function:fr
            bootstrapping_feature_input:f sf_ml_classifier_output:f cc_eval_type:fr
            depth_camera_config:f:videos/scene_flow/Kinect/dep_param.txt svm_type:f:c svm_kernel:f:rbf)"},
        {configuration::param_int, "0",
         R"(classes:f:-1 x_subregions:f:-1 trees::-1 y_subregions:f:-1 closing_iterations:n
            object_hypothesis_dimensions value_num_particles object_num_particles value_hypothesis_dimensions
            output_parameters:r:1 output_bitmap::-1 crossvalidation_iterations classifier_detector_max_scales
            sf_pyramid_levels sf_birth_rate sf_max_noise_loops sf_gt_pos_kinect_start sf_patch_size::3
            kernel_width::3 num_viewpoints::-1 image_dep_seg_thresh kmeans_max_iters::10000
            sf_ml_bootstrap_iters::1 hosf_azimuth_bins::4 hosf_altitude_bins::4 hosf_x_cells::3 hosf_y_cells::3
            hosf_cell_width:r:11 hosf_cell_height:r:11 svm_crossfolds::5 svm_grid_iterations::1
            svm_num_chi2_kernels::1)"},
        {configuration::param_double, "0",
         R"(dep_seg_thresh:f x_search_expansion:fu:1 y_search_expansion:fu:1 ratio::-1 feature_ratio::-1
            training_ratio detector_threshold::0.5 sf_pyramid_scale_factor::0.5
            brightness_constancy_likelihood_decay::-1 frame_interval trajectory_threshold::1000
            sf_patch_ssd_gate::100000 ip_downsampling::1 image_gaussian_noise_stddev::1
            image_impulse_noise_level::0.01 kmeans_min_change sf_ml_training_fraction bilateral_value_variance
            sfml_noise_train_sample_rate::1)"},
        {configuration::param_special, "null",
         R"(closing_kernel:f ip_step:f haar_setting:f scale stereo_setting object_particle_upper_bounds
            object_particle_lower_bounds value_particle_upper_bounds value_particle_lower_bounds
            value_dynamics_matrix object_dynamics_matrix sample class_vector:n model_size location_noise
            scale_noise bumblebee_params:f classifier_detector_roi classifier_detector_neighbours
            model_pose_limits model_loc:f extrinsic_camera_params:f extrinsic_camera_params_q:f pixel_sizes:f
            sf_gt_disp_loc:f object_noise_level value_noise_level camera_proj_mats colour_model_locs:f
            projection_offsets:f camera_space_transform colour_model_limits kernel_vals sequence_lengths
            kmeans_hierarchy_ratios precomputed_of_paths:f mahalanobis_covariance svm_multi_kernel_lengths
            surface_normal_imgs:f)"},
    };
    std::vector<declared_key> result;
    for (const auto& [kind, usual_default, keys] : tables) {
        for (const std::string& word : zorv::tokenise(keys)) {
            const texts parts = split(word + "::", ":");
            result.push_back({parts[0], kind, parts[1], parts[2].empty() ? usual_default : parts[2]});
        }
    }
    return result;
}
