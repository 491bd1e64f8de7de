#include <gmock/gmock.h>

#include <limits>

#include "tests/config/store_access.h"

using std::string;
using testing::ElementsAre;
using zorv::configuration;

TEST(Scale, IsStoredWhateverTheWarnings) {
    const string format =
        "WARNING: Format incorrect, scales should be entered as \"(samples,radius,scale_factor)\", entered value "
        "was: \"";
    const string radius = "WARNING: Radius not greater than 0: ";
    const string samples = "WARNING: Samples parameter not between 1 and 8*radius (";
    const string factor = "WARNING: scale_factor parameter not greater than 0: ";
    const string all_zero = radius + "0\n" + samples + "0): 0\n" + factor + "0\n";
    const struct {
        string value, warning;
        int samples;
        float radius, factor;
    } cases[] = {
        {"(8,1,1.5)", "", 8, 1, 1.5},
        {"8,1,1.5", format + "8,1,1.5\"\n" + samples + "8): 0\n", 0, 1, 1},
        {"(9,1,1.5)", samples + "8): 9\n", 9, 1, 1.5},
        {"(4,-0.5,-2)", radius + "-0.5\n" + samples + "-4): 4\n" + factor + "-2\n", 4, -0.5, -2},
        {"(1,2,3,4)", "", 1, 2, 3},
        {"(2,1,1", format + "(2,1,1\"\n" + factor + "0\n", 2, 1, 0},
        {"(2,1)", format + "(2,1)\"\n" + radius + "0\n" + samples + "0): 2\n" + factor + "0\n", 2, 0, 0},
        {",,", format + ",,\"\n" + all_zero, 0, 0, 0},
        {"(2)", format + "(2)\"\n" + all_zero, 0, 0, 0},
        {"", format + "\"\n" + all_zero, 0, 0, 0},
    };
    for (const auto& c : cases) {
        configuration store;
        EXPECT_EQ(warnings(store, {"scale=" + c.value}), c.warning);
        const zorv::scale& entry = list_of<zorv::scale>(store, "scale")->at(0);
        EXPECT_THAT(std::make_tuple(entry.samples, entry.radius, entry.scale_factor),
                    testing::FieldsAre(c.samples, c.radius, c.factor))
            << c.value;
    }
    configuration store;
    const string repetition = "WARNING: Repeated occurence of scale \"(8,1,1.5)\" found\n";
    EXPECT_EQ(warnings(store, {"scale=(8,1,1.5)", "scale=(8,1,1.5)"}), repetition);
    EXPECT_EQ(warnings(store, {"scale=(8,1,1.5)", "scale=(8,1,nan)"}), repetition + repetition);
    EXPECT_EQ(list_of<zorv::scale>(store, "scale")->size(), 4u);
}

TEST(StereoSetting, MeetsItsBoundsInOrder) {
    const string min_disp =
        "min_disp must be positive, and less than the image width minus 11, and less than the max disparity: ";
    const struct {
        string value, warning;
    } cases[] = {
        {"7|true|5|false|640|480|64",
         "Format incorrect, stereo settings should be entered as "
         "\"stereo_mask_size|edge_correlation_on|edge_mask_size|back_and_forth_on|width|height|max_disp|min_disp\", "
         "entered value was: \"7|true|5|false|640|480|64\""},
        {"0|1|2|0|0|0|-1|-1", "sms parameter less than 1, or more than 23: 0"},
        {"24|true|5|false|640|480|64|0", "sms parameter less than 1, or more than 23: 24"},
        {"23|1|2|0|0|0|-1|-1", "ec parameter must be true or false, passed value was: 1"},
        {"1|true|2|0|0|0|-1|-1", "ems parameter less than 3, or more than 11: 2"},
        {"1|true|12|0|0|0|-1|-1", "ems parameter less than 3, or more than 11: 12"},
        {"1|false|11|True|0|0|-1|-1",
         "back_and_forth parameter must be true or false, passed value was: True"},
        {"1|true|3|true|0|0|-1|-1", "width parameter less than 1, or more than 1024: 0"},
        {"1|true|3|true|1025|0|-1|-1", "width parameter less than 1, or more than 1024: 1025"},
        {"1|true|3|true|1024|0|-1|-1", "height parameter less than 1, or more than 768: 0"},
        {"1|true|3|true|1024|769|-1|-1", "height parameter less than 1, or more than 768: 769"},
        {"1|true|3|true|100|768|101|-1", "max_disp must be positive, and less than the image width: 101"},
        {"1|true|3|true|100|768|-1|-1", "max_disp must be positive, and less than the image width: -1"},
        {"1|true|3|true|100|768|100|90", min_disp + "100"},
        {"1|true|3|true|100|768|50|51", min_disp + "50"},
        {"1|true|3|true|100|768|50|-1", min_disp + "50"},
        {"1|true|3|true|640|768|241|0",
         "The distance between min and max disparity must be less than 240: 241"},
    };
    configuration store;
    for (const auto& c : cases) {
        EXPECT_EQ(warnings(store, {"stereo_setting=" + c.value}), "WARNING: " + c.warning + "\n");
    }
    EXPECT_EQ(list_of<zorv::stereo_setting>(store, "stereo_setting"), nullptr);
    const string good = "7|true|5|false|640|480|640|400";
    EXPECT_EQ(warnings(store, {"stereo_setting=" + good, "stereo_setting=" + good,
                               "stereo_setting=1|true|3|true|100|1|100|89|surplus"}),
              "WARNING: Repeated occurence of stereo settings \"" + good + "\" found\n");
    const auto& list = *list_of<zorv::stereo_setting>(store, "stereo_setting");
    ASSERT_EQ(list.size(), 2u);
    const zorv::stereo_setting& s = list[0];
    EXPECT_THAT(
        (std::vector<int>{s.width, s.height, s.stereo_mask_size, s.edge_mask_size, s.max_disp, s.min_disp}),
        ElementsAre(640, 480, 7, 5, 640, 400));
    EXPECT_TRUE(s.edge_correlation_on);
    EXPECT_FALSE(s.back_and_forth_on);
    EXPECT_EQ(list[1].min_disp, 89);
    // One field that differs makes a new entry.
    EXPECT_EQ(warnings(store, {"stereo_setting=8|true|5|false|640|480|640|400",
                               "stereo_setting=7|false|5|false|640|480|640|400",
                               "stereo_setting=7|true|6|false|640|480|640|400",
                               "stereo_setting=7|true|5|true|640|480|640|400",
                               "stereo_setting=7|true|5|false|641|480|640|400",
                               "stereo_setting=7|true|5|false|640|481|640|400",
                               "stereo_setting=7|true|5|false|640|480|639|400",
                               "stereo_setting=7|true|5|false|640|480|640|401"}),
              "");
    EXPECT_EQ(list.size(), 10u);
}

TEST(HaarSetting, MeetsItsBoundsInOrder) {
    const struct {
        string value, warning;
    } cases[] = {
        {"a.xml|1|1|1|1",
         "Format incorrect, samples should be entered as "
         "\"cascade_loc|scale_rate|detections|base_width|base_height|extra_settings\", entered value was: "
         "\"a.xml|1|1|1|1\""},
        {"a|-0.5|0|0|0|-1", "scale_rate parameter less than 0: -0.5"},
        {"a|0|0|0|0|-1", "detections parameter less than 1: 0"},
        {"a|0|1|0|0|-1", "base_width parameter less than 1: 0"},
        {"a|0|1|1|0|-1", "base_height less than 1: 0"},
        {"a|0|1|1|1|-1", "extra_settings less than 0 or greater than 15: -1"},
        {"a|0|1|1|1|16", "extra_settings less than 0 or greater than 15: 16"},
    };
    configuration store;
    for (const auto& c : cases) {
        EXPECT_EQ(warnings(store, {"haar_setting=" + c.value}), "WARNING: " + c.warning + "\n");
    }
    EXPECT_EQ(list_of<zorv::haar_setting>(store, "haar_setting"), nullptr);
    EXPECT_EQ(warnings(store, {"haar_setting=a|1.5|2|3|4|15", "haar_setting=a|1.50|2|3|4|15|x",
                               "haar_setting=b|1.5|2|3|4|15", "haar_setting=|nan|1|1|1|0",
                               "haar_setting=a|1|2|3|4|15", "haar_setting=a|1.5|1|3|4|15",
                               "haar_setting=a|1.5|2|1|4|15", "haar_setting=a|1.5|2|3|1|15",
                               "haar_setting=a|1.5|2|3|4|1"}),
              "WARNING: Repeated occurence of scale \"a|1.50|2|3|4|15|x\" found\n");
    const auto& list = *list_of<zorv::haar_setting>(store, "haar_setting");
    ASSERT_EQ(list.size(), 8u);
    EXPECT_THAT(list[0], testing::FieldsAre("a", 1.5, 2, 3, 4, 15));
    EXPECT_EQ(list[1].cascade_loc, "b");
}

TEST(Sample, RefusedLinesStoreNothing) {
    const struct {
        string value, warning;
    } cases[] = {
        {"a.avi|0|0|1|0|1",
         "Format incorrect, samples should be entered as \"location|frame|x1|x2|y1|y2|value1...\", entered value "
         "was: \"a.avi|0|0|1|0|1\""},
        {"a|b|-1|-2|-1|-2|1", "Frame parameter was non numeric (old style sample list?): b"},
        {"a||-1|-2|-1|-2|1", "Frame parameter was non numeric (old style sample list?): "},
        {"a|99999999999|0|0|0|0|1", "Frame parameter was non numeric (old style sample list?): 99999999999"},
        {"a|-2|-1|-2|-1|-2|1", "Frame parameter less than -1: -2"},
        {"a|-1|-1|-2|-1|-2|1", "x1 less than 0: -1"},
        {"a|-1|5|4|-1|-2|1", "x2 (4)  less than x1 (5)"},
        {"a|-1|5|5|-1|-2|1", "y1 less than 0: -1"},
        {"a|-1|5|5|7|6|1", "y2 (6)  less than y1 (7)"},
    };
    configuration store;
    for (const auto& c : cases) {
        EXPECT_EQ(warnings(store, {"sample=" + c.value}), "WARNING: " + c.warning + "\n");
    }
    EXPECT_EQ(list_of<zorv::sample>(store, "sample"), nullptr);
    EXPECT_EQ(list_of<double>(store, "class_vector"), nullptr);
}

TEST(Sample, ValuesGoToTheClassVector) {
    const string refused = "WARNING: class parameter not below number of classes (3): ";
    const struct {
        std::vector<string> lines;
        string warning;
        std::vector<double> classes;
    } cases[] = {
        {{"sample=a.avi|-1|0|10|0|10|1"}, "", {1}},
        {{"sample=a|0|0|0|0|0|1.5|x"},
         "2 parameters in sample but output dimensions specified as 1\n",
         {1.5, 0}},
        {{"output_parameters=2", "sample=a|0|0|0|0|0|1|7", "sample=a|12x|0|0|0|0|"},
         "1 parameters in sample but output dimensions specified as 2\n",
         {1, 7, 0}},
        // A refused value that is not the last stays, one that is the last does not.
        {{"classes=3", "sample=a|0|0|0|0|0|3|1"}, refused + "3\n", {3}},
        {{"classes=3", "sample=a|0|0|0|0|0|2|3.5"}, refused + "3.5\n", {2}},
        {{"classes=3", "sample=a|0|0|0|0|0|nan"}, refused + "nan\n", {}},
        {{"classes=1", "sample=a|0|0|0|0|0|5"}, "", {5}},
        {{"sample=a|0|0|0|0|0|5", "classes=3"}, "", {5}},
    };
    for (const auto& c : cases) {
        configuration store;
        EXPECT_EQ(warnings(store, c.lines), c.warning) << c.lines.back();
        EXPECT_EQ(*list_of<double>(store, "class_vector"), c.classes) << c.lines.back();
    }
    configuration store;
    EXPECT_EQ(
        warnings(store, {"classes=3", "sample=a.avi|-1|1|2|3|4|9", "sample=b|5|1|2|3|4|0", "class_vector=1"}),
        refused + "9\n" + unrecognised("class_vector", "1"));
    const auto& samples = *list_of<zorv::sample>(store, "sample");
    ASSERT_EQ(samples.size(), 2u) << "the record stays when its value is refused";
    EXPECT_THAT(samples[0], testing::FieldsAre("a.avi", -1, 1, 2, 3, 4));
    EXPECT_EQ(samples[1].location, "b");
}

TEST(Sample, MissesRecordsOfADerivedStore) {
    open_store store;
    store.remove("class_vector");
    EXPECT_EQ(warnings(store, {"sample=a|0|0|0|0|0|5"}),
              "WARNING: Parameter class_vector was not found in parameters vector, it must not have been "
              "initialised.\n");
    EXPECT_EQ(list_of<zorv::sample>(store, "sample")->size(), 1u);
    open_store other;
    other.remove("classes");
    EXPECT_EQ(warnings(other, {"sample=a|0|0|0|0|0|5"}), "Couldn't get parameter classes\n");
    EXPECT_EQ(list_of<double>(other, "class_vector")->size(), 1u);
}
