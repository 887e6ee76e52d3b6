// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "extractor/MessageLog.h"

#include <KerrinExtractor/KeXLineMeshUnstructured.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lines {

using Vec3 = KbVec3<double>;

inline std::size_t numCells(const KeXLineMeshUnstructured& mesh) { return mesh.getTopology().getNumCells(); }

inline std::pair<Vec3, Vec3> ends(const KeXLineMeshUnstructured& mesh, std::size_t cell) {
  const KiLineCell* c = mesh.getTopology().getCell(cell);
  return {mesh.getGeometry().getCoord(c->getNodeIndex(0)), mesh.getGeometry().getCoord(c->getNodeIndex(1))};
}

inline double length(const KeXLineMeshUnstructured& mesh) {
  double sum = 0.0;
  for (std::size_t c = 0; c < numCells(mesh); ++c) {
    const auto [a, b] = ends(mesh, c);
    sum += (b - a).length();
  }
  return sum;
}

/// How many vertices have each number of segments.
inline std::map<std::size_t, std::size_t> degrees(const KeXLineMeshUnstructured& mesh) {
  std::vector<std::size_t> counts(mesh.getGeometry().getNumNodes(), 0);
  for (std::size_t c = 0; c < numCells(mesh); ++c)
    for (std::size_t n = 0; n < 2; ++n)
      ++counts[mesh.getTopology().getCell(c)->getNodeIndex(n)];
  std::map<std::size_t, std::size_t> result;
  for (const std::size_t count : counts)
    ++result[count];
  return result;
}

inline std::vector<float> vertices(const KeXLineMeshUnstructured& mesh) {
  const KiBuffer* buffer = mesh.getGeometry().getVertexBuffer();
  const auto* data = static_cast<const float*>(buffer->getData());
  return {data, data + buffer->getByteSize() / sizeof(float)};
}

inline std::vector<std::int32_t> indices(const KeXLineMeshUnstructured& mesh) {
  const KiBuffer* buffer = mesh.getTopology().getIndexBuffer();
  const auto* data = static_cast<const std::int32_t*>(buffer->getData());
  return {data, data + buffer->getByteSize() / sizeof(std::int32_t)};
}

} // namespace lines
