// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "Faults.h"
#include "MeshView.h"
#include "Run.h"
#include "SurfaceMesh.h"
#include "ValueView.h"

#include <cstdint>
#include <vector>

namespace kx {

/// Cuts any mesh at one value of a scalar field.
///
/// Cells are walked in chunks of fixed size. A first pass over all cells keeps, two bytes a cell, the range of its
/// values in 256 steps, and a third byte for what is found out about crossed cells; as long as mesh, field and filter
/// stay the same only cells whose range holds the isovalue are looked at again. Vertices are keyed by their edge: every
/// node has a list of the cut edges of which it is the smaller end, several threads insert at a time, and numbers are
/// given afterwards in the order of nodes and ends, so that the result does not depend on the threads. A value equal to
/// the isovalue is inside and puts the vertices of all its edges on the node; polygons that lose all but two corners by
/// that are dropped.
class EdgePolygoniser {
public:
  static std::size_t numPhases(bool buildsIndex) { return buildsIndex ? 5 : 4; }
  /// With `buildsIndex` false the index of the call before is used: mesh, filter and field must be the same, but for
  /// the parameters of a function of space.
  void cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, bool buildsIndex,
           SurfaceData& output, Faults& faults);

private:
  struct ActiveCell {
    std::uint16_t local;     ///< cell number in the chunk
    std::uint8_t caseNumber; ///< not used by irregular cells
    std::uint8_t code : 3;
    std::uint8_t isInverted : 1;
    /// Taken the slow way: polyhedra, cells with repeated nodes or with a value equal to the isovalue.
    std::uint8_t isIrregular : 1;
  };
  struct Chunk {
    std::vector<ActiveCell> active;
    std::size_t numPolygons = 0;
    std::size_t numIndices = 0;
    std::size_t numEdges = 0; ///< upper limit of new edges
  };
  struct Edge {
    std::uint64_t key;  ///< the greater end, with the slot bits of the smaller one on top
    std::uint32_t next; ///< next edge of the node, `NONE` at the end
    std::uint32_t vertex;
  };
  struct Job;

  void buildIndex(Job& job);
  void buildBoxes(const Job& job, std::size_t begin, std::size_t end);
  void classify(Job& job);
  void collectEdges(Job& job);
  void placeVertices(Job& job);
  void numberPolygons(Job& job);
  std::uint32_t findEdge(const Job& job, std::size_t a, std::size_t b, std::size_t& nextFree);

  /// Box around the nodes of `BOX_CELLS` cells.
  struct Box {
    KbVec3<double> low;
    KbVec3<double> high;
  };

  // The index: per cell the steps of its least and greatest value; least > greatest for cells that yield nothing.
  Array<std::uint8_t> m_low;
  Array<std::uint8_t> m_high;
  /// What is known of a cell's corners (see `CellState` of the source); 0 until the cell is first crossed.
  Array<std::uint8_t> m_states;
  /// Of functions of space: the cells' boxes instead of their values, which change with every parameter.
  std::vector<Box> m_boxes;
  double m_base = 0.0;
  double m_scale = 0.0;

  std::vector<Chunk> m_chunks;
  Array<std::uint32_t> m_heads; ///< first edge of each node; all `NONE` between two calls
  bool m_headsAreClean = false;
  Array<Edge> m_edges;
  Array<std::uint32_t> m_blockCounts; ///< edges per block of nodes
};

} // namespace kx
