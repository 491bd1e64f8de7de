#include <iostream>

#include "examples/config_check/checked_store.h"
#include "examples/support/options.h"

int main(int argc, char** argv) {
    return run_program("config_check", [&] {
        options line("config_check",
                     "Reads configuration files in order into one store and tells what is wrong in them.", {},
                     "FILE...");
        if (!line.parse(argc, argv)) {
            return 0;
        }
        if (line.operands().empty()) {
            throw usage_error("a file is needed (see --help)");
        }
        checked_store store;
        for (const std::string& path : line.operands()) {
            store.check(path);
        }
        std::cout << "keys that differ from their defaults:" << std::endl;
        store.print_changes();
        store.print_cameras();
        return store.refused() ? 1 : 0;
    });
}
