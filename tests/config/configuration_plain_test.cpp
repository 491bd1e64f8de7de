#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tests/config/store_access.h"

using std::string;
using zorv::configuration;

namespace {

/// The number at the start of a text, printed.
string number_in(const string& text) {
    std::ostringstream out;
    out << std::atof(text.c_str());
    return out.str();
}

/// Values on both sides of the bounds of a key.
struct edges {
    const char* accepted;
    const char* refused;
};

const edges at_least_1 = {"1 200x", "0 -5 abc"};
const edges at_least_0 = {"0 12", "-1"};
const edges odd = {"1 5", "0 -3"};
const edges byte = {"0 255", "-1 256"};
const edges not_negative = {"0 0.25 inf", "-0.001 nan"};
const edges above_0 = {"1e-9 5", "0 -1 nan x"};
const edges below_0 = {"-0.5", "0 1 nan"};
const edges between_0_and_1 = {"0.001 0.999", "0 1 nan x"};
const edges from_0_to_1 = {"0 1 0.75", "-0.01 1.01 nan"};
const edges fraction = {"0 0.999", "-0.5 nan"};

struct number_case {
    const char* key;
    edges values;
    const char* refusal;
    bool shows_number = false;
};

const number_case number_cases[] = {
    {"classes", at_least_1, "the number of classes was not greater than 0: "},
    {"x_subregions", at_least_1, "the number of x subregions was not greater than 0: "},
    {"y_subregions", at_least_1, "the number of y subregions was not greater than 0: "},
    {"dep_seg_thresh", not_negative, "Invalid value for dep_seg_thresh: ", true},
    {"trees", at_least_1, "Number of trees less than 1: "},
    {"ratio", between_0_and_1, "Ratio not between 0 and 1: "},
    {"feature_ratio", between_0_and_1, "feature_ratio not between 0 and 1: "},
    {"object_hypothesis_dimensions", at_least_1,
     "Object_hypothesis_dimensions must be greater than 0, value specified was: "},
    {"value_hypothesis_dimensions", at_least_1,
     "value_hypothesis_dimensions must be greater than 0, value specified was: "},
    {"object_num_particles", at_least_1,
     "number of object particles should be greater than 0, entered value was: "},
    {"value_num_particles", at_least_1,
     "number of value particles should be greater than 0, entered value was: "},
    {"detector_threshold", from_0_to_1, "detector_threshold should be between 0 and 1, entered value was: "},
    {"sf_pyramid_levels", at_least_0,
     "sf_pyramid_levels should be greater than or equal to 0, entered value was: "},
    {"sf_birth_rate", at_least_0, "sf_birth_rate should not be less than 0, entered value was: "},
    {"sf_max_noise_loops", at_least_0, "sf_max_noise_loops should not be less than 0, entered value was: "},
    {"sf_gt_pos_kinect_start", at_least_0,
     "sf_gt_pos_kinect_start should not be less than 0, entered value was: "},
    {"sf_patch_size", at_least_0, "sf_patch_size should not be less than 0, entered value was: "},
    {"kernel_width", odd, "kernel_width should not be less than 3, entered value was: "},
    {"num_viewpoints", at_least_1, "num_viewpoints should not be less than 1, entered value was: "},
    {"image_dep_seg_thresh", byte,
     "image_dep_seg_thresh should not be less than 0 or more than 255, entered value was: "},
    {"kmeans_max_iters", at_least_1, "kmeans_max_iters should not be less than 1, entered value was: "},
    {"sf_ml_bootstrap_iters", at_least_1,
     "sf_ml_bootstrap_iters should not be less than 1, entered value was: "},
    {"hosf_azimuth_bins", at_least_1, "hosf_azimuth_bins should not be less than 1, entered value was: "},
    {"hosf_altitude_bins", at_least_1, "hosf_altitude_bins should not be less than 1, entered value was: "},
    {"hosf_x_cells", at_least_1, "hosf_x_cells should not be less than 1, entered value was: "},
    {"hosf_y_cells", at_least_1, "hosf_y_cells should not be less than 1, entered value was: "},
    {"hosf_cell_width", at_least_1, "hosf_cell_width should not be less than 1, entered value was: "},
    {"hosf_cell_height", at_least_1, "hosf_cell_height should not be less than 1, entered value was: "},
    {"svm_crossfolds", at_least_1, "svm_crossfolds should not be less than 1, entered value was: "},
    {"svm_grid_iterations", at_least_1, "svm_grid_iterations should not be less than 1, entered value was: "},
    {"svm_num_chi2_kernels", at_least_1,
     "svm_num_chi2_kernels should not be less than 1, entered value was: "},
    {"sfml_noise_train_sample_rate", above_0,
     "sfml_noise_train_sample_rate should not be less than 0, entered value was: "},
    {"sf_pyramid_scale_factor", above_0,
     "sf_pyramid_scale_factor should be greater than 0, entered value was: "},
    {"brightness_constancy_likelihood_decay", below_0,
     "brightness_constancy_likelihood_decay should be less than 0, entered value was: "},
    {"frame_interval", above_0, "frame_interval should be greater than 0, entered value was: "},
    {"trajectory_threshold", above_0, "trajectory_threshold should be greater than 0, entered value was: "},
    {"sf_patch_ssd_gate", above_0, "sf_patch_ssd_gate should be greater than 0, entered value was: "},
    {"ip_downsampling", above_0, "ip_downsampling should be greater than 0, entered value was: "},
    {"image_gaussian_noise_stddev", not_negative,
     "image_gaussian_noise_stddev should not be negative, entered value was: "},
    {"image_impulse_noise_level", not_negative,
     "image_impulse_noise_level should not be negative, entered value was: "},
    {"kmeans_min_change", not_negative, "kmeans_min_change should not be negative, entered value was: "},
    {"sf_ml_training_fraction", fraction,
     "sf_ml_training_fraction should not be negative, entered value was: "},
    {"bilateral_value_variance", above_0,
     "bilateral_value_variance should not be negative, entered value was: "},
    {"output_parameters", at_least_1,
     "Number of output parameters must be greater than 0, entered value was: ", true},
    {"output_bitmap", at_least_1,
     "output_bitmap must be greater than or equal to 0, and less than128, entered value was: ", true},
    {"crossvalidation_iterations", at_least_1,
     "crossvalidation_iterations must be greater than or equal to 0, entered value was: ", true},
    {"classifier_detector_max_scales", at_least_1,
     "classifier_detector_max_scales must be greater than or equal to 0, entered value was: ", true},
    {"training_ratio", above_0,
     "training_ratio must be greater than 0, and less than 1, entered value was: ", true},
};

const std::set<string> replacing_keys = {"sf_ml_holistic_mean",
                                         "sf_ml_holistic_var",
                                         "sf_ml_holistic_color_hist",
                                         "sf_ml_local_mean",
                                         "sf_ml_local_var",
                                         "sf_ml_local_color_hist",
                                         "sf_ml_local_mean_per_view",
                                         "sf_ml_local_var_per_view",
                                         "sf_ml_local_ssd",
                                         "sf_ml_holistic_mean_per_view",
                                         "sf_ml_holistic_var_per_view",
                                         "sf_ml_holistic_ssd",
                                         "sf_ml_pixel_vals",
                                         "sf_ml_pixel_norm_vals",
                                         "sf_ml_pixel_mean",
                                         "sf_ml_pixel_var",
                                         "sf_ml_pixel_gradient",
                                         "sf_ml_pixel_gabor",
                                         "hosf_indie_orie",
                                         "hosf_proj_flows",
                                         "hosf_rot_inv",
                                         "hosf_rot_inv_biggest",
                                         "sf_ml_dummy",
                                         "hosf_rot_roll_subregions",
                                         "sf_ml_cost_and_grad",
                                         "surface_normal_consistency",
                                         "output_parameters",
                                         "hosf_cell_width",
                                         "hosf_cell_height",
                                         "mode",
                                         "cc_eval_type",
                                         "value_fitness_type",
                                         "classifier_file",
                                         "sf_estimator",
                                         "sf_results_loc",
                                         "distance_function"};

}  // namespace

TEST(PlainKeys, NumbersMeetTheirBounds) {
    for (const number_case& c : number_cases) {
        const string initial = text_of(open_store(), c.key);
        for (const string& value : words(c.values.accepted)) {
            open_store store;
            EXPECT_EQ(warnings(store, {c.key + ("=" + value)}), "") << c.key << " " << value;
            EXPECT_EQ(text_of(store, c.key), number_in(value)) << c.key;
        }
        for (const string& value : words(c.values.refused)) {
            open_store store;
            EXPECT_EQ(warnings(store, {c.key + ("=" + value)}),
                      string("WARNING: ") + c.refusal + (c.shows_number ? number_in(value) : value) + "\n");
            EXPECT_EQ(text_of(store, c.key), initial) << c.key << " " << value;
        }
    }
}

TEST(PlainKeys, SomeNumbersHaveASecondTest) {
    configuration store;
    EXPECT_EQ(
        warnings(store, {"kernel_width=4", "sf_ml_training_fraction=1", "sf_ml_training_fraction=1e3x"}),
        "WARNING: kernel_width should be odd, entered value was: 4\n"
        "WARNING: sf_ml_training_fraction should not be more than 1, entered value was: 1\n"
        "WARNING: sf_ml_training_fraction should not be more than 1, entered value was: 1e3x\n");
    EXPECT_EQ(value_of<int>(store, "kernel_width"), 3);
    EXPECT_EQ(value_of<double>(store, "sf_ml_training_fraction"), 0.0);
}

TEST(PlainKeys, IntegersStopAtTheEndsOfTheirRange) {
    configuration store;
    EXPECT_EQ(
        warnings(store,
                 {"trees=99999999999999999999", "svm_crossfolds=4294967297", "output_bitmap=-5000000000"}),
        "WARNING: output_bitmap must be greater than or equal to 0, and less than128, entered value was: "
        "-2147483648\n");
    EXPECT_EQ(value_of<int>(store, "trees"), std::numeric_limits<int>::max());
    EXPECT_EQ(value_of<int>(store, "svm_crossfolds"), std::numeric_limits<int>::max());
}

TEST(PlainKeys, SearchExpansionsTakeEverything) {
    configuration store;
    EXPECT_EQ(warnings(store, {"x_search_expansion=2", "x_search_expansion=-3", "x_search_expansion=7.5z",
                               "y_search_expansion=nan", "y_search_expansion=word"}),
              "");
    EXPECT_EQ(value_of<double>(store, "x_search_expansion"), 7.5);
    EXPECT_EQ(value_of<double>(store, "y_search_expansion"), 0.0);
}

TEST(PlainKeys, BooleansTakeFourWords) {
    const std::map<string, std::pair<string, string>> own_words = {
        {"use_classification_tracker", {"Unrecognised value for use_classification_tracker: ", ""}},
        {"use_object_tracker", {"Unrecognised value for use_object_tracker: ", ""}},
        {"interpolate", {"Interpolate parameter not 1,0,true or false: ", ""}},
        {"uniform", {"Uniform parameter not 1,0,true or false: ", ""}},
        {"rotationally_invariant", {"Rotationally invariant parameter not 1,0,true or false: \"", "\""}}};
    for (const auto& record : open_store().parameters) {
        if (record.kind != configuration::param_bool) {
            continue;
        }
        const string key = record.name;
        open_store store;
        const bool initial = value_of<bool>(store, key);
        const auto own = own_words.find(key);
        const auto [refusal, closing] =
            own != own_words.end() ? own->second
                                   : std::pair(key + " parameter not 1,0,true or false: \"", string("\""));
        EXPECT_EQ(warnings(store, {key + "=True", key + "="}),
                  "WARNING: " + refusal + "True" + closing + "\nWARNING: " + refusal + closing + "\n");
        EXPECT_EQ(value_of<bool>(store, key), initial) << key;
        // A value equal to the default does not count as given.
        const string same = initial ? "1" : "0";
        const string same_word = initial ? "true" : "false";
        EXPECT_EQ(
            warnings(store, {key + "=" + same, key + "=" + same_word, key + (initial ? "=false" : "=true")}),
            "");
        EXPECT_EQ(value_of<bool>(store, key), !initial) << key;
        const bool replaces = replacing_keys.count(key) != 0;
        EXPECT_EQ(warnings(store, {key + "=" + same}), repeated(key, replaces));
        EXPECT_EQ(value_of<bool>(store, key), replaces == initial) << key;
    }
}

TEST(PlainKeys, RepeatedNumbersKeepTheFirstOrReplaceIt) {
    for (const number_case& c : number_cases) {
        const string key = c.key;
        const string first = words(c.values.accepted).back();
        const string second = words(c.values.accepted).front();
        const bool replaces = replacing_keys.count(key) != 0;
        open_store store;
        warnings(store, {key + "=" + first});
        EXPECT_EQ(warnings(store, {key + "=" + second}),
                  key == "output_parameters"
                      ? "WARNING: output_parameters encountered multiple times in config file "
                        "(using new one anyway). Ignore this for multi-classifier systems.\n"
                      : repeated(key, replaces));
        EXPECT_EQ(text_of(store, key), number_in(replaces ? second : first));
    }
    configuration store;
    EXPECT_EQ(warnings(store, {"sf_patch_size=3", "sf_patch_size=4"}), "")
        << "the default does not count as given";
}

TEST(PlainKeys, TextsComeFromTheirLists) {
    const string fitness =
        "fitness_interpolator fitness_function_brightness_consistency fitness_function_patch_ssd "
        "fitness_function_learned_bc ff_linear_bc ff_gc ff_linear_gc ff_ofc fitness_function_learned_bc_inverse "
        "fitness_function_brightness_consistency_inverse";
    const struct {
        string key, accepted, refusal, closing;
    } cases[] = {
        {"mode",
         "train test crossvalidate live pss model_builder model_viewer model_recognition scene_flow_demo "
         "scene_flow_viewer trajectory_viewer scene_flow_ml_train colour_constancy_eval cc_noise_eval cc_full_eval",
         "WARNING: unrecognised mode: \"", "\"\n"},
        {"features", "lbp hog hof hos", "WARNING: unrecognised features: \"", "\"\n"},
        {"classifier_type", "rdf nn svm gp", "WARNING: unrecognised classifier_type: \"", "\"\n"},
        {"cc_eval_type", "clean noisy outlier", "WARNING: unrecognised cc_eval_type: \"",
         "\"\nWARNING: recognised types are clean, noisy and outlier\n"},
        {"object_tracker_type", "particle_filter kalman_filter",
         "WARNING: Unrecognised object_tracker_type specified: ", "\n"},
        {"value_tracker_type", "particle_filter kalman_filter",
         "WARNING: Unrecognised value_tracker_type specified: ", "\n"},
        {"object_fitness_type", fitness, "WARNING: Unrecognised object_fitness_type specified: ", "\n"},
        {"value_fitness_type", fitness, "WARNING: Unrecognised value_fitness_type specified: ", "\n"},
        {"object_peak_extractor", "mean median meanshift",
         "WARNING: object_peak_extractor should be mean, median or meanshift, entered value was: ", "\n"},
        {"value_peak_extractor", "mean median meanshift",
         "WARNING: value_peak_extractor should be mean, median or meanshift, entered value was: ", "\n"},
        {"setup_file_location", "a.txt .txt",
         "WARNING: setup_file_location does not have a .txt extension: ", "\n"},
    };
    for (const auto& c : cases) {
        const std::vector<string> accepted = words(c.accepted);
        for (const string& word : accepted) {
            open_store store;
            EXPECT_EQ(warnings(store, {c.key + "=" + word}), "") << c.key;
            EXPECT_EQ(text_of(store, c.key), word);
        }
        open_store store;
        for (const string word : {"other", "TEST", "a.TXT", "meanx", "a.txt2"}) {
            EXPECT_EQ(warnings(store, {c.key + "=" + word}), c.refusal + word + c.closing);
        }
        // The old value stays when a repeated line is refused, whatever the policy.
        const bool replaces = replacing_keys.count(c.key) != 0;
        warnings(store, {c.key + "=" + accepted[0]});
        EXPECT_EQ(warnings(store, {c.key + "=" + "other"}),
                  repeated(c.key, replaces) + (replaces ? c.refusal + "other" + c.closing : ""));
        EXPECT_EQ(text_of(store, c.key), accepted[0]);
        warnings(store, {c.key + "=" + accepted[1]});
        EXPECT_EQ(text_of(store, c.key), accepted[replaces]);
    }
}

TEST(PlainKeys, FreeTextsDifferInTheirPolicyOnly) {
    for (const char* key :
         {"object_extractor", "object_detector", "sf_gt_loc", "cluster_type", "filter_type", "feature_path",
          "bootstrapping_feature_input", "sf_ml_classifier_output", "sf_estimator", "sf_results_loc",
          "distance_function", "depth_camera_config", "svm_type", "svm_kernel"}) {
        open_store store;
        const bool replaces = replacing_keys.count(key) != 0;
        const string line = string(key) + "=";
        EXPECT_EQ(warnings(store, {line + text_of(store, key), line + "any thing", line + "x"}),
                  repeated(key, replaces));
        EXPECT_EQ(text_of(store, key), replaces ? "x" : "any thing");
    }
}

TEST(PlainKeys, ClassifierFileIsStoredWithOrWithoutExtension) {
    configuration store;
    EXPECT_EQ(
        warnings(store, {"classifier_file=trees.xml", "classifier_file=a.long", "classifier_file=.abc"}),
        repeated("classifier_file", true) +
            "WARNING: Classifier file does not have a .xxx extension: a.long\n" +
            repeated("classifier_file", true));
    EXPECT_EQ(value_of<string>(store, "classifier_file"), ".abc");
    for (const char* key : {"setup_file_location", "classifier_file"}) {
        try {
            configuration fresh;
            fresh.set_param(key, "abc");
            ADD_FAILURE() << key;
        } catch (const std::out_of_range& e) {
            EXPECT_STREQ(e.what(), "invalid string position");
        }
    }
}
