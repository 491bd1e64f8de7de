#include <algorithm>
#include <sstream>
#include <string>

#include "fuzz/input.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/subtitle/Subtitle.h"

namespace {

bool same(const zorv::Timestamp& a, const zorv::Timestamp& b) {
    return a.hours == b.hours && a.minutes == b.minutes && a.seconds == b.seconds &&
           a.milliseconds == b.milliseconds;
}

/// Whether a clock may show the time; others need not survive writing.
bool plain(const zorv::Timestamp& time) {
    return std::min({time.hours, time.minutes, time.seconds, time.milliseconds}) >= 0 && time.hours <= 99 &&
           time.minutes <= 99 && time.seconds <= 99 && time.milliseconds <= 999;
}

void read_time(const std::string& text) {
    std::istringstream in(text);
    zorv::Timestamp time;
    try {
        in >> time;
    } catch (const zorv::exception_l&) {
        return;
    }
    time.get_frame(23.976);
    zorv::Timestamp from_seconds;
    from_seconds.input_seconds(time.total_seconds());
    std::stringstream form;
    try {
        form << time;
    } catch (const zorv::exception_l&) {
        fuzz::require(!plain(time));
        return;
    }
    if (plain(time)) {
        zorv::Timestamp again;
        form >> again;
        fuzz::require(same(time, again));
    }
}

void read_track(const std::string& text) {
    std::istringstream in(text);
    zorv::Subtitle subtitle;
    try {
        while (in >> std::ws && in.peek() != std::istream::traits_type::eof() && in >> subtitle) {
            subtitle.start_frame();
            subtitle.end_frame();
            if (subtitle.number < 0 || !plain(subtitle.start) || !plain(subtitle.end)) {
                continue;
            }
            std::stringstream form;
            form << subtitle;
            zorv::Subtitle again;
            form >> again;
            fuzz::require(again.number == subtitle.number && same(again.start, subtitle.start) &&
                          same(again.end, subtitle.end) && again.text == " " + subtitle.text);
        }
    } catch (const zorv::exception_l&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = FuzzedDataProvider(data, size).ConsumeRemainingBytesAsString();
    read_time(text);
    read_track(text);
    return 0;
}
