#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/config/store_access.h"
#include "zorv_tools/config/internal/configuration_key.h"
#include "zorv_tools/core/exception_l.h"

using zorv::internal::half;
using zorv::internal::key_row;
using zorv::internal::repetition;

namespace {

/// What one line brings a store to say, on whichever road.
std::string complaint(zorv::configuration& store, const std::string& key, const std::string& value) {
    try {
        return warnings(store, {key + "=" + value});
    } catch (const zorv::exception_l& e) {
        return e.what();
    }
}

// The documentation is written from the rows, so what they tell of a special key must be what its setter does.
TEST(ConfigurationCatalogue, TheRowsOfSpecialKeysTellWhatTheirSettersDo) {
    for (const key_row& row : zorv::internal::catalogue) {
        if (row.kind != zorv::configuration::param_special || row.chain == half::none) {
            continue;
        }
        const std::string key(row.name);
        SCOPED_TRACE(key);
        open_store store;
        EXPECT_EQ(complaint(store, key, row.format.example), "");
        ASSERT_EQ(text_of(store, key), "object");

        const bool warns = row.repeated == repetition::keep_first || row.repeated == repetition::replace;
        const std::string again = complaint(store, key, row.format.example);
        // A list of records may also have the same entry already, and tell so.
        EXPECT_EQ(again.find("Repeated occurence") == std::string::npos && !again.empty(), warns) << again;

        // A form with a fixed number of fields is one that misses its last.
        const std::string form = row.format.form;
        const std::string example = row.format.example;
        const std::size_t last = example.rfind('|');
        if (form.find("...") == std::string::npos && last != std::string::npos) {
            EXPECT_EQ(std::count(form.begin(), form.end(), '|'),
                      std::count(example.begin(), example.end(), '|'));
            open_store other;
            EXPECT_NE(complaint(other, key, example.substr(0, last)), "");
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
            open_store store;
            const std::string before = text_of(store, std::string(row.name));
            EXPECT_EQ(complaint(store, std::string(row.filled_by), other->format.example), "");
            EXPECT_NE(text_of(store, std::string(row.name)), before);
        }
    }
    EXPECT_EQ(found, 2);
}

}  // namespace
