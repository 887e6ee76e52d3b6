// SPDX-License-Identifier: BSD-3-Clause
#include "Checks.h"

#include <cmath>
#include <cstring>

namespace fuzz {
namespace {

constexpr std::size_t UNDEFINED = KeXTopologyI::UNDEFINED_INDEX;

template <class Topology>
std::string faultOfInputCells(const Topology& topology, const Counts& cells) {
  for (std::size_t c = 0; c < topology.getNumCells(); ++c) {
    const Counts index{topology.getInputCellIndexI(c), topology.getInputCellIndexJ(c), topology.getInputCellIndexK(c)};
    for (std::size_t a = 0; a < 3; ++a)
      if (index[a] != UNDEFINED && index[a] >= (topology.hasStructuredInputCells() || a == 0 ? cells[a] : 0))
        return "output cell " + std::to_string(c) + " comes from an input cell that is not there";
    if (index[0] == UNDEFINED) return "output cell " + std::to_string(c) + " has no input cell";
  }
  return "";
}

template <class Geometry>
std::string faultOfVertices(const Geometry& geometry) {
  const KiBuffer& buffer = *geometry.getVertexBuffer();
  if (buffer.getByteSize() != 3 * sizeof(float) * geometry.getNumNodes())
    return "the vertex buffer is not as long as its vertices";
  const auto* v = static_cast<const float*>(buffer.getData());
  for (std::size_t i = 0; i < 3 * geometry.getNumNodes(); ++i)
    if (!std::isfinite(v[i])) return "vertex " + std::to_string(i / 3) + " is not finite";
  return "";
}

/// Cells of `least` to `most` vertices, -1 behind each.
template <class Topology>
std::string faultOfIndices(const Topology& topology, std::size_t numVertices, std::size_t least, std::size_t most) {
  const KiBuffer& buffer = *topology.getIndexBuffer();
  const auto* index = static_cast<const std::int32_t*>(buffer.getData());
  const std::size_t size = buffer.getByteSize() / sizeof(std::int32_t);
  std::size_t numCells = 0;
  std::size_t length = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (index[i] >= 0) {
      if (static_cast<std::size_t>(index[i]) >= numVertices) return "an index is out of range";
      ++length;
      continue;
    }
    if (index[i] != -1) return "an index is negative";
    if (length < least || length > most)
      return "cell " + std::to_string(numCells) + " has " + std::to_string(length) + " corners";
    length = 0;
    ++numCells;
  }
  if (length != 0) return "the last cell does not end";
  if (numCells != topology.getNumCells()) return "the index buffer has another number of cells";
  return "";
}

template <class Mesh>
std::string faultOfCells(const Mesh& mesh, const Counts& cells, std::size_t least, std::size_t most) {
  std::string fault = faultOfVertices(mesh.getGeometry());
  if (fault.empty()) fault = faultOfIndices(mesh.getTopology(), mesh.getGeometry().getNumNodes(), least, most);
  return fault.empty() ? faultOfInputCells(mesh.getTopology(), cells) : fault;
}

template <class Mesh>
std::string faultOfPoints(const Mesh& mesh, const Counts& cells) {
  const std::string fault = faultOfVertices(mesh.getGeometry());
  return fault.empty() ? faultOfInputCells(mesh.getTopology(), cells) : fault;
}

void append(std::string& bytes, const KiBuffer* buffer) {
  if (buffer && buffer->getByteSize() > 0)
    bytes.append(static_cast<const char*>(buffer->getData()), buffer->getByteSize());
  bytes += ';';
}

template <class Topology>
void appendInputCells(std::string& bytes, const Topology& topology) {
  for (std::size_t c = 0; c < topology.getNumCells(); ++c)
    bytes += std::to_string(topology.getInputCellIndexI(c)) + ' ' + std::to_string(topology.getInputCellIndexJ(c)) +
             ' ' + std::to_string(topology.getInputCellIndexK(c)) + ' ';
}

template <class Mesh>
std::string bytesOfCells(const Mesh& mesh) {
  std::string bytes;
  append(bytes, mesh.getTopology().getIndexBuffer());
  append(bytes, mesh.getGeometry().getVertexBuffer());
  appendInputCells(bytes, mesh.getTopology());
  return bytes;
}

template <class Mesh>
std::string bytesOfPoints(const Mesh& mesh) {
  std::string bytes;
  append(bytes, mesh.getGeometry().getVertexBuffer());
  appendInputCells(bytes, mesh.getTopology());
  return bytes;
}

void appendValue(std::string& bytes, double v) {
  if (std::isnan(v)) {
    bytes += "NaN     ";
    return;
  }
  char raw[sizeof(double)];
  std::memcpy(raw, &v, sizeof(double));
  bytes.append(raw, sizeof(double));
}

} // namespace

std::string faultOf(const KeXSurfaceMeshUnstructured& mesh, const Counts& cells) {
  return faultOfCells(mesh, cells, 3, UNDEFINED);
}
std::string faultOf(const KeXLineMeshUnstructured& mesh, const Counts& cells) {
  return faultOfCells(mesh, cells, 2, 2);
}
std::string faultOf(const KeXLineMeshCurvilinear& mesh, const Counts& cells) { return faultOfPoints(mesh, cells); }
std::string faultOf(const KeXPointMeshCurvilinear& mesh, const Counts& cells) { return faultOfPoints(mesh, cells); }

std::string bytesOf(const KeXSurfaceMeshUnstructured& mesh) { return bytesOfCells(mesh); }
std::string bytesOf(const KeXLineMeshUnstructured& mesh) { return bytesOfCells(mesh); }
std::string bytesOf(const KeXLineMeshCurvilinear& mesh) { return bytesOfPoints(mesh); }
std::string bytesOf(const KeXPointMeshCurvilinear& mesh) { return bytesOfPoints(mesh); }

std::string bytesOfSet(const KeXDataSetI<double>* set) {
  if (!set) return "null";
  std::string bytes;
  for (std::size_t i = 0; i < set->getSize(); ++i)
    appendValue(bytes, set->get(i));
  return bytes;
}
std::string bytesOfSet(const KeXDataSetI<Vec3>* set) {
  if (!set) return "null";
  std::string bytes;
  for (std::size_t i = 0; i < set->getSize(); ++i)
    for (std::size_t a = 0; a < 3; ++a)
      appendValue(bytes, set->get(i)[a]);
  return bytes;
}

} // namespace fuzz
