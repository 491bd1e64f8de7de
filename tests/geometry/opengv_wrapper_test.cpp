#include "zorv_tools/geometry/opengv_wrapper.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/support/matchers.h"
#include "tests/support/report.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/rotation.h"

namespace {

using zorv::matrix;
using zorv::upnp;
using rows = std::vector<std::vector<double>>;

matrix<double> to_matrix(const rows& values) {
    matrix<double> m(static_cast<int>(values.size()), static_cast<int>(values[0].size()));
    for (unsigned int i = 0; i < values.size(); ++i) {
        m.set_row(i, values[i]);
    }
    return m;
}

rows to_rows(const matrix<double>& m) {
    rows result;
    for (unsigned int i = 0; i < m.get_dim1(); ++i) {
        result.emplace_back(m[i], m[i] + m.get_dim2());
    }
    return result;
}

matrix<double> camera_matrix() {
    return to_matrix({{800, 0, 320}, {0, 780, 250}, {0, 0, 1}});
}

matrix<double> identity() {
    return to_matrix({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
}

/// A camera in the world, and points given in its frame as both sides see them.
struct scene {
    matrix<double> rotation = identity();
    std::vector<double> translation = {0, 0, 0};
    matrix<double> image;
    matrix<double> world;

    void set_points(const rows& in_camera) {
        world.set_size(static_cast<int>(in_camera.size()), 3);
        for (unsigned int i = 0; i < in_camera.size(); ++i) {
            const std::vector<double> turned = rotation * in_camera[i];
            for (unsigned int k = 0; k < 3; ++k) {
                world[i][k] = turned[k] + translation[k];
            }
        }
        image = project(rotation, translation);
    }

    matrix<double> project(const matrix<double>& r, const std::vector<double>& t) const {
        const matrix<double> projection = camera_matrix() * r.transpose();
        matrix<double> pixels(static_cast<int>(world.get_dim1()), 2);
        for (unsigned int i = 0; i < world.get_dim1(); ++i) {
            const std::vector<double> p =
                projection * std::vector<double>{world[i][0] - t[0], world[i][1] - t[1], world[i][2] - t[2]};
            pixels[i][0] = p[0] / p[2];
            pixels[i][1] = p[1] / p[2];
        }
        return pixels;
    }

    double squared_error(const matrix<double>& r, const std::vector<double>& t) const {
        const matrix<double> pixels = project(r, t);
        double sum = 0.0;
        for (unsigned int i = 0; i < pixels.get_dim1(); ++i) {
            sum += std::pow(pixels[i][0] - image[i][0], 2) + std::pow(pixels[i][1] - image[i][1], 2);
        }
        return sum;
    }
};

class scenes {
public:
    explicit scenes(unsigned int seed) : generator(seed) {}

    scene make(int count, bool flat, double noise = 0.0) {
        scene s;
        s.rotation = zorv::quaternion_to_rot_mat({normal(), normal(), normal(), normal()});
        s.translation = {3 * normal(), 3 * normal(), 3 * normal()};
        const matrix<double> plane =
            zorv::quaternion_to_rot_mat({0.4 * normal(), 0.4 * normal(), normal(), 1.0});
        rows points;
        for (int i = 0; i < count; ++i) {
            std::vector<double> p = {uniform(), uniform(), flat ? 0.0 : uniform()};
            p = plane * p;
            p[2] += 4.0;
            points.push_back(p);
        }
        s.set_points(points);
        for (unsigned int i = 0; i < s.image.get_dim1(); ++i) {
            s.image[i][0] += noise * normal();
            s.image[i][1] += noise * normal();
        }
        return s;
    }

private:
    double normal() { return normal_(generator); }
    double uniform() { return uniform_(generator); }

    std::mt19937 generator;
    std::normal_distribution<double> normal_;
    std::uniform_real_distribution<double> uniform_{-1.0, 1.0};
};

struct pose {
    matrix<double> rotation;
    std::vector<double> translation;
};

pose best(const scene& s, const matrix<double>& camera = camera_matrix()) {
    pose p;
    upnp(s.image, s.world, camera, p.rotation, p.translation);
    return p;
}

void expect_true_pose(const scene& s) {
    const pose found = best(s);
    ASSERT_EQ(found.translation.size(), 3u);
    EXPECT_THAT(found.rotation, matrix_near(to_rows(s.rotation), 1e-6));
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_NEAR(found.translation[k], s.translation[k], 1e-5);
    }
    EXPECT_LT(s.squared_error(found.rotation, found.translation), 1e-6);
}

/// Both forms, with outputs that are not empty, must find nothing.
void expect_no_solution(const scene& s, const matrix<double>& camera) {
    std::vector<matrix<double>> rotations(3, identity());
    std::vector<std::vector<double>> translations(2, {1, 2, 3});
    upnp(s.image, s.world, camera, rotations, translations);
    EXPECT_TRUE(rotations.empty());
    EXPECT_TRUE(translations.empty());
    matrix<double> rotation = identity();
    std::vector<double> translation = {1, 2, 3};
    upnp(s.image, s.world, camera, rotation, translation);
    EXPECT_EQ(rotation.get_dim1(), 0u);
    EXPECT_TRUE(translation.empty());
}

}  // namespace

TEST(Upnp, FindsExactPoses) {
    scenes random(1);
    for (int count : {5, 6, 10, 100}) {
        for (int i = 0; i < 40; ++i) {
            SCOPED_TRACE(testing::Message() << count << " points, scene " << i);
            expect_true_pose(random.make(count, i % 2 == 1));
        }
    }
}

TEST(Upnp, NoisyPosesStayNearTheBest) {
    scenes random(2);
    const double noise = 0.5;
    int good = 0;
    for (int i = 0; i < 100; ++i) {
        const scene s = random.make(50, i % 2 == 1, noise);
        const pose found = best(s);
        ASSERT_EQ(found.translation.size(), 3u);
        // The solver's error is not the reprojection error, so the true pose can be a little better.
        good += s.squared_error(found.rotation, found.translation) <
                1.1 * s.squared_error(s.rotation, s.translation);
    }
    // Now and then the solver takes the mirrored pose of a flat scene for the true one.
    EXPECT_GE(good, 95);
}

TEST(Upnp, BestIsTheLeastOfAllSolutions) {
    scenes random(3);
    int several = 0;
    for (int i = 0; i < 30; ++i) {
        const scene s = random.make(6, i % 2 == 1, 1.0);
        std::vector<matrix<double>> rotations;
        std::vector<std::vector<double>> translations;
        upnp(s.image, s.world, camera_matrix(), rotations, translations);
        ASSERT_EQ(rotations.size(), translations.size());
        ASSERT_FALSE(rotations.empty());
        several += rotations.size() > 1;
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t k = 0; k < rotations.size(); ++k) {
            EXPECT_NEAR(rotations[k].det(), 1.0, 1e-6);
            ASSERT_EQ(translations[k].size(), 3u);
            least = std::min(least, s.squared_error(rotations[k], translations[k]));
        }
        const pose found = best(s);
        EXPECT_NEAR(s.squared_error(found.rotation, found.translation), least, 1e-9 * least);
    }
    EXPECT_GT(several, 10);
}

TEST(Upnp, PriorOfAnyShapeIsOverwritten) {
    const scene s = scenes(4).make(20, false);
    std::vector<matrix<double>> expected;
    std::vector<std::vector<double>> unused;
    upnp(s.image, s.world, camera_matrix(), expected, unused);
    ASSERT_FALSE(expected.empty());
    struct prior {
        std::vector<matrix<double>> rotations;
        std::vector<std::vector<double>> translations;
    };
    const std::vector<prior> priors = {
        {{s.rotation}, {s.translation}},       {{identity(), identity()}, {{1, 2, 3}}},
        {{matrix<double>(2, 3)}, {{1, 2, 3}}}, {{identity()}, {{1, 2}}},
        {std::vector<matrix<double>>(50), {}},
    };
    for (prior p : priors) {
        upnp(s.image, s.world, camera_matrix(), p.rotations, p.translations);
        ASSERT_EQ(p.rotations.size(), expected.size());
        ASSERT_EQ(p.translations.size(), expected.size());
        EXPECT_THAT(p.rotations[0], matrix_near(to_rows(expected[0]), 1e-9));
    }
    pose found{identity(), {1, 2, 3}};
    upnp(s.image, s.world, camera_matrix(), found.rotation, found.translation);
    EXPECT_THAT(found.rotation, matrix_near(to_rows(s.rotation), 1e-6));
}

// The solver alone reads in front of its matrix in some of these.
TEST(Upnp, SolvesSymmetricScenes) {
    const rows square = {{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {1, 1, 0}, {0, 0, 0}};
    const rows octahedron = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    rows cube;
    rows grid;
    for (int i = 0; i < 8; ++i) {
        cube.push_back({i % 2 ? 1.0 : -1.0, i / 2 % 2 ? 1.0 : -1.0, i / 4 ? 1.0 : -1.0});
    }
    for (int i = 0; i < 9; ++i) {
        grid.push_back({i % 3 - 1.0, i / 3 - 1.0, 0.0});
    }
    for (const rows& shape : {square, octahedron, cube, grid}) {
        for (double depth = 2.0; depth <= 8.0; depth += 0.5) {
            rows moved = shape;
            for (auto& p : moved) {
                p[2] += depth;
            }
            for (int turns = 0; turns < 4; ++turns) {
                SCOPED_TRACE(testing::Message() << shape.size() << " points at " << depth << ", " << turns);
                scene s;
                s.rotation = zorv::euler_angles_rad_to_rot_mat<double>({turns * std::acos(-1.0) / 2, 0, 0});
                s.translation = {0.0, turns == 3 ? 1.0 : 0.0, turns == 2 ? depth : 0.0};
                s.set_points(moved);
                expect_true_pose(s);
            }
        }
    }
}

TEST(Upnp, NoSolutionWithoutAWellPosedProblem) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const scene good = scenes(5).make(10, false);
    ASSERT_EQ(best(good).translation.size(), 3u);

    for (double bad : {nan, infinity, -infinity, 1e200}) {
        scene s = good;
        s.image[3][1] = bad;
        expect_no_solution(s, camera_matrix());
        s = good;
        s.world[9][2] = bad;
        expect_no_solution(s, camera_matrix());
    }
    for (double scale : {0.0, 1e-20, 1e20}) {
        scene s = good;
        for (unsigned int i = 0; i < 10; ++i) {
            for (unsigned int k = 0; k < 3; ++k) {
                s.world[i][k] *= scale;
            }
        }
        expect_no_solution(s, camera_matrix());
    }
    // Less one row, more one row; a line; two places; the rays of one pixel.
    std::vector<scene> scenes(5, good);
    scenes[0].image = matrix<double>(9, 2);
    scenes[1].image = matrix<double>(11, 2);
    rows line;
    rows places;
    rows ray;
    for (int i = 0; i < 10; ++i) {
        line.push_back({0.1 * i, 0.3 * i - 1, 5 + 0.2 * i});
        places.push_back({double(i % 2), 1, 7});
        ray.push_back({0, 0, 3.0 + i});
    }
    scenes[2].set_points(line);
    scenes[3].set_points(places);
    scenes[4].set_points(ray);
    scenes.back().world = good.world;
    for (const scene& s : scenes) {
        expect_no_solution(s, camera_matrix());
    }
    scene two = scenes[0];
    two.set_points({{0, 0, 5}, {1, 1, 6}});
    expect_no_solution(two, camera_matrix());

    expect_no_solution(good, matrix<double>(3, 3));
    expect_no_solution(good, to_matrix({{800, 0, 320}, {0, 780, 250}}));
    expect_no_solution(good, to_matrix({{800, 0}, {0, 780}, {0, 1}}));
}

TEST(Upnp, SingularCameraMatrixStillRuns) {
    const scene s = scenes(6).make(10, false);
    EXPECT_EQ(best(s, to_matrix({{800, 0, 0}, {0, 800, 0}, {0, 0, 0}})).translation.size(), 3u);
}

TEST(Upnp, SizeErrorsGainAFrameFromTheBestForm) {
    struct wrong_size {
        matrix<double> image;
        matrix<double> world;
        std::string sentence;
    };
    const std::vector<wrong_size> cases = {
        {matrix<double>(5, 3), matrix<double>(5, 2),
         "3d points vector had size 5 by 2 (should be Npoints by 3)"},
        {matrix<double>(), matrix<double>(), "3d points vector had size 0 by 0 (should be Npoints by 3)"},
        {matrix<double>(4, 3), matrix<double>(5, 3),
         "2d points vector had size 4 by 3 (should be Npoints by 2)"},
    };
    for (const wrong_size& c : cases) {
        std::vector<matrix<double>> rotations;
        std::vector<std::vector<double>> translations;
        EXPECT_REPORT(upnp(c.image, c.world, camera_matrix(), rotations, translations), "opengv_wrapper",
                      "upnp", c.sentence);
        pose p;
        try {
            upnp(c.image, c.world, camera_matrix(), p.rotation, p.translation);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const zorv::exception_l& e) {
            EXPECT_EQ(e.depth(), 1);
            // Three lines of the outer function, the last one without a sentence, then the fresh report.
            const std::string text = e.what();
            const std::size_t inner = text.find("\tDetails: \n");
            ASSERT_NE(inner, std::string::npos) << text;
            EXPECT_EQ(text[0], '\t');
            EXPECT_NE(text.substr(0, inner).find("\tvoid zorv::upnp("), std::string::npos) << text;
            const std::string rest = text.substr(inner + 11);
            EXPECT_TRUE(is_report(rest.substr(0, rest.size() - 1), "opengv_wrapper", "upnp", c.sentence));
        }
    }
}

TEST(Upnp, ForeignExceptionsStartAtDepthZero) {
    const scene s = scenes(7).make(10, false);
    const matrix<double> empty;
    std::vector<matrix<double>> rotations(1);
    std::vector<std::vector<double>> translations(1);
    pose p;
    try {
        upnp(s.image, s.world, empty, rotations, translations);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const zorv::exception_l& e) {
        EXPECT_EQ(e.depth(), 0);
        EXPECT_NE(std::string(e.what()).find("\nDetails: \nOpenCV"), std::string::npos) << e.what();
    }
    EXPECT_EQ(rotations.size(), 1u);
    try {
        upnp(s.image, s.world, empty, p.rotation, p.translation);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const zorv::exception_l& e) {
        EXPECT_EQ(e.depth(), 1);
    }
}
