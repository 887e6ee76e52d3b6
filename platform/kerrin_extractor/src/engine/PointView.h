// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiGeometryHexahedronIjk.h>
#include <KerrinExtractor/KiGeometryI.h>
#include <KerrinExtractor/KiGeometryIjk.h>

#include <array>
#include <cstddef>
#include <vector>

namespace kx {

/// Counts along the three axes of a structured mesh.
struct Dims {
  std::size_t i = 0;
  std::size_t j = 0;
  std::size_t k = 0;

  std::size_t count() const { return i * j * k; }
  std::size_t flat(std::size_t a, std::size_t b, std::size_t c) const { return a + i * (b + j * c); }
  std::array<std::size_t, 3> split(std::size_t index) const { return {index % i, index / i % j, index / i / j}; }
};

/// A node of a mesh without shared nodes: the grid node, and by which of its eight cells its position is told. The
/// slot's bits are the node's offsets (i, j, k) in that cell.
inline constexpr unsigned CORNER_SLOT_BITS = 3;
/// Corner number of `KiVolumeCell::HEXAHEDRON` for offsets given as bits.
inline constexpr std::array<std::uint8_t, 8> CORNER_OF_OFFSET{0, 1, 3, 2, 4, 5, 7, 6};
/// The inverse of it (which is the same exchange).
inline constexpr std::array<std::uint8_t, 8> OFFSET_OF_CORNER{0, 1, 3, 2, 4, 5, 7, 6};

/// Positions of nodes by their id, read from plain arrays where there are some and from the interface otherwise.
class PointView {
public:
  enum class Kind { FLOATS, DOUBLES, AXES, GEOMETRY_I, GEOMETRY_IJK, CORNERS };

  Kind kind = Kind::FLOATS;
  const void* array = nullptr;
  const KiGeometryI* geometryI = nullptr;
  const KiGeometryIjk* geometryIjk = nullptr;
  const KiGeometryHexahedronIjk* corners = nullptr;
  Dims nodes; ///< structured kinds only
  /// Coordinates along the axes of regular and rectilinear meshes.
  std::array<std::vector<double>, 3> axes;

  KbVec3<double> operator[](std::size_t id) const {
    switch (kind) {
    case Kind::FLOATS:
      return triple<float>(id);
    case Kind::DOUBLES:
      return triple<double>(id);
    default:
      return general(id);
    }
  }

  /// The position of a node of a structured mesh.
  KbVec3<double> at(std::size_t i, std::size_t j, std::size_t k) const {
    if (kind == Kind::AXES) return {axes[0][i], axes[1][j], axes[2][k]};
    if (kind == Kind::GEOMETRY_IJK) return geometryIjk->getCoord(i, j, k);
    return (*this)[nodes.flat(i, j, k)];
  }

  /// Brings a position nearer that is going to be read.
  void prefetch(std::size_t id) const {
    if (kind == Kind::FLOATS) __builtin_prefetch(static_cast<const float*>(array) + 3 * id);
    if (kind == Kind::DOUBLES) __builtin_prefetch(static_cast<const double*>(array) + 3 * id);
  }

  /// The position in an array of `T`, for loops that have asked for the kind.
  template <class T>
  KbVec3<double> triple(std::size_t id) const {
    const T* p = static_cast<const T*>(array) + 3 * id;
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }

  /// Regular positions at the nodes between two corners.
  void setAxes(const KbVec3<double>& low, const KbVec3<double>& high);

private:
  KbVec3<double> general(std::size_t id) const;
};

/// Calls `visit` with what yields a position by a node's id and need not ask for the kind each time.
template <class Visit>
decltype(auto) withPositions(const PointView& points, const Visit& visit) {
  switch (points.kind) {
  case PointView::Kind::FLOATS:
    return visit([&points](std::size_t id) { return points.triple<float>(id); });
  case PointView::Kind::DOUBLES:
    return visit([&points](std::size_t id) { return points.triple<double>(id); });
  case PointView::Kind::GEOMETRY_I:
    return visit([geometry = points.geometryI](std::size_t id) { return geometry->getCoord(id); });
  default:
    return visit([&points](std::size_t id) { return points[id]; });
  }
}

} // namespace kx
