// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/MeshType.h>
#include <KerrinExtractor/KiMeshUnstructuredI.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshMaker.h>
#include <KerrinMesh/KbVolumeMeshCurvilinear.h>
#include <KerrinMesh/KbVolumeMeshHexahedronIjk.h>
#include <KerrinMesh/KbVolumeMeshRectilinear.h>
#include <KerrinMesh/KbVolumeMeshRegular.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <array>
#include <memory>
#include <vector>

/// The unit cube as 4 x 4 x 4 cells in each of the six volume mesh kinds, with x as value: the surface of the value v
/// is the square x = v.
class VolumeMeshes {
public:
  static constexpr std::size_t N = 4;

  VolumeMeshes()
      : arrays(KbMeshMaker::hexahedra({N, N, N}, 0.0, [](const KbVec3<double>& p) { return p[0]; })) {
    for (std::size_t i = 0; i <= N; ++i)
      axis.push_back(static_cast<float>(i) / N);
    for (std::size_t j = 0; j <= N; ++j)
      for (std::size_t i = 0; i <= N; ++i)
        coord.insert(coord.end(), {axis[i], axis[j], 0.f, axis[i], axis[j], 1.f});
    for (std::size_t k = 0; k < N; ++k)
      for (std::size_t end = 0; end < 2; ++end)
        zcorn.insert(zcorn.end(), 4 * N * N, axis[k + end]);
    for (std::size_t cell = 0; cell < N * N * N; ++cell)
      cellValues.push_back((static_cast<float>(cell % N) + 0.5f) / N);
    for (float value : arrays.values)
      colorValues.push_back(100.f * value);
    meshes = {std::make_unique<KbVolumeMeshUnstructured>(arrays.coordinates, arrays.cells()),
              std::make_unique<KbVolumeMeshHexahedronIjk>(KbIndex<3>{N, N, N}, arrays.coordinates, arrays.connectivity),
              std::make_unique<KbVolumeMeshVertexHexahedronIjk>(KbIndex<3>{N, N, N}, coord, zcorn),
              std::make_unique<KbVolumeMeshRegular>(KbIndex<3>{N, N, N}, KbVec3<double>(), KbVec3<double>(1, 1, 1)),
              std::make_unique<KbVolumeMeshRectilinear>(axis, axis, axis),
              std::make_unique<KbVolumeMeshCurvilinear>(KbIndex<3>{N, N, N}, arrays.coordinates)};
    nodeSetI = std::make_unique<KbScalarSetI>("x", DataBinding::PER_NODE, arrays.values);
    cellSetI = std::make_unique<KbScalarSetI>("x", DataBinding::PER_CELL, cellValues);
    colorSetI = std::make_unique<KbScalarSetI>("100 x", DataBinding::PER_NODE, colorValues);
    nodeSetIjk =
        std::make_unique<KbScalarSetIjk>("x", DataBinding::PER_NODE, arrays.values, KbIndex<3>{N + 1, N + 1, N + 1});
    cellSetIjk = std::make_unique<KbScalarSetIjk>("x", DataBinding::PER_CELL, cellValues, KbIndex<3>{N, N, N});
  }

  const KiMesh* mesh(MeshType type) const { return meshes[static_cast<std::size_t>(type)].get(); }
  /// The sets in the form that the mesh type takes.
  const KiTypedDataSet<double>* nodeSet(MeshType type) const {
    if (type <= VOLUME_HEXAHEDRON_IJK) return nodeSetI.get();
    return nodeSetIjk.get();
  }
  const KiTypedDataSet<double>* cellSet(MeshType type) const {
    if (type == VOLUME_UNSTRUCTURED) return cellSetI.get();
    return cellSetIjk.get();
  }

  KbMeshMaker::Arrays arrays;
  std::vector<float> axis, coord, zcorn, cellValues, colorValues;
  std::array<std::unique_ptr<KiMesh>, 6> meshes;
  std::unique_ptr<KbScalarSetI> nodeSetI, cellSetI, colorSetI;
  std::unique_ptr<KbScalarSetIjk> nodeSetIjk, cellSetIjk;
};

/// The area of an extracted surface, each polygon as a fan around its first corner.
inline double areaOf(const KiMesh* mesh) {
  const auto* surface = dynamic_cast<const KiMeshUnstructuredI*>(mesh);
  if (!surface) return -1.0;
  double area = 0.0;
  for (std::size_t c = 0; c < surface->getTopology().getNumCells(); ++c) {
    const KiCell* cell = surface->getTopology().getCell(c);
    const auto corner = [&](std::size_t n) { return surface->getGeometry().getCoord(cell->getNodeIndex(n)); };
    for (std::size_t n = 2; n < cell->getNumNodes(); ++n)
      area += 0.5 * (corner(n - 1) - corner(0)).cross(corner(n) - corner(0)).length();
  }
  return area;
}
