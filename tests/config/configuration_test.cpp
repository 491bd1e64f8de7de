#include "zorv_tools/config/configuration.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
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
    const open_store store;
    int true_flags = 0;
    for (const auto& record : store.parameters) {
        true_flags += record.kind == 2 && *static_cast<bool*>(record.value);
        if (record.kind == -1) {
            EXPECT_EQ(*static_cast<void**>(record.value), nullptr) << record.name;
        }
    }
    EXPECT_EQ(true_flags, 9);
    EXPECT_EQ(value_of<string>(store, "svm_kernel"), "rbf");
    EXPECT_EQ(value_of<string>(store, "depth_camera_config"), "videos/scene_flow/Kinect/dep_param.txt");
    EXPECT_EQ(value_of<int>(store, "kmeans_max_iters"), 10000);
    EXPECT_EQ(value_of<int>(store, "classes"), -1);
    EXPECT_EQ(value_of<double>(store, "image_impulse_noise_level"), 0.01);
    EXPECT_EQ(value_of<double>(store, "ratio"), -1.0);
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
    open_store store;
    const stream_capture errors(std::cerr);
    for (const char* key : {"mode", "classes", "dep_seg_thresh", "filter_sf_weights_3d", "sf_do_resampling",
                            "bumblebee_params", "closing_kernel", "model_loc"}) {
        store.set_param2(key, "1", store.index_of(key));
    }
    string expected;
    for (const char* key : {"mode", "classes", "dep_seg_thresh", "filter_sf_weights_3d", "sf_do_resampling",
                            "bumblebee_params", "closing_kernel", "model_loc"}) {
        expected += unrecognised(key, "1");
    }
    EXPECT_EQ(errors.text(), expected);
    for (const char* key : {"trees", "svm_crossfolds"}) {
        store.set_param2(key, "7", store.index_of(key));
        EXPECT_EQ(value_of<int>(store, key), 7);
    }
    store.set_param2("sf_write_flows", "0", store.index_of("sf_write_flows"));
    EXPECT_FALSE(value_of<bool>(store, "sf_write_flows"));
    store.set_param2("camera_proj_mats", "1", store.index_of("camera_proj_mats"));
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
