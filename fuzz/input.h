#pragma once

/// @file
/// What the harnesses share: numbers from the bytes of an input, and silence from the library.
///
/// The numbers are taken from the end of an input and texts from its beginning, so that a seed for a reader of
/// text is that text.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <opencv2/core.hpp>
#include <streambuf>

namespace fuzz {

/// Takes what is written, so that the formatting of messages runs too, and shows none of it.
class null_buffer : public std::streambuf {
protected:
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

inline void silence() {
    static null_buffer nothing;
    std::cerr.rdbuf(&nothing);
    std::cout.rdbuf(&nothing);
    cv::redirectError([](int, const char*, const char*, const char*, int, void*) { return 0; });
    cv::setNumThreads(1);
}

/// Ends the process, which the fuzzer takes for a finding.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Mostly around an image of a few pixels, now and then any number.
inline int around_image(FuzzedDataProvider& input) {
    return input.ConsumeIntegralInRange<int>(0, 15) == 0 ? input.ConsumeIntegral<int>()
                                                         : input.ConsumeIntegralInRange<int>(-24, 40);
}

}  // namespace fuzz

extern "C" inline int LLVMFuzzerInitialize(int*, char***) {
    fuzz::silence();
    return 0;
}
