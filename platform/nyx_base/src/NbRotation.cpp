// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbRotation.h>

#include "GlmConversion.h"

#include <cmath>

namespace {

NbVec4f normalized(const glm::quat& q) {
  const float length = glm::length(q);
  return length > 0.f ? nb::fromGlm(q / length) : NbVec4f(0.f, 0.f, 0.f, 1.f);
}

} // namespace

NbRotation::NbRotation(const NbVec3f& axis, float radians)
    : NbRotation() {
  NbVec3f unit = axis;
  if (unit.normalize() > 0.f) m_quaternion = nb::fromGlm(glm::angleAxis(radians, nb::toGlm(unit)));
}

NbRotation::NbRotation(float x, float y, float z, float w)
    : m_quaternion(normalized(glm::quat(w, x, y, z))) {}

NbRotation::NbRotation(const NbVec3f& from, const NbVec3f& to)
    : NbRotation() {
  NbVec3f a = from, b = to;
  if (!(a.normalize() > 0.f) || !(b.normalize() > 0.f)) return;
  const float cosine = a.dot(b);
  if (cosine > -0.999999f) {
    const NbVec3f axis = a.cross(b);
    m_quaternion = normalized(glm::quat(1.f + cosine, axis[0], axis[1], axis[2]));
    return;
  }
  // Opposite directions: half a turn about any axis across them.
  NbVec3f axis = a.cross(NbVec3f(1.f, 0.f, 0.f));
  if (axis.sqrLength() < 1e-6f) axis = a.cross(NbVec3f(0.f, 1.f, 0.f));
  axis.normalize();
  m_quaternion.setValue(axis[0], axis[1], axis[2], 0.f);
}

NbRotation::NbRotation(const NbMatrix& matrix)
    : m_quaternion(normalized(glm::quat_cast(glm::mat3(nb::toGlm(matrix))))) {}

void NbRotation::getValue(NbVec3f& axis, float& radians) const {
  axis.setValue(m_quaternion[0], m_quaternion[1], m_quaternion[2]);
  const float sine = axis.normalize();
  radians = 2.f * std::atan2(sine, m_quaternion[3]);
  if (!(sine > 0.f)) axis.setValue(0.f, 0.f, 1.f);
}

void NbRotation::getValue(NbMatrix& matrix) const { matrix = NbMatrix::rotation(*this); }

NbRotation NbRotation::inverse() const {
  NbRotation result;
  result.m_quaternion = nb::fromGlm(glm::conjugate(nb::toGlmQuaternion(m_quaternion)));
  return result;
}

NbVec3f NbRotation::multVec(const NbVec3f& v) const {
  return nb::fromGlm(nb::toGlmQuaternion(m_quaternion) * nb::toGlm(v));
}

NbRotation& NbRotation::operator*=(const NbRotation& second) {
  m_quaternion = normalized(nb::toGlmQuaternion(second.m_quaternion) * nb::toGlmQuaternion(m_quaternion));
  return *this;
}

bool NbRotation::equals(const NbRotation& other, float tolerance) const {
  return m_quaternion.equals(other.m_quaternion, tolerance) || m_quaternion.equals(-other.m_quaternion, tolerance);
}

NbRotation NbRotation::slerp(const NbRotation& a, const NbRotation& b, float t) {
  NbRotation result;
  result.m_quaternion =
      normalized(glm::slerp(nb::toGlmQuaternion(a.m_quaternion), nb::toGlmQuaternion(b.m_quaternion), t));
  return result;
}
