// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellBoxes.h"
#include "Curtain.h"
#include "Faults.h"
#include "MeshView.h"
#include "Numbers.h"
#include "Run.h"
#include "Stencil.h"
#include "SurfaceMesh.h"

#include <cstdint>
#include <vector>

namespace kx {

/// Cuts a volume mesh by a curtain.
///
/// Each segment cuts the cells by its plane, with the rule of the isosurfaces for the segments on their faces, and each
/// polygon is clipped (Sutherland and Hodgman 1974, Reentrant polygon clipping) to what lies between the lines through
/// the segment's two ends (the joints). Around a joint the
/// faces are cut triangle by triangle, so that the planes of both segments pierce a triangle at one point: the vertex
/// that their polygons share. Whether a cut edge lies before, at or behind a joint is asked by the edge and the joint
/// alone, so that all cells and both segments get the same answer and no gap is left.
///
/// The inside is to the left of the polyline, seen with the direction towards the viewer; polygons face the right.
class FenceCutter {
public:
  static constexpr std::size_t NUM_PHASES = CellBoxes::NUM_PHASES + 3;

  /// `sources` become the nodes and weights of each output vertex. The cell boxes of the last call are used again as
  /// long as the mesh has the same stamps.
  void cut(Run& run, const MeshView& mesh, const Curtain& curtain, SurfaceData& output, std::vector<Stencil>& sources,
           Faults& faults);

private:
  /// What a vertex is: a node (all three the same), a point of the edge (a, b = c), or of the triangle; with the
  /// segment or the joint that cuts it there.
  struct Key {
    std::size_t a;
    std::size_t b;
    std::size_t c;
    std::size_t cut;
    friend bool operator==(const Key&, const Key&) = default;
    friend std::uint64_t hashOf(const Key& key) {
      return mixHash(mixHash(mixHash(mixHash(0, key.a), key.b), key.c), key.cut);
    }
    bool isNode() const { return a == c; }
  };
  static constexpr std::size_t bySegment(std::size_t segment) { return 2 * segment + 1; }
  static constexpr std::size_t byJoint(std::size_t joint) { return 2 * joint + 2; }

  /// The polygons of one chunk of cells.
  struct Pieces {
    std::vector<Key> corners; ///< of all polygons
    std::vector<std::uint32_t> sizes;
    std::vector<std::size_t> cells;
  };
  class CellCutter;

  static Stencil stencilOf(const MeshView& mesh, const Curtain& curtain, const Key& key);

  CellBoxes m_boxes;
};

} // namespace kx
