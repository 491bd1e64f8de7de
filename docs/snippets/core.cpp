//! [program]
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "zorv_tools/core/IO_helpers.h"
#include "zorv_tools/core/matrix.h"
#include "zorv_tools/core/near.h"

int main() {
    std::istringstream log("0 1\n1 3\n2 5\n3 broken\n4 9\n");
    std::vector<double> times, values;
    int refused = 0;
    for (std::string row; std::getline(log, row);) {
        try {
            const std::vector<std::string> words = zorv::tokenise(row);
            double time = 0, value = 0;
            zorv::i_helper(words.at(0), time);
            zorv::i_helper(words.at(1), value);
            times.push_back(time);
            values.push_back(value);
        } catch (const zorv::exception_l& e) {
            std::cerr << e.what();
            ++refused;
        }
    }

    // value = slope * time + offset, by least squares: the pseudo-inverse solves it.
    zorv::matrix<double> design(static_cast<int>(times.size()), 2);
    for (unsigned int i = 0; i < design.get_dim1(); ++i) {
        design.set_row(i, {times[i], 1});
    }
    const std::vector<double> line = design.invert() * values;
    std::cout << "slope " << line[0] << ", offset " << line[1] << ", rows refused: " << refused << std::endl;
    return zorv::is_near(line[0], 2) && zorv::is_near(line[1], 1) && refused == 1 ? 0 : 1;
}
//! [program]
