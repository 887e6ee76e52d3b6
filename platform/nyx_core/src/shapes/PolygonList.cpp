// SPDX-License-Identifier: BSD-3-Clause
#include "src/shapes/PolygonList.h"

#include <cmath>

namespace nx::detail {

bool areFinite(const float* values, size_t count) {
  // x * 0 is 0 for a finite x and NaN otherwise; summing needs no branch, so that the loop is vectorised in blocks.
  constexpr size_t block = 1024;
  for (size_t start = 0; start < count; start += block) {
    const size_t end = start + block < count ? start + block : count;
    float sums[8] = {};
    size_t i = start;
    for (; i + 8 <= end; i += 8) {
      for (size_t lane = 0; lane < 8; ++lane)
        sums[lane] += values[i + lane] * 0.0F;
    }
    for (; i < end; ++i)
      sums[0] += values[i] * 0.0F;
    for (const float sum : sums) {
      if (!(sum == 0.0F)) return false;
    }
  }
  return true;
}

PolygonList::PolygonList(const int32_t* index, size_t numIndex, const float* xyz, size_t numVertices, size_t minCorners)
    : m_index(index)
    , m_numIndex(numIndex)
    , m_xyz(xyz)
    , m_numVertices(numVertices) {
  if (numIndex == 0) return;
  const bool allFinite = areFinite(xyz, 3 * numVertices);
  if (allFinite) {
    for (size_t size = minCorners; size <= 4; ++size) {
      if (takeUniform(size)) return;
    }
  }
  takeMixed(minCorners, allFinite);
}

bool PolygonList::takeUniform(size_t size) {
  const size_t stride = size + 1;
  const size_t remainder = m_numIndex % stride;
  if (remainder != 0 && remainder != size) return false;
  // The first face tells cheaply whether a pass over the whole list is worth while.
  if (m_numIndex > size && m_index[size] != -1) return false;
  const size_t full = m_numIndex / stride;
  bool good = true;
  const auto limit = static_cast<uint32_t>(m_numVertices);
  for (size_t face = 0; face < full && good; ++face) {
    const int32_t* corner = m_index + face * stride;
    for (size_t k = 0; k < size; ++k)
      good &= static_cast<uint32_t>(corner[k]) < limit;
    good &= corner[size] == -1;
  }
  for (size_t i = full * stride; i < m_numIndex; ++i)
    good &= static_cast<uint32_t>(m_index[i]) < limit;
  if (!good) return false;
  m_numFaces = full + (remainder != 0 ? 1 : 0);
  m_uniformSize = size;
  return true;
}

void PolygonList::takeMixed(size_t minCorners, bool allFinite) {
  size_t numFaulty = 0;
  size_t first = 0;
  while (first < m_numIndex) {
    size_t end = first;
    while (end < m_numIndex && m_index[end] != -1)
      ++end;
    if (refuses(first, end, allFinite, m_numFaces)) {
      ++numFaulty;
    } else if (end - first >= minCorners) {
      m_faces.push_back(
          {static_cast<uint32_t>(first), static_cast<uint32_t>(end - first), static_cast<uint32_t>(m_numFaces)});
    }
    ++m_numFaces;
    first = end + 1;
  }
  if (numFaulty > 1) m_fault += " (" + std::to_string(numFaulty) + " faulty faces in all)";
}

bool PolygonList::refuses(size_t first, size_t end, bool allFinite, size_t number) {
  for (size_t i = first; i < end; ++i) {
    const int32_t vertex = m_index[i];
    if (vertex < 0 || static_cast<size_t>(vertex) >= m_numVertices) {
      if (m_fault.empty())
        m_fault = "face " + std::to_string(number) + " is left out: its index " + std::to_string(vertex) +
                  " is outside the " + std::to_string(m_numVertices) + " vertices";
      return true;
    }
    if (!allFinite && !areFinite(m_xyz + 3 * static_cast<size_t>(vertex), 3)) {
      if (m_fault.empty())
        m_fault =
            "face " + std::to_string(number) + " is left out: its vertex " + std::to_string(vertex) + " is not finite";
      return true;
    }
  }
  return false;
}

} // namespace nx::detail
