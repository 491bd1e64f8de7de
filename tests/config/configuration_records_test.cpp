#include "tests/config/value_text.h"

using zorv::configuration;

using samples = std::vector<zorv::sample>;
using doubles = std::vector<double>;

TEST(Scale, IsStoredWhateverTheWarnings) {
    // A value of another form is read from the same positions.
    expect_lines<std::vector<zorv::scale>>(R"table(
        scale=(8,1,1.5) => [8|1|1.5]
        scale=(1,2,3,4) => [1|2|3]
        scale=(9,1,0.1) => [9|1|0.100000001490116] ! Samples parameter not between 1 and 8*radius (8): 9
        scale=(4,-0.5,-2) => [4|-0.5|-2] ! Radius not greater than 0: -0.5 ! Samples parameter not between 1 and 8*radius (-4): 4 ! scale_factor parameter not greater than 0: -2
        scale=(8,1,1.5) ; (7,1,1.5) ; (8,1,1.5) => [8|1|1.5 7|1|1.5 8|1|1.5] ! Repeated occurence of scale "(8,1,1.5)" found
        scale=(8,1,1.5) ; (8,2,1.5) ; (8,1,2) ; (8,1,nan) ; (8,1,nan) => [8|1|1.5 8|2|1.5 8|1|2 8|1|nan 8|1|nan]
        scale=(8,1,1) ; (8,1,1) ; (8,1,1) => [8|1|1 8|1|1 8|1|1] ! Repeated occurence of scale "(8,1,1)" found ! Repeated occurence of scale "(8,1,1)" found ! Repeated occurence of scale "(8,1,1)" found
        scale=8,1,1.5 => [0|1|1] ! Format incorrect, scales should be entered as "(samples,radius,scale_factor)", entered value was: "8,1,1.5" ! Samples parameter not between 1 and 8*radius (8): 0
        scale=8,1,1.5) => [0|1|1.5] ! Format incorrect, scales should be entered as "(samples,radius,scale_factor)", entered value was: "8,1,1.5)" ! Samples parameter not between 1 and 8*radius (8): 0
        scale=(2,1,1 => [2|1|0] ! Format incorrect, scales should be entered as "(samples,radius,scale_factor)", entered value was: "(2,1,1" ! scale_factor parameter not greater than 0: 0
        scale=(2,1) => [2|0|0] ! Format incorrect, scales should be entered as "(samples,radius,scale_factor)", entered value was: "(2,1)" ! Radius not greater than 0: 0 ! Samples parameter not between 1 and 8*radius (0): 2 ! scale_factor parameter not greater than 0: 0
        scale=,, => [0|0|0] ! Format incorrect, scales should be entered as "(samples,radius,scale_factor)", entered value was: ",," ! Radius not greater than 0: 0 ! Samples parameter not between 1 and 8*radius (0): 0 ! scale_factor parameter not greater than 0: 0
        scale=(2) => [0|0|0] ! Format incorrect, scales should be entered as "(samples,radius,scale_factor)", entered value was: "(2)" ! Radius not greater than 0: 0 ! Samples parameter not between 1 and 8*radius (0): 0 ! scale_factor parameter not greater than 0: 0
        scale= => [0|0|0] ! Format incorrect, scales should be entered as "(samples,radius,scale_factor)", entered value was: "" ! Radius not greater than 0: 0 ! Samples parameter not between 1 and 8*radius (0): 0 ! scale_factor parameter not greater than 0: 0
    )table");
}

TEST(StereoSetting, IsAppendedWithinItsBoundsUnlessAllItsFieldsAreKnown) {
    expect_lines<std::vector<zorv::stereo_setting>>(R"(
        stereo_setting=7|true|5|false|640|480|64 => null ! Format incorrect, stereo settings should be entered as "stereo_mask_size|edge_correlation_on|edge_mask_size|back_and_forth_on|width|height|max_disp|min_disp", entered value was: "7|true|5|false|640|480|64"
        stereo_setting=0|1|2|0|0|0|-1|-1 => null ! sms parameter less than 1, or more than 23: 0
        stereo_setting=24|true|5|false|640|480|64|0 => null ! sms parameter less than 1, or more than 23: 24
        stereo_setting=23|1|2|0|0|0|-1|-1 => null ! ec parameter must be true or false, passed value was: 1
        stereo_setting=1|true|2|0|0|0|-1|-1 => null ! ems parameter less than 3, or more than 11: 2
        stereo_setting=1|true|12|0|0|0|-1|-1 => null ! ems parameter less than 3, or more than 11: 12
        stereo_setting=1|false|11|True|0|0|-1|-1 => null ! back_and_forth parameter must be true or false, passed value was: True
        stereo_setting=1|true|3|true|0|0|-1|-1 => null ! width parameter less than 1, or more than 1024: 0
        stereo_setting=1|true|3|true|1025|0|-1|-1 => null ! width parameter less than 1, or more than 1024: 1025
        stereo_setting=1|true|3|true|1024|0|-1|-1 => null ! height parameter less than 1, or more than 768: 0
        stereo_setting=1|true|3|true|1024|769|-1|-1 => null ! height parameter less than 1, or more than 768: 769
        stereo_setting=1|true|3|true|100|768|101|-1 => null ! max_disp must be positive, and less than the image width: 101
        stereo_setting=1|true|3|true|100|768|-1|-1 => null ! max_disp must be positive, and less than the image width: -1
        stereo_setting=1|true|3|true|100|768|100|90 => null ! min_disp must be positive, and less than the image width minus 11, and less than the max disparity: 100
        stereo_setting=1|true|3|true|100|768|50|51 => null ! min_disp must be positive, and less than the image width minus 11, and less than the max disparity: 50
        stereo_setting=1|true|3|true|100|768|50|-1 => null ! min_disp must be positive, and less than the image width minus 11, and less than the max disparity: 50
        stereo_setting=1|true|3|true|640|768|241|0 => null ! The distance between min and max disparity must be less than 240: 241
        stereo_setting=7|true|5|false|640|480|640|400 ; 1|false|3|true|100|1|100|89|surplus => [7|true|5|false|640|480|640|400 1|false|3|true|100|1|100|89]
        stereo_setting=7|true|5|false|640|480|640|400 ; 8|true|5|false|640|480|640|400 => [7|true|5|false|640|480|640|400 8|true|5|false|640|480|640|400]
        stereo_setting=7|true|5|false|640|480|640|400 ; 7|false|5|false|640|480|640|400 => [7|true|5|false|640|480|640|400 7|false|5|false|640|480|640|400]
        stereo_setting=7|true|5|false|640|480|640|400 ; 7|true|6|false|640|480|640|400 => [7|true|5|false|640|480|640|400 7|true|6|false|640|480|640|400]
        stereo_setting=7|true|5|false|640|480|640|400 ; 7|true|5|true|640|480|640|400 => [7|true|5|false|640|480|640|400 7|true|5|true|640|480|640|400]
        stereo_setting=7|true|5|false|640|480|640|400 ; 7|true|5|false|641|480|640|400 => [7|true|5|false|640|480|640|400 7|true|5|false|641|480|640|400]
        stereo_setting=7|true|5|false|640|480|640|400 ; 7|true|5|false|640|481|640|400 => [7|true|5|false|640|480|640|400 7|true|5|false|640|481|640|400]
        stereo_setting=7|true|5|false|640|480|640|400 ; 7|true|5|false|640|480|639|400 => [7|true|5|false|640|480|640|400 7|true|5|false|640|480|639|400]
        stereo_setting=7|true|5|false|640|480|640|400 ; 7|true|5|false|640|480|640|401 => [7|true|5|false|640|480|640|400 7|true|5|false|640|480|640|401]
        stereo_setting=7|true|5|false|640|480|640|400 ; 8|true|5|false|640|480|640|400 ; 07|true|5|false|640|480|640|400 => [7|true|5|false|640|480|640|400 8|true|5|false|640|480|640|400] ! Repeated occurence of stereo settings "07|true|5|false|640|480|640|400" found
    )");
}

TEST(HaarSetting, IsAppendedWithinItsBoundsUnlessAllItsFieldsAreKnown) {
    expect_lines<std::vector<zorv::haar_setting>>(R"(
        haar_setting=a|1|1|1|1 => null ! Format incorrect, samples should be entered as "cascade_loc|scale_rate|detections|base_width|base_height|extra_settings", entered value was: "a|1|1|1|1"
        haar_setting=a|-0.5|0|0|0|-1 => null ! scale_rate parameter less than 0: -0.5
        haar_setting=a|0|0|0|0|-1 => null ! detections parameter less than 1: 0
        haar_setting=a|0|1|0|0|-1 => null ! base_width parameter less than 1: 0
        haar_setting=a|0|1|1|0|-1 => null ! base_height less than 1: 0
        haar_setting=a|0|1|1|1|-1 => null ! extra_settings less than 0 or greater than 15: -1
        haar_setting=a|0|1|1|1|16 => null ! extra_settings less than 0 or greater than 15: 16
        haar_setting=a/longer/than/23/characters|1.5|2|3|4|15|x ; |nan|1|1|1|0 => [a/longer/than/23/characters|1.5|2|3|4|15 |nan|1|1|1|0]
        haar_setting=a|1.5|2|3|4|15 ; b|1.5|2|3|4|15 => [a|1.5|2|3|4|15 b|1.5|2|3|4|15]
        haar_setting=a|1.5|2|3|4|15 ; a|1|2|3|4|15 => [a|1.5|2|3|4|15 a|1|2|3|4|15]
        haar_setting=a|1.5|2|3|4|15 ; a|1.5|1|3|4|15 => [a|1.5|2|3|4|15 a|1.5|1|3|4|15]
        haar_setting=a|1.5|2|3|4|15 ; a|1.5|2|1|4|15 => [a|1.5|2|3|4|15 a|1.5|2|1|4|15]
        haar_setting=a|1.5|2|3|4|15 ; a|1.5|2|3|1|15 => [a|1.5|2|3|4|15 a|1.5|2|3|1|15]
        haar_setting=a|1.5|2|3|4|15 ; a|1.5|2|3|4|1 => [a|1.5|2|3|4|15 a|1.5|2|3|4|1]
        haar_setting=a|1.5|2|3|4|15 ; b|1.5|2|3|4|15 ; a|1.50|2|3|4|15|x => [a|1.5|2|3|4|15 b|1.5|2|3|4|15] ! Repeated occurence of scale "a|1.50|2|3|4|15|x" found
    )");
}

TEST(Sample, IsAppendedWithinItsBoundsWhateverItsValues) {
    expect_lines<samples>(R"(
        sample=a|0|0|1|0|1 => null ! Format incorrect, samples should be entered as "location|frame|x1|x2|y1|y2|value1...", entered value was: "a|0|0|1|0|1"
        sample=a|b|-1|-2|-1|-2|1 => null ! Frame parameter was non numeric (old style sample list?): b
        sample=a|99999999999|0|0|0|0|1 => null ! Frame parameter was non numeric (old style sample list?): 99999999999
        sample=a|-2|-1|-2|-1|-2|1 => null ! Frame parameter less than -1: -2
        sample=a|-1|-1|-2|-1|-2|1 => null ! x1 less than 0: -1
        sample=a|-1|5|4|-1|-2|1 => null ! x2 (4)  less than x1 (5)
        sample=a|-1|5|5|-1|-2|1 => null ! y1 less than 0: -1
        sample=a|-1|5|5|7|6|1 => null ! y2 (6)  less than y1 (7)
        classes=3 ; sample=a.avi|-1|1|2|3|4|9 => [a.avi|-1|1|2|3|4] ! class parameter not below number of classes (3): 9
        sample=a/longer/than/23/characters|12x|0|0|0|0|1 ; |0|5|5|7|7|1 => [a/longer/than/23/characters|12|0|0|0|0 |0|5|5|7|7]
    )");
    expect_lines<doubles>("sample=a|-1|5|5|7|6|1 => null ! y2 (6)  less than y1 (7)", "class_vector");
}

TEST(Sample, ValuesGoToTheClassVector) {
    // A refused value that is not the last of its line stays, one that is the last does not.
    expect_lines<doubles>(R"(
        sample=a|-1|0|10|0|10|1 => [1]
        sample=a|0|0|0|0|0|1.5|x => [1.5 0] ! bare: 2 parameters in sample but output dimensions specified as 1
        output_parameters=2 ; sample=a|0|0|0|0|0|1|7 ; a|0|0|0|0|0| => [1 7 0] ! bare: 1 parameters in sample but output dimensions specified as 2
        classes=3 ; sample=a|0|0|0|0|0|3|1 => [3] ! class parameter not below number of classes (3): 3
        classes=3 ; sample=a|0|0|0|0|0|2|3.5 => [2] ! class parameter not below number of classes (3): 3.5
        classes=3 ; sample=a|0|0|0|0|0|nan => [] ! class parameter not below number of classes (3): nan
        classes=1 ; sample=a|0|0|0|0|0|5 => [5]
        sample=a|0|0|0|0|0|5 ; classes=3 => [5]
    )",
                          "class_vector");
}

TEST(Sample, MissesRecordsOfADerivedStore) {
    open_store store;
    store.remove<void*>("class_vector");
    EXPECT_EQ(
        warnings(store, {"sample=a|0|0|0|0|0|5"}),
        texts{
            "Parameter class_vector was not found in parameters vector, it must not have been initialised."});
    EXPECT_EQ(object_text<samples>(store, "sample"), "[a|0|0|0|0|0]");
    open_store other;
    other.remove<int>("classes");
    EXPECT_EQ(warnings(other, {"sample=a|0|0|0|0|0|5"}), texts{"bare: Couldn't get parameter classes"});
    EXPECT_EQ(object_text<doubles>(other, "class_vector"), "[5]");
}
