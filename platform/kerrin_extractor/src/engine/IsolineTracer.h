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

/// Traces the lines of a scalar field on the faces of a surface mesh, for all values at once.
///
/// The first pass cuts the cells in chunks, where nodes and values are at hand, and numbers the vertices of each chunk
/// and value by their edges. On the way it keeps, one byte each, the least and greatest value of a cell in 256 steps,
/// so that further values on the same field look at the bytes of most cells only. The second pass takes the values one
/// by one, several at a time, and joins what the chunks have, in their order. The result does not depend on the
/// threads.
class IsolineTracer {
public:
  static constexpr std::size_t NUM_PHASES = 2;

  /// With `buildsIndex` false the index of the call before is used: mesh, filter and field must be the same. `lines`
  /// has one entry for each value; values that are not finite yield no lines.
  void trace(Run& run, const FlatMesh& mesh, const ScalarField& field, const std::vector<double>& isovalues,
             bool buildsIndex, const std::vector<Isoline*>& lines, Faults& faults);
  /// Traces a single value of a function of space, a section of the surface, without keeping an index. Faces that are
  /// not flat are cut in triangles.
  void traceSection(Run& run, const FlatMesh& mesh, const ScalarField& field, double isovalue, Isoline& line,
                    Faults& faults);

private:
  struct Crossing {
    std::uint32_t value; ///< number of the isovalue
    std::uint32_t cell;  ///< in the chunk
  };
  struct Vertex {
    NodeEdge edge;
    float weight;
    float position[3];
  };
  struct Segment {
    std::uint32_t from; ///< vertex of the same value and chunk
    std::uint32_t to;
    std::uint32_t cell; ///< in the chunk
  };
  /// The pieces of one chunk, value by value; value v owns those from begins[v] to begins[v + 1].
  struct Chunk {
    struct Begin {
      std::uint32_t vertex;
      std::uint32_t segment;
    };
    std::vector<Vertex> vertices;
    std::vector<Segment> segments;
    std::vector<Begin> begins;
  };
  struct Levels;
  struct Job;

  void cutChunks(Job& job, const Levels& levels, bool buildsIndex, bool usesIndex);
  void join(const Job& job, std::size_t value, Isoline& line) const;
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
