// SPDX-License-Identifier: BSD-3-Clause
#include "MeshView.h"

#include "FinitePosition.h"

#include <algorithm>
#include <cstdio>

namespace kx {
namespace {

std::string textOf(const KbVec3<double>& p) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "(%g, %g, %g)", p[0], p[1], p[2]);
  return text.data();
}

/// The array-backed view of explicit cells; false when the arrays don't fit together (the virtual operations then
/// decide). `topology` is null for hexahedra that are addressed by (i, j, k).
template <class Index>
bool makeRawCells(const RawCells& raw, const Index* indices, const KiVolumeTopologyExplicitI* topology,
                  std::size_t numCells, CellView& view) {
  const bool isHexahedronIjk = topology == nullptr;
  if (!isHexahedronIjk && !raw.hasShapesOf(numCells)) return false;
  const std::uint8_t* codes = raw.codes();
  if (!raw.offsets) {
    const std::size_t stride = raw.connectivity.size / numCells;
    const CellCode code = isHexahedronIjk ? HEXAHEDRON : codeOf(codes[0], stride);
    const bool isUniform =
        isHexahedronIjk || std::all_of(codes, codes + raw.shapes.size, [&](auto c) { return c == codes[0]; });
    if (!isUniform || code == UNREADABLE || (isHexahedronIjk && stride != 8)) return false;
    view = UniformCells<Index>{indices, stride, code, topology};
    return true;
  }
  if (isHexahedronIjk || !raw.hasOffsetsOf(numCells)) return false;
  view = MixedCells<Index>{indices, raw.connectivity.size,          static_cast<const Index*>(raw.offsets.data),
                           codes,   raw.shapes.size == 1 ? 0u : 1u, topology};
  return true;
}

bool makeRawCells(const KiTopology& mesh, const KiVolumeTopologyExplicitI* topology, std::size_t numCells,
                  CellView& view) {
  const RawCells raw(mesh);
  return numCells > 0 &&
         raw.visitIndices([&](const auto* indices) { return makeRawCells(raw, indices, topology, numCells, view); });
}

} // namespace

MeshView::MeshView(const KiVolumeMeshUnstructured& mesh)
    : m_explicit(&mesh.getTopology()) {
  readTopology(*m_explicit);
  beginNode = m_explicit->getBeginNodeId();
  endNode = m_explicit->getEndNodeId();
  if (!makeRawCells(*m_explicit, m_explicit, numCells, cells)) cells = VirtualCells{m_explicit};
  points.geometryI = &mesh.getGeometry();
  readCoordinates(mesh.getGeometry(), PointView::Kind::GEOMETRY_I);
  readStamps(mesh);
}

MeshView::MeshView(const KiVolumeMeshHexahedronIjk& mesh) {
  const KiHexahedronTopologyExplicitIjk& topology = mesh.getTopology();
  readGrid(topology);
  beginNode = topology.getBeginNodeId();
  endNode = topology.getEndNodeId();
  if (!makeRawCells(topology, nullptr, numCells, cells)) cells = HexahedronIjkCells{&topology, cellDims};
  points.geometryI = &mesh.getGeometry();
  readCoordinates(mesh.getGeometry(), PointView::Kind::GEOMETRY_I);
  readStamps(mesh);
}

MeshView::MeshView(const KiVolumeMeshVertexHexahedronIjk& mesh) {
  readGridWithNodes(mesh.getTopology());
  slotBits = CORNER_SLOT_BITS;
  points.corners = &mesh.getGeometry();
  points.kind = PointView::Kind::CORNERS;
  cells = CornerCells{&mesh.getGeometry(), cellDims, nodeDims};
  readStamps(mesh);
}

MeshView::MeshView(const KiVolumeMeshRegular& mesh) {
  readGridWithNodes(mesh.getTopology());
  points.kind = PointView::Kind::AXES;
  readStamps(mesh);
  if (numCells == 0) return;
  const KbVec3<double> low = mesh.getGeometry().getMin();
  const KbVec3<double> high = mesh.getGeometry().getMax();
  if (isFinite(low) && isFinite(high)) {
    points.setAxes(low, high);
    return;
  }
  fault = "the mesh's corners " + textOf(low) + " and " + textOf(high) + " are not finite";
  numCells = 0;
}

MeshView::MeshView(const KiVolumeMeshRectilinear& mesh) {
  readGridWithNodes(mesh.getTopology());
  readStamps(mesh);
  const KiVolumeGeometryRectilinear& geometry = mesh.getGeometry();
  points.kind = PointView::Kind::AXES;
  if (numCells == 0) return;
  for (std::size_t i = 0; i < nodeDims.i; ++i)
    points.axes[0].push_back(geometry.getX(i));
  for (std::size_t j = 0; j < nodeDims.j; ++j)
    points.axes[1].push_back(geometry.getY(j));
  for (std::size_t k = 0; k < nodeDims.k; ++k)
    points.axes[2].push_back(geometry.getZ(k));
}

MeshView::MeshView(const KiVolumeMeshCurvilinear& mesh) {
  readGridWithNodes(mesh.getTopology());
  points.geometryIjk = &mesh.getGeometry();
  readCoordinates(mesh.getGeometry(), PointView::Kind::GEOMETRY_IJK);
  readStamps(mesh);
}

template <class Mesh>
void MeshView::readStamps(const Mesh& mesh) {
  topologyStamp = mesh.getTopology().getTimeStamp();
  geometryStamp = mesh.getGeometry().getTimeStamp();
}

void MeshView::readGridWithNodes(const KiTopologyIjk& topology) {
  readGrid(topology);
  hasGridNodes = true;
  nodeDims = {cellDims.i + 1, cellDims.j + 1, cellDims.k + 1};
  endNode = nodeDims.count();
  points.nodes = nodeDims;
  cells = GridCells{cellDims, nodeDims};
}

bool MeshView::loadPolyhedron(std::size_t cell, std::vector<std::vector<std::size_t>>& faces,
                              std::vector<std::size_t>& nodes) const {
  const KiVolumeCell* c = m_explicit ? m_explicit->getCell(cell) : nullptr;
  if (!c || c->getNumFacets() < 4) return false;
  nodes.resize(c->getNumNodes());
  for (std::size_t i = 0; i < nodes.size(); ++i)
    nodes[i] = c->getNodeIndex(i);
  faces.resize(c->getNumFacets());
  for (std::size_t f = 0; f < faces.size(); ++f) {
    c->getFacet(f, faces[f]);
    for (const std::size_t local : faces[f])
      if (local >= nodes.size()) return false;
  }
  return true;
}

} // namespace kx
