// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiSurfaceGeometryRectilinear.h>
#include <KerrinMesh/KbForm.h>
#include <KerrinMesh/KbGeometryState.h>
#include <KerrinMesh/KbStampedCache.h>

/// Nodes in the plane z = distance over the caller's positions along x and y.
class KERRIN_MESH_API KbSurfaceGeometryRectilinear final : public KiSurfaceGeometryRectilinear, public KbGeometryState {
public:
  explicit KbSurfaceGeometryRectilinear(const char* owner)
      : KbGeometryState(owner) {}

  std::size_t getTimeStamp() const override { return m_stamp; }
  KbVec3<double> getMin() const override { return box().min; }
  KbVec3<double> getMax() const override { return box().max; }
  double getX(std::size_t i) const override { return m_x.value(i); }
  double getY(std::size_t j) const override { return m_y.value(j); }
  double getDistance() const override { return m_distance; }

  /// Takes float or double positions, at least one an axis; otherwise there are no nodes, and a message is posted.
  bool setAxes(const KbArray& x, const KbArray& y, double distance);
  /// The number of cells along each axis: one less than positions.
  KbIndex<2> getNumCells() const;

private:
  Box box() const;

  KbArray m_x;
  KbArray m_y;
  double m_distance = 0.0;
  KbStampedCache<Box> m_box;
};
