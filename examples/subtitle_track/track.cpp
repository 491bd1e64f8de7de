#include "track.h"

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <istream>
#include <sstream>
#include <stdexcept>

#include "zorv_tools/core/exception_l.h"

namespace {

template <class Predicate>
void drop_if(track& blocks, Predicate predicate) {
    blocks.erase(std::remove_if(blocks.begin(), blocks.end(), predicate), blocks.end());
}

}  // namespace

reading read_track(std::istream& in, double frame_rate) {
    reading result;
    try {
        while (!(in >> std::ws).eof()) {
            // A new object for each: a block whose line ends at the very end of the stream leaves the text alone.
            zorv::Subtitle block(frame_rate);
            in >> block;
            // The text comes with the blank behind the bracket, which the writer would put there a second time.
            if (!block.text.empty() && block.text[0] == ' ') {
                block.text.erase(0, 1);
            }
            result.blocks.push_back(block);
        }
    } catch (const zorv::exception_l& e) {
        result.report = e.what();
    }
    return result;
}

void check_text_forms(reading& input) {
    for (auto block = input.blocks.begin(); block != input.blocks.end(); ++block) {
        try {
            std::ostringstream text;
            text << *block;
        } catch (const zorv::exception_l& e) {
            input.report = e.what();
            input.blocks.erase(block, input.blocks.end());
            return;
        }
    }
}

void shift(track& blocks, double seconds) {
    drop_if(blocks,
            [seconds](const zorv::Subtitle& block) { return block.end.total_seconds() + seconds < 0; });
    // The library cuts a time off below the millisecond; half of one more makes that the nearest.
    const auto moved = [seconds](const zorv::Timestamp& time) {
        return std::max(time.total_seconds() + seconds, 0.0) + 0.0005;
    };
    for (zorv::Subtitle& block : blocks) {
        block.start.input_seconds(moved(block.start));
        block.end.input_seconds(moved(block.end));
    }
}

void drop_below(track& blocks, double confidence) {
    // In single precision, like the confidences: 0.9 is not below 0.9 then.
    const auto least = static_cast<float>(confidence);
    drop_if(blocks, [least](const zorv::Subtitle& block) { return block.confidence < least; });
}

void print(const track& blocks, std::ostream& out) {
    for (const zorv::Subtitle& block : blocks) {
        out << std::setw(5) << block.number << "  frames " << std::setw(6) << block.start_frame() << " to "
            << std::setw(6) << block.end_frame() << "  " << block.start << " --> " << block.end << "  ["
            << std::fixed << std::setprecision(1) << block.confidence << "] " << block.text << "\n";
    }
    out.flush();
}

void write_track(const track& blocks, const std::string& path) {
    // The library would tell of a bad stream, but not of the file.
    std::ostringstream text;
    for (const zorv::Subtitle& block : blocks) {
        text << block;
    }
    std::ofstream out(path);
    out << text.str();
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write \"" + path + "\"");
    }
}
