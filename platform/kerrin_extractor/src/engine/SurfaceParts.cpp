// SPDX-License-Identifier: BSD-3-Clause
#include "SurfaceParts.h"

#include <algorithm>
#include <atomic>
#include <bit>

namespace kx {

template <class Id>
SurfaceParts<Id>::Builder::Builder(SurfaceParts& parts, std::size_t chunk, std::size_t firstCell)
    : m_parts(parts)
    , m_chunk(chunk)
    , m_firstCell(firstCell)
    , m_indices(4096)
    , m_cells(1024) {
  makeRoom(1024);
}

template <class Id>
void SurfaceParts<Id>::Builder::makeRoom(std::size_t numEdges) {
  if (m_numEdges + numEdges > MAX_EDGES) closePart();
  m_maxEdges = std::min(std::bit_ceil(m_numEdges + numEdges + 1), MAX_EDGES + 1);
  m_edges.resize(m_maxEdges + 1);
  m_slots.assign(8 * std::bit_ceil(m_maxEdges), END);
  m_slotShift = 64 - static_cast<unsigned>(std::countr_zero(m_slots.size()));
  for (std::size_t e = 0; e < m_numEdges; ++e) {
    std::size_t slot = slotOf(m_edges[e]);
    while (m_slots[slot] != END)
      slot = (slot + 1) & (m_slots.size() - 1);
    m_slots[slot] = static_cast<std::uint16_t>(e);
  }
}

template <class Id>
void SurfaceParts<Id>::Builder::closePart() {
  if (m_numPolygons == 0) return;
  Part& part = m_parts.m_chunks[m_chunk].emplace_back();
  part.firstCell = m_firstCell;
  part.edges.assign(m_edges.data(), m_edges.data() + m_numEdges);
  part.indices.assign(m_indices.data(), m_indices.data() + m_numIndices);
  part.cells.assign(m_cells.data(), m_cells.data() + m_numPolygons);
  part.beginId = part.edges.front().a;
  part.endId = part.edges.front().b;
  for (const Edge& edge : part.edges) {
    part.beginId = std::min(part.beginId, edge.a);
    part.endId = std::max(part.endId, edge.b);
  }
  ++part.endId;
  m_numEdges = m_numIndices = m_numPolygons = 0;
}

template <class Id>
void SurfaceParts<Id>::reset(std::size_t numChunks, std::size_t beginId, std::size_t endId) {
  constexpr std::size_t MAX_BLOCKS = 1024;
  constexpr unsigned MIN_BLOCK_SHIFT = 10;
  m_parts.clear();
  m_vertices.clear();
  m_chunks.clear();
  m_chunks.resize(numChunks);
  m_beginId = beginId;
  m_blockShift = MIN_BLOCK_SHIFT;
  while ((endId - beginId) >> m_blockShift >= MAX_BLOCKS)
    ++m_blockShift;
  m_numBlocks = ((endId - beginId) >> m_blockShift) + 1;
}

template <class Id>
auto SurfaceParts<Id>::close() -> Sizes {
  m_begins.clear();
  Sizes sum;
  for (std::vector<Part>& chunk : m_chunks) {
    for (Part& part : chunk) {
      m_parts.push_back(&part);
      m_begins.push_back(sum);
      sum.numEdges += part.edges.size();
      sum.numIndices += part.indices.size();
      sum.numPolygons += part.cells.size();
    }
  }
  m_vertices.resize(sum.numEdges);
  m_numOwned.assign(m_parts.size(), 0);
  return sum;
}

template <class Id>
auto SurfaceParts<Id>::ownRange(std::size_t number) const -> std::pair<Id, Id> {
  Id begin = m_parts[number]->beginId;
  Id end = m_parts[number]->endId;
  for (std::size_t p = 0; p < m_parts.size() && begin < end; ++p) {
    const Part& other = *m_parts[p];
    if (p == number || other.endId <= begin || other.beginId >= end) continue;
    // What is left of the range on the other's greater side.
    const Id below = other.beginId > begin ? other.beginId - begin : 0;
    const Id above = end > other.endId ? end - other.endId : 0;
    if (below > above)
      end = other.beginId;
    else
      begin = above > 0 ? other.endId : end;
  }
  return {begin, end};
}

template <class Id>
void SurfaceParts<Id>::share(std::size_t number) {
  Part& part = *m_parts[number];
  const auto [begin, end] = ownRange(number);
  const Id size = end - begin;
  const auto isOwn = [begin = begin, size](const Edge& edge) {
    return (static_cast<Id>(edge.a - begin) < size) | (static_cast<Id>(edge.b - begin) < size);
  };
  // A counting sort by blocks.
  std::vector<std::uint16_t> shared;
  part.blockBegins.assign(m_numBlocks + 1, 0);
  const std::size_t first = m_begins[number].numEdges;
  for (std::size_t e = 0; e < part.edges.size(); ++e) {
    m_vertices[first + e] = static_cast<std::uint32_t>(first + e);
    if (isOwn(part.edges[e])) continue;
    shared.push_back(static_cast<std::uint16_t>(e));
    ++part.blockBegins[blockOf(part.edges[e]) + 1];
  }
  m_numOwned[number] = static_cast<std::uint32_t>(part.edges.size() - shared.size());
  for (std::size_t block = 0; block < m_numBlocks; ++block)
    part.blockBegins[block + 1] = static_cast<std::uint16_t>(part.blockBegins[block + 1] + part.blockBegins[block]);
  part.order.resize(shared.size());
  std::vector<std::uint16_t> next(part.blockBegins.begin(), part.blockBegins.end() - 1);
  for (const std::uint16_t e : shared)
    part.order[next[blockOf(part.edges[e])]++] = e;
}

template <class Id>
void SurfaceParts<Id>::merge(std::size_t block) {
  const auto sizeIn = [block](const Part& part) {
    return static_cast<std::size_t>(part.blockBegins[block + 1] - part.blockBegins[block]);
  };
  std::size_t numEdges = 0;
  for (const Part* part : m_parts)
    numEdges += sizeIn(*part);
  if (numEdges == 0) return;
  struct Slot {
    Edge edge;
    std::uint32_t first;
  };
  std::vector<Slot> slots(2 * std::bit_ceil(numEdges), Slot{{}, IS_VERTEX});
  const std::size_t mask = slots.size() - 1;
  const unsigned shift = 64 - static_cast<unsigned>(std::countr_zero(slots.size()));
  for (std::size_t p = 0; p < m_parts.size(); ++p) {
    const Part& part = *m_parts[p];
    std::uint32_t numOwned = 0;
    for (std::size_t o = part.blockBegins[block]; o < part.blockBegins[block + 1]; ++o) {
      const Edge edge = part.edges[part.order[o]];
      const auto own = static_cast<std::uint32_t>(m_begins[p].numEdges + part.order[o]);
      for (std::size_t slot = hash(edge) >> shift;; slot = (slot + 1) & mask) {
        const bool isNew = slots[slot].first == IS_VERTEX;
        if (!isNew && !(slots[slot].edge == edge)) continue;
        const std::uint32_t first = isNew ? own : slots[slot].first;
        slots[slot] = {edge, first};
        m_vertices[own] = first;
        numOwned += isNew;
        break;
      }
    }
    if (numOwned > 0) std::atomic_ref(m_numOwned[p]).fetch_add(numOwned, std::memory_order_relaxed);
  }
}

template <class Id>
std::vector<std::size_t> SurfaceParts<Id>::vertexBegins() const {
  std::vector<std::size_t> begins{0};
  for (const std::uint32_t count : m_numOwned)
    begins.push_back(begins.back() + count);
  return begins;
}

template <class Id>
void SurfaceParts<Id>::numberVertices(std::size_t number, std::size_t firstVertex, std::vector<NodeEdge>& edges) {
  edges.clear();
  edges.reserve(m_numOwned[number]);
  const Part& part = *m_parts[number];
  const std::size_t begin = m_begins[number].numEdges;
  for (std::size_t e = 0; e < part.edges.size(); ++e) {
    if (m_vertices[begin + e] != begin + e) continue;
    m_vertices[begin + e] = IS_VERTEX | static_cast<std::uint32_t>(firstVertex + edges.size());
    edges.emplace_back(part.edges[e].a, part.edges[e].b);
  }
}

template <class Id>
void SurfaceParts<Id>::findVertices(std::size_t number, std::vector<std::int32_t>& vertices) const {
  const std::uint32_t* own = m_vertices.data() + m_begins[number].numEdges;
  vertices.resize(m_parts[number]->edges.size());
  for (std::size_t e = 0; e < vertices.size(); ++e) {
    const std::uint32_t vertex = own[e] < IS_VERTEX ? m_vertices[own[e]] : own[e];
    vertices[e] = static_cast<std::int32_t>(vertex - IS_VERTEX);
  }
}

template class SurfaceParts<std::uint32_t>;
template class SurfaceParts<std::uint64_t>;

} // namespace kx
