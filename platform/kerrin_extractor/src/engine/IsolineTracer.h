// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceCutter.h"
#include "Faults.h"
#include "LineMesh.h"
#include "MappedSets.h"
#include "Run.h"

#include <cstdint>
#include <vector>

namespace kx {

/// The lines at one value, where their vertices come from, and what is mapped onto them.
struct Isoline {
  LineMesh mesh;
  EdgeSources sources;
  MappedSets sets;

  void clear() {
    mesh.data().clear();
    sources.resize(0, 0);
  }
};

/// Traces the lines of a scalar field on the faces of a surface mesh, for all values at once.
///
/// The first pass visits the cells in chunks and notes which values each of them holds; on the way it keeps, one byte
/// each, the least and greatest value of a cell in 256 steps, so that further values on the same field look at the
/// bytes of most cells only. The second pass takes the values one by one, several at a time: it cuts the cells, in
/// their order, and numbers the vertices by their edges as they come. The result does not depend on the threads.
class IsolineTracer {
public:
  static constexpr std::size_t NUM_PHASES = 2;

  /// With `buildsIndex` false the index of the call before is used: mesh, filter and field must be the same. `lines`
  /// has one entry for each value; values that are not finite yield no lines.
  void trace(Run& run, const FlatMesh& mesh, const ScalarField& field, const std::vector<double>& isovalues,
             bool buildsIndex, const std::vector<Isoline*>& lines, Faults& faults);
  /// Traces a single value without keeping an index.
  void traceOnce(Run& run, const FlatMesh& mesh, const ScalarField& field, double isovalue, Isoline& line,
                 Faults& faults);

private:
  struct Crossing {
    std::uint32_t value; ///< number of the isovalue
    std::uint32_t cell;  ///< in the chunk
  };
  struct Chunk {
    std::vector<Crossing> crossings;   ///< by value, then by cell
    std::vector<std::uint32_t> begins; ///< of each value, and the end
  };
  struct Levels;
  struct Job;

  void classify(Job& job, const Levels& levels, bool buildsIndex, bool usesIndex);
  void cutValue(const Job& job, std::size_t value, Isoline& line) const;
  void setScale(const FlatMesh& mesh, const ScalarField& field);
  std::uint8_t stepOf(double value) const;

  // The index: per cell the steps of its least and greatest value; least > greatest for cells that yield nothing.
  Array<std::uint8_t> m_low;
  Array<std::uint8_t> m_high;
  double m_base = 0.0;
  double m_scale = 0.0;
  std::vector<Chunk> m_chunks;
};

} // namespace kx
