#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "tests/config/store_access.h"
#include "zorv_tools/config/internal/configuration_key.h"
#include "zorv_tools/core/exception_l.h"

using zorv::internal::half;
using zorv::internal::key_row;
using zorv::internal::repetition;

namespace {

/// What one line brings a store to say, on whichever road.
std::string complaint(zorv::configuration& store, std::string_view key, const std::string& value) {
    const stream_capture errors(std::cerr);
    try {
        store.set_param(std::string(key), value);
    } catch (const zorv::exception_l& e) {
        return e.what();
    }
    return errors.text();
}

/// Whether the key has something other than its default.
bool is_set(const zorv::configuration& store, const key_row& row) {
    const std::string key(row.name);
    if (row.kind == zorv::configuration::param_int) {
        return value_of<int>(store, key) != static_cast<int>(row.number);
    }
    return value_of<void*>(store, key) != nullptr;
}

// The documentation is written from the rows, so what they tell of a special key must be what its setter does.
TEST(ConfigurationCatalogue, TheRowsOfSpecialKeysTellWhatTheirSettersDo) {
    for (const key_row& row : zorv::internal::catalogue) {
        if (row.kind != zorv::configuration::param_special || row.chain == half::none) {
            continue;
        }
        SCOPED_TRACE(row.name);
        zorv::configuration store;
        EXPECT_EQ(complaint(store, row.name, row.format.example), "");
        EXPECT_TRUE(is_set(store, row));

        const bool warns = row.repeated == repetition::keep_first || row.repeated == repetition::replace;
        const std::string again = complaint(store, row.name, row.format.example);
        // A list of records may also have the same entry already, and tell so.
        EXPECT_EQ(again.find("Repeated occurence") == std::string::npos && !again.empty(), warns) << again;

        // A form with a fixed number of fields is one that misses its last.
        const std::string form = row.format.form;
        const std::string example = row.format.example;
        const std::size_t last = example.rfind('|');
        if (form.find("...") == std::string::npos && last != std::string::npos) {
            EXPECT_EQ(std::count(form.begin(), form.end(), '|'),
                      std::count(example.begin(), example.end(), '|'));
            zorv::configuration other;
            EXPECT_NE(complaint(other, row.name, example.substr(0, last)), "");
        }
    }
}

TEST(ConfigurationCatalogue, KeysWithoutABranchAreFilledByTheLinesOfAnother) {
    int found = 0;
    for (const key_row& row : zorv::internal::catalogue) {
        EXPECT_EQ(row.filled_by.empty(), row.chain != half::none) << row.name;
        if (!row.filled_by.empty()) {
            ++found;
            const key_row* const other = zorv::internal::find_key(row.filled_by);
            ASSERT_NE(other, nullptr) << row.name;
            zorv::configuration store;
            EXPECT_FALSE(is_set(store, row)) << row.name;
            EXPECT_EQ(complaint(store, row.filled_by, other->format.example), "");
            EXPECT_TRUE(is_set(store, row)) << row.name;
        }
    }
    EXPECT_EQ(found, 2);
}

}  // namespace
