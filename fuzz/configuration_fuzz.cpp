#include <algorithm>
#include <array>
#include <cctype>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/input.h"
#include "zorv_tools/config/configuration.h"

// An input is the texts of up to three files, parted by a backslash and a letter: the first is read and may import
// "1" and "2", the second "2".

namespace {

constexpr std::array<const char*, 3> names = {"0", "1", "2"};

/// The working directory while an input runs, so that it imports from here alone.
class scratch_folder {
public:
    scratch_folder() {
        std::string folder = (std::filesystem::temp_directory_path() / "zorv_tools_fuzz_XXXXXX").string();
        fuzz::require(mkdtemp(folder.data()) != nullptr);
        folder_ = folder;
    }
    ~scratch_folder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    const std::filesystem::path& path() const { return folder_; }

private:
    std::filesystem::path folder_;
};

template <class Refuses>
bool any_value(const std::string& text, const std::string& key, Refuses refuses) {
    for (std::size_t at = text.find(key); at != std::string::npos; at = text.find(key, at + 1)) {
        const std::size_t begin = at + key.size();
        const std::size_t end = text.find_first_of(std::string(" \t\n\v\f\r\0", 7), begin);
        if (refuses(text.substr(begin, end - begin))) {
            return true;
        }
    }
    return false;
}

/// A file that imports itself, at whatever distance, is read for ever, and a path may lead to a device.
bool leaves_or_returns(const std::string& text, std::size_t file) {
    return any_value(text, "import=", [file](const std::string& path) {
        return path.find('/') != std::string::npos ||
               std::find(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(file) + 1, path) !=
                   names.begin() + static_cast<std::ptrdiff_t>(file) + 1;
    });
}

/// OpenCV makes kernels of up to two gigabytes.
bool large_kernel(const std::string& text) {
    return any_value(text, "closing_kernel=", [](const std::string& value) {
        int digits = 0;
        return std::any_of(value.begin(), value.end(), [&digits](unsigned char c) {
            digits = std::isdigit(c) ? digits + 1 : 0;
            return digits > 3;
        });
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const scratch_folder scratch;
    FuzzedDataProvider input(data, size);
    for (std::size_t file = 0; file < names.size(); ++file) {
        const std::string text = input.ConsumeRandomLengthString();
        if (leaves_or_returns(text, file) || large_kernel(text)) {
            return -1;
        }
        std::ofstream(scratch.path() / names[file], std::ios::binary) << text;
    }

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(scratch.path());
    try {
        const zorv::configuration config{std::string(names[0])};
        int trees = 0;
        fuzz::require(config.get_param("trees", trees) && (trees == -1 || trees >= 1));
        double first = 0;
        fuzz::require(!config.get_param("no such key", first));
    } catch (const std::exception&) {
    }
    std::filesystem::current_path(before);
    return 0;
}
