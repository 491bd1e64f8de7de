#include "zorv_tools/geometry/Transform_estimator.h"

#include <algorithm>
#include <opencv2/core.hpp>

#include "zorv_tools/core/exception_l.h"

namespace zorv {

namespace {

using point_list = std::vector<std::vector<double>>;

constexpr int unknowns = 15;

void require_equal_counts(std::size_t original, std::size_t target, const code_location& caller) {
    if (original != target) {
        std::ostringstream sentence;
        sentence << "Transform_estimator::estimate_transform() : mismatch on number of points. original size="
                 << original << " while target size=" << target;
        throw_exception_l(caller, sentence.str());
    }
}

}  // namespace

Transform_estimator::~Transform_estimator() = default;

const matrix<double> Transform_estimator::estimate_transform(const point_list& original,
                                                             const point_list& target) {
    require_equal_counts(original.size(), target.size(), ZORV_HERE);
    const int rows = 3 * static_cast<int>(original.size());
    // Rows that are never touched keep glibc from handing the memory of this and of the solver's copy back to the
    // system at the end of each call, and from fetching it again at the next: it keeps twice the largest block.
    constexpr int spare_rows = 2048;
    cv::Mat system(rows + spare_rows, unknowns + 1, CV_64F);
    // Unlike a submatrix, these keep their columns where there is no point, so that the solver refuses them too.
    const cv::Mat left(rows, unknowns, CV_64F, system.data, system.step);
    const cv::Mat right(rows, 1, CV_64F, system.ptr<double>() + unknowns, system.step);
    for (std::size_t i = 0; i < original.size(); ++i) {
        const std::vector<double>& o = original[i];
        const std::vector<double>& t = target[i];
        if (o.size() != t.size()) {
            ZORV_THROW("Transform_estimator::estimate_transform() : mismatch on dimensionality of point "
                       << i << ". original dims=" << o.size() << " while target dims=" << t.size());
        }
        for (int k = 0; k < 3; ++k) {
            const int row = 3 * static_cast<int>(i) + k;
            const double value = o[static_cast<std::size_t>(k)];
            double* const equation = system.ptr<double>(row);
            std::fill_n(equation, 12, 0.0);
            for (std::size_t j = 0; j < 3; ++j) {
                equation[4 * k + static_cast<int>(j)] = t[j];
                equation[12 + j] = -(value * t[j]);
            }
            equation[4 * k + 3] = 1.0;
            equation[unknowns] = value;
        }
    }
    cv::Mat solution;
    // Whether the system has full rank is not looked at: short of it, the solution of least norm is the answer.
    cv::solve(left, right, solution, cv::DECOMP_SVD);

    matrix<double> transform(4, 4);
    std::copy_n(solution.ptr<double>(), unknowns, transform[0]);
    transform[3][3] = 1.0;
    return transform;
}

const matrix<double> Transform_estimator::estimate_transform(
    const std::vector<std::vector<double>*>* original, const std::vector<std::vector<double>*>* target) {
    point_list original_copy(original->size());
    point_list target_copy(target->size());
    require_equal_counts(original->size(), target->size(), ZORV_HERE);
    for (std::size_t i = 0; i < original->size(); ++i) {
        original_copy[i] = *original->at(i);
        target_copy[i] = *target->at(i);
    }
    return estimate_transform(original_copy, target_copy);
}

const matrix<double> Transform_estimator::estimate_transform(matrix<double> original, matrix<double> target) {
    point_list original_copy(original.get_dim1());
    point_list target_copy(target.get_dim1());
    require_equal_counts(original.get_dim1(), target.get_dim1(), ZORV_HERE);
    for (unsigned int i = 0; i < original.get_dim1(); ++i) {
        // This form never reaches the wording of the core, and has one of its own.
        if (original.get_dim2() != target.get_dim2()) {
            ZORV_THROW("Transform_estimator::estimate_transform() : mismatch on dimension of point "
                       << i << ". original size=" << original.get_dim2()
                       << " while target size=" << target.get_dim2());
        }
        original_copy[i].assign(original[i], original[i] + original.get_dim2());
        target_copy[i].assign(target[i], target[i] + target.get_dim2());
    }
    return estimate_transform(original_copy, target_copy);
}

}  // namespace zorv
