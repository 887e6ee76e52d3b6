// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceCutter.h"
#include "Faults.h"
#include "LineMesh.h"
#include "Output.h"
#include "Run.h"

#include <cstdint>
#include <vector>

namespace kx {

/// The lines at one value, where their vertices come from, and what is mapped onto them.
struct Isoline : Output<LineMesh> {
  EdgeSources sources;

  void clear() {
    Output::clear();
    sources.resize(0, 0);
  }
};

/// Traces the lines of a scalar field on the faces of a surface mesh, for all values at once: cell by cell (marching
/// squares, the plane form of Lorensen and Cline 1987), vertices joined by their edges.
///
/// The first pass cuts the cells in chunks, where nodes and values are at hand, and numbers the vertices of each chunk
/// and value by their edges; of each vertex and segment it keeps eight bytes. On the way it keeps, one byte each, the
/// least and greatest value of a cell in 256 steps, so that further values on the same field look at the bytes of most
/// cells only. The second pass finds, for one value after the other, the vertices that several chunks have; these are
/// looked for only among edges with nodes that may belong to cells of several chunks. The last pass writes each chunk's
/// part of all lines. Vertices are in the order in which the cells meet them, whatever the threads.
class IsolineTracer {
public:
  static constexpr std::size_t NUM_PHASES = 3;

  /// With `buildsIndex` false the index of the call before is used: mesh, filter and field must be the same. `lines`
  /// has one entry for each value; values that are not finite yield no lines.
  void trace(Run& run, const FlatMesh& mesh, const ScalarField& field, const std::vector<double>& isovalues,
             bool buildsIndex, const std::vector<Isoline*>& lines, Faults& faults);
  /// Traces a single value of a function of space, a section of the surface, without keeping an index. Faces that are
  /// not flat are cut in triangles.
  void traceSection(Run& run, const FlatMesh& mesh, const ScalarField& field, double isovalue, Isoline& line,
                    Faults& faults);

private:
  struct Segment;
  template <class Id>
  struct Chunk;
  struct Levels;
  struct Job;
  class ChunkCutter;

  /// `Id` is wide enough for the nodes of the mesh.
  template <class Id>
  void runWith(const Job& job, const Levels& levels);
  void run(const Job& job, const Levels& levels);
  void setScale(const FlatMesh& mesh, const ScalarField& field);
  std::uint8_t stepOf(double value) const;
  template <class Id>
  static void matchChunks(const Job& job, std::vector<Chunk<Id>>& chunks, std::size_t value);
  template <class Id>
  static void writeChunk(const Job& job, const Chunk<Id>& chunk);

  // The index: per cell the steps of its least and greatest value; least > greatest for cells that yield nothing.
  Array<std::uint8_t> m_low;
  Array<std::uint8_t> m_high;
  double m_base = 0.0;
  double m_scale = 0.0;
};

} // namespace kx
