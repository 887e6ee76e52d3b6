// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceList.h"
#include "Faults.h"
#include "Run.h"

namespace kx {

/// Finds the faces that belong to exactly one open cell of a mesh with explicit nodes. A face is known by its set of
/// corners; one that a cell has twice (the cell is flat) bounds nothing and does not count.
///
/// The idea: most faces have two cells, so their fingerprints, 64 bits that depend on the set of corners alone, cancel
/// out in an exclusive or. A first pass over the cells combines the fingerprints of all faces at their smallest node
/// (two nodes share one word, which makes 4 bytes a node). What stays zero has no unpaired face; the chance that an
/// unpaired one hides is about 2^-63 a word. A second pass collects the faces at the other nodes, and only these are
/// matched by a table of their corners, in partitions by smallest node. Faces come out in the order of the partitions,
/// then of cells; partitions depend on the mesh alone, so that the result does not depend on the threads.
class UnstructuredSkin {
public:
  static constexpr std::size_t NUM_PHASES = 3;
  static void find(Run& run, const MeshView& mesh, const CellRanges& ranges, FaceList& faces, Faults& faults);
};

} // namespace kx
