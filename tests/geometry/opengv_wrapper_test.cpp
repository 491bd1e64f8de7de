#include "zorv_tools/geometry/opengv_wrapper.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "tests/support/matchers.h"
#include "zorv_tools/core/exception_l.h"
#include "zorv_tools/core/rotation.h"
#include "zorv_tools/core/std_vector_overloads.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using zorv::matrix;
using zorv::upnp;
using zorv::operator+=;
using zorv::operator-=;

const row_list identity{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
const matrix<double> camera_matrix = to_matrix({{800, 0, 320}, {0, 780, 250}, {0, 0, 1}});

struct pose {
    matrix<double> rotation = to_matrix(identity);
    std::vector<double> translation = {0, 0, 0};
};

/// What a camera in this pose sees of the world points.
matrix<double> pixels(const pose& camera, const matrix<double>& world) {
    row_list result;
    for (std::vector<double> p : to_rows(world)) {
        p = camera_matrix * (camera.rotation.transpose() * (p -= camera.translation));
        result.push_back({p[0] / p[2], p[1] / p[2]});
    }
    return to_matrix(result);
}

struct scene {
    pose truth;
    matrix<double> world;
    matrix<double> image;

    /// Points given in the frame of the camera.
    scene(const pose& camera, const row_list& points) : truth(camera) {
        row_list turned;
        for (const std::vector<double>& p : points) {
            turned.push_back(camera.rotation * p);
            turned.back() += camera.translation;
        }
        world = to_matrix(turned);
        image = pixels(camera, world);
    }

    double squared_error(const pose& camera) const {
        double sum = 0.0;
        const matrix<double> seen = pixels(camera, world);
        for (unsigned int i = 0; i < seen.get_dim1(); ++i) {
            sum += std::pow(seen[i][0] - image[i][0], 2) + std::pow(seen[i][1] - image[i][1], 2);
        }
        return sum;
    }
};

class scenes {
public:
    explicit scenes(unsigned int seed) : generator_(seed) {}

    scene make(int count, bool flat, double noise = 0.0) {
        const auto turn = [&](double tilt, double w) {
            return zorv::quaternion_to_rot_mat({tilt * normal(), tilt * normal(), normal(), w});
        };
        const pose camera{turn(1.0, normal()), {3 * normal(), 3 * normal(), 3 * normal()}};
        const matrix<double> plane = turn(0.4, 1.0);
        row_list points;
        for (int i = 0; i < count; ++i) {
            points.push_back(plane * std::vector<double>{uniform(), uniform(), flat ? 0.0 : uniform()});
            points.back()[2] += 4.0;
        }
        scene s(camera, points);
        for (unsigned int i = 0; i < s.image.get_dim1(); ++i) {
            s.image[i][0] += noise * normal();
            s.image[i][1] += noise * normal();
        }
        return s;
    }

private:
    double normal() { return normal_(generator_); }
    double uniform() { return uniform_(generator_); }

    std::mt19937 generator_;
    std::normal_distribution<double> normal_;
    std::uniform_real_distribution<double> uniform_{-1.0, 1.0};
};

/// All solutions, as the two vectors that they come in.
struct solutions {
    std::vector<matrix<double>> rotations;
    std::vector<std::vector<double>> translations;

    void find(const scene& s, const matrix<double>& camera = camera_matrix) {
        upnp(s.image, s.world, camera, rotations, translations);
        ASSERT_EQ(rotations.size(), translations.size());
    }
};

pose best(const scene& s, const matrix<double>& camera = camera_matrix) {
    pose result;
    upnp(s.image, s.world, camera, result.rotation, result.translation);
    return result;
}

void expect_true_pose(const scene& s) {
    const pose found = best(s);
    EXPECT_THAT(found.rotation, matrix_near(to_rows(s.truth.rotation), 1e-6));
    EXPECT_THAT(found.translation, testing::Pointwise(testing::DoubleNear(1e-5), s.truth.translation));
    EXPECT_LT(s.squared_error(found), 1e-6);
}

zorv::exception_l thrown_by(const std::function<void()>& action) {
    try {
        action();
    } catch (const zorv::exception_l& e) {
        return e;
    }
    return {"nothing was thrown", -1};
}

/// Both forms, with outputs that are not empty, must find nothing.
void expect_no_solution(const std::string& what, const scene& s, const matrix<double>& camera) {
    SCOPED_TRACE(what);
    solutions all{{3, to_matrix(identity)}, {2, {1, 2, 3}}};
    all.find(s, camera);
    EXPECT_TRUE(all.rotations.empty());
    const pose found = best(s, camera);
    EXPECT_EQ(found.rotation.get_dim1(), 0u);
    EXPECT_TRUE(found.translation.empty());
}

}  // namespace

TEST(Upnp, FindsExactPoses) {
    scenes random(1);
    for (const int count : {5, 6, 10, 100}) {
        for (int i = 0; i < 40; ++i) {
            SCOPED_TRACE(testing::Message() << count << " points, scene " << i);
            expect_true_pose(random.make(count, i % 2 == 1));
        }
    }
}

TEST(Upnp, BestIsTheLeastOfAllSolutions) {
    scenes random(3);
    int several = 0;
    int good = 0;
    for (int i = 0; i < 100; ++i) {
        const scene s = random.make(6, i % 2 == 1, 1.0);
        solutions all;
        all.find(s);
        several += all.rotations.size() > 1;
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t k = 0; k < all.rotations.size(); ++k) {
            EXPECT_NEAR(all.rotations[k].det(), 1.0, 1e-6);
            least = std::min(least, s.squared_error({all.rotations[k], all.translations[k]}));
        }
        EXPECT_NEAR(s.squared_error(best(s)), least, 1e-9 * least);
        // The solver's error is not the reprojection error, so that the true pose can be a little better; and now
        // and then it takes the mirrored pose of a flat scene for the true one.
        good += least < 2 * s.squared_error(s.truth);
    }
    EXPECT_GT(several, 30);
    EXPECT_GE(good, 90);
}

TEST(Upnp, PriorOfAnyShapeIsOverwritten) {
    const scene s = scenes(4).make(20, false);
    solutions expected;
    expected.find(s);
    ASSERT_FALSE(expected.rotations.empty());
    const matrix<double> rotation = to_matrix(identity);
    const solutions priors[] = {
        {{s.truth.rotation}, {s.truth.translation}}, {{2, rotation}, {{1, 2, 3}}},
        {{matrix<double>(2, 3)}, {{1, 2, 3}}},       {{rotation}, {{1, 2}}},
        {std::vector<matrix<double>>(50), {}},
    };
    for (solutions found : priors) {
        found.find(s);
        ASSERT_EQ(found.rotations.size(), expected.rotations.size());
        EXPECT_THAT(found.rotations[0], matrix_near(to_rows(expected.rotations[0]), 1e-9));
    }
}

// The solver alone reads in front of its matrix in some of these.
TEST(Upnp, SolvesSymmetricScenes) {
    const row_list square{{-1, -1, 0}, {1, -1, 0}, {-1, 1, 0}, {1, 1, 0}, {0, 0, 0}};
    const row_list octahedron{{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    row_list cube;
    for (int i = 0; i < 8; ++i) {
        cube.push_back({i % 2 * 2 - 1.0, i / 2 % 2 * 2 - 1.0, i / 4 * 2 - 1.0});
    }
    row_list grid;
    for (int i = 0; i < 9; ++i) {
        grid.push_back({i % 3 - 1.0, i / 3 - 1.0, 0.0});
    }
    for (const row_list& shape : {square, grid, octahedron, cube}) {
        for (double depth = 2.0; depth <= 8.0; depth += 0.5) {
            row_list moved = shape;
            for (auto& p : moved) {
                p[2] += depth;
            }
            for (int turns = 0; turns < 4; ++turns) {
                SCOPED_TRACE(testing::Message() << shape.size() << " points at " << depth << ", " << turns);
                const double angle = turns * std::acos(-1.0) / 2;
                expect_true_pose(scene({zorv::euler_angles_rad_to_rot_mat<double>({angle, 0, 0}),
                                        {0.0, turns == 3 ? 1.0 : 0.0, turns == 2 ? depth : 0.0}},
                                       moved));
            }
        }
    }
}

TEST(Upnp, NoSolutionWithoutAWellPosedProblem) {
    const scene good = scenes(5).make(10, false);
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double bad : {std::nan(""), infinity, -infinity, 1e200}) {
        scene s = good;
        s.image[3][1] = bad;
        expect_no_solution("an image point", s, camera_matrix);
        s = good;
        s.world[9][2] = bad;
        expect_no_solution("a world point", s, camera_matrix);
    }
    for (const double scale : {0.0, 1e-20, 1e20}) {
        scene s = good;
        s.world *= to_matrix({{scale, 0, 0}, {0, scale, 0}, {0, 0, scale}});
        expect_no_solution("scaled by " + testing::PrintToString(scale), s, camera_matrix);
    }
    const auto with_image = [&](const matrix<double>& image) {
        scene s = good;
        s.image = image;
        return s;
    };
    expect_no_solution("fewer image points", with_image(matrix<double>(9, 2)), camera_matrix);
    expect_no_solution("more image points", with_image(scenes(5).make(11, false).image), camera_matrix);
    expect_no_solution("one ray", with_image(matrix<double>(10, 2)), camera_matrix);
    expect_no_solution("rays that vanish", with_image(good.image * to_matrix({{1e-170, 0}, {0, 1e-170}})),
                       to_matrix({{800, 0, 800}, {0, 800, 0}, {0, 0, 0}}));
    row_list line;
    row_list nearly;
    for (int i = 0; i < 10; ++i) {
        line.push_back({0.1 * i, 0.3 * i - 1, 5 + 0.2 * i});
        nearly.push_back({0.1 * i, 0.3 * i - 1 + i % 3 * 1e-4, 5 + 0.2 * i + i % 4 * 1e-4});
    }
    expect_no_solution("a line", scene(good.truth, line), camera_matrix);
    expect_no_solution("two points", scene(good.truth, {{0, 0, 5}, {1, 1, 6}}), camera_matrix);

    expect_no_solution("no camera", good, matrix<double>(3, 3));
    expect_no_solution("2 by 3", good, to_matrix({{800, 0, 320}, {0, 780, 250}}));
    expect_no_solution("3 by 2", good, to_matrix({{800, 0}, {0, 780}, {0, 1}}));
    // What is hard, but well posed, is solved.
    expect_true_pose(good);
    expect_true_pose(scene(good.truth, nearly));
    EXPECT_EQ(best(good, to_matrix({{800, 0, 0}, {0, 800, 0}, {0, 0, 0}})).translation.size(), 3u);
}

TEST(Upnp, FailuresGainAFrameFromTheBestForm) {
    const scene good = scenes(7).make(10, false);
    const struct {
        matrix<double> image, world, camera;
        std::string details;
    } cases[] = {
        {{5, 3}, {5, 2}, camera_matrix, "3d points vector had size 5 by 2 (should be Npoints by 3)\n"},
        {{}, {}, camera_matrix, "3d points vector had size 0 by 0 (should be Npoints by 3)\n"},
        {{4, 3}, {5, 3}, camera_matrix, "2d points vector had size 4 by 3 (should be Npoints by 2)\n"},
        // An exception of another library starts at depth 0 in the form that catches it.
        {good.image, good.world, {}, "\nOpenCV"},
    };
    for (const auto& c : cases) {
        solutions all{std::vector<matrix<double>>(1), {{}}};
        const zorv::exception_l inner =
            thrown_by([&] { upnp(c.image, c.world, c.camera, all.rotations, all.translations); });
        EXPECT_EQ(inner.depth(), 0);
        EXPECT_THAT(inner.what(), MatchesRegex("[^\n]*opengv_wrapper.cpp\\([0-9]+\\)\nvoid zorv::upnp\\(.*"));
        EXPECT_THAT(inner.what(), HasSubstr("\nDetails: " + c.details));
        EXPECT_EQ(all.rotations.size(), 1u);
        pose p;
        const zorv::exception_l outer =
            thrown_by([&] { upnp(c.image, c.world, c.camera, p.rotation, p.translation); });
        EXPECT_EQ(outer.depth(), 1);
        // Three lines of the outer function, the last one without a sentence, then the other report.
        EXPECT_THAT(outer.what(), MatchesRegex("\t[^\n]*\n\tvoid zorv::upnp\\(.*"));
        EXPECT_THAT(outer.what(), EndsWith("\n\tDetails: \n" + std::string(inner.what()) + "\n"));
    }
}
