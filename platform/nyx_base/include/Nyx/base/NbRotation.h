// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbVec3f.h>
#include <Nyx/base/NbVec4f.h>
#include <Nyx/base/NyxBaseExport.h>

class NbMatrix;

/// A rotation, kept as a unit quaternion (x, y, z, w). The default turns nothing.
class NYX_BASE_API NbRotation {
public:
  constexpr NbRotation()
      : m_quaternion(0.f, 0.f, 0.f, 1.f) {}
  /// From an axis of any length and an angle in radians, counterclockwise when looking against the axis.
  NbRotation(const NbVec3f& axis, float radians);
  /// From quaternion components, normalised here; a null quaternion gives the identity.
  NbRotation(float x, float y, float z, float w);
  /// The shortest rotation that turns `from` into the direction of `to`; neither needs length 1.
  NbRotation(const NbVec3f& from, const NbVec3f& to);
  /// The rotation part of a matrix without scale.
  explicit NbRotation(const NbMatrix& matrix);

  static NbRotation identity() { return NbRotation(); }

  const NbVec4f& getValue() const { return m_quaternion; }
  void getValue(NbVec3f& axis, float& radians) const;
  void getValue(NbMatrix& matrix) const;

  NbRotation inverse() const;
  NbVec3f multVec(const NbVec3f& v) const;

  /// Appends a rotation: the result turns by this one first, then by `second`.
  NbRotation& operator*=(const NbRotation& second);
  friend NbRotation operator*(NbRotation first, const NbRotation& second) { return first *= second; }

  friend bool operator==(const NbRotation& a, const NbRotation& b) { return a.m_quaternion == b.m_quaternion; }
  friend bool operator!=(const NbRotation& a, const NbRotation& b) { return !(a == b); }
  /// True when both turn alike within `tolerance` per quaternion component; q and -q are the same rotation.
  bool equals(const NbRotation& other, float tolerance) const;

  /// Between `a` (t = 0) and `b` (t = 1) along the shorter great arc.
  static NbRotation slerp(const NbRotation& a, const NbRotation& b, float t);

private:
  NbVec4f m_quaternion;
};
