#include "examples/support/pictures.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>
#include <vector>

namespace {

// The bytes are read here, because OpenCV's own reading of a file adds warnings to the error stream.
cv::Mat read_picture(const std::string& path, int flags) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!in.is_open() || bytes.empty()) {
        throw std::runtime_error("cannot read the picture \"" + path + "\"");
    }
    cv::Mat picture = cv::imdecode(bytes, flags);
    if (picture.empty()) {
        throw std::runtime_error("\"" + path + "\" is not a picture in a known format");
    }
    return picture;
}

}  // namespace

cv::Mat read_colour_picture(const std::string& path) {
    return read_picture(path, cv::IMREAD_COLOR);
}

cv::Mat read_map(const std::string& path) {
    return read_picture(path, cv::IMREAD_GRAYSCALE | cv::IMREAD_ANYDEPTH);
}

void write_picture(const std::string& folder, const std::string& name, const cv::Mat& picture) {
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    const std::string path = (std::filesystem::path(folder) / name).string();
    std::vector<unsigned char> bytes;
    if (!cv::imencode(".png", picture, bytes)) {
        throw std::runtime_error("cannot encode the picture \"" + path + "\"");
    }
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write \"" + path + "\"");
    }
}
