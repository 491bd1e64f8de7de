#include "zorv_tools/image/polygon_overlap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/register/point.hpp>
#include <boost/geometry/geometries/register/ring.hpp>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using vertices = std::vector<point>;

BOOST_GEOMETRY_REGISTER_POINT_2D(point, double, boost::geometry::cs::cartesian, x, y)
BOOST_GEOMETRY_REGISTER_RING(vertices)

namespace {

double area64(vertices a, vertices b) {
    return intersectionArea64(static_cast<int>(a.size()), a.data(), static_cast<int>(b.size()), b.data());
}

double area32(vertices a, vertices b) {
    return intersectionArea(static_cast<int>(a.size()), a.data(), static_cast<int>(b.size()), b.data());
}

double independent_area(vertices a, vertices b) {
    boost::geometry::correct(a);
    boost::geometry::correct(b);
    std::vector<vertices> parts;
    boost::geometry::intersection(a, b, parts);
    double sum = 0;
    for (const vertices& part : parts) {
        sum += boost::geometry::area(part);
    }
    return sum;
}

vertices reversed(vertices v) {
    std::reverse(v.begin(), v.end());
    return v;
}

vertices square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
}

/// Simple, and star-shaped about its centre: convex where all radii are 1.
vertices star(int count, double x, double y, double least_radius, std::mt19937& random) {
    std::uniform_real_distribution<double> radius(least_radius, 1);
    vertices result;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * 3.14159265358979 * i / count;
        const double r = radius(random);
        result.push_back({x + r * std::cos(angle), y + r * std::sin(angle)});
    }
    return result;
}

TEST(PolygonOverlap, IsTheAreaCountedByWinding) {
    const vertices a = square(0, 0, 2), b = square(1, 1, 2);
    EXPECT_NEAR(area64(a, b), 0.99999994, 5e-9);
    EXPECT_NEAR(area64(square(4, 4, 2), square(0, 0, 10)), 4, 1e-6);
    EXPECT_NEAR(area64(square(0, 0, 10), square(4, 4, 2)), 4, 1e-6);
    EXPECT_NEAR(area64(a, a), 4, 1e-6);
    EXPECT_EQ(area64(a, square(5, 0, 2)), 0);
    vertices twice = a;
    twice.insert(twice.end(), a.begin(), a.end());
    EXPECT_NEAR(area64(twice, b), 2, 1e-6);
    // A figure of eight has one loop of each orientation.
    EXPECT_NEAR(area64({{0, 0}, {2, 2}, {2, 0}, {0, 2}}, square(-1, -1, 4)), 0, 1e-6);
}

TEST(PolygonOverlap, AgreesWithAnIndependentMeasure) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> shift(-1.5, 1.5);
    for (int i = 0; i < 200; ++i) {
        const int count = std::vector<int>{3, 4, 7, 20, 101}[static_cast<std::size_t>(i % 5)];
        const double least_radius = i < 100 ? 0.2 : 1.0;
        const vertices a = star(count, 0, 0, least_radius, random);
        const vertices b = star(count + i % 2, shift(random), shift(random), least_radius, random);
        const double truth = independent_area(a, b);
        ASSERT_NEAR(area64(a, b), truth, 1e-6) << count;
        ASSERT_NEAR(area64(reversed(a), b), -truth, 1e-6);
        ASSERT_NEAR(area64(reversed(a), reversed(b)), truth, 1e-6);
    }
}

TEST(PolygonOverlap, NarrowSumsWrap) {
    EXPECT_NEAR(area32(square(0, 0, 2), square(1, 1, 2)), 3.4e-8, 1e-9);
    // To the last bit, from a run over all pairs of edges in the plain order: neither the sweep nor the order in
    // which it meets the pairs may show. The coordinates are whole, so that no library's sine enters.
    const vertices triangle{{0, 0}, {7, 1}, {3, 5}};
    const vertices tangle{{0, 0}, {10, 3}, {1, 8}, {6, -4}, {9, 9}};
    const vertices hexagon{{2, 1}, {8, 2}, {9, 6}, {4, 7}, {1, 4}, {3, 3}};
    EXPECT_DOUBLE_EQ(area32(triangle, tangle), -3.3234807111999998e-07);
    EXPECT_DOUBLE_EQ(area32(tangle, triangle), 5.9288817327999992e-07);
    EXPECT_DOUBLE_EQ(area32(tangle, hexagon), 1.1158476471999998e-06);
    EXPECT_DOUBLE_EQ(area32(hexagon, tangle), 2.3925734299999998e-07);
    EXPECT_DOUBLE_EQ(area32(triangle, hexagon), 1.4221530388799998e-07);
    EXPECT_EQ(area32(square(0, 0, 2), square(5, 0, 2)), 0);
}

TEST(PolygonOverlap, DegenerateInputIsHarmless) {
    // Nothing spans the y axis: no area. Vertices that are no numbers give a result that is none. Neither may
    // reach a conversion that is undefined, which the sanitizers would tell.
    const double infinity = std::numeric_limits<double>::infinity();
    const vertices line{{0, 0}, {1, 0}, {2, 0}};
    const vertices not_finite{{infinity, 0}, {0, std::nan("")}, {-infinity, 3}};
    for (const auto area : {area32, area64}) {
        EXPECT_EQ(area(line, line), 0);
        EXPECT_FALSE(std::isfinite(area(line, not_finite)));
        for (const vertices& few : {vertices(), {{0, 0}, {1, 1}}}) {
            EXPECT_EQ(area(few, not_finite), 0);
            EXPECT_EQ(area(not_finite, few), 0);
        }
    }
}

}  // namespace
