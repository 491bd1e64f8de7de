#include "benchmarks/compare.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <opencv2/core.hpp>
#include <utility>
#include <vector>

namespace {

struct comparison {
    std::string label;
    double goal;
    double ours = std::numeric_limits<double>::infinity();
    double peer = std::numeric_limits<double>::infinity();
};

std::vector<comparison> comparisons;
std::map<std::string, std::pair<std::size_t, bool>> sides;

class fastest_reporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const auto side = sides.find(run.run_name.function_name);
            if (run.run_type != Run::RT_Iteration || side == sides.end()) {
                continue;
            }
            const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
            comparison& row = comparisons[side->second.first];
            double& best = side->second.second ? row.ours : row.peer;
            best = std::min(best, seconds);
        }
    }
};

const std::string time_text(double seconds) {
    char text[32];
    const char* unit = "s";
    if (seconds < 1e-6) {
        seconds *= 1e9;
        unit = "ns";
    } else if (seconds < 1e-3) {
        seconds *= 1e6;
        unit = "us";
    } else if (seconds < 1) {
        seconds *= 1e3;
        unit = "ms";
    }
    std::snprintf(text, sizeof text, "%.3g %s", seconds, unit);
    return text;
}

}  // namespace

void add_comparison(const std::string& label, double goal, const work& ours, const work& peer) {
    comparison row;
    row.label = label;
    row.goal = goal;
    comparisons.push_back(row);
    for (const bool is_ours : {true, false}) {
        const std::string name = label + (is_ours ? "/ours" : "/peer");
        sides[name] = {comparisons.size() - 1, is_ours};
        const work& action = is_ours ? ours : peer;
        benchmark::RegisterBenchmark(name.c_str(),
                                     [action](benchmark::State& state) {
                                         for (auto _ : state) {
                                             action();
                                         }
                                     })
            ->UseRealTime()
            ->MinTime(0.05)
            ->Repetitions(9);
    }
}

int main(int argc, char** argv) {
    cv::setNumThreads(1);
    std::vector<char*> arguments(argv, argv + argc);
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, interleave);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 1;
    }
    register_comparisons();
    fastest_reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (const comparison& row : comparisons) {
        const double ratio = row.ours / row.peer;
        if (std::max(row.ours, row.peer) < std::numeric_limits<double>::infinity()) {
            std::printf("| %s | %s | %s | %.2f | %.2f | %s |\n", row.label.c_str(),
                        time_text(row.ours).c_str(), time_text(row.peer).c_str(), ratio, row.goal,
                        ratio <= row.goal ? "met" : "NOT MET");
        }
    }
    return 0;
}
