#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/compare.h"
#include "zorv_tools/subtitle/Subtitle.h"

namespace {

const std::vector<zorv::Subtitle> make_track(int blocks) {
    std::vector<zorv::Subtitle> track(static_cast<std::size_t>(blocks));
    for (int i = 0; i < blocks; ++i) {
        zorv::Subtitle& block = track[static_cast<std::size_t>(i)];
        block.number = i + 1;
        block.start.input_seconds(2.5 * i + 0.125);
        block.end.input_seconds(2.5 * i + 2.25);
        block.confidence = static_cast<float>(i % 11) / 10.0F;
        block.text = "a line of text as it is spoken";
    }
    return track;
}

std::vector<zorv::Subtitle> read_with_streams(const std::string& text) {
    std::istringstream in(text);
    std::vector<zorv::Subtitle> track;
    zorv::Subtitle block;
    while (!(in >> std::ws).eof()) {
        in >> block;
        track.push_back(block);
    }
    return track;
}

std::vector<zorv::Subtitle> read_with_scanf(const std::string& text) {
    std::istringstream in(text);
    std::vector<zorv::Subtitle> track;
    zorv::Subtitle block;
    std::string line;
    while (std::getline(in, line)) {
        zorv::Timestamp& start = block.start;
        zorv::Timestamp& end = block.end;
        int behind = 0;
        bool good = std::sscanf(line.c_str(), "%d", &block.number) == 1;
        std::getline(in, line);
        good = good && std::sscanf(line.c_str(), "%d:%d:%d,%d --> %d:%d:%d,%d", &start.hours, &start.minutes,
                                   &start.seconds, &start.milliseconds, &end.hours, &end.minutes,
                                   &end.seconds, &end.milliseconds) == 8;
        std::getline(in, line);
        good = good && std::sscanf(line.c_str(), "[%f]%n", &block.confidence, &behind) == 1;
        if (!good) {
            throw std::runtime_error("the peer cannot read the track");
        }
        block.text = line.substr(static_cast<std::size_t>(behind));
        track.push_back(block);
    }
    return track;
}

void write_with_streams(const std::vector<zorv::Subtitle>& track, const std::string& path) {
    std::ofstream out(path);
    for (const zorv::Subtitle& block : track) {
        out << block;
    }
}

void write_with_printf(const std::vector<zorv::Subtitle>& track, const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "w"), std::fclose);
    std::FILE* const out = file.get();
    for (const zorv::Subtitle& block : track) {
        std::fprintf(out, "%d\n", block.number);
        std::fflush(out);
        std::fprintf(out, "%02d:%02d:%02d,%03d --> %02d:%02d:%02d,%03d\n", block.start.hours,
                     block.start.minutes, block.start.seconds, block.start.milliseconds, block.end.hours,
                     block.end.minutes, block.end.seconds, block.end.milliseconds);
        std::fflush(out);
        std::fprintf(out, "[%.1f] %s\n", static_cast<double>(block.confidence), block.text.c_str());
        std::fflush(out);
    }
}

const std::string text_of(const std::vector<zorv::Subtitle>& track) {
    std::ostringstream text;
    for (const zorv::Subtitle& block : track) {
        text << block;
    }
    return text.str();
}

const std::string contents(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// A file that goes with the program.
struct scratch_file {
    explicit scratch_file(const std::string& name)
        : path((std::filesystem::temp_directory_path() / name).string()) {}
    ~scratch_file() { std::remove(path.c_str()); }
    scratch_file(const scratch_file&) = delete;
    scratch_file& operator=(const scratch_file&) = delete;

    const std::string path;
};

}  // namespace

void register_comparisons() {
    static const scratch_file ours_file("zorv_tools_benchmark_ours.txt");
    static const scratch_file peer_file("zorv_tools_benchmark_peer.txt");
    const auto track = make_track(100000);
    const auto write_ours = [track] { write_with_streams(track, ours_file.path); };
    const auto write_peer = [track] { write_with_printf(track, peer_file.path); };

    write_ours();
    write_peer();
    const std::string text = contents(ours_file.path);
    if (text != contents(peer_file.path) ||
        text_of(read_with_streams(text)) != text_of(read_with_scanf(text))) {
        throw std::runtime_error("the two do not do the same work");
    }
    const auto read_ours = [text] { benchmark::DoNotOptimize(read_with_streams(text)); };
    const auto read_peer = [text] { benchmark::DoNotOptimize(read_with_scanf(text)); };

    ZORV_COMPARE("Subtitle >>, 100,000 blocks (getline, sscanf)", 3.0, read_ours, read_peer);
    ZORV_COMPARE("Subtitle <<, 100,000 blocks (fprintf, fflush)", 2.0, write_ours, write_peer);
}
