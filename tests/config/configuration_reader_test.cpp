#include <fstream>
#include <stdexcept>
#include <utility>

#include "tests/config/store_access.h"
#include "tests/support/report.h"
#include "tests/support/temporary_directory.h"

using std::string;
using zorv::configuration;

TEST(ConfigurationReader, TakesTheFirstWordOfALine) {
    const std::pair<string, string> cases[] = {
        {"\n \t\n__a=1", "1"},
        {"__a=1\r\n\r\n__b=2\r\n", "1"},
        {"   __a=1 trailing __a=2 =", "1"},
        {"__a=1\n__a=2\n", "2"},
        {"__a=1\n__a=\n", ""},
        {"// any words = here\n//note\n__a=//x\n//__a=5\n", "//x"},
        {"\v\f__a=1\vx", "1"},
    };
    const temporary_directory folder;
    const stream_capture errors(std::cerr);
    EXPECT_EQ(value_of<int>(configuration(folder.write("file", "")), "trees"), -1);
    for (const auto& [text, a] : cases) {
        EXPECT_EQ(value_of<string>(configuration(folder.write("file", text)), "__a"), a) << text;
        EXPECT_EQ(errors.text(), "") << text;
    }
}

TEST(ConfigurationReader, RefusesLinesThatAreNoAssignment) {
    const temporary_directory folder;
    const string inner = folder.write("inner", "\nbad");
    const string several = "configuration::configure() : line ";
    const string none = "No equals sign found in config file line ";
    const std::pair<string, string> cases[] = {
        {"a=b=c", several + "0 contained more than one equals sign: \"a=b=c\""},
        {"trees=3\n\n__x=long_enough_for_the_heap\na==",
         several + "3 contained more than one equals sign: \"a==\""},
        {"//a=b=c", several + "0 contained more than one equals sign: \"//a=b=c\""},
        {"key = value", none + "0: \"key\""},
        {"bumblebee_params=1|1|1|1|1|1|1\nword more", none + "1: \"word\""},
        {"/ comment", none + "0: \"/\""},
        {"\n\n\nimport=" + inner, none + "1: \"bad\""},
    };
    const stream_capture output(std::cout);
    for (const auto& c : cases) {
        const string path = folder.write("file", c.first);
        EXPECT_REPORT(configuration store(path), "configuration", "configuration::configure(", c.second);
    }
}

TEST(ConfigurationReader, EmptyKeyMeetsTheRangeCheck) {
    const temporary_directory folder;
    EXPECT_THAT([&] { configuration(folder.write("file", "=value")); },
                testing::ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
    // A derived class may declare it, and it is then a boolean like any other.
    open_store store;
    store.add_param("", false, configuration::param_bool);
    EXPECT_EQ(warnings(store, {"=2", "=1", "=0"}),
              (texts{" parameter not 1,0,true or false: \"2\"", repeated("")}));
    EXPECT_TRUE(value_of<bool>(store, ""));
}

TEST(ConfigurationReader, PathsThatCannotBeReadLeaveTheDefaults) {
    const temporary_directory folder;
    char nothing[] = "";
    const stream_capture errors(std::cerr);
    const configuration stores[] = {configuration(string()), configuration(nothing),
                                    configuration(static_cast<char*>(nullptr)),
                                    configuration(folder.path("absent")), configuration(folder.path())};
    EXPECT_EQ(sentences(errors.text()), (texts{"Empty string location passed to config file constructor.",
                                               "Empty string location passed to config file constructor.",
                                               "Null char array location passed to config file constructor.",
                                               "Input config file was not opened: " + folder.path("absent"),
                                               "Input config file was not opened: " + folder.path()}));
    for (const configuration& store : stores) {
        EXPECT_EQ(value_of<string>(store, "svm_type"), "c");
    }
    string path = folder.write("file", "trees=12");
    EXPECT_EQ(value_of<int>(configuration(path.data()), "trees"), 12);
}

TEST(ConfigurationReader, StreamsThatFailToReadEndTheLoop) {
    const temporary_directory folder;
    open_store store;
    // Opens on some systems, and then fails at every read.
    std::ifstream directory(folder.path());
    store.configure(directory);
    EXPECT_FALSE(directory.is_open());
    std::ifstream closed;
    store.configure(closed);
    EXPECT_TRUE(closed.fail());
}

TEST(ConfigurationReader, ImportsStandInPlaceOfTheirLine) {
    const temporary_directory folder;
    const string inner = folder.write("inner", "trees=3\nhosf_cell_width=3\n__order=inner\n__inner=1");
    const string outer = folder.write("outer", "import=" + inner + "\n__order=outer\nsf_birth_rate=9\n");
    const string main =
        folder.write("main", "trees=1\nhosf_cell_width=1\nimport=" + outer +
                                 "\nimport=absent\nimport=" + folder.path() + "\nimport=\nsf_birth_rate=1\n");
    const stream_capture output(std::cout);
    const stream_capture errors(std::cerr);
    const configuration store(main);
    EXPECT_EQ(value_of<int>(store, "trees"), 1);
    EXPECT_EQ(value_of<int>(store, "hosf_cell_width"), 3);
    EXPECT_EQ(value_of<int>(store, "sf_birth_rate"), 9);
    EXPECT_EQ(value_of<string>(store, "__order"), "outer");
    EXPECT_EQ(value_of<string>(store, "__inner"), "1");
    const string start = "Importing additional config file: \"";
    EXPECT_EQ(output.text(), start + outer + "\"\n" + start + inner + "\"\n" + start + "absent\"\n" + start +
                                 folder.path() + "\"\n" + start + "\"\n");
    const string refusal = "Error opening import file: ";
    EXPECT_EQ(sentences(errors.text()),
              (texts{repeated("trees"), repeated("hosf_cell_width", true), refusal + "absent",
                     refusal + folder.path(), refusal, repeated("sf_birth_rate")}));
}

TEST(ConfigurationReader, UserKeysHoldAnyText) {
    open_store store;
    EXPECT_EQ(warnings(store, {"__note=hello", "bye", "__=x", "_note=x", "/note=x"}),
              (texts{unrecognised("_note", "x"), unrecognised("/note", "x")}));
    store.set_param(string("__cut\0tail", 10), "text");
    EXPECT_EQ(value_of<string>(store, "__note"), "bye");
    EXPECT_EQ(value_of<string>(store, "__"), "x");
    EXPECT_EQ(value_of<string>(store, "__cut"), "text");
    EXPECT_EQ(store.parameters.back().name, "__cut");
    EXPECT_EQ(store.parameters.size(), 184u);
}

TEST(ConfigurationReader, KeysOfADerivedStoreAreNotTheBaseChains) {
    open_store store;
    store.add_param("host_count", 5, configuration::param_int);
    store.add_param("__host_number", 5, configuration::param_int);
    EXPECT_EQ(warnings(store, {"host_count=6", "__host_number=7", "closing_iterations=3"}),
              (texts{unrecognised("host_count", "6"), unrecognised("__host_number", "7"),
                     unrecognised("closing_iterations", "3")}));
    EXPECT_EQ(value_of<int>(store, "host_count"), 5);
    EXPECT_EQ(value_of<int>(store, "__host_number"), 5);
    EXPECT_EQ(value_of<int>(store, "closing_iterations"), 0);
}
