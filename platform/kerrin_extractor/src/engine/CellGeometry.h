// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellViews.h"

#include <vector>

namespace kx {

/// Six times the volume of a tetrahedron, or a number of the same sign and kind for the other shapes: the triple
/// product of the cell's mean directions, which warped and collapsed cells keep as long as anything of them is left.
/// Not finite when a coordinate is not.
inline double signedSize(CellCode code, const std::array<KbVec3<double>, 8>& p) {
  const auto triple = [](const KbVec3<double>& a, const KbVec3<double>& b, const KbVec3<double>& c) {
    return a.cross(b).dot(c);
  };
  switch (code) {
  case TETRAHEDRON:
    return triple(p[1] - p[0], p[2] - p[0], p[3] - p[0]);
  case PYRAMID:
    return triple(p[2] - p[0], p[3] - p[1], p[4] - (p[0] + p[1] + p[2] + p[3]) * 0.25);
  case WEDGE:
    return triple((p[1] - p[0]) + (p[4] - p[3]), (p[2] - p[0]) + (p[5] - p[3]),
                  (p[3] - p[0]) + (p[4] - p[1]) + (p[5] - p[2]));
  default: {
    const KbVec3<double> a = p[6] - p[0];
    const KbVec3<double> b = p[5] - p[3];
    const KbVec3<double> c = p[2] - p[4];
    const KbVec3<double> d = p[7] - p[1];
    return triple(a + b + c - d, a - b + c + d, a + b - c + d);
  }
  }
}

/// Six times the volume within the fans of a polyhedron's faces, given by local numbers of its corners; positive when
/// they turn outwards.
inline double signedSize(const std::vector<std::vector<std::size_t>>& faces,
                         const std::vector<KbVec3<double>>& corners) {
  double size = 0.0;
  for (const std::vector<std::size_t>& face : faces)
    for (std::size_t i = 1; i + 1 < face.size(); ++i)
      size +=
          (corners[face[0]] - corners[0]).dot((corners[face[i]] - corners[0]).cross(corners[face[i + 1]] - corners[0]));
  return size;
}

} // namespace kx
