// SPDX-License-Identifier: BSD-3-Clause
// Structured data of VTK: images, rectilinear and structured grids. An axis with a single node is dropped, so that two
// such axes leave a line and one a surface.
#include "KbVtkArrays.h"

#include <KerrinMesh/KbLineMeshCurvilinear.h>
#include <KerrinMesh/KbLineMeshRegular.h>
#include <KerrinMesh/KbSurfaceMeshCurvilinear.h>
#include <KerrinMesh/KbSurfaceMeshRectilinear.h>
#include <KerrinMesh/KbSurfaceMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>

#include <vtkDataArray.h>
#include <vtkImageData.h>
#include <vtkMatrix3x3.h>
#include <vtkPoints.h>
#include <vtkRectilinearGrid.h>
#include <vtkStructuredGrid.h>

namespace {

using Content = KbMeshFile::Content;

/// The axes that have cells, and what the mesh kinds take.
template <std::size_t N>
struct Grid {
  std::array<int, N> axes{};
  KbIndex<N> numNodes{};
  KbIndex<N> numCells{};
  KbSpan<std::uint8_t> dead;

  /// Whether the grid lies along the first axes, as regular and rectilinear surfaces must.
  bool isUpright() const { return N != 2 || (axes[0] == 0 && axes[N - 1] == 1); }
};

template <std::size_t N>
KbArray pointsOf(vtkDataSet& data, Content& content) {
  if (auto* grid = vtkStructuredGrid::SafeDownCast(&data)) return kx::numbersOf(*grid->GetPoints()->GetData(), content);
  std::vector<double> points(3 * static_cast<std::size_t>(data.GetNumberOfPoints()));
  for (std::size_t p = 0; p < points.size() / 3; ++p)
    data.GetPoint(static_cast<vtkIdType>(p), &points[3 * p]);
  return content.keep(std::move(points));
}

template <std::size_t N>
void makeCurvilinear(vtkDataSet& data, const Grid<N>& grid, Content& content) {
  const KbArray points = pointsOf<N>(data, content);
  if constexpr (N == 3) content.makeMesh<KbVolumeMeshCurvilinear>(5, grid.numCells, points, grid.dead);
  if constexpr (N == 2) content.makeMesh<KbSurfaceMeshCurvilinear>(9, grid.numCells, points, grid.dead);
  if constexpr (N == 1) content.makeMesh<KbLineMeshCurvilinear>(12, grid.numCells, points, grid.dead);
}

template <std::size_t N>
void makeRegular(vtkImageData& image, const Grid<N>& grid, Content& content) {
  KbVec3<double> min;
  KbVec3<double> max;
  image.GetPoint(0, &min[0]);
  image.GetPoint(image.GetNumberOfPoints() - 1, &max[0]);
  if constexpr (N == 3) content.makeMesh<KbVolumeMeshRegular>(3, grid.numCells, min, max, grid.dead);
  if constexpr (N == 2) content.makeMesh<KbSurfaceMeshRegular>(7, grid.numCells, min, max, grid.dead);
  if constexpr (N == 1) content.makeMesh<KbLineMeshRegular>(11, grid.numCells, min, max, grid.dead);
}

template <std::size_t N>
void makeRectilinear(vtkRectilinearGrid& data, const Grid<N>& grid, Content& content) {
  const KbArray x = kx::numbersOf(*data.GetXCoordinates(), content);
  const KbArray y = kx::numbersOf(*data.GetYCoordinates(), content);
  const KbArray z = kx::numbersOf(*data.GetZCoordinates(), content);
  if constexpr (N == 3) content.makeMesh<KbVolumeMeshRectilinear>(4, x, y, z, grid.dead);
  if constexpr (N == 2) content.makeMesh<KbSurfaceMeshRectilinear>(8, x, y, z.value(0), grid.dead);
  if constexpr (N == 1) makeCurvilinear(data, grid, content);
}

template <std::size_t N>
void convert(vtkDataSet& data, const std::vector<int>& axes, const int dims[3], Content& content) {
  Grid<N> grid;
  for (std::size_t n = 0; n < N; ++n) {
    grid.axes[n] = axes[n];
    grid.numNodes[n] = static_cast<std::size_t>(dims[axes[n]]);
    grid.numCells[n] = grid.numNodes[n] - 1;
  }
  if (std::vector<std::uint8_t> dead = kx::deadCellsOf(data); !dead.empty()) grid.dead = content.keep(std::move(dead));

  auto* image = vtkImageData::SafeDownCast(&data);
  auto* rectilinear = vtkRectilinearGrid::SafeDownCast(&data);
  if (image && grid.isUpright() && image->GetDirectionMatrix()->IsIdentity())
    makeRegular(*image, grid, content);
  else if (rectilinear && grid.isUpright())
    makeRectilinear(*rectilinear, grid, content);
  else
    makeCurvilinear(data, grid, content);
  content.numCells = KbProduct(grid.numCells);
  content.numNodes = KbProduct(grid.numNodes);
  content.setDeadCount(grid.dead);
  kx::addSets(data, grid.numNodes, grid.numCells, {}, content);
}

} // namespace

void kx::convertGrid(vtkDataSet& data, Content& content) {
  int dims[3] = {0, 0, 0};
  if (auto* image = vtkImageData::SafeDownCast(&data)) image->GetDimensions(dims);
  if (auto* rectilinear = vtkRectilinearGrid::SafeDownCast(&data)) rectilinear->GetDimensions(dims);
  if (auto* structured = vtkStructuredGrid::SafeDownCast(&data)) structured->GetDimensions(dims);
  std::vector<int> axes;
  for (int axis = 0; axis < 3; ++axis) {
    if (dims[axis] < 1) return; // no cells
    if (dims[axis] > 1) axes.push_back(axis);
  }
  if (axes.size() == 3) convert<3>(data, axes, dims, content);
  if (axes.size() == 2) convert<2>(data, axes, dims, content);
  if (axes.size() == 1) convert<1>(data, axes, dims, content);
}
