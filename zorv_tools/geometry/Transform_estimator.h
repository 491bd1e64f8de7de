#pragma once

/// @file
/// Projective transform between two sets of corresponding points in space.

#include <vector>

#include "zorv_tools/core/export.h"
#include "zorv_tools/core/matrix.h"

namespace zorv {

/// Fits a 4 by 4 homogeneous matrix H, with H(3,3) fixed at 1, that carries each target point onto its original
/// point: (original, 1) is proportional to H (target, 1). Mind the direction, the first argument is the image. A
/// transform with a 0 at (3,3), one that carries the targets' origin to infinity, cannot be found.
///
/// The fifteen other elements are the least-squares solution, by singular values, of three linear equations a
/// point,
///   o[k] (H(3,0) t[0] + H(3,1) t[1] + H(3,2) t[2] + 1) = H(k,0) t[0] + H(k,1) t[1] + H(k,2) t[2] + H(k,3),
/// the direct linear transform in space, in its inhomogeneous form (R. Hartley, A. Zisserman, Multiple View Geometry
/// in Computer Vision, 2nd edition, 4.1); the error that it minimises is algebraic, and coordinates are not
/// normalised. Five points in general position are the fewest that determine H. Fewer raise `cv::Exception`;
/// degenerate ones, such as points that all lie in a plane, give the solution of least norm without a report.
///
/// Points have at least three entries, which is not tested; further entries are ignored. Numbers of points or
/// of entries that differ between the two sets raise `exception_l`. An object keeps nothing between calls.
class ZORV_TOOLS_EXPORT Transform_estimator {
public:
    virtual ~Transform_estimator();

    /// One inner vector a point.
    const matrix<double> estimate_transform(const std::vector<std::vector<double>>& original,
                                            const std::vector<std::vector<double>>& target);
    /// One pointed-to vector a point. The vectors stay the caller's, and no pointer may be null.
    const matrix<double> estimate_transform(const std::vector<std::vector<double>*>* original,
                                            const std::vector<std::vector<double>*>* target);
    /// One row a point. Column counts that differ are reported in words of their own.
    const matrix<double> estimate_transform(matrix<double> original, matrix<double> target);
};

}  // namespace zorv
