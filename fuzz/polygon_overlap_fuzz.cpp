#include <algorithm>
#include <cmath>
#include <vector>

#include "fuzz/input.h"
#include "zorv_tools/image/polygon_overlap.h"

namespace {

/// Corners of a coarse grid make vertices and edges of the two polygons fall together; other inputs place them
/// anywhere.
std::vector<point> polygon(FuzzedDataProvider& input, bool coarse) {
    std::vector<point> vertices(input.ConsumeIntegralInRange<std::size_t>(0, 12));
    const auto coordinate = [&] {
        return coarse ? input.ConsumeIntegralInRange<int>(-4, 4)
                      : input.ConsumeFloatingPointInRange<double>(-1000, 1000);
    };
    for (point& vertex : vertices) {
        vertex.x = coordinate();
        vertex.y = coordinate();
    }
    return vertices;
}

double overlap(std::vector<point>& a, std::vector<point>& b) {
    const int count_a = static_cast<int>(a.size());
    const int count_b = static_cast<int>(b.size());
    fuzz::require(!std::isnan(intersectionArea(count_a, a.data(), count_b, b.data())));
    return intersectionArea64(count_a, a.data(), count_b, b.data());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const bool coarse = input.ConsumeBool();
    std::vector<point> a = polygon(input, coarse);
    std::vector<point> b = polygon(input, coarse);
    std::vector<point> all = a;
    all.insert(all.end(), b.begin(), b.end());
    if (all.empty()) {
        return 0;
    }
    const auto x = std::minmax_element(all.begin(), all.end(), [](auto& l, auto& r) { return l.x < r.x; });
    const auto y = std::minmax_element(all.begin(), all.end(), [](auto& l, auto& r) { return l.y < r.y; });
    const double width = x.second->x - x.first->x;
    const double height = y.second->y - y.first->y;
    // Without an extent on both axes there is no grid to fit the polygons to.
    if (width < 1e-6 || height < 1e-6) {
        return 0;
    }

    const double area = overlap(a, b);
    const double box = width * height;
    const double resolution = 1e-5 * box;
    // Neither polygon winds about a point more often than every second edge of it can.
    fuzz::require(std::fabs(area) <= box * static_cast<double>((a.size() / 2) * (b.size() / 2)) + resolution);
    fuzz::require(std::fabs(area - overlap(b, a)) <= resolution);
    std::reverse(a.begin(), a.end());
    fuzz::require(std::fabs(area + overlap(a, b)) <= resolution);
    return 0;
}
