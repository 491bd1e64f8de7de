#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <opencv2/core/types.hpp>
#include <stdexcept>
#include <utility>

#include "tests/config/store_access.h"
#include "tests/support/report.h"

using std::string;
using testing::ElementsAre;
using zorv::configuration;

TEST(ListKeys, ListsOfNumbersKeepTheFirst) {
    for (const string key :
         {"object_noise_level", "value_noise_level", "colour_model_limits", "object_particle_upper_bounds",
          "object_particle_lower_bounds", "value_particle_upper_bounds", "value_particle_lower_bounds",
          "value_dynamics_matrix", "object_dynamics_matrix", "location_noise"}) {
        configuration store;
        EXPECT_EQ(warnings(store, {key + "=1.5||x|-2e1y|", key + "=3"}), repeated(key));
        EXPECT_THAT(*list_of<double>(store, key), ElementsAre(1.5, 0, 0, -20, 0)) << key;
        configuration other;
        warnings(other, {key + "="});
        EXPECT_THAT(*list_of<double>(other, key), ElementsAre(0)) << key;
    }
}

TEST(ListKeys, ListsOfFloatsAreNarrowed) {
    configuration store;
    const stream_capture output(std::cout);
    EXPECT_EQ(warnings(store, {"kernel_vals=0.1|2", "kernel_vals=3", "kmeans_hierarchy_ratios=0.1|1e300",
                               "kmeans_hierarchy_ratios=1"}),
              repeated("kernel_vals") + repeated("kmeans_hierarchy_ratios"));
    EXPECT_EQ(output.text(), "setting kernel vals\n");
    EXPECT_THAT(*list_of<float>(store, "kernel_vals"), ElementsAre(0.1f, 2.0f));
    EXPECT_THAT(*list_of<float>(store, "kmeans_hierarchy_ratios"),
                ElementsAre(0.1f, std::numeric_limits<float>::infinity()));
}

TEST(ListKeys, ReplacedKernelLengthsStayReadable) {
    configuration store;
    EXPECT_EQ(warnings(store, {"svm_multi_kernel_lengths=1|2"}), "");
    const std::vector<int>* const old = list_of<int>(store, "svm_multi_kernel_lengths");
    EXPECT_EQ(warnings(store, {"svm_multi_kernel_lengths=99999999999|x"}),
              repeated("svm_multi_kernel_lengths", true));
    EXPECT_THAT(*old, ElementsAre(1, 2));
    EXPECT_THAT(*list_of<int>(store, "svm_multi_kernel_lengths"),
                ElementsAre(std::numeric_limits<int>::max(), 0));
}

TEST(ListKeys, CovarianceIsRefilledUpToABadField) {
    configuration store;
    const string key = "mahalanobis_covariance";
    const string end = "i_helper(string) : reading in failed, when reading value of \"";
    EXPECT_EQ(warnings(store, {key + "=1|2|3"}), "");
    const auto* const list = list_of<double>(store, key);
    EXPECT_EQ(warnings(store, {key + "=4x|5"}),
              "WARNING: mahalanobis_covariance already encountered in config. Overwriting\n");
    EXPECT_THAT(*list, ElementsAre(4, 5));
    const stream_capture errors(std::cerr);
    EXPECT_REPORT(store.set_param(key, "6|7||8"), "IO_helpers", "i_helper", end + "\"");
    EXPECT_THAT(*list, ElementsAre(6, 7));
}

TEST(ListKeys, SequenceLengthsGrowLineByLine) {
    configuration store;
    const string key = "sequence_lengths";
    const string refusal = "WARNING: sequence_lengths specified was less than 1\n";
    EXPECT_EQ(warnings(store, {key + "=0"}), refusal);
    ASSERT_NE(list_of<int>(store, key), nullptr);
    EXPECT_EQ(warnings(store, {key + "=5|6", key + "=-1", key + "=1"}), refusal);
    EXPECT_REPORT(store.set_param(key, "many"), "IO_helpers", "i_helper",
                  "i_helper(string) : reading in failed, when reading value of \"many\"");
    EXPECT_THAT(*list_of<int>(store, key), ElementsAre(5, 1));
}

TEST(ListKeys, ChecksRemoveTheList) {
    const string model = "WARNING: Input format for model size is ";
    const string sizes =
        "WARNING: The x,y,z sizes and number of channels for the model must all be greater than or equal to 1\n";
    const string steps = "WARNING: The voxel steps in x,y,z must be positive nonzero numbers\n";
    const string scales =
        "WARNING: An incorrect scale was entered for model_size, all scales must be greater than 0\n";
    const string limits = "WARNING: One of the min limits for model_pose_limits was >= the max limit\n";
    const string noise =
        "WARNING: An incorrect value was entered in scale_noise, all values must be greater than or equal to 0\n";
    const struct {
        string key, refused, warning, accepted;
        std::size_t size;
    } cases[] = {
        {"model_size", "1|1|1|1|1|1|1",
         model + "\"x_size|x_step|y_size|y_step|z_size|z_step|channels|scale1...\"\n",
         "1|0.1|1|0.1|1|0.1|1|0.1", 8},
        {"model_size", "0.5|1|1|1|1|1|1|1", sizes, "2|1|2|1|2|1|2|1|inf", 9},
        {"model_size", "1|0|1|1|1|1|0|0", sizes, "1|1|1|1|1|1|1|1", 8},
        {"model_size", "1|1|nan|1|1|1|1|1", sizes, "1|1|1|1|1|1|1|1", 8},
        {"model_size", "1|1|1|0|1|1|1|0", steps, "1|1|1|1|1|1|1|1", 8},
        {"model_size", "1|1|1|1|1|nan|1|1", steps, "1|1|1|1|1|1|1|1", 8},
        {"model_size", "1|1|1|1|1|1|1|1|0", scales, "1|1|1|1|1|1|1|1", 8},
        {"model_pose_limits", "1|2", model + "\"min_limit1|max_limit1|step1|...\"\n", "1|2|-1", 3},
        {"model_pose_limits", "1|2|1|3|3|1|5|4|1", limits, "1|2|0|-4|-3|x", 6},
        {"model_pose_limits", "nan|2|1", limits, "1|2|nan", 3},
        {"scale_noise", "1|1|1|1|-0.1", noise, "-1|-1|-1|-1|0|nan", 6},
        {"scale_noise", "1|1|1|1|1|-2|-3", noise, "1", 1},
    };
    for (const auto& c : cases) {
        configuration store;
        EXPECT_EQ(warnings(store, {c.key + "=" + c.refused}), c.warning) << c.refused;
        EXPECT_EQ(list_of<double>(store, c.key), nullptr);
        EXPECT_EQ(warnings(store, {c.key + "=" + c.accepted, c.key + "=" + c.refused}), repeated(c.key));
        ASSERT_NE(list_of<double>(store, c.key), nullptr);
        EXPECT_EQ(list_of<double>(store, c.key)->size(), c.size);
    }
}

TEST(ListKeys, DetectorNeighboursAreMended) {
    const string key = "classifier_detector_neighbours";
    const string negative = "WARNING: Negative number found in parameter classifier_detector_neighbours.\n";
    configuration store;
    EXPECT_EQ(warnings(store, {key + "=-1|2|-3", key + "=1|2|3"}), negative + negative + repeated(key));
    EXPECT_THAT(*list_of<int>(store, key), ElementsAre(0, 2, 0));
    configuration other;
    EXPECT_EQ(warnings(other, {key + "=1|-2"}),
              negative +
                  "WARNING: classifier_detector_neighbours should specify the number of neighbours in 3 "
                  "dimensions, but there were 2 entries.\n");
    EXPECT_THAT(*list_of<int>(other, key), ElementsAre(1, 0));
}

TEST(ListKeys, DetectorRegionIsZeroAfterAFailure) {
    const string key = "classifier_detector_roi";
    const string start = "WARNING: classifier_detector_roi ";
    const struct {
        string value, warning;
        cv::Rect rectangle;
    } cases[] = {
        {"1|2|-3|0", "", {1, 2, -3, 0}},
        {"1|2|3",
         start + "requires 4 parameters of the form x|y|width|height, but there were 3 values.\n",
         {}},
        {"-1|2|3|4|5",
         start + "requires 4 parameters of the form x|y|width|height, but there were 5 values.\n",
         {}},
        {"-1|-2|3|4", start + "had a negative x value specified -1.\n", {}},
        {"1|-2|3|4", start + "had a negative y value specified -2.\n", {}},
    };
    for (const auto& c : cases) {
        configuration store;
        EXPECT_EQ(warnings(store, {key + "=" + c.value, key + "=5|6|7|8"}), c.warning + repeated(key));
        EXPECT_EQ(*value_of<cv::Rect*>(store, key), c.rectangle) << c.value;
    }
}

TEST(ListKeys, TextsAreAppendedAsTheyStand) {
    for (const string key : {"ip_step", "surface_normal_imgs", "precomputed_of_paths", "sf_gt_disp_loc",
                             "colour_model_locs", "model_loc"}) {
        configuration store;
        EXPECT_EQ(warnings(store, {key + "=a|b.txt", key + "=.txt", key + "=.txt"}), "");
        EXPECT_THAT(*list_of<string>(store, key), ElementsAre("a|b.txt", ".txt", ".txt")) << key;
    }
    configuration store;
    EXPECT_EQ(warnings(store, {"model_loc=a.TXT", "model_loc=a.txt2"}),
              "WARNING: model_loc does not have a .txt extension: a.TXT\n"
              "WARNING: model_loc does not have a .txt extension: a.txt2\n");
    try {
        store.set_param("model_loc", "txt");
        ADD_FAILURE();
    } catch (const std::out_of_range& e) {
        EXPECT_STREQ(e.what(), "invalid string position");
    }
    EXPECT_EQ(list_of<string>(store, "model_loc"), nullptr);
}

TEST(ListKeys, PixelSizesArePairs) {
    configuration store;
    const string key = "pixel_sizes=";
    const string refusal = "WARNING: Either pixel width or height was not greater than 0 (";
    EXPECT_EQ(
        warnings(store, {key + "0.5", key + "0|1.5", key + "1|-2", key + "x|y"}),
        "WARNING: Format incorrect, pixel_sizes should be entered as \"pixel_width, pixel_height\" (where "
        "clockwise camera rotations are positive), entered value was: \"0.5\"\n" +
            refusal + "0,1.5)\n" + refusal + "1,-2)\n" + refusal + "0,0)\n");
    using pair = std::pair<double, double>;
    EXPECT_EQ(list_of<pair>(store, "pixel_sizes"), nullptr);
    EXPECT_EQ(warnings(store, {key + "0.5|0.25", key + "nan|1|7"}), "");
    const auto& sizes = *list_of<pair>(store, "pixel_sizes");
    ASSERT_EQ(sizes.size(), 2u);
    EXPECT_EQ(sizes[0], pair(0.5, 0.25));
    EXPECT_TRUE(std::isnan(sizes[1].first));
    EXPECT_EQ(sizes[1].second, 1.0);
}
