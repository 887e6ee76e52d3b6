// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/base/NbViewportRegion.h>

#include <algorithm>

NbViewportRegion::NbViewportRegion(int width, int height)
    : m_windowSize(std::max(width, 1), std::max(height, 1))
    , m_size(m_windowSize) {}

void NbViewportRegion::setViewportPixels(int left, int bottom, int width, int height) {
  m_origin = NbVec2i32(left, bottom);
  m_size = NbVec2i32(std::max(width, 1), std::max(height, 1));
}

bool operator==(const NbViewportRegion& a, const NbViewportRegion& b) {
  return a.m_windowSize == b.m_windowSize && a.m_origin == b.m_origin && a.m_size == b.m_size &&
         !(a.m_pixelsPerPoint < b.m_pixelsPerPoint) && !(b.m_pixelsPerPoint < a.m_pixelsPerPoint);
}
