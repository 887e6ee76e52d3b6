// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KxVolumeTopologyExplicitIjk.h>

/// A structured volume topology as one of explicit hexahedra; node (i, j, k) has the id i + nI (j + nJ k), where nI and
/// nJ count nodes.
class KERRIN_EXTRACTOR_API KxVolumeTopologyExplicitIFromIjk : public KxVolumeTopologyExplicitIjk {
public:
  explicit KxVolumeTopologyExplicitIFromIjk(const KiTopologyIjk& source);
  std::size_t getEndNodeId() const override { return (m_numI + 1) * (m_numJ + 1) * (m_numK + 1); }

protected:
  void getNodes(std::size_t i, std::size_t j, std::size_t k, std::size_t nodeIds[8]) const override;
};
