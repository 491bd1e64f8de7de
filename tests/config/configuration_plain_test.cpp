#include <cstdlib>
#include <limits>
#include <map>
#include <stdexcept>

#include "tests/config/declared_keys.h"
#include "tests/config/value_text.h"

using std::string;
using zorv::configuration;

namespace {

/// The number at the start of a text, printed.
string number_in(const string& value) {
    return text(std::atof(value.c_str()));
}

/// What a plain key of the kind holds when it took the value.
string stored(int kind, const string& value) {
    if (kind == configuration::param_bool) {
        return value == "1" || value == "true" ? "true" : "false";
    }
    return kind == configuration::param_string ? value : number_in(value);
}

const string output_parameters_repeated =
    "output_parameters encountered multiple times in config file (using new one anyway). Ignore this for "
    "multi-classifier systems.";

/// The sentences of a pattern, which shows the key as %k and a value as %v, or as %n when it is turned into a number.
texts refusal(string pattern, const string& key, const string& value) {
    zorv::find_and_replace_all(pattern, "%k", key);
    zorv::find_and_replace_all(pattern, "%v", value);
    zorv::find_and_replace_all(pattern, "%n", number_in(value));
    return split(pattern, " ! ");
}

/// keys / accepted values / refused values / sentences. The other booleans have the rows of their defaults.
const char* const rules = R"(
classes / 1 200x / 0 -5 abc / the number of classes was not greater than 0: %v
x_subregions / 1 200x / 0 -5 abc / the number of x subregions was not greater than 0: %v
y_subregions / 1 200x / 0 -5 abc / the number of y subregions was not greater than 0: %v
trees / 1 200x / 0 -5 abc / Number of trees less than 1: %v
object_hypothesis_dimensions / 1 2 / 0 -5 / Object_hypothesis_dimensions must be greater than 0, value specified was: %v
value_hypothesis_dimensions / 1 2 / 0 -5 / value_hypothesis_dimensions must be greater than 0, value specified was: %v
object_num_particles / 1 2 / 0 -5 / number of object particles should be greater than 0, entered value was: %v
value_num_particles / 1 2 / 0 -5 / number of value particles should be greater than 0, entered value was: %v
num_viewpoints kmeans_max_iters sf_ml_bootstrap_iters hosf_azimuth_bins hosf_altitude_bins hosf_x_cells hosf_y_cells hosf_cell_width hosf_cell_height svm_crossfolds svm_grid_iterations svm_num_chi2_kernels / 1 7 / 0 -5 / %k should not be less than 1, entered value was: %v
output_parameters / 1 2 / 0 -5 abc / Number of output parameters must be greater than 0, entered value was: %n
output_bitmap / 1 200 / 0 -5 abc / %k must be greater than or equal to 0, and less than128, entered value was: %n
crossvalidation_iterations classifier_detector_max_scales / 1 2 / 0 abc / %k must be greater than or equal to 0, entered value was: %n
sf_pyramid_levels / 0 12 / -1 / %k should be greater than or equal to 0, entered value was: %v
sf_birth_rate sf_max_noise_loops sf_gt_pos_kinect_start sf_patch_size / 0 12 / -1 / %k should not be less than 0, entered value was: %v
kernel_width / 1 5 / 0 -3 / %k should not be less than 3, entered value was: %v
kernel_width / 1 5 / 4 / %k should be odd, entered value was: %v
image_dep_seg_thresh / 0 255 / -1 256 / %k should not be less than 0 or more than 255, entered value was: %v
dep_seg_thresh / 0 0.25 inf / -0.001 nan / Invalid value for %k: %n
image_gaussian_noise_stddev image_impulse_noise_level kmeans_min_change / 0 0.25 inf / -0.001 nan / %k should not be negative, entered value was: %v
sf_ml_training_fraction / 0 0.999 / -0.5 nan / %k should not be negative, entered value was: %v
sf_ml_training_fraction / 0 0.999 / 1 1e3x / %k should not be more than 1, entered value was: %v
bilateral_value_variance / 1e-9 5 / 0 -1 nan x / %k should not be negative, entered value was: %v
sfml_noise_train_sample_rate / 1e-9 5 / 0 -1 nan x / %k should not be less than 0, entered value was: %v
sf_pyramid_scale_factor frame_interval trajectory_threshold sf_patch_ssd_gate ip_downsampling / 1e-9 5 / 0 -1 nan x / %k should be greater than 0, entered value was: %v
training_ratio / 1e-9 5 / 0 -1 nan x / %k must be greater than 0, and less than 1, entered value was: %n
brightness_constancy_likelihood_decay / -0.5 / 0 1 nan / %k should be less than 0, entered value was: %v
ratio / 0.001 0.999 / 0 1 nan x / Ratio not between 0 and 1: %v
feature_ratio / 0.001 0.999 / 0 1 nan x / %k not between 0 and 1: %v
detector_threshold / 0 1 0.75 / -0.01 1.01 nan / %k should be between 0 and 1, entered value was: %v
mode / train test crossvalidate live pss model_builder model_viewer model_recognition scene_flow_demo scene_flow_viewer trajectory_viewer scene_flow_ml_train colour_constancy_eval cc_noise_eval cc_full_eval / other TEST a.TXT meanx a.txt2 / unrecognised mode: "%v"
features / lbp hog hof hos / other TEST a.TXT meanx a.txt2 / unrecognised features: "%v"
classifier_type / rdf nn svm gp / other TEST a.TXT meanx a.txt2 / unrecognised classifier_type: "%v"
cc_eval_type / clean noisy outlier / other TEST a.TXT meanx a.txt2 / unrecognised cc_eval_type: "%v" ! recognised types are clean, noisy and outlier
object_tracker_type value_tracker_type / particle_filter kalman_filter / other TEST a.TXT meanx a.txt2 / Unrecognised %k specified: %v
object_fitness_type value_fitness_type / fitness_interpolator fitness_function_brightness_consistency fitness_function_patch_ssd fitness_function_learned_bc ff_linear_bc ff_gc ff_linear_gc ff_ofc fitness_function_learned_bc_inverse fitness_function_brightness_consistency_inverse / other TEST a.TXT meanx a.txt2 / Unrecognised %k specified: %v
object_peak_extractor value_peak_extractor / mean median meanshift / other TEST a.TXT meanx a.txt2 / %k should be mean, median or meanshift, entered value was: %v
setup_file_location / a.txt .txt / other TEST a.TXT meanx a.txt2 / %k does not have a .txt extension: %v
classifier_file / a.bc .abc
x_search_expansion y_search_expansion / nan word -3 7.5z
object_extractor object_detector sf_gt_loc cluster_type filter_type feature_path bootstrapping_feature_input sf_ml_classifier_output sf_estimator sf_results_loc distance_function depth_camera_config svm_type svm_kernel / x any-thing
use_classification_tracker use_object_tracker / 0 false 1 true / True 2 / Unrecognised value for %k: %v
interpolate / 0 false 1 true / True 2 / Interpolate parameter not 1,0,true or false: %v
uniform / 0 false 1 true / True 2 / Uniform parameter not 1,0,true or false: %v
rotationally_invariant / 0 false 1 true / True 2 / Rotationally invariant parameter not 1,0,true or false: "%v"
false / 0 false 1 true / True 2 / %k parameter not 1,0,true or false: "%v"
true / 1 true 0 false / True 2 / %k parameter not 1,0,true or false: "%v")";

}  // namespace

TEST(PlainKeys, MeetTheirRulesAndKeepTheFirstOrReplaceIt) {
    std::multimap<string, texts> rules_by_key;
    for (const string& row : split(rules, "\n")) {
        const texts columns = split(row, " / ");
        for (const string& key : split(columns[0], " ")) {
            rules_by_key.emplace(key, columns);
        }
    }
    for (const declared_key& key : declared_keys()) {
        SCOPED_TRACE(key.name);
        const string line = key.name + "=";
        const bool replaces = key.flags.find_first_of("ru") != string::npos;
        const auto [begin, end] =
            rules_by_key.equal_range(rules_by_key.count(key.name) ? key.name : key.default_text);
        EXPECT_EQ(begin == end, key.kind == configuration::param_special || key.flags == "n");
        for (auto rule = begin; rule != end; ++rule) {
            const texts accepted = split(rule->second.at(1), " ");
            const texts refused = rule->second.size() == 2 ? texts() : split(rule->second[2], " ");
            for (const string& value : accepted) {
                open_store store;
                EXPECT_EQ(warnings(store, {line + value}), texts());
                EXPECT_EQ(plain_text(store, key.name), stored(key.kind, value));
            }
            open_store store;
            for (const string& value : refused) {
                EXPECT_EQ(warnings(store, {line + value}), refusal(rule->second.at(3), key.name, value));
                EXPECT_EQ(plain_text(store, key.name), key.default_text) << value;
            }
            if (!key.default_text.empty()) {
                warnings(store, {line + key.default_text});
            }
            EXPECT_EQ(warnings(store, {line + accepted.back()}), texts())
                << "the default does not count as given";
            const string again =
                key.name == "output_parameters" ? output_parameters_repeated : repeated(key.name, replaces);
            EXPECT_EQ(warnings(store, {line + accepted.front()}), key.flags == "fu" ? texts() : texts{again});
            const string current = stored(key.kind, replaces ? accepted.front() : accepted.back());
            EXPECT_EQ(plain_text(store, key.name), current);
            if (!refused.empty()) {
                warnings(store, {line + refused.front()});
                EXPECT_EQ(plain_text(store, key.name), current) << "whatever the policy";
            }
        }
    }
}

TEST(PlainKeys, IntegersAreDecimalAndStopAtTheEndsOfTheirRange) {
    configuration store;
    EXPECT_EQ(
        warnings(store, {"trees=99999999999999999999", "svm_crossfolds=4294967297", "classes=010",
                         "x_subregions=0x11", "output_bitmap=-5000000000"}),
        (texts{
            "the number of x subregions was not greater than 0: 0x11",
            "output_bitmap must be greater than or equal to 0, and less than128, entered value was: -2147483648"}));
    EXPECT_EQ(value_of<int>(store, "trees"), std::numeric_limits<int>::max());
    EXPECT_EQ(value_of<int>(store, "svm_crossfolds"), std::numeric_limits<int>::max());
    EXPECT_EQ(value_of<int>(store, "classes"), 10);
}

TEST(PlainKeys, FilesNeedRoomForAnExtensionButNotAllHaveOne) {
    configuration store;
    const string again = repeated("classifier_file", true);
    EXPECT_EQ(warnings(store, {"classifier_file=trees.xml", "ab.c", ".abc", "a.long"}),
              (texts{again, again, again, "Classifier file does not have a .xxx extension: a.long"}));
    EXPECT_EQ(value_of<string>(store, "classifier_file"), "a.long");
    for (const char* key : {"setup_file_location", "classifier_file", "model_loc"}) {
        EXPECT_THAT([key] { configuration().set_param(key, "abc"); },
                    testing::ThrowsMessage<std::out_of_range>("invalid string position"));
    }
}
