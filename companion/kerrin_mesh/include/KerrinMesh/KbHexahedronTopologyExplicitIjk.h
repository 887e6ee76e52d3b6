// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinMesh/KbGridTopology.h>

/// Hexahedra addressed by (i, j, k) over eight node indices a cell, cells with i fastest.
class KERRIN_MESH_API KbHexahedronTopologyExplicitIjk final
    : public KbGridTopologyIjk<KiHexahedronTopologyExplicitIjk> {
public:
  using KbGridTopologyIjk::KbGridTopologyIjk;

  void getCellNodeIds(std::size_t i, std::size_t j, std::size_t k, std::size_t nodeIds[8]) const override;
  std::size_t getEndNodeId() const override { return m_numNodes; }
  KiRawArray getRawArray(Role role) const override;

  /// Takes the cells if `connectivity` has eight indices below `numNodes` for each; otherwise there are no cells, and a
  /// message is posted.
  bool setCells(const KbIndex<3>& counts, const KbArray& connectivity, std::size_t numNodes);
  void touch();
  void clear();

private:
  KbArray m_connectivity;
  std::size_t m_numNodes = 0;
};
