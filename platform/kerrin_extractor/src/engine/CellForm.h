// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FlatMesh.h"
#include "MeshView.h"
#include "Numbers.h"

#include "src/contract/ShapeFunctions.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kx {

/// A point as a weighted mean of nodes.
struct Blend {
  std::array<std::size_t, MAX_SHAPE_NODES> nodes;
  std::array<double, MAX_SHAPE_NODES> weights;
  std::size_t count = 0;

  /// A sum in the order of the entries. Nodes without weight are no entries.
  template <class Values>
  auto valueAt(const Values& values) const {
    decltype(values(std::size_t(0))) sum(0.0);
    for (std::size_t i = 0; i < count; ++i)
      sum += values(nodes[i]) * weights[i];
    return sum;
  }
};

/// Which node lies in the middle of which edge between two corners, for the edges of quadratic cells.
class EdgeMiddles {
public:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  /// The first middle of an edge stays.
  void add(std::size_t a, std::size_t b, std::size_t middle) {
    if (m_edges.numberOf(keyOf(a, b)) == m_middles.size()) m_middles.push_back(middle);
  }
  std::size_t find(std::size_t a, std::size_t b) const {
    const std::size_t number = m_edges.find(keyOf(a, b));
    return number < m_middles.size() ? m_middles[number] : NONE;
  }
  bool isEmpty() const { return m_middles.empty(); }
  void clear() {
    m_edges.reset(0);
    m_middles.clear();
  }

private:
  struct Key {
    std::size_t a;
    std::size_t b;
    friend bool operator==(const Key&, const Key&) = default;
    friend std::uint64_t hashOf(const Key& key) { return mixHash(mixHash(0, key.a), key.b); }
  };
  static Key keyOf(std::size_t a, std::size_t b) { return {std::min(a, b), std::max(a, b)}; }

  Numbers<Key> m_edges;
  std::vector<std::size_t> m_middles;
};

/// A line, face or volume cell with all its nodes, as an element with shape functions.
///
/// Positions in it are those of `ReferenceShape`; pyramids use a straight pyramid instead of collapsed coordinates,
/// with the apex over the middle of the base square. All maps between the positions in a cell and in its faces are then
/// affine, and the middle of two points is the same point for all cells that have both.
class CellForm {
public:
  ReferenceShape shape = ReferenceShape::LINE;
  std::size_t numCorners = 0;
  std::size_t numNodes = 0;
  /// Corners, then the nodes in the middles of edges. Where a linear cell has an edge in common with a quadratic one it
  /// is a quadratic cell too; its other edges then have `EdgeMiddles::NONE` for the mean of their ends.
  std::array<std::size_t, MAX_SHAPE_NODES> nodes{};

  bool isQuadratic() const { return numNodes > numCorners; }

  /// A line or face by its nodes; `numAll` is that of the linear or the quadratic form.
  void setFace(const std::size_t* ids, std::size_t corners, std::size_t numAll);
  /// A volume cell of the shapes up to the quadratic hexahedron. False for polyhedra and what cannot be read.
  bool loadVolume(const MeshView& mesh, std::size_t cell);
  /// Gives a linear cell the middles that quadratic neighbours have on its edges.
  void join(const EdgeMiddles& middles);

  std::size_t numFaces() const; ///< of a volume cell
  std::size_t numEdges() const;
  /// Corner numbers of an edge's ends.
  std::array<std::uint8_t, 2> edge(std::size_t e) const;
  /// The number of the edge between two corners, by their numbers, which have one.
  std::size_t edgeBetween(std::size_t a, std::size_t b) const;
  KbVec3<double> position(std::size_t local) const;
  /// The point at a position, with its nodes in ascending order. At positions with few binary digits weights are exact,
  /// so that cells agree bit by bit on the points that they share.
  void blendAt(const KbVec3<double>& position, Blend& blend) const;
  /// Moves a position in a volume cell to where the cell has a point of space near it, by Newton's method with
  /// differences for derivatives. Where that leads away the position stays.
  KbVec3<double> nearPosition(const PointView& points, const KbVec3<double>& target,
                              const KbVec3<double>& position) const;
};

/// Whether any cell of a mesh is quadratic; at most one look at every cell's shape.
bool hasQuadraticCells(const MeshView& mesh);
bool hasQuadraticCells(const FlatMesh& mesh);

} // namespace kx
