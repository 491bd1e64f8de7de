//! [program]
#include <iostream>
#include <string>
#include <vector>

#include "zorv_tools/config/configuration.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: configuration_snippet RIG_FILE" << std::endl;
        return 1;
    }
    const zorv::configuration settings{std::string(argv[1])};

    int trees = 0;
    int kernel_width = 0;
    std::string experiment;
    std::vector<std::vector<double>*>* cameras = nullptr;
    // False for a name that is not in the store; a key that no line has set has its default.
    const bool declared = settings.get_param("trees", trees) &&
                          settings.get_param("kernel_width", kernel_width) &&
                          settings.get_param("bumblebee_params", cameras);
    if (!declared || !cameras || !settings.get_param("__experiment", experiment)) {
        return 1;
    }
    std::cout << experiment << ": " << cameras->size() << " cameras, " << trees << " trees, kernel "
              << kernel_width << ", second centre at " << cameras->at(1)->at(0) << std::endl;
    return cameras->size() == 2 && trees == 20 && kernel_width == 3 && cameras->at(1)->at(0) == 0.52 ? 0 : 1;
}
//! [program]
