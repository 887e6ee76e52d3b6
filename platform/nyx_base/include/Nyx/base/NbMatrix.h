// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbRotation.h>
#include <Nyx/base/NbVec3f.h>
#include <Nyx/base/NbVec4f.h>
#include <Nyx/base/NyxBaseExport.h>

/// A 4x4 float matrix in the row-vector convention: a point p is transformed to p * M, the translation stands in the
/// last row, and in A * B the matrix A acts first. matrix[row][column]; the 16 floats lie row after row, which is what
/// OpenGL takes as a column-major matrix of column vectors, so getValue() can be handed to it as it is.
class NYX_BASE_API NbMatrix {
public:
  /// The identity.
  NbMatrix();
  /// Sixteen floats, row after row.
  explicit NbMatrix(const float* values);

  static NbMatrix identity() { return NbMatrix(); }
  static NbMatrix translation(const NbVec3f& offset);
  static NbMatrix scaling(const NbVec3f& factors);
  static NbMatrix rotation(const NbRotation& rotation);

  float* operator[](int row) { return m_values[row]; }
  const float* operator[](int row) const { return m_values[row]; }
  const float* getValue() const { return &m_values[0][0]; }

  void makeIdentity() { *this = NbMatrix(); }
  bool isIdentity() const { return *this == NbMatrix(); }

  /// Scale (along axes turned by `scaleOrientation`), then rotation, both about `center`, then translation.
  void setTransform(const NbVec3f& translation, const NbRotation& rotation, const NbVec3f& scaleFactor,
                    const NbRotation& scaleOrientation = NbRotation(), const NbVec3f& center = NbVec3f());

  /// this = this * m: `m` acts after this matrix.
  NbMatrix& multRight(const NbMatrix& m);
  /// this = m * this: `m` acts before this matrix.
  NbMatrix& multLeft(const NbMatrix& m);
  friend NbMatrix operator*(NbMatrix a, const NbMatrix& b) { return a.multRight(b); }

  /// A point, with the division by the fourth component when that is neither 0 nor 1.
  NbVec3f multVecMatrix(const NbVec3f& point) const;
  NbVec4f multVecMatrix(const NbVec4f& v) const;
  /// A direction: the translation is left out and nothing is divided.
  NbVec3f multDirMatrix(const NbVec3f& direction) const;

  float det4() const;
  /// The inverse; the identity for a matrix that has none.
  NbMatrix inverse() const;
  NbMatrix transpose() const;

  friend NYX_BASE_API bool operator==(const NbMatrix& a, const NbMatrix& b);
  friend bool operator!=(const NbMatrix& a, const NbMatrix& b) { return !(a == b); }
  bool equals(const NbMatrix& other, float tolerance) const;

private:
  float m_values[4][4];
};
