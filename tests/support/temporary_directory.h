#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

/// A folder of its own for one test, removed with all that it holds.
class temporary_directory {
public:
    temporary_directory() {
        static std::atomic<int> count{0};
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        do {
            folder_ = std::filesystem::temp_directory_path() /
                      ("zorv_tools_test_" + std::to_string(now) + "_" + std::to_string(count++));
        } while (!std::filesystem::create_directory(folder_));
    }
    ~temporary_directory() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    temporary_directory(const temporary_directory&) = delete;
    temporary_directory& operator=(const temporary_directory&) = delete;

    std::string path(const std::string& name = "") const { return (folder_ / name).string(); }

    /// Writes a file and returns its path.
    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }

private:
    std::filesystem::path folder_;
};
