// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Faults.h"
#include "FlatMesh.h"
#include "Stencil.h"

#include <KerrinExtractor/KiTessellator.h>

#include <functional>
#include <vector>

namespace kx {

/// The linear pieces of one line cell: points from its first end to its last.
///
/// A two-node cell is one piece; so is a three-node cell without a tessellator. With one, a three-node cell is halved
/// until the tessellator is content or its depth is used up. Positions come from the quadratic shape functions (nodes:
/// end, end, middle).
class LineCells {
public:
  LineCells(const FlatMesh& mesh, const KiTessellator* tessellator)
      : m_mesh(mesh)
      , m_tessellator(tessellator) {}

  /// The points of a cell that `nodes` holds; good until the next call.
  const std::vector<Stencil>& divide(const CellNodeList& nodes);
  KbVec3<double> position(const Stencil& point) const {
    return point.valueAt([this](std::size_t id) { return m_mesh.points[id]; });
  }

private:
  void halve(const CellNodeList& nodes, double begin, double end, std::size_t depth);

  const FlatMesh& m_mesh;
  const KiTessellator* m_tessellator;
  std::vector<Stencil> m_points;
};

/// Calls `visit(cell, nodes, points)` for each open cell of a line mesh that can be shown, in order, with the points of
/// its pieces; with `chosen`, for those of the list. Cells with a position that is not finite are left out.
using VisitLineCell =
    std::function<void(std::size_t cell, const CellNodeList& nodes, const std::vector<Stencil>& points)>;
void visitLineCells(const FlatMesh& mesh, const KiTessellator* tessellator, const std::vector<std::size_t>* chosen,
                    Faults& faults, const VisitLineCell& visit);

} // namespace kx
