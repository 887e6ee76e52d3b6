// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceCell.h>
#include <KerrinExtractor/KiVolumeCell.h>
#include <KerrinMesh/KbMeshMaker.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

/// Meshes with quadratic cells: linear ones over the cube [-1, 1]^3 or the square, with nodes in the middles of edges
/// added to some cells, and then moved by a map of space.
namespace quadratic {

using Vec3 = KbVec3<double>;
using Map = std::function<Vec3(const Vec3&)>;
/// Whether a cell, by its number, gets the middles of its edges.
using Choice = std::function<bool(std::size_t)>;

inline Vec3 identity(const Vec3& p) { return p; }
inline bool all(std::size_t) { return true; }

/// The cube as a ball: planes of the cube become ellipsoids (P. Nowell, Mapping a cube to a sphere, 2005).
inline Vec3 ball(const Vec3& p) {
  const double x = p[0] * p[0];
  const double y = p[1] * p[1];
  const double z = p[2] * p[2];
  return {p[0] * std::sqrt(1.0 - y / 2.0 - z / 2.0 + y * z / 3.0),
          p[1] * std::sqrt(1.0 - z / 2.0 - x / 2.0 + z * x / 3.0),
          p[2] * std::sqrt(1.0 - x / 2.0 - y / 2.0 + x * y / 3.0)};
}

using Edges = std::vector<std::array<std::size_t, 2>>;

struct Mesh {
  std::vector<double> coordinates;
  std::vector<std::int32_t> connectivity;
  std::vector<std::int32_t> offsets{0};
  std::vector<std::uint8_t> shapes;
  std::size_t numCorners = 0; ///< nodes of the linear mesh; the middles follow

  KbCells cells() const { return {shapes, connectivity, offsets}; }
  std::size_t numNodes() const { return coordinates.size() / 3; }
  std::size_t numCells() const { return shapes.size(); }
  Vec3 point(std::size_t node) const {
    return {coordinates[3 * node], coordinates[3 * node + 1], coordinates[3 * node + 2]};
  }
  /// The values of a function at the nodes.
  std::vector<double> values(const std::function<double(const Vec3&)>& function) const {
    std::vector<double> result;
    for (std::size_t n = 0; n < numNodes(); ++n)
      result.push_back(function(point(n)));
    return result;
  }
};

inline Edges volumeEdges(std::size_t shape) {
  switch (shape) {
  case KiVolumeCell::TETRAHEDRON:
    return {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};
  case KiVolumeCell::PYRAMID:
    return {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}};
  case KiVolumeCell::WEDGE:
    return {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}};
  default:
    return {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
  }
}

inline Edges surfaceEdges(std::size_t shape) {
  if (shape == KiSurfaceCell::TRIANGLE) return {{0, 1}, {1, 2}, {2, 0}};
  return {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
}

/// `step` is what the quadratic form adds to the shape.
inline Mesh make(const KbMeshMaker::Arrays& linear, std::size_t numNodesOfCell, const Map& map, const Choice& choice,
                 Edges (*edgesOf)(std::size_t), std::uint8_t step) {
  Mesh mesh;
  std::vector<Vec3> reference;
  for (std::size_t n = 0; n + 2 < linear.coordinates.size(); n += 3)
    reference.push_back(
        Vec3(KbVec3<float>(linear.coordinates[n], linear.coordinates[n + 1], linear.coordinates[n + 2])) * 2.0 -
        Vec3(1.0));
  mesh.numCorners = reference.size();
  const std::size_t numCells =
      linear.offsets.empty() ? linear.connectivity.size() / numNodesOfCell : linear.offsets.size() - 1;
  std::map<std::pair<std::int32_t, std::int32_t>, std::int32_t> middles;
  for (std::size_t c = 0; c < numCells; ++c) {
    const std::size_t begin = linear.offsets.empty() ? c * numNodesOfCell : static_cast<std::size_t>(linear.offsets[c]);
    const std::size_t end =
        linear.offsets.empty() ? begin + numNodesOfCell : static_cast<std::size_t>(linear.offsets[c + 1]);
    const std::vector<std::int32_t> corners(linear.connectivity.begin() + static_cast<std::ptrdiff_t>(begin),
                                            linear.connectivity.begin() + static_cast<std::ptrdiff_t>(end));
    std::uint8_t shape = linear.shapes[linear.shapes.size() == 1 ? 0 : c];
    mesh.connectivity.insert(mesh.connectivity.end(), corners.begin(), corners.end());
    if (choice(c)) {
      for (const auto& [i, j] : edgesOf(shape)) {
        const auto [place, isNew] =
            middles.try_emplace(std::minmax(corners[i], corners[j]), static_cast<std::int32_t>(reference.size()));
        if (isNew)
          reference.push_back(
              (reference[static_cast<std::size_t>(corners[i])] + reference[static_cast<std::size_t>(corners[j])]) *
              0.5);
        mesh.connectivity.push_back(place->second);
      }
      shape = static_cast<std::uint8_t>(shape + step);
    }
    mesh.shapes.push_back(shape);
    mesh.offsets.push_back(static_cast<std::int32_t>(mesh.connectivity.size()));
  }
  for (const Vec3& p : reference) {
    const Vec3 moved = map(p);
    mesh.coordinates.insert(mesh.coordinates.end(), {moved[0], moved[1], moved[2]});
  }
  return mesh;
}

inline Mesh volume(const KbMeshMaker::Arrays& linear, const Map& map, const Choice& choice = all) {
  static constexpr std::array<std::size_t, 4> NUM_NODES{4, 5, 6, 8};
  return make(linear, NUM_NODES[linear.shapes[0]], map, choice, volumeEdges, 4);
}

inline Mesh surface(const KbMeshMaker::Arrays& linear, const Map& map, const Choice& choice = all) {
  return make(linear, linear.shapes[0] == KiSurfaceCell::TRIANGLE ? 3 : 4, map, choice, surfaceEdges, 3);
}

/// The makers of volume meshes, by the name of their shape.
struct Maker {
  const char* name;
  KbMeshMaker::Arrays (*make)(const KbIndex<3>&, double, const KbMeshMaker::Field&);
};
inline const std::array<Maker, 5> MAKERS{{{"tetrahedra", KbMeshMaker::tetrahedra},
                                          {"pyramids", KbMeshMaker::pyramids},
                                          {"wedges", KbMeshMaker::wedges},
                                          {"hexahedra", KbMeshMaker::hexahedra},
                                          {"mixed", KbMeshMaker::mixed}}};

} // namespace quadratic
