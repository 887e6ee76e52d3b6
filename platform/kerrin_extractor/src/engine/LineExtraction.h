// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Extraction.h"
#include "LineCells.h"
#include "LineMesh.h"

#include <KerrinExtractor/KiTessellator.h>

#include <functional>

namespace kx {

/// What the extractors on line meshes share: they walk over the open, readable cells in pieces, and map sets by
/// stencils.
class LineExtraction : public Extraction<FlatMesh> {
public:
  using Extraction::Extraction;
  static constexpr std::size_t NUM_PHASES = 1;

protected:
  /// The part of the state that tells the tessellator.
  static InputState parametersOf(std::vector<double> numbers, const KiTessellator* tessellator) {
    InputState parameters;
    parameters.numbers = std::move(numbers);
    parameters.set = tessellator;
    parameters.setStamp = tessellator ? tessellator->getTimeStamp() : 0;
    return parameters;
  }

  /// Calls `visit(cell, nodes, points)` for each cell that can be shown, in order; with `chosen`, for those of the
  /// list. Cells with a position that is not finite are left out.
  using Visit = std::function<void(std::size_t cell, const CellNodeList& nodes, const std::vector<Stencil>& points)>;
  static void walk(const FlatMesh& mesh, const KiTessellator* tessellator, const std::vector<std::size_t>* chosen,
                   Faults& faults, const Visit& visit);
};

} // namespace kx
