// SPDX-License-Identifier: BSD-3-Clause
#include "PointMesh.h"

#include "ExtractedTopology.h"

namespace kx {

class PointMesh::Topology final : public ExtractedTopology<KeXTopologyI> {
public:
  using ExtractedTopology::ExtractedTopology;
};

PointMesh::PointMesh()
    : m_topology(std::make_unique<Topology>(m_data.inputCells))
    , m_geometry(m_data.vertices) {}
PointMesh::~PointMesh() = default;

const KeXTopologyI& PointMesh::getTopology() const { return *m_topology; }

void PointMesh::commit(const InputAddress& input) {
  m_topology->commit(input);
  m_geometry.commit();
}

} // namespace kx
