//! [program]
#include <iostream>
#include <sstream>
#include <string>

#include "zorv_tools/subtitle/Subtitle.h"

int main() {
    std::istringstream in(
        "1\n00:00:01,500 --> 00:00:02,000\n[0.9] good morning\n"
        "2\n00:00:02,100 --> 00:00:02,600\n[0.2] god mourning\n"
        "3\n00:00:59,250 --> 00:01:00,000\n[0.7] to all\n");
    std::ostringstream out;
    int frame = 0;
    // Only the end of the stream in front of a block is a quiet one.
    while (!(in >> std::ws).eof()) {
        zorv::Subtitle subtitle(25.0);
        in >> subtitle;
        subtitle.text.erase(0, 1);  // the blank behind the bracket has become part of the text
        if (subtitle.confidence < 0.5F) {
            continue;
        }
        subtitle.start.input_seconds(subtitle.start.total_seconds() + 2);
        subtitle.end.input_seconds(subtitle.end.total_seconds() + 2);
        frame = subtitle.start_frame();
        out << subtitle;
    }
    std::cout << out.str() << "the last begins in frame " << frame << std::endl;
    return out.str() == "1\n00:00:03,500 --> 00:00:04,000\n[0.9] good morning\n"
                        "3\n00:01:01,250 --> 00:01:02,000\n[0.7] to all\n" &&
                   frame == 1531
               ? 0
               : 1;
}
//! [program]
