// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceCell.h>

/// The cell (i, j) of a structured surface with node ids i + numNodesI * j.
class KERRIN_EXTRACTOR_API KxQuadrangleCellImplicitIj : public KiSurfaceCell {
public:
  KxQuadrangleCellImplicitIj();
  ~KxQuadrangleCellImplicitIj() override;
  void set(std::size_t i, std::size_t j, std::size_t numNodesI);
  std::size_t getNumNodes() const override { return 4; }
  std::size_t getNodeIndex(std::size_t localIndex) const override;

private:
  std::size_t m_first = 0;
  std::size_t m_numNodesI = 0;
};
