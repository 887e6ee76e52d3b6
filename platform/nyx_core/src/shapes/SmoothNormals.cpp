// SPDX-License-Identifier: BSD-3-Clause
#include "src/shapes/SmoothNormals.h"

#include <cmath>

namespace nx::detail {

namespace {

struct Vec3 {
  float x = 0, y = 0, z = 0;
};

float dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

void add(Vec3& a, const Vec3& b) {
  a.x += b.x;
  a.y += b.y;
  a.z += b.z;
}

Vec3 unit(const Vec3& v) {
  const float squared = dot(v, v);
  // Tiny faces have squares below the smallest float: scaling first keeps their direction.
  if (squared > 1e-30F && squared < 1e30F) {
    const float scale = 1.0F / std::sqrt(squared);
    return {v.x * scale, v.y * scale, v.z * scale};
  }
  const double x = double{v.x}, y = double{v.y}, z = double{v.z};
  const double length = std::sqrt(x * x + y * y + z * z);
  if (!(length > 0)) return {};
  return {static_cast<float>(x / length), static_cast<float>(y / length), static_cast<float>(z / length)};
}

Vec3 newellNormal(const float* xyz, const int32_t* corners, size_t size) {
  const float* o = xyz + 3 * static_cast<size_t>(corners[0]);
  Vec3 sum;
  for (size_t k = 1; k + 1 < size; ++k) {
    const float* p = xyz + 3 * static_cast<size_t>(corners[k]);
    const float* q = xyz + 3 * static_cast<size_t>(corners[k + 1]);
    const Vec3 u{p[0] - o[0], p[1] - o[1], p[2] - o[2]};
    const Vec3 v{q[0] - o[0], q[1] - o[1], q[2] - o[2]};
    add(sum, {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x});
  }
  return sum;
}

constexpr size_t maxPairwiseFaces = 256;

/// Splits the vertices whose faces do not all lie within the crease angle.
class CreaseSplitter {
public:
  CreaseSplitter(const PolygonList& polygons, const std::vector<Vec3>& faceNormals, float creaseAngle,
                 SmoothNormals& result)
      : m_polygons(polygons)
      , m_faceNormals(faceNormals)
      , m_cosCrease(std::cos(creaseAngle))
      , m_cosHalf(std::cos(0.5F * creaseAngle))
      , m_result(result) {}

  void split(const std::vector<bool>& suspect, size_t numSuspects) {
    collect(suspect, numSuspects);
    for (size_t v = 0; v + 1 < m_start.size(); ++v)
      splitVertex(m_corners.data() + m_start[v], m_start[v + 1] - m_start[v]);
  }

private:
  struct Corner {
    uint32_t position, face;
  };

  /// Lists the corners at each suspect vertex, one list behind the other.
  void collect(const std::vector<bool>& suspect, size_t numSuspects) {
    std::vector<uint32_t> slot(suspect.size());
    m_start.assign(numSuspects + 1, 0);
    uint32_t next = 0;
    for (size_t v = 0; v < suspect.size(); ++v) {
      if (suspect[v]) slot[v] = next++;
    }
    const auto forEachCorner = [&](auto&& visit) {
      size_t ordinal = 0;
      m_polygons.forEach([&](size_t, size_t first, size_t size) {
        for (size_t k = 0; k < size; ++k) {
          const uint32_t vertex = m_polygons.vertexAt(first + k);
          if (suspect[vertex])
            visit(slot[vertex], Corner{static_cast<uint32_t>(first + k), static_cast<uint32_t>(ordinal)});
        }
        ++ordinal;
      });
    };
    forEachCorner([&](uint32_t s, const Corner&) { ++m_start[s + 1]; });
    for (size_t s = 0; s < numSuspects; ++s)
      m_start[s + 1] += m_start[s];
    m_corners.resize(m_start.back());
    std::vector<size_t> fill(m_start.begin(), m_start.end() - 1);
    forEachCorner([&](uint32_t s, const Corner& corner) { m_corners[fill[s]++] = corner; });
  }

  void splitVertex(const Corner* corners, size_t count) {
    m_units.resize(count);
    for (size_t i = 0; i < count; ++i)
      m_units[i] = unit(m_faceNormals[corners[i].face]);
    if (count > maxPairwiseFaces) {
      splitFan(corners, count);
      return;
    }
    m_sums.assign(count, Vec3{});
    sumCompatible(corners, count);
    for (size_t i = 0; i < count; ++i) {
      // Corners with the same set of faces have bitwise the same sum, as it was added up in the same order.
      size_t same = 0;
      while (same < i &&
             (m_sums[same].x != m_sums[i].x || m_sums[same].y != m_sums[i].y || m_sums[same].z != m_sums[i].z))
        ++same;
      if (same < i)
        m_result.cornerVertex[corners[i].position] = m_result.cornerVertex[corners[same].position];
      else
        giveNormal(corners[i].position, i == 0, unit(m_sums[i]));
    }
  }

  /// The vertex keeps the mean normal that it has; faces off it by more than half the angle take their own normals.
  void splitFan(const Corner* corners, size_t count) {
    const float* n = m_result.normals.data() + 3 * size_t{m_polygons.vertexAt(corners[0].position)};
    const Vec3 mean{n[0], n[1], n[2]};
    for (size_t i = 0; i < count; ++i) {
      if (dot(m_units[i], m_units[i]) > 0 && dot(m_units[i], mean) < m_cosHalf)
        giveNormal(corners[i].position, false, m_units[i]);
    }
  }

  void sumCompatible(const Corner* corners, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      const bool noVote = !(dot(m_units[i], m_units[i]) > 0);
      for (size_t j = 0; j < count; ++j) {
        if (noVote || i == j || dot(m_units[i], m_units[j]) >= m_cosCrease)
          add(m_sums[i], m_faceNormals[corners[j].face]);
      }
    }
  }

  /// The first group of corners keeps the vertex, each further one gets a repeated vertex.
  void giveNormal(size_t position, bool keepsVertex, const Vec3& normal) {
    const uint32_t vertex = m_polygons.vertexAt(position);
    if (keepsVertex) {
      float* n = m_result.normals.data() + 3 * size_t{vertex};
      n[0] = normal.x;
      n[1] = normal.y;
      n[2] = normal.z;
      return;
    }
    m_result.cornerVertex[position] = static_cast<uint32_t>(m_polygons.numVertices() + m_result.extra.size());
    m_result.extra.push_back(vertex);
    m_result.normals.insert(m_result.normals.end(), {normal.x, normal.y, normal.z});
  }

  const PolygonList& m_polygons;
  const std::vector<Vec3>& m_faceNormals;
  float m_cosCrease, m_cosHalf;
  SmoothNormals& m_result;
  std::vector<Corner> m_corners;
  std::vector<size_t> m_start;
  std::vector<Vec3> m_units, m_sums;
};

} // namespace

SmoothNormals makeSmoothNormals(const PolygonList& polygons, float creaseAngle) {
  SmoothNormals result;
  const size_t numVertices = polygons.numVertices();
  std::vector<Vec3> faceNormals;
  faceNormals.reserve(polygons.numFaces());
  std::vector<Vec3> sums(numVertices);
  polygons.forEach([&](size_t, size_t first, size_t size) {
    const Vec3 normal = newellNormal(polygons.xyz(), polygons.index() + first, size);
    faceNormals.push_back(normal);
    for (size_t k = 0; k < size; ++k)
      add(sums[polygons.vertexAt(first + k)], normal);
  });

  result.normals.resize(3 * numVertices);
  for (size_t v = 0; v < numVertices; ++v) {
    const Vec3 normal = unit(sums[v]);
    sums[v] = normal;
    result.normals[3 * v] = normal.x;
    result.normals[3 * v + 1] = normal.y;
    result.normals[3 * v + 2] = normal.z;
  }

  // Faces within half the angle of their mean are within the angle of each other: most vertices need no closer look.
  const float cosHalf = std::cos(0.5F * creaseAngle);
  std::vector<bool> suspect;
  size_t numSuspects = 0;
  size_t ordinal = 0;
  polygons.forEach([&](size_t, size_t first, size_t size) {
    const Vec3& normal = faceNormals[ordinal++];
    const float limit = cosHalf * std::sqrt(dot(normal, normal));
    for (size_t k = 0; k < size; ++k) {
      const uint32_t vertex = polygons.vertexAt(first + k);
      if (dot(normal, sums[vertex]) >= limit) continue;
      if (suspect.empty()) suspect.resize(numVertices);
      if (!suspect[vertex]) ++numSuspects;
      suspect[vertex] = true;
    }
  });
  if (numSuspects == 0) return result;

  result.cornerVertex.assign(polygons.index(), polygons.index() + polygons.numIndex());
  CreaseSplitter(polygons, faceNormals, creaseAngle, result).split(suspect, numSuspects);
  if (result.extra.empty()) result.cornerVertex.clear();
  return result;
}

} // namespace nx::detail
