// SPDX-License-Identifier: BSD-3-Clause
#include "StreamLine.h"

#include "CellHit.h"

#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>

namespace kx {

StreamLine::StreamLine()
    : m_topology(*this)
    , m_geometry(m_vertices) {}

void StreamLine::clear() {
  m_collected.clear();
  m_cells.clear();
  m_weights.clear();
  m_weightBegins.clear();
}

bool StreamLine::endsAt(const KbVec3<double>& point) const {
  return !m_collected.empty() &&
         KbVec3<float>(point) ==
             KbVec3<float>(*(m_collected.end() - 3), *(m_collected.end() - 2), *(m_collected.end() - 1));
}

void StreamLine::add(const KbVec3<double>& point, const CellHit& hit) {
  for (std::size_t axis = 0; axis < 3; ++axis)
    m_collected.push_back(static_cast<float>(point[axis]));
  m_cells.push_back(hit.cell);
  m_weightBegins.push_back(static_cast<std::uint32_t>(m_weights.size()));
  for (std::size_t i = 0; i < hit.numNodes(); ++i)
    m_weights.push_back(static_cast<float>(hit.weight(i)));
}

void StreamLine::finish() {
  m_collected.shrink_to_fit();
  m_cells.shrink_to_fit();
  m_weights.shrink_to_fit();
  m_weightBegins.shrink_to_fit();
}

void StreamLine::commit(const InputAddress& input) {
  m_vertices.resize(m_collected.size());
  std::copy(m_collected.begin(), m_collected.end(), m_vertices.data());
  m_collected = {};
  m_topology.commit(input);
  m_geometry.commit();
}

void StreamLine::Topology::commit(const InputAddress& input) {
  m_input = input;
  m_timeStamp = KxTimeStamp::getTimeStamp();
}

} // namespace kx
