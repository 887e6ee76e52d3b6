// SPDX-License-Identifier: BSD-3-Clause
#include "CellShape.h"

#include "CellGeometry.h"
#include "FaceCutter.h"

#include "src/contract/CellFaces.h"

#include <algorithm>

namespace kx {

KbVec3<double> CellShape::centre() const {
  KbVec3<double> sum(0.0);
  for (const KbVec3<double>& p : m_corners)
    sum += p;
  return sum / static_cast<double>(m_corners.size());
}

template <class Mesh>
bool CellShape::loadCorners(const Mesh& mesh, std::size_t cell, Faults& faults) {
  m_numFaces = 0;
  m_numIndices = 0;
  m_corners.clear();
  for (const std::size_t node : m_nodes) {
    if (!mesh.hasNode(node)) {
      faults.add(Faults::NODE_OUT_OF_RANGE, cell);
      return false;
    }
    m_corners.push_back(mesh.points[node]);
  }
  if (FaceCutter::isFinite(m_corners)) return true;
  faults.add(Faults::COORDINATE_NOT_FINITE, cell);
  return false;
}

void CellShape::keepFace(const std::size_t* corners, std::size_t numCorners, bool isReversed) {
  if (m_numFaces == m_faces.size()) m_faces.emplace_back();
  std::vector<std::size_t>& face = m_faces[m_numFaces];
  face.clear();
  for (std::size_t i = 0; i < numCorners; ++i) {
    const std::size_t corner = corners[isReversed ? numCorners - 1 - i : i];
    if (face.empty() || m_nodes[face.back()] != m_nodes[corner]) face.push_back(corner);
  }
  while (face.size() > 1 && m_nodes[face.back()] == m_nodes[face.front()])
    face.pop_back();
  if (face.size() < 3) return;
  m_numIndices += face.size() + 1;
  ++m_numFaces;
}

bool CellShape::load(const FlatMesh& mesh, std::size_t cell, Faults& faults) {
  std::visit([&](const auto& cells) { cells.load(cell, m_list); }, mesh.cells);
  if (m_list.numCorners == 0) {
    faults.add(Faults::UNREADABLE_CELL, cell);
    return false;
  }
  m_nodes.assign(m_list.ids.begin(), m_list.ids.begin() + static_cast<std::ptrdiff_t>(m_list.numCorners));
  if (!loadCorners(mesh, cell, faults)) return false;
  std::vector<std::size_t> around(m_list.numCorners);
  for (std::size_t i = 0; i < around.size(); ++i)
    around[i] = i;
  keepFace(around.data(), around.size(), false);
  return m_numFaces > 0;
}

bool CellShape::load(const MeshView& mesh, std::size_t cell, Faults& faults) {
  CellNodes nodes;
  const CellCode code = std::visit([&](const auto& cells) { return cells.load(cell, nodes); }, mesh.cells);
  if (code < POLYHEDRON) {
    m_nodes.assign(nodes.begin(), nodes.begin() + NUM_CORNERS[code]);
    if (!loadCorners(mesh, cell, faults)) return false;
    std::array<KbVec3<double>, 8> corners;
    std::copy(m_corners.begin(), m_corners.end(), corners.begin());
    const bool isInverted = signedSize(code, corners) < 0.0;
    const CellFaces& table = CELL_FACES[code];
    for (std::size_t f = 0; f < table.numFaces; ++f) {
      const CellFace& face = table.faces[f];
      const std::array<std::size_t, 4> around{face.corners[0], face.corners[1], face.corners[2], face.corners[3]};
      keepFace(around.data(), face.numCorners, isInverted);
    }
    return m_numFaces > 0;
  }
  std::vector<std::vector<std::size_t>> polyhedron;
  if (code == UNREADABLE || !mesh.loadPolyhedron(cell, polyhedron, m_nodes)) {
    faults.add(Faults::UNREADABLE_CELL, cell);
    return false;
  }
  if (!loadCorners(mesh, cell, faults)) return false;
  const bool isInverted = signedSize(polyhedron, m_corners) < 0.0;
  for (const std::vector<std::size_t>& face : polyhedron)
    keepFace(face.data(), face.size(), isInverted);
  return m_numFaces > 0;
}

} // namespace kx
