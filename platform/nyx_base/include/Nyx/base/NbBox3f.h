// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3f.h>
#include <Nyx/base/NyxBaseExport.h>

class NbMatrix;

/// An axis-aligned box. The default is empty: its minimum is above its maximum, and extending it by a point gives
/// that point.
class NYX_BASE_API NbBox3f {
public:
  NbBox3f() { makeEmpty(); }
  NbBox3f(const NbVec3f& minimum, const NbVec3f& maximum)
      : m_min(minimum)
      , m_max(maximum) {}
  NbBox3f(float xmin, float ymin, float zmin, float xmax, float ymax, float zmax)
      : m_min(xmin, ymin, zmin)
      , m_max(xmax, ymax, zmax) {}

  const NbVec3f& getMin() const { return m_min; }
  const NbVec3f& getMax() const { return m_max; }
  void setBounds(const NbVec3f& minimum, const NbVec3f& maximum) {
    m_min = minimum;
    m_max = maximum;
  }

  void makeEmpty();
  bool isEmpty() const { return m_max[0] < m_min[0] || m_max[1] < m_min[1] || m_max[2] < m_min[2]; }
  bool hasVolume() const { return m_max[0] > m_min[0] && m_max[1] > m_min[1] && m_max[2] > m_min[2]; }

  /// Grows the box to contain a point; a NaN component is passed over.
  void extendBy(const NbVec3f& point);
  /// Grows the box to contain another; an empty one changes nothing.
  void extendBy(const NbBox3f& box);

  bool intersect(const NbVec3f& point) const;
  bool intersect(const NbBox3f& box) const;

  /// The centre; undefined for an empty box.
  NbVec3f getCenter() const { return (m_min + m_max) * 0.5f; }
  /// The edge lengths, all 0 for an empty box.
  NbVec3f getSize() const { return isEmpty() ? NbVec3f() : m_max - m_min; }
  float getVolume() const;

  /// Replaces the box by the axis-aligned box around its transformed corners. An empty box stays empty.
  void transform(const NbMatrix& matrix);

  friend bool operator==(const NbBox3f& a, const NbBox3f& b) { return a.m_min == b.m_min && a.m_max == b.m_max; }
  friend bool operator!=(const NbBox3f& a, const NbBox3f& b) { return !(a == b); }

private:
  NbVec3f m_min;
  NbVec3f m_max;
};
