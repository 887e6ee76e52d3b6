// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiGeometryRegular.h>
#include <KerrinMesh/KbGeometryState.h>

/// Nodes at equal steps between two corners.
class KERRIN_MESH_API KbGeometryRegular final : public KiGeometryRegular, public KbGeometryState {
public:
  explicit KbGeometryRegular(const char* owner)
      : KbGeometryState(owner) {}

  std::size_t getTimeStamp() const override { return m_stamp; }
  KbVec3<double> getMin() const override { return m_min; }
  KbVec3<double> getMax() const override { return m_max; }

  /// Takes the corners if all their coordinates are finite and, for a `flat` mesh, their z is the same.
  bool setBox(const KbVec3<double>& min, const KbVec3<double>& max, bool flat);

private:
  KbVec3<double> m_min;
  KbVec3<double> m_max;
};
