#include "zorv_tools/config/configuration.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <type_traits>

#include "tests/config/store_access.h"

using std::string;
using zorv::configuration;

static_assert(!std::is_copy_constructible_v<configuration> && !std::is_copy_assignable_v<configuration>);
static_assert(std::has_virtual_destructor_v<configuration>);

TEST(Configuration, DeclaresItsKeysKindByKind) {
    const open_store store;
    std::map<int, std::size_t> counts;
    string kinds;
    for (const auto& record : store.parameters) {
        ++counts[record.kind];
        const char kind = "sidbt"[record.kind + 1];
        if (kinds.empty() || kinds.back() != kind) {
            kinds += kind;
        }
    }
    EXPECT_EQ(counts, (std::map<int, std::size_t>{{-1, 39}, {0, 32}, {1, 19}, {2, 65}, {3, 26}}));
    EXPECT_EQ(kinds, "btids");
    EXPECT_EQ(store.parameters.front().name, "use_classification_tracker");
    EXPECT_EQ(store.parameters.back().name, "surface_normal_imgs");
    EXPECT_EQ(store.index_of("x_search_expansion"), 65 + 26 + 32 + 1);
}

TEST(Configuration, StartsWithTheDefaults) {
    // All others are false, 0, empty or null.
    const std::vector<string> listed = words(
        "sf_do_resampling 1 sf_normalise_weights 1 sf_noise_based_on_weight 1 sf_ray_resampling 1 "
        "sf_two_stage_pf 1 sf_image_plane 1 sf_exponential_cost 1 sf_no_noise_on_best_per_ray 1 "
        "sf_write_flows 1 classes -1 x_subregions -1 trees -1 y_subregions -1 output_parameters 1 "
        "output_bitmap -1 sf_patch_size 3 kernel_width 3 num_viewpoints -1 kmeans_max_iters 10000 "
        "sf_ml_bootstrap_iters 1 hosf_azimuth_bins 4 hosf_altitude_bins 4 hosf_x_cells 3 "
        "hosf_y_cells 3 hosf_cell_width 11 hosf_cell_height 11 svm_crossfolds 5 "
        "svm_grid_iterations 1 svm_num_chi2_kernels 1 x_search_expansion 1 y_search_expansion 1 "
        "ratio -1 feature_ratio -1 detector_threshold 0.5 sf_pyramid_scale_factor 0.5 "
        "brightness_constancy_likelihood_decay -1 trajectory_threshold 1000 sf_patch_ssd_gate "
        "100000 ip_downsampling 1 image_gaussian_noise_stddev 1 image_impulse_noise_level 0.01 "
        "sfml_noise_train_sample_rate 1 depth_camera_config "
        "videos/scene_flow/Kinect/dep_param.txt svm_type c svm_kernel rbf");
    std::map<string, string> others;
    for (std::size_t i = 0; i < listed.size(); i += 2) {
        others[listed[i]] = listed[i + 1];
    }
    const open_store store;
    for (const auto& record : store.parameters) {
        const auto other = others.find(record.name);
        const string neutral = record.kind == configuration::param_special  ? "null"
                               : record.kind == configuration::param_string ? ""
                                                                            : "0";
        EXPECT_EQ(text_of(store, record.name), other == others.end() ? neutral : other->second)
            << record.name;
    }
}

TEST(Configuration, EveryKeyIsInTheManual) {
    std::ifstream in(ZORV_TEST_SOURCE_ROOT "/docs/configuration.md");
    const string manual((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (const auto& record : open_store().parameters) {
        EXPECT_NE(manual.find("`" + record.name + "`"), string::npos) << record.name;
    }
}

TEST(Configuration, GetParamReportsUnknownKeysAndLeavesTheOutput) {
    const configuration store;
    int number = 77;
    const stream_capture errors(std::cerr);
    EXPECT_FALSE(store.get_param("Trees", number));
    EXPECT_EQ(number, 77);
    EXPECT_EQ(errors.text(), "Couldn't get parameter Trees\n");
    EXPECT_TRUE(store.get_param(string("trees\0x", 7), number)) << "a name ends at its first NUL";
    EXPECT_EQ(number, -1);
    auto* list = reinterpret_cast<std::vector<double>*>(&number);
    EXPECT_TRUE(store.get_param("model_size", list));
    EXPECT_EQ(list, nullptr);
}

TEST(Configuration, AddParamKeepsTheFirstOfAName) {
    open_store store;
    store.add_param("host_count", 5, configuration::param_int);
    store.add_param("host_rate", 0.5, configuration::param_double);
    store.add_param("host_flag", true, configuration::param_bool);
    store.add_param("host_text", string("text"), configuration::param_string);
    const stream_capture errors(std::cerr);
    store.add_param("host_count", string("other"), configuration::param_string);
    store.add_param("svm_type", 1, configuration::param_int);
    EXPECT_EQ(errors.text(),
              "Matching parameter named \"host_count\" found at position i during add.\n"
              "Matching parameter named \"svm_type\" found at position i during add.\n");
    EXPECT_EQ(store.parameters.size(), 185u);
    EXPECT_EQ(value_of<int>(store, "host_count"), 5);
    EXPECT_EQ(value_of<double>(store, "host_rate"), 0.5);
    EXPECT_TRUE(value_of<bool>(store, "host_flag"));
    EXPECT_EQ(value_of<string>(store, "host_text"), "text");
    EXPECT_EQ(value_of<string>(store, "svm_type"), "c");
    // Declaring compares whole names, unlike looking them up.
    store.add_param(string("host_count\0x", 12), 6, configuration::param_int);
    EXPECT_EQ(store.parameters.size(), 186u);
}

TEST(Configuration, CellsFollowTheKindWhateverTheDefaultIs) {
    open_store store;
    store.add_param("a", 2, configuration::param_double);
    store.add_param("b", "literal", configuration::param_string);
    store.add_param("c", 0, configuration::param_string);
    EXPECT_EQ(value_of<double>(store, "a"), 2.0);
    EXPECT_EQ(value_of<string>(store, "b"), "literal");
    EXPECT_EQ(value_of<string>(store, "c"), "");
}

TEST(Configuration, InitialisingAgainOnlyReportsDuplicates) {
    open_store store;
    store.set_param("trees", "4");
    const stream_capture errors(std::cerr);
    store.initialise();
    string expected;
    for (const auto& record : store.parameters) {
        expected += "Matching parameter named \"" + record.name + "\" found at position i during add.\n";
    }
    EXPECT_EQ(store.parameters.size(), 181u);
    EXPECT_EQ(errors.text(), expected);
    EXPECT_EQ(value_of<int>(store, "trees"), 4);
}

namespace {

/// A derived store as hosts write them, with special keys that it releases itself.
class host_store : public open_store {
public:
    host_store() {
        add_param("host_list", static_cast<void*>(new std::vector<int>(3)), param_special);
        add_param("host_empty", nullptr, param_special);
    }
    ~host_store() override {
        for (const char* name : {"host_list", "host_empty"}) {
            void** cell = static_cast<void**>(parameters[static_cast<std::size_t>(index_of(name))].value);
            delete static_cast<std::vector<int>*>(*cell);
            delete cell;
        }
    }

protected:
    void initialise() override { ADD_FAILURE() << "reached from the base constructor"; }
};

}  // namespace

TEST(Configuration, DestructorWarnsOfForeignSpecialKeysAndLeavesThemAlone) {
    const stream_capture errors(std::cerr);
    {
        open_store plain;
        host_store store;
        EXPECT_EQ(list_of<int>(store, "host_list")->size(), 3u);
    }
    const string start = "WARNING: Unrecognised special parameter, unsure how to clear: ";
    EXPECT_EQ(errors.text(), start + "host_list\n" + start + "host_empty\n");
}

TEST(Configuration, SetParam2KnowsTheSecondHalfOnly) {
    const std::vector<string> listed = words(
        "mode features object_extractor object_detector sf_estimator sf_gt_loc sf_results_loc "
        "cluster_type filter_type feature_path dep_seg_thresh y_search_expansion "
        "x_search_expansion closing_kernel classifier_type distance_function "
        "bootstrapping_feature_input sf_ml_classifier_output cc_eval_type depth_camera_config "
        "svm_type svm_kernel use_classification_tracker use_object_tracker classifier_file "
        "classes x_subregions y_subregions setup_file_location model_loc sf_gt_disp_loc "
        "colour_model_locs ip_step surface_normal_imgs precomputed_of_paths haar_setting "
        "bumblebee_params extrinsic_camera_params extrinsic_camera_params_q projection_offsets "
        "pixel_sizes interpolate uniform rotationally_invariant sf_do_resampling "
        "sf_multiply_prior sf_normalise_weights sf_noise_based_on_weight "
        "sf_randomly_spread_missing sf_ray_resampling sf_projection_scoring "
        "sf_smoothness_weighting sf_inner_noise_loop sf_motion_only sf_propagate_velocities "
        "sf_interpolate_pixels sf_weight_prev_pos_conformancy sf_image_plane sf_exponential_cost "
        "sf_ray_resample_all_cameras sf_two_stage_pf sf_no_noise_on_best_per_ray "
        "sf_dont_copy_neighbour_rays sf_favour_small_velocs sf_favour_skin_colour "
        "sf_forward_and_back sf_forward_est sf_write_traj deinterlace_input sf_occlusion_aware "
        "empty_clusters_at_boundary filter_sf_vals_3d filter_sf_weights_3d");
    std::set<string> elsewhere(listed.begin(), listed.end());
    elsewhere.insert({"closing_iterations", "class_vector"});
    open_store store;
    const stream_capture output(std::cout);
    for (const auto& record : open_store().parameters) {
        const stream_capture errors(std::cerr);
        store.set_param2(record.name, "1", store.index_of(record.name));
        EXPECT_EQ(errors.text() == unrecognised(record.name, "1"), elsewhere.count(record.name) != 0)
            << record.name;
    }
    EXPECT_EQ(value_of<int>(store, "trees"), 1);
    EXPECT_EQ(value_of<int>(store, "classes"), -1);
    EXPECT_TRUE(list_of<std::vector<double>*>(store, "camera_proj_mats")->empty());
}

TEST(Configuration, PositionsOutsideTheStoreAreRangeErrors) {
    open_store store;
    const stream_capture errors(std::cerr);
    for (const char* key : {"trees", "sf_write_flows", "object_tracker_type", "scale", "model_size",
                            "sequence_lengths", "", "__free"}) {
        for (const int index : {181, -1}) {
            try {
                store.set_param2(key, "1", index);
                ADD_FAILURE() << key;
            } catch (const std::out_of_range& e) {
                EXPECT_STREQ(e.what(), "invalid vector<T> subscript") << key;
            }
        }
    }
}
