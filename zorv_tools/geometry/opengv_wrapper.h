#pragma once

/// @file
/// Pose of a camera from image points and the world points that they show.
///
/// Both functions take `image_points` (N by 2, the pixel (u, v) of each point), `world_points` (N by 3) and
/// `camera_matrix` (3 by 3, from a point in the camera's frame to homogeneous pixels), and call the UPnP solver
/// of opengv: L. Kneip, H. Li, Y. Seo, "UPnP: An optimal O(n) solution to the absolute pose problem with
/// universal applicability", ECCV 2014.
///
/// A solution (R, t) is the camera's pose in the world: a world point X has the position R^T (X - t) in the
/// camera's frame. As the extrinsics of a `Camera` it is the translation t and the rotation R^T.
///
/// There is no solution, and the solver is not called, where
/// - the two lists of points differ in length, or hold fewer than three points;
/// - `camera_matrix` is neither 3 by 3 nor empty;
/// - a world point or a ray through an image point is not finite, as with an all-zero `camera_matrix`, or the
///   points' coordinates or spread are beyond 1e12 or below 1e-12;
/// - all world points lie on one line or all rays coincide, which leaves the pose open.
///
/// Three and four points are solved less surely than five and more. Where the axes of the camera or of the world
/// are those of a symmetry of the points, or the points lie in a coordinate plane, the solver sees a turned world,
/// since the packaged opengv can fail on such points; solutions other than the true ones then depend on the turn.
///
/// A list of world points without exactly three columns, or of image points without exactly two, raises
/// `exception_l`. An empty list has no columns and raises it too. So does an empty `camera_matrix` and any failure on
/// the way, as a report with a frame of each of the functions here that it passed.

#include <vector>

#include "zorv_tools/core/export.h"
#include "zorv_tools/core/matrix.h"

namespace zorv {

/// Fills the two vectors with all solutions, in the solver's order, or empties them. A prior in their first
/// elements (3 by 3 and 3 entries) is handed to the solver, and overwritten or dropped.
ZORV_TOOLS_EXPORT void upnp(const matrix<double>& image_points, const matrix<double>& world_points,
                            const matrix<double>& camera_matrix, std::vector<matrix<double>>& rotations,
                            std::vector<std::vector<double>>& translations);

/// Gives the solution whose sum of squared reprojection errors, in pixels, is the least; empties both outputs
/// where there is none. Points behind the camera count as if they were in front of it. A prior in the outputs (3 by 3
/// and 3 entries) is handed to the solver.
ZORV_TOOLS_EXPORT void upnp(const matrix<double>& image_points, const matrix<double>& world_points,
                            const matrix<double>& camera_matrix, matrix<double>& rotation,
                            std::vector<double>& translation);

}  // namespace zorv
