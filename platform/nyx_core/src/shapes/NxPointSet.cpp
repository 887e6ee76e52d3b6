// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/shapes/NxPointSet.h>

#include <Nyx/elements/NxDrawStyleElement.h>
#include <Nyx/nodes/NxDrawStyle.h>

#include "src/shapes/FieldArrays.h"

#include <algorithm>

using nx::render::Array;
using nx::render::Stream;

/// What was made from the vertices, with the change that it was made from.
struct NxPointSet::Cache {
  uint64_t source = 0, change = 0;
  size_t count = 0;
  nx::render::SourceRef indexSource = std::make_shared<nx::render::Source>();
  std::vector<uint32_t> indices; ///< of the finite points
  NbBox3f box;
};

NX_NODE_SOURCE(NxPointSet, NxVertexShape)

NxPointSet::NxPointSet() {
  NX_NODE_CONSTRUCTOR(NxPointSet);
  NX_NODE_ADD_FIELD(numPoints, (-1));
}
NxPointSet::~NxPointSet() = default;

const NxPointSet::Cache& NxPointSet::getCache(const NxVertexProperty& vertices) {
  const auto numVertices = static_cast<size_t>(vertices.vertex.getNum());
  const int wanted = numPoints.getValue();
  const size_t count = wanted < 0 ? numVertices : std::min(static_cast<size_t>(wanted), numVertices);
  const uint64_t source = vertices.getRenderSource()->id();
  const uint64_t change = vertices.vertex.getChangeId();
  if (m_cache && m_cache->source == source && m_cache->change == change && m_cache->count == count) return *m_cache;

  auto cache = std::make_shared<Cache>();
  cache->source = source;
  cache->change = change;
  cache->count = count;
  cache->indices.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const NbVec3f& point = vertices.vertex[static_cast<int>(i)];
    if (!nx::detail::areFinite(point.getValue(), 3)) continue;
    cache->indices.push_back(static_cast<uint32_t>(i));
    cache->box.extendBy(point);
  }
  if (cache->indices.size() < count)
    warn("getCache", std::to_string(count - cache->indices.size()) + " of " + std::to_string(count) +
                         " points are left out: they are not finite");
  m_cache = std::move(cache);
  return *m_cache;
}

bool NxPointSet::fillGeometry(NxState* state, nx::render::DrawRecord& record) {
  const NxVertexProperty* vertices = getVertices(state);
  if (vertices == nullptr || vertices->vertex.getNum() == 0) return false;
  const Cache& cache = getCache(*vertices);
  const nx::detail::VertexArrays arrays = nx::detail::vertexArrays(*vertices);
  record.primitive = nx::render::Primitive::Points;
  record.position = arrays.position;
  record.indices = {cache.indexSource, Stream::Points, 1, cache.indices.data(), 4, cache.indices.size(), nullptr, 0};
  record.keepAlive = m_cache;
  if (vertices->materialBinding.getValue() != NxVertexProperty::OVERALL && arrays.color.count() >= cache.count)
    record.color = arrays.color;
  record.lit = record.lit && !arrays.normal.empty();
  if (vertices->normalBinding.getValue() != NxVertexProperty::OVERALL && arrays.normal.count() >= cache.count) {
    record.normal = arrays.normal;
  } else if (!arrays.normal.empty()) {
    const NbVec3f& n = vertices->normal[0];
    record.constantNormal = {n[0], n[1], n[2]};
  }
  if (arrays.texCoord.count() >= cache.count) record.texCoord = arrays.texCoord;
  applyColors(*vertices, record);
  return !record.indices.empty();
}

NbBox3f NxPointSet::computeBox(NxState* state) {
  const NxVertexProperty* vertices = getVertices(state);
  return vertices != nullptr ? getCache(*vertices).box : NbBox3f();
}

NxShape::PrimitiveCount NxPointSet::countPrimitives(NxState* state) {
  PrimitiveCount count;
  const NxVertexProperty* vertices = getVertices(state);
  if (vertices != nullptr && NxDrawStyleElement::get(state).style != NxDrawStyle::INVISIBLE)
    count.points = static_cast<int>(getCache(*vertices).indices.size());
  return count;
}
