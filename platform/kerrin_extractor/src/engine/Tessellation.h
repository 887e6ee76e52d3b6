// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EdgeSplitter.h"
#include "Faults.h"
#include "Run.h"
#include "SurfaceMesh.h"

#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

#include <memory>

namespace kx {

/// A volume mesh with quadratic cells as a mesh of tetrahedra, for the extractors that cut linear cells.
///
/// The corners of each cell give tetrahedra that all have its node with the smallest id, and each face triangles that
/// all have the face's node with the smallest id (pulling; J. Dompierre et al., Proc. 8th Int. Meshing Roundtable,
/// 1999), so that neighbours agree; these are bisected by `EdgeSplitter`. Linear cells take part, and follow the curved
/// edges and faces of quadratic neighbours. Polyhedra stay what they are. Nodes of the mesh keep their ids; added ones
/// follow.
class Tessellation {
public:
  static constexpr std::size_t NUM_PHASES = 3;
  static constexpr std::size_t NO_CELL = static_cast<std::size_t>(-1);

  Tessellation();
  ~Tessellation();

  /// `values`, one for each node of the mesh, or null: the subdivision follows them too, and a cell with a value that
  /// is not finite yields nothing. Dead cells yield nothing.
  void build(Run& run, const MeshView& mesh, const KiTessellator& tessellator, const double* values, Faults& faults);
  /// Leaves an empty mesh.
  void clear();

  /// Addresses and stamps hold until the next `build` or `clear`; the object is always the same.
  const KiVolumeMeshUnstructured& mesh() const;
  const NodeBlends& blends() const { return m_blends; }
  /// The cell of the input that a tetrahedron or polyhedron is part of.
  std::size_t sourceOf(std::size_t cell) const { return m_sources[cell]; }
  /// Brings the input cells of an output that was made from `mesh()` back to those of the input. Returns such a cell
  /// for each vertex, one that has a form where there is any; `NO_CELL` otherwise.
  std::vector<std::size_t> nameSources(SurfaceData& output) const;

  /// A cell of the input as it was subdivided; false for polyhedra.
  bool loadForm(const MeshView& mesh, std::size_t cell, CellForm& form) const;

private:
  class Mesh;
  struct Part;

  void checkCells(Run& run, const MeshView& mesh, const double* values, Faults& faults);
  void subdivide(Part& part, const MeshView& mesh, std::size_t begin, std::size_t end) const;
  void write(Run& run, const MeshView& mesh, const std::vector<Part>& parts,
             const std::vector<std::vector<std::size_t>>& ids);

  NodeBlends m_blends;
  EdgeMiddles m_middles; ///< of quadratic cells, where there are linear ones too
  std::vector<std::uint8_t> m_kinds;
  std::vector<double> m_spreads;
  IndexArray m_sources;
  std::unique_ptr<Mesh> m_mesh;
};

} // namespace kx
