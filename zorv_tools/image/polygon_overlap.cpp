#include "zorv_tools/image/polygon_overlap.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <tuple>
#include <type_traits>
#include <vector>

#include "zorv_tools/core/truncate.h"

namespace {

constexpr double grid_extent = 500000000.0;
constexpr double half_extent = 250000000.0;

struct scaled_vertex {
    std::int32_t ix;
    std::int32_t iy;
    // The extent of the edge from this vertex to the next.
    std::int32_t x_min;
    std::int32_t x_max;
    std::int32_t y_min;
    std::int32_t y_max;
    // How often the edge is crossed, with the sign of the crossings.
    std::int16_t crossings;
};

using polygon = std::vector<scaled_vertex>;

struct box {
    double min_x = std::numeric_limits<double>::max();
    double min_y = std::numeric_limits<double>::max();
    double max_x = -std::numeric_limits<double>::max();
    double max_y = -std::numeric_limits<double>::max();

    void add(int count, const point* vertices) {
        for (int i = 0; i < count; ++i) {
            min_x = std::min(min_x, vertices[i].x);
            max_x = std::max(max_x, vertices[i].x);
            min_y = std::min(min_y, vertices[i].y);
            max_y = std::max(max_y, vertices[i].y);
        }
    }
};

std::int32_t wrapped_sum(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t wrapped_difference(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// The vertices on the grid, with the first one repeated at the end. Bit 1 of each coordinate tells the polygon
/// (its mark), and bit 0 of x alternates along it.
polygon fit_to_grid(int count, const point* vertices, std::int32_t mark, const box& bounds, double scale_x,
                    double scale_y) {
    const auto snap = [](double position) { return zorv::truncate_to<std::int32_t>(position) & ~7; };
    polygon grid(static_cast<std::size_t>(count) + 1);
    for (int c = 0; c < count; ++c) {
        scaled_vertex& vertex = grid[static_cast<std::size_t>(c)];
        vertex.ix = snap((vertices[c].x - bounds.min_x) * scale_x - half_extent) | (c & 1) | mark;
        vertex.iy = snap((vertices[c].y - bounds.min_y) * scale_y - half_extent) | mark;
    }
    if (count % 2 != 0) {
        grid[0].iy = wrapped_sum(grid[0].iy, 1);
    }
    grid.back() = grid.front();
    for (std::size_t c = 0; c + 1 < grid.size(); ++c) {
        std::tie(grid[c].x_min, grid[c].x_max) = std::minmax(grid[c].ix, grid[c + 1].ix);
        std::tie(grid[c].y_min, grid[c].y_max) = std::minmax(grid[c].iy, grid[c + 1].iy);
        grid[c].crossings = 0;
    }
    return grid;
}

/// The measure in integers of one width. All sums, differences and products wrap, which signed ones must not do,
/// so they are formed unsigned.
template <class Int>
class overlap {
public:
    overlap(polygon& a, polygon& b) : a_(a), b_(b) {}

    Int measure() {
        add_crossings();
        add_inside_edges(a_, b_);
        add_inside_edges(b_, a_);
        return static_cast<Int>(sum_);
    }

private:
    using wrapping = std::make_unsigned_t<Int>;

    /// An edge on its way through the sweep.
    struct edge {
        std::int32_t x_min;
        std::int32_t x_max;
        std::int32_t y_min;
        std::int32_t y_max;
        std::uint32_t index;
        bool of_a;
    };

    static wrapping widen(std::int32_t value) { return static_cast<wrapping>(static_cast<Int>(value)); }

    static Int signed_area(const scaled_vertex& a, const scaled_vertex& p, const scaled_vertex& q) {
        return static_cast<Int>(widen(p.ix) * widen(q.iy) - widen(p.iy) * widen(q.ix) +
                                widen(a.ix) * (widen(p.iy) - widen(q.iy)) +
                                widen(a.iy) * (widen(q.ix) - widen(p.ix)));
    }

    static Int negated(Int value) { return static_cast<Int>(wrapping(0) - static_cast<wrapping>(value)); }

    void add_trapezoid(const scaled_vertex& from, const scaled_vertex& to, Int weight) {
        const wrapping doubled =
            static_cast<wrapping>(weight) * (widen(to.ix) - widen(from.ix)) * (widen(to.iy) + widen(from.iy));
        sum_ += static_cast<wrapping>(static_cast<Int>(doubled) / 2);
    }

    /// Where a part `ratio` of the edge is behind.
    static scaled_vertex along(const scaled_vertex& from, const scaled_vertex& to, double ratio) {
        scaled_vertex result{};
        result.ix = zorv::truncate_to<std::int32_t>(wrapped_difference(to.ix, from.ix) * ratio + from.ix);
        result.iy = zorv::truncate_to<std::int32_t>(wrapped_difference(to.iy, from.iy) * ratio + from.iy);
        return result;
    }

    /// The crossing is found on each of the two edges, since each polygon contributes its own part of the
    /// boundary from there on.
    void add_crossing(scaled_vertex* p, scaled_vertex* q, Int e1, Int e2, Int e3, Int e4) {
        const auto ratio = [](Int before, Int after) {
            return static_cast<double>(before) / (static_cast<double>(before) + static_cast<double>(after));
        };
        add_trapezoid(along(p[0], p[1], ratio(e1, e2)), p[1], 1);
        add_trapezoid(q[1], along(q[0], q[1], ratio(e3, e4)), 1);
        p->crossings = static_cast<std::int16_t>(p->crossings + 1);
        q->crossings = static_cast<std::int16_t>(q->crossings - 1);
    }

    /// Two edges whose extents overlap, the first of `a_`.
    void add_pair(std::uint32_t index_a, std::uint32_t index_b) {
        scaled_vertex* const a = &a_[index_a];
        scaled_vertex* const b = &b_[index_b];
        const Int d1 = negated(signed_area(a[0], b[0], b[1]));
        const Int d2 = signed_area(a[1], b[0], b[1]);
        if ((d1 < 0) != (d2 < 0)) {
            return;
        }
        const Int d3 = signed_area(b[0], a[0], a[1]);
        const Int d4 = negated(signed_area(b[1], a[0], a[1]));
        if ((d3 < 0) != (d4 < 0)) {
            return;
        }
        if (d1 < 0) {
            add_crossing(a, b, d1, d2, d3, d4);
        } else {
            add_crossing(b, a, d3, d4, d1, d2);
        }
    }

    struct extent {
        std::int32_t x_min = std::numeric_limits<std::int32_t>::max();
        std::int32_t x_max = std::numeric_limits<std::int32_t>::min();
        std::int32_t y_min = std::numeric_limits<std::int32_t>::max();
        std::int32_t y_max = std::numeric_limits<std::int32_t>::min();
    };

    static extent extent_of(const polygon& vertices) {
        extent result;
        for (const scaled_vertex& v : vertices) {
            result.x_min = std::min(result.x_min, v.ix);
            result.x_max = std::max(result.x_max, v.ix);
            result.y_min = std::min(result.y_min, v.iy);
            result.y_max = std::max(result.y_max, v.iy);
        }
        return result;
    }

    /// Lists the edges that can overlap with some edge of the other polygon, whose extent is `other`.
    static void list_edges(const polygon& vertices, bool of_a, const extent& other,
                           std::vector<edge>& edges) {
        for (std::size_t i = 0; i + 1 < vertices.size(); ++i) {
            const scaled_vertex& v = vertices[i];
            if (v.x_min < other.x_max && other.x_min < v.x_max && v.y_min < other.y_max &&
                other.y_min < v.y_max) {
                edges.push_back({v.x_min, v.x_max, v.y_min, v.y_max, static_cast<std::uint32_t>(i), of_a});
            }
        }
    }

    /// Each pair of edges whose extents overlap, in the order of a sweep along x. The order does not show: all
    /// that a crossing adds to is modular integers.
    void add_crossings() {
        std::vector<edge> edges;
        edges.reserve(a_.size() + b_.size());
        list_edges(a_, true, extent_of(b_), edges);
        list_edges(b_, false, extent_of(a_), edges);
        std::sort(edges.begin(), edges.end(), [](const edge& l, const edge& r) { return l.x_min < r.x_min; });

        // The edges that the sweep has met and not yet left, of b and of a.
        std::vector<edge> active[2];
        for (const edge& e : edges) {
            std::vector<edge>& others = active[!e.of_a];
            std::size_t kept = 0;
            for (std::size_t i = 0; i < others.size(); ++i) {
                const edge other = others[i];
                if (other.x_max <= e.x_min) {
                    continue;
                }
                others[kept++] = other;
                if (e.y_min < other.y_max && other.y_min < e.y_max) {
                    e.of_a ? add_pair(e.index, other.index) : add_pair(other.index, e.index);
                }
            }
            others.resize(kept);
            active[e.of_a].push_back(e);
        }
    }

    /// Adds the edges of `of` that lie inside `in`, weighted by the winding number of `in` there.
    void add_inside_edges(const polygon& of, const polygon& in) {
        wrapping winding = 0;
        const scaled_vertex& start = of[0];
        for (std::size_t c = 0; c + 1 < in.size(); ++c) {
            if (in[c].x_min < start.ix && start.ix < in[c].x_max) {
                const bool up = 0 < signed_area(start, in[c], in[c + 1]);
                const bool rightward = in[c].ix < in[c + 1].ix;
                if (up == rightward) {
                    winding += up ? ~wrapping(0) : wrapping(1);
                }
            }
        }
        for (std::size_t j = 0; j + 1 < of.size(); ++j) {
            if (winding != 0) {
                add_trapezoid(of[j], of[j + 1], static_cast<Int>(winding));
            }
            winding += widen(of[j].crossings);
        }
    }

    polygon& a_;
    polygon& b_;
    wrapping sum_ = 0;
};

template <class Int>
double intersection_area(int count_a, const point* a, int count_b, const point* b) {
    if (count_a < 3 || count_b < 3) {
        return 0.0;
    }
    box bounds;
    bounds.add(count_a, a);
    bounds.add(count_b, b);
    const double scale_x = grid_extent / (bounds.max_x - bounds.min_x);
    const double scale_y = grid_extent / (bounds.max_y - bounds.min_y);
    polygon grid_a = fit_to_grid(count_a, a, 0, bounds, scale_x, scale_y);
    polygon grid_b = fit_to_grid(count_b, b, 2, bounds, scale_x, scale_y);
    const Int sum = overlap<Int>(grid_a, grid_b).measure();
    return static_cast<double>(sum) / (scale_x * scale_y);
}

}  // namespace

double intersectionArea(int count_a, point* const a, int count_b, point* const b) {
    return intersection_area<std::int32_t>(count_a, a, count_b, b);
}

double intersectionArea64(int count_a, point* const a, int count_b, point* const b) {
    return intersection_area<std::int64_t>(count_a, a, count_b, b);
}
