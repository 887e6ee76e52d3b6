// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "CellIndex.h"
#include "Faults.h"
#include "MeshView.h"
#include "Run.h"
#include "SurfaceMesh.h"
#include "SurfaceParts.h"
#include "ValueView.h"

#include <cstdint>
#include <vector>

namespace kx {

/// Cuts any mesh at one value of a scalar field.
///
/// Cells are walked in chunks of fixed size. One pass takes the crossed cells among those that an index names and
/// writes their polygons, chunk by chunk with numbers of its own; further ones find the edges that chunks have in
/// common, place the vertices and bring polygons and numbers together. A value equal to the isovalue is inside and puts
/// the vertices of all its edges on the node; polygons that lose all but two corners by that are dropped.
class EdgePolygoniser {
public:
  static constexpr std::size_t NUM_PHASES = 4;
  /// With `buildsIndex` false the index of the call before is used: mesh, filter and field must be the same, but for
  /// the parameters of a function of space.
  void cut(Run& run, const MeshView& mesh, const ScalarField& field, double isovalue, bool buildsIndex,
           SurfaceData& output, Faults& faults);

private:
  struct Job;
  template <class Id>
  class Classifier;

  template <class Id>
  void cut(Job& job, bool buildsIndex, SurfaceParts<Id>& parts);
  template <class Id>
  void classify(Job& job, bool buildsIndex, SurfaceParts<Id>& parts);
  template <class Id>
  void placeVertices(Job& job, SurfaceParts<Id>& parts);
  template <class Id>
  void writePolygons(Job& job, const SurfaceParts<Id>& parts);

  CellIndex m_index;
  SurfaceParts<std::uint32_t> m_parts;
  SurfaceParts<std::uint64_t> m_wideParts; ///< for meshes with more node ids than 32 bits address
};

} // namespace kx
