// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbMatrix.h>

#include "GlmConversion.h"

#include <glm/matrix.hpp>

#include <algorithm>
#include <cmath>

NbMatrix::NbMatrix()
    : m_values{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}} {}

NbMatrix::NbMatrix(const float* values) { std::copy(values, values + 16, &m_values[0][0]); }

NbMatrix NbMatrix::translation(const NbVec3f& offset) {
  NbMatrix result;
  for (int i = 0; i < 3; ++i)
    result[3][i] = offset[i];
  return result;
}

NbMatrix NbMatrix::scaling(const NbVec3f& factors) {
  NbMatrix result;
  for (int i = 0; i < 3; ++i)
    result[i][i] = factors[i];
  return result;
}

NbMatrix NbMatrix::rotation(const NbRotation& rotation) {
  return nb::fromGlm(glm::mat4_cast(nb::toGlmQuaternion(rotation.getValue())));
}

void NbMatrix::setTransform(const NbVec3f& translationVector, const NbRotation& rotationValue,
                            const NbVec3f& scaleFactor, const NbRotation& scaleOrientation, const NbVec3f& center) {
  *this = translation(-center) * rotation(scaleOrientation.inverse()) * scaling(scaleFactor) *
          rotation(scaleOrientation) * rotation(rotationValue) * translation(center) * translation(translationVector);
}

NbMatrix& NbMatrix::multRight(const NbMatrix& m) { return *this = nb::fromGlm(nb::toGlm(m) * nb::toGlm(*this)); }

NbMatrix& NbMatrix::multLeft(const NbMatrix& m) { return *this = nb::fromGlm(nb::toGlm(*this) * nb::toGlm(m)); }

NbVec4f NbMatrix::multVecMatrix(const NbVec4f& v) const {
  NbVec4f result;
  for (int column = 0; column < 4; ++column)
    for (int row = 0; row < 4; ++row)
      result[column] += v[row] * m_values[row][column];
  return result;
}

NbVec3f NbMatrix::multVecMatrix(const NbVec3f& point) const {
  const NbVec4f v = multVecMatrix(NbVec4f(point[0], point[1], point[2], 1.f));
  const NbVec3f result(v[0], v[1], v[2]);
  const bool isDivisor = std::abs(v[3]) > 0.f && std::abs(v[3] - 1.f) > 0.f;
  return isDivisor ? result / v[3] : result;
}

NbVec3f NbMatrix::multDirMatrix(const NbVec3f& direction) const {
  const NbVec4f v = multVecMatrix(NbVec4f(direction[0], direction[1], direction[2], 0.f));
  return {v[0], v[1], v[2]};
}

float NbMatrix::det4() const { return glm::determinant(nb::toGlm(*this)); }

NbMatrix NbMatrix::inverse() const {
  const float determinant = det4();
  return std::abs(determinant) > 0.f ? nb::fromGlm(glm::inverse(nb::toGlm(*this))) : NbMatrix();
}

NbMatrix NbMatrix::transpose() const { return nb::fromGlm(glm::transpose(nb::toGlm(*this))); }

bool operator==(const NbMatrix& a, const NbMatrix& b) {
  return std::equal(a.getValue(), a.getValue() + 16, b.getValue());
}

bool NbMatrix::equals(const NbMatrix& other, float tolerance) const {
  return std::equal(getValue(), getValue() + 16, other.getValue(),
                    [tolerance](float a, float b) { return std::abs(a - b) <= tolerance; });
}
