// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>

#include <vtkCellArray.h>
#include <vtkPolyData.h>

#include <cstddef>
#include <cstdint>
#include <memory>

/// Areas and lengths of both sides' outputs, in double from the output's coordinates, and what memory is told by.
namespace peer {

/// Area of polygons, each as the fan of triangles around its first corner. (The sum of cross products is exact for flat
/// ones only; the polygons of a hexahedron are not flat, and it would count the area of their shadows.)
class AreaSum {
public:
  void addCorner(const KbVec3<double>& p) {
    if (m_count == 0)
      m_first = p;
    else
      m_area += 0.5 * (m_last - m_first).cross(p - m_first).length();
    m_last = p;
    ++m_count;
  }
  void endPolygon() { m_count = 0; }
  double area() const { return m_area; }

private:
  double m_area = 0.0;
  std::size_t m_count = 0;
  KbVec3<double> m_first, m_last;
};

inline double areaOf(const KeXSurfaceMeshUnstructured& mesh) {
  const KiBuffer& indices = *mesh.getTopology().getIndexBuffer();
  const auto* index = static_cast<const std::int32_t*>(indices.getData());
  const auto* vertex = static_cast<const KbVec3<float>*>(mesh.getGeometry().getVertexBuffer()->getData());
  AreaSum sum;
  for (std::size_t n = 0; n < indices.getByteSize() / sizeof(std::int32_t); ++n)
    if (index[n] >= 0)
      sum.addCorner(KbVec3<double>(vertex[index[n]]));
    else
      sum.endPolygon();
  return sum.area();
}

inline double areaOf(vtkPolyData& mesh) {
  AreaSum sum;
  for (vtkCellArray* cells : {mesh.GetPolys(), mesh.GetStrips()}) {
    vtkIdType size = 0;
    const vtkIdType* ids = nullptr;
    for (cells->InitTraversal(); cells->GetNextCell(size, ids) != 0;) {
      for (vtkIdType n = 0; n < size; ++n) {
        double p[3];
        mesh.GetPoint(ids[n], p);
        sum.addCorner({p[0], p[1], p[2]});
      }
      sum.endPolygon();
    }
  }
  return sum.area();
}

inline double lengthOf(const KeXLineMeshUnstructured& mesh) {
  const KiBuffer& indices = *mesh.getTopology().getIndexBuffer();
  const auto* index = static_cast<const std::int32_t*>(indices.getData());
  const auto* vertex = static_cast<const KbVec3<float>*>(mesh.getGeometry().getVertexBuffer()->getData());
  double sum = 0.0;
  for (std::size_t n = 1; n < indices.getByteSize() / sizeof(std::int32_t); ++n)
    if (index[n] >= 0 && index[n - 1] >= 0)
      sum += (KbVec3<double>(vertex[index[n]]) - KbVec3<double>(vertex[index[n - 1]])).length();
  return sum;
}

/// The segments that join the points of one line.
inline double lengthOf(vtkPolyData& mesh, vtkIdType size, const vtkIdType* ids) {
  double sum = 0.0;
  for (vtkIdType n = 0; n + 1 < size; ++n) {
    KbVec3<double> a;
    KbVec3<double> b;
    mesh.GetPoint(ids[n], &a[0]);
    mesh.GetPoint(ids[n + 1], &b[0]);
    sum += (b - a).length();
  }
  return sum;
}

inline double lengthOf(vtkPolyData& mesh) {
  double sum = 0.0;
  vtkIdType size = 0;
  const vtkIdType* ids = nullptr;
  for (mesh.GetLines()->InitTraversal(); mesh.GetLines()->GetNextCell(size, ids) != 0;)
    sum += lengthOf(mesh, size, ids);
  return sum;
}

inline std::shared_ptr<void> copyOf(const KeXSurfaceMeshUnstructured& mesh) {
  return std::shared_ptr<KeXSurfaceMeshUnstructured>(mesh.getNewClone());
}

/// With a set's values on it.
inline std::shared_ptr<void> copyOf(const KeXSurfaceMeshUnstructured& mesh, const KeXDataSetI<double>& set) {
  using Clones = std::pair<std::unique_ptr<KeXSurfaceMeshUnstructured>, std::unique_ptr<KeXDataSetI<double>>>;
  const auto clones = std::make_shared<Clones>();
  clones->first.reset(mesh.getNewClone());
  clones->second.reset(set.getNewClone());
  return clones;
}

/// Cells of an input mesh of any volume kind.
template <class Mesh>
std::size_t numCellsOf(const Mesh& mesh) {
  const auto& cells = mesh.getTopology();
  if constexpr (requires { cells.getNumCellsK(); })
    return cells.getNumCellsI() * cells.getNumCellsJ() * cells.getNumCellsK();
  else
    return cells.getNumCells();
}

} // namespace peer
