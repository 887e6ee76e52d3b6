// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiVolumeGeometryRectilinear.h>
#include <KerrinMesh/KbForm.h>
#include <KerrinMesh/KbGeometryState.h>
#include <KerrinMesh/KbStampedCache.h>

/// Nodes over the caller's positions along each axis.
class KERRIN_MESH_API KbVolumeGeometryRectilinear final : public KiVolumeGeometryRectilinear, public KbGeometryState {
public:
  explicit KbVolumeGeometryRectilinear(const char* owner)
      : KbGeometryState(owner) {}

  std::size_t getTimeStamp() const override { return m_stamp; }
  KbVec3<double> getMin() const override { return box().min; }
  KbVec3<double> getMax() const override { return box().max; }
  double getX(std::size_t i) const override { return m_x.value(i); }
  double getY(std::size_t j) const override { return m_y.value(j); }
  double getZ(std::size_t k) const override { return m_z.value(k); }

  /// Takes float or double positions, at least one an axis; otherwise there are no nodes, and a message is posted.
  bool setAxes(const KbArray& x, const KbArray& y, const KbArray& z);
  /// The number of cells along each axis: one less than positions.
  KbIndex<3> getNumCells() const;

private:
  Box box() const;

  KbArray m_x;
  KbArray m_y;
  KbArray m_z;
  KbStampedCache<Box> m_box;
};
