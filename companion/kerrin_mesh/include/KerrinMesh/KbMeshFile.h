// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiDataSet.h>
#include <KerrinExtractor/KiMesh.h>
#include <KerrinMesh/KbExport.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

/// A mesh read from a file, with its data sets. It owns them all. One that was moved from is like one that was made
/// without a file: it has nothing.
///
///     const KbMeshFile file = KbReadMesh("combustor.vtk");
///     if (!file) std::cerr << file.getError() << '\n';
///     else if (const auto* density = file.getSet<KiDataSetIjk<double>>("Density")) ...
class KERRIN_MESH_API KbMeshFile {
public:
  struct Set {
    std::string name;
    DataBinding binding;
    std::size_t numComponents; ///< 1 for a scalar set, 3 for vectors, 0 for strings
    const KiDataSet* set;      ///< structured meshes: form Ij or Ijk; all others: form I
  };
  struct Content;

  KbMeshFile();
  explicit KbMeshFile(std::unique_ptr<Content> content);
  KbMeshFile(KbMeshFile&&) noexcept;
  KbMeshFile& operator=(KbMeshFile&&) noexcept;
  ~KbMeshFile();

  /// Whether there is a mesh.
  explicit operator bool() const { return getMesh() != nullptr; }
  /// Why there is none, in one line that names the file; empty when there is one, and when no file was read.
  const std::string& getError() const;
  /// What the file holds besides and could not be used, one line each.
  const std::vector<std::string>& getNotes() const;

  /// The mesh, or null. Its dynamic type is one of this library's mesh classes.
  const KiMesh* getMesh() const;
  /// The number of the mesh kind, from 0 (unstructured volume) to 12 (curvilinear line) in the order in which `KoMesh`
  /// tries them; 14 without a mesh.
  int getMeshType() const;
  /// The mesh kind in words, for example "unstructured volume mesh".
  std::string getMeshTypeName() const;
  bool isVolume() const { return getMeshType() <= 5; }
  bool isSurface() const { return getMeshType() >= 6 && getMeshType() <= 9; }
  bool isLine() const { return getMeshType() >= 10 && getMeshType() <= 12; }
  /// Number of cells, dead ones included.
  std::size_t getNumCells() const;
  std::size_t getNumDeadCells() const;
  /// Number of nodes; eight a cell for corner-point grids.
  std::size_t getNumNodes() const;
  /// The box around all nodes.
  KbVec3<double> getMin() const;
  KbVec3<double> getMax() const;

  /// All data sets in the order of the file, those per node first.
  const std::vector<Set>& getSets() const;
  /// The set of a name, per node before per cell unless `binding` says which; null when there is none.
  const Set* findSet(const std::string& name, DataBinding binding = DataBinding::AUTO) const;
  /// The same as an interface, for example `KiDataSetI<double>`; null too when the set has another form.
  template <class Interface>
  const Interface* getSet(const std::string& name, DataBinding binding = DataBinding::AUTO) const {
    const Set* found = findSet(name, binding);
    return found ? dynamic_cast<const Interface*>(found->set) : nullptr;
  }

  /// The six numbers of MAPAXES of a GRDECL file (x y of a point on the y axis, of the origin, of a point on the x
  /// axis), which coordinates do not take into account; otherwise empty.
  const std::vector<double>& getMapAxes() const;

private:
  const Content& content() const;

  std::unique_ptr<Content> m_content; ///< null when there is nothing
};

/// Reads a mesh from a file; the kind of file is told from its extension.
///
/// - `.grdecl`: corner-point grids (SPECGRID or DIMENS, COORD, ZCORN, ACTNUM, MAPAXES, INCLUDE, and a set per cell for
///   each keyword with one number a cell, in any order); z is the depth of the file. What follows a word that is no
///   keyword is left out up to a line with a known one. Repeat counts may stand for 2^29 values in all.
/// - where this library was built with VTK: legacy files (`.vtk`), XML files (`.vtu`, `.vti`, `.vtr`, `.vts`, `.vtp`),
///   `.ply`, `.obj`, `.stl` and `.inp` (AVS UCD). The cells of the highest dimension make the mesh. Cells that are
///   blanked or ghosts are dead. VTK reads one file at a time, whatever threads ask.
///
/// A damaged file gives an error or a note. There is a limit: VTK trusts some numbers within a file that nothing looks
/// at before, and ends the process where they lead out of memory. These are the faces of polyhedra, all numbers of
/// binary `.vtk` and `.inp` files, and sets of structured grids in `.vtk` files that are called "field".
///
/// Coordinates and values stay as the file has them, float or double; integers become float or double.
KERRIN_MESH_API KbMeshFile KbReadMesh(const std::string& path);
