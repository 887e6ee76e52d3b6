// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "peer/PlainViews.h"
#include "peer/VtkInput.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <utility>

/// Volume meshes with one scalar at each node: as arrays, as plain views without arrays, and as the opponent's grid
/// over the same arrays.
namespace peer {

/// `numCells` cells a side.
struct RegularInput {
  using Mesh = KiVolumeMeshRegular;
  using Set = KiDataSetIjk<double>;

  explicit RegularInput(std::size_t numCells)
      : arrays(KbMeshMaker::lattice({numCells, numCells, numCells}))
      , mesh({numCells, numCells, numCells}, {0, 0, 0}, {1, 1, 1})
      , set("f", DataBinding::PER_NODE, arrays.values, {numCells + 1, numCells + 1, numCells + 1})
      , plainMesh(mesh)
      , plainSet(set)
      , grid(makeImage(numCells)) {
    setValues(*grid, arrays.values);
  }
  KbMeshMaker::Arrays arrays;
  KbVolumeMeshRegular mesh;
  KbScalarSetIjk set;
  const Mesh& plainMesh; ///< a regular mesh has no arrays
  PlainScalarSetIjk plainSet;
  vtkNew<vtkImageData> grid;
};

/// `numCells` cells a side.
struct CurvilinearInput {
  using Mesh = KiVolumeMeshCurvilinear;
  using Set = KiDataSetIjk<double>;

  explicit CurvilinearInput(std::size_t numCells)
      : arrays(KbMeshMaker::lattice({numCells, numCells, numCells}, warp))
      , mesh({numCells, numCells, numCells}, arrays.coordinates)
      , set("f", DataBinding::PER_NODE, arrays.values, {numCells + 1, numCells + 1, numCells + 1})
      , plainMesh(mesh)
      , plainSet(set)
      , grid(makeCurvilinearGrid(arrays, numCells)) {
    setValues(*grid, arrays.values);
  }
  KbMeshMaker::Arrays arrays;
  KbVolumeMeshCurvilinear mesh;
  KbScalarSetIjk set;
  PlainCurvilinearMesh plainMesh;
  PlainScalarSetIjk plainSet;
  vtkNew<vtkStructuredGrid> grid;
};

/// Cells of one shape.
struct CellsInput {
  using Mesh = KiVolumeMeshUnstructured;
  using Set = KiDataSetI<double>;

  CellsInput(KbMeshMaker::Arrays lattice, KiVolumeCell::Shape shape, std::size_t nodesPerCell, int vtkType)
      : arrays(std::move(lattice))
      , cells(arrays.connectivity, nodesPerCell)
      , mesh(arrays.coordinates, {shape, cells.connectivity})
      , set("f", DataBinding::PER_NODE, arrays.values)
      , plainMesh(mesh)
      , plainSet(set)
      , grid(makeGrid(arrays, cells, vtkType)) {
    setValues(*grid, arrays.values);
  }
  KbMeshMaker::Arrays arrays;
  Cells cells;
  KbVolumeMeshUnstructured mesh;
  KbScalarSetI set;
  PlainVolumeMesh plainMesh;
  PlainScalarSetI plainSet;
  vtkNew<vtkUnstructuredGrid> grid;
};

/// Over the warped lattice.
struct HexahedraInput : CellsInput {
  explicit HexahedraInput(std::size_t numCells)
      : CellsInput(KbMeshMaker::hexahedra({numCells, numCells, numCells}, warp), KiVolumeCell::HEXAHEDRON, 8,
                   VTK_HEXAHEDRON) {}
};
struct TetrahedraInput : CellsInput {
  explicit TetrahedraInput(std::size_t numCells)
      : CellsInput(KbMeshMaker::tetrahedra({numCells, numCells, numCells}, warp), KiVolumeCell::TETRAHEDRON, 4,
                   VTK_TETRA) {}
};

} // namespace peer
