// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>

#include <cstddef>
#include <vector>

namespace kx {

/// Mean value coordinates of a point in the plane of a (possibly concave) polygon (Hormann and Floater 2006, Mean value
/// coordinates for arbitrary planar polygons). Sums to 1; the limits on corners and edges are exact.
void polygonWeights(const std::vector<KbVec3<double>>& corners, const KbVec3<double>& point,
                    std::vector<double>& weights);
/// Newell's normal: its length is twice the area.
KbVec3<double> polygonNormal(const std::vector<KbVec3<double>>& corners);
/// Whether a point of the polygon's plane lies in it (even-odd rule; the boundary counts).
bool isInsidePolygon(const std::vector<KbVec3<double>>& corners, const KbVec3<double>& normal,
                     const KbVec3<double>& point);

/// Whether a point lies on a polygon, and its mean value coordinates if so. The polygon need not be flat: any surface
/// between its corners counts, for what a display makes of it is not known here. A height of 1e-4 of its extent more,
/// or as much beside its border, counts as well: positions that are picked are rounded.
bool weightsOnPolygon(const std::vector<KbVec3<double>>& corners, const KbVec3<double>& point,
                      std::vector<double>& weights);

/// The faces of a polyhedron as lists of local node indices, counter-clockwise seen from outside.
using Facets = std::vector<std::vector<std::size_t>>;

/// Mean value coordinates in a closed polyhedron (Ju, Schaefer and Warren 2005, Mean value coordinates for closed
/// triangular meshes). Faces are fans around their mean point, whose weight goes to their corners in equal parts.
void polyhedronWeights(const Facets& facets, const std::vector<KbVec3<double>>& nodes, const KbVec3<double>& point,
                       std::vector<double>& weights);
/// Whether a point lies in a closed polyhedron: the solid angle of its faces is then 4 pi.
bool isInsidePolyhedron(const Facets& facets, const std::vector<KbVec3<double>>& nodes, const KbVec3<double>& point);

} // namespace kx
