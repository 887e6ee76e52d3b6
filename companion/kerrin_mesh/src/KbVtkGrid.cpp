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
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkMatrix3x3.h>
#include <vtkPoints.h>
#include <vtkRectilinearGrid.h>
#include <vtkSmartPointer.h>
#include <vtkStructuredGrid.h>

#include <limits>

namespace {

using Content = KbMeshFile::Content;
/// Numbers of nodes along the axes.
using Dimensions = std::array<int, 3>;

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

KbArray pointsOf(vtkDataSet& data, Content& content) {
  if (auto* grid = vtkStructuredGrid::SafeDownCast(&data)) return kx::numbersOf(*grid->GetPoints()->GetData(), content);
  std::vector<double> points(3 * static_cast<std::size_t>(data.GetNumberOfPoints()));
  for (std::size_t p = 0; p < points.size() / 3; ++p)
    data.GetPoint(static_cast<vtkIdType>(p), &points[3 * p]);
  return content.keep(std::move(points));
}

/// Whether the points of an image, which the file doesn't have, would take too much memory: more than four GiB and far
/// more than all that it has.
bool hasTooManyPoints(vtkDataSet& data) {
  if (!vtkImageData::SafeDownCast(&data)) return false;
  const double bytes = 24.0 * static_cast<double>(data.GetNumberOfPoints());
  return bytes > 4.0 * (1 << 30) && bytes > 32.0 * 1024.0 * static_cast<double>(data.GetActualMemorySize());
}

template <std::size_t N>
bool makeCurvilinear(vtkDataSet& data, const Grid<N>& grid, Content& content) {
  if (hasTooManyPoints(data)) {
    content.error = "has too little data for " + std::to_string(data.GetNumberOfPoints()) + " points";
    return false;
  }
  const KbArray points = pointsOf(data, content);
  if constexpr (N == 3) return content.makeMesh<KbVolumeMeshCurvilinear>(5, grid.numCells, points, grid.dead);
  if constexpr (N == 2) return content.makeMesh<KbSurfaceMeshCurvilinear>(9, grid.numCells, points, grid.dead);
  if constexpr (N == 1) return content.makeMesh<KbLineMeshCurvilinear>(12, grid.numCells, points, grid.dead);
}

template <std::size_t N>
bool makeRegular(vtkImageData& image, const Grid<N>& grid, Content& content) {
  KbVec3<double> min;
  KbVec3<double> max;
  image.GetPoint(0, &min[0]);
  image.GetPoint(image.GetNumberOfPoints() - 1, &max[0]);
  if constexpr (N == 3) return content.makeMesh<KbVolumeMeshRegular>(3, grid.numCells, min, max, grid.dead);
  if constexpr (N == 2) return content.makeMesh<KbSurfaceMeshRegular>(7, grid.numCells, min, max, grid.dead);
  if constexpr (N == 1) return content.makeMesh<KbLineMeshRegular>(11, grid.numCells, min, max, grid.dead);
}

template <std::size_t N>
bool makeRectilinear(vtkRectilinearGrid& data, const Grid<N>& grid, Content& content) {
  const KbArray x = kx::numbersOf(*data.GetXCoordinates(), content);
  const KbArray y = kx::numbersOf(*data.GetYCoordinates(), content);
  const KbArray z = kx::numbersOf(*data.GetZCoordinates(), content);
  if constexpr (N == 3) return content.makeMesh<KbVolumeMeshRectilinear>(4, x, y, z, grid.dead);
  if constexpr (N == 2) return content.makeMesh<KbSurfaceMeshRectilinear>(8, x, y, z.value(0), grid.dead);
  if constexpr (N == 1) return makeCurvilinear(data, grid, content);
}

template <std::size_t N>
bool makeMesh(vtkDataSet& data, const Grid<N>& grid, Content& content) {
  auto* image = vtkImageData::SafeDownCast(&data);
  auto* rectilinear = vtkRectilinearGrid::SafeDownCast(&data);
  if (image && grid.isUpright() && image->GetDirectionMatrix()->IsIdentity()) return makeRegular(*image, grid, content);
  if (rectilinear && grid.isUpright()) return makeRectilinear(*rectilinear, grid, content);
  return makeCurvilinear(data, grid, content);
}

template <std::size_t N>
void convert(vtkDataSet& data, const std::vector<int>& axes, const Dimensions& dims, Content& content) {
  Grid<N> grid;
  for (std::size_t n = 0; n < N; ++n) {
    const auto axis = static_cast<std::size_t>(axes[n]);
    grid.axes[n] = axes[n];
    grid.numNodes[n] = static_cast<std::size_t>(dims[axis]);
    grid.numCells[n] = grid.numNodes[n] - 1;
  }
  const auto addNodes = [&data, ids = vtkSmartPointer<vtkIdList>::New()](std::size_t cell,
                                                                         std::vector<std::int64_t>& nodes) {
    data.GetCellPoints(static_cast<vtkIdType>(cell), ids);
    nodes.assign(ids->begin(), ids->end());
  };
  if (std::vector<std::uint8_t> dead = kx::deadCellsOf(data, addNodes, content); !dead.empty())
    grid.dead = content.keep(std::move(dead));
  if (!makeMesh(data, grid, content)) return;
  content.setDeadCount(grid.dead);
  kx::addSets(data, grid.numNodes, grid.numCells, {}, content);
}

std::string inWords(const Dimensions& dims) {
  return std::to_string(dims[0]) + " x " + std::to_string(dims[1]) + " x " + std::to_string(dims[2]);
}

/// Why there are not the nodes that the dimensions promise; empty when all are there.
std::string findFault(vtkDataSet& data, const Dimensions& dims) {
  const KbIndex<3> numNodes{static_cast<std::size_t>(dims[0]), static_cast<std::size_t>(dims[1]),
                            static_cast<std::size_t>(dims[2])};
  if (KbProduct(numNodes) > static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max()))
    return "has too many nodes to be numbered: " + inWords(dims);
  if (auto* structured = vtkStructuredGrid::SafeDownCast(&data)) {
    const vtkIdType size = structured->GetPoints() ? structured->GetPoints()->GetNumberOfPoints() : 0;
    if (static_cast<std::size_t>(size) != KbProduct(numNodes))
      return "has " + std::to_string(size) + " points and the dimensions " + inWords(dims);
  }
  if (auto* rectilinear = vtkRectilinearGrid::SafeDownCast(&data)) {
    vtkDataArray* const positions[3] = {rectilinear->GetXCoordinates(), rectilinear->GetYCoordinates(),
                                        rectilinear->GetZCoordinates()};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const vtkIdType size = positions[axis] ? positions[axis]->GetNumberOfValues() : 0;
      if (size != dims[axis])
        return "has " + std::to_string(size) + " positions along " + "xyz"[axis] + " and the dimensions " +
               inWords(dims);
    }
  }
  return {};
}

} // namespace

void kx::convertGrid(vtkDataSet& data, Content& content) {
  Dimensions dims{};
  if (auto* image = vtkImageData::SafeDownCast(&data)) image->GetDimensions(dims.data());
  if (auto* rectilinear = vtkRectilinearGrid::SafeDownCast(&data)) rectilinear->GetDimensions(dims.data());
  if (auto* structured = vtkStructuredGrid::SafeDownCast(&data)) structured->GetDimensions(dims.data());
  std::vector<int> axes;
  for (int axis = 0; axis < 3; ++axis) {
    const int numNodes = dims[static_cast<std::size_t>(axis)];
    if (numNodes < 1) return; // no cells
    if (numNodes > 1) axes.push_back(axis);
  }
  content.error = findFault(data, dims);
  if (!content.error.empty()) return;
  if (axes.size() == 3) convert<3>(data, axes, dims, content);
  if (axes.size() == 2) convert<2>(data, axes, dims, content);
  if (axes.size() == 1) convert<1>(data, axes, dims, content);
}
