#include <iostream>

#include "examples/config_check/checked_store.h"
#include "examples/support/options.h"

int main(int argc, char** argv) {
    return run_program("config_check", [&] {
        options line(
            "config_check",
            "Reads configuration files in order into one store and prints each warning with its file and\n"
            "line (counted from 1), the keys that differ from their defaults, and the cameras. A relative\n"
            "import is looked for from the working folder. Where a program would stop, this one goes on.\n"
            "The exit status is 1 if anything was refused.",
            {}, "FILE...");
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
        store.print_changes();
        store.print_cameras();
        std::cout << "refused: " << store.refused() << std::endl;
        return store.refused() > 0 ? 1 : 0;
    });
}
