// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinExtractor/KeCell.h>
#include <KerrinExtractor/KeGeometryISet.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>

KeCell::KeCell(std::size_t numNodes)
    : m_nodes(numNodes) {}
std::size_t KeCell::getNodeIndex(std::size_t localIndex) const { return m_nodes[localIndex]; }

KeGeometryISet::KeGeometryISet()
    : m_timeStamp(KxTimeStamp::getTimeStamp()) {}

void KeGeometryISet::add(const KiGeometryI& geometry, std::size_t numNodes) {
  m_parts.push_back({&geometry, dynamic_cast<const KeXGeometryExplicit*>(&geometry), getNumNodes() + numNodes,
                     geometry.getTimeStamp()});
  m_timeStamp = KxTimeStamp::getTimeStamp();
}

void KeGeometryISet::clear() {
  m_parts.clear();
  m_timeStamp = KxTimeStamp::getTimeStamp();
}

void KeGeometryISet::reserve(std::size_t numGeometries) { m_parts.reserve(numGeometries); }
void KeGeometryISet::update() { refresh(); }

void KeGeometryISet::refresh() const {
  bool hasChanged = false;
  std::size_t oldBegin = 0;
  std::size_t begin = 0;
  for (Part& part : m_parts) {
    const std::size_t timeStamp = part.geometry->getTimeStamp();
    std::size_t numNodes = part.end - oldBegin;
    if (timeStamp != part.timeStamp) {
      hasChanged = true;
      part.timeStamp = timeStamp;
      if (part.extracted) numNodes = part.extracted->getNumNodes();
    }
    oldBegin = part.end;
    begin += numNodes;
    part.end = begin;
  }
  if (hasChanged) m_timeStamp = KxTimeStamp::getTimeStamp();
}

std::size_t KeGeometryISet::getTimeStamp() const {
  refresh();
  return m_timeStamp;
}

std::size_t KeGeometryISet::getNumNodes() const { return m_parts.empty() ? 0 : m_parts.back().end; }

const KiBuffer* KeGeometryISet::getVertexBuffer() const {
  return m_parts.size() == 1 && m_parts[0].extracted ? m_parts[0].extracted->getVertexBuffer() : nullptr;
}

KbVec3<double> KeGeometryISet::getCoord(std::size_t node) const {
  const auto part =
      std::upper_bound(m_parts.begin(), m_parts.end(), node, [](std::size_t n, const Part& p) { return n < p.end; });
  return part->geometry->getCoord(part == m_parts.begin() ? node : node - (part - 1)->end);
}

KbVec3<double> KeGeometryISet::getMin() const {
  KbVec3<double> low = KiGeometry::getMin();
  for (const Part& part : m_parts) {
    const KbVec3<double> own = part.geometry->getMin();
    for (std::size_t axis = 0; axis < 3; ++axis)
      low[axis] = std::min(low[axis], own[axis]);
  }
  return low;
}

KbVec3<double> KeGeometryISet::getMax() const {
  KbVec3<double> high = KiGeometry::getMax();
  for (const Part& part : m_parts) {
    const KbVec3<double> own = part.geometry->getMax();
    for (std::size_t axis = 0; axis < 3; ++axis)
      high[axis] = std::max(high[axis], own[axis]);
  }
  return high;
}
