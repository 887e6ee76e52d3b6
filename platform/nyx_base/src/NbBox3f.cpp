// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbBox3f.h>

#include <Nyx/base/NbMatrix.h>

#include <limits>

void NbBox3f::makeEmpty() {
  constexpr float highest = std::numeric_limits<float>::max();
  m_min.setValue(highest, highest, highest);
  m_max.setValue(-highest, -highest, -highest);
}

void NbBox3f::extendBy(const NbVec3f& point) {
  for (int i = 0; i < 3; ++i) {
    if (point[i] < m_min[i]) m_min[i] = point[i];
    if (point[i] > m_max[i]) m_max[i] = point[i];
  }
}

void NbBox3f::extendBy(const NbBox3f& box) {
  if (box.isEmpty()) return;
  extendBy(box.m_min);
  extendBy(box.m_max);
}

bool NbBox3f::intersect(const NbVec3f& point) const {
  for (int i = 0; i < 3; ++i)
    if (!(m_min[i] <= point[i] && point[i] <= m_max[i])) return false;
  return true;
}

bool NbBox3f::intersect(const NbBox3f& box) const {
  if (isEmpty() || box.isEmpty()) return false;
  for (int i = 0; i < 3; ++i)
    if (m_max[i] < box.m_min[i] || box.m_max[i] < m_min[i]) return false;
  return true;
}

float NbBox3f::getVolume() const {
  const NbVec3f size = getSize();
  return size[0] * size[1] * size[2];
}

void NbBox3f::transform(const NbMatrix& matrix) {
  if (isEmpty()) return;
  const NbVec3f ends[2] = {m_min, m_max};
  makeEmpty();
  for (int corner = 0; corner < 8; ++corner)
    extendBy(matrix.multVecMatrix(NbVec3f(ends[corner & 1][0], ends[corner >> 1 & 1][1], ends[corner >> 2][2])));
}
