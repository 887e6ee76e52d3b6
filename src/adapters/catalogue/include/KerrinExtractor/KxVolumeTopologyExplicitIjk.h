// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiTopologyIjk.h>
#include <KerrinExtractor/KiVolumeTopologyExplicitI.h>

/// What the views of structured volume topologies as explicit hexahedra share; i is the fastest index. The source must
/// outlive them.
class KERRIN_EXTRACTOR_API KxVolumeTopologyExplicitIjk : public KiVolumeTopologyExplicitI {
public:
  /// Reads the source's numbers of cells again.
  void update();

  std::size_t getTimeStamp() const override { return m_source.getTimeStamp(); }
  bool hasDeadCells() const override { return m_source.hasDeadCells(); }
  std::size_t getNumCells() const override { return m_numI * m_numJ * m_numK; }
  bool isDead(std::size_t cell) const override;
  const KiVolumeCell* getCell(std::size_t cell) const override;
  /// The same by (i, j, k).
  const KiVolumeCell* getCell(std::size_t i, std::size_t j, std::size_t k) const;

protected:
  explicit KxVolumeTopologyExplicitIjk(const KiTopologyIjk& source);
  virtual void getNodes(std::size_t i, std::size_t j, std::size_t k, std::size_t nodeIds[8]) const = 0;

  std::size_t m_numI = 0; ///< cells along each axis
  std::size_t m_numJ = 0;
  std::size_t m_numK = 0;

private:
  const KiTopologyIjk& m_source;
};
