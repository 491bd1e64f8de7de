#include <any>
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/compare.h"
#include "zorv_tools/config/configuration.h"

namespace {

constexpr int line_count = 10000;

/// A file that goes away with the program.
class scratch_file {
public:
    explicit scratch_file(const std::string& name) : path_(name) {}
    ~scratch_file() { std::remove(path_.c_str()); }
    scratch_file(const scratch_file&) = delete;
    scratch_file& operator=(const scratch_file&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// Gives what is written to a stream to nobody while it lives.
class silence {
public:
    explicit silence(std::ostream& stream) : stream_(stream), old_(stream.rdbuf(nullptr)) {}
    ~silence() { stream_.rdbuf(old_); }
    silence(const silence&) = delete;
    silence& operator=(const silence&) = delete;

private:
    std::ostream& stream_;
    std::streambuf* old_;
};

using named_values = std::vector<std::pair<std::string, std::any>>;

/// A store that tells its keys and defaults, for the peer of the same keys.
class listed_configuration : public zorv::configuration {
public:
    named_values values() const {
        named_values all;
        for (const parameter& record : parameters) {
            all.emplace_back(record.name, value_of(record));
        }
        return all;
    }

private:
    static std::any value_of(const parameter& record) {
        switch (record.kind) {
            case param_int:
                return *static_cast<int*>(record.value);
            case param_double:
                return *static_cast<double*>(record.value);
            case param_bool:
                return *static_cast<bool*>(record.value);
            case param_string:
                return *static_cast<std::string*>(record.value);
            default:
                return *static_cast<void**>(record.value);
        }
    }
};

/// Line `i` of the store's file: plain keys that repeat, user keys of 100 names, and cameras.
std::string our_line(int i) {
    const std::string number = std::to_string(i);
    switch (i % 5) {
        case 0:
            return "sf_ray_resampling=" + std::to_string(i / 5 % 2);
        case 1:
            return "hosf_cell_width=" + std::to_string(i % 40 + 1);
        case 2:
            return "frame_interval=0.04";
        case 3:
            return "__user_setting_" + std::to_string(i / 5 % 100) + "=text_" + number;
        default:
            return "bumblebee_params=0.5|0.5|1.17|1.17|640|480|0.12";
    }
}

}  // namespace

void register_comparisons() {
    static const scratch_file ours("configuration_benchmark.txt");
    static const scratch_file peers("configuration_benchmark.ini");
    std::ofstream our_file(ours.path());
    std::ofstream peer_file(peers.path());
    for (int i = 0; i < line_count; ++i) {
        const std::string line = our_line(i);
        our_file << line << '\n';
        // A key may stand there once, so each has its number; the values are the same.
        peer_file << "key_" << i << line.substr(line.find('=')) << '\n';
    }
    our_file.close();
    peer_file.close();

    const auto read_ours = [] {
        const silence quiet(std::cerr);
        const zorv::configuration store(ours.path());
        benchmark::DoNotOptimize(&store);
    };
    const auto read_peers = [] {
        boost::property_tree::ptree tree;
        boost::property_tree::read_ini(peers.path(), tree);
        benchmark::DoNotOptimize(&tree);
    };
    ZORV_COMPARE("reading a file of 10,000 lines (Boost.PropertyTree INI)", 0.7, read_ours, read_peers);

    // The peer makes its map from a table of keys and defaults, as the store does.
    static const named_values table = listed_configuration().values();
    const auto make_ours = [] {
        const zorv::configuration store;
        benchmark::DoNotOptimize(&store);
    };
    const auto make_peer = [] {
        const std::map<std::string, std::any> map(table.begin(), table.end());
        benchmark::DoNotOptimize(&map);
    };
    ZORV_COMPARE("default store, made and destroyed (std::map<std::string, std::any>)", 1.0, make_ours,
                 make_peer);
}
