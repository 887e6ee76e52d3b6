// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Curtain.h"
#include "FaceCutter.h"
#include "Faults.h"
#include "LineMesh.h"
#include "Run.h"
#include "Stencil.h"

#include <vector>

namespace kx {

/// Cuts the faces of a surface mesh by a curtain.
///
/// A flat face without a joint of the polyline in its shadow is cut as by a plane. Others are cut in triangles, on
/// which the two pieces that meet at a joint share a vertex: the point where the line through the joint pierces the
/// triangle.
class CurtainTracer {
public:
  static constexpr std::size_t NUM_PHASES = 2;

  void trace(Run& run, const FlatMesh& mesh, const Curtain& curtain, LineData& output, std::vector<Stencil>& sources,
             Faults& faults);

private:
  /// An end of a piece: an edge cut by a segment (tag 2 s), an edge cut at joint j (tag 2 j + 1), or the triangle
  /// (cell, number) pierced at joint j (tag JOINT + j).
  struct Key {
    NodeEdge edge;
    std::size_t tag;
    friend bool operator==(const Key&, const Key&) = default;
    friend std::uint64_t hashOf(const Key& key) { return mixHash(hashOf(key.edge), key.tag); }
  };
  struct End {
    Key key;
    Stencil stencil;
  };
  struct Piece {
    End from;
    End to;
    std::size_t cell;
  };
  class Cutter;
};

} // namespace kx
