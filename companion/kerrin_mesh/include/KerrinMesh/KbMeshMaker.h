// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinMesh/KbCells.h>
#include <KerrinMesh/KbExport.h>
#include <KerrinMesh/KbForm.h>

#include <cstdint>
#include <functional>
#include <vector>

/// Makes the arrays of meshes over the unit cube, for examples, tests and measurements.
///
/// The nodes lie on a lattice of `counts` cells, i fastest, at (u, v, w) = (i / nI, j / nJ, k / nK), moved by `warp` to
/// (u + warp sin 2 pi v, v + warp sin 2 pi w, w + warp sin 2 pi u). Positions and values are computed in double and
/// stored as float; a value belongs to the position before it is rounded.
class KERRIN_MESH_API KbMeshMaker {
public:
  using Field = std::function<double(const KbVec3<double>&)>;

  /// What is made; it owns the arrays that meshes and sets then point to.
  ///
  ///     const KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({100, 100, 100}, 0.03);
  ///     KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  ///     KbScalarSetI wave("wave", DataBinding::PER_NODE, a.values);
  struct Arrays {
    std::vector<float> coordinates;         ///< x y z of each node
    std::vector<float> values;              ///< the field at each node
    std::vector<std::int32_t> connectivity; ///< empty for a lattice
    std::vector<std::int32_t> offsets;      ///< only where cells differ in shape
    std::vector<std::uint8_t> shapes;       ///< one a cell, or a single one for all

    KbCells cells() const {
      return shapes.size() == 1 ? KbCells(shapes[0], connectivity, offsets) : KbCells(shapes, connectivity, offsets);
    }
  };

  /// sin 20x cos 20y + sin 20y cos 20z + sin 20z cos 20x: many surfaces that run through the whole cube.
  static double wave(const KbVec3<double>& point);
  /// The ABC flow of period 1, with A = sqrt 3, B = sqrt 2, C = 1 (T. Dombre et al., J. Fluid Mech. 167, 1986).
  static KbVec3<double> abcFlow(const KbVec3<double>& point);

  /// The nodes alone: for regular (`warp` 0) and curvilinear meshes.
  static Arrays lattice(const KbIndex<3>& counts, double warp = 0.0, const Field& field = wave);
  /// One hexahedron a lattice cell, in the order of the lattice.
  static Arrays hexahedra(const KbIndex<3>& counts, double warp = 0.0, const Field& field = wave);
  /// Six tetrahedra a lattice cell around its diagonal (Kuhn's subdivision); faces of neighbours match.
  static Arrays tetrahedra(const KbIndex<3>& counts, double warp = 0.0, const Field& field = wave);
  /// Two wedges a lattice cell, upright along k.
  static Arrays wedges(const KbIndex<3>& counts, double warp = 0.0, const Field& field = wave);
  /// Six pyramids a lattice cell, with a node more in its middle.
  static Arrays pyramids(const KbIndex<3>& counts, double warp = 0.0, const Field& field = wave);
  /// All four shapes with matching faces: by i + j, columns of two wedges and columns of hexahedra; among the
  /// hexahedra, every other one is cut into pyramids, and at the top of the cube its upper pyramid into two tetrahedra.
  static Arrays mixed(const KbIndex<3>& counts, double warp = 0.0, const Field& field = wave);

  /// The nodes of the surface z = 0.1 sin 6x cos 5y over the unit square, on a lattice of `counts` cells.
  static Arrays surfaceLattice(const KbIndex<2>& counts, const Field& field = wave);
  /// The same with one quadrangle a lattice cell.
  static Arrays quadrangles(const KbIndex<2>& counts, const Field& field = wave);
};
