// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellViews.h"
#include "InputView.h"

#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

#include <vector>

namespace kx {

/// A volume mesh of any kind, as the algorithms read it during one extraction.
class MeshView : public InputView<KiTopologyIjk, KiCellFilterIjk> {
public:
  explicit MeshView(const KiVolumeMeshUnstructured& mesh);
  explicit MeshView(const KiVolumeMeshHexahedronIjk& mesh);
  explicit MeshView(const KiVolumeMeshVertexHexahedronIjk& mesh);
  explicit MeshView(const KiVolumeMeshRegular& mesh);
  explicit MeshView(const KiVolumeMeshRectilinear& mesh);
  explicit MeshView(const KiVolumeMeshCurvilinear& mesh);

  CellView cells;
  bool hasGridNodes = false; ///< nodes are addressed by (i, j, k)
  unsigned slotBits = 0;     ///< low bits of a node's id that are not part of its number
  std::size_t topologyStamp = 0;
  std::size_t geometryStamp = 0;

  /// The faces of a polyhedron by local node numbers, and its node ids; false when they cannot be read.
  bool loadPolyhedron(std::size_t cell, std::vector<std::vector<std::size_t>>& faces,
                      std::vector<std::size_t>& nodes) const;

private:
  template <class Mesh>
  void readStamps(const Mesh& mesh);
  void readGridWithNodes(const KiTopologyIjk& topology);

  const KiVolumeTopologyExplicitI* m_explicit = nullptr; ///< of unstructured meshes
};

} // namespace kx
