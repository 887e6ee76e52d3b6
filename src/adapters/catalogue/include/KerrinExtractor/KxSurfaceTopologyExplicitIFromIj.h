// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceTopologyExplicitI.h>
#include <KerrinExtractor/KiTopologyIj.h>

/// A structured surface topology as one of explicit quadrangles, i fastest. The source must outlive it.
class KERRIN_EXTRACTOR_API KxSurfaceTopologyExplicitIFromIj : public KiSurfaceTopologyExplicitI {
public:
  explicit KxSurfaceTopologyExplicitIFromIj(const KiTopologyIj& source);
  /// Reads the source's numbers of cells again.
  void update();

  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  bool hasDeadCells() const override { return m_source.hasDeadCells(); }
  std::size_t getNumCells() const override { return m_numCellsI * m_numCellsJ; }
  bool isDead(std::size_t cell) const override;
  std::size_t getEndNodeId() const override { return (m_numCellsI + 1) * (m_numCellsJ + 1); }
  const KiSurfaceCell* getCell(std::size_t cell) const override;
  /// The same by (i, j).
  const KiSurfaceCell* getCell(std::size_t i, std::size_t j) const;

private:
  const KiTopologyIj& m_source;
  std::size_t m_numCellsI = 0;
  std::size_t m_numCellsJ = 0;
};
