#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tests/config/store_access.h"
#include "tests/support/report.h"
#include "tests/support/temporary_directory.h"

using std::string;
using zorv::configuration;

TEST(ConfigurationReader, TakesTheFirstWordOfALine) {
    struct {
        const char* text;
        const char* a;
    } const cases[] = {
        {"", ""},
        {"\n \t\n__a=1", "1"},
        {"__a=1\n", "1"},
        {"__a=1\r\n\r\n__b=2\r\n", "1"},
        {"   __a=1 trailing __a=2 =", "1"},
        {"__a=1\n__a=2\n", "2"},
        {"__a=1\n__a=\n", ""},
        {"// any words = here\n//note\n//__a=5\n__a=//x", "//x"},
        {"\v\f__a=1\vx", "1"},
    };
    const temporary_directory folder;
    for (const auto& c : cases) {
        const stream_capture errors(std::cerr);
        configuration store(folder.write("file", c.text));
        store.set_param("__a", value_of<string>(store, "__a"));
        EXPECT_EQ(value_of<string>(store, "__a"), c.a) << c.text;
        EXPECT_EQ(errors.text(), string(c.a).empty() && string(c.text).find("__a") == string::npos
                                     ? "Couldn't get parameter __a\n"
                                     : "")
            << c.text;
    }
}

TEST(ConfigurationReader, RefusesLinesThatAreNoAssignment) {
    const string several = "configuration::configure() : line ";
    const string none = "No equals sign found in config file line ";
    const struct {
        string text, sentence;
    } cases[] = {
        {"a=b=c", several + "0 contained more than one equals sign: \"a=b=c\""},
        {"trees=3\n\n__x=long_enough_for_the_heap_of_this_process\na==",
         several + "3 contained more than one equals sign: \"a==\""},
        {"//a=b=c", several + "0 contained more than one equals sign: \"//a=b=c\""},
        {"key = value", none + "0: \"key\""},
        {"bumblebee_params=1|1|1|1|1|1|1\nword more", none + "1: \"word\""},
        {"/ comment", none + "0: \"/\""},
    };
    const temporary_directory folder;
    for (const auto& c : cases) {
        const string path = folder.write("file", c.text);
        EXPECT_REPORT(configuration store(path), "configuration", "configuration::configure(", c.sentence);
    }
}

TEST(ConfigurationReader, EmptyKeyMeetsTheRangeCheck) {
    const temporary_directory folder;
    try {
        const configuration store(folder.write("file", "=value"));
        ADD_FAILURE();
    } catch (const std::out_of_range& e) {
        EXPECT_STREQ(e.what(), "invalid vector<T> subscript");
    }
    // A derived class may declare it, and it is then a boolean like any other.
    open_store store;
    store.add_param("", false, configuration::param_bool);
    EXPECT_EQ(warnings(store, {"=2", "=1", "=0"}),
              "WARNING:  parameter not 1,0,true or false: \"2\"\n"
              "WARNING:  parameter encountered multiple times in config file\n");
    EXPECT_TRUE(value_of<bool>(store, ""));
}

TEST(ConfigurationReader, PathsThatCannotBeReadLeaveTheDefaults) {
    const temporary_directory folder;
    char nothing[] = "";
    const struct {
        string path, warning;
    } cases[] = {
        {"", "WARNING: Empty string location passed to config file constructor.\n"},
        {folder.path("absent"), "WARNING: Input config file was not opened: " + folder.path("absent") + "\n"},
        {folder.path(), "WARNING: Input config file was not opened: " + folder.path() + "\n"},
    };
    for (const auto& c : cases) {
        const stream_capture errors(std::cerr);
        const configuration store(c.path);
        EXPECT_EQ(errors.text(), c.warning);
        EXPECT_EQ(value_of<string>(store, "svm_type"), "c");
    }
    const stream_capture errors(std::cerr);
    const configuration null(static_cast<char*>(nullptr));
    const configuration empty(nothing);
    EXPECT_EQ(errors.text(),
              "WARNING: Null char array location passed to config file constructor.\n" + cases[0].warning);
    EXPECT_EQ(value_of<int>(null, "hosf_x_cells"), 3);
}

TEST(ConfigurationReader, CharArrayPathIsRead) {
    const temporary_directory folder;
    string path = folder.write("file", "trees=12");
    const configuration store(path.data());
    EXPECT_EQ(value_of<int>(store, "trees"), 12);
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
    const string main = folder.write(
        "main", "trees=1\nhosf_cell_width=1\nimport=" + outer + "\nimport=absent\nsf_birth_rate=1\n");
    const stream_capture output(std::cout);
    const stream_capture errors(std::cerr);
    const configuration store(main);
    EXPECT_EQ(value_of<int>(store, "trees"), 1);
    EXPECT_EQ(value_of<int>(store, "hosf_cell_width"), 3);
    EXPECT_EQ(value_of<int>(store, "sf_birth_rate"), 9);
    EXPECT_EQ(value_of<string>(store, "__order"), "outer");
    EXPECT_EQ(value_of<string>(store, "__inner"), "1");
    const string start = "Importing additional config file: \"";
    EXPECT_EQ(output.text(), start + outer + "\"\n" + start + inner + "\"\n" + start + "absent\"\n");
    EXPECT_EQ(errors.text(), repeated("trees") + repeated("hosf_cell_width", true) +
                                 "WARNING: Error opening import file: absent\n" + repeated("sf_birth_rate"));
}

TEST(ConfigurationReader, ImportedFilesCountTheirOwnLines) {
    const temporary_directory folder;
    const string inner = folder.write("inner", "\nbad");
    const string outer = folder.write("outer", "\n\n\nimport=" + inner);
    const stream_capture output(std::cout);
    EXPECT_REPORT(configuration store(outer), "configuration", "configuration::configure(",
                  "No equals sign found in config file line 1: \"bad\"");
    open_store store;
    EXPECT_EQ(
        warnings(store, {"import=" + folder.path(), "import="}),
        "WARNING: Error opening import file: " + folder.path() + "\nWARNING: Error opening import file: \n");
}

TEST(ConfigurationReader, UserKeysHoldAnyText) {
    open_store store;
    EXPECT_EQ(warnings(store, {"__note=hello", "__note=bye", "__=x", "_note=x", "/note=x"}),
              unrecognised("_note", "x") + unrecognised("/note", "x"));
    store.set_param(string("__cut\0tail", 10), "text");
    EXPECT_EQ(value_of<string>(store, "__note"), "bye");
    EXPECT_EQ(value_of<string>(store, "__"), "x");
    EXPECT_EQ(value_of<string>(store, "__cut"), "text");
    EXPECT_EQ(store.parameters.back().name, "__cut");
    EXPECT_EQ(store.parameters.size(), 184u);
}

TEST(ConfigurationReader, KeysOfADerivedStoreAreNotTheBaseChains) {
    const temporary_directory folder;
    open_store store;
    store.add_param("host_count", 5, configuration::param_int);
    store.add_param("__host_number", 5, configuration::param_int);
    std::ifstream in(folder.write("file", "host_count=6\n__host_number=7\ntrees=8\nclosing_iterations=3\n"));
    const stream_capture errors(std::cerr);
    store.configure(in);
    EXPECT_EQ(errors.text(), unrecognised("host_count", "6") + unrecognised("__host_number", "7") +
                                 unrecognised("closing_iterations", "3"));
    EXPECT_EQ(value_of<int>(store, "host_count"), 5);
    EXPECT_EQ(value_of<int>(store, "__host_number"), 5);
    EXPECT_EQ(value_of<int>(store, "trees"), 8);
    EXPECT_EQ(value_of<int>(store, "closing_iterations"), 0);
}
