// SPDX-License-Identifier: BSD-3-Clause
#include "MeanValue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace kx {
namespace {

void normalise(std::vector<double>& weights) {
  double sum = 0.0;
  for (const double w : weights)
    sum += w;
  for (double& w : weights)
    w = sum != 0.0 ? w / sum : 1.0 / static_cast<double>(weights.size());
}

double extentOf(const std::vector<KbVec3<double>>& points) {
  double extent = 0.0;
  for (const KbVec3<double>& p : points)
    extent = std::max(extent, (p - points[0]).length());
  return extent;
}

/// Where the point of an edge that is nearest to another lies on it, from 0 to 1.
double nearestOnEdge(const KbVec3<double>& a, const KbVec3<double>& b, const KbVec3<double>& point) {
  const KbVec3<double> edge = b - a;
  const double squared = edge.squaredLength();
  return squared > 0.0 ? std::clamp((point - a).dot(edge) / squared, 0.0, 1.0) : 0.0;
}

struct Fan {
  std::array<KbVec3<double>, 3> corners;
  std::array<std::size_t, 2> local;
};

/// Calls `visit(triangle, facet)` for each triangle of the fans; the third corner is the facet's mean point.
template <class Visit>
void forEachTriangle(const Facets& facets, const std::vector<KbVec3<double>>& nodes, Visit&& visit) {
  for (const std::vector<std::size_t>& facet : facets) {
    KbVec3<double> mean;
    for (const std::size_t n : facet)
      mean += nodes[n] / static_cast<double>(facet.size());
    for (std::size_t i = 0; i < facet.size(); ++i) {
      const std::size_t a = facet[i];
      const std::size_t b = facet[(i + 1) % facet.size()];
      visit(Fan{{nodes[a], nodes[b], mean}, {a, b}}, facet);
    }
  }
}

} // namespace

void polygonWeights(const std::vector<KbVec3<double>>& corners, const KbVec3<double>& point,
                    std::vector<double>& weights) {
  const std::size_t n = corners.size();
  weights.assign(n, 0.0);
  if (n == 0) return;
  const double tiny = 1e-12 * extentOf(corners);
  const KbVec3<double> normal = polygonNormal(corners).normalized();
  std::vector<KbVec3<double>> spokes(n);
  for (std::size_t i = 0; i < n; ++i) {
    spokes[i] = corners[i] - point;
    if (spokes[i].length() <= tiny) {
      weights[i] = 1.0;
      return;
    }
  }
  std::vector<double> halfTangents(n);
  for (std::size_t i = 0; i < n; ++i) {
    const KbVec3<double>& a = spokes[i];
    const KbVec3<double>& b = spokes[(i + 1) % n];
    const double la = a.length();
    const double lb = b.length();
    const double area = normal.dot(a.cross(b));
    const double dot = a.dot(b);
    if (std::abs(area) <= tiny * (la + lb) && dot < 0.0) { // on this edge: linear along it
      weights[i] = lb / (la + lb);
      weights[(i + 1) % n] = la / (la + lb);
      return;
    }
    halfTangents[i] = std::abs(area) > 0.0 ? (la * lb - dot) / area : 0.0;
  }
  for (std::size_t i = 0; i < n; ++i)
    weights[i] = (halfTangents[(i + n - 1) % n] + halfTangents[i]) / spokes[i].length();
  normalise(weights);
}

KbVec3<double> polygonNormal(const std::vector<KbVec3<double>>& corners) {
  KbVec3<double> normal;
  for (std::size_t i = 0; i < corners.size(); ++i)
    normal += (corners[i] - corners[0]).cross(corners[(i + 1) % corners.size()] - corners[0]);
  return normal;
}

bool isInsidePolygon(const std::vector<KbVec3<double>>& corners, const KbVec3<double>& normal,
                     const KbVec3<double>& point) {
  // The two axes across the greatest component of the normal keep the polygon's shape best.
  std::size_t drop = 0;
  for (std::size_t axis = 1; axis < 3; ++axis)
    if (std::abs(normal[axis]) > std::abs(normal[drop])) drop = axis;
  const std::size_t u = (drop + 1) % 3;
  const std::size_t v = (drop + 2) % 3;
  const double tiny = 1e-9 * extentOf(corners);
  bool inside = false;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const KbVec3<double>& a = corners[i];
    const KbVec3<double>& b = corners[(i + 1) % corners.size()];
    if ((a + (b - a) * nearestOnEdge(a, b, point) - point).length() <= tiny) return true;
    if ((a[v] > point[v]) != (b[v] > point[v]) && point[u] < a[u] + (point[v] - a[v]) / (b[v] - a[v]) * (b[u] - a[u]))
      inside = !inside;
  }
  return inside;
}

bool weightsOnPolygon(const std::vector<KbVec3<double>>& corners, const KbVec3<double>& point,
                      std::vector<double>& weights) {
  const std::size_t n = corners.size();
  const KbVec3<double> normal = polygonNormal(corners).normalized();
  if (n < 3 || normal == KbVec3<double>(0.0)) return false;
  KbVec3<double> centre;
  for (const KbVec3<double>& corner : corners)
    centre += corner / static_cast<double>(n);
  std::vector<KbVec3<double>> flat(n);
  double greatest = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    const double height = normal.dot(corners[i] - centre);
    greatest = std::max(greatest, std::abs(height));
    flat[i] = corners[i] - normal * height;
  }
  const double tolerance = 1e-4 * extentOf(corners);
  const double height = normal.dot(point - centre);
  if (!(std::abs(height) <= greatest + tolerance)) return false;
  const KbVec3<double> foot = point - normal * height;
  if (isInsidePolygon(flat, normal, foot)) {
    polygonWeights(flat, foot, weights);
    return true;
  }
  double nearest = tolerance;
  bool isBeside = false;
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t next = (i + 1) % n;
    const double along = nearestOnEdge(flat[i], flat[next], foot);
    const double distance = (flat[i] + (flat[next] - flat[i]) * along - foot).length();
    if (!(distance <= nearest)) continue;
    nearest = distance;
    isBeside = true;
    weights.assign(n, 0.0);
    weights[i] = 1.0 - along;
    weights[next] += along;
  }
  return isBeside;
}

void polyhedronWeights(const Facets& facets, const std::vector<KbVec3<double>>& nodes, const KbVec3<double>& point,
                       std::vector<double>& weights) {
  weights.assign(nodes.size(), 0.0);
  const double extent = nodes.empty() ? 0.0 : extentOf(nodes);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if ((nodes[i] - point).length() <= 1e-12 * extent) {
      weights[i] = 1.0;
      return;
    }
  }
  bool onFacet = false;
  const auto spread = [&](const Fan& fan, const std::vector<std::size_t>& facet, const std::array<double, 3>& w) {
    weights[fan.local[0]] += w[0];
    weights[fan.local[1]] += w[1];
    for (const std::size_t n : facet)
      weights[n] += w[2] / static_cast<double>(facet.size());
  };
  forEachTriangle(facets, nodes, [&](const Fan& fan, const std::vector<std::size_t>& facet) {
    if (onFacet) return;
    std::array<KbVec3<double>, 3> unit;
    std::array<double, 3> distance{};
    for (std::size_t i = 0; i < 3; ++i) {
      distance[i] = (fan.corners[i] - point).length();
      if (distance[i] <= 1e-12 * extent) { // on the mean point of a facet
        std::fill(weights.begin(), weights.end(), 0.0);
        std::array<double, 3> only{};
        only[i] = 1.0;
        spread(fan, facet, only);
        onFacet = true;
        return;
      }
      unit[i] = (fan.corners[i] - point) / distance[i];
    }
    std::array<double, 3> angle{};
    double half = 0.0;
    for (std::size_t i = 0; i < 3; ++i) {
      const double chord = (unit[(i + 1) % 3] - unit[(i + 2) % 3]).length();
      angle[i] = 2.0 * std::asin(std::min(1.0, chord / 2.0));
      half += angle[i] / 2.0;
    }
    if (std::numbers::pi - half < 1e-9) { // in the triangle: its planar coordinates
      std::fill(weights.begin(), weights.end(), 0.0);
      std::array<double, 3> w{};
      double sum = 0.0;
      for (std::size_t i = 0; i < 3; ++i) {
        w[i] = std::sin(angle[i]) * distance[(i + 1) % 3] * distance[(i + 2) % 3];
        sum += w[i];
      }
      for (double& value : w)
        value /= sum;
      spread(fan, facet, w);
      onFacet = true;
      return;
    }
    const double det = unit[0].dot(unit[1].cross(unit[2]));
    std::array<double, 3> cosine{};
    std::array<double, 3> sine{};
    for (std::size_t i = 0; i < 3; ++i) {
      const double denominator = std::sin(angle[(i + 1) % 3]) * std::sin(angle[(i + 2) % 3]);
      if (denominator == 0.0) return;
      cosine[i] = std::clamp(2.0 * std::sin(half) * std::sin(half - angle[i]) / denominator - 1.0, -1.0, 1.0);
      sine[i] = std::copysign(std::sqrt(1.0 - cosine[i] * cosine[i]), det);
      if (std::abs(sine[i]) <= 1e-12) return; // in the triangle's plane, outside it: no contribution
    }
    std::array<double, 3> w{};
    for (std::size_t i = 0; i < 3; ++i) {
      const std::size_t j = (i + 1) % 3;
      const std::size_t k = (i + 2) % 3;
      w[i] = (angle[i] - cosine[j] * angle[k] - cosine[k] * angle[j]) / (distance[i] * std::sin(angle[j]) * sine[k]);
    }
    spread(fan, facet, w);
  });
  normalise(weights);
}

bool isInsidePolyhedron(const Facets& facets, const std::vector<KbVec3<double>>& nodes, const KbVec3<double>& point) {
  double solidAngle = 0.0;
  bool onBoundary = false;
  const double extent = nodes.empty() ? 0.0 : extentOf(nodes);
  forEachTriangle(facets, nodes, [&](const Fan& fan, const std::vector<std::size_t>&) {
    const KbVec3<double> a = fan.corners[0] - point;
    const KbVec3<double> b = fan.corners[1] - point;
    const KbVec3<double> c = fan.corners[2] - point;
    const double la = a.length();
    const double lb = b.length();
    const double lc = c.length();
    const double det = a.dot(b.cross(c));
    const double denominator = la * lb * lc + a.dot(b) * lc + b.dot(c) * la + c.dot(a) * lb;
    const double volume = extent * extent * extent;
    if (std::abs(det) <= 1e-10 * volume && denominator <= 1e-10 * volume) onBoundary = true;
    solidAngle += 2.0 * std::atan2(det, denominator);
  });
  return onBoundary || std::abs(solidAngle) > 2.0 * std::numbers::pi;
}

} // namespace kx
