// SPDX-License-Identifier: BSD-3-Clause
#include "CurvedSurface.h"

#include "SurfaceWriter.h"

namespace kx {

CurvedSurface::CurvedSurface(Run& run, const FlatMesh& mesh, const KiTessellator& tessellator, Faults& faults)
    : m_input(mesh)
    , m_offsets{0} {
  const FaceSource source = SurfaceWriter::faces(mesh, faults);
  FaceTessellator::write(run, {tessellator, mesh.points, mesh.endNode, mesh.numCells, source}, {m_surface, m_blends},
                         faults);
  for (std::size_t i = 0; i < m_surface.indices.size(); ++i) {
    if (m_surface.indices[i] >= 0)
      m_connectivity.push_back(m_surface.indices[i]);
    else
      m_offsets.push_back(static_cast<std::int64_t>(m_connectivity.size()));
  }
  for (std::size_t v = 0; v < m_surface.numVertices(); ++v) {
    const std::size_t id = m_surface.edgeBegins[v];
    m_nodes.push_back(m_blends.isAdded(id) ? m_blends.position(id) : mesh.points[id]);
  }
  m_mesh.emplace(m_connectivity, m_offsets, m_nodes);
}

bool CurvedSurface::loadForm(std::size_t cell, CellForm& form) const {
  CellNodeList nodes;
  std::visit([&](const auto& cells) { cells.load(cell, nodes); }, m_input.cells);
  if (!nodes.isQuadratic()) return false;
  form.setFace(nodes.ids.data(), nodes.numCorners, nodes.numNodes);
  return true;
}

void CurvedSurface::addLinear(const std::size_t* nodes, const double* weights, std::size_t count,
                              BlendList& points) const {
  // A node that a quadratic neighbour has added is a mean of nodes itself.
  std::vector<std::size_t> ids;
  std::vector<double> shares;
  for (std::size_t i = 0; i < count; ++i) {
    if (weights[i] == 0.0) continue;
    const std::size_t id = m_surface.edgeBegins[nodes[i]];
    if (!m_blends.isAdded(id)) {
      ids.push_back(id);
      shares.push_back(weights[i]);
      continue;
    }
    m_blends.visitBlend(id, [&](std::size_t node, double weight) {
      ids.push_back(node);
      shares.push_back(weight * weights[i]);
    });
  }
  points.add(ids.data(), shares.data(), ids.size());
}

} // namespace kx
