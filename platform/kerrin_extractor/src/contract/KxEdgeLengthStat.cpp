// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KxEdgeLengthStat.h>

#include <algorithm>

KxEdgeLengthStat::~KxEdgeLengthStat() = default;

void KxEdgeLengthStat::push(std::size_t node) {
  const KbVec3<double> p = m_geometry.getCoord(node);
  if (m_hasLast) {
    const double length = (p - m_last).length();
    if (length > 0.0) add(length);
  }
  m_last = p;
  m_hasLast = true;
}

std::size_t KxEdgeLengthStat::samplingStep(std::size_t numCells) {
  constexpr std::size_t SAMPLE = 10000;
  return std::max<std::size_t>(1, numCells / SAMPLE);
}

void KxEdgeLengthStat::MinMaxLength::add(double length) {
  m_min = m_max > 0.0 ? std::min(m_min, length) : length;
  m_max = std::max(m_max, length);
}
