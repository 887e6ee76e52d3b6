// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "MeshView.h"
#include "Run.h"
#include "SurfaceMesh.h"
#include "ValueView.h"

#include <atomic>
#include <cstdint>
#include <vector>

namespace kx {

/// The fast way through a structured grid whose cells are all open: rows of nodes become rows of bits (inside or not),
/// from which vertices and polygons are counted, and written in a second pass where they belong (the idea of Schroeder,
/// Maynard and Geveci 2015, Flying edges). Vertices are numbered by rows: first those on edges along i, then j, then k.
///
/// Least and greatest value of every 16 nodes of a row are kept, so that the next isovalue reads only the blocks that
/// it meets.
class RowPolygoniser {
public:
  static constexpr std::size_t NUM_PHASES = 3;
  /// Whether mesh and field are of the kinds that this class can read.
  static bool suits(const MeshView& mesh, const ScalarField& field);
  /// False when the grid holds something that needs the general way: values that are not finite or equal to the
  /// isovalue, or coordinates that are not finite. The output is then undefined. With `buildsIndex` false the index of
  /// the call before is used.
  bool cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, bool buildsIndex,
           SurfaceData& output);

private:
  struct RowCounts {
    std::uint32_t vertices[3]; ///< on edges along i, j, k that begin in this row of nodes
    std::uint32_t polygons;    ///< of the cells that begin in this row
    std::uint32_t indices;
  };
  struct RowBegin {
    std::uint32_t vertex[3];
    std::uint32_t polygon;
    std::uint32_t index;
  };
  struct Job;

  template <class Values>
  void classify(Job& job, const Values& values, bool buildsIndex);
  void count(Job& job);
  template <class Values, class Points>
  void write(Job& job, const Values& values, const Points& points);

  std::size_t m_numWords = 0; ///< words of 32 nodes a row
  Array<std::uint32_t> m_bits;
  bool m_isIrregular = false; ///< whether the field holds values that are not finite
  enum Side : std::uint8_t { OUTSIDE, INSIDE, MIXED };
  Array<std::uint8_t> m_sides; ///< of each row of nodes
  Array<float> m_ranges;       ///< least and greatest value of each block of nodes
  std::vector<RowCounts> m_counts;
  std::vector<RowBegin> m_begins;
};

} // namespace kx
