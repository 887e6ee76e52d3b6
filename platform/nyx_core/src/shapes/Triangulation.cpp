// SPDX-License-Identifier: BSD-3-Clause
#include "src/shapes/Triangulation.h"

#include <algorithm>
#include <cmath>

namespace nx::detail {

namespace {

struct Vec3 {
  double x, y, z;
};

Vec3 difference(const float* a, const float* b) {
  return {double{a[0]} - double{b[0]}, double{a[1]} - double{b[1]}, double{a[2]} - double{b[2]}};
}

Vec3 cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

/// True when the diagonal from corner 0 to corner 2 splits the quadrangle properly: corners 1 and 3 lie on its two
/// sides. Otherwise the other diagonal does.
bool splitsAtFirstDiagonal(const float* a, const float* b, const float* c, const float* d) {
  const float px = c[0] - a[0], py = c[1] - a[1], pz = c[2] - a[2];
  const float ux = b[0] - a[0], uy = b[1] - a[1], uz = b[2] - a[2];
  const float vx = d[0] - a[0], vy = d[1] - a[1], vz = d[2] - a[2];
  const float nx = uy * pz - uz * py, ny = uz * px - ux * pz, nz = ux * py - uy * px;
  const float mx = py * vz - pz * vy, my = pz * vx - px * vz, mz = px * vy - py * vx;
  return nx * mx + ny * my + nz * mz > 0.0F;
}

double orient(double ax, double ay, double bx, double by, double cx, double cy) {
  return (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
}

} // namespace

bool PolygonTriangulator::project(const float* xyz, const int32_t* corners, size_t numCorners) {
  const float* origin = xyz + 3 * static_cast<size_t>(corners[0]);
  Vec3 normal{0, 0, 0};
  for (size_t i = 1; i + 1 < numCorners; ++i) {
    const Vec3 n = cross(difference(xyz + 3 * static_cast<size_t>(corners[i]), origin),
                         difference(xyz + 3 * static_cast<size_t>(corners[i + 1]), origin));
    normal = {normal.x + n.x, normal.y + n.y, normal.z + n.z};
  }
  const double length = std::sqrt(dot(normal, normal));
  m_points.resize(numCorners);
  if (!(length > 0)) return false;
  normal = {normal.x / length, normal.y / length, normal.z / length};
  // Any two axes across the normal do; the seed is the axis that is farthest from it.
  const Vec3 seed = std::abs(normal.x) < 0.6 ? Vec3{1, 0, 0} : Vec3{0, 1, 0};
  Vec3 u = cross(seed, normal);
  const double uLength = std::sqrt(dot(u, u));
  u = {u.x / uLength, u.y / uLength, u.z / uLength};
  const Vec3 v = cross(normal, u);
  for (size_t i = 0; i < numCorners; ++i) {
    const Vec3 p = difference(xyz + 3 * static_cast<size_t>(corners[i]), origin);
    m_points[i] = {dot(p, u), dot(p, v)};
  }
  return true;
}

bool PolygonTriangulator::isConvex() const {
  // Every turn to the left, and one round only: the direction's x component changes its sign twice in a round.
  const size_t n = m_points.size();
  int signChanges = 0;
  double lastX = 0, firstX = 0;
  for (size_t i = 0; i < n; ++i) {
    const Point& a = m_points[i];
    const Point& b = m_points[(i + 1) % n];
    const Point& c = m_points[(i + 2) % n];
    if (orient(a.x, a.y, b.x, b.y, c.x, c.y) < 0) return false;
    const double dx = b.x - a.x;
    if (dx == 0) continue;
    if (lastX == 0) firstX = dx;
    if (lastX * dx < 0) ++signChanges;
    lastX = dx;
  }
  if (lastX * firstX < 0) ++signChanges;
  return signChanges <= 2;
}

double PolygonTriangulator::turn(uint32_t corner) const {
  const Point& a = m_points[m_previous[corner]];
  const Point& b = m_points[corner];
  const Point& c = m_points[m_next[corner]];
  return orient(a.x, a.y, b.x, b.y, c.x, c.y);
}

bool PolygonTriangulator::isEar(uint32_t corner) const {
  if (!(turn(corner) > 0)) return false;
  const uint32_t before = m_previous[corner], after = m_next[corner];
  const Point& a = m_points[before];
  const Point& b = m_points[corner];
  const Point& c = m_points[after];
  for (uint32_t i = m_next[after]; i != before; i = m_next[i]) {
    const Point& p = m_points[i];
    // A corner that coincides with one of the triangle's (a polygon that touches itself) does not block it.
    if ((p.x == a.x && p.y == a.y) || (p.x == b.x && p.y == b.y) || (p.x == c.x && p.y == c.y)) continue;
    if (orient(a.x, a.y, b.x, b.y, p.x, p.y) >= 0 && orient(b.x, b.y, c.x, c.y, p.x, p.y) >= 0 &&
        orient(c.x, c.y, a.x, a.y, p.x, p.y) >= 0)
      return false;
  }
  return true;
}

void PolygonTriangulator::triangulate(const float* xyz, const int32_t* corners, size_t numCorners,
                                      std::vector<uint32_t>& triples) {
  if (numCorners < 3) return;
  const auto n = static_cast<uint32_t>(numCorners);
  if (n == 3 || !project(xyz, corners, numCorners) || isConvex()) {
    for (uint32_t i = 1; i + 1 < n; ++i)
      triples.insert(triples.end(), {0U, i, i + 1});
    return;
  }
  m_next.resize(n);
  m_previous.resize(n);
  for (uint32_t i = 0; i < n; ++i) {
    m_next[i] = (i + 1) % n;
    m_previous[i] = (i + n - 1) % n;
  }
  uint32_t corner = 0;
  for (uint32_t left = n; left > 3; --left) {
    uint32_t tried = 0;
    uint32_t flattest = corner;
    while (tried < left && !isEar(corner)) {
      if (std::abs(turn(corner)) < std::abs(turn(flattest))) flattest = corner;
      corner = m_next[corner];
      ++tried;
    }
    if (tried == left) corner = flattest;
    triples.insert(triples.end(), {m_previous[corner], corner, m_next[corner]});
    m_next[m_previous[corner]] = m_next[corner];
    m_previous[m_next[corner]] = m_previous[corner];
    // Going on behind the next corner spreads the ears and keeps triangles from becoming needles of one fan.
    corner = m_next[m_next[corner]];
  }
  triples.insert(triples.end(), {m_previous[corner], corner, m_next[corner]});
}

PrimitiveList makeTriangles(const PolygonList& polygons, const uint32_t* cornerVertex) {
  PrimitiveList list;
  // The bare list is the usual case, and the one that has to be fast: the choice is made outside the loops.
  const uint32_t* vertexOf =
      cornerVertex != nullptr ? cornerVertex : reinterpret_cast<const uint32_t*>(polygons.index());
  const float* xyz = polygons.xyz();
  const int32_t* index = polygons.index();
  if (polygons.uniformSize() == 3) {
    list.perFace = 1;
    list.vertices.resize(3 * polygons.numFaces());
    uint32_t* out = list.vertices.data();
    for (size_t face = 0; face < polygons.numFaces(); ++face, out += 3, vertexOf += 4) {
      out[0] = vertexOf[0];
      out[1] = vertexOf[1];
      out[2] = vertexOf[2];
    }
    return list;
  }
  if (polygons.uniformSize() == 4) {
    list.perFace = 2;
    list.vertices.resize(6 * polygons.numFaces());
    uint32_t* out = list.vertices.data();
    for (size_t face = 0; face < polygons.numFaces(); ++face, out += 6, vertexOf += 5, index += 5) {
      const auto at = [&](size_t k) { return xyz + 3 * static_cast<size_t>(index[k]); };
      const size_t shift = splitsAtFirstDiagonal(at(0), at(1), at(2), at(3)) ? 0 : 1;
      const uint32_t a = vertexOf[shift], b = vertexOf[shift + 1], c = vertexOf[shift + 2],
                     d = vertexOf[(shift + 3) & 3];
      out[0] = a;
      out[1] = b;
      out[2] = c;
      out[3] = a;
      out[4] = c;
      out[5] = d;
    }
    return list;
  }
  PolygonTriangulator triangulator;
  std::vector<uint32_t> triples;
  polygons.forEach([&](size_t face, size_t first, size_t size) {
    triples.clear();
    triangulator.triangulate(xyz, index + first, size, triples);
    for (const uint32_t corner : triples)
      list.vertices.push_back(vertexOf[first + corner]);
    list.faces.insert(list.faces.end(), triples.size() / 3, static_cast<uint32_t>(face));
  });
  return list;
}

namespace {

/// Drops repeated segments, whatever their direction, by sorting them into buckets of their smaller vertex number.
void keepUniqueSegments(std::vector<uint32_t>& segments, size_t numVertices) {
  const size_t count = segments.size() / 2;
  std::vector<uint32_t> start(numVertices + 1, 0);
  for (size_t i = 0; i < count; ++i)
    ++start[std::min(segments[2 * i], segments[2 * i + 1]) + 1];
  for (size_t v = 0; v < numVertices; ++v)
    start[v + 1] += start[v];
  std::vector<uint32_t> other(count);
  std::vector<uint32_t> fill(start.begin(), start.end() - 1);
  for (size_t i = 0; i < count; ++i) {
    const auto [low, high] = std::minmax(segments[2 * i], segments[2 * i + 1]);
    other[fill[low]++] = high;
  }
  segments.clear();
  for (size_t v = 0; v < numVertices; ++v) {
    const auto begin = other.begin() + static_cast<std::ptrdiff_t>(start[v]);
    const auto end = other.begin() + static_cast<std::ptrdiff_t>(start[v + 1]);
    std::sort(begin, end);
    for (auto it = begin; it != end; ++it) {
      if (it == begin || *it != *(it - 1)) segments.insert(segments.end(), {static_cast<uint32_t>(v), *it});
    }
  }
}

} // namespace

PrimitiveList makeSegments(const PolygonList& polygons, const uint32_t* cornerVertex, bool closed, bool unique) {
  PrimitiveList list;
  const uint32_t* vertexOf =
      cornerVertex != nullptr ? cornerVertex : reinterpret_cast<const uint32_t*>(polygons.index());
  uint32_t top = 0;
  polygons.forEach([&](size_t face, size_t first, size_t size) {
    const size_t numSegments = closed && size > 2 ? size : size - 1;
    for (size_t k = 0; k < numSegments; ++k) {
      const uint32_t a = vertexOf[first + k], b = vertexOf[first + (k + 1) % size];
      list.vertices.insert(list.vertices.end(), {a, b});
      top = std::max({top, a, b});
    }
    if (!unique) list.faces.insert(list.faces.end(), numSegments, static_cast<uint32_t>(face));
  });
  if (unique && !list.vertices.empty()) keepUniqueSegments(list.vertices, size_t{top} + 1);
  return list;
}

PrimitiveList makePoints(const PolygonList& polygons, const uint32_t* cornerVertex, bool unique) {
  PrimitiveList list;
  const uint32_t* vertexOf =
      cornerVertex != nullptr ? cornerVertex : reinterpret_cast<const uint32_t*>(polygons.index());
  std::vector<bool> seen;
  polygons.forEach([&](size_t face, size_t first, size_t size) {
    for (size_t k = 0; k < size; ++k) {
      const uint32_t vertex = vertexOf[first + k];
      if (unique) {
        if (vertex >= seen.size()) seen.resize(std::max<size_t>(size_t{vertex} + 1, 2 * seen.size()));
        if (seen[vertex]) continue;
        seen[vertex] = true;
      } else {
        list.faces.push_back(static_cast<uint32_t>(face));
      }
      list.vertices.push_back(vertex);
    }
  });
  return list;
}

} // namespace nx::detail
