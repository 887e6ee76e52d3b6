// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "CellIndex.h"
#include "Faults.h"
#include "MeshView.h"
#include "NodeSides.h"
#include "Run.h"
#include "SurfaceMesh.h"
#include "SurfaceParts.h"
#include "ValueView.h"

#include <cstdint>
#include <vector>

namespace kx {

/// Cuts any mesh at one value of a scalar field.
///
/// Cells are walked in chunks of fixed size. One pass finds the crossed cells and writes their polygons, chunk by chunk
/// with numbers of its own; further ones find the edges that chunks have in common, place the vertices and bring
/// polygons and numbers together. A value equal to the isovalue is inside and puts the vertices of all its edges on the
/// node; polygons that lose all but two corners by that are dropped.
///
/// The first cut of a field looks at all cells. The second one makes an index, by which it and those that follow find
/// the cells near the surface: an index costs more than it saves where the field is cut once.
class EdgePolygoniser {
public:
  /// Of the next `cut`.
  std::size_t numPhases(const MeshView& mesh, const ScalarField& field) const {
    return scansSides(mesh, field) ? 6 : 5;
  }
  /// Mesh, filter and field must be those of the last cut, but for the parameters of a function of space, or `reset`
  /// must have been called since.
  void cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, SurfaceData& output,
           Faults& faults);
  /// Forgets what is known of mesh and field.
  void reset() { m_stage = Stage::FIRST_CUT; }

private:
  enum class Stage { FIRST_CUT, SECOND_CUT, HAS_INDEX };
  struct Job;
  template <class Id>
  class Classifier;

  bool scansSides(const MeshView& mesh, const ScalarField& field) const {
    return m_stage == Stage::FIRST_CUT && NodeSides::suits(mesh, field);
  }
  template <class Id>
  void cut(Job& job, SurfaceParts<Id>& parts);
  template <class Id>
  void scan(Job& job, SurfaceParts<Id>& parts);
  template <class Id>
  void classify(Job& job, SurfaceParts<Id>& parts);
  template <class Id>
  void placeVertices(Job& job, SurfaceParts<Id>& parts);
  template <class Id>
  void writePolygons(Job& job, const SurfaceParts<Id>& parts);

  Stage m_stage = Stage::FIRST_CUT;
  CellIndex m_index;
  SurfaceParts<std::uint32_t> m_parts;
  SurfaceParts<std::uint64_t> m_wideParts; ///< for meshes with more node ids than 32 bits address
};

} // namespace kx
