// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiHexahedronTopologyExplicitIjk.h>
#include <KerrinExtractor/KxVolumeTopologyExplicitIjk.h>

/// Hexahedra addressed by (i, j, k) as a topology of the form I, with the node ids of the source.
class KERRIN_EXTRACTOR_API KxVolumeTopologyExplicitIFromHexaIjk : public KxVolumeTopologyExplicitIjk {
public:
  explicit KxVolumeTopologyExplicitIFromHexaIjk(const KiHexahedronTopologyExplicitIjk& source);
  std::size_t getBeginNodeId() const override { return m_hexahedra.getBeginNodeId(); }
  std::size_t getEndNodeId() const override { return m_hexahedra.getEndNodeId(); }

protected:
  void getNodes(std::size_t i, std::size_t j, std::size_t k, std::size_t nodeIds[8]) const override;

private:
  const KiHexahedronTopologyExplicitIjk& m_hexahedra;
};
