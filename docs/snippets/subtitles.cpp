#include <iostream>
#include <sstream>

#include "zorv_tools/subtitle/Subtitle.h"

int main() {
    //! [track]
    std::istringstream in("1\n00:00:01,500 --> 00:00:02,000\n[0.9] Hello\n");
    zorv::Subtitle subtitle(25.0);
    in >> subtitle;
    std::cout << "frames " << subtitle.start_frame() << " to " << subtitle.end_frame() << std::endl;
    //! [track]
    return subtitle.start_frame() == 37 && subtitle.end_frame() == 50 ? 0 : 1;
}
