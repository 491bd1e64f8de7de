#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <cmath>
#include <random>
#include <vector>

#include "benchmarks/compare.h"
#include "zorv_tools/image/polygon_overlap.h"

namespace {

namespace geometry = boost::geometry;
using boost_point = geometry::model::d2::point_xy<double>;
using boost_polygon = geometry::model::polygon<boost_point>;

std::vector<point> star(int count, double x, double least_radius, unsigned int seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> radius(least_radius, 1);
    std::vector<point> result;
    for (int i = 0; i < count; ++i) {
        // Clockwise, as the peer wants it.
        const double angle = -2 * 3.14159265358979 * i / count;
        const double r = radius(random);
        result.push_back({x + r * std::cos(angle), r * std::sin(angle)});
    }
    return result;
}

boost_polygon convert(const std::vector<point>& vertices) {
    boost_polygon result;
    for (const point& p : vertices) {
        geometry::append(result, boost_point(p.x, p.y));
    }
    geometry::correct(result);
    return result;
}

void compare(const std::string& what, double goal, std::vector<point> a, std::vector<point> b) {
    const auto ours = [a, b]() mutable {
        benchmark::DoNotOptimize(
            intersectionArea64(static_cast<int>(a.size()), a.data(), static_cast<int>(b.size()), b.data()));
    };
    const boost_polygon boost_a = convert(a);
    const boost_polygon boost_b = convert(b);
    const auto peer = [boost_a, boost_b] {
        std::vector<boost_polygon> parts;
        geometry::intersection(boost_a, boost_b, parts);
        double area = 0;
        for (const boost_polygon& part : parts) {
            area += geometry::area(part);
        }
        benchmark::DoNotOptimize(area);
    };
    ZORV_COMPARE("intersectionArea64, " + what + " (boost::geometry)", goal, ours, peer);
}

}  // namespace

void register_comparisons() {
    for (const int count : {10, 100, 1000}) {
        compare("stars of " + std::to_string(count) + " vertices", 0.2, star(count, 0, 0.5, 1),
                star(count, 0.3, 0.5, 2));
    }
    compare("regular polygons of 1000 vertices", 1.0, star(1000, 0, 1, 1), star(1000, 0.5, 1, 1));
}
