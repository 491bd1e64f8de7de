#include "zorv_tools/config/configuration.h"

#include <stdexcept>
#include <type_traits>

#include "tests/config/declared_keys.h"
#include "tests/config/value_text.h"

using std::string;
using zorv::configuration;

static_assert(!std::is_copy_constructible_v<configuration> && !std::is_copy_assignable_v<configuration>);
static_assert(std::has_virtual_destructor_v<configuration>);

TEST(Configuration, StartsWithItsKeysInOrderAtTheirDefaults) {
    const open_store store;
    const std::vector<declared_key> keys = declared_keys();
    ASSERT_EQ(store.parameters.size(), 181u);
    ASSERT_EQ(keys.size(), 181u);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const declared_key& key = keys[i];
        EXPECT_EQ(store.parameters[i].name, key.name);
        EXPECT_EQ(store.parameters[i].kind, key.kind) << key.name;
        EXPECT_EQ(plain_text(store, key.name), key.default_text) << key.name;
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
    const stream_capture errors(std::cerr);
    store.add_param("host_count", string("other"), configuration::param_string);
    EXPECT_EQ(errors.text(), "Matching parameter named \"host_count\" found at position i during add.\n");
    EXPECT_EQ(value_of<int>(store, "host_count"), 5);
    // Declaring compares whole names, unlike looking them up.
    store.add_param(string("host_count\0x", 12), 6, configuration::param_int);
    EXPECT_EQ(store.parameters.size(), 183u);
}

TEST(Configuration, CellsFollowTheKindWhateverTheDefaultIs) {
    open_store store;
    store.add_param("host_rate", 2, configuration::param_double);
    store.add_param("host_flag", true, configuration::param_bool);
    store.add_param("host_text", "literal", configuration::param_string);
    store.add_param("host_none", 0, configuration::param_string);
    EXPECT_EQ(value_of<double>(store, "host_rate"), 2.0);
    EXPECT_TRUE(value_of<bool>(store, "host_flag"));
    EXPECT_EQ(value_of<string>(store, "host_text"), "literal");
    EXPECT_EQ(value_of<string>(store, "host_none"), "");
}

TEST(Configuration, InitialisingAgainOnlyReportsDuplicates) {
    open_store store;
    store.set_param("trees", "4");
    const stream_capture errors(std::cerr);
    store.initialise();
    string expected;
    for (const declared_key& key : declared_keys()) {
        expected += "Matching parameter named \"" + key.name + "\" found at position i during add.\n";
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
            delete value_of<std::vector<int>*>(*this, name);
            delete static_cast<void**>(parameters[static_cast<std::size_t>(index_of(name))].value);
        }
    }
};

}  // namespace

TEST(Configuration, DestructorWarnsOfForeignSpecialKeysAndLeavesThemAlone) {
    const stream_capture errors(std::cerr);
    {
        open_store plain;
        host_store store;
        EXPECT_EQ(value_of<std::vector<int>*>(store, "host_list")->size(), 3u);
    }
    const string start = "WARNING: Unrecognised special parameter, unsure how to clear: ";
    EXPECT_EQ(errors.text(), start + "host_list\n" + start + "host_empty\n");
}

TEST(Configuration, SetParam2KnowsTheSecondHalfOnly) {
    open_store store;
    const stream_capture output(std::cout);
    for (const declared_key& key : declared_keys()) {
        const stream_capture errors(std::cerr);
        store.set_param2(key.name, "1", store.index_of(key.name));
        const bool elsewhere = key.flags.find_first_of("fn") != string::npos;
        EXPECT_EQ(sentences(errors.text()) == texts{unrecognised(key.name, "1")}, elsewhere) << key.name;
    }
    EXPECT_EQ(value_of<int>(store, "trees"), 1);
}

TEST(Configuration, PositionsOutsideTheStoreAreRangeErrors) {
    open_store store;
    const stream_capture errors(std::cerr);
    for (const char* key : {"trees", "sf_write_flows", "object_tracker_type", "scale", "model_size",
                            "sequence_lengths", "", "__free"}) {
        for (const int index : {181, -1}) {
            EXPECT_THAT([&] { store.set_param2(key, "1", index); },
                        testing::ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"))
                << key;
        }
    }
}
