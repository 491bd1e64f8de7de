#include <stdexcept>

#include "tests/config/value_text.h"

using zorv::configuration;

TEST(ClosingKernel, IsMadeByItsFirstGoodLine) {
    // Of its values, missing ones are zero and surplus ones are ignored.
    expect_lines<IplConvKernel>(R"(
        closing_kernel=3|2|2|1|0|2 ; 5|5|1|1|0|7 => 3|2|2|1[1 1 1 1 1 1] ! closing_kernel parameter encountered multiple times in config file
        closing_kernel=3|3|1|1|2|1 => 3|3|1|1[0 1 0 1 1 1 0 1 0]
        closing_kernel=2|3|1|2|100|1|255|-1|1 => 2|3|1|2[255 -1 1 0 0 0]
        closing_kernel=2|2|1|1|100|1|255|256|300|255|255|7 => 2|2|1|1[255 256 300 255]
        closing_kernel=2|2|1|1|100|1|7 => 2|2|1|1[7 0 0 0]
        closing_kernel=2|2|1|1|0|1|7 => 2|2|1|1[1 1 1 1]
        closing_kernel=3|3|2|2|0 => null ! Format incorrect, kernel should be entered as "cols|rows|anchorx|anchory|shape|iterations|value1...", entered value was: "3|3|2|2|0"
        closing_kernel=0|0|2|2|0|1 => null ! ncols less than 1: 0
        closing_kernel=3|-1|2|2|0|1 => null ! nrows less than 1: -1
        closing_kernel=3|3|0|2|0|1 => null ! Anchorx parameter less than 1 or more than ncols: 0
        closing_kernel=3|5|4|2|0|1 => null ! Anchorx parameter less than 1 or more than ncols: 4
        closing_kernel=5|3|2|0|0|1 => null ! Anchory parameter less than 1 or more than nrows: 0
        closing_kernel=5|3|2|4|0|1 => null ! Anchory parameter less than 1 or more than nrows: 4
        closing_kernel=3|3|2|2|3|1 => null ! Shape parameter must be 0 (rect), 1 (cross), 2 (ellipse) or 100 (custom). Entered value was: 3
        closing_kernel=3|3|2|2|100|0|255|1|255 => null ! value not from 0 to 255: 1
        closing_kernel=3|3|2|2|100|1|254|1 => null ! value not from 0 to 255: 254
        closing_kernel=3|3|2|2|100|1||1 => null ! value not from 0 to 255: 0
        closing_kernel=3|3|2|2|100|0|255|1 => null ! number of iterations must be greater than 0, entered value was: 0
    )");
}

TEST(ClosingKernel, SetsTheIterationsEvenBelowZero) {
    for (const int count : {2, -4}) {
        configuration store;
        warnings(store, {"closing_kernel=3|3|1|1|100|0|255|1"});
        EXPECT_EQ(value_of<int>(store, "closing_iterations"), 0);
        warnings(store, {"closing_kernel=3|3|1|1|1|" + std::to_string(count), "3|3|1|1|1|9"});
        EXPECT_EQ(value_of<int>(store, "closing_iterations"), count);
    }
}

TEST(ClosingKernel, OpenCvRefusesTheRest) {
    // An anchor outside its own range, custom elements without values, and sizes beyond 32 bits.
    for (const char* value : {"3|3|3|1|0|5", "3|3|1|3|0|5", "3|3|1|1|100|5", "65536|65536|1|1|0|5",
                              "2147483647|2147483647|1|1|100|5|1", "40000|20000|1|1|100|5|1"}) {
        configuration store;
        EXPECT_THROW(store.set_param("closing_kernel", value), cv::Exception) << value;
        EXPECT_EQ(object_text<IplConvKernel>(store, "closing_kernel"), "null");
        EXPECT_EQ(value_of<int>(store, "closing_iterations"), 5) << value;
    }
}

TEST(ClosingKernel, NeedsTheRecordOfItsIterations) {
    open_store store;
    store.remove<int>("closing_iterations");
    const stream_capture errors(std::cerr);
    EXPECT_THROW(store.set_param("closing_kernel", "3|3|2|2|0|1"), std::out_of_range);
    EXPECT_EQ(sentences(errors.text()),
              texts{"Parameter closing_iterations was not found in parameters vector, it must not have been "
                    "initialised."});
    EXPECT_EQ(object_text<IplConvKernel>(store, "closing_kernel"), "null");
}
