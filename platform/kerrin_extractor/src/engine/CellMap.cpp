// SPDX-License-Identifier: BSD-3-Clause
#include "CellMap.h"

#include "CellGeometry.h"
#include "src/contract/ShapeFunctions.h"

#include <algorithm>
#include <cmath>

namespace kx {

using Vec3 = KbVec3<double>;

CellMap::CellMap(CellCode code, const std::array<Vec3, 8>& p)
    : m_code(code) {
  switch (code) {
  case TETRAHEDRON:
    m_a = {p[0], p[1] - p[0], p[2] - p[0], p[3] - p[0]};
    break;
  case WEDGE: {
    const Vec3 r = p[1] - p[0];
    const Vec3 s = p[2] - p[0];
    m_a = {p[0], r, s, p[3] - p[0], {}, (p[5] - p[3]) - s, (p[4] - p[3]) - r, {}};
    break;
  }
  case PYRAMID: {
    const Vec3 rs = p[0] - p[1] + p[2] - p[3];
    m_a = {p[0], p[1] - p[0], p[3] - p[0], p[4] - p[0], rs, p[0] - p[3], p[0] - p[1], -rs};
    break;
  }
  default: {
    const Vec3 rs = p[0] - p[1] + p[2] - p[3];
    m_a = {p[0],
           p[1] - p[0],
           p[3] - p[0],
           p[4] - p[0],
           rs,
           p[0] - p[3] - p[4] + p[7],
           p[0] - p[1] - p[4] + p[5],
           (p[4] - p[5] + p[6] - p[7]) - rs};
  }
  }
}

Vec3 CellMap::at(const Vec3& x) const {
  const double r = x[0];
  const double s = x[1];
  const double t = x[2];
  return m_a[0] + m_a[1] * r + (m_a[2] + m_a[4] * r) * s + (m_a[3] + m_a[6] * r + (m_a[5] + m_a[7] * r) * s) * t;
}

Vec3 CellMap::centre() const {
  switch (m_code) {
  case TETRAHEDRON:
    return Vec3(0.25);
  case WEDGE:
    return {1.0 / 3.0, 1.0 / 3.0, 0.5};
  case PYRAMID:
    return {0.5, 0.5, 0.25};
  default:
    return Vec3(0.5);
  }
}

double CellMap::excess(const Vec3& x) const {
  const auto below = std::max({-x[0], -x[1], -x[2]});
  switch (m_code) {
  case TETRAHEDRON:
    return std::max(below, x[0] + x[1] + x[2] - 1.0);
  case WEDGE:
    return std::max({below, x[0] + x[1] - 1.0, x[2] - 1.0});
  case PYRAMID: {
    // Towards the apex the base coordinates lose their meaning: they count by what is left of the base there.
    const double u = std::max(1.0 - x[2], 0.0);
    return std::max({-x[2], x[2] - 1.0, u * std::max({-x[0], -x[1], x[0] - 1.0, x[1] - 1.0})});
  }
  default:
    return std::max({below, x[0] - 1.0, x[1] - 1.0, x[2] - 1.0});
  }
}

CellMap::Answer CellMap::solveTetrahedron(const Vec3& point, Vec3& x) const {
  const Vec3& dr = m_a[1];
  const Vec3& ds = m_a[2];
  const Vec3& dt = m_a[3];
  const Vec3 st = ds.cross(dt);
  const double volume = dr.dot(st);
  const double scale2 = dr.squaredLength() * ds.squaredLength() * dt.squaredLength();
  if (!(volume * volume > 1e-24 * scale2)) return Answer::UNDECIDED;
  const Vec3 way = point - m_a[0];
  const Vec3 rWay = dr.cross(way);
  x = Vec3(way.dot(st), dt.dot(rWay), -ds.dot(rWay)) / volume;
  return excess(x) <= INSIDE_TOLERANCE ? Answer::INSIDE : Answer::OUTSIDE;
}

CellMap::Answer CellMap::newton(const Vec3& point, Vec3& x) const {
  constexpr int MAX_STEPS = 20;
  double firstVolume = 0.0;
  for (int i = 0; i < MAX_STEPS; ++i) {
    const double r = x[0];
    const double s = x[1];
    const double t = x[2];
    const Vec3 dr = m_a[1] + m_a[4] * s + (m_a[6] + m_a[7] * s) * t;
    const Vec3 ds = m_a[2] + m_a[4] * r + (m_a[5] + m_a[7] * r) * t;
    const Vec3 dt = m_a[3] + m_a[6] * r + (m_a[5] + m_a[7] * r) * s;
    const Vec3 residual = point - (m_a[0] + m_a[1] * r + (m_a[2] + m_a[4] * r) * s + dt * t);
    const Vec3 st = ds.cross(dt);
    const double volume = dr.dot(st);
    const double scale2 = dr.squaredLength() * ds.squaredLength() * dt.squaredLength();
    if (!(volume * volume > 1e-24 * scale2)) return Answer::UNDECIDED;
    if (i == 0) firstVolume = volume;
    const Vec3 rResidual = dr.cross(residual);
    Vec3 step = Vec3(residual.dot(st), dt.dot(rResidual), -ds.dot(rResidual)) / volume;
    const double length = std::max({std::abs(step[0]), std::abs(step[1]), std::abs(step[2])});
    if (length > 1.0) step /= length;
    x += step;
    const bool isSameBranch = volume * firstVolume > 0.0;
    // Steps shrink as their squares: the rest of the way is shorter than the last step.
    if (isSameBranch && length < 0.25 && excess(x) > 2.0 * length && length > 1e-7) return Answer::OUTSIDE;
    if (length <= 1e-7) {
      if (excess(x) <= INSIDE_TOLERANCE) return Answer::INSIDE;
      return isSameBranch ? Answer::OUTSIDE : Answer::UNDECIDED;
    }
  }
  return Answer::UNDECIDED;
}

CellMap::Answer CellMap::newtonPyramid(const Vec3& point, Vec3& x) const {
  constexpr int MAX_STEPS = 20;
  const Vec3 fromApex = point - (m_a[0] + m_a[3]);
  // With u = 1 - t, point - apex = u b + (ur) a1 + (us) a2 + (ur)(us) / u a4: linear for a base that is a
  // parallelogram, and regular up to the apex, where the reference coordinates themselves are not.
  const Vec3 b = -m_a[3];
  const double size2 = b.squaredLength();
  if (fromApex.squaredLength() <= INSIDE_TOLERANCE * INSIDE_TOLERANCE * size2) {
    x = {0.5, 0.5, 1.0};
    return Answer::INSIDE;
  }
  double u = std::max(1.0 - x[2], 0.1);
  double ur = u * x[0];
  double us = u * x[1];
  for (int i = 0; i < MAX_STEPS; ++i) {
    const double r = ur / u;
    const double s = us / u;
    const Vec3 du = b - m_a[4] * (r * s);
    const Vec3 dr = m_a[1] + m_a[4] * s;
    const Vec3 ds = m_a[2] + m_a[4] * r;
    const Vec3 residual = fromApex - (b * u + m_a[1] * ur + m_a[2] * us + m_a[4] * (ur * s));
    const Vec3 drs = dr.cross(ds);
    const double volume = du.dot(drs);
    const double scale2 = dr.squaredLength() * ds.squaredLength() * du.squaredLength();
    if (!(volume * volume > 1e-24 * scale2)) return Answer::UNDECIDED;
    const double stepU = residual.dot(drs) / volume;
    const double stepR = residual.dot(ds.cross(du)) / volume;
    const double stepS = residual.dot(du.cross(dr)) / volume;
    const double length = std::max({std::abs(stepU), std::abs(stepR), std::abs(stepS)});
    const double factor = length > 1.0 ? 1.0 / length : 1.0;
    ur += stepR * factor;
    us += stepS * factor;
    const double before = u;
    u += stepU * factor;
    const double outside = std::max({-ur, -us, ur - u, us - u, u - 1.0});
    if (length < 0.25 && length > 1e-7 && outside > 2.0 * length) return Answer::OUTSIDE;
    if (length <= 1e-7) {
      if (outside > INSIDE_TOLERANCE || !(u > 0.0)) return Answer::OUTSIDE;
      x = {ur / u, us / u, 1.0 - u};
      return Answer::INSIDE;
    }
    if (u <= 0.0) { // beyond the apex: again from before it, and closer each time
      if (i > MAX_STEPS / 2) return Answer::OUTSIDE;
      u = 0.1 * before;
    }
  }
  return Answer::UNDECIDED;
}

bool CellMap::invert(const Vec3& point, Vec3& position) const {
  const Answer answer = m_code == TETRAHEDRON ? solveTetrahedron(point, position)
                        : m_code == PYRAMID   ? newtonPyramid(point, position)
                                              : newton(point, position);
  if (answer != Answer::UNDECIDED) return answer == Answer::INSIDE;
  const auto shape = static_cast<ReferenceShape>(static_cast<int>(ReferenceShape::TETRAHEDRON) + m_code);
  std::array<Vec3, 8> corners;
  Vec3 low(at(shapeNode(shape, 0)));
  Vec3 high(low);
  for (std::size_t i = 0; i < NUM_CORNERS[m_code]; ++i) {
    corners[i] = at(shapeNode(shape, i));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], corners[i][axis]);
      high[axis] = std::max(high[axis], corners[i][axis]);
    }
  }
  const double extent = (high - low).length();
  if (!(std::abs(signedSize(m_code, corners)) > 1e-12 * extent * extent * extent)) return false;
  return invertShape(shape, corners.data(), point, position);
}

void CellMap::getWeights(const Vec3& x, std::array<double, 8>& n) const {
  const double r = x[0];
  const double s = x[1];
  const double t = x[2];
  switch (m_code) {
  case TETRAHEDRON:
    n[0] = 1.0 - r - s - t;
    n[1] = r;
    n[2] = s;
    n[3] = t;
    break;
  case WEDGE: {
    const double q = 1.0 - r - s;
    n = {q * (1.0 - t), r * (1.0 - t), s * (1.0 - t), q * t, r * t, s * t};
    break;
  }
  default: {
    const double low[4] = {(1.0 - r) * (1.0 - s), r * (1.0 - s), r * s, (1.0 - r) * s};
    for (std::size_t i = 0; i < 4; ++i)
      n[i] = low[i] * (1.0 - t);
    if (m_code == PYRAMID) {
      n[4] = t;
      break;
    }
    for (std::size_t i = 0; i < 4; ++i)
      n[i + 4] = low[i] * t;
  }
  }
}

} // namespace kx
