#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/config/store_access.h"
#include "zorv_tools/core/opencv_c.h"

using std::string;
using zorv::configuration;

namespace {

const string key = "closing_kernel=";

IplConvKernel* kernel(const configuration& store) {
    return value_of<IplConvKernel*>(store, "closing_kernel");
}

std::vector<int> values(const configuration& store) {
    const IplConvKernel* const k = kernel(store);
    return std::vector<int>(k->values, k->values + k->nCols * k->nRows);
}

}  // namespace

TEST(ClosingKernel, IsMadeByItsFirstGoodLine) {
    configuration store;
    EXPECT_EQ(warnings(store, {key + "3|4|2|1|0|2", key + "5|5|1|1|0|7"}), repeated("closing_kernel"));
    ASSERT_NE(kernel(store), nullptr);
    EXPECT_EQ(kernel(store)->nCols, 3);
    EXPECT_EQ(kernel(store)->nRows, 4);
    EXPECT_EQ(kernel(store)->anchorX, 2);
    EXPECT_EQ(kernel(store)->anchorY, 1);
    EXPECT_EQ(values(store), std::vector<int>(12, 1));
    EXPECT_EQ(value_of<int>(store, "closing_iterations"), 2);
}

TEST(ClosingKernel, RefusalsLeaveTheCellNull) {
    const struct {
        string value, warning;
    } cases[] = {
        {"3|3|2|2|0",
         "Format incorrect, kernel should be entered as \"cols|rows|anchorx|anchory|shape|iterations|value1...\", "
         "entered value was: \"3|3|2|2|0\""},
        {"0|0|2|2|0|1", "ncols less than 1: 0"},
        {"3|-1|2|2|0|1", "nrows less than 1: -1"},
        {"3|3|0|2|0|1", "Anchorx parameter less than 1 or more than ncols: 0"},
        {"3|5|4|2|0|1", "Anchorx parameter less than 1 or more than ncols: 4"},
        {"5|3|2|0|0|1", "Anchory parameter less than 1 or more than nrows: 0"},
        {"5|3|2|4|0|1", "Anchory parameter less than 1 or more than nrows: 4"},
        {"3|3|2|2|3|1",
         "Shape parameter must be 0 (rect), 1 (cross), 2 (ellipse) or 100 (custom). Entered value was: 3"},
        {"3|3|2|2|100|0|255|1|255", "value not from 0 to 255: 1"},
        {"3|3|2|2|100|1|254|1", "value not from 0 to 255: 254"},
        {"3|3|2|2|100|1||1", "value not from 0 to 255: 0"},
        {"3|3|2|2|100|0|255|1", "number of iterations must be greater than 0, entered value was: 0"},
    };
    for (const auto& c : cases) {
        configuration store;
        EXPECT_EQ(warnings(store, {key + c.value}), "WARNING: " + c.warning + "\n");
        EXPECT_EQ(kernel(store), nullptr) << c.value;
        EXPECT_EQ(value_of<int>(store, "closing_iterations"), 0);
        EXPECT_EQ(warnings(store, {key + "3|3|1|1|2|-4"}), "") << "negative counts pass";
        EXPECT_EQ(value_of<int>(store, "closing_iterations"), -4);
    }
}

TEST(ClosingKernel, MissingValuesAreZeroAndSurplusOnesIgnored) {
    const struct {
        string value;
        std::vector<int> elements;
    } cases[] = {
        {"3|2|2|1|100|1|255|-1|1", {255, -1, 1, 0, 0, 0}},
        {"2|2|1|1|100|1|255|256|300|255|255|7", {255, 256, 300, 255}},
        {"2|2|1|1|100|1|7", {7, 0, 0, 0}},
        {"2|2|1|1|0|1|7", {1, 1, 1, 1}},
    };
    for (const auto& c : cases) {
        configuration store;
        EXPECT_EQ(warnings(store, {key + c.value}), "");
        EXPECT_EQ(values(store), c.elements) << c.value;
    }
}

TEST(ClosingKernel, OpenCvRefusesTheRest) {
    // An anchor outside its own range, custom elements without values, and sizes beyond 32 bits.
    for (const string value : {"3|3|3|1|0|5", "3|3|1|3|0|5", "3|3|1|1|100|5", "65536|65536|1|1|0|5",
                               "2147483647|2147483647|1|1|100|5|1", "40000|20000|1|1|100|5|1"}) {
        configuration store;
        EXPECT_THROW(warnings(store, {key + value}), cv::Exception) << value;
        EXPECT_EQ(kernel(store), nullptr);
        EXPECT_EQ(value_of<int>(store, "closing_iterations"), 5) << value;
    }
}

TEST(ClosingKernel, NeedsTheRecordOfItsIterations) {
    open_store store;
    store.remove("closing_iterations");
    const stream_capture errors(std::cerr);
    EXPECT_THROW(store.set_param("closing_kernel", "3|3|2|2|0|1"), std::out_of_range);
    EXPECT_EQ(
        errors.text(),
        "WARNING: Parameter closing_iterations was not found in parameters vector, it must not have been "
        "initialised.\n");
    EXPECT_EQ(kernel(store), nullptr);
}
