#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <thread>

namespace {

/// Ends the program when a test takes too long: a call that does not come back cannot be made to, and the fault should
/// show as a failed test and not as one that hangs.
class time_limit : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& test) override {
        over_ = std::promise<void>();
        watch_ = std::thread([&test, over = over_.get_future()] {
            if (over.wait_for(std::chrono::seconds(20)) == std::future_status::timeout) {
                std::fprintf(stderr, "%s.%s still waits after 20 seconds\n", test.test_suite_name(),
                             test.name());
                std::_Exit(1);
            }
        });
    }

    void OnTestEnd(const testing::TestInfo&) override {
        over_.set_value();
        watch_.join();
    }

    std::promise<void> over_;
    std::thread watch_;
};

[[maybe_unused]] const bool added = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new time_limit);
    return true;
}();

}  // namespace
