// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "peer/PlainViews.h"
#include "peer/VtkInput.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>

#include <utility>

/// Volume meshes with one scalar at each node, or at each cell: as arrays, as plain views without arrays, and as the
/// opponent's grid over the same arrays.
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

/// Cells of one shape, with the field at the nodes, or at each cell its mean over the nodes.
struct CellsInput {
  using Mesh = KiVolumeMeshUnstructured;
  using Set = KiDataSetI<double>;

  CellsInput(KbMeshMaker::Arrays lattice, KiVolumeCell::Shape shape, std::size_t nodesPerCell, int vtkType,
             DataBinding binding = DataBinding::PER_NODE)
      : arrays(std::move(lattice))
      , cells(std::exchange(arrays.connectivity, {}), nodesPerCell)
      , mesh(arrays.coordinates, {shape, cells.connectivity})
      , set("f", binding, binding == DataBinding::PER_NODE ? arrays.values : averageToCells())
      , plainMesh(mesh)
      , plainSet(set)
      , grid(makeGrid(arrays, cells, vtkType)) {
    setValues(*grid, arrays.values, binding);
  }
  KbMeshMaker::Arrays arrays;
  Cells cells;
  KbVolumeMeshUnstructured mesh;
  KbScalarSetI set;
  PlainVolumeMesh plainMesh;
  PlainScalarSetI plainSet;
  vtkNew<vtkUnstructuredGrid> grid;

private:
  /// Puts a value for each cell into the place of those at the nodes.
  const std::vector<float>& averageToCells() {
    std::vector<float> means;
    for (std::size_t c = 0; c + 1 < cells.offsets.size(); ++c) {
      double sum = 0.0;
      for (std::int64_t n = cells.offsets[c]; n < cells.offsets[c + 1]; ++n)
        sum += static_cast<double>(
            arrays.values[static_cast<std::size_t>(cells.connectivity[static_cast<std::size_t>(n)])]);
      means.push_back(static_cast<float>(sum / static_cast<double>(cells.offsets[c + 1] - cells.offsets[c])));
    }
    arrays.values = std::move(means);
    return arrays.values;
  }
};

/// Over the warped lattice.
struct HexahedraInput : CellsInput {
  explicit HexahedraInput(std::size_t numCells, DataBinding binding = DataBinding::PER_NODE)
      : CellsInput(KbMeshMaker::hexahedra({numCells, numCells, numCells}, warp), KiVolumeCell::HEXAHEDRON, 8,
                   VTK_HEXAHEDRON, binding) {}
};
struct HexahedraCellValuesInput : HexahedraInput {
  explicit HexahedraCellValuesInput(std::size_t numCells)
      : HexahedraInput(numCells, DataBinding::PER_CELL) {}
};
struct TetrahedraInput : CellsInput {
  explicit TetrahedraInput(std::size_t numCells)
      : CellsInput(KbMeshMaker::tetrahedra({numCells, numCells, numCells}, warp), KiVolumeCell::TETRAHEDRON, 4,
                   VTK_TETRA) {}
};

} // namespace peer
