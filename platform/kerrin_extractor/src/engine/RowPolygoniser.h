// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "MeshView.h"
#include "RowBits.h"
#include "RowCases.h"
#include "Run.h"
#include "SurfaceMesh.h"
#include "ValueView.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kx {

class RowAxis;

/// The fast way through a structured grid: rows of nodes become rows of bits (inside or not), from which vertices and
/// polygons are counted, and written in a second pass where they belong (the idea of Schroeder, Maynard and Geveci
/// 2015, Flying edges). Vertices are numbered by rows: first those on edges along i, then j, then k; behind all of them
/// those on nodes.
///
/// What the next parameter needs is kept: of sets the least and greatest value of every 16 nodes of a row, of functions
/// of space on curvilinear grids the boxes of the same nodes. On grids with axes a function's rows are found from the
/// axes alone.
///
/// Cells that are dead, refused or have a node without a finite value are closed: they yield nothing, and edges with no
/// open cell around have no vertex. A value equal to the isovalue is inside and puts the vertices of all its edges on
/// the node; polygons that lose all but two corners by that are dropped. Rows near such places take a slower way
/// through the same passes.
class RowPolygoniser {
public:
  static constexpr std::size_t NUM_PHASES = 3;
  /// Whether mesh and field are of the kinds that this class can read.
  static bool suits(const MeshView& mesh, const ScalarField& field);
  /// False when the grid holds something that needs the general way: coordinates that are not finite or axes that turn
  /// back. The output is then undefined. With `buildsIndex` false the index of the call before is used: mesh, filter
  /// and field must be the same, but for the parameters of a function of space.
  bool cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, bool buildsIndex,
           SurfaceData& output);

private:
  /// What is known of a row of nodes, or of the row of cells that begins there.
  enum Note : std::uint8_t {
    FIRST_INSIDE = 1,
    LAST_INSIDE = 2,
    IS_MIXED = 4, ///< it has bits of its own
    HAS_EXACT = 8,
    // Kept for the next parameter:
    HAS_NOT_FINITE = 16,
    HAS_CLOSED = 32,
    KEPT = HAS_NOT_FINITE | HAS_CLOSED,
    IS_IRREGULAR = HAS_EXACT | KEPT
  };
  /// The groups of a row in which neighbouring nodes differ; `begin` > `end` when they nowhere do.
  struct Span {
    std::uint32_t begin;
    std::uint32_t end;
  };
  /// Where a row writes, counted from the begin of its step.
  struct RowBegin {
    std::array<std::uint32_t, 4> vertex; ///< on edges along i, j, k; the end
    std::uint32_t polygon;
    std::uint32_t index;
    std::uint32_t numPolygons;
  };
  struct StepBegin {
    std::size_t vertex = 0;
    std::size_t polygon = 0;
    std::size_t index = 0;
  };
  /// Vertices on the nodes of one group of a row.
  struct NodeGroup {
    std::uint32_t bits;   ///< nodes that polygons use
    std::uint32_t number; ///< of the first of them
  };
  struct Box {
    KbVec3<float> low;
    KbVec3<float> high;
  };
  struct Job;
  struct Quad;
  struct Totals;
  struct RowPlace;
  /// Vertex numbers by the slots of `RowCases`.
  using Slots = std::array<std::uint32_t, RowCases::NUM_SLOTS>;

  // The first pass; each operation takes one step of rows.
  void classify(Job& job, const ScalarField& field);
  template <class Values>
  void classifyValues(Job& job, const Values& values, std::size_t step);
  template <class Function>
  void classifyOnAxes(Job& job, const Function& function, const RowAxis& axis, std::size_t step);
  template <class Function, class Points>
  void classifyByBoxes(Job& job, const Function& function, const Points& points, std::size_t step);
  template <class Points>
  void buildBoxes(Job& job, const Points& points, std::size_t step);
  // What it finds out about a row.
  void readClosedCells(const Job& job, std::size_t row, std::size_t j, std::size_t k);
  void setUniform(std::size_t row, bool isInside);
  void setMixed(std::size_t row, bool isFirst, bool isLast, const Span& span);
  void setStretch(std::size_t row, std::size_t numNodes, std::size_t begin, std::size_t end);
  void finishRow(std::size_t row, std::size_t numNodes);
  void markExact(std::size_t row, std::size_t begin, std::uint32_t bits);

  void count(Job& job);
  static Totals countRow(const Quad& quad, std::size_t numCells, bool hasCells);
  Totals countIrregularRow(const Job& job, const RowPlace& place);
  bool numberOutput(Job& job);

  template <std::size_t AXIS, class Values, class Points>
  void writeVertices(Job& job, const Values& values, const Points& points, const RowPlace& place);
  template <class Values, class Points>
  void write(Job& job, const Values& values, const Points& points);
  template <class Points>
  void writeNodes(Job& job, const Points& points, const RowPlace& place);
  Slots slotsOf(const Job& job, std::size_t row) const;
  void writePolygons(Job& job, const RowPlace& place);
  void writeIrregularPolygons(Job& job, const RowPlace& place);

  const std::uint32_t* bitsOf(std::size_t row) const;
  bool isCut(const Job& job, std::size_t row, std::size_t j, std::size_t k) const;
  Quad quadOf(const Job& job, std::size_t row, std::size_t j, std::size_t k) const;
  bool isIrregular(const Job& job, std::size_t row, std::size_t j, std::size_t k) const;
  std::size_t vertexBegin(std::size_t row, std::size_t axis) const;
  // Words of bits of irregular rows.
  std::uint64_t exactNodes(std::size_t row, std::size_t group) const;
  std::uint32_t openCells(const Job& job, std::size_t j, std::size_t k, std::size_t group) const;
  std::uint32_t vertexEdges(const Job& job, std::size_t axis, std::size_t j, std::size_t k, std::size_t group) const;

  std::size_t m_numWords = 0; ///< words of a row
  BitRows m_inside;
  BitRows m_exact;
  BitRows m_notFinite;
  BitRows m_closed;
  std::vector<std::uint32_t> m_uniform; ///< a row of zeros, and one of all nodes
  Array<NodeGroup> m_nodes;
  Array<std::uint8_t> m_notes;
  std::uint8_t m_allNotes = 0; ///< of any row
  Array<Span> m_spans;
  Array<RowBegin> m_begins;
  std::vector<StepBegin> m_stepBegins;

  bool m_suitsNot = false; ///< whether something was found that needs the general way
  Array<float> m_ranges;   ///< least and greatest value of each block of nodes
  Array<Box> m_boxes;      ///< of each row, followed by those of its blocks
  std::vector<Box> m_stepBoxes;
};

} // namespace kx
