// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryHexahedronIjk.h>
#include <KerrinMesh/KbForm.h>
#include <KerrinMesh/KbGeometryState.h>
#include <KerrinMesh/KbStampedCache.h>

/// Corner-point cells: each corner lies on one of the four pillars around its cell, at a z of its own.
///
/// A corner's x and y are interpolated on its pillar in the same way for every cell, so that corners of neighbours with
/// the same z are equal bit for bit.
class KERRIN_MESH_API KbGeometryHexahedronIjk final : public KiGeometryHexahedronIjk, public KbGeometryState {
public:
  explicit KbGeometryHexahedronIjk(const char* owner)
      : KbGeometryState(owner) {}

  std::size_t getTimeStamp() const override { return m_stamp; }
  KbVec3<double> getMin() const override { return box().min; }
  KbVec3<double> getMax() const override { return box().max; }
  void getCellCorners(std::size_t i, std::size_t j, std::size_t k, KbVec3<double> corners[8]) const override;

  /// Takes the arrays if their sizes suit the numbers of cells; otherwise there are no cells, and a message is posted.
  /// - `coord`: for each pillar, i fastest, x y z of its two ends: 6 (nI + 1) (nJ + 1) numbers;
  /// - `zcorn`: z of the corners, two along each axis for each cell, i fastest: 8 nI nJ nK numbers.
  bool setPillars(const KbIndex<3>& counts, const KbArray& coord, const KbArray& zcorn);

private:
  KbVec3<double> pointOnPillar(std::size_t pillar, double z) const;
  Box box() const;

  KbIndex<3> m_counts{};
  KbArray m_coord;
  KbArray m_zcorn;
  KbStampedCache<Box> m_box;
};
