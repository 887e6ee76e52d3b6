// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PointView.h"

#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>

#include <array>
#include <cstddef>
#include <vector>

namespace kx {

/// A surface mesh of any kind by flat indices of cells and nodes (i fastest).
class SurfaceCells {
public:
  explicit SurfaceCells(const KiSurfaceMeshUnstructured& mesh);
  explicit SurfaceCells(const KiSurfaceMeshRegular& mesh);
  explicit SurfaceCells(const KiSurfaceMeshRectilinear& mesh);
  explicit SurfaceCells(const KiSurfaceMeshCurvilinear& mesh);

  std::size_t numCells = 0;
  bool isStructured = false;
  Dims cellDims; ///< structured kinds; k is 1
  Dims nodeDims;
  std::size_t beginNode = 0;
  std::size_t endNode = 0;

  void setFilter(const KiCellFilterI* filter) { m_filterI = filter; }
  void setFilter(const KiCellFilterIj* filter) { m_filterIj = filter; }
  bool isOpen(std::size_t cell) const;
  /// The nodes of a cell and its shape; false for a cell that is missing or has less than three nodes.
  bool load(std::size_t cell, std::vector<std::size_t>& nodes, KiSurfaceCell::Shape& shape) const;
  KbVec3<double> point(std::size_t node) const;

private:
  void setStructured(const KiTopologyIj& topology);
  /// The plane of regular and rectilinear meshes: the plane z = 0 turned so that z becomes the normal, then moved.
  void setPlane(const KbVec3<double>& normal, double distance);

  const KiSurfaceTopologyExplicitI* m_topologyI = nullptr;
  const KiTopologyIj* m_topologyIj = nullptr;
  const KiGeometryI* m_geometryI = nullptr;
  const KiGeometryIj* m_geometryIj = nullptr;
  std::array<std::vector<double>, 2> m_axes;
  std::array<KbVec3<double>, 2> m_directions;
  KbVec3<double> m_origin;
  bool m_hasDeadCells = false;
  const KiCellFilterI* m_filterI = nullptr;
  const KiCellFilterIj* m_filterIj = nullptr;
};

} // namespace kx
