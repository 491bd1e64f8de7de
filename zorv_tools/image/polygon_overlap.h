#pragma once

/// @file
/// How much two polygons overlap. These names stand in the global namespace and need nothing else of the library.
///
/// The polygons are lists of vertices without a closing one, convex or not. What is measured is the integral of
/// the product of their winding numbers: of two simple polygons of the same orientation, the area that they
/// share; with one of them reversed, the same below zero; where a polygon winds twice, its overlap counts twice.
/// All vertices together must span both axes, which is not tested.
///
/// Vertices are snapped to a grid of 500,000,000 steps each way, whose low bits are set so that the polygons have
/// no coordinate in common; no special position needs a case of its own then. The bits depend on which polygon comes
/// first and on the vertex that it begins with, and the results do so in their last digits. Vertices are only read,
/// and nothing is kept.

#include "zorv_tools/core/export.h"

/// A vertex, in any unit.
struct point {
    double x;  ///< across
    double y;  ///< down or up, the same for both polygons
};

/// The steps of the measure in 32-bit arithmetic, whose products wrap. Its magnitude cannot exceed some 8.6e-9 of
/// the area of the common bounding box, so that it is close to 0 for all polygons; it is kept for hosts that
/// compare with stored results. 0 where a polygon has fewer than three vertices.
ZORV_TOOLS_EXPORT double intersectionArea(int count_a, point* const a, int count_b, point* const b);

/// The same steps in 64-bit arithmetic: the area, in the square of the vertices' unit, to within the resolution of the
/// grid. 0 where a polygon has fewer than three vertices.
ZORV_TOOLS_EXPORT double intersectionArea64(int count_a, point* const a, int count_b, point* const b);
