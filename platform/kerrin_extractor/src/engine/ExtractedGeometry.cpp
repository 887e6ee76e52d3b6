// SPDX-License-Identifier: BSD-3-Clause
#include "ExtractedGeometry.h"

#include <KerrinExtractor/KxTimeStamp.h>

#include <limits>

namespace kx {

ExtractedGeometry::ExtractedGeometry(const Array<float>& vertices)
    : m_vertices(vertices)
    , m_timeStamp(KxTimeStamp::getTimeStamp()) {}

ExtractedGeometry::ExtractedGeometry(const Array<float>& vertices, const ExtractedGeometry& original)
    : m_vertices(vertices)
    , m_timeStamp(original.m_timeStamp) {}

void ExtractedGeometry::commit() {
  m_hasBox.store(false, std::memory_order_relaxed);
  m_timeStamp = KxTimeStamp::getTimeStamp();
}

KbVec3<double> ExtractedGeometry::getCoord(std::size_t node) const {
  const float* p = m_vertices.data() + 3 * node;
  return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
}

KbVec3<double> ExtractedGeometry::getMin() const {
  findBox();
  return m_low;
}

KbVec3<double> ExtractedGeometry::getMax() const {
  findBox();
  return m_high;
}

void ExtractedGeometry::findBox() const {
  if (m_hasBox.load(std::memory_order_acquire)) return;
  const std::scoped_lock lock(m_mutex);
  if (m_hasBox.load(std::memory_order_relaxed)) return;
  KbVec3<float> low(std::numeric_limits<float>::infinity());
  KbVec3<float> high(-std::numeric_limits<float>::infinity());
  const float* p = m_vertices.data();
  for (std::size_t node = 0; node < getNumNodes(); ++node, p += 3) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], p[axis]);
      high[axis] = std::max(high[axis], p[axis]);
    }
  }
  m_low = KbVec3<double>(low);
  m_high = KbVec3<double>(high);
  m_hasBox.store(true, std::memory_order_release);
}

} // namespace kx
