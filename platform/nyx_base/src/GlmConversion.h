// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbMatrix.h>
#include <Nyx/base/NbVec3f.h>
#include <Nyx/base/NbVec4f.h>

#include <glm/gtc/quaternion.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>

/// Our matrices act on row vectors and lie row after row, those of glm act on column vectors and lie column after
/// column: the sixteen floats are the same, and a product a * b of ours is b * a of theirs.
namespace nb {

inline glm::mat4 toGlm(const NbMatrix& m) { return glm::make_mat4(m.getValue()); }
inline NbMatrix fromGlm(const glm::mat4& m) { return NbMatrix(glm::value_ptr(m)); }
inline glm::vec3 toGlm(const NbVec3f& v) { return {v[0], v[1], v[2]}; }
inline NbVec3f fromGlm(const glm::vec3& v) { return {v.x, v.y, v.z}; }
inline glm::quat toGlmQuaternion(const NbVec4f& q) { return {q[3], q[0], q[1], q[2]}; }
inline NbVec4f fromGlm(const glm::quat& q) { return {q.x, q.y, q.z, q.w}; }

} // namespace nb
