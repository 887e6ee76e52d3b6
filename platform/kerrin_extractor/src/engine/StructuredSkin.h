// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceList.h"
#include "Run.h"

namespace kx {

/// Finds the faces of a structured mesh that have an open cell on one side only, by rows of bits: one bit a cell. Where
/// cells have corners of their own (explicit nodes or positions), faces of neighbours that do not coincide stay, both
/// of them. Faces come out by rows of cells.
class StructuredSkin {
public:
  static std::size_t numPhases(const MeshView& mesh);
  static void find(Run& run, const MeshView& mesh, const CellRanges& ranges, FaceList& faces);
};

} // namespace kx
