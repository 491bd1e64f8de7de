#include <opencv2/core/types.hpp>

#include "tests/config/value_text.h"
#include "tests/support/report.h"

using std::string;
using zorv::configuration;

using doubles = std::vector<double>;
using ints = std::vector<int>;

TEST(ListKeys, ListsOfNumbersKeepTheFirst) {
    for (const string& key :
         split("object_noise_level value_noise_level colour_model_limits object_particle_upper_bounds "
               "object_particle_lower_bounds value_particle_upper_bounds value_particle_lower_bounds "
               "value_dynamics_matrix object_dynamics_matrix location_noise",
               " ")) {
        expect_lines<doubles>(key + "=1.5||x|-2e1y|-0.1| ; 3 => [1.5 0 0 -20 -0.1 0] ! " + repeated(key));
        expect_lines<doubles>(key + "= => [0]");
    }
}

TEST(ListKeys, ListsOfFloatsAreNarrowed) {
    const stream_capture output(std::cout);
    for (const string key : {"kernel_vals", "kmeans_hierarchy_ratios"}) {
        expect_lines<std::vector<float>>(key + "=0.1|1e300 ; 3 => [0.100000001490116 inf] ! " +
                                         repeated(key));
    }
    EXPECT_EQ(output.text(), "setting kernel vals\n");
}

TEST(ListKeys, ReplacedKernelLengthsStayReadable) {
    configuration store;
    const string key = "svm_multi_kernel_lengths";
    EXPECT_EQ(warnings(store, {key + "=1|2"}), texts());
    const ints* const old = value_of<ints*>(store, key);
    EXPECT_EQ(warnings(store, {key + "=99999999999|x"}), texts{repeated(key, true)});
    EXPECT_EQ(text(*old), "[1 2]");
    EXPECT_EQ(object_text<ints>(store, key), "[2147483647 0]");
}

TEST(ListKeys, CovarianceIsRefilledUpToABadField) {
    configuration store;
    const string key = "mahalanobis_covariance";
    EXPECT_EQ(warnings(store, {key + "=1|2|3"}), texts());
    const doubles* const list = value_of<doubles*>(store, key);
    EXPECT_EQ(warnings(store, {key + "=4x|5"}),
              texts{"mahalanobis_covariance already encountered in config. Overwriting"});
    EXPECT_EQ(text(*list), "[4 5]");
    const stream_capture errors(std::cerr);
    EXPECT_REPORT(store.set_param(key, "6|7||8"), "IO_helpers", "i_helper",
                  "i_helper(string) : reading in failed, when reading value of \"\"");
    EXPECT_EQ(text(*list), "[6 7]");
}

TEST(ListKeys, SequenceLengthsGrowLineByLine) {
    expect_lines<ints>(R"(
        sequence_lengths=0 => [] ! sequence_lengths specified was less than 1
        sequence_lengths=5|6 ; -1 ; 1 => [5 1] ! sequence_lengths specified was less than 1
    )");
    configuration store;
    EXPECT_REPORT(store.set_param("sequence_lengths", "many"), "IO_helpers", "i_helper",
                  "i_helper(string) : reading in failed, when reading value of \"many\"");
}

TEST(ListKeys, ChecksRemoveTheList) {
    expect_lines<doubles>(R"(
        model_size=1|1|1|1|1|1|1 => null ! Input format for model size is "x_size|x_step|y_size|y_step|z_size|z_step|channels|scale1..."
        model_size=0.5|0|1|1|1|1|1|1 => null ! The x,y,z sizes and number of channels for the model must all be greater than or equal to 1
        model_size=1|1|nan|1|1|1|1|1 => null ! The x,y,z sizes and number of channels for the model must all be greater than or equal to 1
        model_size=1|1|1|1|0|1|1|1 => null ! The x,y,z sizes and number of channels for the model must all be greater than or equal to 1
        model_size=1|1|1|1|1|1|0|0 => null ! The x,y,z sizes and number of channels for the model must all be greater than or equal to 1
        model_size=1|0|1|1|1|1|1|0 => null ! The voxel steps in x,y,z must be positive nonzero numbers
        model_size=1|1|1|0|1|1|1|1 => null ! The voxel steps in x,y,z must be positive nonzero numbers
        model_size=1|1|1|1|1|nan|1|1 => null ! The voxel steps in x,y,z must be positive nonzero numbers
        model_size=1|1|1|1|1|1|1|0 => null ! An incorrect scale was entered for model_size, all scales must be greater than 0
        model_size=1|1|1|1|1|1|1|1|nan => null ! An incorrect scale was entered for model_size, all scales must be greater than 0
        model_size=1|0.1|1|0.1|1|0.1|1|0.1|inf => [1 0.1 1 0.1 1 0.1 1 0.1 inf]
        model_size=1 ; 1|1|1|1|1|1|1|1 ; 2 => [1 1 1 1 1 1 1 1] ! Input format for model size is "x_size|x_step|y_size|y_step|z_size|z_step|channels|scale1..." ! model_size parameter encountered multiple times in config file
        model_pose_limits=1|2|3|4|5 => null ! Input format for model size is "min_limit1|max_limit1|step1|..."
        model_pose_limits=1|2|1|3|3|1|4|5|1 => null ! One of the min limits for model_pose_limits was >= the max limit
        model_pose_limits=2|1|1 ; 1|2|3 ; 2 => [1 2 3] ! One of the min limits for model_pose_limits was >= the max limit ! model_pose_limits parameter encountered multiple times in config file
        model_pose_limits=nan|2|1 => null ! One of the min limits for model_pose_limits was >= the max limit
        model_pose_limits=1|2|0|-4|-3|x => [1 2 0 -4 -3 0]
        scale_noise=1|1|1|1|-0.1 => null ! An incorrect value was entered in scale_noise, all values must be greater than or equal to 0
        scale_noise=1|1|1|1|1|-2|-3 => null ! An incorrect value was entered in scale_noise, all values must be greater than or equal to 0
        scale_noise=1|1|1|1|-1 ; 1 ; 2 => [1] ! An incorrect value was entered in scale_noise, all values must be greater than or equal to 0 ! scale_noise parameter encountered multiple times in config file
        scale_noise=-1|-1|-1|-1|0|nan => [-1 -1 -1 -1 0 nan]
    )");
}

TEST(ListKeys, DetectorNeighboursAreMended) {
    expect_lines<ints>(R"(
        classifier_detector_neighbours=1|2|3 ; 4 => [1 2 3] ! classifier_detector_neighbours parameter encountered multiple times in config file
        classifier_detector_neighbours=-1|2|-3 => [0 2 0] ! Negative number found in parameter classifier_detector_neighbours. ! Negative number found in parameter classifier_detector_neighbours.
        classifier_detector_neighbours=1|2 => [1 2] ! classifier_detector_neighbours should specify the number of neighbours in 3 dimensions, but there were 2 entries.
        classifier_detector_neighbours=1|2|3|4 => [1 2 3 4] ! classifier_detector_neighbours should specify the number of neighbours in 3 dimensions, but there were 4 entries.
    )");
}

TEST(ListKeys, DetectorRegionIsZeroAfterAFailure) {
    expect_lines<cv::Rect>(R"(
        classifier_detector_roi=1|2|-3|0 => [-3 x 0 from (1, 2)]
        classifier_detector_roi=-1|-2|3|4 ; 5|6|7|8 => [0 x 0 from (0, 0)] ! classifier_detector_roi had a negative x value specified -1. ! classifier_detector_roi parameter encountered multiple times in config file
        classifier_detector_roi=1|-2|3|4 => [0 x 0 from (0, 0)] ! classifier_detector_roi had a negative y value specified -2.
        classifier_detector_roi=1|2|3 => [0 x 0 from (0, 0)] ! classifier_detector_roi requires 4 parameters of the form x|y|width|height, but there were 3 values.
        classifier_detector_roi=-1|2|3|4|5 => [0 x 0 from (0, 0)] ! classifier_detector_roi requires 4 parameters of the form x|y|width|height, but there were 5 values.
    )");
}

TEST(ListKeys, TextsAreAppendedAsTheyStand) {
    for (const string key :
         {"ip_step", "surface_normal_imgs", "precomputed_of_paths", "sf_gt_disp_loc", "colour_model_locs"}) {
        expect_lines<texts>(
            key + "=a|b/longer/than/23/chars ; .txt ; .txt => [a|b/longer/than/23/chars .txt .txt]");
    }
    expect_lines<texts>(R"(
        model_loc=a|b/longer/than/23/chars.txt ; .txt ; .txt => [a|b/longer/than/23/chars.txt .txt .txt]
        model_loc=a.TXT ; a.txt2 => null ! model_loc does not have a .txt extension: a.TXT ! model_loc does not have a .txt extension: a.txt2
    )");
}

TEST(ListKeys, PixelSizesArePairs) {
    expect_lines<std::vector<std::pair<double, double>>>(R"(
        pixel_sizes=0.5|0.25 ; nan|1|7 => [0.5|0.25 nan|1]
        pixel_sizes=0.5 => null ! Format incorrect, pixel_sizes should be entered as "pixel_width, pixel_height" (where clockwise camera rotations are positive), entered value was: "0.5"
        pixel_sizes=0|1.5 => null ! Either pixel width or height was not greater than 0 (0,1.5)
        pixel_sizes=1|-2 => null ! Either pixel width or height was not greater than 0 (1,-2)
        pixel_sizes=x|y => null ! Either pixel width or height was not greater than 0 (0,0)
    )");
}
