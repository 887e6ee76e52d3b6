// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extractor/PickTestTools.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>
#include <vector>

/// Areas, means, volumes and parts of surfaces, where polygons need not be flat.
namespace peer {

using pick::Surface;
using pick::Vec3;

/// Whether a polygon's corners lie in a plane, to a millionth of its size.
inline bool isFlat(const std::vector<Vec3>& corners) {
  Vec3 normal;
  double size = 0.0;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    normal += (corners[i] - corners[0]).cross(corners[(i + 1) % corners.size()] - corners[0]);
    size = std::max(size, (corners[i] - corners[0]).length());
  }
  if (normal.length() == 0.0) return true;
  normal = normal.normalized();
  return std::all_of(corners.begin(), corners.end(),
                     [&](const Vec3& p) { return std::abs(normal.dot(p - corners[0])) <= 1e-6 * size; });
}

/// Has an area only as triangles where a polygon is not flat: the least and the greatest over its fans.
struct Measures {
  double leastArea = 0.0;
  double greatestArea = 0.0;
  std::size_t numTriangles = 0;
  double valueIntegral = 0.0; ///< of values at the vertices or polygons, as the mean over the fans
  double volume = 0.0;        ///< enclosed by a closed surface, as the mean over the fans: of bilinear quadrangles

  explicit Measures(const Surface& s, const KeXDataSetI<double>* values = nullptr) {
    for (std::size_t p = 0; p < s.polygons.size(); ++p)
      add(s, p, values);
  }
  double mean() const { return valueIntegral / (0.5 * (leastArea + greatestArea)); }
  void expectArea(double area, double tolerance) const {
    EXPECT_LE(leastArea, area + tolerance);
    EXPECT_GE(greatestArea, area - tolerance);
  }

private:
  void add(const Surface& s, std::size_t polygon, const KeXDataSetI<double>* values) {
    const std::vector<std::size_t>& ids = s.polygons[polygon];
    const std::size_t n = ids.size();
    std::vector<Vec3> corners;
    for (const std::size_t id : ids)
      corners.push_back(s.vertices[id]);
    const bool flat = isFlat(corners);
    const Vec3 normal = s.vectorArea(polygon).normalized();
    double least = std::numeric_limits<double>::infinity();
    double greatest = 0.0;
    double integral = 0.0;
    for (std::size_t first = 0; first < n; ++first) {
      double area = 0.0;
      for (std::size_t i = first + 1; i + 1 < first + n; ++i) {
        const Vec3 twice = (corners[i % n] - corners[first]).cross(corners[(i + 1) % n] - corners[first]);
        // In a flat polygon that is not convex some triangles of a fan are turned over.
        const double part = 0.5 * (flat ? twice.dot(normal) : twice.length());
        area += part;
        if (values && values->getBinding() == DataBinding::PER_NODE)
          integral += part * (values->get(ids[first]) + values->get(ids[i % n]) + values->get(ids[(i + 1) % n])) / 3.0;
        volume += corners[first].dot(corners[i % n].cross(corners[(i + 1) % n])) / (6.0 * static_cast<double>(n));
      }
      least = std::min(least, area);
      greatest = std::max(greatest, area);
      if (values && values->getBinding() == DataBinding::PER_CELL) integral += area * values->get(polygon);
    }
    leastArea += least;
    greatestArea += greatest;
    numTriangles += n - 2;
    valueIntegral += integral / static_cast<double>(n);
  }
};

/// Parts that hang together by their vertices; those at one place are one.
inline std::size_t numPartsOf(const Surface& s) {
  std::map<std::tuple<double, double, double>, std::size_t> places;
  std::vector<std::size_t> parent;
  const auto rootOf = [&](std::size_t n) {
    while (parent[n] != n)
      n = parent[n] = parent[parent[n]];
    return n;
  };
  for (const std::vector<std::size_t>& ids : s.polygons) {
    std::size_t first = parent.size();
    for (const std::size_t id : ids) {
      const Vec3& p = s.vertices[id];
      const std::size_t place = places.try_emplace({p[0], p[1], p[2]}, parent.size()).first->second;
      if (place == parent.size()) parent.push_back(place);
      if (id == ids.front()) first = place;
      parent[rootOf(place)] = rootOf(first);
    }
  }
  std::size_t numParts = 0;
  for (std::size_t n = 0; n < parent.size(); ++n)
    numParts += rootOf(n) == n;
  return numParts;
}

} // namespace peer
