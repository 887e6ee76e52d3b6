// SPDX-License-Identifier: BSD-3-Clause
#include "FaceCutter.h"

#include "FinitePosition.h"

#include <algorithm>
#include <cmath>

namespace kx {
namespace {

/// The sum of the cross products around a polygon: its normal, twice its area long (M. E. Newell).
KbVec3<double> areaVector(std::span<const KbVec3<double>> corners) {
  KbVec3<double> sum;
  for (std::size_t i = 1; i + 1 < corners.size(); ++i)
    sum += (corners[i] - corners[0]).cross(corners[i + 1] - corners[0]);
  return sum;
}

} // namespace

bool FaceCutter::isFinite(std::span<const KbVec3<double>> corners) {
  return std::all_of(corners.begin(), corners.end(), [](const KbVec3<double>& p) { return kx::isFinite(p); });
}

bool FaceCutter::setFace(const CellNodeList& face, const PointView& points) {
  const std::size_t n = face.numCorners;
  m_corners.resize(n);
  for (std::size_t i = 0; i < n; ++i)
    m_corners[i] = points[face.ids[i]];
  if (!isFinite(m_corners)) return false;
  m_triangles.clear();
  if (!isConvexPolygon(m_corners) || (m_splitsWarpedFaces && n > 3 && isWarpedPolygon(m_corners)))
    triangulatePolygon(m_corners, m_triangles);
  return true;
}

bool isConvexPolygon(std::span<const KbVec3<double>> corners) {
  const std::size_t n = corners.size();
  if (n == 3) return true;
  if (n == 4) {
    // The normal is the product of the diagonals, and the sum of the products at opposite corners.
    const KbVec3<double> sides[3] = {corners[1] - corners[0], corners[2] - corners[1], corners[3] - corners[2]};
    const KbVec3<double> normal = (corners[2] - corners[0]).cross(corners[3] - corners[1]);
    const double whole = normal.squaredLength();
    const double tolerance = -1e-12 * whole;
    const double atSecond = sides[0].cross(sides[1]).dot(normal);
    const double atThird = sides[1].cross(sides[2]).dot(normal);
    return std::min(std::min(atSecond, whole - atSecond), std::min(atThird, whole - atThird)) >= tolerance;
  }
  const KbVec3<double> normal = areaVector(corners);
  const double tolerance = -1e-12 * normal.squaredLength();
  KbVec3<double> side = corners[0] - corners[n - 1];
  for (std::size_t i = 0; i < n; ++i) {
    const KbVec3<double> nextSide = corners[i + 1 < n ? i + 1 : 0] - corners[i];
    if (side.cross(nextSide).dot(normal) < tolerance) return false;
    side = nextSide;
  }
  return true;
}

bool isWarpedPolygon(std::span<const KbVec3<double>> corners) {
  const KbVec3<double> normal = areaVector(corners);
  // Heights times the normal's length, against a thousandth of the size, which is the root of that length.
  const double length = normal.length();
  const double limit = 1e-3 * length * std::sqrt(length);
  for (std::size_t i = 1; i < corners.size(); ++i)
    if (std::abs((corners[i] - corners[0]).dot(normal)) > limit) return true;
  return false;
}

void triangulatePolygon(std::span<const KbVec3<double>> corners, std::vector<std::array<std::size_t, 3>>& triangles) {
  triangles.clear();
  if (corners.size() == 4 && isConvexPolygon(corners)) {
    const bool firstIsShorter = (corners[2] - corners[0]).squaredLength() <= (corners[3] - corners[1]).squaredLength();
    if (firstIsShorter)
      triangles.assign({{0, 1, 2}, {0, 2, 3}});
    else
      triangles.assign({{0, 1, 3}, {1, 2, 3}});
    return;
  }
  const KbVec3<double> normal = areaVector(corners);
  std::size_t drop = 0; // the axis along which the polygon is looked at
  for (std::size_t axis = 1; axis < 3; ++axis)
    if (std::abs(normal[axis]) > std::abs(normal[drop])) drop = axis;
  const std::size_t x = normal[drop] < 0.0 ? (drop + 2) % 3 : (drop + 1) % 3;
  const std::size_t y = 3 - drop - x;
  const auto turn = [&](std::size_t a, std::size_t b, std::size_t c) {
    const KbVec3<double>& o = corners[a];
    const KbVec3<double>& p = corners[b];
    const KbVec3<double>& q = corners[c];
    return (p[x] - o[x]) * (q[y] - o[y]) - (p[y] - o[y]) * (q[x] - o[x]);
  };
  std::vector<std::size_t> left(corners.size());
  for (std::size_t i = 0; i < left.size(); ++i)
    left[i] = i;
  const auto isEar = [&](std::size_t i) {
    const std::size_t n = left.size();
    const std::size_t a = left[(i + n - 1) % n];
    const std::size_t b = left[i];
    const std::size_t c = left[(i + 1) % n];
    if (turn(a, b, c) <= 0.0) return false;
    return std::none_of(left.begin(), left.end(), [&](std::size_t other) {
      if (corners[other] == corners[a] || corners[other] == corners[b] || corners[other] == corners[c]) return false;
      return turn(a, b, other) >= 0.0 && turn(b, c, other) >= 0.0 && turn(c, a, other) >= 0.0;
    });
  };
  while (left.size() >= 3) {
    std::size_t ear = 0;
    while (ear < left.size() && !isEar(ear))
      ++ear;
    if (ear == left.size()) { // nothing but flat corners is left, or the polygon crosses itself
      ear = 0;
      for (std::size_t i = 1; i < left.size(); ++i) {
        const std::size_t n = left.size();
        const auto flatness = [&](std::size_t k) {
          return std::abs(turn(left[(k + n - 1) % n], left[k], left[(k + 1) % n]));
        };
        if (flatness(i) < flatness(ear)) ear = i;
      }
    }
    const std::size_t n = left.size();
    triangles.push_back({left[(ear + n - 1) % n], left[ear], left[(ear + 1) % n]});
    left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
  }
}

} // namespace kx
